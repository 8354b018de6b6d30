// SPDX-License-Identifier: MIT
#include "Support/TemporaryFolder.h"

#include "Viewer/Session/Settings.h"

#include <QSettings>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <ostream>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using viewer::KeyBinding;
using viewer::Settings;

const QByteArray SomeBytes("\0\x01 bytes, \xff", 12);

class SettingsTest : public ::testing::Test {
protected:
    QString file() const { return QString::fromStdString(m_folder.path("koviewer.ini")); }
    std::string content() const { return m_folder.read("koviewer.ini"); }

    TemporaryFolder m_folder;
};

TEST_F(SettingsTest, WithoutAFileThereIsNothingAndNoProblem)
{
    const Settings settings(file());

    EXPECT_TRUE(settings.getWindowGeometry().isEmpty());
    EXPECT_TRUE(settings.getWindowState().isEmpty());
    EXPECT_TRUE(settings.getLanguage().isEmpty());
    EXPECT_TRUE(settings.getKeys().empty());
    EXPECT_TRUE(settings.getSwitch("dark", true));
    EXPECT_FALSE(settings.getSwitch("dark", false));
    EXPECT_EQ(settings.describeProblems(), QString());
    // And none is made for nothing.
    EXPECT_FALSE(std::filesystem::exists(m_folder.path("koviewer.ini")));
}

TEST_F(SettingsTest, WhatIsSetIsThereAtOnceForTheNextStart)
{
    Settings settings(file());
    settings.setWindowGeometry(SomeBytes);
    settings.setWindowState("state");
    settings.setLanguage("de");
    settings.setSwitch("dark", true);
    settings.setSwitch("parallel", false);
    settings.setKeys({{"hide", {Qt::Key_Comma, Qt::ControlModifier}}, {"fit", {}}});

    // Another file of the same content: one that is open is not read again.
    m_folder.write("copy.ini", content());
    const Settings next(QString::fromStdString(m_folder.path("copy.ini")));

    EXPECT_EQ(next.getWindowGeometry(), SomeBytes);
    EXPECT_EQ(next.getWindowState(), QByteArray("state"));
    EXPECT_EQ(next.getLanguage(), QStringLiteral("de"));
    EXPECT_TRUE(next.getSwitch("dark", false));
    EXPECT_FALSE(next.getSwitch("parallel", true));
    EXPECT_THAT(next.getKeys(),
                ElementsAre(Pair("fit", KeyBinding()), Pair("hide", KeyBinding{Qt::Key_Comma, Qt::ControlModifier})));
    EXPECT_EQ(next.describeProblems(), QString());
}

TEST_F(SettingsTest, AKeyThatIsTheDefaultOneAgainIsForgotten)
{
    Settings settings(file());
    settings.setKeys({{"hide", {Qt::Key_F21, 0}}, {"fit", {}}});

    settings.setKeys({{"fit", {}}});

    EXPECT_THAT(settings.getKeys(), ElementsAre(Pair("fit", KeyBinding())));
    EXPECT_THAT(content(), ::testing::Not(HasSubstr("hide")));
}

struct BadValue {
    const char* name;
    const char* lines;
    const char* ignored;
};

std::ostream& operator<<(std::ostream& stream, const BadValue& each)
{
    return stream << each.name;
}

const BadValue BadValues[] = {
    {"a language that is none", "language=klingon", "language"},
    {"several languages", "language=de, en", "language"},
    {"a key that is none", "[keys]\nhide=Klingon", "keys/hide"},
    {"a number as key", "[keys]\nhide=123456789", "keys/hide"},
    {"several keys", "[keys]\nhide=\"H, I\"", "keys/hide"},
    {"bytes as key", "[keys]\nhide=@ByteArray(H)", "keys/hide"},
    {"a key of no command", "[keys]\nexplode=E", "keys/explode"},
    {"a switch that is neither on nor off", "[switches]\ndark=perhaps", "switches/dark"},
    {"nonsense for what lights up", "[switches]\npreselection=sometimes", "switches/preselection"},
    {"nonsense for the rectangle", "[switches]\nvisible-only=2", "switches/visible-only"},
    {"a number as switch", "[switches]\ndark=7", "switches/dark"},
    {"a switch of no command", "[switches]\nlight=true", "switches/light"},
    {"text as geometry", "[window]\ngeometry=wide", "window/geometry"},
    {"text as state", "[window]\nstate=@Size(1 2)", "window/state"},
    {"a unit that is none", "lengthUnit=cubit", "lengthUnit"},
    {"an axis that is none", "[formats]\nobj\\upAxis=w", "formats/obj/upAxis"},
    {"a length below zero", "[formats]\nobj\\metresPerUnit=-1", "formats/obj/metresPerUnit"},
    {"a length without end", "[formats]\nobj\\metresPerUnit=1e999", "formats/obj/metresPerUnit"},
    {"a length that is no number", "[formats]\nobj\\metresPerUnit=nan", "formats/obj/metresPerUnit"},
    {"bytes as files", "recentFiles=@ByteArray(x)", "recentFiles"},
};

class SettingsBadValueTest : public SettingsTest, public ::testing::WithParamInterface<BadValue> {};

