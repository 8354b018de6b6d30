// SPDX-License-Identifier: MIT
//
// Does what users do, with as many nodes as each argument says; with a thousand where there is none. Run by valgrind's
// tool callgrind, which counts the instructions of each piece of work and nothing in between; see
// CMake/InstructionGuard.cmake.
#include "Support/Changes.h"
#include "Support/CountingContexts.h"
#include "Support/PartPicker.h"
#include "Support/PartScene.h"
#include "Support/ShownSelection.h"
#include "Support/Trees.h"

#include <Interaction/HighlightSelectionVisualisation.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/QtEventMapper.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointF>
#include <QString>
#include <Qt>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <valgrind/callgrind.h>

namespace quon::benchmarks {

namespace {

using interaction::InteractionEvent;
using interaction::NodeSelectionModel;
using interaction::QtEventMapper;
using Nodes = std::vector<osg::NodePtr>;

constexpr std::size_t repetitions = 1000;

template <class Work>
void count(const std::string& name, const Work& work)
{
    forgetChanges();
    CALLGRIND_START_INSTRUMENTATION;
    work();
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    CALLGRIND_STOP_INSTRUMENTATION;
}

template <class Work>
void countRepeated(const std::string& name, const Work& work)
{
    count(name, [&work] {
        for (std::size_t i = 0; i < repetitions; ++i) {
            work();
        }
    });
}

// Instructions of something that went wrong are not worth comparing.
void require(const bool isRight, const std::string& what)
{
    if (!isRight) {
        std::fprintf(stderr, "koCountedWork: %s\n", what.c_str());
        std::exit(1);
    }
}

void countEvents()
{
    const std::string category = "tool:select";
    const std::string verb = "start";
    std::size_t hintBytes = 0;
    countRepeated("InteractionEvent/construct",
                  [&] { hintBytes += InteractionEvent(category, verb).getHint().size(); });
    require(hintBytes == repetitions * 6, "events were split wrongly");

    ContextStack stack(10);
    const InteractionEvent event(category, verb);
    countRepeated("InteractionManager/triggerEvent", [&] { stack.getManager().triggerEvent(event); });
    require(stack.getBottom().events == repetitions, "events did not reach the last context");
}

void countMapper()
{
    ContextStack stack(10);
    QtEventMapper mapper;
    mapper.setInteractionManager(&stack.getManager());
    for (const char* category : {"navigate:orbit", "select", "tool:measure"}) {
        mapper.addMouseMapping(Qt::LeftButton, 0, category, QString());
        mapper.addKeyboardMapping(Qt::Key_A, 0, category, QString());
    }
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
        for (const Qt::KeyboardModifiers modifiers : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier}) {
            mapper.addMouseMapping(button, static_cast<int>(modifiers), "view:turn", QString());
            mapper.addKeyboardMapping(Qt::Key_B + static_cast<int>(button), static_cast<int>(modifiers), "view:turn",
                                      QString());
        }
    }
    const auto mouseEvent = [](const QEvent::Type type, const Qt::MouseButton button, const Qt::MouseButtons held,
                               const QPointF& position) {
        return QMouseEvent(type, position, position, position, button, held, Qt::NoModifier);
    };
    const QMouseEvent press = mouseEvent(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton, {10, 20});
    const QMouseEvent drag = mouseEvent(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton, {11, 21});
    const QMouseEvent release = mouseEvent(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton, {12, 22});
    const QMouseEvent hover = mouseEvent(QEvent::MouseMove, Qt::NoButton, Qt::NoButton, {13, 23});
    const QEvent leave(QEvent::Leave);
    const QKeyEvent boundPress(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    const QKeyEvent boundRelease(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier);
    const QKeyEvent freePress(QEvent::KeyPress, Qt::Key_F35, Qt::NoModifier);
    const QKeyEvent freeRelease(QEvent::KeyRelease, Qt::Key_F35, Qt::NoModifier);

    countRepeated("QtEventMapper/press+drag+release", [&] {
        mapper.mousePressed(&press);
        mapper.mouseMoved(&drag, true);
        mapper.mouseReleased(&release);
    });
    require(stack.getBottom().events == repetitions * 12, "mouse events did not reach the last context");
    countRepeated("QtEventMapper/hover+stopHover", [&] {
        mapper.mouseMoved(&hover, false);
        mapper.hoverStopped(&leave);
    });
    require(stack.getBottom().events == repetitions * 30, "hovering did not reach the last context");
    countRepeated("QtEventMapper/key/bound", [&] {
        mapper.keyPressed(&boundPress);
        mapper.keyReleased(&boundRelease);
    });
    require(stack.getBottom().events == repetitions * 39, "bound keys did not reach the last context");
    countRepeated("QtEventMapper/key/free", [&] {
        mapper.keyPressed(&freePress);
        mapper.keyReleased(&freeRelease);
    });
    require(stack.getBottom().events == repetitions * 41, "free keys did not reach the last context");
}

void countPicker(const PartScene& scene)
{
    PartPicker picker(scene.getParts());
    picker.setPointer(osg::Pnt2f(1, 0));
    std::size_t hits = picker.getPickedNode(nullptr) == scene.getParts()[1] ? 0 : repetitions;
    countRepeated("LazyPicker/clean/getPickedNode",
                  [&] { hits += picker.getPickedNode(nullptr) != osg::NullFC ? 1U : 0U; });
    require(hits == repetitions && picker.queries == 1, "the picker queried the scene for what it knew");
}

// All that a selection does with the parts of one scene and one kind of visualisation.
class SelectionWork {
public:
    SelectionWork(PartScene& scene, const Shown shown)
        : m_scene(scene)
        , m_shown(shown)
        , m_parts(scene.getParts())
        , m_backward(scene.getPartsBackward())
        , m_shuffled(scene.getPartsShuffled())
    {}

