// SPDX-License-Identifier: MIT
#pragma once

#include "AbstractInteractionContextModel.h"

#include <algorithm>
#include <string>
#include <vector>

namespace quon::testing {

/** The modes of a MultimodeInteractionContext, the current one first. */
class MultimodeInteractionContextModel : public AbstractInteractionContextModel {
public:
    static std::vector<std::string> modeBranches()
    {
        return {"mode started",
                "mode started again",
                "mode refused",
                "mode refused while it is in the stack",
                "current mode stopped",
                "last mode stopped",
                "other mode stopped",
                "unknown mode stopped",
                "empty mode started",
                "modes ended by a removal",
                "modes gone when a removal would end them",
                "removal without modes",
                "event of another category",
                "event of the mode category with another name"};
    }

    /** @param baseCoverage counts what the base does */
    MultimodeInteractionContextModel(NotificationsModel& notifications, int position, ModelCoverage& baseCoverage,
                                     ModelCoverage& coverage)
        : AbstractInteractionContextModel(notifications, position, baseCoverage)
        , m_coverage(coverage)
    {}

    void setModeCategory(const std::string& category) { m_modeCategory = category; }
    const std::string& getModeCategory() const { return m_modeCategory; }
    const std::vector<std::string>& getModes() const { return m_modes; }

    bool startMode(const std::string& mode)
    {
        if (!selectMode(mode)) {
            m_coverage.see(has(mode) ? "mode refused while it is in the stack" : "mode refused");
            return false;
        }
        m_coverage.see(has(mode) ? "mode started again" : mode.empty() ? "empty mode started" : "mode started");
        remove(mode);
        m_modes.insert(m_modes.begin(), mode);
        return true;
    }

    bool stopMode(const std::string& mode)
    {
        if (!has(mode)) {
            m_coverage.see("unknown mode stopped");
            return false;
        }
        const bool isCurrent = m_modes.front() == mode;
        remove(mode);
        if (isCurrent) {
            m_coverage.see(m_modes.empty() ? "last mode stopped" : "current mode stopped");
            const std::string next = m_modes.empty() ? "" : m_modes.front();
            selectMode(next);
        } else {
            m_coverage.see("other mode stopped");
        }
        return true;
    }

    void contextRemoved(int manager) override
    {
        if (m_modes.empty()) {
            m_coverage.see("removal without modes");
        } else {
            selectMode(std::string());
            m_coverage.see(m_modes.empty() ? "modes gone when a removal would end them" : "modes ended by a removal");
            m_modes.clear();
        }
        AbstractInteractionContextModel::contextRemoved(manager);
    }

    bool triggerEvent(int, const EventModel& event) override
    {
        if (event.tool != m_modeCategory) {
            m_coverage.see("event of another category");
            return false;
        }
        if (event.name == "start") {
            return startMode(event.hint);
        }
        if (event.name == "stop") {
            return stopMode(event.hint);
        }
        m_coverage.see("event of the mode category with another name");
        return false;
    }

    virtual bool selectMode(const std::string& mode) = 0;

private:
    bool has(const std::string& mode) const { return std::find(m_modes.begin(), m_modes.end(), mode) != m_modes.end(); }

    void remove(const std::string& mode)
    {
        const auto place = std::find(m_modes.begin(), m_modes.end(), mode);
        if (place != m_modes.end()) {
            m_modes.erase(place);
        }
    }

    ModelCoverage& m_coverage;
    std::vector<std::string> m_modes;
    std::string m_modeCategory = "mode";
};

} // namespace quon::testing
