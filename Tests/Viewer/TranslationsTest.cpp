// SPDX-License-Identifier: MIT
#include "Support/TemporaryFolder.h"

#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Languages.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/ShortcutsDialog.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::IsEmpty;

struct Message {
    QString source;
    QStringList forms;
    bool hasPlural = false;
    QString state; ///< empty for a translation that is done
};

using Messages = std::map<std::string, Message>; ///< by context, source and comment

Messages read(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    QXmlStreamReader xml(&file);
    Messages messages;
    QString context;
    QString comment;
    Message message;
    while (!xml.atEnd()) {
        xml.readNext();
        const auto name = xml.name();
        if (xml.isStartElement() && name == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.isStartElement() && name == QLatin1String("message")) {
            message = {};
            comment.clear();
            message.hasPlural = xml.attributes().value(QLatin1String("numerus")) == QLatin1String("yes");
        } else if (xml.isStartElement() && name == QLatin1String("source")) {
            message.source = xml.readElementText();
        } else if (xml.isStartElement() && name == QLatin1String("comment")) {
            comment = xml.readElementText();
        } else if (xml.isStartElement() && name == QLatin1String("translation")) {
            message.state = xml.attributes().value(QLatin1String("type")).toString();
            if (!message.hasPlural) {
                message.forms << xml.readElementText();
            }
        } else if (xml.isStartElement() && name == QLatin1String("numerusform")) {
            message.forms << xml.readElementText();
        } else if (xml.isEndElement() && name == QLatin1String("message")) {
            messages[(context + "/" + message.source + "/" + comment).toStdString()] = message;
        }
    }
    EXPECT_FALSE(xml.hasError()) << path << ": " << xml.errorString().toStdString();
    return messages;
}

std::vector<std::string> keysOf(const Messages& messages)
{
    std::vector<std::string> keys;
    for (const auto& [key, message] : messages) {
        keys.push_back(key);
    }
    return keys;
}

QStringList placeholdersIn(const QString& text)
{
    static const QRegularExpression placeholder(QStringLiteral("%(L?[0-9]|L?n)"));
    QStringList found;
    for (auto each = placeholder.globalMatch(text); each.hasNext();) {
        found << each.next().captured();
    }
    found.sort();
    return found;
}

struct Translation {
    const char* name;
    const char* file;
    QStringList arguments; ///< that tell lupdate where the texts are
    bool pluralOnly;
};

class TranslationsTest : public ::testing::TestWithParam<Translation> {
protected:
    static std::string file() { return std::string(KO_SOURCES) + "/" + GetParam().file; }

    // What lupdate makes of the translations with the sources as they are.
    Messages updated() const
    {
        const std::string copy = m_folder.path("copy.ts");
        EXPECT_TRUE(QFile::copy(QString::fromStdString(file()), QString::fromStdString(copy)));
        QStringList arguments = GetParam().arguments;
        if (GetParam().pluralOnly) {
            arguments << QStringLiteral("-pluralonly");
        }
        arguments << QStringLiteral("-ts") << QString::fromStdString(copy);
        QProcess lupdate;
        lupdate.start(QString::fromUtf8(KO_LUPDATE), arguments);
        EXPECT_TRUE(lupdate.waitForFinished(300000)) << lupdate.errorString().toStdString();
        EXPECT_EQ(lupdate.exitCode(), 0) << lupdate.readAllStandardError().toStdString();
        return read(copy);
    }

    TemporaryFolder m_folder;
};

TEST_P(TranslationsTest, AllTextsOfTheSourcesAreTranslatedAndNoOthers)
{
    const Messages translated = read(file());
    const Messages wanted = updated();

    EXPECT_THAT(keysOf(translated), ::testing::ElementsAreArray(keysOf(wanted)))
        << "build the target koviewer_update_translations or kointeraction_update_translations and translate what is "
           "unfinished then";
    EXPECT_FALSE(wanted.empty());
}

