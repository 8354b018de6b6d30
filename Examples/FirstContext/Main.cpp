// SPDX-License-Identifier: MIT
//
// A first context: it hears of named events, says by its answer whether it consumed them, and is a line in the
// notification area while it is on top.
#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/QtEventMapper.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>

#include <QKeyEvent>

#include <cstdio>

using namespace quon::interaction;

//! [context]
class GreetingContext : public AbstractInteractionContext {
public:
    GreetingContext()
        : AbstractInteractionContext(Tool)
    {
        setDescription("Press G for a greeting");
    }

    bool triggerEvent(InteractionManager*, const InteractionEvent& event) override
    {
        if (event.getCategory() != "greeting" || event.getEvent() != "trigger") {
            return false; // for the context below
        }
        std::puts("Hello from the context");
        return true;
    }
};
//! [context]

//! [main]
int main(int argc, char** argv)
{
    osg::osgInit(argc, argv);
    GreetingContext context;
    InteractionManager::getInstance()->addContext(&context);
    QtEventMapper mapper; // a viewport forwards its Qt events to it
    mapper.setInteractionManager(InteractionManager::getInstance());
    mapper.addKeyboardMapping(Qt::Key_G, Qt::NoModifier, "greeting", "Greet");

    const QKeyEvent press(QEvent::KeyPress, Qt::Key_G, Qt::NoModifier);
    const QKeyEvent release(QEvent::KeyRelease, Qt::Key_G, Qt::NoModifier);
    mapper.keyPressed(&press);
    const bool greeted = mapper.keyReleased(&release);
    InteractionManager::getInstance()->removeContext(&context);
    return greeted ? 0 : 1;
}
//! [main]
