// SPDX-License-Identifier: MIT
#include "Faults/EveryFailure.h"

#include <Interaction/AbstractSelectionVisualisation.h>
#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/HighlightSelectionVisualisation.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/LazyPicker.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>

#include <InteractionTesting/LiveContainers.h>
#include <InteractionTesting/SceneBuilder.h>

#include "Support/AllocationCount.h"
#include "Support/AllocationFailure.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace quon::interaction {

namespace {

using quon::testing::addChild;
using quon::testing::AllocationFailure;
using quon::testing::countLiveContainers;
using quon::testing::EveryFailure;
using quon::testing::getAllocationCount;
using quon::testing::makeExtent;
using quon::testing::makeNode;
using quon::testing::makeTranslation;
using quon::testing::NodeRef;
using ::testing::ElementsAre;

const std::string longName = "a name of more than fifteen characters";

// Keeps nothing for itself, unlike boxes and highlights.
class NothingToSee : public AbstractSelectionVisualisation {
    osg::NodePtr createVisualisation(const osg::NodePtr&) override { return {}; }
    void removeVisualisation(const osg::NodePtr&, const osg::NodePtr&) override {}
    void updateVisualisation(const osg::NodePtr&, const osg::NodePtr&) override {}
};

// Takes what earlier selections left for later ones, so that a selection asks for memory as the first of a process
// does.
class SpareElements {
public:
    SpareElements()
    {
        m_tracked.setVisible(false);
        takeAll([this](const osg::NodePtr& node) { m_selection.addNode(node); });
        takeAll([this](const osg::NodePtr& node) { m_tracked.addNode(node); });
    }

private:
    template <class Take>
    void takeAll(const Take& take)
    {
        std::size_t before = 0;
        do {
            m_nodes.emplace_back(osg::Node::create());
            before = getAllocationCount();
            take(m_nodes.back());
        } while (getAllocationCount() == before);
    }

    std::vector<NodeRef> m_nodes;
    NodeSelectionModel m_selection{"spare elements"};
    NothingToSee m_tracked;
};

// A moved group with two geometries, and another group.
struct Scene {
    Scene()
    {
        group = addChild(root, makeTranslation(1.0F, 2.0F, 3.0F));
        geometry = addChild(group, makeExtent(osg::Pnt3f(0.0F, 0.0F, 0.0F), osg::Pnt3f(1.0F, 1.0F, 1.0F)));
        addChild(group, osg::MaterialGroup::create());
        other = addChild(root, osg::Group::create());
    }

    SpareElements spareElements;
    NodeRef root = makeNode(osg::Group::create());
    osg::NodePtr group;
    osg::NodePtr geometry;
    osg::NodePtr other;
};

// The materials keep a reference of their own beyond the end of the visualisation that made them, as documented.
class MadeMaterials {
public:
    MadeMaterials()
        : m_first(nextId())
    {}
    MadeMaterials(const MadeMaterials&) = delete;
    MadeMaterials& operator=(const MadeMaterials&) = delete;

    void release() const
    {
        const osg::UInt32 end = nextId();
        for (osg::UInt32 id = m_first; id < end; ++id) {
            const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
            if (container != osg::NullFC && osg::SimpleMaterialPtr::dcast(container) != osg::NullFC) {
                osg::SimpleMaterialPtr material = osg::SimpleMaterialPtr::dcast(container);
                osg::subRefCP(material);
            }
        }
    }

private:
    static osg::UInt32 nextId()
    {
        osg::NodePtr probe = osg::Node::create();
        const osg::UInt32 id = osg::getContainerId(probe);
        osg::subRefCP(probe);
        return id + 1;
    }

    osg::UInt32 m_first;
};

template <class Visualisation>
struct Without : Scene {
    ~Without()
    {
        if (shown) {
            shown->removeAllNodes();
            shown.reset();
            materials.release();
        }
    }

