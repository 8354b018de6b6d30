// SPDX-License-Identifier: MIT
#include <Interaction/InteractionManager.h>
#include <Interaction/QtEventMapper.h>

#include <Shortcut/koShortcut.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>

#include "Support/RapidCheckConfiguration.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

using quon::interaction::InteractionManager;
using quon::interaction::QtEventMapper;
using quon::testing::CallLog;
using quon::testing::RecordingContext;

// Random input, compared with a model of plain vectors that are searched from end to end.
namespace {

constexpr int shift = static_cast<int>(Qt::ShiftModifier);
constexpr int control = static_cast<int>(Qt::ControlModifier);
constexpr int alt = static_cast<int>(Qt::AltModifier);
constexpr int meta = static_cast<int>(Qt::MetaModifier);

// Few values, so that inputs meet bindings often.
const std::vector<int> allKeys = {Qt::Key_A, Qt::Key_B, 1, Qt::Key_Shift, Qt::Key_unknown};
const std::vector<int> allButtons = {Qt::LeftButton, Qt::RightButton,
                                     static_cast<int>(Qt::LeftButton | Qt::RightButton)};
const std::vector<int> allModifiers = {0, shift, control, shift | meta};
const std::vector<std::string> allCategories = {"a", "b", "c:hint"};
const std::vector<std::string> allVerbs = {"start", "process",   "stop",  "trigger",
                                           "hover", "stopHover", "press", "release"};

enum class Operation {
    AddKey,
    RemoveKey,
    RemoveKeyOfAnyCategory,
    AddButton,
    RemoveButton,
    RemoveButtonOfAnyCategory,
    PressKey,
    ReleaseKey,
    PressButton,
    ReleaseButton,
    Drag,
    Hover,
    Leave,
    Reset,
    SwitchPresenterMode,
    SwitchManager
};

// Input as often as all the rest.
const std::vector<Operation> allOperations = {Operation::AddKey,
                                              Operation::RemoveKey,
                                              Operation::RemoveKeyOfAnyCategory,
                                              Operation::AddButton,
                                              Operation::RemoveButton,
                                              Operation::RemoveButtonOfAnyCategory,
                                              Operation::AddKey,
                                              Operation::AddButton,
                                              Operation::Reset,
                                              Operation::SwitchManager,
                                              Operation::SwitchPresenterMode,
                                              Operation::Leave,
                                              Operation::PressKey,
                                              Operation::PressKey,
                                              Operation::PressKey,
                                              Operation::ReleaseKey,
                                              Operation::ReleaseKey,
                                              Operation::PressButton,
                                              Operation::PressButton,
                                              Operation::PressButton,
                                              Operation::ReleaseButton,
                                              Operation::ReleaseButton,
                                              Operation::Drag,
                                              Operation::Hover};
const std::vector<Operation> bindingOperations = {Operation::AddKey, Operation::AddButton};

struct Step {
    Operation operation;
    int key;
    int button;
    int modifiers;
    std::string category;
    int position;
    bool flag; // registered, or an auto-repeat
};

std::ostream& operator<<(std::ostream& stream, const Step& step)
{
    return stream << "{operation " << static_cast<int>(step.operation) << ", key " << step.key << ", button "
                  << step.button << ", modifiers " << step.modifiers << ", category " << step.category << ", position "
                  << step.position << ", flag " << step.flag << "}";
}

Step makeStep(const std::vector<Operation>& operations)
{
    Step step;
    step.operation = *rc::gen::elementOf(operations);
    step.key = *rc::gen::elementOf(allKeys);
    step.button = *rc::gen::elementOf(allButtons);
    step.modifiers = *rc::gen::elementOf(allModifiers);
    step.category = *rc::gen::elementOf(allCategories);
    step.position = *rc::gen::inRange(0, 3);
    // Rarely: what does not repeat is worth more.
    step.flag = *rc::gen::inRange(0, 5) == 0;
    return step;
}

// What QKeyEvent makes of the flags that a key event is given.
int reportedModifiers(int key, int modifiers)
{
    return key == Qt::Key_Shift ? modifiers ^ shift : modifiers;
}

class Model {
public:
    Model(CallLog& log, std::set<std::string> consumed)
        : m_log(log)
        , m_consumed(std::move(consumed))
    {}

