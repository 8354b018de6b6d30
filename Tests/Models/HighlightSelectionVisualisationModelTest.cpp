// SPDX-License-Identifier: MIT
#include "HighlightSelectionVisualisationModel.h"
#include "ModelScene.h"
#include "SceneChanges.h"

#include <Interaction/HighlightSelectionVisualisation.h>

#include <InteractionTesting/SceneBuilder.h>

#include "Support/StandardError.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koMaterials.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGRefPtr.h>

#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using quon::interaction::cloneSelectionTree;
using quon::interaction::HighlightSelectionVisualisation;
using quon::testing::exists;
using quon::testing::HighlightSelectionVisualisationModel;
using quon::testing::makeNode;
using quon::testing::ModelCoverage;
using quon::testing::ModelOperation;
using quon::testing::ModelScene;
using quon::testing::ModelStep;
using quon::testing::NodeRef;
using quon::testing::SceneChanges;
using quon::testing::StandardError;
using quon::testing::model::requireSame;

using Copy = HighlightSelectionVisualisationModel::Copy;
using Highlight = HighlightSelectionVisualisationModel::Highlight;

std::vector<float> listOf(const osg::Color3f& color)
{
    return {color[0], color[1], color[2]};
}

std::vector<float> listOf(const std::array<float, 3>& values)
{
    return {values.begin(), values.end()};
}

class Driver {
public:
    using Operation = ModelOperation<Driver>;

    static const std::vector<Operation>& operations()
    {
        static const std::vector<Operation> all = {{"addNode", 24, &Driver::addNode},
                                                   {"removeNode", 8, &Driver::removeNode},
                                                   {"updateNode", 20, &Driver::updateNode},
                                                   {"updateAllNodes", 5, &Driver::updateAllNodes},
                                                   {"removeAllNodes", 2, &Driver::removeAllNodes},
                                                   {"setVisible", 5, &Driver::setVisible},
                                                   {"setColor", 1, &Driver::setColor},
                                                   {"setOverlay", 2, &Driver::setOverlay},
                                                   {"setMaterial", 2, &Driver::setMaterial},
                                                   {"update with null", 1, &Driver::updateNull},
                                                   {"update of what is no transform", 2, &Driver::updateNoTransform},
                                                   {"cloneSelectionTree", 3, &Driver::clone},
                                                   {"mask of the root set by the host", 1, &Driver::setRootMask},
                                                   {"scene node added", 16, &Driver::addSceneNode},
                                                   {"scene node removed", 3, &Driver::removeSceneNode},
                                                   {"mask of a scene node", 10, &Driver::setMask},
                                                   {"core of a scene node", 5, &Driver::setCore},
                                                   {"transform moved", 8, &Driver::move}};
        return all;
    }

    static std::vector<std::string> branches() { return HighlightSelectionVisualisationModel::branches(); }

    explicit Driver(ModelCoverage& coverage)
        : m_scene(std::make_unique<ModelScene>())
        , m_model(std::make_unique<HighlightSelectionVisualisationModel>(makeScene(), makeCopyScene(), coverage))
    {
        for (MaterialRef& material : m_otherMaterials) {
            material = osg::SimpleMaterial::create();
        }
        m_foreign = makeNode(osg::Group::create());
        m_changes.skip();
        m_highlights = std::make_unique<HighlightSelectionVisualisation>();
        meetConstants();
        compare();
    }

    ~Driver()
    {
        m_highlights.reset();
        // The reference that an instance deliberately keeps.
        if (m_material != osg::NullFC) {
            osg::subRefCP(m_material);
        }
    }

    void compare()
    {
        compareChildren();
        requireSame("the changes", takeChanges(), m_model->takeChanges());
        requireSame("standard error", StandardError::take(), withIds(m_model->takeMessages()));
        requireSame("visible", m_highlights->isVisible(), m_model->isVisible());
        requireSame("the root's mask", root()->getTravMask(), m_model->getRootMask());
        for (const int number : m_scene->numbers()) {
            requireSame("tracked", m_highlights->hasNode(m_scene->node(number)), m_model->hasNode(number));
        }
        compareHighlights();
        compareMaterials();
    }

