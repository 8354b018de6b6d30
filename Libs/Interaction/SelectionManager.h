// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>
#include <Interaction/NodeSelectionModel.h>

#include <list>
#include <string>

namespace quon::interaction {

/**
 * The named selections of the process.
 *
 * Names are compared byte by byte; the empty string is a name like any other. The address of a model stays the same
 * until that model is removed or the manager is destroyed.
 *
 * @par Ownership
 * The manager owns the models. Removing a model, or the end of the manager, calls none of its visualisations: what they
 * show stays until the host clears them.
 * @par Threading
 * User-interface thread only, no locks; only the construction of the instance is guarded.
 */
class INTERACTION_EXPORT SelectionManager {
public:
    /** Returns the one instance of the process, built on the first call and destroyed at process exit. */
    static SelectionManager* getInstance();

    SelectionManager();
    ~SelectionManager();

    // A copy would hold second models of the same names, with the same visualisations.
    SelectionManager(const SelectionManager&) = delete;
    SelectionManager& operator=(const SelectionManager&) = delete;

    /**
     * Returns the model called @p name; one that is missing is made: empty, without visualisations.
     *
     * Without memory there is std::bad_alloc and no new model.
     *
     * @return owned by the manager, never null
     */
    NodeSelectionModel* createSelectionModel(const std::string& name);

    /** Returns the model called @p name, owned by the manager; null when there is none. */
    NodeSelectionModel* getSelectionModel(const std::string& name);

    /**
     * Destroys @p model without calling its visualisations; pointers to it dangle from then on.
     *
     * @param model null is ignored, a model that the manager does not hold is ignored
     */
    void removeSelectionModel(NodeSelectionModel* model);

private:
    // A list, because models must not move while others come and go.
    std::list<NodeSelectionModel> m_models;
};

} // namespace quon::interaction
