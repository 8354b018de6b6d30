// SPDX-License-Identifier: MIT
#pragma once

#include "ModelRun.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/**
 * What a QtEventMapper does, with vectors that are searched from end to end.
 *
 * What becomes of calls from inside of its events is as the class itself promises.
 */
class QtEventMapperModel {
public:
    // The flags of Qt's modifiers, as numbers of our own.
    static constexpr int shift = 0x02000000;
    static constexpr int control = 0x04000000;
    static constexpr int alt = 0x08000000;

    static constexpr int keyShift = 0x01000020;
    static constexpr int keyControl = 0x01000021;
    static constexpr int keyAlt = 0x01000023;
    static constexpr int keyUnknown = 0x01ffffff;

    struct Binding {
        int code;
        int modifiers;
        std::string category;
        int number = 0; ///< in order of addition
    };

    /** What the model calls: the manager that is bound, and the registry of shortcuts. */
    struct Surroundings {
        std::function<bool(const std::string& category, const std::string& verb)> triggerEvent;
        std::function<void(int x, int y)> pointerMoved;
        std::function<bool()> isPresenting; ///< as the other two, called only while a manager is bound
        std::function<void(int code, int modifiers, const std::string& description)> addKey;
        std::function<void(int code, int modifiers)> subKey;
        std::function<void(int code, int modifiers, const std::string& description)> addMouseButton;
        std::function<void(int code, int modifiers)> subMouseButton;
    };

    static std::vector<std::string> branches()
    {
        return {"input without manager",
                "reset without manager and with nothing pending",
                "binding registered",
                "binding without description",
                "several equal bindings removed at once",
                "nothing to remove",
                "pointer at the same place",
                "mouse binding that wants other modifiers",
                "press of an active mouse category",
                "release of a mouse category that is not active",
                "drag over a category that is not active",
                "hover over several bindings of one category",
                "auto-repeat",
                "key held back by presenter mode",
                "key let through by presenter mode",
                "own flag of a modifier key dropped",
                "key binding without modifiers while some are held",
                "key binding with modifiers",
                "start consumed",
                "start not consumed",
                "press of an active key category",
                "control character released as a letter",
                "release of a key category that is not active",
                "two presses of a key pending",
                "reset of key and mouse categories",
                "reset of pending presses",
                "binding removed from inside",
                "event after the manager was unbound from inside",
                "ended from inside its own release",
                "forgotten by a reset",
                "started during a reset after its turn"};
    }

    QtEventMapperModel(Surroundings surroundings, ModelCoverage& coverage)
        : m_surroundings(std::move(surroundings))
        , m_coverage(coverage)
    {}

    void setBound(bool bound) { m_bound = bound; }
    bool isBound() const { return m_bound; }
    bool isPending() const { return !m_activeKeys.empty() || !m_activeButtons.empty() || !m_pending.empty(); }

    void addKeyboardMapping(const Binding& binding, const std::string& description)
    {
        add(m_keys, binding);
        registerUnlessEmpty(binding, description, m_surroundings.addKey);
    }

    void addMouseMapping(const Binding& binding, const std::string& description)
    {
        add(m_buttons, binding);
        registerUnlessEmpty(binding, description, m_surroundings.addMouseButton);
    }

    /** @p category null: any */
    void removeKeyboardMapping(int key, int modifiers, const std::string* category)
    {
        remove(m_keys, key, modifiers, category, m_surroundings.subKey);
    }

    void removeMouseMapping(int button, int modifiers, const std::string* category)
    {
        remove(m_buttons, button, modifiers, category, m_surroundings.subMouseButton);
    }

    bool mousePressed(int x, int y, int button, int modifiers)
    {
        if (!canSend()) {
            return false;
        }
        movePointer(x, y);
        bool consumed = false;
        for (const Binding& binding : bindingsOf(m_buttons, button)) {
            if (isGone(m_buttons, binding)) {
                continue;
            }
            if (binding.modifiers != relevant(modifiers)) {
                m_coverage.see("mouse binding that wants other modifiers");
                continue;
            }
            consumed = send(binding.category, "start") || consumed;
            if (has(m_activeButtons, binding.category)) {
                m_coverage.see("press of an active mouse category");
            }
            activate(m_activeButtons, binding.category);
        }
        return consumed;
    }

    bool mouseReleased(int x, int y, int button)
    {
        if (!canSend()) {
            return false;
        }
        movePointer(x, y);
        return end(m_buttons, button, m_activeButtons, "release of a mouse category that is not active");
    }

    bool mouseMoved(int x, int y, int buttons, int modifiers, bool dragging)
    {
        if (!canSend()) {
            return false;
        }
        movePointer(x, y);
        bool consumed = false;
        std::vector<std::string> hovered;
        for (const Binding& binding : dragging ? bindingsOf(m_buttons, buttons) : ordered(m_buttons)) {
            if (binding.modifiers != relevant(modifiers) || isGone(m_buttons, binding)) {
                continue;
            }
            if (!dragging) {
                consumed = send(binding.category, "hover") || consumed;
                if (has(hovered, binding.category)) {
                    m_coverage.see("hover over several bindings of one category");
                }
                hovered.push_back(binding.category);
            } else {
                consumed = send(binding.category, "process") || consumed;
                if (!has(m_activeButtons, binding.category)) {
                    m_coverage.see("drag over a category that is not active");
                }
            }
        }
        return consumed;
    }

