// SPDX-License-Identifier: MIT
#include "BoxSelectionVisualisationModel.h"
#include "ModelScene.h"
#include "SceneChanges.h"

#include <Interaction/BoxSelectionVisualisation.h>

#include <InteractionTesting/SceneBuilder.h>

#include "Support/StandardError.h"

#include <Extensions/SceneExtensions.h>
#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koMaterials.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGThread.h>

#include <array>
#include <climits>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

using quon::interaction::BoxSelectionVisualisation;
using quon::testing::BoxSelectionVisualisationModel;
using quon::testing::ModelCoverage;
using quon::testing::ModelOperation;
using quon::testing::ModelScene;
using quon::testing::ModelStep;
using quon::testing::NodeRef;
using quon::testing::SceneChanges;
using quon::testing::StandardError;
using quon::testing::model::requireSame;

using Corner = BoxSelectionVisualisationModel::Corner;

Corner cornerOf(const osg::Pnt3f& point)
{
    return {point[0], point[1], point[2]};
}

std::vector<float> listOf(const Corner& corner)
{
    return {corner.begin(), corner.end()};
}

std::vector<float> listOf(const osg::Color3f& color)
{
    return {color[0], color[1], color[2]};
}

template <class Property>
std::vector<unsigned> valuesOf(const Property& property)
{
    std::vector<unsigned> values;
    for (osg::UInt32 index = 0; index < property->getSize(); ++index) {
        values.push_back(property->getValue(index));
    }
    return values;
}

class Driver {
public:
    using Operation = ModelOperation<Driver>;

    static const std::vector<Operation>& operations()
    {
        static const std::vector<Operation> all = {{"addNode", 24, &Driver::addNode},
                                                   {"removeNode", 10, &Driver::removeNode},
                                                   {"updateNode", 24, &Driver::updateNode},
                                                   {"updateAllNodes", 5, &Driver::updateAllNodes},
                                                   {"removeAllNodes", 2, &Driver::removeAllNodes},
                                                   {"setVisible", 5, &Driver::setVisible},
                                                   {"clear", 2, &Driver::clear},
                                                   {"setMarkerSize", 3, &Driver::setMarkerSize},
                                                   {"setColor", 1, &Driver::setColor},
                                                   {"setLockedColor", 1, &Driver::setLockedColor},
                                                   {"setTransparency", 2, &Driver::setTransparency},
                                                   {"setOverlay", 2, &Driver::setOverlay},
                                                   {"update of what is no box", 2, &Driver::updateNoBox},
                                                   {"mask of the root set by the host", 1, &Driver::setRootMask},
                                                   {"scene node added", 14, &Driver::addSceneNode},
                                                   {"scene node removed", 3, &Driver::removeSceneNode},
                                                   {"mask of a scene node", 8, &Driver::setMask},
                                                   {"core of a scene node", 4, &Driver::setCore},
                                                   {"transform moved", 14, &Driver::move},
                                                   {"scene node locked", 8, &Driver::lock}};
        return all;
    }

    static std::vector<std::string> branches() { return BoxSelectionVisualisationModel::branches(); }

    explicit Driver(ModelCoverage& coverage)
        : m_model(std::make_unique<BoxSelectionVisualisationModel>(makeScene(), makeBoxScene(), coverage))
        , m_otherNodes{NodeRef(), quon::testing::makeNode(osg::Group::create()),
                       quon::testing::makeNode(osg::Geometry::create())}
    {
        m_changes.skip();
        osg::ChangeList* const list = osg::Thread::getCurrentChangeList();
        m_boxes = std::make_unique<BoxSelectionVisualisation>();
        findMaterials({list->beginCreated(), list->endCreated()});
        requireSame("the root's name", NodeUtils::getName(root()), std::string("VisualisationRootMaterialGroup"));
        requireSame("who named the root", NodeUtils::isNameGivenByProgram(root()), true);
        compare();
    }

    ~Driver()
    {
        // What an instance deliberately keeps: a reference to each material, and one to each box that is not spare.
        if (m_boxes != nullptr) {
            m_boxes->removeAllNodes();
            m_boxes.reset();
        }
        osg::subRefCP(m_highlightMaterial);
        osg::subRefCP(m_lockedMaterial);
    }