    void count()
    {
        countFirst("addNode/forward", [this](NodeSelectionModel& model) { addOneByOne(model, m_parts); });
        countFirst("addNode/random", [this](NodeSelectionModel& model) { addOneByOne(model, m_shuffled); });
        countFirst("addNodes", [this](NodeSelectionModel& model) { model.addNodes(m_parts); });
        countFirst("setSelection", [this](NodeSelectionModel& model) { model.setSelection(m_parts); });
        countRemoval("removeNode/forward", [this](NodeSelectionModel& model) { removeOneByOne(model, m_parts); });
        countRemoval("removeNode/backward", [this](NodeSelectionModel& model) { removeOneByOne(model, m_backward); });
        countRemoval("removeNode/random", [this](NodeSelectionModel& model) { removeOneByOne(model, m_shuffled); });
        countRemoval("removeNodes/forward", [this](NodeSelectionModel& model) { model.removeNodes(m_parts); });
        countRemoval("removeNodes/backward", [this](NodeSelectionModel& model) { model.removeNodes(m_backward); });
        countRemoval("removeNodes/random", [this](NodeSelectionModel& model) { model.removeNodes(m_shuffled); });
        countRemoval("clearSelection", [](NodeSelectionModel& model) { model.clearSelection(); });
        if (m_shown != Shown::Nothing) {
            countChanges();
        }
    }

private:
    template <class Work>
    void countNamed(const std::string& name, const Work& work) const
    {
        benchmarks::count("NodeSelectionModel/" + name + "/" + getName(m_shown) + "/" + std::to_string(m_parts.size()),
                          work);
    }

    // With visualisations that never showed anything.
    template <class Select>
    void countFirst(const std::string& name, const Select& select)
    {
        ShownSelection selection(m_shown, m_scene.getRoot());
        countNamed(name, [&] { select(selection.getModel()); });
        require(selection.shows(m_parts.size()), name + " did not select and show everything");
    }

    template <class Deselect>
    void countRemoval(const std::string& name, const Deselect& deselect)
    {
        ShownSelection selection(m_shown, m_scene.getRoot());
        selection.getModel().setSelection(m_parts);
        countNamed(name, [&] { deselect(selection.getModel()); });
        require(selection.shows(0), name + " left something selected or shown");
    }