    void finish()
    {
        // Nothing is removed before: what is left below the root goes with it.
        m_highlights.reset();
        m_model->destroy(false);
        requireSame("highlights left in the model", m_model->getHighlights().size(), std::size_t(0));
        for (const auto& visualisation : m_ids) {
            requireSame("a highlight exists", exists(visualisation.second), false);
        }
        requireSame("the material's count", osg::getRefCount(m_material), 1);
        m_scene.reset();
        m_foreign = NodeRef();
        m_otherMaterials = {};
        osg::subRefCP(m_material);
        m_material = osg::SimpleMaterialPtr();
        requireSame("containers left behind", m_changes.countMore(), 0L);
    }

private:
    using MaterialRef = osg::RefPtr<osg::SimpleMaterialPtr>;

    HighlightSelectionVisualisationModel::Scene makeScene()
    {
        return {[this](int node) { return m_scene->exists(node); },
                [this](int node) { return m_scene->info(node).mask; }};
    }

    HighlightSelectionVisualisationModel::CopyScene makeCopyScene()
    {
        HighlightSelectionVisualisationModel::CopyScene scene;
        scene.getNode = [this](int number) {
            using Core = ModelScene::Core;
            const ModelScene::Info& info = m_scene->info(number);
            HighlightSelectionVisualisationModel::SceneNode node;
            node.mask = info.mask;
            node.parent = info.parent;
            node.core = number == ModelScene::root ? 1 : info.coreId;
            node.isReplacedByGroup = info.core == Core::Light || info.core == Core::Camera ||
                                     info.core == Core::MaterialGroup || info.core == Core::MaterialPool;
            node.isGeometry = info.core == Core::Geometry;
            node.isTransform = info.core == Core::Transform;
            node.children = info.children;
            return node;
        };
        scene.getWorldTranslation = [this](int node) { return m_scene->worldTranslation(node); };
        return scene;
    }

    osg::NodePtr root() const { return m_highlights->getVisualisation(); }

    void meetConstants()
    {
        const auto group = osg::MaterialGroupPtr::dcast(root()->getCore());
        m_material = osg::SimpleMaterialPtr::dcast(group->getMaterial());
        const auto polygonChunk = osg::PolygonChunkPtr::dcast(m_material->getChunks(0));
        m_depthTestChunk = osg::DepthTestChunkPtr::dcast(m_material->getChunks(1));
        m_names = {{osg::getContainerId(root()), "root"},
                   {osg::getContainerId(group), "material group"},
                   {osg::getContainerId(m_material), "highlight material"},
                   {osg::getContainerId(polygonChunk), "polygon chunk"},
                   {osg::getContainerId(m_depthTestChunk), "depth test chunk"},
                   {osg::getContainerId(m_foreign.get()), "foreign"}};
        requireSame("the root's name", NodeUtils::getName(root()), std::string());
        requireSame("the material's name", koMaterials::getName(m_material),
                    std::string("koScenegraph::m_highlightMaterial"));
        requireSame("who named the material", koMaterials::isNameGivenByProgram(m_material), true);
        requireSame("the number of chunks", m_material->getMFChunks()->size(), 2U);
        requireSame("the front mode", static_cast<int>(polygonChunk->getFrontMode()), 6913);
        requireSame("the back mode", static_cast<int>(polygonChunk->getBackMode()), 6913);
        requireSame("the offset factor", polygonChunk->getOffsetFactor(), -1.0F);
        requireSame("the offset bias", polygonChunk->getOffsetBias(), -100.0F);
        requireSame("the offset of lines", polygonChunk->getOffsetLine(), true);
    }

    // A highlight that is seen for the first time gets the number that the model gave it.
    void compareChildren()
    {
        std::vector<std::string> children;
        std::vector<std::string> expected;
        for (const int number : m_model->getChildren()) {
            expected.push_back(std::to_string(number));
        }
        for (osg::UInt32 index = 0; index < root()->getNChildren(); ++index) {
            const osg::NodePtr child = root()->getChild(index);
            const osg::UInt32 id = osg::getContainerId(child);
            if (m_numbers.count(id) == 0 && index < expected.size() &&
                m_ids.count(m_model->getChildren()[index]) == 0) {
                const int number = m_model->getChildren()[index];
                m_numbers[id] = number;
                m_ids[number] = id;
                m_names[id] = HighlightSelectionVisualisationModel::visualisationName(number);
                m_names[osg::getContainerId(child->getCore())] = m_names[id] + " transform";
            }
            const auto number = m_numbers.find(id);
            children.push_back(number != m_numbers.end() ? std::to_string(number->second) : "unknown");
        }
        requireSame("the children of the root", children, expected);
    }

