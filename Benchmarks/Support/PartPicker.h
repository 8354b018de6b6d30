// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/LazyPicker.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVector.h>

#include <cstddef>
#include <vector>

namespace quon::benchmarks {

/**
 * A picking back end whose scene query costs next to nothing: the parts lie in rows of a thousand, one on each pixel.
 *
 * A host that keeps its picker's pointer in step with the mapper has it invalidated by every movement, as here.
 */
class PartPicker final : public interaction::LazyPicker {
public:
    static constexpr std::size_t partsOfRow = 1000;

    /** @param parts borrowed */
    explicit PartPicker(const std::vector<osg::NodePtr>& parts)
        : m_parts(parts)
    {}

    /** How often the scene was queried. */
    std::size_t queries = 0;

    void setPointer(const osg::Pnt2f& position) override
    {
        m_pointer = position;
        invalidate();
    }

    osg::Pnt2f getPointer() const override { return m_pointer; }
    void setCamera(const osg::Matrix& /*camera*/) override {}
    osg::Matrix getCamera() const override { return osg::Matrix(); }

protected:
    bool isCacheValid() override { return true; }

    void computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                       osg::MaterialPtr& material, osg::SelectionOption* /*option*/) override
    {
        ++queries;
        const std::size_t part =
            static_cast<std::size_t>(m_pointer[1]) * partsOfRow + static_cast<std::size_t>(m_pointer[0]);
        node = part < m_parts.size() ? m_parts[part] : osg::NodePtr();
        point.setValues(m_pointer[0], m_pointer[1], 0);
        normal.setValues(0, 0, 1);
        uv.setValues(0, 0);
        material = osg::NullFC;
    }

    void computePickedNodes(std::vector<osg::NodePtr>* nodes, osg::SelectionOption* /*option*/) override
    {
        ++queries;
        *nodes = m_parts;
    }

    void computeMultiPicked(MultiMode /*mode*/, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                            std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) override
    {
        ++queries;
        nodes->assign(1, m_parts.front());
        points->assign(1, osg::Pnt3f(m_pointer[0], m_pointer[1], 0));
        normals->assign(1, osg::Vec3f(0, 0, 1));
        materials->assign(1, osg::MaterialPtr());
    }

private:
    const std::vector<osg::NodePtr>& m_parts;
    osg::Pnt2f m_pointer;
};

} // namespace quon::benchmarks
