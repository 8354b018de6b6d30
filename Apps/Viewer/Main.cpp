// SPDX-License-Identifier: MIT
#include "Viewer/Model/AssemblyGenerator.h"
#include "Viewer/Model/ModelLoader.h"
#include "Viewer/Model/ModelReader.h"
#include "Viewer/Model/ViewerError.h"
#include "Viewer/Script/Benchmark.h"
#include "Viewer/Script/CommandLine.h"
#include "Viewer/Script/InputRecorder.h"
#include "Viewer/Script/OutputFolder.h"
#include "Viewer/Script/Script.h"
#include "Viewer/Script/ScriptRunner.h"
#include "Viewer/Session/ModelSettings.h"
#include "Viewer/Session/QtVersions.h"
#include "Viewer/Session/Settings.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Icons.h"
#include "Viewer/Window/Languages.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/ModelOpener.h"
#include "Viewer/Window/RecordingControl.h"
#include "Viewer/Window/ScriptPlayer.h"
#include "Viewer/Window/Viewport.h"

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>

#include <QApplication>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace {

using quon::viewer::CommandLine;
using quon::viewer::DivergenceError;
using quon::viewer::InputRecorder;
using quon::viewer::QtVersions;
using quon::viewer::ViewerError;

constexpr int BadInput = 2;
constexpr int Diverged = 3; // something is not as a recording says

// How long a user waits for a window without wondering.
constexpr std::chrono::milliseconds Patience(400);

// What Qt thinks of the platform is no message of the viewer's: bad input gets one line and nothing else.
void dropMessage(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(message));
    }
}

std::string getModelName(const CommandLine& line)
{
    return line.partCount > 0 ? "--generate " + std::to_string(line.partCount)
                              : std::filesystem::path(line.model).filename().string();
}

// One line on standard error; returns the exit status that goes with it.
int report(const std::exception& error)
{
    std::fprintf(stderr, "koviewer: %s\n", ViewerError::oneLine(error.what()).c_str());
    return dynamic_cast<const DivergenceError*>(&error) != nullptr ? Diverged : BadInput;
}

// A recording never takes the place of what it is made from.
void checkRecording(const CommandLine& line)
{
    const std::pair<const std::string&, const char*> inputs[] = {
        {line.model, "model"}, {line.script, "script"}, {line.replay, "script"}};
    for (const auto& [input, name] : inputs) {
        // One that is not there is refused elsewhere.
        std::error_code error;
        if (!line.record.empty() && !input.empty() && std::filesystem::equivalent(line.record, input, error)) {
            throw ViewerError(line.record, std::string("is the ") + name + ", which --record would replace");
        }
    }
}

// What is missing of a model is no reason not to show the rest.
quon::viewer::LoadedModel loadModel(const std::string& file)
{
    quon::viewer::LoadedModel model = quon::viewer::ModelLoader().load(file);
    if (!model.missing.isEmpty()) {
        const ViewerError warning(file, model.missing.join(QLatin1Char(' ')).toStdString());
        std::fprintf(stderr, "koviewer: %s\n", warning.what());
    }
    return model;
}

osg::RefPtr<osg::NodePtr> makeModel(const CommandLine& line)
{
    return line.partCount > 0 ? quon::viewer::AssemblyGenerator::generate(line.partCount) : loadModel(line.model).root;
}

// With its unit, which measurements are written in. An assembly of so many parts where there is no file.
void showModel(const std::string& file, const int partCount, quon::viewer::ModelSettings& settings)
{
    if (file.empty()) {
        settings.show(quon::viewer::AssemblyGenerator::generate(partCount).get());
    } else {
        settings.show(loadModel(file));
    }
}

// Each line as it comes: whoever writes them may wait for what the last one did.
void runFromInput(quon::viewer::ScriptRunner& runner)
{
    std::string text;
    for (int number = 1; std::getline(std::cin, text); ++number) {
        runner.run(quon::viewer::Script::parse(text, "standard input", number));
    }
}

void runBenchmark(const CommandLine& line, int& argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    quon::viewer::ViewerSession session;
    quon::viewer::Benchmark(session, stdout).run(line.partCount > 0 ? "generate" : "load", [&] {
        return makeModel(line);
    });
}

void runHeadless(const CommandLine& line, int& argc, char** argv)
{
    // Cheap checks first: nothing is loaded for a script that cannot run to its end.
    quon::viewer::OutputFolder output(line.out);
    const bool isFromInput = line.script == CommandLine::StandardInput;
    const quon::viewer::Script script = isFromInput ? quon::viewer::Script() : quon::viewer::Script::load(line.script);
    std::unique_ptr<InputRecorder> openedRecorder;
    if (!line.record.empty()) {
        openedRecorder = std::make_unique<InputRecorder>(line.record);
    }

    // No window system is needed: the scene is drawn through EGL, the texts over it into an image.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    quon::viewer::Languages languages;
    // The same pictures everywhere, unless somebody asks for others.
    languages.select(line.language.empty() ? "en" : line.language);
    quon::viewer::ViewerSession session;
    quon::viewer::Viewport viewport(session, quon::viewer::Viewport::Target::Pictures);
    viewport.resize(960, 640);
    viewport.show();
    // Ends before what it watches does, also where the script does not reach its end.
    const std::unique_ptr<InputRecorder> recorder = std::move(openedRecorder);
    quon::viewer::ModelSettings modelSettings(session);
    showModel(line.model, line.partCount, modelSettings);
    if (recorder != nullptr) {
        recorder->start(session, viewport, getModelName(line));
    }
    quon::viewer::ScriptRunner runner(session, viewport, &output);
    runner.setOpener(
        [&modelSettings](const std::string& file, const int partCount) { showModel(file, partCount, modelSettings); });
    if (isFromInput) {
        runFromInput(runner);
    } else {
        runner.run(script);
    }
    if (recorder != nullptr) {
        recorder->stop();
        if (!recorder->getError().empty()) {
            throw ViewerError(recorder->getError());
        }
    }
}