    bool hoverStopped()
    {
        if (!canSend()) {
            return false;
        }
        bool consumed = false;
        for (const Binding& binding : ordered(m_buttons)) {
            if (!isGone(m_buttons, binding)) {
                consumed = send(binding.category, "stopHover") || consumed;
            }
        }
        return consumed;
    }

    bool keyPressed(int key, int modifiers, bool isRepeat)
    {
        if (!canSend()) {
            return false;
        }
        if (isRepeat) {
            m_coverage.see("auto-repeat");
            return true;
        }
        if (!passesPresenterMode(key, modifiers)) {
            return false;
        }
        int expected = relevant(modifiers);
        if (key == keyShift) {
            expected &= ~shift;
        }
        if (key == keyControl) {
            expected &= ~control;
        }
        if (key == keyAlt) {
            expected &= ~alt;
        }
        if (expected != relevant(modifiers)) {
            m_coverage.see("own flag of a modifier key dropped");
        }
        bool consumed = false;
        for (const Binding& binding : bindingsOf(m_keys, key)) {
            if ((binding.modifiers != 0 && binding.modifiers != expected) || isGone(m_keys, binding)) {
                continue;
            }
            if (binding.modifiers != 0) {
                m_coverage.see("key binding with modifiers");
            } else if (expected != 0) {
                m_coverage.see("key binding without modifiers while some are held");
            }
            const bool taken = send(binding.category, "start");
            m_coverage.see(taken ? "start consumed" : "start not consumed");
            consumed = taken || consumed;
            if (has(m_activeKeys, binding.category)) {
                m_coverage.see("press of an active key category");
            }
            activate(m_activeKeys, binding.category);
        }
        if (consumed) {
            return true;
        }
        const std::string category = "qt-key:" + toText(key, modifiers);
        const bool taken = send(category, "press");
        m_pending.emplace_back(key, category);
        return taken;
    }

    bool keyReleased(int key, int modifiers, bool isRepeat)
    {
        if (!canSend()) {
            return false;
        }
        if (isRepeat) {
            m_coverage.see("auto-repeat");
            return true;
        }
        if (key >= 1 && key <= 31) {
            m_coverage.see("control character released as a letter");
            key += 64;
        }
        if (!passesPresenterMode(key, modifiers)) {
            return false;
        }
        bool consumed = end(m_keys, key, m_activeKeys, "release of a key category that is not active");
        const bool isReleaseConsumed = releasePending(key);
        return consumed || isReleaseConsumed;
    }

    void resetEvents()
    {
        if (!m_bound) {
            m_coverage.see("reset without manager and with nothing pending");
        }
        if (!m_activeKeys.empty() && !m_activeButtons.empty()) {
            m_coverage.see("reset of key and mouse categories");
        }
        if (!m_pending.empty()) {
            m_coverage.see("reset of pending presses");
        }
        for (Categories* active : {&m_activeKeys, &m_activeButtons}) {
            // What is started from inside is ended as well when its turn is still to come.
            std::string last;
            for (bool isFirst = true;; isFirst = false) {
                std::sort(active->begin(), active->end());
                const auto next = isFirst ? active->begin() : std::upper_bound(active->begin(), active->end(), last);
                if (next == active->end()) {
                    break;
                }
                last = *next;
                active->erase(next);
                send(last, "stop");
                send(last, "trigger");
            }
            seeForgotten(!active->empty());
            active->clear();
        }
        int lastKey = 0;
        for (bool isFirst = true;; isFirst = false) {
            bool isFound = false;
            int nextKey = 0;
            for (const auto& pending : m_pending) {
                if ((isFirst || pending.first > lastKey) && (!isFound || pending.first < nextKey)) {
                    nextKey = pending.first;
                    isFound = true;
                }
            }
            if (!isFound) {
                break;
            }
            lastKey = nextKey;
            releasePending(lastKey);
        }
        seeForgotten(!m_pending.empty());
        m_pending.clear();
        if (isPending()) {
            m_coverage.see("started during a reset after its turn");
        }
    }

    static std::string toText(int key, int modifiers)
    {
        return std::string((modifiers & control) != 0 ? "ctrl+" : "") + ((modifiers & alt) != 0 ? "alt+" : "") +
               ((modifiers & shift) != 0 ? "shift+" : "") + std::to_string(key);
    }

private:
    using Bindings = std::vector<Binding>;
    using Categories = std::vector<std::string>;

    static int relevant(int modifiers) { return modifiers & (shift | control | alt); }

    static bool has(const Categories& categories, const std::string& category)
    {
        return std::find(categories.begin(), categories.end(), category) != categories.end();
    }

