// SPDX-License-Identifier: MIT
//
// Uses a class of each installed library and the translations. Ends with 0 when all answer as they should.
#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/QtEventMapper.h>
#include <Interaction/SelectionManager.h>

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>
#include <SceneUtilities/NodeUtils.h>
#include <Shortcut/koShortcut.h>

#include <Extensions/SceneExtensions.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleGeometry.h>

#include <QCoreApplication>
#include <QTranslator>

#include <cstdio>
#include <cstring>

using namespace quon;

namespace {

int failures = 0;

void expect(const bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "Consumer: %s\n", what);
        ++failures;
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    osg::osgInit(argc, argv);
#ifdef TRANSLATIONS
    QTranslator german;
    expect(german.load("kointeraction_de", TRANSLATIONS), "there are no translations");
    QCoreApplication::installTranslator(&german);
    const char* const group = "Interaktion";
#else
    const char* const group = "Interaction";
#endif
    {
        interaction::NodeSelectionModel* selection =
            interaction::SelectionManager::getInstance()->createSelectionModel("selection");
        interaction::BoxSelectionVisualisation boxes;
        selection->addVisualisation(&boxes);
        const osg::RefPtr<osg::NodePtr> part(osg::makeBox(1, 2, 3, 1, 1, 1));
        NodeUtils::setName(part.get(), "part", true);
        selection->addNode(part.get());
        expect(boxes.getVisualisation()->getNChildren() == 1, "a selected part has no box");

        interaction::QtEventMapper mapper;
        mapper.setInteractionManager(interaction::InteractionManager::getInstance());
        mapper.addKeyboardMapping(Qt::Key_F, Qt::NoModifier, "view:fit", "Fit all");
        // The services of the program and those that the library calls are the same.
        expect(koShortcut::getEntries().size() == 1, "the shortcut of the library is not in the registry");
        expect(koShortcut::getEntries().front().group == QString::fromUtf8(group), "the group is not translated");
        selection->removeVisualisation(&boxes);
    }
    auto* notifications = notification::NotificationManager::getInstance();
    notification::TextNotification* hint = notifications->createTextNotification("hint", "Click a part");
    expect(notifications->getNotifications().size() == 1, "no notification is shown");
    notifications->removeNotification(hint);
    return failures;
}
