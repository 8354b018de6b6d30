// SPDX-License-Identifier: MIT
#include "Viewer/Model/SceneMirror.h"

#include <Extensions/SceneExtensions.h>

#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGTransform.h>

#include <algorithm>
#include <cstring>

namespace quon::viewer {

namespace {

// What a traversal reads of a node, together with the attachments that its listener may read.
const osg::BitVector NodeFields = osg::Node::TravMaskFieldMask | osg::Node::ParentFieldMask | osg::Node::CoreFieldMask |
                                  osg::AttachmentContainer::AttachmentsFieldMask;

class Sum {
public:
    void add(const std::uint64_t value)
    {
        m_value = (m_value ^ value) * 0x9E3779B97F4A7C15U;
        m_value ^= m_value >> 29U;
    }

    template <class Pointer>
    void addId(const Pointer& container)
    {
        add(container == osg::NullFC ? 0 : osg::getContainerId(container));
    }

    void add(const osg::Matrix& matrix)
    {
        const osg::Real32* values = matrix.getValues();
        for (std::size_t i = 0; i < 16; i += 2) {
            std::uint64_t two = 0;
            std::memcpy(&two, values + i, sizeof two);
            add(two);
        }
    }

    std::uint64_t get() const { return m_value; }

private:
    std::uint64_t m_value = 0x243F6A8885A308D3U;
};

void addCore(Sum& sum, const osg::NodePtr& node)
{
    const osg::NodeCorePtr core = node->getCore();
    sum.addId(core);
    switch (getCoreKind(core)) {
    case CoreKind::Transform:
        sum.add(osg::TransformPtr::dcast(core)->getMatrix());
        break;
    case CoreKind::MaterialGroup:
        sum.addId(osg::MaterialGroupPtr::dcast(core)->getMaterial());
        break;
    case CoreKind::Switch: {
        // Which child has the number changes with all that come and go in front of it.
        const osg::Int32 choice = osg::SwitchPtr::dcast(core)->getChoice();
        const osg::UInt32 children = node->getNChildren();
        sum.add(static_cast<std::uint64_t>(choice));
        sum.add(children);
        if (choice >= 0 && static_cast<osg::UInt32>(choice) < children) {
            sum.addId(node->getChild(static_cast<osg::UInt32>(choice)));
        }
        break;
    }
    case CoreKind::Geometry: {
        const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(core);
        sum.addId(geometry->getMaterial());
        sum.add(extensions::getOverwriteMaterial(geometry) ? 1 : 0);
        sum.addId(geometry->getTypes());
        sum.addId(geometry->getLengths());
        sum.addId(geometry->getPositions());
        sum.addId(geometry->getNormals());
        sum.addId(geometry->getColors());
        sum.addId(geometry->getTexCoords());
        sum.addId(geometry->getIndices());
        break;
    }
    case CoreKind::Other:
        break;
    }
}

osg::NodePtr findNode(const osg::UInt32 id)
{
    const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
    return container == osg::NullFC || !container->getType().isNode() ? osg::NodePtr(osg::NullFC)
                                                                      : osg::NodePtr::dcast(container);
}

} // namespace

SceneMirror::SceneMirror(Listener& listener)
    : m_listener(listener)
{}

void SceneMirror::sceneChanged(const SceneChanges& changes)
{
    if (m_root == osg::NullFC) {
        return;
    }
    for (const osg::UInt32 id : changes.getDestroyed()) {
        const std::uint32_t place = findPlace(id);
        if (place != None) {
            remove(place);
        }
    }
    for (const auto& [id, mask] : changes.getChanged()) {
        noteContainer(id, mask);
    }
    // What is above the root is not followed; an update looks at it.
    const osg::NodePtr root = findNode(m_rootId);
    if (root != osg::NullFC && root->getParent() != osg::NullFC && !changes.isEmpty()) {
        m_pending.push_back(m_rootId);
    }
}

void SceneMirror::noteContainer(const osg::UInt32 id, const osg::BitVector mask)
{
    if (const std::uint32_t place = findPlace(id); place != None) {
        if ((mask & NodeFields) != 0 || m_records[place].chooses) {
            m_pending.push_back(id);
        }
        return;
    }
    const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
    if (container == osg::NullFC) {
        return;
    }
    if (container->getType().isNode()) {
        // Whoever comes into the scene gets a parent in it, or is below one who does.
        const osg::NodePtr node = osg::NodePtr::dcast(container);
        const osg::NodePtr parent =
            (mask & osg::Node::ParentFieldMask) != 0 ? node->getParent() : osg::NodePtr(osg::NullFC);
        if (parent != osg::NullFC && findPlace(osg::getContainerId(parent)) != None) {
            m_pending.push_back(id);
        }
    } else if (container->getType().isNodeCore() && (mask & ~osg::NodeCore::ParentsFieldMask) != 0) {
        const osg::NodeCorePtr core = osg::NodeCorePtr::dcast(container);
        const auto& nodes = core->getParents();
        for (osg::UInt32 i = 0; i < nodes.size(); ++i) {
            const osg::UInt32 user = osg::getContainerId(nodes[i]);
            if (findPlace(user) != None) {
                m_pending.push_back(user);
            }
        }
    }
}

void SceneMirror::update(const osg::NodePtr& root, const osg::UInt32 mask)
{
    m_inheritedParent = osg::NullFC;
    if (root == osg::NullFC) {
        clear();
        return;
    }
    const osg::UInt32 rootId = osg::getContainerId(root);
    if (m_root != root || m_rootId != rootId || m_mask != mask) {
        clear();
        m_root = root;
        m_rootId = rootId;
        m_mask = mask;
        m_sumAboveRoot = sumUpAbove(root);
        traverse(root);
        return;
    }
    if (const std::uint64_t sum = sumUpAbove(root); sum != m_sumAboveRoot) {
        m_sumAboveRoot = sum;
        checkNode(rootId, true);
    }
    // By index: what is found may add to it.
    for (std::size_t i = 0; i < m_pending.size(); ++i) {
        checkNode(m_pending[i], false);
    }
    m_pending.clear();
    checkSome();
    m_inheritedParent = osg::NullFC;
}

void SceneMirror::clear()
{
    for (std::size_t place = 0; place < m_records.size(); ++place) {
        if (m_records[place].used && m_records[place].shown) {
            m_listener.geometryGone(place);
        }
    }
    m_records.clear();
    m_free.clear();
    m_places.clear();
    m_pending.clear();
    m_root = osg::NullFC;
    m_rootId = 0;
}

std::vector<std::size_t> SceneMirror::findShownInOrder() const
{
    std::vector<std::size_t> places;
    std::vector<osg::NodePtr> pending;
    if (m_root != osg::NullFC) {
        pending.push_back(m_root);
    }
    while (!pending.empty()) {
        const osg::NodePtr node = pending.back();
        pending.pop_back();
        const std::uint32_t place = findPlace(osg::getContainerId(node));
        if (place == None) {
            continue;
        }
        if (m_records[place].shown) {
            places.push_back(place);
        }
        for (osg::UInt32 i = node->getNChildren(); i > 0; --i) {
            pending.push_back(node->getChild(i - 1));
        }
    }
    return places;
}

void SceneMirror::checkNode(const osg::UInt32 id, const bool always)
{
    const osg::NodePtr node = findNode(id);
    const std::uint32_t place = findPlace(id);
    if (node == osg::NullFC) {
        if (place != None) {
            remove(place);
        }
        return;
    }
    if (id == m_rootId) {
        if (always || place == None || m_records[place].sum != sumUp(node)) {
            traverse(node);
        }
        return;
    }
    const osg::NodePtr parentNode = node->getParent();
    const std::uint32_t parent = parentNode == osg::NullFC ? None : findPlace(osg::getContainerId(parentNode));
    // Below a switch those that are chosen are known, and a new choice makes the switch itself known as changed.
    const bool stays = place != None && m_records[place].parent == parent;
    const bool isReached = stays || (parent != None && m_records[parent].open);
    if (stays && !always && m_records[place].sum == sumUp(node)) {
        return;
    }
    if (place != None && !isReached) {
        remove(place);
    }
    if (isReached) {
        traverse(node);
    }
}

void SceneMirror::checkSome()
{
    const std::size_t count = std::min(m_checksPerUpdate, m_records.size());
    for (std::size_t i = 0; i < count; ++i) {
        m_nextCheck = m_nextCheck + 1 < m_records.size() ? m_nextCheck + 1 : 0;
        const Record& record = m_records[m_nextCheck];
        if (record.used && !isStillThere(record)) {
            checkNode(record.id, false);
        }
    }
}

bool SceneMirror::isStillThere(const Record& record) const
{
    const osg::NodePtr node = findNode(record.id);
    if (node == osg::NullFC) {
        return false;
    }
    const osg::NodePtr parent = node->getParent();
    const bool stays =
        record.id == m_rootId || (parent != osg::NullFC && record.parent == findPlace(osg::getContainerId(parent)));
    return stays && record.sum == sumUp(node);
}

void SceneMirror::traverse(const osg::NodePtr& node)
{
    ++m_visit;
    m_entered = None;
    const osg::NodePtr parent = node->getParent();
    // Many new nodes at once mostly have the same parent.
    if (parent == osg::NullFC || m_inheritedParent != parent) {
        m_inherited = InheritedState::find(node);
        m_inheritedParent = parent;
    }
    traverseScene(node, m_inherited, m_mask, *this);
    sweep(findPlace(osg::getContainerId(node)));
}

bool SceneMirror::enterNode(const osg::NodePtr& node)
{
    const osg::UInt32 id = osg::getContainerId(node);
    std::uint32_t parent = None;
    if (id != m_rootId) {
        const osg::UInt32 parentId = osg::getContainerId(node->getParent());
        // In preorder the parent is mostly the node before, or the parent of that.
        if (m_entered != None && m_records[m_entered].id == parentId) {
            parent = m_entered;
        } else if (m_entered != None && m_records[m_entered].parent != None &&
                   m_records[m_records[m_entered].parent].id == parentId) {
            parent = m_records[m_entered].parent;
        } else {
            parent = findPlace(parentId);
        }
    }
    std::uint32_t place = findPlace(id);
    if (place == None) {
        place = addRecord(node, id);
        link(place, parent);
    } else if (m_records[place].parent != parent) {
        unlink(place);
        link(place, parent);
    }
    const bool isWanted = m_listener.isWanted(node);
    Record& record = m_records[place];
    record.visit = m_visit;
    record.sum = sumUp(node);
    record.shownNow = false;
    record.chooses = getCoreKind(node->getCore()) == CoreKind::Switch;
    record.open = isWanted && (node->getTravMask() & m_mask) != 0 && !record.chooses;
    m_entered = place;
    return isWanted;
}

void SceneMirror::visitGeometry(const GeometryInstance& instance)
{
    Record& record = m_records[m_entered];
    record.shown = true;
    record.shownNow = true;
    m_listener.geometryShown(m_entered, instance);
}

/// Removes what the last traversal no longer reached from here down.
void SceneMirror::sweep(const std::uint32_t place)
{
    std::vector<std::uint32_t> pending{place};
    while (!pending.empty()) {
        const std::uint32_t current = pending.back();
        pending.pop_back();
        Record& record = m_records[current];
        if (record.shown && !record.shownNow) {
            record.shown = false;
            m_listener.geometryGone(current);
        }
        for (std::uint32_t child = record.firstChild; child != None;) {
            const std::uint32_t next = m_records[child].next;
            if (m_records[child].visit == m_visit) {
                pending.push_back(child);
            } else {
                remove(child);
            }
            child = next;
        }
    }
}

void SceneMirror::remove(const std::uint32_t place)
{
    if (m_records[place].id == m_rootId) {
        clear();
        return;
    }
    unlink(place);
    m_stack.assign(1, place);
    while (!m_stack.empty()) {
        const std::uint32_t current = m_stack.back();
        m_stack.pop_back();
        for (std::uint32_t child = m_records[current].firstChild; child != None; child = m_records[child].next) {
            m_stack.push_back(child);
        }
        removeRecord(current);
    }
}

void SceneMirror::removeRecord(const std::uint32_t place)
{
    if (m_records[place].shown) {
        m_listener.geometryGone(place);
    }
    m_places.erase(m_records[place].id);
    m_records[place] = Record();
    m_free.push_back(place);
}

std::uint32_t SceneMirror::addRecord(const osg::NodePtr& node, const osg::UInt32 id)
{
    std::uint32_t place = 0;
    if (m_free.empty()) {
        place = static_cast<std::uint32_t>(m_records.size());
        m_records.growTo(m_records.size() + 1);
    } else {
        place = m_free.back();
        m_free.pop_back();
    }
    Record& record = m_records[place];
    record.node = node;
    record.id = id;
    record.used = true;
    m_places.set(id, place);
    return place;
}

void SceneMirror::link(const std::uint32_t place, const std::uint32_t parent)
{
    Record& record = m_records[place];
    record.parent = parent;
    if (parent == None) {
        return;
    }
    record.next = m_records[parent].firstChild;
    if (record.next != None) {
        m_records[record.next].previous = place;
    }
    m_records[parent].firstChild = place;
}

void SceneMirror::unlink(const std::uint32_t place)
{
    Record& record = m_records[place];
    if (record.previous != None) {
        m_records[record.previous].next = record.next;
    } else if (record.parent != None) {
        m_records[record.parent].firstChild = record.next;
    }
    if (record.next != None) {
        m_records[record.next].previous = record.previous;
    }
    record.parent = record.previous = record.next = None;
}

std::uint64_t SceneMirror::sumUp(const osg::NodePtr& node) const
{
    Sum sum;
    sum.add(node->getTravMask());
    sum.add(m_listener.isWanted(node) ? 1 : 0);
    addCore(sum, node);
    return sum.get();
}

std::uint64_t SceneMirror::sumUpAbove(const osg::NodePtr& root) const
{
    Sum sum;
    for (osg::NodePtr node = root->getParent(); node != osg::NullFC; node = node->getParent()) {
        sum.addId(node);
        addCore(sum, node);
    }
    return sum.get();
}

} // namespace quon::viewer