    MadeMaterials materials;
    std::unique_ptr<Visualisation> shown;
};

template <class Visualisation>
struct With : Without<Visualisation> {
    With() { this->shown = std::make_unique<Visualisation>(); }
};

template <class Visualisation>
struct Showing : With<Visualisation> {
    Showing()
    {
        this->shown->addNode(this->group);
        this->shown->addNode(this->geometry);
    }
};

template <class Visualisation>
osg::UInt32 shownCount(const With<Visualisation>& scene)
{
    return scene.shown->getVisualisation()->getNChildren();
}

template <class Visualisation>
class VisualisationFailureTest : public ::testing::Test {};

using Visualisations = ::testing::Types<BoxSelectionVisualisation, HighlightSelectionVisualisation>;
TYPED_TEST_SUITE(VisualisationFailureTest, Visualisations, );

TYPED_TEST(VisualisationFailureTest, OneIsMadeOrNothingIsLeft)
{
    EveryFailure<Without<TypeParam>>("constructor", [](auto& scene) {
        scene.shown = std::make_unique<TypeParam>();
    }).give([](auto& scene) { EXPECT_TRUE(scene.shown->isVisible()); });
}

TYPED_TEST(VisualisationFailureTest, ANodeIsShownOrNotTracked)
{
    EveryFailure<With<TypeParam>>("addNode()", [](auto& scene) { scene.shown->addNode(scene.group); })
        .leaving([](auto& scene) {
            EXPECT_FALSE(scene.shown->hasNode(scene.group));
            EXPECT_EQ(shownCount(scene), 0U);
        })
        .give([](auto& scene) {
            EXPECT_TRUE(scene.shown->hasNode(scene.group));
            EXPECT_EQ(shownCount(scene), 1U);
        });
    EveryFailure<Showing<TypeParam>>("addNode(), one more", [](auto& scene) {
        scene.shown->addNode(scene.other);
    }).leaving([](auto& scene) {
          EXPECT_EQ(shownCount(scene), 2U);
      }).give([](auto& scene) { EXPECT_EQ(shownCount(scene), 3U); });
    EveryFailure<Showing<TypeParam>>("addNode(), tracked", [](auto& scene) {
        scene.shown->addNode(scene.group);
    }).leaving([](auto& scene) {
          EXPECT_EQ(shownCount(scene), 2U);
      }).give([](auto& scene) { EXPECT_EQ(shownCount(scene), 2U); });
}

TYPED_TEST(VisualisationFailureTest, ANodeThatGetsItsVisualisationLaterStaysTracked)
{
    struct Late : With<TypeParam> {
        Late()
        {
            this->shown->setVisible(false);
            this->shown->addNode(this->group);
        }
    };
    EveryFailure<Late>("addNode(), hidden", [](Late& scene) {
        scene.shown->addNode(scene.other);
    }).leaving([](Late& scene) {
          EXPECT_FALSE(scene.shown->hasNode(scene.other));
      }).give([](Late& scene) { EXPECT_TRUE(scene.shown->hasNode(scene.other)); });
    const auto expectShown = [](Late& scene) { EXPECT_EQ(shownCount(scene), 1U); };
    EveryFailure<Late>("setVisible()", [](Late& scene) { scene.shown->setVisible(true); })
        .leaving([](Late& scene) {
            EXPECT_TRUE(scene.shown->hasNode(scene.group));
            EXPECT_EQ(shownCount(scene), 0U);
        })
        .repairedBy([](Late& scene) { scene.shown->updateAllNodes(); })
        .give(expectShown);
}

// Creates a node that nobody refers to, and notes whether the hook that takes it away still sees it.
class Unreferenced : public AbstractSelectionVisualisation {
public:
    Unreferenced() { prepared->setCore(osg::Group::create()); }

