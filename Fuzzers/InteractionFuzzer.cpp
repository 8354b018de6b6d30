// SPDX-License-Identifier: MIT
//
// The bytes are operations of mappers, managers, contexts, tools and pickers together, from outside and from inside the
// calls that they make of each other. Left out is what the headers forbid: a context never removes itself inside a
// walk, belongs to one manager at a time and is destroyed outside of all calls; mappers are not assigned to from inside
// their events, and not reset without a manager.
#include "Support/ByteReader.h"
#include "Support/Fuzzer.h"
#include "Support/Require.h"

#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/LazyPicker.h>
#include <Interaction/QtEventMapper.h>
#include <Interaction/ToolInteractionContext.h>
#include <InteractionTesting/SceneBuilder.h>
#include <Notification/NotificationManager.h>
#include <Shortcut/koShortcut.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGThread.h>

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointF>
#include <QString>
#include <Qt>

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using quon::fuzzing::ByteReader;
using quon::fuzzing::require;
using quon::interaction::AbstractInteractionContext;
using quon::interaction::AbstractInteractionTool;
using quon::interaction::InteractionContext;
using quon::interaction::InteractionEvent;
using quon::interaction::InteractionManager;
using quon::interaction::LazyPicker;
using quon::interaction::MultimodeInteractionContext;
using quon::interaction::Picker;
using quon::interaction::QtEventMapper;
using quon::interaction::ToolInteractionContext;
using quon::notification::NotificationManager;
using quon::testing::NodeRef;

constexpr std::size_t managerCount = 2;
constexpr std::size_t mapperCount = 2;
constexpr std::size_t contextCount = 6;
constexpr std::size_t toolCount = 3;
constexpr std::size_t pickerCount = 2;
constexpr int deepestReaction = 4;

const std::array<std::string, 12> categories = {
    "tool", "tool:select", "tool:b:c", "mode:a", "mode:b", "mode", "mode:a:b:", "", ":", "x", "tool:", "qt-key:65"};
const std::array<std::string, 10> verbs = {"start",     "stop",  "trigger", "process", "hover",
                                           "stopHover", "press", "release", "",        "start:stop"};
const std::array<std::string, 4> modes = {"a", "b", "", "b:"};
const std::array<int, 16> keys = {Qt::Key_A,
                                  Qt::Key_B,
                                  Qt::Key_Escape,
                                  Qt::Key_Shift,
                                  Qt::Key_Control,
                                  Qt::Key_Alt,
                                  Qt::Key_Meta,
                                  Qt::Key_unknown,
                                  0,
                                  1,
                                  31,
                                  32,
                                  95,
                                  -1,
                                  INT_MIN,
                                  INT_MAX};
const std::array<int, 8> modifierSets = {Qt::NoModifier,
                                         Qt::ShiftModifier,
                                         Qt::ControlModifier,
                                         Qt::AltModifier,
                                         Qt::ShiftModifier | Qt::AltModifier,
                                         Qt::MetaModifier,
                                         Qt::KeypadModifier | Qt::ControlModifier,
                                         Qt::GroupSwitchModifier};
const std::array<int, 7> buttons = {Qt::LeftButton,
                                    Qt::RightButton,
                                    Qt::MiddleButton,
                                    Qt::LeftButton | Qt::RightButton,
                                    Qt::NoButton,
                                    static_cast<int>(Qt::ExtraButton24),
                                    -1};
const std::array<int, 7> positions = {0, -200, 100, 200, 1, INT_MIN, INT_MAX};
const std::array<std::string, 4> descriptions = {"", "one", "two", "\xFF\xC0 and more"};

class World;

/** Knows from the outside whether a context or tool shows its description. */
class ShownText {
public:
    explicit ShownText(World& world);

    /** Carries out @p call, which may show, change or remove this text and calls nobody else. */
    template <class Call>
    void follow(const Call& call);

    void setGone() { m_shown = false; }
    bool isShown() const { return m_shown; }

private:
    World& m_world;
    bool m_shown = false;
};

/** What the rest of the program needs to know of a context, whatever its class. */
class Participant {
public:
    explicit Participant(World& world)
        : m_text(world)
    {}

    virtual ~Participant() = default;

    virtual AbstractInteractionContext& context() = 0;
    virtual MultimodeInteractionContext* multimode() { return nullptr; }
    virtual ToolInteractionContext* toolContext() { return nullptr; }

    void describe(const std::string& text);

    /** How often the context is in a call from which it must not remove itself. */
    int walks() const { return m_walks; }

    const ShownText& text() const { return m_text; }

    int heardCameras = 0;
    int moves = 0; ///< additions and removals of this context that are under way
    const InteractionManager* movedBy = nullptr;
    bool wasTangled = false; ///< whether one of them began inside another

protected:
    ShownText m_text;
    int m_walks = 0;
};

