// SPDX-License-Identifier: MIT
#pragma once

#include "Support/RapidCheckConfiguration.h"
#include "Support/StandardError.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quon::testing {

/** One operation of a sequence, and numbers from 0 to 255 of which it makes its arguments. */
struct ModelStep {
    std::size_t operation;               ///< index into the driver's operations
    const char* name;                    ///< of the operation
    std::array<std::uint8_t, 6> numbers; ///< 0 for the simplest argument

    /** Returns argument number @p index as one of 0 to @p count - 1. */
    std::size_t pick(std::size_t index, std::size_t count) const { return numbers[index] % count; }

    /** Returns whether argument number @p index is one of @p count in 256. */
    bool isRare(std::size_t index, int count) const { return numbers[index] > 255 - count; }

    friend std::ostream& operator<<(std::ostream& stream, const ModelStep& step)
    {
        stream << "\n  " << step.name;
        for (const std::uint8_t number : step.numbers) {
            stream << ' ' << static_cast<int>(number);
        }
        return stream;
    }
};

/** What a sequence may consist of: @p carryOut does it to the library and to the model and compares the two. */
template <class Driver>
struct ModelOperation {
    const char* name;
    unsigned weight; ///< how often, compared with the others
    void (Driver::*carryOut)(const ModelStep& step);
};

/** Counts what was exercised, so that a generator that no longer reaches something fails. */
class ModelCoverage {
public:
    explicit ModelCoverage(const std::vector<std::string>& names)
    {
        for (const std::string& name : names) {
            m_counts[name] = 0;
        }
    }

    /** Counts @p name, which must be one of those that were announced. */
    void see(std::string_view name) { ++counter(name); }

    /** Returns where @p name is counted, which must be one of those that were announced. */
    std::uint64_t& counter(std::string_view name)
    {
        const auto entry = m_counts.find(name);
        if (entry == m_counts.end()) {
            throw std::logic_error("nobody announced " + std::string(name));
        }
        return entry->second;
    }

    std::size_t size() const { return m_counts.size(); }

    std::vector<std::string> unseen() const
    {
        std::vector<std::string> names;
        for (const auto& [name, count] : m_counts) {
            if (count == 0) {
                names.push_back(name);
            }
        }
        return names;
    }

    /** Writes how often each was seen, one to a line. */
    void print(std::ostream& stream) const
    {
        for (const auto& [name, count] : m_counts) {
            stream << "    " << count << "  " << name << '\n';
        }
    }

private:
    std::map<std::string, std::uint64_t, std::less<>> m_counts;
};

namespace model {

template <typename Value>
void print(std::ostream& stream, const Value& value)
{
    stream << std::boolalpha << value;
}

template <typename Value>
void print(std::ostream& stream, const std::vector<Value>& values)
{
    for (const Value& value : values) {
        stream << "\n    ";
        print(stream, value);
    }
    if (values.empty()) {
        stream << "nothing";
    }
}

/** Ends the sequence as failed unless the library's value is that of the model. */
template <typename Actual, typename Expected>
void requireSame(const char* what, const Actual& actual, const Expected& expected)
{
    if (actual == expected) {
        return;
    }
    std::ostringstream message;
    message << what << ": the library has ";
    print(message, actual);
    message << "\nthe model has ";
    print(message, expected);
    RC_FAIL(message.str());
}

/** How many operations make a run: KOINTERACTION_MODEL_OPERATIONS, or what fits into the time of a test. */
inline std::uint64_t wantedOperations()
{
    if (const char* const wanted = std::getenv("KOINTERACTION_MODEL_OPERATIONS")) {
        return std::strtoull(wanted, nullptr, 10);
    }
#if defined(KO_MODEL_FEW_OPERATIONS)
    return 100000;
#elif defined(NDEBUG)
    return 1000000;
#else
    return 200000;
#endif
}

/** The sequence that is being carried out, for the case that it is the last. */
inline const std::vector<ModelStep>* currentSteps = nullptr;
inline std::uint64_t currentSeed = 0;

// A crash is not made shorter, but it tells what led to it.
inline void tellSequenceAndDie(int signalNumber)
{
    if (currentSteps != nullptr) {
        std::cout << StandardError::take() << "crashed in this sequence, again with RC_PARAMS=seed=" << currentSeed
                  << ":";
        for (const ModelStep& step : *currentSteps) {
            std::cout << step;
        }
        std::cout << std::endl;
    }
    std::signal(signalNumber, SIG_DFL);
    std::raise(signalNumber);
}

template <class Driver>
class Run {
public:
    Run()
        : m_coverage(announced())
        , m_wanted(wantedOperations())
        , m_started(std::chrono::steady_clock::now())
    {
        for (std::size_t index = 0; index < Driver::operations().size(); ++index) {
            m_wheel.insert(m_wheel.end(), Driver::operations()[index].weight, index);
            m_counters.push_back(&m_coverage.counter(nameOf(Driver::operations()[index])));
        }
    }

    void check()
    {
        rc::detail::TestParams parameters = rc::detail::configuration().testParams;
        const std::uint64_t firstSeed = parameters.seed;
        // In portions: each starts with short sequences, and a failure is found again from the seed of its portion.
        parameters.maxSuccess = 500;
        while (m_done < m_wanted) {
            const std::uint64_t doneBefore = m_done;
            currentSeed = parameters.seed;
#ifndef KO_MODEL_FEW_OPERATIONS
            std::signal(SIGSEGV, tellSequenceAndDie);
            std::signal(SIGABRT, tellSequenceAndDie);
#endif
            const auto result =
                rc::detail::checkTestable([this] { carryOut(*sequences()); }, rc::detail::TestMetadata(), parameters);
            if (!result.template is<rc::detail::SuccessResult>()) {
                std::ostringstream message;
                rc::detail::printResultMessage(result, message);
                ADD_FAILURE() << message.str() << "\nagain with RC_PARAMS=seed=" << parameters.seed << ", after "
                              << doneBefore << " operations";
                StandardError::take();
                return;
            }
            // The sequences may announce messages: what they wrote is not kept for long.
            const std::string unannounced = StandardError::endCapture();
            StandardError::startCapture();
            ASSERT_EQ(unannounced, "");
            ++parameters.seed;
            tellProgress();
        }
        summarise(firstSeed);
    }

private:
    using Steps = std::vector<ModelStep>;

