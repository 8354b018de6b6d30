// SPDX-License-Identifier: MIT
#include <Interaction/SelectionManager.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/RecordingVisualisation.h>
#include <InteractionTesting/SceneFixture.h>

#include <Interaction/NodeSelectionModel.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace quon::testing {

namespace {

using interaction::NodeSelectionModel;
using interaction::SelectionManager;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SelectionManagerTest : public SceneFixture {
protected:
    SelectionManagerTest()
        : m_node(osg::Node::create())
        , m_visualisation(m_log, m_names, "visualisation")
    {
        m_names.add(m_node.get(), "node");
    }

    CallLog m_log;
    ObjectNames m_names;
    osg::RefPtr<osg::NodePtr> m_node;
    RecordingVisualisation m_visualisation;
    SelectionManager m_manager;
};

TEST_F(SelectionManagerTest, InstanceIsTheSameOnEveryCall)
{
    SelectionManager* instance = SelectionManager::getInstance();

    EXPECT_NE(instance, nullptr);
    EXPECT_EQ(SelectionManager::getInstance(), instance);
}

TEST_F(SelectionManagerTest, InstanceIsTheSameFromAnotherThread)
{
    SelectionManager* fromThread = nullptr;
    std::thread thread([&fromThread] { fromThread = SelectionManager::getInstance(); });
    thread.join();

    EXPECT_EQ(fromThread, SelectionManager::getInstance());
}

TEST_F(SelectionManagerTest, InstanceKeepsItsModelsBetweenCalls)
{
    NodeSelectionModel* model = SelectionManager::getInstance()->createSelectionModel("kept");

    EXPECT_EQ(SelectionManager::getInstance()->getSelectionModel("kept"), model);

    SelectionManager::getInstance()->removeSelectionModel(model);
    EXPECT_EQ(SelectionManager::getInstance()->getSelectionModel("kept"), nullptr);
}

TEST_F(SelectionManagerTest, ManagersAreIndependent)
{
    m_manager.createSelectionModel("mine");

    EXPECT_EQ(SelectionManager::getInstance()->getSelectionModel("mine"), nullptr);
}

TEST_F(SelectionManagerTest, ManagerIsNeitherCopiedNorPolymorphic)
{
    static_assert(!std::is_copy_constructible_v<SelectionManager>);
    static_assert(!std::is_polymorphic_v<SelectionManager>);
    static_assert(!std::is_polymorphic_v<NodeSelectionModel>);
}

TEST_F(SelectionManagerTest, CreatedModelIsEmptyAndHasItsNameAndNoVisualisations)
{
    NodeSelectionModel* model = m_manager.createSelectionModel("selection");

    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->getName(), "selection");
    EXPECT_THAT(model->getSelection(), IsEmpty());
}

