// SPDX-License-Identifier: MIT
#include "Viewer/Window/KeyField.h"

#include <QAction>
#include <QHBoxLayout>
#include <QPushButton>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::KeyBinding;
using viewer::KeyField;

constexpr int Control = Qt::ControlModifier;
constexpr int Shift = Qt::ShiftModifier;

class KeyFieldTest : public ::testing::Test {
protected:
    KeyFieldTest()
        : m_field(new KeyField)
        , m_button(new QPushButton)
    {
        auto* layout = new QHBoxLayout(&m_window);
        layout->addWidget(m_field);
        layout->addWidget(m_button);
        QObject::connect(m_field, &KeyField::keyEntered, [this](const KeyBinding& key) { m_entered.push_back(key); });
        m_window.show();
        m_window.activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(&m_window));
        m_field->setFocus();
    }

    void send(const QEvent::Type type, const int key, const Qt::KeyboardModifiers modifiers,
              const bool repeated = false)
    {
        QKeyEvent event(type, key, modifiers, QString(), repeated);
        QCoreApplication::sendEvent(m_field, &event);
    }

    QWidget m_window;
    KeyField* m_field;
    QPushButton* m_button;
    std::vector<KeyBinding> m_entered;
};

TEST_F(KeyFieldTest, KeysThatOtherFieldsGiveAwayAreTaken)
{
    QTest::keyClick(m_field, Qt::Key_Escape);
    QTest::keyClick(m_field, Qt::Key_Tab);
    QTest::keyClick(m_field, Qt::Key_F5, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(m_field, Qt::Key_Return);
    QTest::keyClick(m_field, Qt::Key_Backspace);

    EXPECT_THAT(m_entered, ElementsAre(KeyBinding{Qt::Key_Escape, 0}, KeyBinding{Qt::Key_Tab, 0},
                                       KeyBinding{Qt::Key_F5, Control | Shift}, KeyBinding{Qt::Key_Return, 0},
                                       KeyBinding{Qt::Key_Backspace, 0}));
    EXPECT_TRUE(m_field->hasFocus());
    EXPECT_EQ(m_field->text(), QKeySequence(Qt::Key_Backspace).toString(QKeySequence::NativeText));
}

TEST_F(KeyFieldTest, AShortcutOfTheWindowDoesNotTakeItsKeyAway)
{
    QAction action;
    action.setShortcut(QKeySequence(QStringLiteral("Ctrl+K")));
    bool triggered = false;
    QObject::connect(&action, &QAction::triggered, [&] { triggered = true; });
    m_window.addAction(&action);

    QTest::keyClick(m_field, Qt::Key_K, Qt::ControlModifier);
    EXPECT_THAT(m_entered, ElementsAre(KeyBinding{Qt::Key_K, Control}));
    EXPECT_FALSE(triggered);

    m_button->setFocus();
    QTest::keyClick(m_button, Qt::Key_K, Qt::ControlModifier);
    EXPECT_TRUE(triggered);
}

TEST_F(KeyFieldTest, ModifiersAloneAreShownWhileTheyAreHeldAndAreNoKey)
{
    m_field->setKey({Qt::Key_H, 0});

    // As from the platform: with the modifiers before the event, and without those that QTest presses by itself.
    send(QEvent::KeyPress, Qt::Key_Control, Qt::NoModifier);
    EXPECT_EQ(m_field->text(), QStringLiteral("Ctrl+"));
    send(QEvent::KeyPress, Qt::Key_Shift, Qt::ControlModifier);
    EXPECT_EQ(m_field->text(), QStringLiteral("Ctrl+Shift+"));
    send(QEvent::KeyRelease, Qt::Key_Shift, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(m_field->text(), QStringLiteral("Ctrl+"));
    send(QEvent::KeyRelease, Qt::Key_Control, Qt::ControlModifier);

    EXPECT_EQ(m_field->text(), QStringLiteral("H"));
    EXPECT_THAT(m_entered, IsEmpty());
}

TEST_F(KeyFieldTest, ModifiersThatNoMapperHearsOfAreLeftOut)
{
    QTest::keyClick(m_field, Qt::Key_8, Qt::KeypadModifier | Qt::ControlModifier);
    QTest::keyClick(m_field, Qt::Key_H, Qt::MetaModifier);

    EXPECT_THAT(m_entered, ElementsAre(KeyBinding{Qt::Key_8, Control}, KeyBinding{Qt::Key_H, 0}));
}

TEST_F(KeyFieldTest, UnknownKeysAndRepeatsAreNoKeys)
{
    send(QEvent::KeyPress, Qt::Key_unknown, Qt::ControlModifier);
    send(QEvent::KeyPress, Qt::Key_AltGr, Qt::NoModifier);
    send(QEvent::KeyPress, 0, Qt::NoModifier);
    send(QEvent::KeyPress, Qt::Key_H, Qt::NoModifier, true);

    EXPECT_THAT(m_entered, IsEmpty());
}

TEST_F(KeyFieldTest, AKeyHandsTheFocusOn)
{
    m_field->setNextFocus(m_button);

    QTest::keyClick(m_field, Qt::Key_Tab);

    EXPECT_TRUE(m_button->hasFocus());
}

} // namespace

} // namespace quon::testing
