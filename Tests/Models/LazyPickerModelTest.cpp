// SPDX-License-Identifier: MIT
#include "LazyPickerModel.h"
#include "ModelReactions.h"

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/RecordingPicker.h>
#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSelectionOption.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <array>
#include <climits>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using quon::interaction::Picker;
using quon::testing::CallLog;
using quon::testing::LazyPickerModel;
using quon::testing::ModelCoverage;
using quon::testing::ModelOperation;
using quon::testing::ModelReactions;
using quon::testing::ModelStep;
using quon::testing::NodeRef;
using quon::testing::ObjectNames;
using quon::testing::RecordingPicker;
using quon::testing::model::requireSame;

using MaterialRef = osg::RefPtr<osg::SimpleMaterialPtr>;

constexpr std::size_t nodeCount = 4;     // with null
constexpr std::size_t materialCount = 3; // with null
constexpr std::size_t optionCount = 3;   // with null

const std::vector<int> modes = {1, 2, 0, -1, INT_MAX};
const std::vector<int> regions = {0, 1, -1, INT_MIN};

class Option : public osg::SelectionOption {};

osg::Pnt3f pointOf(int number)
{
    return osg::Pnt3f(static_cast<float>(number), static_cast<float>(2 * number), static_cast<float>(-3 * number));
}

osg::Vec3f normalOf(int number)
{
    return osg::Vec3f(static_cast<float>(-number), static_cast<float>(5 * number), static_cast<float>(number));
}

osg::Vec2f uvOf(int number)
{
    return osg::Vec2f(static_cast<float>(7 * number), static_cast<float>(number));
}

class Driver {
public:
    using Operation = ModelOperation<Driver>;

    static const std::vector<Operation>& operations()
    {
        static const std::vector<Operation> all = {{"getPicked", 4, &Driver::getPicked},
                                                   {"getPickedPoint", 3, &Driver::getPickedPoint},
                                                   {"getPickedNode", 4, &Driver::getPickedNode},
                                                   {"getPickedNormal", 3, &Driver::getPickedNormal},
                                                   {"getPickedUV", 3, &Driver::getPickedUV},
                                                   {"getPickedMaterial", 3, &Driver::getPickedMaterial},
                                                   {"getMultiPicked", 10, &Driver::getMultiPicked},
                                                   {"getPickedNodes", 6, &Driver::getPickedNodes},
                                                   {"invalidate", 4, &Driver::invalidate},
                                                   {"setRoot", 2, &Driver::setRoot},
                                                   {"setSelectionRegion", 2, &Driver::setSelectionRegion},
                                                   {"setMaterialLayerEvaluationEnabled", 2, &Driver::setMaterialLayers},
                                                   {"setTransparencyEvaluationEnabled", 2, &Driver::setTransparency},
                                                   {"setFullyEnclosed", 2, &Driver::setFullyEnclosed},
                                                   {"setDepthSelection", 2, &Driver::setDepthSelection},
                                                   {"setMakeNormalsConsistent", 2, &Driver::setNormalsConsistent},
                                                   {"validity of the cache", 3, &Driver::setCacheValid},
                                                   {"change of the options", 3, &Driver::setOptionsChanged},
                                                   {"replacement of options", 2, &Driver::setReplacement},
                                                   {"other hit", 6, &Driver::setHit},
                                                   {"other multi-hit", 5, &Driver::setMultiHit},
                                                   {"other nodes", 3, &Driver::setNodes},
                                                   {"reaction while the option is updated", 3, &Driver::react}};
        return all;
    }

    static std::vector<std::string> branches()
    {
        std::vector<std::string> names = LazyPickerModel::branches();
        names.emplace_back("reaction inside updateSelectionOption");
        return names;
    }

    explicit Driver(ModelCoverage& coverage)
        : m_coverage(coverage)
        , m_model(makeBackEnd(), coverage)
    {
        for (std::size_t number = 1; number < nodeCount; ++number) {
            m_nodes[number] = quon::testing::makeNode(osg::Group::create());
            m_names.add(m_nodes[number].get(), "n" + std::to_string(number));
        }
        for (std::size_t number = 1; number < materialCount; ++number) {
            m_materials[number] = osg::SimpleMaterial::create();
        }
        for (std::size_t number = 1; number < optionCount; ++number) {
            m_names.add(&m_options[number], "o" + std::to_string(number));
        }
        m_picker->onUpdateSelectionOption([this] { m_reactions.onLibraryCall(); });
    }

