// SPDX-License-Identifier: MIT
//
// The thirteen functions that the library calls.
#include <Notification/NotificationManager.h>
#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koMaterials.h>
#include <SceneUtilities/koNodeUtils.h>
#include <SceneUtilities/koUberCameraUtils.h>
#include <Shortcut/koShortcut.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGSimpleAttachments.h>

#include <cstring>

namespace quon::notification {

NotificationManager* NotificationManager::getInstance()
{
    static NotificationManager manager;
    return &manager;
}

TextNotification* NotificationManager::createTextNotification(const std::string&, const std::string& text)
{
    m_notifications.emplace_back(text);
    return &m_notifications.back();
}

void NotificationManager::removeNotification(Notification* notification)
{
    m_notifications.remove_if([&](const TextNotification& each) { return &each == notification; });
}

std::string NotificationManager::getStatusLine() const
{
    return m_notifications.empty() ? std::string() : m_notifications.back().getText();
}

void TextNotification::setText(const std::string& text)
{
    m_text = text;
}

} // namespace quon::notification

void NodeUtils::setName(const osg::NodePtr& node, const std::string& name, bool)
{
    osg::setName(node, name);
}

void koMaterials::setName(const osg::MaterialPtr& material, const std::string& name, bool)
{
    osg::setName(material, name);
}

void koNodeUtils::setIsAuxiliaryNode(const osg::NodePtr&, bool)
{
    // Nobody asks for it in this host.
}

bool koNodeUtils::isEditable(const osg::NodePtr& node)
{
    const char* name = osg::getName(node);
    return name == nullptr || std::strncmp(name, "fixed", 5) != 0;
}

bool koUberCameraUtils::isUberCamera(const osg::NodePtr&)
{
    return false;
}

std::map<std::pair<int, int>, QString>& koShortcut::getKeys()
{
    static std::map<std::pair<int, int>, QString> keys;
    return keys;
}

void koShortcut::addKey(const QString& group, const int key, const int modifiers, const QString& description)
{
    getKeys()[{key, modifiers}] = group + QStringLiteral(": ") + description;
}

void koShortcut::subKey(const QString&, const int key, const int modifiers)
{
    getKeys().erase({key, modifiers});
}

void koShortcut::addMouseButton(const QString&, int, int, const QString&)
{
    // The help page of this host lists keys only.
}

void koShortcut::subMouseButton(const QString&, int, int) {}
