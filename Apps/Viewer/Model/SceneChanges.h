// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseTypes.h>

#include <utility>
#include <vector>

namespace quon::viewer {

/**
 * What happened to the scene since somebody last asked: changed containers with the union of their field masks, and
 * destroyed ones.
 *
 * The scene graph writes every edit into the change list of its thread and never empties it; the host has to. Taking
 * the changes is what empties the list, so there is one place in a host that takes and passes them on.
 */
class SceneChanges {
public:
    /** Lets the scene graph record changes from now on, which it does not by itself. Needs a started scene graph. */
    static void startRecording();

    /**
     * Keeps changes from being recorded while it lives, for work on containers that nobody knows yet: who is told later
     * about where they were put looks at them anew anyway. Recording goes on afterwards, whether it did before or not.
     */
    class Pause {
    public:
        Pause();
        ~Pause();

        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;
    };

    /** Returns the changes recorded in this thread, with those gathered before, and empties the list. */
    static SceneChanges take();

    /**
     * Puts the changes recorded in this thread aside for take(), an entry for each container, and empties the list.
     *
     * For use in the middle of long work: a million new selection boxes leave half a gigabyte of records otherwise.
     * From one call to the next nobody may look at the scene without a take(): what came into being in between is left
     * out by the second call, but for nodes with a parent that was there before, for which all fields are named. Who
     * looks later finds the others with those. Nodes of which only the volume was calculated are left out as well.
     */
    static void gather();

    using Changed = std::vector<std::pair<osg::UInt32, osg::BitVector>>;

    /** Makes one entry for each id of what was recorded: ascending, with all its fields; none for an empty mask. */
    static Changed merge(Changed::const_iterator begin, Changed::const_iterator end);

    /** The ids of the changed containers, ascending and each once, with their changed fields. */
    const Changed& getChanged() const { return m_changed; }
    const std::vector<osg::UInt32>& getDestroyed() const { return m_destroyed; }

    bool isEmpty() const { return m_changed.empty() && m_destroyed.empty(); }

private:
    Changed m_changed;
    std::vector<osg::UInt32> m_destroyed;
};

/** Somebody who keeps a picture of the scene and has to know when it goes stale. */
class SceneChangeListener {
public:
    virtual void sceneChanged(const SceneChanges& changes) = 0;

protected:
    ~SceneChangeListener() = default;
};

} // namespace quon::viewer