TEST_P(TranslationsTest, NothingIsUnfinished)
{
    for (const auto& [key, message] : read(file())) {
        EXPECT_EQ(message.state, QString()) << key;
        EXPECT_EQ(message.forms.size(), message.hasPlural ? 2 : 1) << key;
        for (const QString& form : message.forms) {
            EXPECT_FALSE(form.isEmpty()) << key;
        }
    }
}

TEST_P(TranslationsTest, PlaceholdersDotsAndMnemonicsAreThoseOfTheSource)
{
    for (const auto& [key, message] : read(file())) {
        for (int i = 0; i < message.forms.size(); ++i) {
            const QString& form = message.forms[i];
            QStringList wanted = placeholdersIn(message.source);
            QStringList given = placeholdersIn(form);
            if (message.hasPlural && i == 0) {
                // One can be a word.
                wanted.removeAll(QStringLiteral("%n"));
                given.removeAll(QStringLiteral("%n"));
            }
            EXPECT_EQ(given.join(' '), wanted.join(' ')) << key;
            EXPECT_EQ(form.endsWith("..."), message.source.endsWith("...")) << key;
            EXPECT_EQ(form.count('&'), message.source.count('&')) << key;
            EXPECT_EQ(form.count('\n'), message.source.count('\n')) << key;
        }
    }
}

const Translation AllTranslations[] = {
    {"german", "Apps/Viewer/Translations/koviewer_de.ts", {KO_LUPDATE_VIEWER}, false},
    {"english", "Apps/Viewer/Translations/koviewer_en.ts", {KO_LUPDATE_VIEWER}, true},
    {"germanOfTheLibrary", "Libs/Translations/kointeraction_de.ts", {KO_LUPDATE_LIBRARY}, false}};

INSTANTIATE_TEST_SUITE_P(Languages, TranslationsTest, ::testing::ValuesIn(AllTranslations),
                         [](const auto& each) { return std::string(each.param.name); });

/** Notes the texts that are asked for and that no translator below it has. */
class MissingTexts : public QTranslator {
public:
    explicit MissingTexts(const QTranslator& translations)
        : m_translations(translations)
    {}

    QString translate(const char* context, const char* source, const char* comment, const int count) const override
    {
        // Contexts of Qt's own begin with a Q and a capital letter.
        const QString name = QString::fromUtf8(context);
        static const QRegularExpression ofQt(QStringLiteral("^Q[A-Z]"));
        const bool isOfQt = ofQt.match(name).hasMatch() && name != QLatin1String("QtEventMapper");
        if (!isOfQt && *source != 0 && m_translations.translate(context, source, comment, count).isNull()) {
            m_missing.insert(std::string(context) + "/" + source);
        }
        return {};
    }
    bool isEmpty() const override { return false; }

    std::set<std::string> getMissing() const { return m_missing; }

private:
    const QTranslator& m_translations;
    mutable std::set<std::string> m_missing;
};

// A text in the file is of no use in a context that nobody asks for.
TEST(TranslationsInUseTest, TheWindowAsksForNoTextThatTheGermanTranslationLacks)
{
    const TemporaryFolder folder;
    const viewer::Languages languages;
    QTranslator german;
    ASSERT_TRUE(german.load(QStringLiteral(":/koviewer/Translations/koviewer_de.qm")));
    MissingTexts missing(german);
    QCoreApplication::installTranslator(&missing);
    {
        viewer::ViewerSession session;
        viewer::MainWindow window(session);
        window.show();
        window.showAssembly(20);
        for (const char* command : {"shortcuts", "inspector", "select-all", "hide", "undo", "redo", "show-all", "lock",
                                    "select-none", "visualisation", "overlay", "dark", "presenter"}) {
            session.sendCommand(command);
            QCoreApplication::processEvents();
        }
    }
    QCoreApplication::removeTranslator(&missing);

    EXPECT_THAT(missing.getMissing(), IsEmpty());
}

} // namespace

} // namespace quon::testing