/** A tool that does anything in any of its calls. */
class FuzzedTool final : public AbstractInteractionTool {
public:
    explicit FuzzedTool(World& world)
        : m_world(world)
        , m_text(world)
    {}

    void describe(const std::string& text, bool atOnce);

    const ShownText& text() const { return m_text; }

    bool setToolMode(ToolInteractionContext* context, const std::string& mode) override;
    void activateTool(ToolInteractionContext* context) override;
    void deactivateTool(ToolInteractionContext* context) override;
    bool startTool(ToolInteractionContext* context, const std::string& hint) override;
    bool processTool(ToolInteractionContext* context, const std::string& hint) override;
    bool stopTool(ToolInteractionContext* context, const std::string& hint) override;
    bool triggerTool(ToolInteractionContext* context, const std::string& hint) override;
    bool hoverTool(ToolInteractionContext* context, const std::string& hint) override;
    bool stopHoverTool(ToolInteractionContext* context, const std::string& hint) override;

private:
    World& m_world;
    ShownText m_text;
};

/** A picker whose queries answer with anything. */
class FuzzedPicker final : public LazyPicker {
public:
    explicit FuzzedPicker(World& world)
        : m_world(world)
    {}

    void setPointer(const osg::Pnt2f& position) override { m_pointer = position; }
    osg::Pnt2f getPointer() const override { return m_pointer; }
    void setCamera(const osg::Matrix& camera) override { m_camera = camera; }
    osg::Matrix getCamera() const override { return m_camera; }

    /** Asks one of the questions, and the same once more, which a cache that is valid answers alike. */
    void query(std::size_t kind);

protected:
    bool isCacheValid() override;
    void computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                       osg::MaterialPtr& material, osg::SelectionOption* option) override;
    void computePickedNodes(std::vector<osg::NodePtr>* nodes, osg::SelectionOption* option) override;
    void computeMultiPicked(MultiMode mode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                            std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) override;
    bool updateSelectionOption(osg::SelectionOption*& option) override;

private:
    World& m_world;
    osg::Pnt2f m_pointer;
    osg::Matrix m_camera;
    int m_queries = 0;
};

/** Takes all events while it is on top, and remembers them. */
class Observer final : public AbstractInteractionContext {
public:
    using Heard = std::vector<std::pair<std::string, std::string>>;

    Observer()
        : AbstractInteractionContext(Overlay)
    {}

    Heard take() { return std::exchange(m_heard, {}); }

    bool triggerEvent(InteractionManager*, const InteractionEvent& event) override
    {
        m_heard.emplace_back(event.getCategory(), event.getEvent());
        return true;
    }

private:
    Heard m_heard;
};

/** Everything that takes part, and what may be done to it. */
class World {
public:
    explicit World(ByteReader& bytes)
        : m_bytes(bytes)
        , m_containers(osg::FieldContainerFactory::the()->getLiveContainerCount())
        , m_notifications(NotificationManager::getInstance()->getNotifications().size())
    {
        m_nodes[0] = quon::testing::makeNode(osg::Group::create());
        m_nodes[1] = quon::testing::makeNode(osg::Group::create());
        for (std::size_t index = 0; index < mapperCount; ++index) {
            bind(index, index + 1);
        }
        for (std::size_t index = 0; index < contextCount; ++index) {
            makeContext(index);
        }
        for (std::unique_ptr<FuzzedTool>& tool : m_tools) {
            tool = std::make_unique<FuzzedTool>(*this);
        }
        for (std::unique_ptr<FuzzedPicker>& picker : m_pickers) {
            picker = std::make_unique<FuzzedPicker>(*this);
        }
    }

    World(const World&) = delete;
    World& operator=(const World&) = delete;

    void run()
    {
        while (!m_bytes.isEmpty()) {
            operate();
            requireShownTexts();
        }
    }

    /** Brings everything to rest and looks whether all books are as they should be. */
    void finish()
    {
        m_quiet = true;
        for (std::size_t index = 0; index < managerCount; ++index) {
            while (m_enableCounts[index] != 0) {
                m_enableCounts[index] < 0 ? enable(index) : disable(index);
            }
            m_managers[index].setPresenterMode(false);
        }
        requireStacks();
        for (QtEventMapper& mapper : m_mappers) {
            requirePairs(mapper);
        }
        takeApart();
    }

    /** Does what the next bytes say from inside a call, or nothing. */
    bool react()
    {
        if (m_quiet || m_bytes.isEmpty()) {
            return false;
        }
        const std::uint8_t byte = m_bytes.takeByte();
        if (byte >= 128 && m_depth < deepestReaction) {
            ++m_depth;
            operate();
            --m_depth;
        }
        return (byte & 1U) != 0;
    }

    /** The notification area changed beside the text that it belongs to: one that was shown stays for good. */
    void leaveText() { ++m_untracked; }