    void compare()
    {
        compareChildren();
        requireSame("the changes", takeChanges(), m_model->takeChanges());
        requireSame("standard error", StandardError::take(), withIds(m_model->takeMessages()));
        requireSame("visible", m_boxes->isVisible(), m_model->isVisible());
        requireSame("the root's mask", root()->getTravMask(), m_model->getRootMask());
        for (const int number : m_scene.numbers()) {
            requireSame("tracked", m_boxes->hasNode(m_scene.node(number)), m_model->hasNode(number));
        }
        compareBoxes();
        compareMaterials();
        requireSame("the marker size", m_boxes->getMarkerSize(), m_model->getMarkerSize());
        requireSame("the overlay", m_boxes->getOverlay(), m_model->getOverlay());
        requireSame("the colour", listOf(m_boxes->getColor()), listOf(m_model->getColor()));
    }

    void finish()
    {
        m_boxes->removeAllNodes();
        m_model->removeAllNodes();
        StandardError::take();
        m_boxes.reset();
        m_model->clear();
        m_model->destroy(false);
        // Left are boxes whose selected node was gone when all were removed: nobody handed them back.
        for (const auto& [number, box] : m_ids) {
            const bool isLeft = m_model->visualisations().count(number) == 1;
            requireSame("a box exists", quon::testing::exists(box.node), isLeft);
            if (isLeft) {
                osg::NodePtr node = osg::NodePtr::dcast(osg::FieldContainerFactory::the()->getContainer(box.node));
                requireSame("the count of a box that is left", osg::getRefCount(node), 1);
                osg::subRefCP(node);
            }
        }
        requireSame("the highlight material's count", osg::getRefCount(m_highlightMaterial), 1);
        requireSame("the locked material's count", osg::getRefCount(m_lockedMaterial), 1);
    }

private:
    struct BoxIds {
        osg::UInt32 node = 0;
        osg::UInt32 geometry = 0;
        osg::UInt32 positions = 0;
    };

    BoxSelectionVisualisationModel::Scene makeScene()
    {
        return {[this](int node) { return m_scene.exists(node); },
                [this](int node) { return m_scene.info(node).mask; }};
    }

    BoxSelectionVisualisationModel::BoxScene makeBoxScene()
    {
        BoxSelectionVisualisationModel::BoxScene scene;
        scene.getWorldBounds = [this](int node) {
            osg::Pnt3f min(0, 0, 0);
            osg::Pnt3f max(0, 0, 0);
            quon::extensions::getWorldBounds(m_scene.node(node), min, max);
            return std::make_pair(cornerOf(min), cornerOf(max));
        };
        scene.getWorldTranslation = [this](int node) { return m_scene.worldTranslation(node); };
        scene.isEditable = [this](int node) { return m_scene.isEditable(node); };
        scene.isCamera = [this](int node) { return m_scene.info(node).core == ModelScene::Core::Camera; };
        return scene;
    }

    osg::NodePtr root() const { return m_boxes->getVisualisation(); }

    void findMaterials(const std::vector<osg::UInt32>& created)
    {
        for (const osg::UInt32 id : created) {
            const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
            const osg::SimpleMaterialPtr material =
                container == osg::NullFC ? osg::SimpleMaterialPtr() : osg::SimpleMaterialPtr::dcast(container);
            if (material != osg::NullFC) {
                (koMaterials::getName(material) == "koScenegraph::m_highlightMaterial" ? m_highlightMaterial
                                                                                       : m_lockedMaterial) = material;
            }
        }
        requireSame("the locked material's name", koMaterials::getName(m_lockedMaterial),
                    std::string("koScenegraph::m_lockedNodeMaterial"));
        const auto group = osg::MaterialGroupPtr::dcast(root()->getCore());
        requireSame("the root's material is the highlight material",
                    group->getMaterial() == osg::MaterialPtr(m_highlightMaterial), true);
        m_names[osg::getContainerId(root())] = "root";
        m_names[osg::getContainerId(group)] = "material group";
        m_names[osg::getContainerId(m_highlightMaterial)] = "highlight material";
        m_names[osg::getContainerId(m_lockedMaterial)] = "locked material";
        static const std::array<const char*, 3> chunks = {"depth test chunk", "line chunk", "blend chunk"};
        for (osg::UInt32 index = 0; index < chunks.size(); ++index) {
            const osg::StateChunkPtr chunk = m_highlightMaterial->getChunks(index);
            m_names[osg::getContainerId(chunk)] = chunks[index];
            requireSame("both materials share a chunk", m_lockedMaterial->getChunks(index) == chunk, true);
        }
        m_depthTestChunk = osg::DepthTestChunkPtr::dcast(m_highlightMaterial->getChunks(0));
        const auto line = osg::LineChunkPtr::dcast(m_highlightMaterial->getChunks(1));
        const auto blend = osg::BlendChunkPtr::dcast(m_highlightMaterial->getChunks(2));
        requireSame("the width of the lines", line->getWidth(), 1.0F);
        requireSame("smooth lines", line->getSmooth(), true);
        requireSame("the source factor", static_cast<int>(blend->getSrcFactor()), 770);
        requireSame("the destination factor", static_cast<int>(blend->getDestFactor()), 771);
    }

