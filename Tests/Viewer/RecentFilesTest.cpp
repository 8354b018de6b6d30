// SPDX-License-Identifier: MIT
#include "Support/TemporaryFolder.h"

#include "Viewer/Window/RecentFiles.h"

#include <QSettings>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::RecentFiles;

class RecentFilesTest : public ::testing::Test {
protected:
    RecentFilesTest()
        : m_settings(QString::fromStdString(m_folder.path("settings.ini")), QSettings::IniFormat)
    {
        QObject::connect(&m_files, &RecentFiles::changed, [this] { ++m_changes; });
    }

    TemporaryFolder m_folder;
    QSettings m_settings;
    RecentFiles m_files;
    int m_changes = 0;
};

TEST_F(RecentFilesTest, TheNewestFileIsInFrontAndEachIsThereOnce)
{
    m_files.add(QStringLiteral("/a/one.obj"));
    m_files.add(QStringLiteral("/a/two.obj"));
    m_files.add(QStringLiteral("/a/b/../one.obj"));
    m_files.add(QString());

    EXPECT_THAT(m_files.getFiles(), ElementsAre(QStringLiteral("/a/one.obj"), QStringLiteral("/a/two.obj")));
    EXPECT_EQ(m_changes, 3);
}

TEST_F(RecentFilesTest, NoMoreThanTenAreKept)
{
    for (int i = 1; i <= 12; ++i) {
        m_files.add(QStringLiteral("/a/%1.obj").arg(i));
    }

    ASSERT_EQ(m_files.getFiles().size(), 10);
    EXPECT_EQ(m_files.getFiles().front(), QStringLiteral("/a/12.obj"));
    EXPECT_EQ(m_files.getFiles().back(), QStringLiteral("/a/3.obj"));
}

TEST_F(RecentFilesTest, FilesCanBeTakenOut)
{
    m_files.add(QStringLiteral("/a/one.obj"));
    m_files.add(QStringLiteral("/a/two.obj"));
    m_changes = 0;

    m_files.remove(QStringLiteral("/a/three.obj"));
    EXPECT_EQ(m_changes, 0);
    m_files.remove(QStringLiteral("/a/one.obj"));
    EXPECT_THAT(m_files.getFiles(), ElementsAre(QStringLiteral("/a/two.obj")));
    m_files.clear();
    EXPECT_THAT(m_files.getFiles(), IsEmpty());
    EXPECT_EQ(m_changes, 2);
}

TEST_F(RecentFilesTest, TheyAreRemembered)
{
    m_files.useSettings(&m_settings);
    m_files.add(QStringLiteral("/a/one.obj"));
    m_files.add(QStringLiteral("/a/two.obj"));

    RecentFiles others;
    others.useSettings(&m_settings);
    EXPECT_EQ(others.getFiles(), m_files.getFiles());

    others.clear();
    m_files.useSettings(&m_settings);
    EXPECT_THAT(m_files.getFiles(), IsEmpty());
}

TEST_F(RecentFilesTest, WithoutSettingsNothingIsWritten)
{
    m_files.add(QStringLiteral("/a/one.obj"));
    m_files.useSettings(nullptr);
    m_files.add(QStringLiteral("/a/two.obj"));

    EXPECT_THAT(m_settings.allKeys(), IsEmpty());
    EXPECT_EQ(m_files.getFiles().size(), 2);
}

} // namespace

} // namespace quon::testing