    bool apply(const Step& step)
    {
        switch (step.operation) {
        case Operation::AddKey:
            return add(m_keys, "key", step.key, step);
        case Operation::RemoveKey:
            return remove(m_keys, "key", step.key, step.modifiers, &step.category);
        case Operation::RemoveKeyOfAnyCategory:
            return remove(m_keys, "key", step.key, step.modifiers, nullptr);
        case Operation::AddButton:
            return add(m_buttons, "button", step.button, step);
        case Operation::RemoveButton:
            return remove(m_buttons, "button", step.button, step.modifiers, &step.category);
        case Operation::RemoveButtonOfAnyCategory:
            return remove(m_buttons, "button", step.button, step.modifiers, nullptr);
        case Operation::Reset:
            return reset();
        case Operation::SwitchPresenterMode:
            m_presenterMode = !m_presenterMode;
            return false;
        case Operation::SwitchManager:
            m_bound = !m_bound;
            return false;
        default:
            return m_bound && input(step);
        }
    }

    bool isBound() const { return m_bound; }
    const std::vector<std::string>& shortcuts() const { return m_shortcuts; }

private:
    struct Binding {
        int code;
        int modifiers;
        std::string category;
    };
    using Bindings = std::vector<Binding>;

    bool add(Bindings& bindings, const std::string& kind, int code, const Step& step)
    {
        bindings.push_back({code, step.modifiers, step.category});
        std::stable_sort(bindings.begin(), bindings.end(),
                         [](const Binding& left, const Binding& right) { return left.code < right.code; });
        if (step.flag) {
            m_shortcuts.push_back(kind + std::to_string(code) + "/" + std::to_string(step.modifiers));
        }
        return false;
    }

    bool remove(Bindings& bindings, const std::string& kind, int code, int modifiers, const std::string* category)
    {
        Bindings kept;
        for (const Binding& binding : bindings) {
            if (binding.code != code || binding.modifiers != modifiers ||
                (category != nullptr && binding.category != *category)) {
                kept.push_back(binding);
                continue;
            }
            const auto last = std::find(m_shortcuts.rbegin(), m_shortcuts.rend(),
                                        kind + std::to_string(code) + "/" + std::to_string(modifiers));
            if (last != m_shortcuts.rend()) {
                m_shortcuts.erase(std::prev(last.base()));
            }
        }
        bindings = kept;
        return false;
    }

    bool send(const std::string& category, const std::string& verb)
    {
        m_log.call("context", "triggerEvent", category, verb);
        return m_consumed.count(category + " " + verb) > 0;
    }

    bool input(const Step& step)
    {
        const int modifiers = step.modifiers & (shift | control | alt);
        switch (step.operation) {
        case Operation::PressKey:
        case Operation::ReleaseKey:
            return step.flag || key(step);
        case Operation::PressButton: {
            movePointer(step.position);
            bool consumed = false;
            for (const Binding& binding : m_buttons) {
                if (binding.code == step.button && binding.modifiers == modifiers) {
                    consumed = send(binding.category, "start") || consumed;
                    m_activeButtons.insert(binding.category);
                }
            }
            return consumed;
        }
        case Operation::ReleaseButton:
            movePointer(step.position);
            return end(m_buttons, step.button, m_activeButtons);
        case Operation::Drag:
        case Operation::Hover: {
            movePointer(step.position);
            const bool dragging = step.operation == Operation::Drag;
            bool consumed = false;
            for (const Binding& binding : m_buttons) {
                if (binding.modifiers == modifiers && (!dragging || binding.code == step.button)) {
                    consumed = send(binding.category, dragging ? "process" : "hover") || consumed;
                }
            }
            return consumed;
        }
        default: {
            bool consumed = false;
            for (const Binding& binding : m_buttons) {
                consumed = send(binding.category, "stopHover") || consumed;
            }
            return consumed;
        }
        }
    }