    void countChanges()
    {
        ShownSelection selection(m_shown, m_scene.getRoot());
        NodeSelectionModel& model = selection.getModel();
        model.setSelection(m_parts);
        model.clearSelection();
        countNamed("setSelection/again", [&] { model.setSelection(m_parts); });
        countNamed("updateNode", [&] {
            for (const osg::NodePtr& part : m_parts) {
                model.updateNode(part);
            }
        });
        countNamed("updateVisualisations/unchanged", [&] { model.updateVisualisations(); });
        m_scene.moveAssemblies();
        countNamed("updateVisualisations/moved", [&] { model.updateVisualisations(); });
        countNamed("setVisible", [&] {
            for (interaction::SelectionVisualisation* visualisation : selection.getVisualisations()) {
                visualisation->setVisible(false);
                visualisation->setVisible(true);
            }
        });
        countNamed("removeVisualisation+addVisualisation", [&] {
            for (interaction::SelectionVisualisation* visualisation : selection.getVisualisations()) {
                model.removeVisualisation(visualisation);
                model.addVisualisation(visualisation);
            }
        });
        require(selection.shows(m_parts.size()), "not everything is selected and shown any more");
    }

    static void addOneByOne(NodeSelectionModel& model, const Nodes& nodes)
    {
        for (const osg::NodePtr& node : nodes) {
            model.addNode(node);
        }
    }

    static void removeOneByOne(NodeSelectionModel& model, const Nodes& nodes)
    {
        for (const osg::NodePtr& node : nodes) {
            model.removeNode(node);
        }
    }

    PartScene& m_scene;
    Shown m_shown;
    const Nodes& m_parts;
    Nodes m_backward;
    Nodes m_shuffled;
};

void countClone(const std::string& kind, testing::NodeRef (*makeTree)(std::size_t count), const std::size_t size)
{
    const testing::NodeRef tree = makeTree(size);
    const std::string suffix = "/" + kind + "/" + std::to_string(size);
    testing::NodeRef copy;
    count("cloneSelectionTree" + suffix, [&] { copy = testing::NodeRef(interaction::cloneSelectionTree(tree)); });
    require(countNodes(copy) == countNodes(tree), "a copy has not as many nodes");
    count("cloneSelectionTree/release" + suffix, [&] { copy = osg::NullFC; });
}

void countAll(const std::vector<std::size_t>& sizes)
{
    countEvents();
    countMapper();
    // All before anything else: where the parts lie decides how often the selection compares their addresses.
    std::vector<std::unique_ptr<PartScene>> scenes;
    for (const std::size_t size : sizes) {
        scenes.push_back(std::make_unique<PartScene>(size));
    }
    countPicker(*scenes.front());
    for (const std::unique_ptr<PartScene>& scene : scenes) {
        for (const Shown shown : {Shown::Nothing, Shown::Box, Shown::Highlight}) {
            SelectionWork(*scene, shown).count();
        }
        const std::size_t size = scene->getParts().size();
        countClone("deep", makeDeepTree, size);
        countClone("wide", makeWideTree, size);
        countClone("mixed", makeMixedTree, size);
    }
}

std::vector<std::size_t> readSizes(const int argc, char** argv)
{
    std::vector<std::size_t> sizes;
    for (int i = 1; i < argc; ++i) {
        char* end = nullptr;
        const unsigned long size = std::strtoul(argv[i], &end, 10);
        // The picker is asked for the second part.
        require(*end == '\0' && size >= 2, std::string("not a number of nodes: ") + argv[i]);
        sizes.push_back(size);
    }
    return sizes.empty() ? std::vector<std::size_t>{1000} : sizes;
}

} // namespace

} // namespace quon::benchmarks

int main(int argc, char** argv)
{
    if (RUNNING_ON_VALGRIND == 0) {
        std::fprintf(stderr, "koCountedWork: to be run by valgrind --tool=callgrind\n");
        return 2;
    }
    const std::vector<std::size_t> sizes = quon::benchmarks::readSizes(argc, argv);
    osg::ChangeList::setReadWriteDefault();
    osg::osgInit(argc, argv);
    quon::benchmarks::countAll(sizes);
    osg::osgExit();
    return 0;
}
