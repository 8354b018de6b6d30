// SPDX-License-Identifier: MIT
#include "Support/CountingContexts.h"
#include "Support/Measure.h"
#include "Support/PartPicker.h"
#include "Support/PartScene.h"
#include "Support/ShownSelection.h"

#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/QtEventMapper.h>
#include <Interaction/ToolInteractionContext.h>

#include <benchmark/benchmark.h>

#include <QMouseEvent>
#include <QPointF>
#include <QString>
#include <Qt>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace quon::benchmarks {

namespace {

using interaction::NodeSelectionModel;
using interaction::ToolInteractionContext;

constexpr std::size_t partCount = 100000;

// Selects what is under the pointer, or adds it, or takes it out.
class SelectionTool final : public interaction::AbstractInteractionTool {
public:
    explicit SelectionTool(NodeSelectionModel& model)
        : m_model(model)
    {}

    bool triggerTool(ToolInteractionContext* context, const std::string& hint) override
    {
        const osg::NodePtr node = context->getPicker()->getPickedNode(nullptr);
        if (node == osg::NullFC) {
            m_model.clearSelection();
        } else if (hint != "toggle") {
            m_model.setSelection(node);
        } else if (m_model.getSelection().count(node) != 0) {
            m_model.removeNode(node);
        } else {
            m_model.addNode(node);
        }
        return true;
    }

    // Asks for the part under the pointer, to mark it.
    bool hoverTool(ToolInteractionContext* context, const std::string& /*hint*/) override
    {
        hits += context->getPicker()->getPickedNode(nullptr) != osg::NullFC ? 1U : 0U;
        return true;
    }

    std::size_t hits = 0;

private:
    NodeSelectionModel& m_model;
};

// Keeps the picker's pointer where the mapper reports it.
class ToolContext final : public ToolInteractionContext {
public:
    ToolContext()
        : ToolInteractionContext(Tool)
    {}

    void pointerMoved(const osg::Pnt2f& position) override { getPicker()->setPointer(position); }
};

// Everything between a Qt event and a box, as a host puts it together: four contexts, of which the second has the tool.
class Host {
public:
    explicit Host(const Shown shown)
        : m_scene(PartScene::get(partCount))
        , m_selection(shown, m_scene.getRoot())
        , m_picker(m_scene.getParts())
        , m_tool(m_selection.getModel())
        , m_above(false)
        , m_below(false)
        , m_bottom(false)
    {
        m_context.setPicker(&m_picker);
        m_context.setTool(&m_tool);
        // Among equals the newest is on top.
        m_manager.addContext(&m_bottom);
        m_manager.addContext(&m_below);
        m_manager.addContext(&m_context);
        m_manager.addContext(&m_above);
        m_mapper.setInteractionManager(&m_manager);
        m_mapper.addMouseMapping(Qt::LeftButton, 0, "tool:select", QString());
        m_mapper.addMouseMapping(Qt::LeftButton, Qt::ControlModifier, "tool:toggle", QString());
        m_mapper.addMouseMapping(Qt::MiddleButton, 0, "navigate:pan", QString());
        m_mapper.addMouseMapping(Qt::RightButton, 0, "navigate:orbit", QString());
    }

    ~Host()
    {
        // The tool is told, and may look at its notification.
        m_manager.removeContext(&m_context);
    }

    // Presses and releases the left button on a part, events included.
    bool click(const std::size_t part, const Qt::KeyboardModifiers modifiers)
    {
        const QPointF place = placeOf(part);
        const QMouseEvent press(QEvent::MouseButtonPress, place, place, place, Qt::LeftButton, Qt::LeftButton,
                                modifiers);
        const QMouseEvent release(QEvent::MouseButtonRelease, place, place, place, Qt::LeftButton, Qt::NoButton,
                                  modifiers);
        const bool isConsumed = m_mapper.mousePressed(&press);
        return m_mapper.mouseReleased(&release) && isConsumed;
    }

