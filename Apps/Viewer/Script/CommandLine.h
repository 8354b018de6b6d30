// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace quon::viewer {

/** What the user asked koviewer for. */
struct CommandLine {
    /** In place of a script's name: each line is carried out as soon as it is there. */
    static constexpr const char* StandardInput = "-";

    bool help = false;
    bool version = false;
    bool headless = false;
    bool benchmark = false;
    std::string model; ///< empty: none given
    int partCount = 0; ///< of the assembly to generate in place of a model; 0: none wanted
    std::string script;
    std::string out;
    std::string record;   ///< the file that the input is written to
    std::string replay;   ///< the script that a window follows
    std::string language; ///< code of the language to speak, empty: as it is remembered

    /**
     * Reads the arguments after the program's name.
     *
     * Headless needs a model (or a generated assembly), a script and an output folder, which no other use takes. A
     * replay needs a model and a window. A benchmark without a model has a generated assembly of 100,000 parts.
     *
     * @throws ViewerError for what it does not understand
     */
    static CommandLine parse(const std::vector<std::string>& arguments);

    /** The text of --help. */
    static const char* getHelp();
};

} // namespace quon::viewer