    ByteReader& bytes() { return m_bytes; }
    osg::NodePtr pickNode() { return m_bytes.takeFlag() ? m_nodes[m_bytes.pick(2)].get() : osg::NodePtr(); }

private:
    void operate()
    {
        static const std::array<void (World::*)(), 32> operations = {
            &World::addKey,       &World::addKey,     &World::removeKey,  &World::addButton,      &World::addButton,
            &World::removeButton, &World::press,      &World::press,      &World::release,        &World::move,
            &World::stopHover,    &World::pressKey,   &World::pressKey,   &World::releaseKey,     &World::reset,
            &World::rebind,       &World::addContext, &World::addContext, &World::raiseContext,   &World::removeContext,
            &World::balance,      &World::present,    &World::moveAll,    &World::trigger,        &World::giveTool,
            &World::givePicker,   &World::changeMode, &World::describe,   &World::changeSettings, &World::pick,
            &World::setRoot,      &World::makeAnew};
        (this->*m_bytes.pickOf(operations))();
    }

    // Mappers.

    QtEventMapper& mapper() { return m_mappers[m_bytes.pick(mapperCount)]; }

    int number(const int common) { return common == -1 ? m_bytes.take<int>() : common; }
    int key() { return number(m_bytes.pickOf(keys)); }
    int modifiers() { return m_bytes.pick(16) == 15 ? m_bytes.take<int>() : m_bytes.pickOf(modifierSets); }
    Qt::KeyboardModifiers heldModifiers() { return Qt::KeyboardModifiers(QFlag(m_bytes.pickOf(modifierSets))); }
    Qt::MouseButton button() { return static_cast<Qt::MouseButton>(number(m_bytes.pickOf(buttons))); }
    QString description() { return QString::fromStdString(m_bytes.pickOf(descriptions)); }

    std::string category() { return m_bytes.pick(16) == 15 ? m_bytes.takeText(12) : m_bytes.pickOf(categories); }

    QPointF place()
    {
        // As far as a widget reaches, and much further; but what Qt cannot round to whole pixels is no place.
        const double scale = m_bytes.pick(8) == 7 ? 32768 : 0.125;
        const double x = m_bytes.take<std::int16_t>();
        return QPointF(x * scale, m_bytes.take<std::int16_t>() * scale);
    }

    QMouseEvent mouseEvent(const QEvent::Type type)
    {
        const QPointF position = place();
        const Qt::MouseButton changed = type == QEvent::MouseMove ? Qt::NoButton : button();
        const auto held = Qt::MouseButtons(QFlag(m_bytes.pickOf(buttons)));
        return QMouseEvent(type, position, position, position, changed, held, heldModifiers());
    }

    QKeyEvent keyEvent(const QEvent::Type type)
    {
        const int pressed = key();
        const bool isRepeated = m_bytes.pick(16) == 15;
        return QKeyEvent(type, pressed, heldModifiers(), QString(), isRepeated);
    }

    // A few are enough, and each input is carried out sooner.
    static void remember(std::set<std::pair<int, int>>& bound, const int code, const int modifiers)
    {
        if (bound.size() < 4) {
            bound.insert({code, modifiers});
        }
    }

    void addKey()
    {
        QtEventMapper& target = mapper();
        const int code = key();
        const int held = modifiers();
        target.addKeyboardMapping(code, held, category(), description());
        remember(m_boundKeys, code, held);
    }

    void removeKey()
    {
        QtEventMapper& target = mapper();
        const int code = key();
        const int held = modifiers();
        if (m_bytes.takeFlag()) {
            target.removeKeyboardMapping(code, held);
        } else {
            target.removeKeyboardMapping(code, held, category());
        }
    }

    void addButton()
    {
        QtEventMapper& target = mapper();
        const Qt::MouseButton code = button();
        const int held = modifiers();
        target.addMouseMapping(code, held, category(), description());
        remember(m_boundButtons, static_cast<int>(code), held);
    }

    void removeButton()
    {
        QtEventMapper& target = mapper();
        const Qt::MouseButton code = button();
        const int held = modifiers();
        if (m_bytes.takeFlag()) {
            target.removeMouseMapping(code, held);
        } else {
            target.removeMouseMapping(code, held, category());
        }
    }

    void press()
    {
        QtEventMapper& target = mapper();
        const QMouseEvent event = mouseEvent(QEvent::MouseButtonPress);
        target.mousePressed(&event);
    }

    void release()
    {
        QtEventMapper& target = mapper();
        const QMouseEvent event = mouseEvent(QEvent::MouseButtonRelease);
        target.mouseReleased(&event);
    }

    void move()
    {
        QtEventMapper& target = mapper();
        const bool isDragging = m_bytes.takeFlag();
        const QMouseEvent event = mouseEvent(QEvent::MouseMove);
        target.mouseMoved(&event, isDragging);
    }

    void stopHover()
    {
        const QEvent event(QEvent::Leave);
        mapper().hoverStopped(m_bytes.takeFlag() ? &event : nullptr);
    }