    bool key(const Step& step)
    {
        const bool isPress = step.operation == Operation::PressKey;
        const int key = !isPress && step.key == 1 ? static_cast<int>(Qt::Key_A) : step.key;
        const int held = reportedModifiers(step.key, step.modifiers) & (shift | control | alt);
        if (m_presenterMode && (key != Qt::Key_unknown || held == 0)) {
            return false;
        }
        bool consumed = false;
        if (!isPress) {
            consumed = end(m_keys, key, m_activeKeys);
            std::vector<std::pair<int, std::string>> kept;
            for (const auto& [pendingKey, category] : m_pending) {
                if (pendingKey == key) {
                    consumed = send(category, "release") || consumed;
                } else {
                    kept.push_back({pendingKey, category});
                }
            }
            m_pending = kept;
            return consumed;
        }
        const int expected = key == Qt::Key_Shift ? held & ~shift : held;
        for (const Binding& binding : m_keys) {
            if (binding.code == key && (binding.modifiers == expected || binding.modifiers == 0)) {
                consumed = send(binding.category, "start") || consumed;
                m_activeKeys.insert(binding.category);
            }
        }
        if (consumed) {
            return true;
        }
        const std::string category = std::string("qt-key:") + ((held & control) != 0 ? "ctrl+" : "") +
                                     ((held & alt) != 0 ? "alt+" : "") + ((held & shift) != 0 ? "shift+" : "") +
                                     std::to_string(key);
        m_pending.push_back({key, category});
        return send(category, "press");
    }

    bool end(const Bindings& bindings, int code, std::set<std::string>& active)
    {
        bool consumed = false;
        for (const Binding& binding : bindings) {
            if (binding.code == code && active.count(binding.category) > 0) {
                consumed = send(binding.category, "stop") || consumed;
                consumed = send(binding.category, "trigger") || consumed;
                active.erase(binding.category);
            }
        }
        return consumed;
    }

    bool reset()
    {
        for (std::set<std::string>* active : {&m_activeKeys, &m_activeButtons}) {
            for (const std::string& category : *active) {
                send(category, "stop");
                send(category, "trigger");
            }
            active->clear();
        }
        std::stable_sort(m_pending.begin(), m_pending.end(),
                         [](const auto& left, const auto& right) { return left.first < right.first; });
        for (const auto& pending : m_pending) {
            send(pending.second, "release");
        }
        m_pending.clear();
        return false;
    }

    void movePointer(int position)
    {
        if (position != m_position) {
            m_position = position;
            m_log.call("context", "pointerMoved", position, -position);
        }
    }

