// SPDX-License-Identifier: MIT
#include "Viewer/Session/Commands.h"

#include <QCoreApplication>
#include <Qt>

#include <algorithm>

namespace quon::viewer {

namespace {

using Group = Command::Group;

// A binding without modifiers fires whatever modifiers are held: no key that stands here alone stands here a second
// time with modifiers.
constexpr int None = Qt::NoModifier;
constexpr int Control = Qt::ControlModifier;
constexpr int Shift = Qt::ShiftModifier;
constexpr int ControlShift = static_cast<int>(Qt::ControlModifier) | static_cast<int>(Qt::ShiftModifier);

} // namespace

QString Command::getText() const
{
    return QCoreApplication::translate("Commands", text);
}

QString Command::getDescription() const
{
    return QCoreApplication::translate("Commands", description);
}

const std::vector<Command>& Command::getAll()
{
    static const std::vector<Command> commands{
        {"undo", Group::Edit, "undo", QT_TRANSLATE_NOOP("Commands", "Undo"),
         QT_TRANSLATE_NOOP("Commands", "Take back the last change of selection, visibility or locks"), Qt::Key_Z,
         Control},
        {"redo", Group::Edit, "redo", QT_TRANSLATE_NOOP("Commands", "Redo"),
         QT_TRANSLATE_NOOP("Commands", "Do again what was taken back"), Qt::Key_Z, ControlShift},
        {"hide", Group::Edit, "hide", QT_TRANSLATE_NOOP("Commands", "Hide"),
         QT_TRANSLATE_NOOP("Commands", "Hide the selected parts"), Qt::Key_H, None},
        {"show", Group::Edit, "", QT_TRANSLATE_NOOP("Commands", "Show"),
         QT_TRANSLATE_NOOP("Commands", "Show the selected parts again, and the groups that they are in"), 0, None},
        {"isolate", Group::Edit, "isolate", QT_TRANSLATE_NOOP("Commands", "Isolate"),
         QT_TRANSLATE_NOOP("Commands", "Hide everything but the selected parts"), Qt::Key_I, None},
        {"show-all", Group::Edit, "show-all", QT_TRANSLATE_NOOP("Commands", "Show all"),
         QT_TRANSLATE_NOOP("Commands", "Show all hidden parts again"), Qt::Key_U, None},
        {"lock", Group::Edit, "lock", QT_TRANSLATE_NOOP("Commands", "Lock or unlock"),
         QT_TRANSLATE_NOOP("Commands", "Lock or unlock the selected parts"), Qt::Key_L, None},

        {"select-all", Group::Select, "select-all", QT_TRANSLATE_NOOP("Commands", "Select all"),
         QT_TRANSLATE_NOOP("Commands", "Select all parts that are shown"), Qt::Key_A, Control},
        {"select-none", Group::Select, "select-none", QT_TRANSLATE_NOOP("Commands", "Select none"),
         QT_TRANSLATE_NOOP("Commands", "Clear the selection"), Qt::Key_A, ControlShift},
        {"invert", Group::Select, "invert", QT_TRANSLATE_NOOP("Commands", "Invert selection"),
         QT_TRANSLATE_NOOP("Commands", "Select what is not selected, and nothing else"), Qt::Key_N, None},
        {"select-parent", Group::Select, "select-parent", QT_TRANSLATE_NOOP("Commands", "Select parent"),
         QT_TRANSLATE_NOOP("Commands", "Select the groups that the selected parts are in"), Qt::Key_PageUp, None},
        {"select-children", Group::Select, "select-children", QT_TRANSLATE_NOOP("Commands", "Select children"),
         QT_TRANSLATE_NOOP("Commands", "Select the parts of the selected groups"), Qt::Key_PageDown, None},
        {"new-set", Group::Select, "add", QT_TRANSLATE_NOOP("Commands", "New selection set"),
         QT_TRANSLATE_NOOP("Commands", "Keep the selected parts as a named set"), Qt::Key_K, None},
        {"preselection", Group::Select, "", QT_TRANSLATE_NOOP("Commands", "Highlight under pointer"),
         QT_TRANSLATE_NOOP("Commands", "Show in blue what a click or a rectangle would select"), 0, None},
        {"visible-only", Group::Select, "", QT_TRANSLATE_NOOP("Commands", "Rectangle selects visible parts only"),
         QT_TRANSLATE_NOOP("Commands", "Let the rectangle leave out parts that are hidden behind others"), 0, None},
        {"find", Group::Select, "search", QT_TRANSLATE_NOOP("Commands", "Find..."),
         QT_TRANSLATE_NOOP("Commands", "Find parts by name"), Qt::Key_Slash, None},

        {"fit", Group::View, "fit", QT_TRANSLATE_NOOP("Commands", "Fit all"),
         QT_TRANSLATE_NOOP("Commands", "Fit the model into the view"), Qt::Key_F, None},
        {"fit-selection", Group::View, "fit-selection", QT_TRANSLATE_NOOP("Commands", "Fit selection"),
         QT_TRANSLATE_NOOP("Commands", "Fit the selected parts into the view"), Qt::Key_G, None},
        {"front", Group::View, "front", QT_TRANSLATE_NOOP("Commands", "Front"),
         QT_TRANSLATE_NOOP("Commands", "Look from the front"), Qt::Key_1, None},
        {"right", Group::View, "right", QT_TRANSLATE_NOOP("Commands", "Right"),
         QT_TRANSLATE_NOOP("Commands", "Look from the right"), Qt::Key_2, None},
        {"top", Group::View, "top", QT_TRANSLATE_NOOP("Commands", "Top"),
         QT_TRANSLATE_NOOP("Commands", "Look from above"), Qt::Key_3, None},
        {"iso", Group::View, "iso", QT_TRANSLATE_NOOP("Commands", "Isometric"),
         QT_TRANSLATE_NOOP("Commands", "Look from above at an angle"), Qt::Key_4, None},
        {"back", Group::View, "", QT_TRANSLATE_NOOP("Commands", "Back"),
         QT_TRANSLATE_NOOP("Commands", "Look from behind"), Qt::Key_5, None},
        {"left", Group::View, "", QT_TRANSLATE_NOOP("Commands", "Left"),
         QT_TRANSLATE_NOOP("Commands", "Look from the left"), Qt::Key_6, None},
        {"bottom", Group::View, "", QT_TRANSLATE_NOOP("Commands", "Bottom"),
         QT_TRANSLATE_NOOP("Commands", "Look from below"), Qt::Key_7, None},
        {"parallel", Group::View, "parallel", QT_TRANSLATE_NOOP("Commands", "Parallel projection"),
         QT_TRANSLATE_NOOP("Commands", "Switch between parallel and perspective projection"), Qt::Key_P, None},
        {"zoom-in", Group::View, "", QT_TRANSLATE_NOOP("Commands", "Zoom in"),
         QT_TRANSLATE_NOOP("Commands", "Enlarge what is in the middle of the view"), Qt::Key_Plus, None},
        {"zoom-out", Group::View, "", QT_TRANSLATE_NOOP("Commands", "Zoom out"),
         QT_TRANSLATE_NOOP("Commands", "Show more of what is around the middle of the view"), Qt::Key_Minus, None},
        {"visualisation", Group::View, "visualisation", QT_TRANSLATE_NOOP("Commands", "Wireframe selection"),
         QT_TRANSLATE_NOOP("Commands", "Switch between boxes and wireframe"), Qt::Key_B, None},
        {"overlay", Group::View, "overlay", QT_TRANSLATE_NOOP("Commands", "Selection over everything"),
         QT_TRANSLATE_NOOP("Commands", "Draw the selection over everything or in its place"), Qt::Key_O, None},
        {"dark", Group::View, "dark", QT_TRANSLATE_NOOP("Commands", "Dark background"),
         QT_TRANSLATE_NOOP("Commands", "Switch between light and dark background"), Qt::Key_D, None},

        {"orbit-left", Group::Navigate, "", QT_TRANSLATE_NOOP("Commands", "Turn left"),
         QT_TRANSLATE_NOOP("Commands", "Turn the model to the left"), Qt::Key_Left, Shift},
        {"orbit-right", Group::Navigate, "", QT_TRANSLATE_NOOP("Commands", "Turn right"),
         QT_TRANSLATE_NOOP("Commands", "Turn the model to the right"), Qt::Key_Right, Shift},
        {"orbit-up", Group::Navigate, "", QT_TRANSLATE_NOOP("Commands", "Turn up"),
         QT_TRANSLATE_NOOP("Commands", "Turn the model upwards"), Qt::Key_Up, Shift},
        {"orbit-down", Group::Navigate, "", QT_TRANSLATE_NOOP("Commands", "Turn down"),
         QT_TRANSLATE_NOOP("Commands", "Turn the model downwards"), Qt::Key_Down, Shift},
        {"pan-left", Group::Navigate, "", QT_TRANSLATE_NOOP("Commands", "Move left"),
         QT_TRANSLATE_NOOP("Commands", "Move the model to the left"), Qt::Key_Left, Control},
        {"pan-right", Group::Navigate, "", QT_TRANSLATE_NOOP("Commands", "Move right"),
         QT_TRANSLATE_NOOP("Commands", "Move the model to the right"), Qt::Key_Right, Control},
        {"pan-up", Group::Navigate, "", QT_TRANSLATE_NOOP("Commands", "Move up"),
         QT_TRANSLATE_NOOP("Commands", "Move the model upwards"), Qt::Key_Up, Control},
        {"pan-down", Group::Navigate, "", QT_TRANSLATE_NOOP("Commands", "Move down"),
         QT_TRANSLATE_NOOP("Commands", "Move the model downwards"), Qt::Key_Down, Control},

        {"measure", Group::Tools, "measure", QT_TRANSLATE_NOOP("Commands", "Measure"),
         QT_TRANSLATE_NOOP("Commands", "Measure the distance between two points and the angle between their normals"),
         Qt::Key_M, None},
        {"copy-measurement", Group::Tools, "copy", QT_TRANSLATE_NOOP("Commands", "Copy measurement"),
         QT_TRANSLATE_NOOP("Commands", "Copy what was measured to the clipboard"), Qt::Key_C, Control},

        {"presenter", Group::Window, "presenter", QT_TRANSLATE_NOOP("Commands", "Presenter mode"),
         QT_TRANSLATE_NOOP("Commands", "Fill the screen with the view and let keys alone"), Qt::Key_F11, None},
        {"inspector", Group::Window, "", QT_TRANSLATE_NOOP("Commands", "Inspector"),
         QT_TRANSLATE_NOOP("Commands", "Show what the interaction library does"), Qt::Key_F12, None},
        {"record", Group::Window, "record", QT_TRANSLATE_NOOP("Commands", "Record input..."),
         QT_TRANSLATE_NOOP("Commands", "Write all input into a file that can be replayed"), 0, None},
        {"shortcuts", Group::Window, "shortcuts", QT_TRANSLATE_NOOP("Commands", "Shortcuts..."),
         QT_TRANSLATE_NOOP("Commands", "List and change the shortcuts"), Qt::Key_F1, None},
    };
    return commands;
}

const Command* Command::find(const std::string& name)
{
    const std::vector<Command>& all = getAll();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Command& command) { return name == command.name; });
    return found == all.end() ? nullptr : &*found;
}

} // namespace quon::viewer