    // A box that is seen for the first time gets the number that the model gave it.
    void compareChildren()
    {
        std::vector<std::string> children;
        std::vector<std::string> expected;
        for (const int number : m_model->getChildren()) {
            expected.push_back(std::to_string(number));
        }
        for (osg::UInt32 index = 0; index < root()->getNChildren(); ++index) {
            const osg::NodePtr child = root()->getChild(index);
            if (m_numbers.count(osg::getContainerId(child)) == 0 && index < expected.size() &&
                m_ids.count(m_model->getChildren()[index]) == 0) {
                meet(child, m_model->getChildren()[index]);
            }
            const auto number = m_numbers.find(osg::getContainerId(child));
            children.push_back(number != m_numbers.end() ? std::to_string(number->second) : "unknown");
        }
        requireSame("the children of the root", children, expected);
    }

    void meet(const osg::NodePtr& node, int number)
    {
        const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(node->getCore());
        m_numbers[osg::getContainerId(node)] = number;
        m_ids[number] = {osg::getContainerId(node), osg::getContainerId(geometry),
                         osg::getContainerId(geometry->getPositions())};
        const std::string name = BoxSelectionVisualisationModel::visualisationName(number);
        m_names[osg::getContainerId(node)] = name;
        m_names[osg::getContainerId(geometry)] = name + " geometry";
        m_names[osg::getContainerId(geometry->getTypes())] = name + " types";
        m_names[osg::getContainerId(geometry->getLengths())] = name + " lengths";
        m_names[osg::getContainerId(geometry->getIndices())] = name + " indices";
        m_names[osg::getContainerId(geometry->getPositions())] = name + " positions";
        requireSame("the name of a box", NodeUtils::getName(node), std::string("VisualizationHighlightNode"));
        requireSame("who named a box", NodeUtils::isNameGivenByProgram(node), true);
        requireSame("the auxiliary mark of a box", koNodeUtils::isAuxiliaryNode(node), true);
        requireSame("the host's flags of a box", quon::extensions::getHostFlags(node), 8U);
        requireSame("the types", valuesOf(geometry->getTypes()), std::vector<unsigned>{3, 1});
        requireSame("the lengths", valuesOf(geometry->getLengths()), std::vector<unsigned>{10, 6});
        requireSame("the indices", valuesOf(geometry->getIndices()),
                    std::vector<unsigned>{0, 1, 3, 2, 0, 4, 5, 7, 6, 4, 1, 5, 2, 6, 3, 7});
    }

    void compareBoxes()
    {
        for (const auto& [number, ids] : m_ids) {
            const auto expected = m_model->getBoxes().find(number);
            const bool isAlive = expected != m_model->getBoxes().end();
            requireSame("a box exists", quon::testing::exists(ids.node), isAlive);
            requireSame("a geometry exists", quon::testing::exists(ids.geometry), isAlive);
            requireSame("positions exist", quon::testing::exists(ids.positions), isAlive);
            if (isAlive) {
                compareBox(osg::NodePtr::dcast(osg::FieldContainerFactory::the()->getContainer(ids.node)), number,
                           expected->second);
            }
        }
    }

    void compareBox(const osg::NodePtr& node, int number, const BoxSelectionVisualisationModel::Box& expected)
    {
        const auto& visualisation = m_model->visualisations().at(number);
        requireSame("the mask of a box", node->getTravMask(), visualisation.mask);
        requireSame("the count of a box", osg::getRefCount(node), visualisation.references);
        requireSame("whether a box is below the root", node->getParent() == root(), visualisation.isBelowRoot);
        requireSame("the children of a box", node->getNChildren(), 0U);

        const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(node->getCore());
        requireSame("the count of a geometry", osg::getRefCount(geometry), 1);
        requireSame("whether a box is locked", quon::extensions::getOverwriteMaterial(geometry), expected.isLocked);
        requireSame("whether a box has the second material",
                    geometry->getMaterial() ==
                        osg::MaterialPtr(expected.isLocked ? m_lockedMaterial : m_highlightMaterial),
                    true);
        const osg::GeoPositionsPtr positions = geometry->getPositions();
        requireSame("the number of corners", positions->getSize(), 8U);
        for (osg::UInt32 index = 0; index < 8; ++index) {
            const Corner corner = {(index & 1U) != 0 ? expected.max[0] : expected.min[0],
                                   (index & 2U) != 0 ? expected.max[1] : expected.min[1],
                                   (index & 4U) != 0 ? expected.max[2] : expected.min[2]};
            if (cornerOf(positions->getValue(index)) != corner) {
                requireSame("a corner", listOf(cornerOf(positions->getValue(index))), listOf(corner));
            }
        }
    }

