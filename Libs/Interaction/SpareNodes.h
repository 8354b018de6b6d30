// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace quon::interaction {

/**
 * Keeps the nodes of set or map elements that were erased or cleared for those that are inserted next. Not installed.
 *
 * Taking an element out and putting one in then asks the heap for nothing, and does not scatter the memory of long
 * sets. One store for all containers of a type, at most @p Limit nodes: what is more goes back to the heap.
 */
template <class Container, std::size_t Limit>
class SpareNodes {
public:
    using Node = typename Container::node_type;

    /** Never destroyed: containers with static storage may outlive every other object of their source file. */
    static SpareNodes& instance()
    {
        static SpareNodes* const spareNodes = new SpareNodes;
        return *spareNodes;
    }

    /** Inserts @p value into a set; false when it was there. */
    bool insert(Container& container, const typename Container::value_type& value)
    {
        if (getCount() == 0) {
            return container.insert(value).second;
        }
        Node node = takeNode();
        node.value() = value;
        auto result = container.insert(std::move(node));
        keep(std::move(result.node));
        return result.inserted;
    }

    /** Inserts @p key with an empty value in front of @p hint into a map, unless it is there; returns its place. */
    template <class Key>
    typename Container::iterator insert(Container& container, typename Container::iterator hint, const Key& key)
    {
        if (getCount() == 0) {
            return container.emplace_hint(hint, key, typename Container::mapped_type());
        }
        Node node = takeNode();
        node.key() = key;
        const auto place = container.insert(hint, std::move(node));
        // The map left it here when the key was there.
        keep(std::move(node)); // NOLINT(bugprone-use-after-move)
        return place;
    }

    /** Returns an element of a set, to be inserted without fail. */
    Node prepare(const typename Container::value_type& value)
    {
        if (getCount() == 0) {
            Container element;
            return element.extract(element.insert(value).first);
        }
        Node node = takeNode();
        node.value() = value;
        return node;
    }

    /** Inserts what prepare() returned into a set, unless it is there. */
    void insert(Container& container, Node element) { keep(std::move(container.insert(std::move(element)).node)); }

    /** Takes an element of a set out. */
    void erase(Container& container, typename Container::const_iterator position) { keep(container.extract(position)); }

    /** Takes an element of a map out; its value is emptied. */
    void eraseEntry(Container& container, typename Container::iterator position)
    {
        Node node = container.extract(position);
        node.mapped() = typename Container::mapped_type();
        keep(std::move(node));
    }

    /**
     * Empties a set; where all its elements can be kept and no cleared ones are left, in constant time.
     *
     * Needs no memory: the store is there since the elements were inserted, and none is made for an empty set.
     */
    static void clear(Container& container) noexcept
    {
        if (!container.empty()) {
            instance().keepAll(container);
        }
    }

    /** Empties a map; the values go first, those of the highest keys before all others. */
    static void clearEntries(Container& container)
    {
        for (auto entry = container.rbegin(); entry != container.rend(); ++entry) {
            entry->second = typename Container::mapped_type();
        }
        clear(container);
    }

private:
    // All at once, so that keeping a node never fails. The system gives memory to what is written only.
    SpareNodes() { m_nodes.reserve(Limit); }

    std::size_t getCount() const { return m_nodes.size() + m_cleared.size(); }

    Node takeNode()
    {
        if (m_nodes.empty()) {
            return m_cleared.extract(m_cleared.begin());
        }
        Node node = std::move(m_nodes.back());
        m_nodes.pop_back();
        return node;
    }

    void keepAll(Container& container) noexcept
    {
        if (getCount() + container.size() > Limit) {
            container.clear();
        } else if (m_cleared.empty()) {
            m_cleared.swap(container);
        }
        while (!container.empty()) {
            keep(container.extract(container.begin()));
        }
    }

    void keep(Node node) noexcept
    {
        if (!node.empty() && getCount() < Limit) {
            m_nodes.push_back(std::move(node));
        }
    }

    std::vector<Node> m_nodes;
    Container m_cleared; // taken apart only when its elements are asked for
};

} // namespace quon::interaction
