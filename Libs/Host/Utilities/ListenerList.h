// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace quon {

/**
 * Borrowed listeners in order of addition.
 *
 * While the listeners are being called they may be added and removed: one that was removed meanwhile is not called any
 * more, one that was added meanwhile is called from the next time on.
 *
 * Calling the listeners takes no memory and fails only where a listener does.
 */
template <typename Listener>
class ListenerList {
public:
    /** Appends @p listener. Null is ignored, and so is a listener that is there already. */
    void add(Listener* listener)
    {
        if (listener != nullptr && !has(listener)) {
            m_listeners.push_back(listener);
        }
    }

    /** Removes @p listener. Null is ignored, and so is an unknown listener. */
    void remove(Listener* listener)
    {
        // The places stay while anybody is on the way through them.
        std::replace(m_listeners.begin(), m_listeners.end(), listener, static_cast<Listener*>(nullptr));
        closeGaps();
    }

    /** Hands each listener to @p call, which returns whether to go on with the next one. */
    template <typename Call>
    void callWhile(Call call) const
    {
        const Walk walk(*this);
        const std::size_t end = m_listeners.size();
        for (std::size_t place = 0; place < end; ++place) {
            if (m_listeners[place] != nullptr && !call(*m_listeners[place])) {
                return;
            }
        }
    }

private:
    struct Walk {
        explicit Walk(const ListenerList& walked)
            : list(walked)
        {
            ++list.m_walks;
        }
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;
        ~Walk()
        {
            --list.m_walks;
            list.closeGaps();
        }

        const ListenerList& list;
    };

    bool has(const Listener* listener) const
    {
        return std::find(m_listeners.begin(), m_listeners.end(), listener) != m_listeners.end();
    }

    void closeGaps() const
    {
        if (m_walks == 0) {
            m_listeners.erase(std::remove(m_listeners.begin(), m_listeners.end(), nullptr), m_listeners.end());
        }
    }

    // Null: removed during a walk that has not ended.
    mutable std::vector<Listener*> m_listeners;
    mutable int m_walks = 0;
};

} // namespace quon