    void pressKey()
    {
        QtEventMapper& target = mapper();
        const QKeyEvent event = keyEvent(QEvent::KeyPress);
        target.keyPressed(&event);
        QtEventMapper::qtKeyEventToString(event.key(), static_cast<int>(event.modifiers()));
    }

    void releaseKey()
    {
        QtEventMapper& target = mapper();
        const QKeyEvent event = keyEvent(QEvent::KeyRelease);
        target.keyReleased(&event);
    }

    void reset()
    {
        const std::size_t index = m_bytes.pick(mapperCount);
        if (m_bound[index] != 0) {
            m_mappers[index].resetEvents();
        }
    }

    // 0 is no manager.
    void bind(const std::size_t index, const std::size_t manager)
    {
        m_bound[index] = manager;
        m_mappers[index].setInteractionManager(manager == 0 ? nullptr : &m_managers[manager - 1]);
    }

    void rebind()
    {
        const std::size_t index = m_bytes.pick(mapperCount);
        bind(index, m_bytes.pick(managerCount + 1));
    }

    // Managers and their stacks.

    std::size_t managerIndex() { return m_bytes.pick(managerCount); }
    Participant& participant() { return *m_contexts[m_bytes.pick(contextCount)]; }

    template <class Call>
    static void whileMoving(Participant& moved, const InteractionManager& manager, const Call& call)
    {
        moved.wasTangled = moved.wasTangled || moved.moves > 0;
        const InteractionManager* const outer = std::exchange(moved.movedBy, &manager);
        ++moved.moves;
        call();
        --moved.moves;
        moved.movedBy = outer;
    }

    void addContext()
    {
        InteractionManager& manager = m_managers[managerIndex()];
        Participant& added = participant();
        const InteractionManager* const present = added.context().getInteractionManager();
        // While it is on its way into a stack, or out of one, that is where it belongs.
        const bool isFree = added.moves == 0 || added.movedBy == &manager;
        if ((present == nullptr && isFree) || present == &manager) {
            whileMoving(added, manager, [&] { manager.addContext(&added.context()); });
        }
    }

    void raiseContext()
    {
        InteractionManager& manager = m_managers[managerIndex()];
        Participant& raised = participant();
        whileMoving(raised, manager, [&] { manager.raiseContext(&raised.context()); });
    }

    void removeContext()
    {
        InteractionManager& manager = m_managers[managerIndex()];
        Participant& removed = participant();
        if (removed.walks() == 0) {
            whileMoving(removed, manager, [&] { manager.removeContext(&removed.context()); });
        }
    }

    void enable(const std::size_t index)
    {
        ++m_enableCounts[index];
        m_managers[index].enable();
    }

    void disable(const std::size_t index)
    {
        --m_enableCounts[index];
        m_managers[index].disable();
    }

    void balance()
    {
        const std::size_t index = managerIndex();
        m_bytes.takeFlag() ? enable(index) : disable(index);
    }

    void present()
    {
        InteractionManager& manager = m_managers[managerIndex()];
        manager.setPresenterMode(m_bytes.takeFlag());
    }

    void moveAll()
    {
        InteractionManager& manager = m_managers[managerIndex()];
        if (m_bytes.takeFlag()) {
            const auto x = m_bytes.take<float>();
            manager.pointerMoved(osg::Pnt2f(x, m_bytes.take<float>()));
        } else {
            osg::Matrix camera;
            const auto row = static_cast<osg::UInt32>(m_bytes.pick(4));
            camera[row][3] = m_bytes.take<float>();
            manager.cameraMoved(camera);
        }
    }

    void trigger()
    {
        InteractionManager& manager = m_managers[managerIndex()];
        const std::string target = category();
        manager.triggerEvent(InteractionEvent(target, m_bytes.pickOf(verbs)));
    }

    void setRoot() { m_managers[managerIndex()].setVisualisationRoot(pickNode()); }

    // Contexts, tools and pickers.

    void giveTool()
    {
        ToolInteractionContext* const target = participant().toolContext();
        const std::size_t index = m_bytes.pick(toolCount + 1);
        if (target != nullptr) {
            FuzzedTool* const tool = index == toolCount ? nullptr : m_tools[index].get();
            m_toolChanges += m_depth > 0 ? 1 : 0;
            target->setTool(tool);
        }
    }

    void givePicker()
    {
        ToolInteractionContext* const target = participant().toolContext();
        const std::size_t index = m_bytes.pick(pickerCount + 1);
        if (target != nullptr) {
            target->setPicker(index == pickerCount ? nullptr : m_pickers[index].get());
        }
    }

    void changeMode()
    {
        MultimodeInteractionContext* const target = participant().multimode();
        const bool isStarted = m_bytes.takeFlag();
        const std::string& mode = m_bytes.pickOf(modes);
        if (target != nullptr) {
            isStarted ? target->startMode(mode) : target->stopMode(mode);
        }
    }