    void compareHighlights()
    {
        m_copiesOfCores.clear();
        for (const auto& [number, id] : m_ids) {
            const auto expected = m_model->getHighlights().find(number);
            const bool isAlive = expected != m_model->getHighlights().end();
            requireSame("a highlight exists", exists(id), isAlive);
            if (isAlive) {
                const auto node = osg::NodePtr::dcast(osg::FieldContainerFactory::the()->getContainer(id));
                const auto& visualisation = m_model->visualisations().at(number);
                requireSame("the mask of a highlight", node->getTravMask(), visualisation.mask);
                requireSame("the count of a highlight", osg::getRefCount(node), visualisation.references);
                requireSame("a highlight", textOf(node), textOf(expected->second));
            }
        }
        // A core is held by its own node and by each node that shares it.
        for (const int number : m_scene->numbers()) {
            const osg::NodeCorePtr core = m_scene->node(number)->getCore();
            if (core != osg::NullFC) {
                requireSame("the count of a core", osg::getRefCount(core),
                            1 + m_copiesOfCores[m_scene->info(number).coreId]);
            }
        }
    }

    void compareMaterials()
    {
        requireSame("the colour", listOf(m_highlights->getColor()), listOf(m_model->getColor()));
        requireSame("the material's colour", listOf(m_material->getDiffuse()), listOf(m_model->getColor()));
        requireSame("lit", m_material->getLit(), false);
        requireSame("the sort key", m_material->getSortKey(), 60000);
        requireSame("the transparency", m_material->getTransparency(), 0.001F);
        requireSame("the mode of transparency", m_material->getTransparencyMode(),
                    static_cast<osg::Int32>(osg::Material::TransparencyForceTransparent));
        requireSame("the overlay", m_highlights->getOverlay(), m_model->getOverlay());
        requireSame("the depth function", static_cast<int>(m_depthTestChunk->getFunc()),
                    m_model->getOverlay() ? 519 : 515);
        const osg::MaterialPtr wanted = materialOf(m_model->getMaterial());
        const auto group = osg::MaterialGroupPtr::dcast(root()->getCore());
        requireSame("the material", m_highlights->getMaterial() == wanted, true);
        requireSame("the group's material", group->getMaterial() == wanted, true);
        requireSame("the group's count", osg::getRefCount(group), 2);
        requireSame("the root's count", osg::getRefCount(root()), 1);
        for (int number = 1; number <= 3; ++number) {
            requireSame("the count of a material", osg::getRefCount(materialOf(number)),
                        number == m_model->getMaterial() ? 2 : 1);
        }
    }

    osg::MaterialPtr materialOf(int number) const
    {
        return number == 0   ? osg::MaterialPtr()
               : number == 1 ? osg::MaterialPtr(m_material)
                             : osg::MaterialPtr(m_otherMaterials[static_cast<std::size_t>(number) - 2].get());
    }

    // Trees as texts: mask, core and children of each node. Strings and no streams, for these are most of what a
    // sequence takes.

    static void writeHead(std::string& text, unsigned mask, unsigned core)
    {
        text += std::to_string(mask);
        text += '/';
        text += std::to_string(core);
        text += '(';
    }

