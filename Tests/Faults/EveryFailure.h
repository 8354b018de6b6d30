// SPDX-License-Identifier: MIT
#pragma once

#include <InteractionTesting/LiveContainers.h>

#include "Support/AllocationFailure.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGThread.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <new>
#include <string>
#include <utility>

namespace quon::testing {

/** What the tests of one program have done, for the line at its end. */
struct FaultCount {
    std::size_t operations = 0;
    std::size_t faults = 0; ///< allocations, however often each was made to fail

    static FaultCount& instance()
    {
        static FaultCount count;
        return count;
    }
};

/**
 * An operation that meets each of its allocations failing: the first, the second and so on, until it succeeds.
 *
 * Each time a @p Subject is made anew and the operation carried out; the std::bad_alloc has to arrive here, the
 * operation is then repeated (or what its header says instead) and has to have its full result. No container and no
 * memory may be left when the subject is gone.
 */
template <class Subject>
class EveryFailure {
public:
    using Step = std::function<void(Subject&)>;

    EveryFailure(std::string name, Step operation)
        : m_name(std::move(name))
        , m_operation(operation)
        , m_again(std::move(operation))
    {}

    /** Called after a failure instead of the operation itself. */
    EveryFailure& repairedBy(Step again)
    {
        m_again = std::move(again);
        return *this;
    }

    /** Called right after a failure: what has to hold then. */
    EveryFailure& leaving(Step check)
    {
        m_afterFailure = std::move(check);
        return *this;
    }

    /** An exception is a failure of the test: the operation gets along without memory. */
    EveryFailure& isNeverFelt()
    {
        m_mayFail = false;
        return *this;
    }

    /** Runs it; @p check is called whenever the operation has succeeded in the end. */
    void give(const Step& check)
    {
        ++FaultCount::instance().operations;
        bool happened = true;
        for (std::size_t number = 1; happened; ++number) {
            SCOPED_TRACE(m_name + ", allocation " + std::to_string(number));
            const std::size_t containers = countLiveContainers();
            happened = attempt(number, check);
            if (happened) {
                ++FaultCount::instance().faults;
                // Stores of spare parts fill first; what is lost each time goes on growing.
                attempt(number, check);
                const std::size_t memory = getLiveAllocationCount();
                for (std::size_t repetition = 0; repetition < repetitions; ++repetition) {
                    attempt(number, check);
                }
                EXPECT_LT(getLiveAllocationCount(), memory + repetitions) << "memory is lost each time";
            }
            EXPECT_EQ(countLiveContainers(), containers) << "containers leaked or released too often";
            if (::testing::Test::HasFailure()) {
                return;
            }
        }
    }

private:
    static constexpr std::size_t repetitions = 4;

    bool attempt(std::size_t number, const Step& check)
    {
        bool happened = false;
        bool threw = false;
        {
            Subject subject;
            {
                const AllocationFailure failure(number);
                try {
                    m_operation(subject);
                } catch (const std::bad_alloc&) {
                    threw = true;
                }
                happened = failure.hasHappened();
            }
            EXPECT_TRUE(m_mayFail || !threw) << "the operation must not need memory";
            if (threw) {
                if (m_afterFailure) {
                    m_afterFailure(subject);
                }
                m_again(subject);
            }
            check(subject);
        }
        osg::Thread::getCurrentChangeList()->clearAll();
        return happened;
    }

    std::string m_name;
    Step m_operation;
    Step m_again;
    Step m_afterFailure;
    bool m_mayFail = true;
};

} // namespace quon::testing