    void compare()
    {
        requireSame("the calls", m_log.take(), m_expectedLog.take());
        requireSame("the root", m_names.of(m_picker->getRoot()), nameOfNode(m_model.getRoot()));
        requireSame("the region", m_picker->getSelectionRegion(), m_model.getSelectionRegion());
        requireSame("fully enclosed", m_picker->getFullyEnclosed(), m_model.getFullyEnclosed());
        requireSame("depth selection", m_picker->getDepthSelection(), m_model.getDepthSelection());
        requireSame("consistent normals", m_picker->getMakeNormalsConsistent(), m_model.getMakeNormalsConsistent());
        requireSame("material layers", m_picker->getMaterialLayerEvaluationEnabled(),
                    m_model.getMaterialLayerEvaluationEnabled());
        requireSame("transparency", m_picker->getTransparencyEvaluationEnabled(),
                    m_model.getTransparencyEvaluationEnabled());
        compareCounts();
    }

    void finish()
    {
        m_picker.reset();
        m_model.setRoot(0);
        compareCounts();
    }

private:
    // Picked nodes and materials are plain handles; only the root is held.
    void compareCounts()
    {
        for (std::size_t number = 1; number < nodeCount; ++number) {
            requireSame("the count of a node", osg::getRefCount(m_nodes[number].get()),
                        static_cast<int>(number) == m_model.getRoot() ? 2 : 1);
        }
        for (std::size_t number = 1; number < materialCount; ++number) {
            requireSame("the count of a material", osg::getRefCount(m_materials[number].get()), 1);
        }
    }

    static std::string nameOfNode(int number) { return number == 0 ? "null" : "n" + std::to_string(number); }
    static std::string nameOfOption(int number) { return number == 0 ? "null" : "o" + std::to_string(number); }

    static std::string nameOfNodes(const std::vector<int>& numbers)
    {
        std::string names = "[";
        for (const int number : numbers) {
            names += (names.size() > 1 ? " " : "") + nameOfNode(number);
        }
        return names + "]";
    }

    osg::NodePtr node(int number) const { return m_nodes[static_cast<std::size_t>(number)].get(); }
    osg::MaterialPtr material(int number) const { return m_materials[static_cast<std::size_t>(number)].get(); }
    osg::SelectionOption* option(int number)
    {
        return number == 0 ? nullptr : &m_options[static_cast<std::size_t>(number)];
    }

    static int optionOf(const ModelStep& step) { return static_cast<int>(step.pick(0, optionCount)); }

    LazyPickerModel::BackEnd makeBackEnd()
    {
        LazyPickerModel::BackEnd backEnd;
        backEnd.isCacheValid = [this] {
            m_expectedLog.call("picker", "isCacheValid");
            return m_isCacheValid;
        };
        backEnd.updateSelectionOption = [this](int& changed) {
            m_expectedLog.call("picker", "updateSelectionOption", nameOfOption(changed));
            m_reactions.onModelCall([this] { return decide(); });
            changed = m_replacement.value_or(changed);
            return m_areOptionsChanged;
        };
        backEnd.computePicked = [this](LazyPickerModel::Hit& hit, int passed) {
            m_expectedLog.call("picker", "computePicked", nameOfOption(passed));
            hit = m_hit.value_or(hit);
        };
        backEnd.computePickedNodes = [this](std::vector<int>& nodes, int passed) {
            m_expectedLog.call("picker", "computePickedNodes", nameOfNodes(nodes), nameOfOption(passed));
            nodes = m_pickedNodes;
        };
        backEnd.computeMultiPicked = [this](int mode, LazyPickerModel::MultiHit& hit) {
            const bool isEmpty =
                hit.nodes.empty() && hit.points.empty() && hit.normals.empty() && hit.materials.empty();
            m_expectedLog.call("picker", "computeMultiPicked", mode, isEmpty ? "empty" : "not empty");
            hit = m_multiHit;
        };
        return backEnd;
    }

