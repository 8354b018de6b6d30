// SPDX-License-Identifier: MIT
//
// Keys: those that are bound, those that are not, and none at all while somebody presents.
#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/QtEventMapper.h>

#include <Shortcut/koShortcut.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>

#include <QKeyEvent>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

using namespace quon::interaction;

namespace {

/** Consumes the bound "view:fit" and, of all other keys, Escape. */
class ViewContext : public AbstractInteractionContext {
public:
    ViewContext()
        : AbstractInteractionContext(Navigation)
    {}

    bool triggerEvent(InteractionManager*, const InteractionEvent& event) override
    {
        if (event.getCategory() == "view:fit" && event.getEvent() == "trigger") {
            m_log.emplace_back("fit");
            return true;
        }
        // What no binding consumed comes by the key's own name.
        static const std::string escape = "qt-key:" + QtEventMapper::qtKeyEventToString(Qt::Key_Escape, Qt::NoModifier);
        if (event.getCategory() == escape && event.getEvent() == "press") {
            m_log.emplace_back("leave");
            return true;
        }
        return false;
    }

    std::vector<std::string> takeLog() { return std::exchange(m_log, {}); }

private:
    std::vector<std::string> m_log;
};

void strike(QtEventMapper& mapper, const int key, const Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    const QKeyEvent press(QEvent::KeyPress, key, modifiers);
    const QKeyEvent release(QEvent::KeyRelease, key, modifiers);
    mapper.keyPressed(&press);
    mapper.keyReleased(&release);
}

} // namespace

int main(int argc, char** argv)
{
    osg::osgInit(argc, argv);
    using Log = std::vector<std::string>;
    InteractionManager* manager = InteractionManager::getInstance();
    ViewContext context;
    manager->addContext(&context);
    QtEventMapper mapper;
    mapper.setInteractionManager(manager);
    mapper.addKeyboardMapping(Qt::Key_F, Qt::NoModifier, "view:fit", "Fit all");

    // The registry knows what is bound: that is the help page.
    for (const koShortcut::Entry& entry : koShortcut::getEntries()) {
        std::printf("%s: %s\n", qPrintable(koShortcut::toText(entry)), qPrintable(entry.description));
    }

    strike(mapper, Qt::Key_F);
    strike(mapper, Qt::Key_F, Qt::ShiftModifier); // bound without modifiers is bound with any
    strike(mapper, Qt::Key_Escape);
    bool good = context.takeLog() == Log{"fit", "fit", "leave"};

    // While somebody presents, a pocket remote or a stray elbow changes nothing.
    manager->setPresenterMode(true);
    strike(mapper, Qt::Key_F);
    strike(mapper, Qt::Key_Escape);
    good = good && context.takeLog().empty();
    manager->setPresenterMode(false);

    // Another key for the same, as a dialog for shortcuts does it. A key that is down when the window loses the
    // keyboard never comes up: resetEvents() ends what it began.
    mapper.removeKeyboardMapping(Qt::Key_F, Qt::NoModifier, "view:fit");
    mapper.addKeyboardMapping(Qt::Key_A, Qt::NoModifier, "view:fit", "Fit all");
    const QKeyEvent press(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    mapper.keyPressed(&press);
    mapper.resetEvents();
    good = good && context.takeLog() == Log{"fit"};

    mapper.removeKeyboardMapping(Qt::Key_A, Qt::NoModifier);
    good = good && koShortcut::getEntries().empty();
    manager->removeContext(&context);
    return good ? 0 : 1;
}
