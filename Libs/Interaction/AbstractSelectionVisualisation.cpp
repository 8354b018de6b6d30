// SPDX-License-Identifier: MIT
#include <Interaction/AbstractSelectionVisualisation.h>

#include <Extensions/SceneExtensions.h>

#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGroup.h>

#include "NewContainer.h"
#include "SpareNodes.h"

#include <cstdio>
#include <iterator>
#include <map>

namespace quon::interaction {

namespace {

using Entries = std::map<unsigned int, osg::RefPtr<osg::NodePtr>>;

// What a hundred thousand nodes leave that are deselected: 6 MB.
using SpareEntries = SpareNodes<Entries, 100000>;

constexpr osg::UInt32 shownMask = 0xFFFFFFFF;
constexpr osg::UInt32 hiddenMask = 0;

bool isShown(const osg::NodePtr& node)
{
    return node->getTravMask() == shownMask;
}

void setTravMask(const osg::NodePtr& node, osg::UInt32 mask)
{
    const osg::CPEditor edit(node, osg::Node::TravMaskFieldMask);
    node->setTravMask(mask);
}

// The node of an id, null when it no longer exists. An id that was read through the handle of a destroyed node may be
// that of any container.
osg::NodePtr resolve(unsigned int id)
{
    return osg::NodePtr::dcast(osg::FieldContainerFactory::the()->getContainer(id));
}

void prefetch([[maybe_unused]] const osg::FieldContainer& container)
{
#ifdef __GNUC__
    // What an update reads of a node is in the first two lines of the processor's cache.
    const char* const memory = reinterpret_cast<const char*>(&container);
    __builtin_prefetch(memory);
    __builtin_prefetch(memory + 64);
#endif
}

// The entry that a walk over all entries is at: updateNode(), which it calls, need not look for it.
struct Visited {
    const AbstractSelectionVisualisation* visualisation;
    Entries::value_type* entry;
};
thread_local Visited visited = {nullptr, nullptr};

// How often entries were taken out: places that were found before a hook was called may be gone after it.
thread_local unsigned int removals = 0;

void forgetVisited()
{
    visited.visualisation = nullptr;
}

void forgetPlaces()
{
    forgetVisited();
    ++removals;
}

// Goes through the entries of a visualisation whose nodes are to be updated.
class EntryWalk {
public:
    EntryWalk(const AbstractSelectionVisualisation* visualisation, Entries& entries)
        : m_visualisation(visualisation)
        , m_entries(entries)
        , m_entry(entries.begin())
    {
        visit();
    }
    EntryWalk(const EntryWalk&) = delete;
    EntryWalk& operator=(const EntryWalk&) = delete;
    ~EntryWalk() { forgetVisited(); }

    bool isAtEnd() const { return m_entry == m_entries.end(); }

    // The node of the entry, null when it no longer exists.
    osg::NodePtr getNode() const { return resolve(m_id); }

    void goOn()
    {
        // Whatever was done to the entry, or to others of this thread, made the visited one be forgotten.
        const bool isThere = visited.visualisation == m_visualisation;
        m_entry = isThere ? std::next(m_entry) : m_entries.upper_bound(m_id);
        visit();
    }

private:
    void visit()
    {
        if (isAtEnd()) {
            return;
        }
        if (m_fetched == 0) {
            fetch();
        }
        --m_fetched;
        m_id = m_entry->first;
        visited = {m_visualisation, &*m_entry};
    }

    // What several entries lead to comes from memory in the time of one, where it is scattered.
    void fetch()
    {
        constexpr int together = 8;
        auto entry = m_entry;
        while (m_fetched < together && entry != m_entries.end()) {
            const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(entry->first);
            if (container != osg::NullFC) {
                prefetch(*container);
            }
            const osg::RefPtr<osg::NodePtr>& visualisation = entry->second;
            if (visualisation != osg::NullFC && visualisation->getCore() != osg::NullFC) {
                prefetch(*visualisation->getCore());
            }
            ++entry;
            ++m_fetched;
        }
    }

