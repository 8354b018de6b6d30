// SPDX-License-Identifier: MIT
#include "Support/CountingContexts.h"
#include "Support/Measure.h"

#include <Interaction/QtEventMapper.h>

#include <benchmark/benchmark.h>

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointF>
#include <QString>
#include <Qt>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

namespace quon::benchmarks {

namespace {

using interaction::QtEventMapper;

constexpr std::size_t contextCount = 10;
constexpr std::size_t matchingCount = 3;

// The names that a program has: short enough for strings that need no memory.
const std::array<std::string, matchingCount> matchingCategories{"navigate:orbit", "select", "tool:measure"};
const std::array<std::string, 4> otherCategories{"navigate:pan", "select:toggle", "tool:section", "view:turn"};

const std::array<Qt::MouseButton, 5> buttons{Qt::LeftButton, Qt::RightButton, Qt::MiddleButton, Qt::BackButton,
                                             Qt::ForwardButton};
const std::array<Qt::KeyboardModifiers, 7> otherModifiers{Qt::ShiftModifier,
                                                          Qt::ControlModifier,
                                                          Qt::AltModifier,
                                                          Qt::ShiftModifier | Qt::ControlModifier,
                                                          Qt::ShiftModifier | Qt::AltModifier,
                                                          Qt::ControlModifier | Qt::AltModifier,
                                                          Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier};

constexpr int boundKey = Qt::Key_A;
constexpr int freeKey = Qt::Key_F35;

// A mapper with as many bindings of buttons and of keys as wanted, of which three match, and ten contexts, of which the
// last consumes.
class Mapper {
public:
    explicit Mapper(const benchmark::State& state)
        : m_bindingCount(static_cast<std::size_t>(state.range()))
        , m_matching(std::min(m_bindingCount, matchingCount))
        , m_stack(contextCount)
    {
        m_mapper.setInteractionManager(&m_stack.getManager());
        for (std::size_t i = 0; i < m_matching; ++i) {
            m_mapper.addMouseMapping(Qt::LeftButton, 0, matchingCategories[i], QString());
            m_mapper.addKeyboardMapping(boundKey, 0, matchingCategories[i], QString());
        }
        for (std::size_t i = m_matching; i < m_bindingCount; ++i) {
            const int modifiers = static_cast<int>(otherModifiers[i % otherModifiers.size()]);
            const std::string& category = otherCategories[i % otherCategories.size()];
            m_mapper.addMouseMapping(buttons[i % buttons.size()], modifiers, category, QString());
            m_mapper.addKeyboardMapping(Qt::Key_B + static_cast<int>(i), modifiers, category, QString());
        }
    }

    QtEventMapper& operator*() { return m_mapper; }
    QtEventMapper* operator->() { return &m_mapper; }

    std::size_t getBindingCount() const { return m_bindingCount; }
    std::size_t getMatchingCount() const { return m_matching; }
    // Of all events sent so far.
    std::size_t getEventCount() { return m_stack.getBottom().events; }

private:
    std::size_t m_bindingCount;
    std::size_t m_matching;
    ContextStack m_stack;
    QtEventMapper m_mapper;
};

QMouseEvent mouseEvent(const QEvent::Type type, const Qt::MouseButton button, const Qt::MouseButtons held,
                       const QPointF& position)
{
    return QMouseEvent(type, position, position, position, button, held, Qt::NoModifier);
}

const QMouseEvent& leftPress()
{
    static const QMouseEvent event = mouseEvent(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton, {10, 20});
    return event;
}

const QMouseEvent& leftRelease()
{
    static const QMouseEvent event = mouseEvent(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton, {10, 20});
    return event;
}

// One more call than iterations: the one whose allocations are counted.
std::size_t callsOf(const benchmark::State& state)
{
    return static_cast<std::size_t>(state.iterations()) + 1;
}

void press(benchmark::State& state)
{
    Mapper mapper(state);
    std::size_t consumed = 0;

    measureBetween(
        state, [&] { consumed += mapper->mousePressed(&leftPress()) ? 1U : 0U; },
        [&] { mapper->mouseReleased(&leftRelease()); });

    // "start" with the press, "stop" and "trigger" with the release.
    check(state, consumed == callsOf(state) && mapper.getEventCount() == callsOf(state) * 3 * mapper.getMatchingCount(),
          "not every press was consumed");
}

void release(benchmark::State& state)
{
    Mapper mapper(state);
    mapper->mousePressed(&leftPress());
    std::size_t consumed = 0;

    measureBetween(
        state, [&] { consumed += mapper->mouseReleased(&leftRelease()) ? 1U : 0U; },
        [&] { mapper->mousePressed(&leftPress()); });

    check(state,
          consumed == callsOf(state) && mapper.getEventCount() == (callsOf(state) * 3 + 1) * mapper.getMatchingCount(),
          "not every release was consumed");
}

void pressAndRelease(benchmark::State& state)
{
    Mapper mapper(state);
    std::size_t consumed = 0;
    const auto work = [&] {
        consumed += mapper->mousePressed(&leftPress()) ? 1U : 0U;
        consumed += mapper->mouseReleased(&leftRelease()) ? 1U : 0U;
    };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state,
          consumed == 2 * callsOf(state) && mapper.getEventCount() == callsOf(state) * 3 * mapper.getMatchingCount(),
          "not every press and release was consumed");
}

// Between two places, so that the pointer is reported every time.
void moveBetween(benchmark::State& state, const Qt::MouseButtons held)
{
    Mapper mapper(state);
    const bool isDragging = held != Qt::NoButton;
    const std::array<QMouseEvent, 2> events{mouseEvent(QEvent::MouseMove, Qt::NoButton, held, {11, 21}),
                                            mouseEvent(QEvent::MouseMove, Qt::NoButton, held, {12, 22})};
    if (isDragging) {
        mapper->mousePressed(&leftPress());
    }
    const std::size_t eventsBefore = mapper.getEventCount();
    std::size_t next = 0;
    std::size_t consumed = 0;
    const auto work = [&] {
        consumed += mapper->mouseMoved(&events[next], isDragging) ? 1U : 0U;
        next = 1 - next;
    };
    work();

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    const std::size_t calls = callsOf(state) + 1;
    check(state, consumed == calls && mapper.getEventCount() - eventsBefore == calls * mapper.getMatchingCount(),
          "not every movement was consumed");
}

void drag(benchmark::State& state)
{
    moveBetween(state, Qt::LeftButton);
}

void hover(benchmark::State& state)
{
    moveBetween(state, Qt::NoButton);
}

// Reaches all bindings, whatever matches.
void stopHover(benchmark::State& state)
{
    Mapper mapper(state);
    const QEvent event(QEvent::Leave);
    std::size_t consumed = 0;
    const auto work = [&] { consumed += mapper->hoverStopped(&event) ? 1U : 0U; };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, consumed == callsOf(state) && mapper.getEventCount() == callsOf(state) * mapper.getBindingCount(),
          "not every end of hovering reached all bindings");
}

