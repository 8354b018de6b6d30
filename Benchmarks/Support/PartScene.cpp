// SPDX-License-Identifier: MIT
#include "Support/PartScene.h"

#include "Support/Changes.h"

#include <Extensions/SceneExtensions.h>

#include <OpenSG/OSGGroup.h>

#include <algorithm>
#include <memory>
#include <random>

namespace quon::benchmarks {

namespace {

constexpr std::size_t partsOfAssembly = 100;
constexpr std::size_t shapeCount = 100;

std::vector<osg::GeometryPtr> makeShapes()
{
    std::vector<osg::GeometryPtr> shapes;
    for (std::size_t i = 0; i < shapeCount; ++i) {
        const auto place = static_cast<float>(2 * i);
        shapes.push_back(testing::makeExtent(osg::Pnt3f(place, 0, 0), osg::Pnt3f(place + 1, 1, 1)));
    }
    return shapes;
}

} // namespace

PartScene::PartScene(const std::size_t partCount)
    : m_root(testing::makeNode(osg::Group::create()))
{
    const std::vector<osg::GeometryPtr> shapes = makeShapes();
    m_parts.reserve(partCount);
    osg::NodePtr assembly;
    for (std::size_t i = 0; i < partCount; ++i) {
        if (i % partsOfAssembly == 0) {
            m_assemblies.push_back(testing::makeTranslation(0, 0, static_cast<float>(m_assemblies.size() * 2)));
            assembly = testing::addChild(m_root, m_assemblies.back());
        }
        m_parts.push_back(testing::addChild(assembly, shapes[i % shapeCount]));
    }
    osg::Pnt3f min;
    osg::Pnt3f max;
    extensions::getWorldBounds(m_root, min, max);
    forgetChanges();
}

PartScene& PartScene::get(const std::size_t partCount)
{
    static std::unique_ptr<PartScene> scene;
    if (scene == nullptr || scene->m_parts.size() != partCount) {
        // One after the other: two large ones need not fit.
        scene.reset();
        scene = std::make_unique<PartScene>(partCount);
    }
    return *scene;
}

std::vector<osg::NodePtr> PartScene::getPartsBackward() const
{
    return {m_parts.rbegin(), m_parts.rend()};
}

std::vector<osg::NodePtr> PartScene::getPartsShuffled() const
{
    std::vector<osg::NodePtr> parts = m_parts;
    std::shuffle(parts.begin(), parts.end(), std::mt19937(17));
    return parts;
}

void PartScene::moveAssemblies()
{
    m_height = m_height == 0 ? 5.0F : 0.0F;
    for (std::size_t i = 0; i < m_assemblies.size(); ++i) {
        testing::setTranslation(m_assemblies[i], 0, m_height, static_cast<float>(i * 2));
    }
}

} // namespace quon::benchmarks
