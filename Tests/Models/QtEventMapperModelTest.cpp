// SPDX-License-Identifier: MIT
#include "QtEventMapperModel.h"
#include "ModelReactions.h"

#include <Interaction/InteractionManager.h>
#include <Interaction/QtEventMapper.h>

#include <Shortcut/koShortcut.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTranslator>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

using quon::interaction::InteractionManager;
using quon::interaction::QtEventMapper;
using quon::testing::CallLog;
using quon::testing::ModelCoverage;
using quon::testing::ModelOperation;
using quon::testing::ModelReactions;
using quon::testing::ModelStep;
using quon::testing::QtEventMapperModel;
using quon::testing::RecordingContext;
using quon::testing::model::requireSame;

// A registry of our own in place of the host's: it shows every call of the mapper.
namespace {

CallLog* registryLog = nullptr;

} // namespace

void koShortcut::addKey(const QString& group, int key, int modifiers, const QString& description)
{
    registryLog->call("koShortcut", "addKey", group.toStdString(), key, modifiers, description.toStdString());
}

void koShortcut::subKey(const QString& group, int key, int modifiers)
{
    registryLog->call("koShortcut", "subKey", group.toStdString(), key, modifiers);
}

void koShortcut::addMouseButton(const QString& group, int button, int modifiers, const QString& description)
{
    registryLog->call("koShortcut", "addMouseButton", group.toStdString(), button, modifiers,
                      description.toStdString());
}

void koShortcut::subMouseButton(const QString& group, int button, int modifiers)
{
    registryLog->call("koShortcut", "subMouseButton", group.toStdString(), button, modifiers);
}

namespace {

// Few values, so that input meets bindings often. All flags are numbers of Qt.
constexpr int meta = 0x10000000;
constexpr int keypad = 0x20000000;
constexpr int groupSwitch = 0x40000000;
const std::vector<int> modifierFlags = {
    QtEventMapperModel::shift, QtEventMapperModel::control, QtEventMapperModel::alt, meta, keypad, groupSwitch};
// What stands in a list several times is met several times as often.
const std::vector<int> bindingModifiers = {0,
                                           0,
                                           0,
                                           QtEventMapperModel::shift,
                                           QtEventMapperModel::shift,
                                           QtEventMapperModel::control,
                                           QtEventMapperModel::alt,
                                           QtEventMapperModel::shift | QtEventMapperModel::alt,
                                           QtEventMapperModel::shift | QtEventMapperModel::control,
                                           meta,
                                           QtEventMapperModel::shift | meta};
const std::vector<int> keys = {65,
                               65,
                               65,
                               65,
                               66,
                               1,
                               2,
                               QtEventMapperModel::keyShift,
                               QtEventMapperModel::keyShift,
                               QtEventMapperModel::keyControl,
                               QtEventMapperModel::keyAlt,
                               QtEventMapperModel::keyUnknown,
                               31,
                               95,
                               32,
                               0,
                               96,
                               -1};
const std::vector<int> buttons = {1, 1, 1, 2, 2, 3, 4, 0};
const std::vector<std::string> categories = {"a", "a", "a", "b", "b", "c:hint", "", "qt-key:65", "a:b:c"};
const std::vector<std::string> descriptions = {"", "described", "other"};

class GermanInteraction : public QTranslator {
public:
    bool isEmpty() const override { return false; }

    QString translate(const char* context, const char* source, const char* disambiguation, int count) const override
    {
        return std::string(context) == "QtEventMapper" && std::string(source) == "Interaction" &&
                       disambiguation == nullptr && count == -1
                   ? QStringLiteral("Interaktion")
                   : QString();
    }
};

int floorOfQuarter(int quarters)
{
    return quarters >= 0 ? quarters / 4 : -((3 - quarters) / 4);
}

/** A mapper, two managers to bind it to, and the model. */
class Driver {
public:
    using Operation = ModelOperation<Driver>;

