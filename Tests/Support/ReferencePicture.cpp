// SPDX-License-Identifier: MIT
#include "Support/ReferencePicture.h"

#include <QColor>
#include <QString>

#include <algorithm>
#include <cstdlib>

namespace quon::testing {

namespace {

constexpr int ReferenceWidth = 160;
constexpr int Tolerance = 24;

bool differs(const QColor& a, const QColor& b)
{
    return std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())}) >
           Tolerance;
}

QImage scaledTo(const QImage& picture, const QSize& size)
{
    return picture.convertToFormat(QImage::Format_RGB32).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

::testing::AssertionResult matchesReference(const QImage& picture, const std::string& name, const double share)
{
    const QString file = QStringLiteral(KO_REFERENCES "/%1.png").arg(QString::fromStdString(name));
    if (std::getenv("KO_UPDATE_REFERENCES") != nullptr) {
        const QSize size(ReferenceWidth, ReferenceWidth * picture.height() / picture.width());
        const bool saved = scaledTo(picture, size).save(file);
        return ::testing::AssertionFailure() << (saved ? "stored " : "could not store ") << file.toStdString();
    }
    const QImage reference(file);
    if (reference.isNull()) {
        return ::testing::AssertionFailure() << "there is no " << file.toStdString();
    }
    const QImage actual = scaledTo(picture, reference.size());
    int different = 0;
    for (int y = 0; y < actual.height(); ++y) {
        for (int x = 0; x < actual.width(); ++x) {
            different += differs(actual.pixelColor(x, y), reference.pixelColor(x, y)) ? 1 : 0;
        }
    }
    const int allowed = static_cast<int>(share * actual.width() * actual.height());
    if (different <= allowed) {
        return ::testing::AssertionSuccess();
    }
    const QString left = QString::fromStdString(name) + QStringLiteral(".actual.png");
    picture.save(left);
    return ::testing::AssertionFailure() << different << " of " << actual.width() * actual.height()
                                         << " pixels differ from " << file.toStdString() << ", " << allowed
                                         << " may; see " << left.toStdString();
}

} // namespace quon::testing
