// SPDX-License-Identifier: MIT
#pragma once

#include "Plan.h"

#include <Interaction/QtEventMapper.h>

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QRasterWindow>

/** Shows the scene and hands every input event to the mapper. */
class Viewport : public QRasterWindow {
public:
    Viewport(const Scene& scene, quon::interaction::QtEventMapper& mapper)
        : m_scene(scene)
        , m_mapper(mapper)
    {
        setTitle("Your host");
        resize(plan::width, plan::height);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override { finish(event, m_mapper.mousePressed(event)); }
    // The second press of a double click comes as this event alone.
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void mouseReleaseEvent(QMouseEvent* event) override { finish(event, m_mapper.mouseReleased(event)); }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        finish(event, m_mapper.mouseMoved(event, event->buttons() != Qt::NoButton));
    }

    void keyPressEvent(QKeyEvent* event) override { finish(event, m_mapper.keyPressed(event)); }
    void keyReleaseEvent(QKeyEvent* event) override { finish(event, m_mapper.keyReleased(event)); }

    // A key that is down now will be released somewhere else: what it began ends here.
    void focusOutEvent(QFocusEvent* event) override
    {
        m_mapper.resetEvents();
        finish(event, true);
    }

    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::Leave) {
            finish(event, m_mapper.hoverStopped(event));
        }
        return QRasterWindow::event(event);
    }

    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        plan::paint(painter, m_scene);
    }

private:
    // What nobody consumed may go on to whom Qt offers it next.
    void finish(QEvent* event, const bool consumed)
    {
        event->setAccepted(consumed);
        update();
    }

    const Scene& m_scene;
    quon::interaction::QtEventMapper& m_mapper;
};
