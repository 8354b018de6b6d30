// SPDX-License-Identifier: MIT
#include "Viewer/Script/CommandLine.h"

#include "Viewer/Model/AssemblyGenerator.h"
#include "Viewer/Model/ViewerError.h"
#include "Viewer/Window/Languages.h"

#include <charconv>
#include <cstddef>
#include <system_error>

namespace quon::viewer {

namespace {

constexpr int BenchmarkPartCount = 100000;

int readPartCount(const std::string& text)
{
    int count = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, count);
    if (error != std::errc() || stop != end || count < 1 || count > AssemblyGenerator::LargestCount) {
        throw ViewerError("--generate", "needs a number of parts from 1 to " +
                                            std::to_string(AssemblyGenerator::LargestCount) + ", see --help");
    }
    return count;
}

} // namespace

CommandLine CommandLine::parse(const std::vector<std::string>& arguments)
{
    CommandLine line;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const auto takeValue = [&](std::string& value) {
            if (i + 1 >= arguments.size() || arguments[i + 1].empty()) {
                throw ViewerError(argument, "needs a value, see --help");
            }
            value = arguments[++i];
        };
        if (optionsEnded || argument.empty() || argument[0] != '-') {
            if (!line.model.empty() || argument.empty()) {
                throw ViewerError("'" + argument + "'", "one model at a time, see --help");
            }
            line.model = argument;
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (argument == "--help" || argument == "-h") {
            line.help = true;
        } else if (argument == "--version") {
            line.version = true;
        } else if (argument == "--headless") {
            line.headless = true;
        } else if (argument == "--benchmark") {
            line.benchmark = true;
        } else if (argument == "--script") {
            takeValue(line.script);
        } else if (argument == "--out") {
            takeValue(line.out);
        } else if (argument == "--record") {
            takeValue(line.record);
        } else if (argument == "--replay") {
            takeValue(line.replay);
        } else if (argument == "--language") {
            takeValue(line.language);
            if (!Languages::isKnown(line.language)) {
                throw ViewerError("--language", "knows en and de, see --help");
            }
        } else if (argument == "--generate") {
            std::string count;
            takeValue(count);
            line.partCount = readPartCount(count);
        } else {
            throw ViewerError(argument, "unknown option, see --help");
        }
    }
    if (line.help || line.version) {
        return line;
    }
    if (line.partCount != 0 && !line.model.empty()) {
        throw ViewerError("--generate", "takes the place of a model, see --help");
    }
    if (line.benchmark && line.headless) {
        throw ViewerError("--benchmark", "is without a display by itself, see --help");
    }
    if (line.benchmark && !(line.record.empty() && line.replay.empty())) {
        throw ViewerError(line.record.empty() ? "--replay" : "--record", "does not go with --benchmark, see --help");
    }
    if (line.benchmark && line.partCount == 0 && line.model.empty()) {
        line.partCount = BenchmarkPartCount;
    }
    const bool hasModel = line.partCount != 0 || !line.model.empty();
    if (line.headless && (!hasModel || line.script.empty() || line.out.empty())) {
        throw ViewerError("--headless", "needs a model, --script and --out, see --help");
    }
    if (!line.headless && !(line.script.empty() && line.out.empty())) {
        throw ViewerError(line.script.empty() ? "--out" : "--script", "goes with --headless only, see --help");
    }
    if (line.headless && !line.replay.empty()) {
        throw ViewerError("--replay", "goes with a window, --headless takes --script, see --help");
    }
    if (!hasModel && !line.replay.empty()) {
        throw ViewerError("--replay", "needs a model, see --help");
    }
    return line;
}

const char* CommandLine::getHelp()
{
    return "Usage: koviewer [--language L] [--record FILE] [--replay FILE] [MODEL | --generate N]\n"
           "       koviewer --headless --script FILE --out FOLDER [--record FILE] {MODEL | --generate N}\n"
           "       koviewer --benchmark [MODEL | --generate N]\n"
           "\n"
           "Shows a model of any format that Assimp reads and lets its parts be selected.\n"
           "\n"
           "  --headless     draws without any display and follows a script instead of the user\n"
           "  --script FILE  the script: one command a line, see README.md of koviewer,\n"
           "                 or - for standard input\n"
           "  --out FOLDER   where the script's pictures go; made where it is missing\n"
           "  --record FILE  writes the input as a script that does the same again\n"
           "  --replay FILE  follows a script in the window, then hands over to the user\n"
           "  --generate N   makes an assembly of N parts in place of a model, 1 to 5000000\n"
           "  --benchmark    draws without any display and prints how long things take\n"
           "  --language L   speaks English (en) or German (de), whatever was chosen in the window\n"
           "  --help, -h     shows this text\n"
           "  --version      shows the version\n"
           "\n"
           "Keys and mouse buttons are listed in the window. Bad input gives one line on standard\n"
           "error and the exit status 2. So does a recording that does not fit the model, with the\n"
           "exit status 3.\n";
}

} // namespace quon::viewer