    void compareMaterials()
    {
        for (const osg::SimpleMaterialPtr& material : {m_highlightMaterial, m_lockedMaterial}) {
            const bool isLocked = material == m_lockedMaterial;
            requireSame("a colour", listOf(material->getDiffuse()),
                        listOf(isLocked ? m_model->getLockedColor() : m_model->getColor()));
            requireSame("the transparency", material->getTransparency(), m_model->getTransparency());
            requireSame("the sort key", material->getSortKey(), m_model->getSortKey());
            requireSame("lit", material->getLit(), false);
            requireSame("the host's option", quon::extensions::getHostOption(material), false);
            requireSame("the mode of transparency", material->getTransparencyMode(),
                        static_cast<osg::Int32>(osg::Material::TransparencyForceTransparent));
        }
        const int locked = static_cast<int>(m_model->countLocked());
        const int others = static_cast<int>(m_model->getBoxes().size()) - locked;
        // One of the instance, one of the material group, and one of each box.
        requireSame("the highlight material's count", osg::getRefCount(m_highlightMaterial), 2 + others);
        requireSame("the locked material's count", osg::getRefCount(m_lockedMaterial), 1 + locked);
        requireSame("the depth function", static_cast<int>(m_depthTestChunk->getFunc()),
                    m_model->getOverlay() ? 519 : 515);
        requireSame("the root's count", osg::getRefCount(root()), 1);
    }

    std::vector<std::string> takeChanges()
    {
        std::vector<std::string> changes;
        for (const SceneChanges::Change& change : m_changes.take()) {
            if (change.second != osg::AttachmentContainer::AttachmentsFieldMask && !isAttachment(change.first)) {
                changes.push_back(nameOf(change.first) + " " + fieldsOf(change.second));
            }
        }
        return changes;
    }

    // Names and marks, which are the host's; chunks, which are attachments too, have names here.
    bool isAttachment(osg::UInt32 id) const
    {
        if (m_names.count(id) == 1) {
            return false;
        }
        const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
        return container != osg::NullFC && container->getType().isDerivedFrom(osg::Attachment::getClassType());
    }

    std::string nameOf(osg::UInt32 id) const
    {
        const auto name = m_names.find(id);
        return name != m_names.end() ? name->second : "container " + std::to_string(id);
    }

    static std::string fieldsOf(osg::BitVector mask)
    {
        static const std::map<osg::BitVector, std::string> names = {{osg::FieldBits::AllFields, "all"},
                                                                    {osg::Node::ChildrenFieldMask, "Children"},
                                                                    {osg::Node::TravMaskFieldMask, "TravMask"},
                                                                    {osg::Node::CoreFieldMask, "Core"}};
        const auto name = names.find(mask);
        if (name != names.end()) {
            return name->second;
        }
        // The numbers of these fields are those of fields of nodes.
        return mask == osg::Geometry::PositionsFieldMask ? "Positions"
               : mask == (osg::MaterialDrawable::MaterialFieldMask | quon::extensions::getOverwriteMaterialFieldMask())
                   ? "Material and OverwriteMaterial"
                   : "mask " + std::to_string(mask);
    }

    std::string withIds(std::string messages) const
    {
        for (std::size_t start = messages.find("(n"); start != std::string::npos; start = messages.find("(n")) {
            const std::size_t end = messages.find(')', start);
            const int number = std::stoi(messages.substr(start + 2, end - start - 2));
            messages.replace(start + 1, end - start - 1, std::to_string(m_scene.idOf(number)));
        }
        return messages;
    }

    void addNode(const ModelStep& step)
    {
        const int number = m_scene.pick(step);
        m_boxes->addNode(m_scene.node(number));
        m_model->addNode(number);
    }

    void removeNode(const ModelStep& step)
    {
        const int number = m_scene.pick(step);
        m_boxes->removeNode(m_scene.node(number));
        m_model->removeNode(number);
    }