void keyPress(benchmark::State& state, const int key)
{
    Mapper mapper(state);
    const QKeyEvent pressed(QEvent::KeyPress, key, Qt::NoModifier);
    const QKeyEvent released(QEvent::KeyRelease, key, Qt::NoModifier);
    std::size_t consumed = 0;

    measureBetween(
        state, [&] { consumed += mapper->keyPressed(&pressed) ? 1U : 0U; }, [&] { mapper->keyReleased(&released); });

    check(state, consumed == callsOf(state), "not every press was consumed");
}

void keyRelease(benchmark::State& state, const int key)
{
    Mapper mapper(state);
    const QKeyEvent pressed(QEvent::KeyPress, key, Qt::NoModifier);
    const QKeyEvent released(QEvent::KeyRelease, key, Qt::NoModifier);
    mapper->keyPressed(&pressed);
    std::size_t consumed = 0;

    measureBetween(
        state, [&] { consumed += mapper->keyReleased(&released) ? 1U : 0U; }, [&] { mapper->keyPressed(&pressed); });

    check(state, consumed == callsOf(state), "not every release was consumed");
}

void keyRepeat(benchmark::State& state)
{
    Mapper mapper(state);
    const QKeyEvent pressed(QEvent::KeyPress, boundKey, Qt::NoModifier);
    const QKeyEvent repeated(QEvent::KeyPress, boundKey, Qt::NoModifier, QString(), true);
    mapper->keyPressed(&pressed);
    const std::size_t eventsBefore = mapper.getEventCount();
    std::size_t consumed = 0;
    const auto work = [&] { consumed += mapper->keyPressed(&repeated) ? 1U : 0U; };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, consumed == callsOf(state) && mapper.getEventCount() == eventsBefore,
          "a repeated key was not swallowed");
}

[[maybe_unused]] const bool isRegistered = [] {
    const auto add = [](const char* name, auto function, auto... arguments) {
        return benchmark::RegisterBenchmark(name, function, arguments...)->Arg(1)->Arg(20)->Arg(200);
    };
    add("QtEventMapper/press", press)->UseManualTime();
    add("QtEventMapper/release", release)->UseManualTime();
    add("QtEventMapper/press+release", pressAndRelease);
    add("QtEventMapper/drag", drag);
    add("QtEventMapper/hover", hover);
    add("QtEventMapper/stopHover", stopHover);
    add("QtEventMapper/keyPress/bound", keyPress, boundKey)->UseManualTime();
    add("QtEventMapper/keyRelease/bound", keyRelease, boundKey)->UseManualTime();
    add("QtEventMapper/keyPress/free", keyPress, freeKey)->UseManualTime();
    add("QtEventMapper/keyRelease/free", keyRelease, freeKey)->UseManualTime();
    add("QtEventMapper/keyPress/repeated", keyRepeat);
    return true;
}();

} // namespace

} // namespace quon::benchmarks