TEST_F(SelectionManagerTest, CreatingAnExistingNameReturnsTheSameModelUnchanged)
{
    NodeSelectionModel* model = m_manager.createSelectionModel("selection");
    model->addNode(m_node);
    model->addVisualisation(&m_visualisation);
    m_log.clear();

    NodeSelectionModel* again = m_manager.createSelectionModel("selection");

    EXPECT_EQ(again, model);
    EXPECT_THAT(model->getSelection(), ElementsAre(m_node.get()));
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(SelectionManagerTest, CreatingAnExistingNameLeavesOneModel)
{
    m_manager.createSelectionModel("selection");
    NodeSelectionModel* again = m_manager.createSelectionModel("selection");

    m_manager.removeSelectionModel(again);

    EXPECT_EQ(m_manager.getSelectionModel("selection"), nullptr);
}

TEST_F(SelectionManagerTest, NameMayBeTakenOutOfAModel)
{
    NodeSelectionModel* model = m_manager.createSelectionModel("selection");
    SelectionManager other;

    EXPECT_EQ(m_manager.createSelectionModel(model->getName()), model);
    EXPECT_EQ(m_manager.getSelectionModel(model->getName()), model);
    EXPECT_EQ(other.createSelectionModel(model->getName())->getName(), "selection");
}

TEST_F(SelectionManagerTest, NameNeverCreatedGivesNullAndCreatesNothing)
{
    m_manager.createSelectionModel("selection");

    EXPECT_EQ(m_manager.getSelectionModel("other"), nullptr);
    EXPECT_EQ(m_manager.getSelectionModel("other"), nullptr);
    EXPECT_EQ(m_manager.getSelectionModel(""), nullptr);
}

TEST_F(SelectionManagerTest, NamesDifferInLetterCase)
{
    NodeSelectionModel* lower = m_manager.createSelectionModel("selection");
    NodeSelectionModel* upper = m_manager.createSelectionModel("Selection");

    EXPECT_NE(lower, upper);
    EXPECT_EQ(m_manager.getSelectionModel("selection"), lower);
    EXPECT_EQ(m_manager.getSelectionModel("Selection"), upper);
}

TEST_F(SelectionManagerTest, NamesAreComparedByteByByte)
{
    const std::string withZero("a\0b", 3);
    NodeSelectionModel* shortName = m_manager.createSelectionModel("a");
    NodeSelectionModel* longName = m_manager.createSelectionModel(withZero);
    NodeSelectionModel* blankName = m_manager.createSelectionModel("a ");

    EXPECT_NE(shortName, longName);
    EXPECT_NE(shortName, blankName);
    EXPECT_EQ(m_manager.getSelectionModel(withZero), longName);
    EXPECT_EQ(m_manager.getSelectionModel("a"), shortName);
}

TEST_F(SelectionManagerTest, EmptyNameIsAName)
{
    NodeSelectionModel* model = m_manager.createSelectionModel("");

    EXPECT_EQ(m_manager.getSelectionModel(""), model);
    EXPECT_EQ(m_manager.createSelectionModel(""), model);
}

TEST_F(SelectionManagerTest, RemovedModelIsGoneAndItsNameGivesANewEmptyOne)
{
    NodeSelectionModel* model = m_manager.createSelectionModel("selection");
    model->addNode(m_node);
    model->addVisualisation(&m_visualisation);
    m_log.clear();

    m_manager.removeSelectionModel(model);
    EXPECT_EQ(m_manager.getSelectionModel("selection"), nullptr);
    NodeSelectionModel* next = m_manager.createSelectionModel("selection");
    next->updateVisualisations();

    EXPECT_THAT(next->getSelection(), IsEmpty());
    EXPECT_THAT(m_log.calls(), IsEmpty()) << "neither removal nor the new model calls the visualisation";
    EXPECT_THAT(m_visualisation.shownNodes(), ElementsAre(m_node.get())) << "what it shows stays";
}

TEST_F(SelectionManagerTest, RemovingNullOrAnUnknownModelChangesNothing)
{
    NodeSelectionModel* model = m_manager.createSelectionModel("selection");
    NodeSelectionModel stranger("selection");
    SelectionManager other;
    NodeSelectionModel* othersModel = other.createSelectionModel("selection");

    m_manager.removeSelectionModel(nullptr);
    m_manager.removeSelectionModel(&stranger);
    m_manager.removeSelectionModel(othersModel);

    EXPECT_EQ(m_manager.getSelectionModel("selection"), model);
    EXPECT_EQ(other.getSelectionModel("selection"), othersModel);
}

TEST_F(SelectionManagerTest, AddressOfAModelStaysWhileOthersComeAndGo)
{
    NodeSelectionModel* model = m_manager.createSelectionModel("kept");
    model->addNode(m_node);

    std::vector<NodeSelectionModel*> others;
    for (int index = 0; index < 100; ++index) {
        others.push_back(m_manager.createSelectionModel("other" + std::to_string(index)));
    }
    for (std::size_t index = 0; index < others.size(); index += 2) {
        m_manager.removeSelectionModel(others[index]);
    }

    EXPECT_EQ(m_manager.getSelectionModel("kept"), model);
    EXPECT_EQ(model->getName(), "kept");
    EXPECT_THAT(model->getSelection(), ElementsAre(m_node.get()));
    EXPECT_EQ(m_manager.getSelectionModel("other0"), nullptr);
    EXPECT_EQ(m_manager.getSelectionModel("other1"), others[1]);
    EXPECT_EQ(others[99]->getName(), "other99");
}

TEST_F(SelectionManagerTest, DestructionCallsNoVisualisation)
{
    auto manager = std::make_unique<SelectionManager>();
    for (const char* name : {"one", "two"}) {
        NodeSelectionModel* model = manager->createSelectionModel(name);
        model->addVisualisation(&m_visualisation);
        model->addNode(m_node);
    }
    m_log.clear();

    manager.reset();

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(m_visualisation.shownNodes(), ElementsAre(m_node.get()));
}

} // namespace

} // namespace quon::testing