    bool hover(const std::size_t part)
    {
        const QPointF place = placeOf(part);
        const QMouseEvent move(QEvent::MouseMove, place, place, place, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        return m_mapper.mouseMoved(&move, false);
    }

    PartScene& getScene() { return m_scene; }
    ShownSelection& getSelection() { return m_selection; }
    const SelectionTool& getTool() const { return m_tool; }

private:
    static QPointF placeOf(const std::size_t part)
    {
        return QPointF(static_cast<double>(part % PartPicker::partsOfRow),
                       static_cast<double>(part / PartPicker::partsOfRow));
    }

    PartScene& m_scene;
    ShownSelection m_selection;
    PartPicker m_picker;
    SelectionTool m_tool;
    CountingContext m_above;
    ToolContext m_context;
    CountingContext m_below;
    CountingContext m_bottom;
    interaction::InteractionManager m_manager;
    interaction::QtEventMapper m_mapper;
};

// Walks over the parts in leaps, so that no two neighbours follow each other.
class Leaps {
public:
    std::size_t next()
    {
        m_part = (m_part + 7919) % partCount;
        return m_part;
    }

private:
    std::size_t m_part = 0;
};

void click(benchmark::State& state, const Shown shown)
{
    Host host(shown);
    Leaps leaps;
    bool isConsumed = true;
    const auto work = [&] {
        isConsumed &= host.click(leaps.next(), Qt::NoModifier);
        forgetChanges();
    };
    work();

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, isConsumed && host.getSelection().shows(1), "not exactly one part is selected and shown");
}

// Takes a part out and puts it back, beside all others.
void toggle(benchmark::State& state, const Shown shown)
{
    Host host(shown);
    host.getSelection().getModel().setSelection(host.getScene().getParts());
    Leaps leaps;
    bool isConsumed = true;
    const auto work = [&] {
        const std::size_t part = leaps.next();
        isConsumed &= host.click(part, Qt::ControlModifier);
        isConsumed &= host.click(part, Qt::ControlModifier);
        forgetChanges();
    };
    work();

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, isConsumed && host.getSelection().shows(partCount), "not everything is selected and shown");
}

void hover(benchmark::State& state)
{
    Host host(Shown::Nothing);
    Leaps leaps;
    bool isConsumed = true;
    const auto work = [&] { isConsumed &= host.hover(leaps.next()); };
    work();

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, isConsumed && host.getTool().hits == static_cast<std::size_t>(state.iterations()) + 2,
          "not every movement found its part");
}

// What commands of a host do with a whole scene, of which a third was selected before. A node of the figures is one of
// the scene, selected or not.
enum class Command { SelectAll, Invert, Clear };

void carryOut(const Command command, NodeSelectionModel& model, const std::vector<osg::NodePtr>& parts)
{
    switch (command) {
    case Command::SelectAll:
        model.setSelection(parts);
        return;
    case Command::Invert: {
        std::vector<osg::NodePtr> others;
        const std::set<osg::NodePtr>& selected = model.getSelection();
        std::copy_if(parts.begin(), parts.end(), std::back_inserter(others),
                     [&](const osg::NodePtr& part) { return selected.count(part) == 0; });
        model.setSelection(others);
        return;
    }
    case Command::Clear:
        model.clearSelection();
        return;
    }
}

std::size_t countAfter(const Command command, const std::size_t count, const std::size_t before)
{
    switch (command) {
    case Command::SelectAll:
        return count;
    case Command::Invert:
        return count - before;
    case Command::Clear:
        return 0;
    }
    return 0;
}

void commandOnAll(benchmark::State& state, const Shown shown, const Command command)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    ShownSelection selection(shown, scene.getRoot());
    std::vector<osg::NodePtr> before;
    for (std::size_t i = 0; i < count; i += 3) {
        before.push_back(scene.getParts()[i]);
    }

    measureNodes(
        state, count, [&] { selection.getModel().setSelection(before); },
        [&] { carryOut(command, selection.getModel(), scene.getParts()); });

    check(state, selection.shows(countAfter(command, count, before.size())), "something else is selected or shown");
}

[[maybe_unused]] const bool isRegistered = [] {
    benchmark::RegisterBenchmark("EndToEnd/hover/nothing", hover);
    for (const Shown shown : allShown) {
        benchmark::RegisterBenchmark(("EndToEnd/click/" + getName(shown)).c_str(), click, shown);
        benchmark::RegisterBenchmark(("EndToEnd/toggleTwice/" + getName(shown)).c_str(), toggle, shown);
        const auto add = [shown](const std::string& name, const Command command) {
            benchmark::RegisterBenchmark(("EndToEnd/" + name + "/" + getName(shown)).c_str(), commandOnAll, shown,
                                         command)
                ->RangeMultiplier(10)
                ->Range(1000, 1000000)
                ->Unit(benchmark::kMicrosecond);
        };
        add("selectAll", Command::SelectAll);
        add("invert", Command::Invert);
        add("clear", Command::Clear);
    }
    return true;
}();

} // namespace

} // namespace quon::benchmarks