    void describe()
    {
        const std::size_t kind = m_bytes.pick(3);
        const std::string text = m_bytes.pickOf(descriptions);
        if (kind == 0) {
            participant().describe(text);
        } else {
            m_tools[m_bytes.pick(toolCount)]->describe(text, kind == 1);
        }
    }

    void changeSettings()
    {
        Participant& target = participant();
        const std::size_t kind = m_bytes.pick(4);
        if (kind < 2) {
            target.context().setPreferredPosition(
                static_cast<InteractionContext::PreferredPosition>(m_bytes.pickOf(positions)));
        } else if (kind == 2 && target.multimode() != nullptr) {
            target.multimode()->setModeCategory(category());
        } else if (target.toolContext() != nullptr) {
            target.toolContext()->setToolCategory(category());
        }
    }

    void pick()
    {
        FuzzedPicker& picker = *m_pickers[m_bytes.pick(pickerCount)];
        switch (m_bytes.pick(10)) {
        case 0:
            picker.invalidate();
            break;
        case 1:
            picker.setRoot(pickNode());
            break;
        case 2:
            picker.setSelectionRegion(m_bytes.take<int>());
            break;
        case 3:
            picker.setMaterialLayerEvaluationEnabled(m_bytes.takeFlag());
            break;
        case 4:
            picker.setTransparencyEvaluationEnabled(m_bytes.takeFlag());
            break;
        case 5:
            picker.getPickedNodes(nullptr);
            break;
        default:
            picker.query(m_bytes.pick(8));
            break;
        }
    }

    void makeContext(std::size_t index);

    // From outside of all calls: nothing that takes part is destroyed or assigned to under its own feet.
    void makeAnew()
    {
        const std::size_t kind = m_bytes.pick(4);
        if (m_depth > 0) {
            return;
        }
        if (kind == 0) {
            // The other end of the starts is gone: its bindings come from the other mapper.
            m_mappers[0] = m_mappers[1];
            m_bound[0] = m_bound[1];
        } else if (kind == 1) {
            const std::size_t index = m_bytes.pick(contextCount);
            dismiss(*m_contexts[index]);
            makeContext(index);
        } else if (kind == 2) {
            const std::size_t index = m_bytes.pick(toolCount);
            const bool wasQuiet = std::exchange(m_quiet, true);
            for (const std::unique_ptr<Participant>& each : m_contexts) {
                if (each->toolContext() != nullptr && each->toolContext()->getTool() == m_tools[index].get()) {
                    each->toolContext()->setTool(nullptr);
                }
            }
            m_quiet = wasQuiet;
            m_tools[index] = std::make_unique<FuzzedTool>(*this);
        } else {
            const std::size_t index = m_bytes.pick(pickerCount);
            for (const std::unique_ptr<Participant>& each : m_contexts) {
                if (each->toolContext() != nullptr && each->toolContext()->getPicker() == m_pickers[index].get()) {
                    each->toolContext()->setPicker(nullptr);
                }
            }
            m_pickers[index] = std::make_unique<FuzzedPicker>(*this);
        }
    }

    // Without reactions, or it might come back.
    void dismiss(Participant& dismissed)
    {
        const bool wasQuiet = std::exchange(m_quiet, true);
        for (InteractionManager& manager : m_managers) {
            manager.removeContext(&dismissed.context());
        }
        if (dismissed.toolContext() != nullptr) {
            dismissed.toolContext()->setTool(nullptr);
        }
        m_quiet = wasQuiet;
    }

    // What must hold.

    void requireShownTexts() const
    {
        std::size_t shown = m_notifications + m_untracked;
        for (const std::unique_ptr<Participant>& each : m_contexts) {
            shown += each->text().isShown() ? 1U : 0U;
        }
        for (const std::unique_ptr<FuzzedTool>& each : m_tools) {
            shown += each->text().isShown() ? 1U : 0U;
        }
        require(NotificationManager::getInstance()->getNotifications().size() == shown,
                "the notification area shows what contexts and tools show, and what they left there");
    }

    void requireStacks()
    {
        for (InteractionManager& manager : m_managers) {
            for (const std::unique_ptr<Participant>& each : m_contexts) {
                each->heardCameras = 0;
            }
            manager.cameraMoved(osg::Matrix());
            for (const std::unique_ptr<Participant>& each : m_contexts) {
                const bool isHere = each->context().getInteractionManager() == &manager;
                require(each->heardCameras <= 1, "no context is in a stack twice");
                require(each->wasTangled || each->heardCameras == (isHere ? 1 : 0),
                        "a context is in the stack of its manager and in no other");
            }
        }
    }