    // What may happen to the cache before a question is answered.
    ModelReactions::Action decide()
    {
        if (!m_pending) {
            return {};
        }
        const ModelStep step = *m_pending;
        m_pending.reset();
        m_coverage.see("reaction inside updateSelectionOption");
        switch (step.pick(0, 4)) {
        case 0:
            return [this](bool isLibrary) { isLibrary ? m_picker->invalidate() : m_model.invalidate(); };
        case 1:
            return [this, region = regions[step.pick(1, regions.size())]](bool isLibrary) {
                isLibrary ? m_picker->setSelectionRegion(region) : m_model.setSelectionRegion(region);
            };
        case 2:
            return [this, root = static_cast<int>(step.pick(1, nodeCount))](bool isLibrary) {
                isLibrary ? m_picker->setRoot(node(root)) : m_model.setRoot(root);
            };
        default:
            return [this](bool isLibrary) {
                if (isLibrary) {
                    m_picker->getPickedNodes(nullptr);
                } else {
                    m_model.getPickedNodes(0);
                }
            };
        }
    }

    void getPicked(const ModelStep& step)
    {
        m_reactions.carryOut([&](bool isLibrary) {
            if (!isLibrary) {
                m_expectedHit = m_model.getPicked(optionOf(step));
                return;
            }
            osg::NodePtr picked = m_nodes[1].get();
            osg::Pnt3f point(9, 9, 9);
            osg::Vec3f normal(9, 9, 9);
            m_picker->getPicked(picked, point, normal, option(optionOf(step)));
            requireSame("the node", m_names.of(picked), nameOfNode(m_expectedHit.node));
            requireSame("the point", point == pointOf(m_expectedHit.point), true);
            requireSame("the normal", normal == normalOf(m_expectedHit.normal), true);
        });
    }

    void getPickedPoint(const ModelStep& step)
    {
        ask(step, [&](osg::SelectionOption* passed) {
            requireSame("the point", m_picker->getPickedPoint(passed) == pointOf(m_expectedHit.point), true);
        });
    }

    void getPickedNode(const ModelStep& step)
    {
        ask(step, [&](osg::SelectionOption* passed) {
            requireSame("the node", m_names.of(m_picker->getPickedNode(passed)), nameOfNode(m_expectedHit.node));
        });
    }

    void getPickedNormal(const ModelStep& step)
    {
        ask(step, [&](osg::SelectionOption* passed) {
            requireSame("the normal", m_picker->getPickedNormal(passed) == normalOf(m_expectedHit.normal), true);
        });
    }

    void getPickedUV(const ModelStep& step)
    {
        ask(step, [&](osg::SelectionOption* passed) {
            requireSame("the texture coordinate", m_picker->getPickedUV(passed) == uvOf(m_expectedHit.uv), true);
        });
    }

    void getPickedMaterial(const ModelStep& step)
    {
        ask(step, [&](osg::SelectionOption* passed) {
            requireSame("the material", m_picker->getPickedMaterial(passed) == material(m_expectedHit.material), true);
        });
    }

    template <typename Ask>
    void ask(const ModelStep& step, const Ask& askLibrary)
    {
        m_reactions.carryOut([&](bool isLibrary) {
            if (isLibrary) {
                askLibrary(option(optionOf(step)));
            } else {
                m_expectedHit = m_model.getPicked(optionOf(step));
            }
        });
    }

