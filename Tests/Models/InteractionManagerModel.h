// SPDX-License-Identifier: MIT
#pragma once

#include "AbstractInteractionContextModel.h"
#include "ModelRun.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace quon::testing {

/** What an InteractionManager calls: its stack is a vector, the front its top. */
class InteractionManagerModel {
public:
    static std::vector<std::string> branches()
    {
        return {"added to an empty stack",
                "added at the front",
                "added at the front among equals",
                "added below the front",
                "added at the end",
                "added behind a larger position",
                "added to a disabled manager",
                "added again",
                "added again at the front",
                "raised",
                "raise of an unknown context",
                "raise of the front",
                "front removed",
                "last context removed",
                "other context removed",
                "unknown context removed",
                "event taken",
                "event taken below the front",
                "event left by all",
                "event while disabled",
                "movement while disabled",
                "disabled by the first",
                "disabled once more",
                "enabled by the last",
                "enabled not yet",
                "enabled beyond",
                "stack changed during a walk",
                "context of a walk raised itself",
                "context next in a walk removed",
                "context removed while it was added",
                "stack changed while a front was lowered for a raise",
                "stack changed while a front was lowered for its removal",
                "context added again while it was removed"};
    }

    /** @param number what the contexts are told */
    InteractionManagerModel(int number, ModelCoverage& coverage)
        : m_number(number)
        , m_coverage(coverage)
    {}

    void enable()
    {
        ++m_enableCount;
        if (m_enableCount == 0) {
            m_coverage.see("enabled by the last");
            walk([this](InteractionContextModel& context) {
                context.enabled(m_number);
                return false;
            });
        } else {
            m_coverage.see(m_enableCount > 0 ? "enabled beyond" : "enabled not yet");
        }
    }

    void disable()
    {
        --m_enableCount;
        if (m_enableCount == -1) {
            m_coverage.see("disabled by the first");
            walk([this](InteractionContextModel& context) {
                context.disabled(m_number);
                return false;
            });
        } else {
            m_coverage.see("disabled once more");
        }
    }

    void addContext(InteractionContextModel& context)
    {
        if (has(context)) {
            m_coverage.see(m_contexts.front() == &context ? "added again at the front" : "added again");
            raiseContext(context);
            return;
        }
        const int position = context.getPreferredPosition();
        std::size_t place = 0;
        std::vector<int> others;
        for (InteractionContextModel* const each : m_contexts) {
            others.push_back(each->getPreferredPosition());
            if (others.back() < position) {
                place = others.size();
            }
        }
        const bool isFront = place == 0;
        seePlace(place, position, others);
        if (isFront && !m_contexts.empty()) {
            // Where the context goes when the stack changes now is not promised.
            m_isFrozen = true;
            m_contexts.front()->contextLowered(m_number);
            m_isFrozen = false;
        }
        m_contexts.insert(m_contexts.begin() + static_cast<std::ptrdiff_t>(place), &context);
        context.contextAdded(m_number);
        if (isFront) {
            context.contextRaised(m_number);
        }
        if (!has(context)) {
            m_coverage.see("context removed while it was added");
        }
        protect(context);
        if (m_enableCount < 0) {
            m_coverage.see("added to a disabled manager");
            context.disabled(m_number);
        } else {
            context.enabled(m_number);
        }
        unprotect();
    }

    void raiseContext(InteractionContextModel& context)
    {
        if (!has(context)) {
            m_coverage.see("raise of an unknown context");
            return;
        }
        if (m_contexts.front() == &context) {
            m_coverage.see("raise of the front");
            return;
        }
        m_coverage.see("raised");
        const std::vector<InteractionContextModel*> before = m_contexts;
        protect(context);
        m_contexts.front()->contextLowered(m_number);
        unprotect();
        if (m_contexts != before) {
            m_coverage.see("stack changed while a front was lowered for a raise");
        }
        unlink(context);
        m_contexts.insert(m_contexts.begin(), &context);
        context.contextRaised(m_number);
    }