    static const std::vector<Operation>& operations()
    {
        static const std::vector<Operation> all = {
            {"addKeyboardMapping", 10, &Driver::carryOut<&Driver::addKeyboardMapping>},
            {"addMouseMapping", 10, &Driver::carryOut<&Driver::addMouseMapping>},
            {"removeKeyboardMapping", 3, &Driver::carryOut<&Driver::removeKeyboardMapping>},
            {"removeKeyboardMapping of any category", 2,
             &Driver::carryOut<&Driver::removeKeyboardMappingOfAnyCategory>},
            {"removeMouseMapping", 3, &Driver::carryOut<&Driver::removeMouseMapping>},
            {"removeMouseMapping of any category", 2, &Driver::carryOut<&Driver::removeMouseMappingOfAnyCategory>},
            {"setInteractionManager", 4, &Driver::carryOut<&Driver::setInteractionManager>},
            {"setPresenterMode", 3, &Driver::setPresenterMode},
            {"mousePressed", 12, &Driver::carryOut<&Driver::mousePressed>},
            {"mouseReleased", 10, &Driver::carryOut<&Driver::mouseReleased>},
            {"mouseMoved", 8, &Driver::carryOut<&Driver::mouseMoved>},
            {"hoverStopped", 3, &Driver::carryOut<&Driver::hoverStopped>},
            {"keyPressed", 16, &Driver::carryOut<&Driver::keyPressed>},
            {"keyReleased", 14, &Driver::carryOut<&Driver::keyReleased>},
            {"resetEvents", 3, &Driver::carryOut<&Driver::resetEvents>},
            {"qtKeyEventToString", 2, &Driver::qtKeyEventToString},
            {"other answers", 4, &Driver::changeAnswers},
            {"other language", 1, &Driver::changeLanguage},
            {"copy", 1, &Driver::copy},
            {"reaction from inside an event", 6, &Driver::react}};
        return all;
    }

    static std::vector<std::string> branches()
    {
        std::vector<std::string> names = QtEventMapperModel::branches();
        names.emplace_back("reaction from inside");
        return names;
    }

    explicit Driver(ModelCoverage& coverage)
        : m_coverage(coverage)
        , m_model(makeSurroundings(), coverage)
    {
        registryLog = &m_log;
        for (std::size_t index = 0; index < m_managers.size(); ++index) {
            m_managers[index].addContext(&m_contexts[index]);
            m_contexts[index].setHook([this, index](const std::string& operation) { answer(index, operation); });
        }
        m_log.clear();
        bindTo(0)(true);
        bindTo(0)(false);
    }

    ~Driver()
    {
        QCoreApplication::removeTranslator(&m_translator);
        registryLog = nullptr;
    }

    void compare()
    {
        if (m_log.calls() != m_expectedLog.calls()) {
            requireSame("the calls", m_log.calls(), m_expectedLog.calls());
        }
        m_log.clear();
        m_expectedLog.clear();
    }

    void finish()
    {
        // Nothing else shows what is still pending.
        m_pending.clear();
        m_reactions.carryOut(bindTo(1));
        m_reactions.carryOut(reset());
        compare();
    }

private:
    using Action = ModelReactions::Action;

    // Both sides ask the same thing: what is consumed depends on the event alone, until the answers change.
    bool isConsumed(const std::string& category, const std::string& verb) const
    {
        return std::hash<std::string>()(category + "/" + verb + "/" + std::to_string(m_answers)) % 3 == 0;
    }

    void answer(std::size_t index, const std::string& operation)
    {
        if (operation != "triggerEvent") {
            return;
        }
        // The entry reads "context.triggerEvent(category, verb)".
        const std::string call = m_log.calls().back();
        const std::size_t start = call.find('(') + 1;
        const std::size_t comma = call.rfind(", ");
        m_reactions.onLibraryCall();
        // Last: what happened from inside had answers of its own.
        m_contexts[index].setConsuming(
            isConsumed(call.substr(start, comma - start), call.substr(comma + 2, call.size() - comma - 3)));
    }

    QtEventMapperModel::Surroundings makeSurroundings()
    {
        QtEventMapperModel::Surroundings surroundings;
        surroundings.triggerEvent = [this](const std::string& category, const std::string& verb) {
            m_expectedLog.call(contextName(), "triggerEvent", category, verb);
            m_reactions.onModelCall([this] { return decide(); });
            return isConsumed(category, verb);
        };
        surroundings.pointerMoved = [this](int x, int y) { m_expectedLog.call(contextName(), "pointerMoved", x, y); };
        surroundings.isPresenting = [this] { return m_presenting[m_bound]; };
        surroundings.addKey = [this](int code, int modifiers, const std::string& description) {
            m_expectedLog.call("koShortcut", "addKey", group(), code, modifiers, description);
        };
        surroundings.subKey = [this](int code, int modifiers) {
            m_expectedLog.call("koShortcut", "subKey", group(), code, modifiers);
        };
        surroundings.addMouseButton = [this](int code, int modifiers, const std::string& description) {
            m_expectedLog.call("koShortcut", "addMouseButton", group(), code, modifiers, description);
        };
        surroundings.subMouseButton = [this](int code, int modifiers) {
            m_expectedLog.call("koShortcut", "subMouseButton", group(), code, modifiers);
        };
        return surroundings;
    }

