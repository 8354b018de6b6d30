// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Tools/EmbreePicker.h"

#include <vector>

namespace quon::testing {

/** Picks as the viewer does and counts what reaches the back end. */
class CountingPicker : public viewer::EmbreePicker {
public:
    int picks = 0;
    int nodePicks = 0;
    int multiPicks = 0;

protected:
    void computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                       osg::MaterialPtr& material, osg::SelectionOption* option) override
    {
        ++picks;
        EmbreePicker::computePicked(node, point, normal, uv, material, option);
    }

    void computePickedNodes(std::vector<osg::NodePtr>* nodes, osg::SelectionOption* option) override
    {
        ++nodePicks;
        EmbreePicker::computePickedNodes(nodes, option);
    }

    void computeMultiPicked(MultiMode mode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                            std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) override
    {
        ++multiPicks;
        EmbreePicker::computeMultiPicked(mode, nodes, points, normals, materials);
    }
};

} // namespace quon::testing