    void updateNode(const ModelStep& step)
    {
        const int number = m_scene.pick(step);
        m_boxes->updateNode(m_scene.node(number));
        m_model->updateNode(number);
    }

    void updateAllNodes(const ModelStep&)
    {
        m_boxes->updateAllNodes();
        m_model->updateAllNodes();
    }

    void removeAllNodes(const ModelStep&)
    {
        m_boxes->removeAllNodes();
        m_model->removeAllNodes();
    }

    void setVisible(const ModelStep& step)
    {
        const bool visible = step.pick(0, 3) != 1;
        m_boxes->setVisible(visible);
        m_model->setVisible(visible);
    }

    void clear(const ModelStep&)
    {
        m_boxes->clear();
        m_model->clear();
    }

    void setMarkerSize(const ModelStep& step)
    {
        static const std::array<float, 4> sizes = {1, 0.5F, 0, -2};
        m_boxes->setMarkerSize(sizes[step.pick(0, sizes.size())]);
        m_model->setMarkerSize(sizes[step.pick(0, sizes.size())]);
    }

    static BoxSelectionVisualisationModel::Color colorOf(const ModelStep& step)
    {
        return {static_cast<float>(step.pick(0, 5)) / 4, static_cast<float>(step.pick(1, 5)) / 4,
                static_cast<float>(step.pick(2, 5)) / 4};
    }

    void setColor(const ModelStep& step)
    {
        const auto color = colorOf(step);
        m_boxes->setColor(osg::Color3f(color[0], color[1], color[2]));
        m_model->setColor(color);
    }

    void setLockedColor(const ModelStep& step)
    {
        const auto color = colorOf(step);
        m_boxes->setLockedColor(osg::Color3f(color[0], color[1], color[2]));
        m_model->setLockedColor(color);
    }

    void setTransparency(const ModelStep& step)
    {
        static const std::array<int, 6> offsets = {0, 5, -7, 1000, INT_MAX, INT_MIN};
        const float transparency = static_cast<float>(step.pick(0, 5)) / 4;
        m_boxes->setTransparency(transparency, offsets[step.pick(1, offsets.size())]);
        m_model->setTransparency(transparency, offsets[step.pick(1, offsets.size())]);
    }

    void setOverlay(const ModelStep& step)
    {
        m_boxes->setOverlay(step.pick(0, 2) == 1);
        m_model->setOverlay(step.pick(0, 2) == 1);
    }

    // Null, a node with another core, a geometry without positions: all are left alone.
    void updateNoBox(const ModelStep& step)
    {
        const int number = m_scene.pick(step);
        if (number != 0) {
            m_boxes->updateVisualisation(m_scene.node(number), m_otherNodes[step.pick(2, 3)].get());
        }
    }

    void setRootMask(const ModelStep& step)
    {
        static const std::array<unsigned, 3> masks = {0xFFFFFFFF, 2, 0xFFFFFFFE};
        root()->setTravMask(masks[step.pick(0, masks.size())]);
        m_model->setRootMask(masks[step.pick(0, masks.size())]);
    }

    void addSceneNode(const ModelStep& step)
    {
        m_scene.addNode(step);
        m_changes.skip();
    }

    void removeSceneNode(const ModelStep& step)
    {
        m_scene.removeNode(step);
        m_changes.skip();
    }

    void setMask(const ModelStep& step)
    {
        m_scene.setMask(step);
        m_changes.skip();
    }

    void setCore(const ModelStep& step)
    {
        m_scene.setCore(step);
        m_changes.skip();
    }

    void move(const ModelStep& step)
    {
        m_scene.move(step);
        m_changes.skip();
    }

    void lock(const ModelStep& step)
    {
        m_scene.lock(step);
        m_changes.skip();
    }

    ModelScene m_scene;
    SceneChanges m_changes;
    std::unique_ptr<BoxSelectionVisualisationModel> m_model;
    std::unique_ptr<BoxSelectionVisualisation> m_boxes;
    osg::SimpleMaterialPtr m_highlightMaterial;
    osg::SimpleMaterialPtr m_lockedMaterial;
    osg::DepthTestChunkPtr m_depthTestChunk;
    std::map<osg::UInt32, std::string> m_names;
    std::map<osg::UInt32, int> m_numbers;
    std::map<int, BoxIds> m_ids;
    std::array<NodeRef, 3> m_otherNodes;
};

TEST(BoxSelectionVisualisationModelTest, AnySequenceOfCallsMatchesTheModel)
{
    quon::testing::runModel<Driver>();
}

} // namespace
