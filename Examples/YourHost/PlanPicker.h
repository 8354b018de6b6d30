// SPDX-License-Identifier: MIT
#pragma once

#include "Plan.h"

#include <Interaction/LazyPicker.h>

#include <algorithm>
#include <vector>

/** Finds the machines under the pointer: a ray straight down through their world boxes, the highest first. */
class PlanPicker : public quon::interaction::LazyPicker {
public:
    void setPointer(const osg::Pnt2f& position) override
    {
        m_pointer = position;
        invalidate(); // the answers so far were for another place
    }
    osg::Pnt2f getPointer() const override { return m_pointer; }

    void setCamera(const osg::Matrix& camera) override { m_camera = camera; } // a plan has but one view
    osg::Matrix getCamera() const override { return m_camera; }

protected:
    bool isCacheValid() override { return true; } // nothing moves here but the pointer

    void computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                       osg::MaterialPtr& material, osg::SelectionOption*) override
    {
        const std::vector<Hit> hits = findHits();
        const bool hit = !hits.empty();
        node = hit ? hits.front().node : osg::NodePtr();
        point = hit ? hits.front().point : osg::Pnt3f(0, 0, 0);
        normal = osg::Vec3f(0, 0, hit ? 1 : 0);
        uv = osg::Vec2f(0, 0);
        material = osg::NullFC;
    }

    void computePickedNodes(std::vector<osg::NodePtr>* nodes, osg::SelectionOption*) override
    {
        nodes->clear(); // it still holds the list of the last call
        for (const Hit& hit : findHits()) {
            nodes->push_back(hit.node);
        }
    }

    void computeMultiPicked(MultiMode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                            std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) override
    {
        for (const Hit& hit : findHits()) {
            nodes->push_back(hit.node);
            points->push_back(hit.point);
            normals->emplace_back(0.0F, 0.0F, 1.0F);
            materials->push_back(osg::NullFC);
        }
    }

private:
    struct Hit {
        osg::NodePtr node;
        osg::Pnt3f point;
    };

    std::vector<Hit> findHits() const
    {
        std::vector<Hit> hits;
        const osg::NodePtr root = getRoot();
        const osg::Pnt3f place = plan::toWorld(m_pointer);
        for (osg::UInt32 i = 0; root != osg::NullFC && i < root->getNChildren(); ++i) {
            osg::Pnt3f minimum;
            osg::Pnt3f maximum;
            quon::extensions::getWorldBounds(root->getChild(i), minimum, maximum);
            if (minimum[0] <= place[0] && place[0] <= maximum[0] && minimum[1] <= place[1] && place[1] <= maximum[1]) {
                hits.push_back({root->getChild(i), osg::Pnt3f(place[0], place[1], maximum[2])});
            }
        }
        std::sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) { return a.point[2] > b.point[2]; });
        return hits;
    }

    osg::Pnt2f m_pointer{0, 0};
    osg::Matrix m_camera;
};
