// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <vector>

class QAction;
class QMenu;

namespace quon::viewer {

class ModelSettings;

/** The menus that choose how the model lies and how lengths are written: up axis, unit of the model, unit of lengths.
 */
class ModelMenus : public QObject {
    Q_OBJECT

public:
    /**
     * @param settings borrowed, must outlive the menus
     * @param menu gets the three menus at its end
     */
    ModelMenus(ModelSettings& settings, QMenu& menu);

    /** Asks for all texts again, after the language changed. */
    void retranslate();

private:
    QMenu* addMenu(QMenu& menu, const char* objectName);
    void update();

    ModelSettings& m_settings;
    QMenu* m_upAxisMenu;
    QMenu* m_modelUnitMenu;
    QMenu* m_lengthUnitMenu;
    std::vector<QAction*> m_upAxes;
    std::vector<QAction*> m_modelUnits;
    std::vector<QAction*> m_lengthUnits;
};

} // namespace quon::viewer
