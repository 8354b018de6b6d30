// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractInteractionContext.h>
#include <Utilities/ListenerList.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quon::interaction {
class InteractionEvent;
class InteractionManager;
} // namespace quon::interaction

namespace quon::viewer {

/** One interaction event and what became of it. */
struct TracedEvent {
    enum class Outcome {
        Consumed, ///< by the context named in consumer
        Ignored,  ///< it passed the whole stack
        Unknown,  ///< by a context above the bottom of the stack that does not report to the trace
    };

    std::uint64_t number = 0; ///< from 1 in the order in which the events began
    std::string category;
    std::string verb;
    Outcome outcome = Outcome::Unknown;
    std::string consumer; ///< name of the context that consumed it, empty when that is not known
    int depth = 0;        ///< events that were under way when it began: 0 for one that no context sent
    double time = 0;      ///< milliseconds from the start of the trace to the beginning
    double duration = 0;  ///< milliseconds from the beginning to the answer
};

/** Hears of interaction events. */
class InteractionTraceListener {
public:
    /**
     * Called after an event that no context sent, and then for each that contexts sent from inside it, in the order in
     * which they began. Must not send events.
     */
    virtual void eventTraced(const TracedEvent& event) = 0;

protected:
    // Listeners are borrowed and destroyed through their own class.
    ~InteractionTraceListener() = default;
};

/**
 * Watches what happens in the stack of an interaction manager: which events there are, who consumes them, in which
 * order the contexts stand.
 *
 * The manager tells nobody who consumed an event. Two contexts that only listen do half of the work: the one on top
 * marks where an event begins, the one at the bottom where nobody has consumed it. The other half are contexts made
 * with Traced, which report their answers. An event that disappears between the two is consumed by somebody else.
 *
 * The listening contexts are in the stack only while there are listeners; the context below is not raised during that
 * time. Without listeners a traced context costs one comparison for each call.
 *
 * @par Order of the stack
 * Known from what the contexts are told: additions, removals and raising as they happen, and every movement of the
 * pointer or the camera, which the manager reports from the top down.
 * @par Threading
 * User-interface thread only, no locks.
 */
class InteractionTrace {
public:
    /** A context of the stack. */
    struct StackEntry {
        const interaction::InteractionContext* context; ///< borrowed
        std::string name;
    };

    /** @param manager borrowed, must outlive the trace */
    explicit InteractionTrace(interaction::InteractionManager& manager);

    /** Takes the listening contexts out of the stack. Traced contexts must be gone or out of the stack. */
    ~InteractionTrace();

    InteractionTrace(const InteractionTrace&) = delete;
    InteractionTrace& operator=(const InteractionTrace&) = delete;

    /** Adds a listener, borrowed; the first one starts the trace. Null and one that is there already are ignored. */
    void addListener(InteractionTraceListener* listener);

    /** Removes a listener; the last one ends the trace. Null and an unknown one are ignored. */
    void removeListener(InteractionTraceListener* listener);

    /** Whether there are listeners. */
    bool isListening() const { return m_listening; }

    /** Whether a traced context is handling an event, as far as the trace has seen it begin. */
    bool isHandling() const { return m_depth > 0; }

    /** Reports an event that somebody unknown has consumed now instead of with the next event. */
    void finish();

    /** Returns the contexts that report to the trace, top first. */
    const std::vector<StackEntry>& getStack() const { return m_stack; }

    // What follows is for traced contexts.

    /** Call before an event is handled while isListening(). Returns what eventAnswered() wants to know. */
    std::uint64_t eventOffered(const interaction::InteractionContext& context,
                               const interaction::InteractionEvent& event);

    /** Call after the event was handled. @param offer what eventOffered() returned */
    void eventAnswered(std::uint64_t offer, const std::string& name, bool consumed);

    /** Call when the context was told of a movement, while isListening(). */
    void movementReported(const interaction::InteractionContext& context);

    void contextAdded(const interaction::InteractionContext& context, const std::string& name);
    void contextRemoved(const interaction::InteractionContext& context);
    void contextRaised(const interaction::InteractionContext& context);

private:
    using Clock = std::chrono::steady_clock;

    /** Consumes nothing and reports everything. */
    class ListeningContext final : public interaction::AbstractInteractionContext {
    public:
        ListeningContext(InteractionTrace& trace, int position, const char* name, bool last);

        void contextAdded(interaction::InteractionManager* manager) override;
        void contextRemoved(interaction::InteractionManager* manager) override;
        void contextRaised(interaction::InteractionManager* manager) override;
        void pointerMoved(const osg::Pnt2f& position) override;
        void cameraMoved(const osg::Matrix& camera) override;
        bool triggerEvent(interaction::InteractionManager* manager,
                          const interaction::InteractionEvent& event) override;

    private:
        InteractionTrace& m_trace;
        const char* m_name;
        bool m_last; ///< an event that comes here was consumed by nobody
    };

    /** The event that is on its way at one depth. */
    struct Level {
        const interaction::InteractionEvent* event = nullptr;
        std::size_t pending = 0; ///< its place in m_pending
        bool open = false;       ///< nobody has answered for it yet
        std::vector<const interaction::InteractionContext*> told;
    };

    void start();
    void stop();
    void noteOffer(const interaction::InteractionContext& context, const interaction::InteractionEvent& event);
    bool isUnderWay(const Level& level, const interaction::InteractionContext& context,
                    const interaction::InteractionEvent& event) const;
    void begin(Level& level, const interaction::InteractionEvent& event);
    void end(Level& level, TracedEvent::Outcome outcome, const std::string& consumer);
    void leaveDeeperLevels();
    void deliver();
    std::vector<StackEntry>::iterator find(const interaction::InteractionContext& context);

    interaction::InteractionManager& m_manager;
    ListeningContext m_top;
    ListeningContext m_bottom;
    ListenerList<InteractionTraceListener> m_listeners;
    std::vector<InteractionTraceListener*> m_present; ///< the same listeners, to know when there are none
    bool m_listening = false;
    std::uint64_t m_run = 0; ///< answers to offers of an earlier run mean nothing
    std::uint64_t m_lastNumber = 0;
    Clock::time_point m_start;
    std::size_t m_depth = 0; ///< traced contexts that are handling an event
    std::vector<Level> m_levels;
    std::vector<TracedEvent> m_pending; ///< begun and not delivered yet
    std::vector<StackEntry> m_stack;
    std::vector<const interaction::InteractionContext*> m_walk; ///< told of the movement under way so far
};

} // namespace quon::viewer
