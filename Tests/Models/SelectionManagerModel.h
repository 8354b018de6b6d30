// SPDX-License-Identifier: MIT
#pragma once

#include "ModelRun.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quon::testing {

/** Which selections a SelectionManager has: names and the numbers of their models, which stand for addresses. */
class SelectionManagerModel {
public:
    static std::vector<std::string> branches()
    {
        return {"model created", "model that was there already", "model found",    "no model found", "model removed",
                "null removed",  "foreign model left",           "name used again"};
    }

    explicit SelectionManagerModel(ModelCoverage& coverage)
        : m_coverage(coverage)
    {}

    /** Returns the number of the model of that name; a new model has the next number. */
    int createSelectionModel(const std::string& name)
    {
        const int found = find(name);
        m_coverage.see(found != 0 ? "model that was there already" : "model created");
        if (found != 0) {
            return found;
        }
        for (const std::string& each : m_namesOfRemoved) {
            if (each == name) {
                m_coverage.see("name used again");
                break;
            }
        }
        m_models.push_back({name, ++m_last});
        return m_last;
    }

    /** Returns the number of the model of that name, 0 for none. */
    int getSelectionModel(const std::string& name)
    {
        m_coverage.see(find(name) != 0 ? "model found" : "no model found");
        return find(name);
    }

    /** @p model 0 for null, a negative number for a model of somebody else */
    void removeSelectionModel(int model)
    {
        if (model <= 0) {
            m_coverage.see(model == 0 ? "null removed" : "foreign model left");
        }
        std::vector<Entry> kept;
        for (const Entry& entry : m_models) {
            if (entry.model == model) {
                m_coverage.see("model removed");
                m_namesOfRemoved.push_back(entry.name);
            } else {
                kept.push_back(entry);
            }
        }
        m_models = kept;
    }

    bool has(int model) const
    {
        for (const Entry& entry : m_models) {
            if (entry.model == model) {
                return true;
            }
        }
        return false;
    }

private:
    struct Entry {
        std::string name;
        int model;
    };

    int find(const std::string& name) const
    {
        for (const Entry& entry : m_models) {
            if (entry.name == name) {
                return entry.model;
            }
        }
        return 0;
    }

    ModelCoverage& m_coverage;
    std::vector<Entry> m_models;
    std::vector<std::string> m_namesOfRemoved;
    int m_last = 0;
};

} // namespace quon::testing
