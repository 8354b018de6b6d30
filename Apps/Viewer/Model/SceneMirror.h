// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/IdTable.h"
#include "Viewer/Model/PagedArray.h"
#include "Viewer/Model/SceneChanges.h"
#include "Viewer/Model/SceneTraversal.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quon::viewer {

/**
 * Follows a scene and says which geometry nodes are to be seen in it, without walking the whole scene again for every
 * edit.
 *
 * What is to be seen, where and with which material is what traverseScene() says. A change costs as much as the part of
 * the scene below the changed node, whatever the size of the rest.
 *
 * sceneChanged() has to hear of every edit, in order. Edits that nobody reported (in a scene whose edits are not all
 * bracketed) are found too, though not always at once: each update() compares some nodes with the scene, in turn.
 * References are not taken: handles are used as long as sceneChanged() did not hear of the end of their containers.
 */
class SceneMirror : private SceneVisitor {
public:
    /** Hears of the visible geometry nodes; must not call the mirror from inside. */
    class Listener {
    public:
        /** Whether a node and all below it count at all; asked again when the node or its attachments change. */
        virtual bool isWanted(const osg::NodePtr& node) = 0;

        /**
         * A geometry node is to be seen, or what is said of it is new.
         *
         * @param place a number that no other visible node has until geometryGone(); small, to count with
         */
        virtual void geometryShown(std::size_t place, const GeometryInstance& instance) = 0;

        /** A node that was shown is no longer to be seen, or no longer exists. */
        virtual void geometryGone(std::size_t place) = 0;

    protected:
        ~Listener() = default;
    };

    /** @param listener borrowed */
    explicit SceneMirror(Listener& listener);

    SceneMirror(const SceneMirror&) = delete;
    SceneMirror& operator=(const SceneMirror&) = delete;

    /** Notes what changed; the listener hears of it at the next update(). */
    void sceneChanged(const SceneChanges& changes);

    /** Whether changes were noted that update() has not looked at yet. */
    bool isOutOfDate() const { return m_root == osg::NullFC || !m_pending.empty(); }

    /**
     * Brings the listener up to date with the scene.
     *
     * @param root null shows nothing; another root than the last time begins afresh
     * @param mask as for traverseScene(); another one than the last time begins afresh
     */
    void update(const osg::NodePtr& root, osg::UInt32 mask);

    /** Lets go of the scene: everything shown is gone. */
    void clear();

    /** How many nodes an update() compares with the scene although nobody reported a change of them; 2000 at first. */
    void setChecksPerUpdate(std::size_t count) { m_checksPerUpdate = count; }

    /** The places of the nodes shown, in preorder. Walks through the whole scene; needs an update() before. */
    std::vector<std::size_t> findShownInOrder() const;

    /** How many nodes are followed. */
    std::size_t getNodeCount() const { return m_places.size(); }

private:
    static constexpr std::uint32_t None = IdTable::None;

    /** A node that a traversal reached. */
    struct Record {
        osg::NodePtr node;
        osg::UInt32 id = 0;
        std::uint32_t visit = 0; ///< the last traversal that came here
        std::uint64_t sum = 0;   ///< of what a traversal reads of the node and its core
        std::uint32_t parent = None;
        std::uint32_t firstChild = None;
        std::uint32_t previous = None; ///< siblings
        std::uint32_t next = None;
        bool used = false;
        bool open = false;    ///< all children are reached
        bool chooses = false; ///< a switch decides which children are reached
        bool shown = false;
        bool shownNow = false; ///< in the last traversal that came here
    };

    bool enterNode(const osg::NodePtr& node) override;
    void visitGeometry(const GeometryInstance& instance) override;

    std::uint32_t findPlace(const osg::UInt32 id) const { return m_places.find(id); }
    std::uint32_t addRecord(const osg::NodePtr& node, osg::UInt32 id);
    void link(std::uint32_t place, std::uint32_t parent);
    void unlink(std::uint32_t place);
    void remove(std::uint32_t place);
    void removeRecord(std::uint32_t place);
    void noteContainer(osg::UInt32 id, osg::BitVector mask);
    void checkNode(osg::UInt32 id, bool always);
    void checkSome();
    void traverse(const osg::NodePtr& node);
    void sweep(std::uint32_t place);
    bool isStillThere(const Record& record) const;
    std::uint64_t sumUp(const osg::NodePtr& node) const;
    std::uint64_t sumUpAbove(const osg::NodePtr& root) const;

    Listener& m_listener;
    osg::NodePtr m_root;
    osg::UInt32 m_rootId = 0;
    osg::UInt32 m_mask = 0;
    std::uint64_t m_sumAboveRoot = 0;
    PagedArray<Record> m_records;
    std::vector<std::uint32_t> m_free;
    IdTable m_places;                   ///< of the records by id of the node
    std::vector<osg::UInt32> m_pending; ///< ids of nodes to look at
    std::vector<std::uint32_t> m_stack; ///< to walk without recursion
    std::uint32_t m_visit = 0;
    std::uint32_t m_entered = None; ///< the record of the node that the traversal reached last
    std::size_t m_checksPerUpdate = 2000;
    std::size_t m_nextCheck = 0;
    osg::NodePtr m_inheritedParent; ///< whose children inherit the state below, during an update
    InheritedState m_inherited;
};

} // namespace quon::viewer