    void requirePairs(QtEventMapper& mapper)
    {
        InteractionManager& manager = m_managers[0];
        Observer observer;
        manager.addContext(&observer);
        manager.raiseContext(&observer);
        mapper.setInteractionManager(&manager);
        mapper.resetEvents();
        observer.take();
        mapper.resetEvents();
        require(observer.take().empty(), "nothing is pending after a reset");

        for (const auto& [button, modifiers] : m_boundButtons) {
            requireEnds(mapper, observer, button, modifiers);
        }
        for (const auto& [key, modifiers] : m_boundKeys) {
            requireKeyEnds(mapper, observer, key, modifiers);
        }
        mapper.setInteractionManager(nullptr);
        manager.removeContext(&observer);
    }

    static QMouseEvent pressAt(const QEvent::Type type, const int button, const int modifiers)
    {
        return QMouseEvent(type, QPointF(3, 4), QPointF(3, 4), QPointF(3, 4), static_cast<Qt::MouseButton>(button),
                           Qt::NoButton, Qt::KeyboardModifiers(QFlag(modifiers)));
    }

    static void requireEnds(QtEventMapper& mapper, Observer& observer, const int button, const int modifiers)
    {
        const QMouseEvent press = pressAt(QEvent::MouseButtonPress, button, modifiers);
        mapper.mousePressed(&press);
        const Observer::Heard starts = observer.take();
        mapper.resetEvents();
        requireEnded(starts, observer.take(), "a reset ends every start once");

        mapper.mousePressed(&press);
        require(observer.take() == starts, "the same press starts the same");
        const QMouseEvent release = pressAt(QEvent::MouseButtonRelease, button, 0);
        mapper.mouseReleased(&release);
        requireEnded(starts, observer.take(), "a release ends every start once");
        mapper.resetEvents();
        require(observer.take().empty(), "nothing is pending after the release of a button");
    }

    static void requireKeyEnds(QtEventMapper& mapper, Observer& observer, const int key, const int modifiers)
    {
        const Qt::KeyboardModifiers held = Qt::KeyboardModifiers(QFlag(modifiers));
        const QKeyEvent press(QEvent::KeyPress, key, held);
        mapper.keyPressed(&press);
        const Observer::Heard starts = observer.take();
        mapper.resetEvents();
        requireEnded(starts, observer.take(), "a reset ends every start and every press of a key");

        mapper.keyPressed(&press);
        require(observer.take() == starts, "the same key starts the same");
        const QKeyEvent release(QEvent::KeyRelease, key, held);
        mapper.keyReleased(&release);
        // What a press reported as a control character is ended by a reset alone.
        const bool isControlCharacter = key >= 1 && key <= 31;
        if (!isControlCharacter) {
            requireEnded(starts, observer.take(), "the release of a key ends every start and every press");
        }
        mapper.resetEvents();
        require(isControlCharacter || observer.take().empty(), "nothing is pending after the release of a key");
        observer.take();
    }

    // Each category that was started stops, then triggers, once; a press is released.
    static void requireEnded(const Observer::Heard& starts, const Observer::Heard& ends, const char* what)
    {
        std::set<std::string> started;
        std::set<std::string> pressed;
        for (const auto& [category, verb] : starts) {
            require(verb == "start" || verb == "press", "a press sends nothing but starts, or one press");
            (verb == "start" ? started : pressed).insert(category);
        }
        require(ends.size() == 2 * started.size() + pressed.size(), what);
        for (std::size_t index = 0; index < ends.size(); ++index) {
            const auto& [category, verb] = ends[index];
            if (verb == "stop") {
                require(started.erase(category) == 1, what);
                require(index + 1 < ends.size() && ends[index + 1].first == category &&
                            ends[index + 1].second == "trigger",
                        "a trigger follows the stop");
                ++index;
            } else {
                require(verb == "release" && pressed.erase(category) == 1, what);
            }
        }
    }

    void takeApart()
    {
        for (const std::unique_ptr<Participant>& each : m_contexts) {
            const bool wasPresent = each->context().getInteractionManager() != nullptr;
            dismiss(*each);
            require(each->context().getInteractionManager() == nullptr && !each->context().isActive(),
                    "a context that was removed has no manager");
            for (const std::string& mode : modes) {
                const bool hadMode = each->multimode() != nullptr && each->multimode()->stopMode(mode);
                require(!hadMode || !wasPresent || each->wasTangled, "a context that was removed has no mode");
            }
        }
        requireShownTexts();
        for (const std::unique_ptr<FuzzedTool>& each : m_tools) {
            require(m_toolChanges > 0 || !each->isActive(), "a tool without context is not active");
        }
        for (std::unique_ptr<Participant>& each : m_contexts) {
            each.reset();
        }
        for (std::unique_ptr<FuzzedTool>& each : m_tools) {
            each.reset();
        }
        NotificationManager& area = *NotificationManager::getInstance();
        require(area.getNotifications().size() == m_notifications + m_untracked,
                "who is destroyed takes its text along");
        while (area.getNotifications().size() > m_notifications) {
            area.removeNotification(area.getNotifications().back());
        }
        koShortcut::clear();

        for (std::unique_ptr<FuzzedPicker>& each : m_pickers) {
            each.reset();
        }
        for (InteractionManager& manager : m_managers) {
            manager.setVisualisationRoot(osg::NullFC);
        }
        m_nodes = {};
        osg::Thread::getCurrentChangeList()->clearAll();
        require(osg::FieldContainerFactory::the()->getLiveContainerCount() == m_containers,
                "pickers and managers let go of their nodes");
    }

