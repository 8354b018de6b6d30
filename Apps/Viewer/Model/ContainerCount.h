// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseTypes.h>

#include <cstddef>

namespace quon::viewer {

/**
 * Counts the containers that are alive, a few at a time.
 *
 * No scene graph says how many there are: all ids that were ever given have to be asked for. With millions of parts
 * that takes longer than a frame may, so that each call goes on where the last one stopped.
 */
class ContainerCount {
public:
    /**
     * Asks for the next ids.
     *
     * @param ids how many at most
     * @return whether a count was completed by this call
     */
    bool proceed(std::size_t ids);

    /** Whether a count was completed since the beginning. */
    bool isKnown() const { return m_known; }

    /** Returns the last completed count, prototypes of types left out; 0 before. */
    std::size_t getCount() const { return m_count; }

private:
    bool m_known = false;
    std::size_t m_count = 0;
    std::size_t m_soFar = 0;
    osg::UInt32 m_next = 0; ///< 0: a new count begins
    osg::UInt32 m_end = 0;
};

} // namespace quon::viewer
