// SPDX-License-Identifier: MIT
#include <Interaction/SelectionManager.h>

#include <algorithm>

namespace quon::interaction {

SelectionManager* SelectionManager::getInstance()
{
    static SelectionManager m_Instance;
    return &m_Instance;
}

SelectionManager::SelectionManager() = default;

SelectionManager::~SelectionManager() = default;

NodeSelectionModel* SelectionManager::createSelectionModel(const std::string& name)
{
    NodeSelectionModel* existing = getSelectionModel(name);
    if (existing != nullptr) {
        return existing;
    }
    m_models.push_back(NodeSelectionModel(name));
    return &m_models.back();
}

NodeSelectionModel* SelectionManager::getSelectionModel(const std::string& name)
{
    const auto model = std::find_if(m_models.begin(), m_models.end(), [&name](const NodeSelectionModel& candidate) {
        return candidate.getName() == name;
    });
    return model != m_models.end() ? &*model : nullptr;
}

void SelectionManager::removeSelectionModel(NodeSelectionModel* model)
{
    const auto held = std::find_if(m_models.begin(), m_models.end(),
                                   [model](const NodeSelectionModel& candidate) { return &candidate == model; });
    if (held != m_models.end()) {
        m_models.erase(held);
    }
}

} // namespace quon::interaction