    // What the vectors held before goes; those that are null are skipped.
    void getMultiPicked(const ModelStep& step)
    {
        const int mode = modes[step.pick(0, modes.size())];
        m_reactions.carryOut([&](bool isLibrary) {
            if (!isLibrary) {
                m_expectedMultiHit = m_model.getMultiPicked(mode);
                return;
            }
            std::vector<osg::NodePtr> nodes(2, node(1));
            std::vector<osg::Pnt3f> points(1, pointOf(9));
            std::vector<osg::Vec3f> normals(5, normalOf(9));
            std::vector<osg::MaterialPtr> materials(3, material(1));
            const bool hasNodes = step.pick(1, 4) != 3;
            const bool hasPoints = step.pick(2, 4) != 3;
            const bool hasNormals = step.pick(3, 4) != 3;
            const bool hasMaterials = step.pick(4, 4) != 3;
            m_picker->getMultiPicked(static_cast<Picker::MultiMode>(mode), hasNodes ? &nodes : nullptr,
                                     hasPoints ? &points : nullptr, hasNormals ? &normals : nullptr,
                                     hasMaterials ? &materials : nullptr);

            std::vector<osg::NodePtr> expectedNodes;
            for (const int each : m_expectedMultiHit.nodes) {
                expectedNodes.push_back(node(each));
            }
            std::vector<osg::Pnt3f> expectedPoints;
            for (const int each : m_expectedMultiHit.points) {
                expectedPoints.push_back(pointOf(each));
            }
            std::vector<osg::Vec3f> expectedNormals;
            for (const int each : m_expectedMultiHit.normals) {
                expectedNormals.push_back(normalOf(each));
            }
            std::vector<osg::MaterialPtr> expectedMaterials;
            for (const int each : m_expectedMultiHit.materials) {
                expectedMaterials.push_back(material(each));
            }
            requireSame("the nodes", m_names.of(nodes),
                        m_names.of(hasNodes ? expectedNodes : std::vector<osg::NodePtr>(2, node(1))));
            requireSame("the points", points == (hasPoints ? expectedPoints : std::vector<osg::Pnt3f>(1, pointOf(9))),
                        true);
            requireSame("the normals",
                        normals == (hasNormals ? expectedNormals : std::vector<osg::Vec3f>(5, normalOf(9))), true);
            requireSame("the materials",
                        materials == (hasMaterials ? expectedMaterials : std::vector<osg::MaterialPtr>(3, material(1))),
                        true);
        });
    }

    void getPickedNodes(const ModelStep& step)
    {
        m_reactions.carryOut([&](bool isLibrary) {
            if (isLibrary) {
                requireSame("the picked nodes", m_names.of(m_picker->getPickedNodes(option(optionOf(step)))),
                            nameOfNodes(m_expectedNodes));
            } else {
                m_expectedNodes = m_model.getPickedNodes(optionOf(step));
            }
        });
    }

    void invalidate(const ModelStep&)
    {
        m_picker->invalidate();
        m_model.invalidate();
    }

    void setRoot(const ModelStep& step)
    {
        const int root = static_cast<int>(step.pick(0, nodeCount));
        m_picker->setRoot(node(root));
        m_model.setRoot(root);
    }

    void setSelectionRegion(const ModelStep& step)
    {
        m_picker->setSelectionRegion(regions[step.pick(0, regions.size())]);
        m_model.setSelectionRegion(regions[step.pick(0, regions.size())]);
    }

    void setMaterialLayers(const ModelStep& step)
    {
        m_picker->setMaterialLayerEvaluationEnabled(step.pick(0, 2) == 1);
        m_model.setMaterialLayerEvaluationEnabled(step.pick(0, 2) == 1);
    }

    void setTransparency(const ModelStep& step)
    {
        m_picker->setTransparencyEvaluationEnabled(step.pick(0, 2) == 1);
        m_model.setTransparencyEvaluationEnabled(step.pick(0, 2) == 1);
    }

    void setFullyEnclosed(const ModelStep& step)
    {
        m_picker->setFullyEnclosed(step.pick(0, 2) == 1);
        m_model.setFullyEnclosed(step.pick(0, 2) == 1);
    }

    void setDepthSelection(const ModelStep& step)
    {
        m_picker->setDepthSelection(step.pick(0, 2) == 1);
        m_model.setDepthSelection(step.pick(0, 2) == 1);
    }

    void setNormalsConsistent(const ModelStep& step)
    {
        m_picker->setMakeNormalsConsistent(step.pick(0, 2) == 1);
        m_model.setMakeNormalsConsistent(step.pick(0, 2) == 1);
    }

    void setCacheValid(const ModelStep& step)
    {
        m_isCacheValid = step.pick(0, 3) != 1;
        m_picker->setCacheValid(m_isCacheValid);
    }

