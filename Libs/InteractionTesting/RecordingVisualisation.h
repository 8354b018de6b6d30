// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/SelectionVisualisation.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/ObjectNames.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <functional>
#include <set>
#include <string>
#include <utility>

namespace quon::testing {

/**
 * A visualisation that draws nothing: it writes every call to a log and keeps the nodes that it would show.
 *
 * Nodes are handles to it: it neither looks behind them nor ignores null.
 */
class RecordingVisualisation : public interaction::SelectionVisualisation {
public:
    /** What onCall() takes: the name of the operation and its node, null for operations without one. */
    using Observer = std::function<void(const std::string& operation, const osg::NodePtr& node)>;

    /** @p log and @p names are borrowed; @p name starts the entries. */
    RecordingVisualisation(CallLog& log, const ObjectNames& names, const std::string& name)
        : m_log(log)
        , m_names(names)
        , m_name(name)
        , m_isVisible(true)
    {}

    /** Has @p observer called from inside every following call, after the entry was written; empty: none. */
    void onCall(Observer observer) { m_observer = std::move(observer); }

    /** The nodes that were added and not removed since. */
    const std::set<osg::NodePtr>& shownNodes() const { return m_shownNodes; }

    void setVisible(bool visible) override
    {
        m_isVisible = visible;
        m_log.call(m_name, "setVisible", visible);
        observe("setVisible");
    }

    bool isVisible() const override
    {
        m_log.call(m_name, "isVisible");
        return m_isVisible;
    }

    osg::NodePtr getVisualisation() override
    {
        m_log.call(m_name, "getVisualisation");
        return osg::NullFC;
    }

    void addNode(const osg::NodePtr& node) override
    {
        m_shownNodes.insert(node);
        m_log.call(m_name, "addNode", m_names.of(node));
        observe("addNode", node);
    }

    void removeNode(const osg::NodePtr& node) override
    {
        m_shownNodes.erase(node);
        m_log.call(m_name, "removeNode", m_names.of(node));
        observe("removeNode", node);
    }

    void updateNode(const osg::NodePtr& node) override
    {
        m_log.call(m_name, "updateNode", m_names.of(node));
        observe("updateNode", node);
    }

    bool hasNode(const osg::NodePtr& node) const override
    {
        m_log.call(m_name, "hasNode", m_names.of(node));
        return m_shownNodes.count(node) != 0;
    }

    void updateAllNodes() override
    {
        m_log.call(m_name, "updateAllNodes");
        observe("updateAllNodes");
    }

    void removeAllNodes() override
    {
        m_shownNodes.clear();
        m_log.call(m_name, "removeAllNodes");
        observe("removeAllNodes");
    }

private:
    void observe(const std::string& operation, const osg::NodePtr& node = osg::NodePtr())
    {
        if (m_observer) {
            m_observer(operation, node);
        }
    }

    CallLog& m_log;
    const ObjectNames& m_names;
    std::string m_name;
    bool m_isVisible;
    std::set<osg::NodePtr> m_shownNodes;
    Observer m_observer;
};

} // namespace quon::testing