    // What a context does from inside an event: any operation of the mapper.
    Action decide()
    {
        if (m_pending.empty() || m_pending.back().pick(5, 4) > m_waited++) {
            return {};
        }
        m_waited = 0;
        const ModelStep step = m_pending.back();
        m_pending.pop_back();
        m_coverage.see("reaction from inside");
        static const std::array<Action (Driver::*)(const ModelStep&), 16> kinds = {
            &Driver::addKeyboardMapping,    &Driver::addMouseMapping,
            &Driver::removeKeyboardMapping, &Driver::removeKeyboardMappingOfAnyCategory,
            &Driver::removeMouseMapping,    &Driver::removeMouseMappingOfAnyCategory,
            &Driver::setInteractionManager, &Driver::mousePressed,
            &Driver::mouseReleased,         &Driver::mouseMoved,
            &Driver::hoverStopped,          &Driver::keyPressed,
            &Driver::keyReleased,           &Driver::resetEvents,
            &Driver::resetEvents,           &Driver::keyPressed};
        return (this->*kinds[step.pick(4, kinds.size())])(step);
    }

    template <Action (Driver::*actionOf)(const ModelStep&)>
    void carryOut(const ModelStep& step)
    {
        m_reactions.carryOut((this->*actionOf)(step));
    }

    // The side that an action is for notes what it got.
    void noteResult(bool isLibrary, bool result)
    {
        (isLibrary ? m_log : m_expectedLog).call("mapper", "returned", result);
    }

    std::string contextName() const { return m_bound == 0 ? "first" : "second"; }
    std::string group() const { return m_german ? "Interaktion" : "Interaction"; }

    static QtEventMapperModel::Binding bindingOf(const std::vector<int>& codes, const ModelStep& step)
    {
        return {codes[step.pick(0, codes.size())], bindingModifiers[step.pick(1, bindingModifiers.size())],
                categories[step.pick(2, categories.size())]};
    }

    Action addKeyboardMapping(const ModelStep& step)
    {
        const QtEventMapperModel::Binding binding = bindingOf(keys, step);
        const std::string& description = descriptions[step.pick(3, descriptions.size())];
        return [=](bool isLibrary) {
            isLibrary ? m_mapper->addKeyboardMapping(binding.code, binding.modifiers, binding.category,
                                                     QString::fromStdString(description))
                      : m_model.addKeyboardMapping(binding, description);
        };
    }

    Action addMouseMapping(const ModelStep& step)
    {
        const QtEventMapperModel::Binding binding = bindingOf(buttons, step);
        const std::string& description = descriptions[step.pick(3, descriptions.size())];
        return [=](bool isLibrary) {
            isLibrary ? m_mapper->addMouseMapping(static_cast<Qt::MouseButton>(binding.code), binding.modifiers,
                                                  binding.category, QString::fromStdString(description))
                      : m_model.addMouseMapping(binding, description);
        };
    }

    Action removeKeyboardMapping(const ModelStep& step)
    {
        const QtEventMapperModel::Binding binding = bindingOf(keys, step);
        return [=](bool isLibrary) {
            isLibrary ? m_mapper->removeKeyboardMapping(binding.code, binding.modifiers, binding.category)
                      : m_model.removeKeyboardMapping(binding.code, binding.modifiers, &binding.category);
        };
    }

    Action removeKeyboardMappingOfAnyCategory(const ModelStep& step)
    {
        const QtEventMapperModel::Binding binding = bindingOf(keys, step);
        return [=](bool isLibrary) {
            isLibrary ? m_mapper->removeKeyboardMapping(binding.code, binding.modifiers)
                      : m_model.removeKeyboardMapping(binding.code, binding.modifiers, nullptr);
        };
    }

