// SPDX-License-Identifier: MIT
#pragma once

#include "AbstractInteractionToolModel.h"
#include "MultimodeInteractionContextModel.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/** What a ToolInteractionContext makes of its life and of events: calls of its tool. */
class ToolInteractionContextModel : public MultimodeInteractionContextModel {
public:
    static std::vector<std::string> toolBranches()
    {
        return {"same tool set again",
                "tool replaced while active",
                "tool set while active",
                "tool taken away while active",
                "tool set while inactive",
                "added with a tool",
                "added without a tool",
                "removed with a tool",
                "removed without a tool",
                "mode refused for want of a tool",
                "event handled by the tool",
                "event of the tool category with another name",
                "event of the tool category without a tool"};
    }

    /**
     * @param number what the tools are told
     * @param baseCoverage counts what the base of all contexts does
     * @param modeCoverage counts what happens to modes
     */
    ToolInteractionContextModel(int number, NotificationsModel& notifications, int position,
                                ModelCoverage& baseCoverage, ModelCoverage& modeCoverage, ModelCoverage& coverage)
        : MultimodeInteractionContextModel(notifications, position, baseCoverage, modeCoverage)
        , m_number(number)
        , m_coverage(coverage)
    {}

    void setTool(AbstractInteractionToolModel* tool)
    {
        if (tool == m_tool) {
            m_coverage.see("same tool set again");
            return;
        }
        m_coverage.see(!m_toolActive       ? "tool set while inactive"
                       : tool == nullptr   ? "tool taken away while active"
                       : m_tool == nullptr ? "tool set while active"
                                           : "tool replaced while active");
        if (m_tool != nullptr && m_toolActive) {
            m_tool->deactivateTool(m_number);
        }
        m_tool = tool;
        if (tool != nullptr && m_toolActive) {
            tool->activateTool(m_number);
        }
    }

    const AbstractInteractionToolModel* getTool() const { return m_tool; }

    void setToolCategory(const std::string& category) { m_toolCategory = category; }
    const std::string& getToolCategory() const { return m_toolCategory; }

    void contextAdded(int manager) override
    {
        MultimodeInteractionContextModel::contextAdded(manager);
        m_toolActive = true;
        m_coverage.see(m_tool != nullptr ? "added with a tool" : "added without a tool");
        if (m_tool != nullptr) {
            m_tool->activateTool(m_number);
        }
    }

    void contextRemoved(int manager) override
    {
        m_toolActive = false;
        m_coverage.see(m_tool != nullptr ? "removed with a tool" : "removed without a tool");
        if (m_tool != nullptr) {
            m_tool->deactivateTool(m_number);
        }
        MultimodeInteractionContextModel::contextRemoved(manager);
    }

    bool triggerEvent(int manager, const EventModel& event) override
    {
        if (m_tool == nullptr || event.tool != m_toolCategory) {
            if (event.tool == m_toolCategory) {
                m_coverage.see("event of the tool category without a tool");
            }
            return MultimodeInteractionContextModel::triggerEvent(manager, event);
        }
        static const std::array<std::pair<const char*, const char*>, 6> operations = {{{"trigger", "triggerTool"},
                                                                                       {"start", "startTool"},
                                                                                       {"stop", "stopTool"},
                                                                                       {"process", "processTool"},
                                                                                       {"hover", "hoverTool"},
                                                                                       {"stopHover", "stopHoverTool"}}};
        for (const auto& [name, operation] : operations) {
            if (event.name == name) {
                m_coverage.see("event handled by the tool");
                return m_tool->carryOut(operation, m_number, event.hint);
            }
        }
        m_coverage.see("event of the tool category with another name");
        return false;
    }

    bool selectMode(const std::string& mode) override
    {
        if (m_tool == nullptr) {
            m_coverage.see("mode refused for want of a tool");
            return false;
        }
        return m_tool->setToolMode(m_number, mode);
    }

private:
    int m_number;
    ModelCoverage& m_coverage;
    AbstractInteractionToolModel* m_tool = nullptr;
    bool m_toolActive = false;
    std::string m_toolCategory = "tool";
};

} // namespace quon::testing