    ByteReader& m_bytes;
    osg::UInt32 m_containers;
    std::size_t m_notifications;
    std::size_t m_untracked = 0;
    int m_depth = 0;
    bool m_quiet = false;
    int m_toolChanges = 0; ///< from inside a call
    std::array<NodeRef, 2> m_nodes;
    std::array<InteractionManager, managerCount> m_managers;
    std::array<int, managerCount> m_enableCounts{};
    std::array<QtEventMapper, mapperCount> m_mappers;
    std::array<std::size_t, mapperCount> m_bound{};
    std::set<std::pair<int, int>> m_boundKeys; ///< code and modifiers, of whichever mapper
    std::set<std::pair<int, int>> m_boundButtons;
    std::array<std::unique_ptr<FuzzedTool>, toolCount> m_tools;
    std::array<std::unique_ptr<FuzzedPicker>, pickerCount> m_pickers;
    std::array<std::unique_ptr<Participant>, contextCount> m_contexts;
};

ShownText::ShownText(World& world)
    : m_world(world)
{}

template <class Call>
void ShownText::follow(const Call& call)
{
    const NotificationManager& area = *NotificationManager::getInstance();
    const std::size_t before = area.getNotifications().size();
    call();
    const std::size_t after = area.getNotifications().size();
    if (after > before) {
        if (m_shown) {
            m_world.leaveText();
        }
        m_shown = true;
    } else if (after < before) {
        m_shown = false;
    }
}

void Participant::describe(const std::string& text)
{
    m_text.follow([&] { context().setDescription(text); });
}

void FuzzedTool::describe(const std::string& text, const bool atOnce)
{
    m_text.follow([&] { atOnce ? displayDescription(text) : setDescription(text); });
}

bool FuzzedTool::setToolMode(ToolInteractionContext*, const std::string&)
{
    return m_world.react();
}

void FuzzedTool::activateTool(ToolInteractionContext* context)
{
    m_text.follow([&] { AbstractInteractionTool::activateTool(context); });
    m_world.react();
}

void FuzzedTool::deactivateTool(ToolInteractionContext* context)
{
    m_text.follow([&] { AbstractInteractionTool::deactivateTool(context); });
    m_world.react();
}

bool FuzzedTool::startTool(ToolInteractionContext* context, const std::string& hint)
{
    // As a tool does: what is below the pointer now?
    if (Picker* const picker = context->getPicker(); picker != nullptr && isPickHint(hint)) {
        picker->getPickedNode(nullptr);
    }
    return m_world.react();
}

bool FuzzedTool::processTool(ToolInteractionContext*, const std::string&)
{
    return m_world.react();
}

bool FuzzedTool::stopTool(ToolInteractionContext*, const std::string&)
{
    return m_world.react();
}

bool FuzzedTool::triggerTool(ToolInteractionContext*, const std::string&)
{
    return m_world.react();
}

bool FuzzedTool::hoverTool(ToolInteractionContext*, const std::string&)
{
    return m_world.react();
}

bool FuzzedTool::stopHoverTool(ToolInteractionContext*, const std::string&)
{
    return m_world.react();
}

void FuzzedPicker::query(const std::size_t kind)
{
    osg::NodePtr node;
    osg::Pnt3f point;
    osg::Vec3f normal;
    std::vector<osg::NodePtr> nodes{osg::NullFC, osg::NullFC};
    std::vector<osg::Pnt3f> points;
    std::vector<osg::MaterialPtr> materials;
    switch (kind) {
    case 0:
        getPicked(node, point, normal, nullptr);
        break;
    case 1:
        getPickedPoint(nullptr);
        break;
    case 2:
        node = getPickedNode(nullptr);
        break;
    case 3:
        getPickedNormal(nullptr);
        break;
    case 4:
        getPickedUV(nullptr);
        break;
    case 5:
        getPickedMaterial(nullptr);
        break;
    case 6:
        getMultiPicked(SinglePick, &nodes, &points, nullptr, &materials);
        // None after invalidate() and getPickedNodes(), which share their flag.
        require(nodes.size() <= 1 && points.size() == nodes.size() && materials.size() == nodes.size(),
                "a single pick gives one entry at most");
        break;
    default: {
        // All but the one that is reserved.
        const auto mode = static_cast<MultiMode>(std::max(m_world.bytes().take<int>(), INT_MIN + 1));
        getMultiPicked(mode, m_world.bytes().takeFlag() ? &nodes : nullptr, &points, nullptr, nullptr);
        break;
    }
    }
    if (kind == 2) {
        const int before = m_queries;
        const osg::NodePtr again = getPickedNode(nullptr);
        require(m_queries != before || again == node, "a pick without a query has the same answer");
    }
}

