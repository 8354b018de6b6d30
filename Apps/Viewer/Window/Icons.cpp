// SPDX-License-Identifier: MIT
#include "Viewer/Window/Icons.h"

#include <QApplication>
#include <QByteArray>
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

/** Draws a picture that has "currentColor" where the colour of the text belongs. */
class IconEngine : public QIconEngine {
public:
    explicit IconEngine(QByteArray picture)
        : m_picture(std::move(picture))
    {}

    void paint(QPainter* painter, const QRect& rectangle, const QIcon::Mode mode, QIcon::State) override
    {
        QByteArray picture = m_picture;
        picture.replace("currentColor", getColour(mode).name().toLatin1());
        QSvgRenderer(picture).render(painter, rectangle);
    }

    QPixmap pixmap(const QSize& size, const QIcon::Mode mode, const QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new IconEngine(m_picture); }

private:
    // Asked for at every drawing: the palette may have changed.
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
