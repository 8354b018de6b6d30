// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <vector>

namespace quon {

/**
 * Borrowed listeners in order of addition.
 *
 * While the listeners are being called they may be added and removed: one that was removed meanwhile is not called any
 * more, one that was added meanwhile is called from the next time on.
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
        m_listeners.erase(std::remove(m_listeners.begin(), m_listeners.end(), listener), m_listeners.end());
    }

    /** Hands each listener to @p call, which returns whether to go on with the next one. */
    template <typename Call>
    void callWhile(Call call) const
    {
        // Over a copy: the listeners may change while they are called.
        const std::vector<Listener*> listeners = m_listeners;
        for (Listener* listener : listeners) {
            if (has(listener) && !call(*listener)) {
                return;
            }
        }
    }

private:
    bool has(const Listener* listener) const
    {
        return std::find(m_listeners.begin(), m_listeners.end(), listener) != m_listeners.end();
    }

    std::vector<Listener*> m_listeners;
};

} // namespace quon
