// SPDX-License-Identifier: MIT
//
// The bytes are a script of the viewer, and the arguments of its command line, one to a line. Either is read or refused
// with one line for the user; what was read can be written and read again; a picture goes into the folder for pictures,
// whatever it is called. Nothing is carried out: the viewer's tests do that.
#include "Support/Fuzzer.h"
#include "Support/Require.h"

#include "Viewer/Model/ViewerError.h"
#include "Viewer/Script/CommandLine.h"
#include "Viewer/Script/OutputFolder.h"
#include "Viewer/Script/Script.h"

#include <QImage>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace {

using quon::fuzzing::require;
using quon::viewer::CommandLine;
using quon::viewer::OutputFolder;
using quon::viewer::Script;
using quon::viewer::ScriptCommand;
using quon::viewer::ViewerError;

constexpr double largestCoordinate = 1e30;

void requireOneLine(const ViewerError& error, const std::string& beginning)
{
    const std::string text = error.what();
    require(text.size() > beginning.size() && text.compare(0, beginning.size(), beginning) == 0,
            "an error begins with where it is");
    require(ViewerError::oneLine(text) == text, "an error is one line");
}

ScriptCommand readAgain(const std::string& line)
{
    const Script script = Script::parse(line, "again");
    require(script.getCommands().size() == 1, "what was written is one command");
    return script.getCommands().front();
}

void requireWordIsKept(const std::string& word)
{
    std::string expected = word;
    std::replace_if(
        expected.begin(), expected.end(),
        [](const char character) { return character == '"' || character == '\n' || character == '\r'; }, ' ');
    const ScriptCommand again = readAgain("select " + Script::writeWord(word));
    require(again.words == std::vector<std::string>{expected}, "a word is read as it was written");
}

void requireIsKept(const ScriptCommand& command)
{
    using Kind = ScriptCommand::Kind;
    if (command.kind == Kind::Key || command.kind == Kind::KeyPress || command.kind == Kind::KeyRelease) {
        const ScriptCommand again =
            readAgain("key " + Script::writeKey(command.key) + Script::writeModifiers(command.modifiers));
        require(again.key == command.key && again.modifiers == command.modifiers, "a key is read as it was written");
    }
    for (const double number : command.numbers) {
        require(std::isfinite(number), "a number is one");
        if (std::abs(number) <= largestCoordinate) {
            const ScriptCommand again = readAgain("camera " + Script::writeNumber(number) + " 0 0 1 0 0");
            require(again.numbers.front() == number, "a number is read as it was written");
        }
    }
    for (const std::string& word : command.words) {
        requireWordIsKept(word);
    }
    requireWordIsKept(command.text);
    const ScriptCommand held = readAgain("held" + Script::writeButtons(command.buttons));
    require(held.buttons == command.buttons, "buttons are read as they were written");
    const ScriptCommand scroll = readAgain(std::string("scroll 0 0 0 0 0 0 ") + Script::writePhase(command.phase));
    require(scroll.phase == command.phase, "a phase is read as it was written");
    if (command.kind == Kind::Gesture) {
        require(Script::writeGesture(Script::readGesture(command.text)) == command.text,
                "a gesture is read as it was written");
    }
}

// Into a folder of its own, which is gone afterwards.
void requireStaysInFolder(const std::string& name)
{
    static const QTemporaryDir folder;
    const std::string path = folder.path().toStdString();
    OutputFolder output(path);
    QImage picture(1, 1, QImage::Format_RGB32);
    picture.fill(0);
    try {
        const std::filesystem::path written = output.write(picture, name);
        require(written.lexically_normal().parent_path() == path, "a picture is in the folder for pictures");
        require(std::filesystem::remove(written), "a picture is where it is said to be");
    } catch (const ViewerError& error) {
        // A name that the file system finds too long.
        requireOneLine(error, path);
    }
}

void readScript(const std::string& text)
{
    try {
        const Script script = Script::parse(text, "script.txt");
        bool hasPicture = false;
        for (const ScriptCommand& command : script.getCommands()) {
            requireIsKept(command);
            if (command.kind == ScriptCommand::Kind::Shot && !hasPicture) {
                hasPicture = true;
                requireStaysInFolder(command.text);
            }
        }
    } catch (const ViewerError& error) {
        requireOneLine(error, "script.txt:");
    }
}

void readArguments(const std::string& text)
{
    std::vector<std::string> arguments;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        arguments.push_back(line);
    }
    try {
        CommandLine::parse(arguments);
    } catch (const ViewerError& error) {
        requireOneLine(error, "");
    }
}

} // namespace

int LLVMFuzzerInitialize(int*, char***)
{
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, const std::size_t size)
{
    const std::string text(data, data + size);
    readScript(text);
    readArguments(text);
    return 0;
}