    Action removeMouseMapping(const ModelStep& step)
    {
        const QtEventMapperModel::Binding binding = bindingOf(buttons, step);
        return [=](bool isLibrary) {
            isLibrary ? m_mapper->removeMouseMapping(static_cast<Qt::MouseButton>(binding.code), binding.modifiers,
                                                     binding.category)
                      : m_model.removeMouseMapping(binding.code, binding.modifiers, &binding.category);
        };
    }

    Action removeMouseMappingOfAnyCategory(const ModelStep& step)
    {
        const QtEventMapperModel::Binding binding = bindingOf(buttons, step);
        return [=](bool isLibrary) {
            isLibrary ? m_mapper->removeMouseMapping(static_cast<Qt::MouseButton>(binding.code), binding.modifiers)
                      : m_model.removeMouseMapping(binding.code, binding.modifiers, nullptr);
        };
    }

    // 2: to none.
    Action bindTo(std::size_t manager)
    {
        return [=](bool isLibrary) {
            const bool isBound = manager < m_managers.size();
            if (isLibrary) {
                m_mapper->setInteractionManager(isBound ? &m_managers[manager] : nullptr);
            } else {
                m_bound = manager;
                m_model.setBound(isBound);
            }
        };
    }

    Action setInteractionManager(const ModelStep& step)
    {
        return bindTo(step.isRare(0, 50) ? m_managers.size() : step.pick(0, 2));
    }

    void setPresenterMode(const ModelStep& step)
    {
        const std::size_t manager = step.pick(0, m_managers.size());
        m_presenting[manager] = step.pick(1, 4) == 3;
        m_managers[manager].setPresenterMode(m_presenting[manager]);
    }

    struct Pointer {
        int xInQuarters;
        int yInQuarters;

        QPointF exact() const { return {xInQuarters / 4.0, yInQuarters / 4.0}; }
        // Halves go up.
        int x() const { return floorOfQuarter(xInQuarters + 2); }
        int y() const { return floorOfQuarter(yInQuarters + 2); }
    };

    static Pointer pointerOf(const ModelStep& step)
    {
        return {static_cast<int>(step.pick(3, 16)) - 7, static_cast<int>(step.pick(4, 16)) - 8};
    }

    // Mostly those that bindings ask for, sometimes any.
    static int modifiersOf(const ModelStep& step)
    {
        if (step.numbers[1] < 160) {
            return bindingModifiers[step.pick(1, bindingModifiers.size())];
        }
        int modifiers = 0;
        for (std::size_t bit = 0; bit < modifierFlags.size(); ++bit) {
            modifiers |= (step.numbers[1] >> bit) % 2 == 1 ? modifierFlags[bit] : 0;
        }
        return modifiers;
    }

    static QMouseEvent mouseEvent(QEvent::Type type, const Pointer& pointer, int button, int held, int modifiers)
    {
        return QMouseEvent(type, pointer.exact(), pointer.exact() + QPointF(100, 200),
                           pointer.exact() + QPointF(1000, 2000), static_cast<Qt::MouseButton>(button),
                           Qt::MouseButtons(held), Qt::KeyboardModifiers(modifiers));
    }

    Action mousePressed(const ModelStep& step)
    {
        return [=](bool isLibrary) {
            const int button = buttons[step.pick(0, buttons.size())];
            const int others = buttons[step.pick(2, buttons.size())];
            const Pointer pointer = pointerOf(step);
            const QMouseEvent event =
                mouseEvent(QEvent::MouseButtonPress, pointer, button, button | others, modifiersOf(step));
            noteResult(isLibrary, isLibrary
                                      ? m_mapper->mousePressed(&event)
                                      : m_model.mousePressed(pointer.x(), pointer.y(), button, modifiersOf(step)));
        };
    }

    Action mouseReleased(const ModelStep& step)
    {
        return [=](bool isLibrary) {
            const int button = buttons[step.pick(0, buttons.size())];
            const int others = buttons[step.pick(2, buttons.size())];
            const Pointer pointer = pointerOf(step);
            const QMouseEvent event =
                mouseEvent(QEvent::MouseButtonRelease, pointer, button, others, modifiersOf(step));
            noteResult(isLibrary, isLibrary ? m_mapper->mouseReleased(&event)
                                            : m_model.mouseReleased(pointer.x(), pointer.y(), button));
        };
    }