    void setOptionsChanged(const ModelStep& step)
    {
        m_areOptionsChanged = step.pick(0, 3) == 1;
        m_picker->setOptionsChanged(m_areOptionsChanged);
    }

    void setReplacement(const ModelStep& step)
    {
        m_replacement = optionOf(step);
        m_picker->setReplacementOption(option(*m_replacement));
    }

    void setHit(const ModelStep& step)
    {
        if (step.isRare(5, 40)) {
            // The five results stay as they are handed over.
            m_hit.reset();
            m_picker->setHit(std::nullopt);
            return;
        }
        m_hit = LazyPickerModel::Hit{static_cast<int>(step.pick(0, nodeCount)), static_cast<int>(step.pick(1, 5)),
                                     static_cast<int>(step.pick(2, 5)), static_cast<int>(step.pick(3, 5)),
                                     static_cast<int>(step.pick(4, materialCount))};
        m_picker->setHit(RecordingPicker::Hit{node(m_hit->node), pointOf(m_hit->point), normalOf(m_hit->normal),
                                              uvOf(m_hit->uv), material(m_hit->material)});
    }

    // Lists of none to three entries, not always of one length.
    void setMultiHit(const ModelStep& step)
    {
        m_multiHit = LazyPickerModel::MultiHit();
        RecordingPicker::MultiHit hit;
        for (std::size_t index = 0; index < 3; ++index) {
            if (index < step.pick(0, 4)) {
                m_multiHit.nodes.push_back(static_cast<int>((step.pick(4, 16) + index) % nodeCount));
                hit.nodes.push_back(node(m_multiHit.nodes.back()));
            }
            if (index < step.pick(1, 4)) {
                m_multiHit.points.push_back(static_cast<int>(step.pick(4, 7) + index));
                hit.points.push_back(pointOf(m_multiHit.points.back()));
            }
            if (index < step.pick(2, 4)) {
                m_multiHit.normals.push_back(static_cast<int>(step.pick(5, 7) + index));
                hit.normals.push_back(normalOf(m_multiHit.normals.back()));
            }
            if (index < step.pick(3, 4)) {
                m_multiHit.materials.push_back(static_cast<int>((step.pick(5, 16) + index) % materialCount));
                hit.materials.push_back(material(m_multiHit.materials.back()));
            }
        }
        m_picker->setMultiHit(hit);
    }

    void setNodes(const ModelStep& step)
    {
        m_pickedNodes.clear();
        std::vector<osg::NodePtr> nodes;
        for (std::size_t index = 1; index <= step.pick(0, 4); ++index) {
            m_pickedNodes.push_back(static_cast<int>(step.pick(index, nodeCount)));
            nodes.push_back(node(m_pickedNodes.back()));
        }
        m_picker->setNodes(nodes);
    }

    void react(const ModelStep& step) { m_pending = step; }

    ModelCoverage& m_coverage;
    CallLog m_log;
    CallLog m_expectedLog;
    ObjectNames m_names;
    std::array<NodeRef, nodeCount> m_nodes;
    std::array<MaterialRef, materialCount> m_materials;
    std::array<Option, optionCount> m_options;

    // What the back end answers, on both sides.
    bool m_isCacheValid = true;
    bool m_areOptionsChanged = false;
    std::optional<int> m_replacement;
    std::optional<LazyPickerModel::Hit> m_hit = LazyPickerModel::Hit();
    LazyPickerModel::MultiHit m_multiHit;
    std::vector<int> m_pickedNodes;

    ModelReactions m_reactions;
    std::optional<ModelStep> m_pending;
    LazyPickerModel::Hit m_expectedHit;
    LazyPickerModel::MultiHit m_expectedMultiHit;
    std::vector<int> m_expectedNodes;
    std::unique_ptr<RecordingPicker> m_picker = std::make_unique<RecordingPicker>(m_log, m_names, "picker");
    LazyPickerModel m_model;
};

TEST(LazyPickerModelTest, AnySequenceOfCallsMatchesTheModel)
{
    quon::testing::runModel<Driver>();
}

} // namespace