    osg::NodePtr createVisualisation(const osg::NodePtr&) override { return prepared; }
    void removeVisualisation(const osg::NodePtr&, const osg::NodePtr&) override
    {
        ++removed;
        seen += osg::FieldContainerFactory::the()->getContainer(id) != osg::NullFC ? 1 : 0;
    }
    void updateVisualisation(const osg::NodePtr&, const osg::NodePtr&) override {}
    bool shouldHaveVisualization(const osg::NodePtr&) const override { return isWanted; }

    const osg::NodePtr prepared = osg::Node::create();
    const osg::UInt32 id = osg::getContainerId(prepared);
    bool isWanted = false;
    int removed = 0;
    int seen = 0;
};

TEST(VisualisationHookFailureTest, WhatAnUpdateCannotAttachIsTakenAwayWhileItIsThere)
{
    // With some number of children the root has to make room for the next one; few of them find it in a pool.
    constexpr int mostChildren = 64;
    const NodeRef group = makeNode(osg::Group::create());
    int removed = 0;
    for (int children = 0; children <= mostChildren; ++children) {
        bool hasFailed = true;
        for (std::size_t number = 1; hasFailed; ++number) {
            Unreferenced shown;
            for (int i = 0; i < children; ++i) {
                addChild(shown.getVisualisation(), osg::Group::create());
            }
            shown.addNode(group.get());
            shown.isWanted = true;
            hasFailed = false;
            try {
                const AllocationFailure failure(number);
                shown.updateNode(group.get());
            } catch (const std::bad_alloc&) {
                hasFailed = true;
            }
            EXPECT_EQ(shown.seen, shown.removed) << children << " children, allocation " << number;
            EXPECT_EQ(shown.removed, hasFailed ? 1 : 0) << children << " children, allocation " << number;
            removed += shown.removed;
        }
    }
    EXPECT_GT(removed, 0);
}

TYPED_TEST(VisualisationFailureTest, UpdatesAreRepeated)
{
    EveryFailure<Showing<TypeParam>>("updateNode()", [](auto& scene) {
        scene.shown->updateNode(scene.group);
    }).give([](auto& scene) { EXPECT_EQ(shownCount(scene), 2U); });
    EveryFailure<Showing<TypeParam>>("updateAllNodes()", [](auto& scene) {
        scene.shown->updateAllNodes();
    }).give([](auto& scene) { EXPECT_EQ(shownCount(scene), 2U); });
}

TYPED_TEST(VisualisationFailureTest, TakingAwayNeedsNoMemory)
{
    EveryFailure<Showing<TypeParam>>("removeNode()", [](auto& scene) { scene.shown->removeNode(scene.group); })
        .isNeverFelt()
        .give([](auto& scene) { EXPECT_EQ(shownCount(scene), 1U); });
    EveryFailure<Showing<TypeParam>>("removeAllNodes()", [](auto& scene) { scene.shown->removeAllNodes(); })
        .isNeverFelt()
        .give([](auto& scene) { EXPECT_EQ(shownCount(scene), 0U); });
    EveryFailure<Showing<TypeParam>>("setVisible(false)", [](auto& scene) { scene.shown->setVisible(false); })
        .isNeverFelt()
        .give([](auto& scene) { EXPECT_FALSE(scene.shown->isVisible()); });
    EveryFailure<Showing<TypeParam>>("destructor",
                                     [](auto& scene) {
                                         scene.shown->removeAllNodes();
                                         scene.shown.reset();
                                     })
        .isNeverFelt()
        .give([](auto& scene) { scene.materials.release(); });
}

// Enough that lists grow beyond what comes from the pools.
template <class Visualisation>
struct ManyNodes : With<Visualisation> {
    ManyNodes()
    {
        for (int i = 0; i < 600; ++i) {
            nodes.push_back(addChild(this->root, osg::Group::create()));
        }
    }