// Shows the window as soon as it has the model, or when that takes its time; never for a model that is refused at once.
int openAndRun(const std::string& file, quon::viewer::MainWindow& window)
{
    using quon::viewer::ModelOpener;
    ModelOpener& opener = window.getOpener();
    QString refusal;
    // Later loads are none of the command line's business.
    auto* firstLoad = new QObject(&window);
    QObject::connect(&opener, &ModelOpener::opened, firstLoad, [&, firstLoad] {
        window.show();
        firstLoad->deleteLater();
    });
    // There is a window then, or there was one: it may have been closed.
    QObject::connect(&opener, &ModelOpener::cancelled, firstLoad, &QObject::deleteLater);
    QObject::connect(&opener, &ModelOpener::failed, firstLoad, [&](const QString& line) {
        refusal = line;
        QApplication::exit(BadInput);
    });
    QTimer::singleShot(Patience, firstLoad, [&] { window.show(); });
    opener.open(file);
    const int status = QApplication::exec();
    if (!refusal.isEmpty()) {
        throw ViewerError(refusal.toStdString());
    }
    return status;
}

int runWindow(const CommandLine& line, int& argc, char** argv)
{
    if (!line.model.empty()) {
        quon::viewer::ModelReader::checkFile(line.model);
    }
    const bool hasDisplay = std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr ||
                            std::getenv("QT_QPA_PLATFORM") != nullptr;
    if (!hasDisplay) {
        // Qt would end the process with a page of advice.
        throw ViewerError("no display", "use --headless, see --help");
    }
    std::optional<quon::viewer::Script> script;
    if (!line.replay.empty()) {
        script = quon::viewer::Script::load(line.replay);
    }
    std::unique_ptr<InputRecorder> recorder;
    if (!line.record.empty()) {
        recorder = std::make_unique<InputRecorder>(line.record);
    }
    QtVersions::enableHighResolution();
    const QApplication application(argc, argv);
    // The same looks on every desktop; its palette still comes from there.
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setWindowIcon(quon::viewer::getIcon("koviewer"));
    QApplication::setOrganizationName(QStringLiteral("quon"));
    QApplication::setApplicationName(QStringLiteral("koviewer"));
    quon::viewer::Settings settings(quon::viewer::Settings::getUserFile());
    quon::viewer::Languages languages;
    languages.select(line.language.empty() ? settings.getLanguage().toStdString() : line.language);
    quon::viewer::ViewerSession session;
    languages.setSession(&session);
    quon::viewer::MainWindow window(session);
    // A recording goes the same way everywhere: the keys and switches of one user are not those of another.
    if (line.record.empty() && line.replay.empty()) {
        window.useSettings(settings);
    }
    window.addLanguages(languages);
    // Both begin with the model.
    if (recorder != nullptr) {
        window.getRecording().record(std::move(recorder));
    }
    if (script) {
        QObject::connect(&window.getPlayer(), &quon::viewer::ScriptPlayer::failed,
                         [](const std::exception& error) { QApplication::exit(report(error)); });
        window.getPlayer().play(*script);
    }
    if (!line.model.empty()) {
        return openAndRun(line.model, window);
    }
    if (line.partCount > 0) {
        window.showAssembly(line.partCount);
    }
    window.show();
    return QApplication::exec();
}

int run(int argc, char** argv)
{
    const CommandLine line = CommandLine::parse(std::vector<std::string>(argv + 1, argv + argc));
    if (line.help) {
        std::fputs(CommandLine::getHelp(), stdout);
        return EXIT_SUCCESS;
    }
    if (line.version) {
        std::puts("koviewer " KOVIEWER_VERSION);
        return EXIT_SUCCESS;
    }
    checkRecording(line);
    if (line.headless) {
        runHeadless(line, argc, argv);
        return EXIT_SUCCESS;
    }
    if (line.benchmark) {
        runBenchmark(line, argc, argv);
        return EXIT_SUCCESS;
    }
    return runWindow(line, argc, argv);
}

} // namespace

int main(int argc, char** argv)
{
    osg::ChangeList::setReadWriteDefault();
    osg::osgInit(argc, argv);
    qInstallMessageHandler(dropMessage);
    int status = BadInput;
    try {
        status = run(argc, argv);
    } catch (const std::exception& error) {
        status = report(error);
    }
    osg::osgExit();
    return status;
}