    Action mouseMoved(const ModelStep& step)
    {
        return [=](bool isLibrary) {
            const int held = buttons[step.pick(0, buttons.size())];
            const int button = buttons[step.pick(2, buttons.size())];
            const bool dragging = step.pick(5, 2) == 1;
            const Pointer pointer = pointerOf(step);
            const QMouseEvent event = mouseEvent(QEvent::MouseMove, pointer, button, held, modifiersOf(step));
            noteResult(isLibrary,
                       isLibrary ? m_mapper->mouseMoved(&event, dragging)
                                 : m_model.mouseMoved(pointer.x(), pointer.y(), held, modifiersOf(step), dragging));
        };
    }

    Action hoverStopped(const ModelStep& step)
    {
        return [=](bool isLibrary) {
            const QEvent event(QEvent::Leave);
            noteResult(isLibrary, isLibrary ? m_mapper->hoverStopped(step.pick(0, 2) == 0 ? &event : nullptr)
                                            : m_model.hoverStopped());
        };
    }

    Action keyPressed(const ModelStep& step)
    {
        return [=](bool isLibrary) {
            const int key = keys[step.pick(0, keys.size())];
            const bool isRepeat = step.isRare(2, 25);
            const QKeyEvent event(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiersOf(step)), QString(), isRepeat);
            // Of a modifier key itself Qt reports other flags than those that the event was made with.
            const int reported = static_cast<int>(event.modifiers());
            noteResult(isLibrary,
                       isLibrary ? m_mapper->keyPressed(&event) : m_model.keyPressed(key, reported, isRepeat));
        };
    }

    Action keyReleased(const ModelStep& step)
    {
        return [=](bool isLibrary) {
            const int key = keys[step.pick(0, keys.size())];
            const bool isRepeat = step.isRare(2, 25);
            const QKeyEvent event(QEvent::KeyRelease, key, Qt::KeyboardModifiers(modifiersOf(step)), QString(),
                                  isRepeat);
            const int reported = static_cast<int>(event.modifiers());
            noteResult(isLibrary,
                       isLibrary ? m_mapper->keyReleased(&event) : m_model.keyReleased(key, reported, isRepeat));
        };
    }

    Action reset()
    {
        return [=](bool isLibrary) { isLibrary ? m_mapper->resetEvents() : m_model.resetEvents(); };
    }

    // Not to be called while there is something to send and nobody to send it to; the model is asked before both.
    Action resetEvents(const ModelStep&)
    {
        return m_model.isBound() || !m_model.isPending() ? reset() : [](bool) {};
    }

    void qtKeyEventToString(const ModelStep& step)
    {
        const int key = keys[step.pick(0, keys.size())];
        requireSame("the text", QtEventMapper::qtKeyEventToString(key, modifiersOf(step)),
                    QtEventMapperModel::toText(key, modifiersOf(step)));
    }

    void changeAnswers(const ModelStep& step) { m_answers = step.numbers[0]; }

    void changeLanguage(const ModelStep& step)
    {
        QCoreApplication::removeTranslator(&m_translator);
        m_german = step.pick(0, 2) == 1;
        if (m_german) {
            QCoreApplication::installTranslator(&m_translator);
        }
    }

    // That mappers can be copied is this library's own promise.
    void copy(const ModelStep&) { m_mapper = std::make_unique<QtEventMapper>(*m_mapper); }

    void react(const ModelStep& step)
    {
        if (m_pending.size() < 3) {
            m_pending.push_back(step);
        }
    }

    ModelCoverage& m_coverage;
    CallLog m_log;
    CallLog m_expectedLog;
    std::array<InteractionManager, 2> m_managers;
    std::array<RecordingContext, 2> m_contexts{RecordingContext(m_log, "first"), RecordingContext(m_log, "second")};
    std::array<bool, 3> m_presenting = {false, false, false};
    GermanInteraction m_translator;
    bool m_german = false;
    int m_answers = 0;
    std::size_t m_bound = 0;
    ModelReactions m_reactions;
    std::vector<ModelStep> m_pending;
    std::size_t m_waited = 0;
    std::unique_ptr<QtEventMapper> m_mapper = std::make_unique<QtEventMapper>();
    QtEventMapperModel m_model;
};

TEST(QtEventMapperModelTest, AnySequenceOfCallsMatchesTheModel)
{
    int argumentCount = 1;
    std::string name = "QtEventMapperModelTest";
    char* arguments[] = {name.data(), nullptr};
    const QCoreApplication application(argumentCount, arguments);

    quon::testing::runModel<Driver>();
}

} // namespace
