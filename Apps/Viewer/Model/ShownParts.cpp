// SPDX-License-Identifier: MIT
#include "Viewer/Model/ShownParts.h"

#include "Viewer/Model/Part.h"

#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGSwitch.h>

#include <algorithm>

namespace quon::viewer {

namespace {

constexpr osg::UInt32 AllBits = 0xFFFFFFFF;

bool contains(const std::vector<osg::UInt32>& sortedIds, const osg::UInt32 id)
{
    return std::binary_search(sortedIds.begin(), sortedIds.end(), id);
}

} // namespace

void ShownParts::setRoot(const osg::NodePtr& root)
{
    forget();
    m_root = root;
}

const std::vector<osg::NodePtr>& ShownParts::get()
{
    if (!m_listed) {
        forget();
        ++m_walkCount;
        traverseScene(m_root, AllBits, *this);
        std::sort(m_nodeIds.begin(), m_nodeIds.end());
        std::sort(m_switchIds.begin(), m_switchIds.end());
        m_listed = true;
    }
    return m_parts;
}

void ShownParts::sceneChanged(const SceneChanges& changes)
{
    if (!m_listed) {
        return;
    }
    const osg::BitVector nodeFields = osg::Node::TravMaskFieldMask | osg::Node::ChildrenFieldMask |
                                      osg::Node::CoreFieldMask | osg::AttachmentContainer::AttachmentsFieldMask;
    for (const auto& [id, mask] : changes.getChanged()) {
        if (((mask & nodeFields) != 0 && contains(m_nodeIds, id)) ||
            ((mask & osg::Switch::ChoiceFieldMask) != 0 && contains(m_switchIds, id))) {
            forget();
            return;
        }
    }
}

void ShownParts::forget()
{
    m_listed = false;
    m_parts.clear();
    m_partIds.clear();
    m_nodeIds.clear();
    m_switchIds.clear();
}

bool ShownParts::enterNode(const osg::NodePtr& node)
{
    m_nodeIds.push_back(osg::getContainerId(node));
    const osg::NodeCorePtr core = node->getCore();
    if (getCoreKind(core) == CoreKind::Switch) {
        m_switchIds.push_back(osg::getContainerId(core));
    }
    return !koNodeUtils::isAuxiliaryNode(node);
}

void ShownParts::visitGeometry(const GeometryInstance& instance)
{
    const osg::NodePtr part = findPart(instance.node);
    if (m_partIds.insert(osg::getContainerId(part)).second) {
        m_parts.push_back(part);
    }
}

} // namespace quon::viewer
