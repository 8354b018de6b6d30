// SPDX-License-Identifier: MIT
#include "Viewer/Window/Icons.h"

#include <QApplication>
#include <QByteArray>
#include <QCache>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

#include <utility>

// Resources of a static library are linked only when somebody asks for them, outside any namespace.
static void initResources()
{
    Q_INIT_RESOURCE(koviewer);
}

namespace quon::viewer {

namespace {

// Of one icon: a few sizes, each in the colours of its modes.
constexpr int KeptPixmaps = 16;

/** Draws a picture that has "currentColor" where the colour of the text belongs, once per size and colour. */
class IconEngine : public QIconEngine {
public:
    explicit IconEngine(QByteArray picture)
        : m_picture(std::move(picture))
    {}

    void paint(QPainter* painter, const QRect& rectangle, const QIcon::Mode mode, const QIcon::State state) override
    {
        const double pixelRatio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rectangle, pixmap(rectangle.size() * pixelRatio, mode, state));
    }

    QPixmap pixmap(const QSize& size, const QIcon::Mode mode, QIcon::State) override
    {
        const QString colour = getColour(mode).name();
        const QString key = QStringLiteral("%1 %2 %3").arg(colour).arg(size.width()).arg(size.height());
        if (const QPixmap* known = m_pixmaps.object(key)) {
            return *known;
        }
        QPixmap pixmap = draw(size, colour);
        m_pixmaps.insert(key, new QPixmap(pixmap));
        return pixmap;
    }

    QIconEngine* clone() const override { return new IconEngine(m_picture); }

private:
    QPixmap draw(const QSize& size, const QString& colour) const
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        QByteArray picture = m_picture;
        picture.replace("currentColor", colour.toLatin1());
        QSvgRenderer(picture).render(&painter, QRect(QPoint(), size));
        return pixmap;
    }

    // Asked for every time: the palette may have changed.
    static QColor getColour(const QIcon::Mode mode)
    {
        const QPalette palette = QApplication::palette();
        switch (mode) {
        case QIcon::Disabled:
            return palette.color(QPalette::Disabled, QPalette::ButtonText);
        case QIcon::Selected:
            return palette.color(QPalette::HighlightedText);
        default:
            return palette.color(QPalette::ButtonText);
        }
    }

    QByteArray m_picture;
    QCache<QString, QPixmap> m_pixmaps{KeptPixmaps};
};

} // namespace

QIcon getIcon(const std::string& name)
{
    initResources();
    QFile file(QStringLiteral(":/koviewer/Icons/%1.svg").arg(QString::fromStdString(name)));
    if (name.empty() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QIcon(new IconEngine(file.readAll()));
}

} // namespace quon::viewer
