// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/LazyPicker.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/ObjectNames.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVector.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/**
 * A picking back end that queries no scene: it gives the answers that a test prepared and writes every call of the
 * lazy picker to a log.
 */
class RecordingPicker : public interaction::LazyPicker {
public:
    /** The answer of a single pick. */
    struct Hit {
        osg::NodePtr node;         ///< null: nothing is hit
        osg::Pnt3f point;          ///< in world space
        osg::Vec3f normal;         ///< in world space
        osg::Vec2f uv;             ///< texture coordinate
        osg::MaterialPtr material; ///< may be null
    };

    /** The answer of a multi-pick. */
    struct MultiHit {
        std::vector<osg::NodePtr> nodes;         ///< the best hit first
        std::vector<osg::Pnt3f> points;          ///< in world space
        std::vector<osg::Vec3f> normals;         ///< in world space
        std::vector<osg::MaterialPtr> materials; ///< each may be null
    };

    /** @p log and @p names are borrowed; @p name starts the entries. */
    RecordingPicker(CallLog& log, const ObjectNames& names, const std::string& name)
        : m_log(log)
        , m_names(names)
        , m_name(name)
        , m_cacheValid(true)
        , m_optionsChanged(false)
        , m_hit(Hit())
    {}

    /** Sets the answer of isCacheValid(), true at first: with false every pick is computed anew. */
    void setCacheValid(bool valid) { m_cacheValid = valid; }

    /** Sets the answer of updateSelectionOption(), false at first: with true every pick is computed anew. */
    void setOptionsChanged(bool changed) { m_optionsChanged = changed; }

    /** Replaces every option from now on. */
    void setReplacementOption(osg::SelectionOption* option) { m_replacementOption = option; }

    /** Calls @p action from inside every following updateSelectionOption(); empty: nothing. */
    void onUpdateSelectionOption(std::function<void()> action) { m_onUpdateSelectionOption = std::move(action); }

    /**
     * Sets the answer of a single pick, which hits nothing at first.
     *
     * A cache that is valid answers as before: see setCacheValid().
     *
     * @param hit none: the five results stay as the picker hands them over
     */
    void setHit(const std::optional<Hit>& hit) { m_hit = hit; }

    /** Sets the answer of a multi-pick; nothing is hit at first. */
    void setMultiHit(const MultiHit& hit) { m_multiHit = hit; }

    /** Sets the answer of computePickedNodes(); no node at first. */
    void setNodes(const std::vector<osg::NodePtr>& nodes) { m_nodes = nodes; }

    void setPointer(const osg::Pnt2f& position) override { m_pointer = position; }
    osg::Pnt2f getPointer() const override { return m_pointer; }
    void setCamera(const osg::Matrix& camera) override { m_camera = camera; }
    osg::Matrix getCamera() const override { return m_camera; }

    bool isCacheValid() override
    {
        m_log.call(m_name, "isCacheValid");
        return m_cacheValid;
    }

    void computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                       osg::MaterialPtr& material, osg::SelectionOption* option) override
    {
        m_log.call(m_name, "computePicked", m_names.of(option));
        if (m_hit.has_value()) {
            node = m_hit->node;
            point = m_hit->point;
            normal = m_hit->normal;
            uv = m_hit->uv;
            material = m_hit->material;
        }
    }

    /** Writes the names of the nodes that the vector holds on entry. */
    void computePickedNodes(std::vector<osg::NodePtr>* nodes, osg::SelectionOption* option) override
    {
        m_log.call(m_name, "computePickedNodes", m_names.of(*nodes), m_names.of(option));
        *nodes = m_nodes;
    }

    /** Writes the mode as a number, and whether the vectors are empty on entry. */
    void computeMultiPicked(MultiMode mode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                            std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) override
    {
        const bool empty = nodes->empty() && points->empty() && normals->empty() && materials->empty();
        m_log.call(m_name, "computeMultiPicked", static_cast<int>(mode), empty ? "empty" : "not empty");
        *nodes = m_multiHit.nodes;
        *points = m_multiHit.points;
        *normals = m_multiHit.normals;
        *materials = m_multiHit.materials;
    }

    bool updateSelectionOption(osg::SelectionOption*& option) override
    {
        m_log.call(m_name, "updateSelectionOption", m_names.of(option));
        if (m_onUpdateSelectionOption) {
            m_onUpdateSelectionOption();
        }
        if (m_replacementOption.has_value()) {
            option = *m_replacementOption;
        }
        return m_optionsChanged;
    }

private:
    CallLog& m_log;
    const ObjectNames& m_names;
    std::string m_name;
    bool m_cacheValid;
    bool m_optionsChanged;
    std::optional<osg::SelectionOption*> m_replacementOption;
    std::function<void()> m_onUpdateSelectionOption;
    std::optional<Hit> m_hit;
    MultiHit m_multiHit;
    std::vector<osg::NodePtr> m_nodes;
    osg::Pnt2f m_pointer;
    osg::Matrix m_camera;
};

} // namespace quon::testing