    static void activate(Categories& active, const std::string& category)
    {
        if (!has(active, category)) {
            active.push_back(category);
        }
    }

    void add(Bindings& bindings, Binding binding)
    {
        binding.number = ++m_lastBinding;
        bindings.push_back(binding);
    }

    // Each walk goes over the bindings of its beginning: what is added from inside waits for the next operation.
    static Bindings bindingsOf(const Bindings& bindings, int code)
    {
        Bindings found;
        for (const Binding& binding : bindings) {
            if (binding.code == code) {
                found.push_back(binding);
            }
        }
        return found;
    }

    // What is removed from inside gets no further event.
    bool isGone(const Bindings& bindings, const Binding& binding)
    {
        for (const Binding& each : bindings) {
            if (each.number == binding.number) {
                return false;
            }
        }
        m_coverage.see("binding removed from inside");
        return true;
    }

    // Taken out before they are sent: what happens from inside does not meet them again.
    bool releasePending(int key)
    {
        std::vector<std::pair<int, std::string>> released;
        std::vector<std::pair<int, std::string>> others;
        for (const auto& pending : m_pending) {
            (pending.first == key ? released : others).push_back(pending);
        }
        m_pending = others;
        if (released.size() > 1) {
            m_coverage.see("two presses of a key pending");
        }
        bool consumed = false;
        for (const auto& pending : released) {
            consumed = send(pending.second, "release") || consumed;
        }
        return consumed;
    }

    void seeForgotten(bool isForgotten)
    {
        if (isForgotten) {
            m_coverage.see("forgotten by a reset");
        }
    }

    // By ascending code; within a code as they were added.
    static Bindings ordered(Bindings bindings)
    {
        std::stable_sort(bindings.begin(), bindings.end(),
                         [](const Binding& left, const Binding& right) { return left.code < right.code; });
        return bindings;
    }

    void registerUnlessEmpty(const Binding& binding, const std::string& description,
                             const std::function<void(int, int, const std::string&)>& add)
    {
        m_coverage.see(description.empty() ? "binding without description" : "binding registered");
        if (!description.empty()) {
            add(binding.code, binding.modifiers, description);
        }
    }

    void remove(Bindings& bindings, int code, int modifiers, const std::string* category,
                const std::function<void(int, int)>& unregister)
    {
        Bindings kept;
        std::size_t removed = 0;
        for (const Binding& binding : bindings) {
            const bool matches = binding.code == code && binding.modifiers == modifiers &&
                                 (category == nullptr || binding.category == *category);
            if (matches) {
                unregister(code, modifiers);
                ++removed;
            } else {
                kept.push_back(binding);
            }
        }
        if (removed == 0) {
            m_coverage.see("nothing to remove");
        } else if (removed > 1) {
            m_coverage.see("several equal bindings removed at once");
        }
        bindings = kept;
    }

    bool canSend()
    {
        if (!m_bound) {
            m_coverage.see("input without manager");
        }
        return m_bound;
    }

    // A context may have unbound the manager from inside an earlier event.
    bool send(const std::string& category, const std::string& verb)
    {
        if (!m_bound) {
            m_coverage.see("event after the manager was unbound from inside");
        }
        return m_bound && m_surroundings.triggerEvent(category, verb);
    }

    void movePointer(int x, int y)
    {
        if (x == m_x && y == m_y) {
            m_coverage.see("pointer at the same place");
            return;
        }
        m_x = x;
        m_y = y;
        m_surroundings.pointerMoved(x, y);
    }

    bool passesPresenterMode(int key, int modifiers)
    {
        if (!m_surroundings.isPresenting()) {
            return true;
        }
        const bool passes = key == keyUnknown && relevant(modifiers) != 0;
        m_coverage.see(passes ? "key let through by presenter mode" : "key held back by presenter mode");
        return passes;
    }

    bool end(const Bindings& bindings, int code, Categories& active, const char* inactiveBranch)
    {
        bool consumed = false;
        for (const Binding& binding : bindingsOf(bindings, code)) {
            if (isGone(bindings, binding)) {
                continue;
            }
            if (!has(active, binding.category)) {
                m_coverage.see(inactiveBranch);
                continue;
            }
            consumed = send(binding.category, "stop") || consumed;
            consumed = send(binding.category, "trigger") || consumed;
            // Active until here, unless a reset from inside has ended it once more.
            const auto ended = std::find(active.begin(), active.end(), binding.category);
            if (ended != active.end()) {
                active.erase(ended);
            } else {
                m_coverage.see("ended from inside its own release");
            }
        }
        return consumed;
    }

    Surroundings m_surroundings;
    ModelCoverage& m_coverage;
    bool m_bound = false;
    Bindings m_keys;
    Bindings m_buttons;
    Categories m_activeKeys;
    Categories m_activeButtons;
    std::vector<std::pair<int, std::string>> m_pending;
    int m_lastBinding = 0;
    int m_x = 0;
    int m_y = 0;
};

} // namespace quon::testing
