// SPDX-License-Identifier: MIT
//
// A picking back end: LazyPicker caches, the host answers. This one looks straight down on a table of parts and asks
// for the highest world box under the pointer, where one world unit is one pixel.
#include <Interaction/LazyPicker.h>

#include <Extensions/SceneExtensions.h>
#include <SceneUtilities/NodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGTransform.h>

#include <cstdio>
#include <vector>

using namespace quon;

namespace {

class TopViewPicker : public interaction::LazyPicker {
public:
    void setPointer(const osg::Pnt2f& position) override
    {
        m_pointer = position;
        invalidate(); // other answers from now on
    }
    osg::Pnt2f getPointer() const override { return m_pointer; }

    void setCamera(const osg::Matrix& camera) override
    {
        m_camera = camera;
        invalidate();
    }
    osg::Matrix getCamera() const override { return m_camera; }

    int getQueryCount() const { return m_queries; }

protected:
    // Asked before each answer from the cache. A real host compares a stamp of its scene.
    bool isCacheValid() override { return true; }

    //! [query]
    void computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                       osg::MaterialPtr& material, osg::SelectionOption*) override
    {
        ++m_queries;
        // All five results are written, also when nothing is hit.
        node = osg::NullFC;
        point = osg::Pnt3f(0, 0, 0);
        normal = osg::Vec3f(0, 0, 0);
        uv = osg::Vec2f(0, 0);
        material = osg::NullFC;
        for (const Hit& hit : findHits()) {
            if (node == osg::NullFC || hit.height > point[2]) {
                node = hit.node;
                point = osg::Pnt3f(m_pointer[0], m_pointer[1], hit.height);
                normal = osg::Vec3f(0, 0, 1);
            }
        }
    }
    //! [query]

    void computePickedNodes(std::vector<osg::NodePtr>* nodes, osg::SelectionOption*) override
    {
        ++m_queries;
        nodes->clear(); // it still holds the list of the last call
        for (const Hit& hit : findHits()) {
            nodes->push_back(hit.node);
        }
    }

    void computeMultiPicked(MultiMode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                            std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) override
    {
        ++m_queries;
        // Entries of equal index belong together.
        for (const Hit& hit : findHits()) {
            nodes->push_back(hit.node);
            points->emplace_back(m_pointer[0], m_pointer[1], hit.height);
            normals->emplace_back(0.0F, 0.0F, 1.0F);
            materials->push_back(osg::NullFC);
        }
    }

private:
    struct Hit {
        osg::NodePtr node;
        float height;
    };

    std::vector<Hit> findHits() const
    {
        std::vector<Hit> hits;
        const osg::NodePtr root = getRoot();
        for (osg::UInt32 i = 0; root != osg::NullFC && i < root->getNChildren(); ++i) {
            osg::Pnt3f minimum;
            osg::Pnt3f maximum;
            extensions::getWorldBounds(root->getChild(i), minimum, maximum);
            if (minimum[0] <= m_pointer[0] && m_pointer[0] <= maximum[0] && minimum[1] <= m_pointer[1] &&
                m_pointer[1] <= maximum[1]) {
                hits.push_back({root->getChild(i), maximum[2]});
            }
        }
        return hits;
    }

    osg::Pnt2f m_pointer{0, 0};
    osg::Matrix m_camera;
    int m_queries = 0;
};

osg::NodePtr makePart(const char* name, const float x, const float height)
{
    osg::Matrix matrix;
    matrix.setTranslate(x, 0, height / 2);
    const osg::TransformPtr place = osg::Transform::create();
    osg::beginEditCP(place);
    place->setMatrix(matrix);
    osg::endEditCP(place);
    const osg::NodePtr part = osg::Node::create();
    osg::beginEditCP(part);
    part->setCore(place);
    part->addChild(osg::makeBox(10, 10, height, 1, 1, 1));
    osg::endEditCP(part);
    NodeUtils::setName(part, name, false);
    return part;
}

} // namespace

int main(int argc, char** argv)
{
    osg::osgInit(argc, argv);
    const osg::RefPtr<osg::NodePtr> table(osg::Node::create());
    osg::beginEditCP(table);
    table->setCore(osg::Group::create());
    table->addChild(makePart("plate", 0, 2));
    table->addChild(makePart("tower", 8, 20)); // overlaps the plate from x = 3 to 5
    osg::endEditCP(table);

    TopViewPicker picker;
    picker.setRoot(table.get());
    picker.setPointer(osg::Pnt2f(4, 0));
    const std::string name = NodeUtils::getName(picker.getPickedNode(nullptr));
    const float height = picker.getPickedPoint(nullptr)[2];
    picker.getPickedNormal(nullptr);
    std::printf("under the pointer: %s, %.0f high, found with %d query\n", name.c_str(), static_cast<double>(height),
                picker.getQueryCount());
    bool good = name == "tower" && height == 20 && picker.getQueryCount() == 1;

    std::vector<osg::NodePtr> nodes;
    std::vector<osg::Pnt3f> points;
    std::vector<osg::Vec3f> normals;
    std::vector<osg::MaterialPtr> materials;
    picker.getMultiPicked(interaction::Picker::AllHits, &nodes, &points, &normals, &materials);
    good = good && nodes.size() == 2;
    picker.setPointer(osg::Pnt2f(-100, 0));
    good = good && picker.getPickedNode(nullptr) == osg::NullFC;
    picker.setRoot(osg::NullFC);
    return good ? 0 : 1;
}