    std::vector<osg::NodePtr> nodes;
};

// Returns whether the operation did without the allocation that fails, or without an exception.
template <class Operation>
bool succeeds(std::size_t number, const Operation& operation)
{
    const AllocationFailure failure(number);
    try {
        operation();
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

TYPED_TEST(VisualisationFailureTest, EachOfManyNodesIsShownOrNotTracked)
{
    const std::size_t containers = countLiveContainers();
    {
        ManyNodes<TypeParam> scene;
        std::size_t failures = 0;
        for (const osg::NodePtr& node : scene.nodes) {
            const osg::UInt32 shown = shownCount(scene);
            for (std::size_t number = 1; !succeeds(number, [&] { scene.shown->addNode(node); }); ++number) {
                ++failures;
                ASSERT_FALSE(scene.shown->hasNode(node));
                ASSERT_EQ(shownCount(scene), shown);
            }
            ASSERT_EQ(shownCount(scene), shown + 1);
        }
        EXPECT_GT(failures, 0U);
    }
    EXPECT_EQ(countLiveContainers(), containers);
}

TYPED_TEST(VisualisationFailureTest, ManyNodesThatAreShownLaterAreTrackedAllTheTime)
{
    const std::size_t containers = countLiveContainers();
    {
        ManyNodes<TypeParam> scene;
        scene.shown->setVisible(false);
        for (const osg::NodePtr& node : scene.nodes) {
            scene.shown->addNode(node);
        }
        scene.shown->setVisible(true);
        scene.shown->removeAllNodes();
        scene.shown->setVisible(false);
        for (const osg::NodePtr& node : scene.nodes) {
            scene.shown->addNode(node);
        }

        bool isDone = succeeds(1, [&] { scene.shown->setVisible(true); });
        for (std::size_t number = 2; !isDone; ++number) {
            isDone = succeeds(number, [&] { scene.shown->updateAllNodes(); });
            ASSERT_TRUE(scene.shown->hasNode(scene.nodes.back()));
        }
        EXPECT_EQ(shownCount(scene), scene.nodes.size());
    }
    EXPECT_EQ(countLiveContainers(), containers);
}

TYPED_TEST(VisualisationFailureTest, EachOfManyTrackedNodesStaysTrackedWhenItCannotBeShown)
{
    const std::size_t containers = countLiveContainers();
    {
        ManyNodes<TypeParam> scene;
        scene.shown->setVisible(false);
        for (const osg::NodePtr& node : scene.nodes) {
            scene.shown->addNode(node);
        }
        // Visible from here on, while most nodes have no visualisation node.
        for (std::size_t number = 1; succeeds(number, [&] { scene.shown->setVisible(true); }); ++number) {
            scene.shown->setVisible(false);
            ASSERT_LT(number, 100000U);
        }
        ASSERT_TRUE(scene.shown->isVisible());

        for (const osg::NodePtr& node : scene.nodes) {
            for (std::size_t number = 1; !succeeds(number, [&] { scene.shown->addNode(node); }); ++number) {
                ASSERT_TRUE(scene.shown->hasNode(node));
            }
        }
        EXPECT_EQ(shownCount(scene), scene.nodes.size());
    }
    EXPECT_EQ(countLiveContainers(), containers);
}

TYPED_TEST(VisualisationFailureTest, TakingManyNodesAwayNeedsNoMemory)
{
    const std::size_t containers = countLiveContainers();
    {
        ManyNodes<TypeParam> scene;
        for (const osg::NodePtr& node : scene.nodes) {
            scene.shown->addNode(node);
        }
        for (const osg::NodePtr& node : scene.nodes) {
            ASSERT_TRUE(succeeds(1, [&] { scene.shown->removeNode(node); }));
            ASSERT_FALSE(scene.shown->hasNode(node));
        }
        EXPECT_EQ(shownCount(scene), 0U);
    }
    EXPECT_EQ(countLiveContainers(), containers);
}

TYPED_TEST(VisualisationFailureTest, SettingsNeedNoMemory)
{
    EveryFailure<Showing<TypeParam>>("setColor()",
                                     [](auto& scene) { scene.shown->setColor(osg::Color3f(1.0F, 0.0F, 0.0F)); })
        .isNeverFelt()
        .give([](auto& scene) { EXPECT_EQ(scene.shown->getColor()[0], 1.0F); });
    EveryFailure<Showing<TypeParam>>("setOverlay()", [](auto& scene) { scene.shown->setOverlay(false); })
        .isNeverFelt()
        .give([](auto& scene) { EXPECT_FALSE(scene.shown->getOverlay()); });
}

using BoxFailureTest = ::testing::Test;

TEST(BoxFailureTest, ASpareBoxServesAgainOrIsLetGoOf)
{
    struct Spare : Showing<BoxSelectionVisualisation> {
        Spare() { shown->removeAllNodes(); }
    };
    EveryFailure<Spare>("addNode(), spare box", [](Spare& scene) {
        scene.shown->addNode(scene.group);
    }).give([](Spare& scene) { EXPECT_EQ(shownCount(scene), 1U); });
    EveryFailure<Spare>("clear()", [](Spare& scene) { scene.shown->clear(); }).isNeverFelt().give([](Spare&) {});
    EveryFailure<Spare>("setTransparency()", [](Spare& scene) { scene.shown->setTransparency(0.5F, 1); })
        .isNeverFelt()
        .give([](Spare&) {});
    EveryFailure<Spare>("setLockedColor()",
                        [](Spare& scene) { scene.shown->setLockedColor(osg::Color3f(0.0F, 1.0F, 0.0F)); })
        .isNeverFelt()
        .give([](Spare&) {});
    EveryFailure<Spare>("setMarkerSize()", [](Spare& scene) { scene.shown->setMarkerSize(2.0F); })
        .isNeverFelt()
        .give([](Spare& scene) { EXPECT_EQ(scene.shown->getMarkerSize(), 2.0F); });
}

// So deep that the matrices on the way to the root do not fit on the stack.
struct Deep : With<BoxSelectionVisualisation> {
    Deep()
    {
        bottom = other;
        for (int depth = 0; depth < 70; ++depth) {
            bottom = addChild(bottom, makeTranslation(1.0F, 0.0F, 0.0F));
        }
        shown->addNode(bottom);
        shown->removeNode(bottom);
    }

    osg::NodePtr bottom;
};

TEST(BoxFailureTest, ABoxThatCannotBeFittedIsNotKept)
{
    EveryFailure<Deep>("addNode(), deep", [](Deep& scene) {
        scene.shown->addNode(scene.bottom);
    }).leaving([](Deep& scene) {
          EXPECT_FALSE(scene.shown->hasNode(scene.bottom));
      }).give([](Deep& scene) { EXPECT_EQ(shownCount(scene), 1U); });
}

TEST(HighlightFailureTest, AMaterialIsSetWithoutMemory)
{
    EveryFailure<Showing<HighlightSelectionVisualisation>>(
        "setMaterial()", [](auto& scene) { scene.shown->setMaterial(scene.shown->getMaterial()); })
        .isNeverFelt()
        .give([](auto&) {});
}

TEST(HighlightFailureTest, ACopyIsWholeOrNothingIsLeftOfIt)
{
    EveryFailure<Scene>("cloneSelectionTree()", [](Scene& scene) {
        const NodeRef copy(cloneSelectionTree(scene.root));
    }).give([](Scene& scene) {
        const NodeRef copy(cloneSelectionTree(scene.root));
        EXPECT_EQ(copy->getNChildren(), 2U);
        EXPECT_EQ(copy->getChild(0)->getNChildren(), 2U);
    });
}

// Destroying what shares a core with others.

TEST(SceneFailureTest, DestroyingNeedsNoMemory)
{
    struct Shared : Scene {
        Shared()
        {
            for (NodeRef& copy : copies) {
                copy = makeNode(geometry->getCore());
            }
        }
        NodeRef copies[3];
    };
    EveryFailure<Shared>("destroying a node with a shared core",
                         [](Shared& scene) {
                             scene.copies[0] = osg::NullFC;
                             scene.copies[1] = osg::NullFC;
                         })
        .isNeverFelt()
        .give([](Shared& scene) { EXPECT_EQ(scene.geometry->getCore()->getParents().size(), 2U); });
}

TEST(SceneFailureTest, ADeepTreeIsDestroyedWithoutMemory)
{
    struct Chain {
        Chain()
        {
            osg::NodePtr bottom = top;
            for (int depth = 0; depth < 400; ++depth) {
                bottom = addChild(bottom, osg::Group::create());
            }
        }
        NodeRef top = makeNode(osg::Group::create());
    };
    EveryFailure<Chain>("destroying a deep tree", [](Chain& chain) { chain.top = osg::NullFC; })
        .isNeverFelt()
        .give([](Chain&) {});
}

// Selections.

struct Selection : With<BoxSelectionVisualisation> {
    Selection() { model.addVisualisation(shown.get()); }
    ~Selection() { model.removeVisualisation(shown.get()); }

    std::vector<osg::NodePtr> both() const { return {group, geometry}; }

    NodeSelectionModel model{longName};
};

struct Selected : Selection {
    Selected() { model.addNodes(both()); }
};

void expectShown(Selection& selection, std::size_t count)
{
    EXPECT_EQ(selection.model.getSelection().size(), count);
    EXPECT_EQ(shownCount(selection), count);
}

TEST(SelectionFailureTest, ASelectionThatWasNotReportedIsSetAgain)
{
    EveryFailure<Selection>("addNode()", [](Selection& selection) { selection.model.addNode(selection.group); })
        .repairedBy([](Selection& selection) {
            selection.model.removeNode(selection.group);
            selection.model.addNode(selection.group);
        })
        .give([](Selection& selection) { expectShown(selection, 1); });
    EveryFailure<Selection>("addNodes()", [](Selection& selection) {
        selection.model.addNodes(selection.both());
    }).repairedBy([](Selection& selection) {
          selection.model.setSelection(selection.both());
      }).give([](Selection& selection) { expectShown(selection, 2); });
    EveryFailure<Selected>("setSelection(), one", [](Selected& selection) {
        selection.model.setSelection(selection.other);
    }).give([](Selected& selection) { expectShown(selection, 1); });
    EveryFailure<Selected>("setSelection(), several", [](Selected& selection) {
        selection.model.setSelection(selection.both());
    }).give([](Selected& selection) { expectShown(selection, 2); });
}

TEST(SelectionFailureTest, DeselectingNeedsNoMemory)
{
    EveryFailure<Selected>("removeNode()", [](Selected& selection) { selection.model.removeNode(selection.group); })
        .isNeverFelt()
        .give([](Selected& selection) { expectShown(selection, 1); });
    const Scene unrelated;
    const std::vector<osg::NodePtr> nodes{unrelated.group, unrelated.other};
    EveryFailure<Selected>("removeNodes()", [&nodes](Selected& selection) { selection.model.removeNodes(nodes); })
        .isNeverFelt()
        .give([](Selected& selection) { expectShown(selection, 2); });
    EveryFailure<Selected>("clearSelection()", [](Selected& selection) { selection.model.clearSelection(); })
        .isNeverFelt()
        .give([](Selected& selection) { expectShown(selection, 0); });
}

TEST(SelectionFailureTest, UpdatesAreRepeated)
{
    const auto expectBoth = [](Selected& selection) { expectShown(selection, 2); };
    EveryFailure<Selected>("updateNode()", [](Selected& selection) {
        selection.model.updateNode(selection.group);
    }).give(expectBoth);
    EveryFailure<Selected>("updateVisualisation()", [](Selected& selection) {
        selection.model.updateVisualisation(selection.shown.get());
    }).give(expectBoth);
    EveryFailure<Selected>("updateVisualisations()", [](Selected& selection) {
        selection.model.updateVisualisations();
    }).give(expectBoth);
}

TEST(SelectionFailureTest, AVisualisationThatShowsPartOfItIsDetachedAndAttached)
{
    struct Detached : Selected {
        Detached() { model.removeVisualisation(shown.get()); }
    };
    EveryFailure<Detached>("addVisualisation()",
                           [](Detached& selection) { selection.model.addVisualisation(selection.shown.get()); })
        .repairedBy([](Detached& selection) {
            selection.model.removeVisualisation(selection.shown.get());
            selection.model.addVisualisation(selection.shown.get());
        })
        .give([](Detached& selection) { expectShown(selection, 2); });
    EveryFailure<Selected>("removeVisualisation()",
                           [](Selected& selection) { selection.model.removeVisualisation(selection.shown.get()); })
        .isNeverFelt()
        .give([](Selected& selection) { EXPECT_EQ(shownCount(selection), 0U); });
}

TEST(SelectionFailureTest, AModelIsMadeOrNotThere)
{
    EveryFailure<SelectionManager>("createSelectionModel()", [](SelectionManager& manager) {
        manager.createSelectionModel(longName);
    }).leaving([](SelectionManager& manager) {
          EXPECT_EQ(manager.getSelectionModel(longName), nullptr);
      }).give([](SelectionManager& manager) { EXPECT_NE(manager.getSelectionModel(longName), nullptr); });
    struct Made : SelectionManager {
        Made() { createSelectionModel(longName); }
    };
    EveryFailure<Made>("removeSelectionModel()",
                       [](Made& manager) { manager.removeSelectionModel(manager.getSelectionModel(longName)); })
        .isNeverFelt()
        .give([](Made& manager) { EXPECT_EQ(manager.getSelectionModel(longName), nullptr); });
    EveryFailure<Selected>("copying a model", [](Selected& selection) {
        const NodeSelectionModel copy(selection.model);
    }).give([](Selected& selection) { expectShown(selection, 2); });
    EveryFailure<SelectionManager>("SelectionManager::getInstance()", [](SelectionManager&) {
        SelectionManager::getInstance();
    }).give([](SelectionManager&) { EXPECT_NE(SelectionManager::getInstance(), nullptr); });
}

TEST(SceneFailureTest, TheVisualisationRootIsReplacedWithoutMemory)
{
    struct Rooted : Scene {
        InteractionManager manager;
    };
    EveryFailure<Rooted>("setVisualisationRoot()",
                         [](Rooted& scene) { scene.manager.setVisualisationRoot(scene.root); })
        .isNeverFelt()
        .give([](Rooted& scene) { EXPECT_EQ(scene.manager.getVisualisationRoot(), scene.root); });
}

// Picks.

class ScenePicker : public LazyPicker {
public:
    void setPointer(const osg::Pnt2f&) override {}
    osg::Pnt2f getPointer() const override { return osg::Pnt2f(); }
    void setCamera(const osg::Matrix&) override {}
    osg::Matrix getCamera() const override { return osg::Matrix(); }

    osg::NodePtr hit;

protected:
    bool isCacheValid() override { return true; }
    void computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                       osg::MaterialPtr& material, osg::SelectionOption*) override
    {
        node = hit;
        point = osg::Pnt3f(1.0F, 2.0F, 3.0F);
        normal = osg::Vec3f(0.0F, 0.0F, 1.0F);
        uv = osg::Vec2f(0.0F, 0.0F);
        material = osg::NullFC;
    }
    void computePickedNodes(std::vector<osg::NodePtr>* nodes, osg::SelectionOption*) override
    {
        nodes->assign(8, hit);
        nodes->push_back(hit);
    }
    void computeMultiPicked(MultiMode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                            std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) override
    {
        nodes->push_back(hit);
        points->push_back(osg::Pnt3f());
        normals->push_back(osg::Vec3f());
        materials->push_back(osg::NullFC);
    }
};

constexpr Picker::MultiMode otherPick = static_cast<Picker::MultiMode>(Picker::SinglePick + 1);

struct Picking : Scene {
    Picking() { picker.hit = geometry; }

    osg::NodePtr nodeOf(Picker::MultiMode mode)
    {
        std::vector<osg::NodePtr> nodes;
        picker.getMultiPicked(mode, &nodes, nullptr, nullptr, nullptr);
        return nodes.empty() ? osg::NodePtr() : nodes.front();
    }

    ScenePicker picker;
};

// One that has an answer to another question.
struct PickedBefore : Picking {
    PickedBefore() { picker.getPickedNode(nullptr); }
};

TEST(PickerFailureTest, APickThatFailedIsComputedAnew)
{
    EveryFailure<Picking>("getPickedNode()", [](Picking& picking) {
        picking.picker.getPickedNode(nullptr);
    }).give([](Picking& picking) {
        EXPECT_EQ(picking.picker.getPickedNode(nullptr), picking.geometry);
        EXPECT_EQ(picking.nodeOf(Picker::SinglePick), picking.geometry);
    });
    EveryFailure<Picking>("getPicked()", [](Picking& picking) {
        osg::NodePtr node;
        osg::Pnt3f point;
        osg::Vec3f normal;
        picking.picker.getPicked(node, point, normal, nullptr);
    }).give([](Picking& picking) { EXPECT_EQ(picking.picker.getPickedPoint(nullptr)[2], 3.0F); });
}

TEST(PickerFailureTest, TheAnswersToAnotherQuestionAreComputedAnewAsWell)
{
    EveryFailure<PickedBefore>("getMultiPicked()", [](PickedBefore& picking) {
        picking.picker.getMultiPicked(otherPick, nullptr, nullptr, nullptr, nullptr);
    }).leaving([](PickedBefore& picking) {
          EXPECT_EQ(picking.nodeOf(Picker::SinglePick), picking.geometry);
      }).give([](PickedBefore& picking) { EXPECT_EQ(picking.nodeOf(otherPick), picking.geometry); });
    EveryFailure<PickedBefore>("getMultiPicked(), copies", [](PickedBefore& picking) {
        std::vector<osg::NodePtr> nodes;
        std::vector<osg::Pnt3f> points;
        std::vector<osg::Vec3f> normals;
        std::vector<osg::MaterialPtr> materials;
        picking.picker.getMultiPicked(otherPick, &nodes, &points, &normals, &materials);
    }).give([](PickedBefore& picking) { EXPECT_EQ(picking.nodeOf(otherPick), picking.geometry); });
    EveryFailure<Picking>("getPickedNodes()", [](Picking& picking) {
        picking.picker.getPickedNodes(nullptr);
    }).give([](Picking& picking) { EXPECT_EQ(picking.picker.getPickedNodes(nullptr).size(), 9U); });
}

TEST(PickerFailureTest, SettingsNeedNoMemory)
{
    EveryFailure<PickedBefore>("setRoot()", [](PickedBefore& picking) { picking.picker.setRoot(picking.root); })
        .isNeverFelt()
        .give([](PickedBefore& picking) { EXPECT_EQ(picking.picker.getRoot(), picking.root); });
    EveryFailure<PickedBefore>("invalidate()", [](PickedBefore& picking) { picking.picker.invalidate(); })
        .isNeverFelt()
        .give([](PickedBefore&) {});
    EveryFailure<PickedBefore>("setSelectionRegion()",
                               [](PickedBefore& picking) { picking.picker.setSelectionRegion(3); })
        .isNeverFelt()
        .give([](PickedBefore& picking) { EXPECT_EQ(picking.picker.getSelectionRegion(), 3); });
}

} // namespace

} // namespace quon::interaction