    static void write(std::string& text, float number)
    {
        std::array<char, 32> digits = {};
        const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                           std::chars_format::general, std::numeric_limits<float>::digits10);
        text.append(digits.data(), written.ptr);
        text += ' ';
    }

    void write(std::string& text, const Copy& copy)
    {
        writeHead(text, copy.mask, copy.core);
        for (const Copy& child : copy.children) {
            write(text, child);
        }
        text += ')';
        ++m_copiesOfCores[copy.core];
    }

    std::string textOf(const Highlight& highlight)
    {
        std::string text;
        for (const float each : highlight.translation) {
            write(text, each);
        }
        for (const Copy& child : highlight.children) {
            write(text, child);
        }
        return text;
    }

    // A core that no node of the scene has is one of the copy's own; the scene's own may have gone meanwhile.
    void write(std::string& text, const osg::NodePtr& node)
    {
        const osg::NodeCorePtr core = node->getCore();
        const bool isOwn = core->getType() == osg::Group::getClassType() && !isOfScene(osg::getContainerId(core));
        requireSame("the count of a copy", osg::getRefCount(node), 1);
        requireSame("the name of a copy", NodeUtils::getName(node), std::string());
        if (isOwn) {
            requireSame("the count of a copy's own group", osg::getRefCount(core), 1);
        }
        writeHead(text, node->getTravMask(), isOwn ? 0 : osg::getContainerId(core));
        for (osg::UInt32 index = 0; index < node->getNChildren(); ++index) {
            write(text, node->getChild(index));
        }
        text += ')';
    }

    std::string textOf(const osg::NodePtr& highlight)
    {
        std::string text;
        const auto transform = osg::TransformPtr::dcast(highlight->getCore());
        osg::Matrix expected;
        const osg::Matrix& matrix = transform->getMatrix();
        expected.setTranslate(matrix[3][0], matrix[3][1], matrix[3][2]);
        requireSame("a matrix is a translation", matrix == expected, true);
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            write(text, matrix[3][axis]);
        }
        for (osg::UInt32 index = 0; index < highlight->getNChildren(); ++index) {
            write(text, highlight->getChild(index));
        }
        return text;
    }

    bool isOfScene(osg::UInt32 core) const { return m_coresOfScene.count(core) == 1; }

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
        const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
        return m_names.count(id) == 0 && container != osg::NullFC &&
               container->getType().isDerivedFrom(osg::Attachment::getClassType());
    }

    // What is unknown can only be a copy.
    std::string nameOf(osg::UInt32 id) const
    {
        const auto name = m_names.find(id);
        return name != m_names.end() ? name->second : "copy";
    }

    static std::string fieldsOf(osg::BitVector mask)
    {
        return mask == osg::FieldBits::AllFields      ? "all"
               : mask == osg::Node::ChildrenFieldMask ? "Children"
               : mask == osg::Node::TravMaskFieldMask ? "TravMask"
               : mask == osg::Node::CoreFieldMask     ? "Core"
                                                      : "mask " + std::to_string(mask);
    }

    std::string withIds(std::string messages) const
    {
        for (std::size_t start = messages.find("(n"); start != std::string::npos; start = messages.find("(n")) {
            const std::size_t end = messages.find(')', start);
            const int number = std::stoi(messages.substr(start + 2, end - start - 2));
            messages.replace(start + 1, end - start - 1, std::to_string(m_scene->idOf(number)));
        }
        return messages;
    }

    void addNode(const ModelStep& step)
    {
        const int number = m_scene->pick(step);
        m_highlights->addNode(m_scene->node(number));
        m_model->addNode(number);
    }

    void removeNode(const ModelStep& step)
    {
        const int number = m_scene->pick(step);
        m_highlights->removeNode(m_scene->node(number));
        m_model->removeNode(number);
    }

    void updateNode(const ModelStep& step)
    {
        const int number = m_scene->pick(step);
        m_highlights->updateNode(m_scene->node(number));
        m_model->updateNode(number);
    }

    void updateAllNodes(const ModelStep&)
    {
        m_highlights->updateAllNodes();
        m_model->updateAllNodes();
    }

    void removeAllNodes(const ModelStep&)
    {
        m_highlights->removeAllNodes();
        m_model->removeAllNodes();
    }

    void setVisible(const ModelStep& step)
    {
        const bool visible = step.pick(0, 3) != 1;
        m_highlights->setVisible(visible);
        m_model->setVisible(visible);
    }

    void setColor(const ModelStep& step)
    {
        const HighlightSelectionVisualisationModel::Color color = {static_cast<float>(step.pick(0, 5)) / 4,
                                                                   static_cast<float>(step.pick(1, 5)) / 4,
                                                                   static_cast<float>(step.pick(2, 5)) / 4};
        m_highlights->setColor(osg::Color3f(color[0], color[1], color[2]));
        m_model->setColor(color);
    }

    void setOverlay(const ModelStep& step)
    {
        m_highlights->setOverlay(step.pick(0, 2) == 1);
        m_model->setOverlay(step.pick(0, 2) == 1);
    }

    void setMaterial(const ModelStep& step)
    {
        const int material = static_cast<int>(step.pick(0, 4));
        m_highlights->setMaterial(materialOf(material));
        m_model->setMaterial(material);
    }

    void updateNull(const ModelStep& step)
    {
        const int number = m_scene->pick(step);
        m_highlights->updateVisualisation(m_scene->node(number), osg::NodePtr());
        requireSame("the visualisation of null", m_highlights->createVisualisation(osg::NodePtr()) == osg::NullFC,
                    true);
    }

    // The hook is public: its copy is replaced or removed, and there is no matrix to set.
    void updateNoTransform(const ModelStep& step)
    {
        const int number = m_scene->pick(step);
        if (number == 0) {
            return;
        }
        osg::NodePtr old = quon::testing::addChild(m_foreign.get(), osg::Group::create());
        m_changes.skip();
        m_highlights->updateVisualisation(m_scene->node(number), m_foreign);

        std::vector<std::string> expectedChanges;
        std::string expected;
        if (m_scene->info(number).mask == 0xFFFFFFFF) {
            const std::vector<Copy> copied = m_model->copy(number);
            expectedChanges = m_model->takeChanges();
            std::string text;
            for (const Copy& copy : copied) {
                write(text, copy);
            }
            expected = copied.empty() ? "old" : text;
        }
        expectedChanges.emplace_back("foreign all");
        requireSame("the changes", takeChanges(), expectedChanges);
        std::string text;
        for (osg::UInt32 index = 0; index < m_foreign->getNChildren(); ++index) {
            if (m_foreign->getChild(index) == old) {
                text += "old";
            } else {
                write(text, m_foreign->getChild(index));
            }
        }
        requireSame("what is below a group", text, expected);
        m_foreign->clearChildren();
        m_changes.skip();
    }

    void clone(const ModelStep& step)
    {
        const int number = m_scene->pick(step);
        const osg::NodePtr copy = cloneSelectionTree(m_scene->node(number));
        requireSame("the count of a copy", osg::getRefCount(copy), 0);
        const NodeRef held(copy);
        std::string text;
        if (copy != osg::NullFC) {
            write(text, copy);
        }
        std::string expected;
        if (number != 0) {
            for (const Copy& each : m_model->copy(number)) {
                write(expected, each);
            }
        }
        requireSame("a copy", text, expected);
    }

    void setRootMask(const ModelStep& step)
    {
        static const std::array<unsigned, 3> masks = {0xFFFFFFFF, 2, 0xFFFFFFFE};
        root()->setTravMask(masks[step.pick(0, masks.size())]);
        m_model->setRootMask(masks[step.pick(0, masks.size())]);
    }

    // Copies may outlive the nodes whose cores they share.
    void noteCores()
    {
        for (const int number : m_scene->numbers()) {
            m_coresOfScene.insert(m_scene->info(number).coreId);
        }
        m_changes.skip();
    }

    void addSceneNode(const ModelStep& step)
    {
        m_scene->addNode(step);
        noteCores();
    }

    void removeSceneNode(const ModelStep& step)
    {
        m_scene->removeNode(step);
        noteCores();
    }

    void setMask(const ModelStep& step)
    {
        m_scene->setMask(step);
        noteCores();
    }

    void setCore(const ModelStep& step)
    {
        m_scene->setCore(step);
        noteCores();
    }

    void move(const ModelStep& step)
    {
        m_scene->move(step);
        noteCores();
    }

    SceneChanges m_changes;
    std::unique_ptr<ModelScene> m_scene;
    std::unique_ptr<HighlightSelectionVisualisationModel> m_model;
    std::unique_ptr<HighlightSelectionVisualisation> m_highlights;
    osg::SimpleMaterialPtr m_material;
    osg::DepthTestChunkPtr m_depthTestChunk;
    std::array<MaterialRef, 2> m_otherMaterials;
    NodeRef m_foreign;
    std::set<osg::UInt32> m_coresOfScene;
    std::map<osg::UInt32, std::string> m_names;
    std::map<osg::UInt32, int> m_numbers;
    std::map<int, osg::UInt32> m_ids;
    std::map<osg::UInt32, int> m_copiesOfCores;
};

TEST(HighlightSelectionVisualisationModelTest, AnySequenceOfCallsMatchesTheModel)
{
    quon::testing::runModel<Driver>();
}

} // namespace
