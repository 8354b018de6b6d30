// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace quon::viewer {

/**
 * What the viewer cannot go on with: bad input or a missing drawing environment.
 *
 * The text is one line for the user; it names the file (and the line, where there is one) and the reason.
 */
class ViewerError : public std::runtime_error {
public:
    explicit ViewerError(const std::string& line)
        : std::runtime_error(line)
    {}

    /** `subject: reason`, with everything that would break the line replaced by blanks. */
    ViewerError(const std::string& subject, const std::string& reason)
        : std::runtime_error(oneLine(subject + ": " + reason))
    {}

    /** Replaces control characters by blanks, runs of them by one, and drops those at the end. */
    static std::string oneLine(const std::string& text)
    {
        std::string line;
        for (const char character : text) {
            const bool blank = static_cast<unsigned char>(character) <= 0x20 || character == 0x7f;
            if (!blank) {
                line += character;
            } else if (!line.empty() && line.back() != ' ') {
                line += ' ';
            }
        }
        while (!line.empty() && line.back() == ' ') {
            line.pop_back();
        }
        return line;
    }
};

} // namespace quon::viewer