    CallLog& m_log;
    std::set<std::string> m_consumed;
    Bindings m_keys;
    Bindings m_buttons;
    std::set<std::string> m_activeKeys;
    std::set<std::string> m_activeButtons;
    std::vector<std::pair<int, std::string>> m_pending;
    std::vector<std::string> m_shortcuts;
    int m_position = 0;
    bool m_presenterMode = false;
    bool m_bound = true;
};

bool apply(QtEventMapper& mapper, InteractionManager& manager, const Step& step, bool bind)
{
    const QPointF position(step.position, -step.position);
    const Qt::KeyboardModifiers modifiers(step.modifiers);
    const auto button = static_cast<Qt::MouseButton>(step.button);
    const auto mouseEvent = [&](QEvent::Type type) {
        return QMouseEvent(type, position, QPointF(), QPointF(), type == QEvent::MouseMove ? Qt::NoButton : button,
                           Qt::MouseButtons(button), modifiers);
    };
    const auto keyEvent = [&](QEvent::Type type) { return QKeyEvent(type, step.key, modifiers, QString(), step.flag); };
    const QString description = step.flag ? QStringLiteral("described") : QString();

    switch (step.operation) {
    case Operation::AddKey:
        mapper.addKeyboardMapping(step.key, step.modifiers, step.category, description);
        return false;
    case Operation::RemoveKey:
        mapper.removeKeyboardMapping(step.key, step.modifiers, step.category);
        return false;
    case Operation::RemoveKeyOfAnyCategory:
        mapper.removeKeyboardMapping(step.key, step.modifiers);
        return false;
    case Operation::AddButton:
        mapper.addMouseMapping(button, step.modifiers, step.category, description);
        return false;
    case Operation::RemoveButton:
        mapper.removeMouseMapping(button, step.modifiers, step.category);
        return false;
    case Operation::RemoveButtonOfAnyCategory:
        mapper.removeMouseMapping(button, step.modifiers);
        return false;
    case Operation::PressKey: {
        const QKeyEvent event = keyEvent(QEvent::KeyPress);
        return mapper.keyPressed(&event);
    }
    case Operation::ReleaseKey: {
        const QKeyEvent event = keyEvent(QEvent::KeyRelease);
        return mapper.keyReleased(&event);
    }
    case Operation::PressButton: {
        const QMouseEvent event = mouseEvent(QEvent::MouseButtonPress);
        return mapper.mousePressed(&event);
    }
    case Operation::ReleaseButton: {
        const QMouseEvent event = mouseEvent(QEvent::MouseButtonRelease);
        return mapper.mouseReleased(&event);
    }
    case Operation::Drag:
    case Operation::Hover: {
        const QMouseEvent event = mouseEvent(QEvent::MouseMove);
        return mapper.mouseMoved(&event, step.operation == Operation::Drag);
    }
    case Operation::Leave:
        return mapper.hoverStopped(nullptr);
    case Operation::Reset:
        mapper.resetEvents();
        return false;
    case Operation::SwitchPresenterMode:
        manager.setPresenterMode(!manager.getPresenterMode());
        return false;
    default:
        mapper.setInteractionManager(bind ? &manager : nullptr);
        return false;
    }
}

std::vector<std::string> registeredShortcuts()
{
    std::vector<std::string> texts;
    for (const koShortcut::Entry& entry : koShortcut::getEntries()) {
        texts.push_back((entry.kind == koShortcut::Key ? "key" : "button") + std::to_string(entry.code) + "/" +
                        std::to_string(entry.modifiers));
    }
    return texts;
}

RC_GTEST_PROP(QtEventMapperModelTest, AnySequenceOfCallsMatchesTheModel, ())
{
    CallLog log;
    InteractionManager manager;
    RecordingContext context(log, "context");
    manager.addContext(&context);
    log.clear();
    QtEventMapper mapper;
    mapper.setInteractionManager(&manager);
    koShortcut::clear();

    std::set<std::string> consumed;
    for (const std::string category : {"a", "b", "c:hint", "qt-key:65", "qt-key:ctrl+66"}) {
        for (const std::string& verb : allVerbs) {
            if (*rc::gen::inRange(0, 4) == 0) {
                consumed.insert(category + " " + verb);
            }
        }
    }
    context.setHook([&](const std::string&) {
        // "context.triggerEvent(category, verb)"
        const std::string call = log.calls().back();
        const std::size_t start = call.find('(') + 1;
        const std::size_t comma = call.find(", ");
        if (comma == std::string::npos) {
            return;
        }
        context.setConsuming(consumed.count(call.substr(start, comma - start) + " " +
                                            call.substr(comma + 2, call.size() - comma - 3)) > 0);
    });
    CallLog expectedLog;
    Model model(expectedLog, consumed);

    // A table full of bindings to start with, then anything.
    auto steps = *rc::gen::container<std::vector<Step>>(24, rc::gen::exec([] { return makeStep(bindingOperations); }));
    const auto furtherSteps =
        *rc::gen::container<std::vector<Step>>(rc::gen::exec([] { return makeStep(allOperations); }));
    steps.insert(steps.end(), furtherSteps.begin(), furtherSteps.end());
    for (const Step& step : steps) {
        if (step.operation == Operation::Reset && !model.isBound()) {
            // A reset must only be called while a manager is bound or nothing is pending.
            continue;
        }
        const bool expectedResult = model.apply(step);

        const bool result = apply(mapper, manager, step, model.isBound());

        RC_ASSERT(log.take() == expectedLog.take());
        RC_ASSERT(result == expectedResult);
        RC_ASSERT(registeredShortcuts() == model.shortcuts());
    }

    context.setHook(nullptr);
    manager.removeContext(&context);
    koShortcut::clear();
}

} // namespace