bool FuzzedPicker::isCacheValid()
{
    return m_world.bytes().takeFlag();
}

void FuzzedPicker::computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                                 osg::MaterialPtr& material, osg::SelectionOption*)
{
    ++m_queries;
    node = m_world.pickNode();
    point = osg::Pnt3f(m_world.bytes().take<float>(), 0, 0);
    normal = osg::Vec3f(0, 0, 1);
    uv = osg::Vec2f(0, 0);
    material = osg::NullFC;
}

void FuzzedPicker::computePickedNodes(std::vector<osg::NodePtr>* nodes, osg::SelectionOption*)
{
    ++m_queries;
    nodes->assign(m_world.bytes().pick(4), m_world.pickNode());
}

void FuzzedPicker::computeMultiPicked(MultiMode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                                      std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials)
{
    ++m_queries;
    // Not as long as each other.
    nodes->assign(m_world.bytes().pick(4), m_world.pickNode());
    points->resize(m_world.bytes().pick(4));
    normals->resize(m_world.bytes().pick(4));
    materials->resize(m_world.bytes().pick(4));
}

bool FuzzedPicker::updateSelectionOption(osg::SelectionOption*&)
{
    return m_world.bytes().takeFlag();
}

/** A context that does anything in any of its calls, after what its base does. */
template <class Base>
class FuzzedContext : public Participant, public Base {
public:
    FuzzedContext(World& world, const InteractionContext::PreferredPosition position)
        : Participant(world)
        , Base(position)
        , m_world(world)
    {}

    AbstractInteractionContext& context() override { return *this; }

    void enabled(InteractionManager* manager) override
    {
        walk([&] {
            m_text.follow([&] { Base::enabled(manager); });
            return m_world.react();
        });
    }

    void disabled(InteractionManager* manager) override
    {
        walk([&] {
            m_text.follow([&] { Base::disabled(manager); });
            return m_world.react();
        });
    }

    void contextAdded(InteractionManager* manager) override
    {
        Base::contextAdded(manager);
        m_world.react();
    }

    void contextRemoved(InteractionManager* manager) override
    {
        // Tool and modes react from inside; the text goes last, unless the context is disabled.
        Base::contextRemoved(manager);
        if (this->isEnabled()) {
            m_text.setGone();
        }
        m_world.react();
    }

    void contextRaised(InteractionManager* manager) override
    {
        m_text.follow([&] { Base::contextRaised(manager); });
        m_world.react();
    }

    void contextLowered(InteractionManager* manager) override
    {
        m_text.follow([&] { Base::contextLowered(manager); });
        m_world.react();
    }

    void pointerMoved(const osg::Pnt2f& position) override
    {
        walk([&] {
            Base::pointerMoved(position);
            return m_world.react();
        });
    }

    void cameraMoved(const osg::Matrix& camera) override
    {
        ++heardCameras;
        walk([&] {
            Base::cameraMoved(camera);
            return m_world.react();
        });
    }

    bool triggerEvent(InteractionManager* manager, const InteractionEvent& event) override
    {
        return walk([&] {
            const bool isTaken = Base::triggerEvent(manager, event);
            return m_world.react() || isTaken;
        });
    }

protected:
    World& m_world;

private:
    template <class Call>
    bool walk(const Call& call)
    {
        ++m_walks;
        const bool answer = call();
        --m_walks;
        return answer;
    }
};

class FuzzedPlainContext final : public FuzzedContext<AbstractInteractionContext> {
public:
    using FuzzedContext::FuzzedContext;
};

class FuzzedModeContext final : public FuzzedContext<MultimodeInteractionContext> {
public:
    using FuzzedContext::FuzzedContext;

    MultimodeInteractionContext* multimode() override { return this; }
    bool selectMode(const std::string&) override { return m_world.react(); }
};

class FuzzedToolContext final : public FuzzedContext<ToolInteractionContext> {
public:
    using FuzzedContext::FuzzedContext;

    MultimodeInteractionContext* multimode() override { return this; }
    ToolInteractionContext* toolContext() override { return this; }
};

void World::makeContext(const std::size_t index)
{
    const auto position = static_cast<InteractionContext::PreferredPosition>(positions[index]);
    if (index < 2) {
        m_contexts[index] = std::make_unique<FuzzedPlainContext>(*this, position);
    } else if (index < 4) {
        m_contexts[index] = std::make_unique<FuzzedModeContext>(*this, position);
    } else {
        m_contexts[index] = std::make_unique<FuzzedToolContext>(*this, position);
    }
}

} // namespace

int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    osg::ChangeList::setReadWriteDefault();
    osg::osgInit(*argc, *argv);
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, const std::size_t size)
{
    ByteReader bytes(data, size);
    World world(bytes);
    world.run();
    world.finish();
    return 0;
}