    void removeContext(InteractionContextModel& context)
    {
        InteractionContextModel* const front = m_contexts.empty() ? nullptr : m_contexts.front();
        if (has(context)) {
            m_coverage.see(m_contexts.size() == 1 ? "last context removed"
                           : front == &context    ? "front removed"
                                                  : "other context removed");
            if (front == &context) {
                const std::vector<InteractionContextModel*> before = m_contexts;
                protect(context);
                context.contextLowered(m_number);
                unprotect();
                if (m_contexts != before) {
                    m_coverage.see("stack changed while a front was lowered for its removal");
                }
            }
            unlink(context);
            context.contextRemoved(m_number);
            if (has(context)) {
                m_coverage.see("context added again while it was removed");
            }
        } else {
            m_coverage.see("unknown context removed");
        }
        if (!m_contexts.empty() && m_contexts.front() != front) {
            m_contexts.front()->contextRaised(m_number);
        }
    }

    void pointerMoved(int x, int y)
    {
        seeMovement();
        walk([x, y](InteractionContextModel& context) {
            context.pointerMoved(x, y);
            return false;
        });
    }

    void cameraMoved(int x, int y, int z)
    {
        seeMovement();
        walk([x, y, z](InteractionContextModel& context) {
            context.cameraMoved(x, y, z);
            return false;
        });
    }

    bool triggerEvent(const EventModel& event)
    {
        if (m_enableCount < 0) {
            m_coverage.see("event while disabled");
            return false;
        }
        const InteractionContextModel* const front = m_contexts.empty() ? nullptr : m_contexts.front();
        const InteractionContextModel* taker = nullptr;
        walk([&](InteractionContextModel& context) {
            const bool taken = context.triggerEvent(m_number, event);
            taker = taken ? &context : taker;
            return taken;
        });
        m_coverage.see(taker == nullptr ? "event left by all"
                       : taker == front ? "event taken"
                                        : "event taken below the front");
        return taker != nullptr;
    }

    /** Whether a change of the stack has a defined result right now. */
    bool mayChange() const { return !m_isFrozen; }

    /** Whether @p context may be removed right now: not while it is being called. */
    bool mayRemove(const InteractionContextModel& context) const
    {
        return std::find(m_protected.begin(), m_protected.end(), &context) == m_protected.end();
    }

    bool has(const InteractionContextModel& context) const
    {
        return std::find(m_contexts.begin(), m_contexts.end(), &context) != m_contexts.end();
    }

private:
    // Each time one further than the context that was called, wherever that one is by then.
    template <typename Call>
    void walk(const Call& call)
    {
        InteractionContextModel* current = m_contexts.empty() ? nullptr : m_contexts.front();
        while (current != nullptr) {
            const std::vector<InteractionContextModel*> before = m_contexts;
            protect(*current);
            const bool isOver = call(*current);
            unprotect();
            seeChange(before, *current);
            if (isOver) {
                return;
            }
            const auto place = std::find(m_contexts.begin(), m_contexts.end(), current);
            current = place + 1 != m_contexts.end() ? *(place + 1) : nullptr;
        }
    }

    void seeChange(const std::vector<InteractionContextModel*>& before, InteractionContextModel& current)
    {
        if (before == m_contexts) {
            return;
        }
        m_coverage.see("stack changed during a walk");
        const auto place = std::find(before.begin(), before.end(), &current);
        if (place != before.begin() && m_contexts.front() == &current) {
            m_coverage.see("context of a walk raised itself");
        }
        if (place + 1 != before.end() && !has(**(place + 1))) {
            m_coverage.see("context next in a walk removed");
        }
    }

    void seePlace(std::size_t place, int position, const std::vector<int>& others)
    {
        if (others.empty()) {
            m_coverage.see("added to an empty stack");
        } else if (place == 0) {
            m_coverage.see(others.front() == position ? "added at the front among equals" : "added at the front");
        } else {
            m_coverage.see(place == others.size() ? "added at the end" : "added below the front");
        }
        for (std::size_t index = 0; index < place; ++index) {
            if (others[index] > position) {
                m_coverage.see("added behind a larger position");
                break;
            }
        }
    }

    void seeMovement()
    {
        if (m_enableCount < 0) {
            m_coverage.see("movement while disabled");
        }
    }

    void unlink(const InteractionContextModel& context)
    {
        m_contexts.erase(std::find(m_contexts.begin(), m_contexts.end(), &context));
    }

    void protect(const InteractionContextModel& context) { m_protected.push_back(&context); }
    void unprotect() { m_protected.pop_back(); }

    int m_number;
    ModelCoverage& m_coverage;
    std::vector<InteractionContextModel*> m_contexts;
    int m_enableCount = 0;
    bool m_isFrozen = false;
    std::vector<const InteractionContextModel*> m_protected;
};

} // namespace quon::testing