    struct Mark {
        explicit Mark(const Steps& steps) { currentSteps = &steps; }
        ~Mark() { currentSteps = nullptr; }
    };

    static std::vector<std::string> announced()
    {
        std::vector<std::string> names = Driver::branches();
        for (const auto& operation : Driver::operations()) {
            names.push_back(nameOf(operation));
        }
        return names;
    }

    static std::string nameOf(const ModelOperation<Driver>& operation)
    {
        return std::string("operation ") + operation.name;
    }

    // One random number starts a sequence, a generator of a few instructions does the rest.
    rc::Gen<Steps> sequences() const
    {
        return rc::Gen<Steps>([this](const rc::Random& random, int size) {
            rc::Random seed = random;
            std::uint64_t state = seed.next();
            const auto next = [&state] {
                state += 0x9E3779B97F4A7C15U;
                std::uint64_t mixed = state;
                mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
                mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
                return mixed ^ (mixed >> 31U);
            };
            Steps steps(1 + next() % (4 * static_cast<std::uint64_t>(size) + 4));
            for (ModelStep& step : steps) {
                step.operation = m_wheel[next() % m_wheel.size()];
                step.name = Driver::operations()[step.operation].name;
                std::uint64_t numbers = next();
                for (std::uint8_t& number : step.numbers) {
                    number = static_cast<std::uint8_t>(numbers);
                    numbers >>= 8U;
                }
            }
            return rc::shrinkable::shrinkRecur(std::move(steps), [](const Steps& from) {
                return rc::seq::concat(rc::shrink::removeChunks(from), rc::shrink::eachElement(from, simplerSteps));
            });
        });
    }

    static rc::Seq<ModelStep> simplerSteps(const ModelStep& step)
    {
        Steps simpler;
        for (std::size_t index = 0; index < step.numbers.size(); ++index) {
            for (const int number : {0, step.numbers[index] / 2, step.numbers[index] - 1}) {
                if (number >= 0 && number < step.numbers[index]) {
                    simpler.push_back(step);
                    simpler.back().numbers[index] = static_cast<std::uint8_t>(number);
                }
            }
        }
        return rc::seq::fromContainer(std::move(simpler));
    }

    void carryOut(const Steps& steps)
    {
        const Mark mark(steps);
        Driver driver(m_coverage);
        for (const ModelStep& step : steps) {
            const auto& operation = Driver::operations()[step.operation];
            ++*m_counters[step.operation];
            (driver.*operation.carryOut)(step);
            driver.compare();
        }
        driver.finish();
        m_done += steps.size();
    }

    void tellProgress()
    {
        static const bool wanted = std::getenv("KOINTERACTION_MODEL_PROGRESS") != nullptr;
        const auto now = std::chrono::steady_clock::now();
        if (wanted && now - m_told > std::chrono::seconds(10)) {
            m_told = now;
            const std::chrono::duration<double> elapsed = now - m_started;
            std::cout << "  " << m_done << " of " << m_wanted << " operations, "
                      << static_cast<std::uint64_t>(static_cast<double>(m_done) / elapsed.count()) << " in a second"
                      << std::endl;
        }
    }

    void summarise(std::uint64_t seed) const
    {
        const std::vector<std::string> unseen = m_coverage.unseen();
        std::cout << m_done << " operations, seed " << seed << ", " << m_coverage.size() - unseen.size() << " of "
                  << m_coverage.size() << " kinds of operations and branches seen" << std::endl;
        if (std::getenv("KOINTERACTION_MODEL_COUNTS") != nullptr) {
            m_coverage.print(std::cout);
        }
        // A short run, for a look at one seed, need not see everything.
        if (m_wanted >= 100000) {
            std::ostringstream names;
            print(names, unseen);
            EXPECT_TRUE(unseen.empty()) << "the random sequences never reached:" << names.str();
        }
    }

    ModelCoverage m_coverage;
    std::uint64_t m_wanted;
    std::uint64_t m_done = 0;
    std::vector<std::size_t> m_wheel;
    std::vector<std::uint64_t*> m_counters; // of the operations, in m_coverage
    std::chrono::steady_clock::time_point m_started;
    std::chrono::steady_clock::time_point m_told = m_started;
};

} // namespace model

/**
 * Drives the library and a model through random sequences of operations and compares them after each.
 *
 * A driver has both sides of one sequence. It offers operations() and branches(), what the sequences are made of and
 * what its model may come across, is made with the coverage to count in, and has compare(), called after each
 * operation, and finish(), called after the last one. A difference ends the sequence with model::requireSame();
 * RapidCheck then looks for a shorter sequence with smaller numbers.
 *
 * | Variable of the environment | Meaning |
 * |---|---|
 * | `KOINTERACTION_MODEL_OPERATIONS` | how many operations at least |
 * | `RC_PARAMS` | `seed=N` for the sequences of an earlier run |
 * | `KOINTERACTION_MODEL_PROGRESS` | set: tells every ten seconds how far it is |
 * | `KOINTERACTION_MODEL_COUNTS` | set: tells at the end how often each kind of operation and branch was seen |
 */
template <class Driver>
void runModel()
{
    model::Run<Driver>().check();
}

} // namespace quon::testing