TEST_P(SettingsBadValueTest, IsIgnoredAndToldAndTheGoodOneBesideItCounts)
{
    m_folder.write("koviewer.ini", std::string(GetParam().lines) + "\n[keys]\nisolate=Ctrl+F21\n");

    const Settings settings(file());

    EXPECT_EQ(settings.describeProblems(), file() + ": ignored " + GetParam().ignored);
    EXPECT_THAT(settings.getKeys(), ElementsAre(Pair("isolate", KeyBinding{Qt::Key_F21, Qt::ControlModifier})));
    EXPECT_TRUE(settings.getLanguage().isEmpty());
    EXPECT_TRUE(settings.getWindowGeometry().isEmpty());
    EXPECT_TRUE(settings.getWindowState().isEmpty());
    EXPECT_TRUE(settings.getSwitch("dark", true));
    EXPECT_FALSE(settings.getSwitch("dark", false));
}

INSTANTIATE_TEST_SUITE_P(Lines, SettingsBadValueTest, ::testing::ValuesIn(BadValues));

TEST_F(SettingsTest, AllThatIsIgnoredIsToldInOneLine)
{
    m_folder.write("koviewer.ini", "language=klingon\n[keys]\nhide=Klingon\n[switches]\ndark=7\n");
    Settings settings(file());
    int told = 0;
    QObject::connect(&settings, &Settings::problemsChanged, [&] { ++told; });

    settings.ignore(Settings::WindowStateKey);
    settings.ignore(Settings::WindowStateKey);

    EXPECT_EQ(settings.describeProblems(), file() + ": ignored keys/hide, language, switches/dark, window/state");
    EXPECT_EQ(told, 1);
}

TEST_F(SettingsTest, ValuesOfOthersAreLeftAlone)
{
    m_folder.write("koviewer.ini", "[plugin]\nwhatever=7\n");

    Settings settings(file());
    settings.setLanguage("de");

    EXPECT_EQ(settings.describeProblems(), QString());
    EXPECT_THAT(content(), HasSubstr("whatever=7"));
    ASSERT_NE(settings.getStore(), nullptr);
    EXPECT_EQ(settings.getStore()->value("plugin/whatever").toInt(), 7);
}

TEST_F(SettingsTest, AFileThatIsNoSettingsFileIsToldAndReplacedByTheFirstChange)
{
    m_folder.write("koviewer.ini", "Dear reader,\n\xff\xfe noise\nlanguage=de\n");
    Settings settings(file());

    EXPECT_EQ(settings.describeProblems(), file() + " is damaged; what cannot be read is ignored");
    EXPECT_EQ(settings.getLanguage(), QStringLiteral("de"));

    settings.setSwitch("dark", true);
    EXPECT_THAT(content(), HasSubstr("dark=true"));
}

// What is there in place of the file.
struct NoFile {
    const char* name;
    void (*make)(const std::string& path);
};

std::ostream& operator<<(std::ostream& stream, const NoFile& each)
{
    return stream << each.name;
}

const NoFile NoFiles[] = {
    {"a folder", [](const std::string& path) { std::filesystem::create_directory(path); }},
    {"a pipe that nobody writes to", [](const std::string& path) { EXPECT_EQ(mkfifo(path.c_str(), 0600), 0); }},
    {"a link to itself", [](const std::string& path) { std::filesystem::create_symlink(path, path); }},
    {"a device without end", [](const std::string& path) { std::filesystem::create_symlink("/dev/zero", path); }},
    {"far too much", [](const std::string& path) { std::filesystem::resize_file(path, 64 << 20); }},
};

class SettingsNoFileTest : public SettingsTest, public ::testing::WithParamInterface<NoFile> {};

TEST_P(SettingsNoFileTest, IsLeftAloneAndNothingIsKept)
{
    if (std::string(GetParam().name) == "far too much") {
        m_folder.write("koviewer.ini", "language=de\n");
    }
    GetParam().make(m_folder.path("koviewer.ini"));

    Settings settings(file());
    settings.setLanguage("de");
    settings.setKeys({{"hide", {}}});
    settings.setWindowGeometry("geometry");
    settings.setSwitch("dark", true);

    EXPECT_EQ(settings.describeProblems(), file() + " cannot be read; settings are not kept");
    EXPECT_EQ(settings.getStore(), nullptr);
    EXPECT_TRUE(settings.getLanguage().isEmpty());
    EXPECT_TRUE(settings.getKeys().empty());
    EXPECT_FALSE(settings.getSwitch("dark", false));
}

INSTANTIATE_TEST_SUITE_P(Kinds, SettingsNoFileTest, ::testing::ValuesIn(NoFiles));

TEST_F(SettingsTest, AFolderThatCannotBeMadeIsToldWithTheFirstChange)
{
    m_folder.write("file", "");
    const QString blocked = QString::fromStdString(m_folder.path("file/koviewer.ini"));
    Settings settings(blocked);
    EXPECT_EQ(settings.describeProblems(), QString());
    int told = 0;
    QObject::connect(&settings, &Settings::problemsChanged, [&] { ++told; });

    settings.setLanguage("de");

    EXPECT_EQ(settings.describeProblems(), blocked + " cannot be written; settings are not kept");
    EXPECT_EQ(told, 1);
    // Until the program ends it is kept all the same.
    EXPECT_EQ(settings.getLanguage(), QStringLiteral("de"));
}

} // namespace

} // namespace quon::testing
