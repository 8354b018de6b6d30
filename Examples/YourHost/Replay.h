// SPDX-License-Identifier: MIT
#pragma once

#include "Viewport.h"

#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>

#include <QCoreApplication>
#include <QImage>
#include <QStringList>

#include <cstdio>

/** Prints the names of what is selected, in the order of the scene. */
inline void printSelection(const Scene& scene)
{
    const auto* model = quon::interaction::SelectionManager::getInstance()->getSelectionModel("selection");
    const osg::NodePtr machines = scene.getMachines();
    std::printf("selected:");
    for (osg::UInt32 i = 0; model != nullptr && i < machines->getNChildren(); ++i) {
        if (model->getSelection().count(machines->getChild(i)) != 0) {
            std::printf(" %s", NodeUtils::getName(machines->getChild(i)).c_str());
        }
    }
    std::printf("\n");
}

/** A user without hands: sends Qt events to the viewport as the words say. Returns whether all words are known. */
inline bool replay(Viewport& viewport, const Scene& scene, QStringList words)
{
    const auto mouse = [&](const QEvent::Type type, const Qt::MouseButton button, const Qt::MouseButtons held,
                           const Qt::KeyboardModifiers modifiers, const QPointF& place) {
        QMouseEvent event(type, place, place, button, held, modifiers);
        QCoreApplication::sendEvent(&viewport, &event);
    };
    const auto key = [&](const QEvent::Type type, const int code) {
        QKeyEvent event(type, code, Qt::NoModifier);
        QCoreApplication::sendEvent(&viewport, &event);
    };
    const auto takePlace = [&] {
        const double x = words.takeFirst().toDouble();
        return QPointF(x, words.takeFirst().toDouble());
    };
    while (!words.isEmpty()) {
        const QString word = words.takeFirst();
        if ((word == "click" || word == "ctrl-click" || word == "middle-click") && words.size() >= 2) {
            const Qt::MouseButton button = word == "middle-click" ? Qt::MiddleButton : Qt::LeftButton;
            const Qt::KeyboardModifiers modifiers = word == "ctrl-click" ? Qt::ControlModifier : Qt::NoModifier;
            const QPointF place = takePlace();
            mouse(QEvent::MouseButtonPress, button, button, modifiers, place);
            mouse(QEvent::MouseButtonRelease, button, Qt::NoButton, modifiers, place);
        } else if (word == "move" && words.size() >= 2) {
            mouse(QEvent::MouseMove, Qt::NoButton, Qt::NoButton, Qt::NoModifier, takePlace());
        } else if (word == "leave") {
            QEvent event(QEvent::Leave);
            QCoreApplication::sendEvent(&viewport, &event);
        } else if (word == "key-down" && !words.isEmpty()) {
            key(QEvent::KeyPress, words.takeFirst() == "A" ? Qt::Key_A : Qt::Key_Escape);
        } else if (word == "key-up" && !words.isEmpty()) {
            key(QEvent::KeyRelease, words.takeFirst() == "A" ? Qt::Key_A : Qt::Key_Escape);
        } else if (word == "focus-out") {
            QFocusEvent event(QEvent::FocusOut);
            QCoreApplication::sendEvent(&viewport, &event);
        } else if (word == "title") {
            std::printf("%s\n", qPrintable(viewport.title()));
        } else if (word == "selection") {
            printSelection(scene);
        } else if (word == "picture" && !words.isEmpty()) {
            QImage picture(plan::width, plan::height, QImage::Format_RGB32);
            QPainter painter(&picture);
            plan::paint(painter, scene);
            picture.save(words.takeFirst());
        } else {
            return false;
        }
    }
    return true;
}