    const AbstractSelectionVisualisation* m_visualisation;
    Entries& m_entries;
    Entries::iterator m_entry;
    unsigned int m_id = 0;
    int m_fetched = 0;
};

} // namespace

AbstractSelectionVisualisation::AbstractSelectionVisualisation()
{
    m_visualisation = osg::Node::create();
    const NewContainer<osg::GroupPtr> group(osg::Group::create());
    const osg::CPEditor edit(m_visualisation, osg::Node::CoreFieldMask);
    m_visualisation->setCore(group.get());
}

// The members go in reverse order: first the visualisation nodes, then the root.
AbstractSelectionVisualisation::~AbstractSelectionVisualisation() = default;

void AbstractSelectionVisualisation::setVisible(bool visible)
{
    const osg::NodePtr root = m_visualisation.get();
    if (isShown(root) == visible) {
        return;
    }
    setTravMask(root, visible ? shownMask : hiddenMask);
    if (!visible) {
        return;
    }
    for (EntryWalk walk(this, m_nodeVisualisations); !walk.isAtEnd(); walk.goOn()) {
        const osg::NodePtr node = walk.getNode();
        if (node == osg::NullFC) {
            // Without the id and for every entry, unlike the message of removeAllNodes().
            std::fprintf(stderr, "AbstractSelectionVisualisation::setVisible: invalid node pointer!\n");
            continue;
        }
        updateNode(node);
    }
}

bool AbstractSelectionVisualisation::isVisible() const
{
    return m_visualisation->getTravMask() == shownMask;
}

osg::NodePtr AbstractSelectionVisualisation::getVisualisation()
{
    return m_visualisation.get();
}

void AbstractSelectionVisualisation::addNode(const osg::NodePtr& node)
{
    if (node == osg::NullFC) {
        return;
    }
    const unsigned int id = osg::getContainerId(node);
    auto position = m_nodeVisualisations.lower_bound(id);
    bool isTracked = position != m_nodeVisualisations.end() && position->first == id;
    const bool isWanted = isVisible() && shouldHaveVisualization(node);

    if (!isWanted) {
        if (!isTracked) {
            SpareEntries::instance().insert(m_nodeVisualisations, position, id);
        }
        return;
    }
    if (isTracked && position->second != osg::NullFC) {
        // The mask is left alone: only updateNode() shows and hides.
        updateVisualisation(node, position->second.get());
        return;
    }

    const unsigned int removalsBefore = removals;
    const osg::NodePtr visualisation = createVisualisation(node);
    if (removals != removalsBefore) {
        position = m_nodeVisualisations.lower_bound(id);
        isTracked = position != m_nodeVisualisations.end() && position->first == id;
    }
    auto place = m_nodeVisualisations.end();
    try {
        // Nodes that the hook added meanwhile do not disturb the hint.
        place = isTracked ? position : SpareEntries::instance().insert(m_nodeVisualisations, position, id);
        place->second = visualisation;
        if (visualisation->getParent() != m_visualisation) {
            attach(visualisation);
        }
    } catch (...) {
        const osg::RefPtr<osg::NodePtr> unwanted(visualisation);
        removeVisualisation(node, visualisation);
        if (place != m_nodeVisualisations.end()) {
            place->second = osg::NullFC;
            if (!isTracked) {
                SpareEntries::instance().eraseEntry(m_nodeVisualisations, place);
            }
        }
        throw;
    }
    setTravMask(visualisation, isShown(node) ? shownMask : hiddenMask);
}

void AbstractSelectionVisualisation::removeNode(const osg::NodePtr& node)
{
    if (node == osg::NullFC || m_nodeVisualisations.empty()) {
        return;
    }
    const auto position = m_nodeVisualisations.find(osg::getContainerId(node));
    if (position == m_nodeVisualisations.end()) {
        return;
    }
    // Not const: releasing the last reference writes null into the very handle that is passed.
    osg::NodePtr visualisation = position->second.get();
    if (visualisation != osg::NullFC) {
        removeVisualisation(node, visualisation);
        const osg::CPEditor edit(m_visualisation, osg::Node::ChildrenFieldMask);
        m_visualisation->subChild(visualisation);
    }
    forgetPlaces();
    SpareEntries::instance().eraseEntry(m_nodeVisualisations, position);
}

void AbstractSelectionVisualisation::updateNode(const osg::NodePtr& node)
{
    if (node == osg::NullFC || !isVisible()) {
        return;
    }
    const unsigned int id = osg::getContainerId(node);
    Entries::value_type* entry = visited.entry;
    if (visited.visualisation != this || entry->first != id) {
        const auto position = m_nodeVisualisations.find(id);
        if (position == m_nodeVisualisations.end()) {
            return;
        }
        entry = &*position;
    }
    const osg::NodePtr visualisation = entry->second.get();

    if (!isShown(node) || !shouldHaveVisualization(node)) {
        if (visualisation != osg::NullFC && isShown(visualisation)) {
            setTravMask(visualisation, hiddenMask);
        }
        return;
    }
    if (visualisation == osg::NullFC) {
        const unsigned int removalsBefore = removals;
        const osg::NodePtr created = createVisualisation(node);
        if (removals != removalsBefore) {
            const auto position = m_nodeVisualisations.find(id);
            if (position == m_nodeVisualisations.end()) {
                // The hook took the node out: so it stays.
                const osg::RefPtr<osg::NodePtr> unwanted(created);
                removeVisualisation(node, created);
                return;
            }
            entry = &*position;
        }
        entry->second = created;
        try {
            // Unlike addNode() without a look at the parent: one that is under the root already moves to the end.
            attach(created);
        } catch (...) {
            removeVisualisation(node, created);
            entry->second = osg::NullFC;
            throw;
        }
        setTravMask(created, shownMask);
        return;
    }
    if (!isShown(visualisation)) {
        setTravMask(visualisation, shownMask);
    }
    updateVisualisation(node, visualisation);
}

bool AbstractSelectionVisualisation::hasNode(const osg::NodePtr& node) const
{
    return node != osg::NullFC && m_nodeVisualisations.find(osg::getContainerId(node)) != m_nodeVisualisations.end();
}

void AbstractSelectionVisualisation::updateAllNodes()
{
    if (!isVisible()) {
        return;
    }
    for (EntryWalk walk(this, m_nodeVisualisations); !walk.isAtEnd(); walk.goOn()) {
        const osg::NodePtr node = walk.getNode();
        if (node != osg::NullFC) {
            updateNode(node);
        }
    }
}

void AbstractSelectionVisualisation::removeAllNodes()
{
    for (const auto& entry : m_nodeVisualisations) {
        if (entry.second == osg::NullFC) {
            continue;
        }
        const osg::NodePtr node = resolve(entry.first);
        if (node == osg::NullFC) {
            // With the id and only for entries that have a visualisation node, unlike the message of setVisible().
            std::fprintf(stderr, "AbstractSelectionVisualisation::removeAllNodes: invalid node pointer (%u)!\n",
                         entry.first);
            continue;
        }
        removeVisualisation(node, entry.second.get());
    }
    {
        const osg::CPEditor edit(m_visualisation, osg::Node::ChildrenFieldMask);
        extensions::clearChildren(m_visualisation);
    }
    forgetPlaces();
    SpareEntries::clearEntries(m_nodeVisualisations);
}

bool AbstractSelectionVisualisation::shouldHaveVisualization(const osg::NodePtr&) const
{
    return true;
}

void AbstractSelectionVisualisation::attach(const osg::NodePtr& visualisation)
{
    const osg::CPEditor edit(m_visualisation, osg::Node::ChildrenFieldMask);
    m_visualisation->addChild(visualisation);
}

} // namespace quon::interaction
