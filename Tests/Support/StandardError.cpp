// SPDX-License-Identifier: MIT
#include "Support/StandardError.h"

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include <unistd.h>

// Present in sanitizer builds only: their reports must not vanish in the capture.
extern "C" __attribute__((weak)) void __sanitizer_set_report_fd(void* descriptor);

namespace quon::testing {

namespace {

int savedDescriptor = -1;
std::FILE* captureFile = nullptr;
long takenUntil = 0;

// A crash must not take its message along.
void showCaptureAndDie(int signalNumber)
{
    char buffer[4096];
    long position = 0;
    while (captureFile != nullptr) {
        const ssize_t length = pread(fileno(captureFile), buffer, sizeof buffer, position);
        if (length <= 0 || write(savedDescriptor, buffer, static_cast<std::size_t>(length)) != length) {
            break;
        }
        position += static_cast<long>(length);
    }
    std::signal(signalNumber, SIG_DFL);
    std::raise(signalNumber);
}

} // namespace

void StandardError::startCapture()
{
    std::cerr.flush();
    std::fflush(stderr);
    captureFile = std::tmpfile();
    if (captureFile == nullptr) {
        std::perror("tmpfile");
        std::abort();
    }
    savedDescriptor = dup(STDERR_FILENO);
    dup2(fileno(captureFile), STDERR_FILENO);
    takenUntil = 0;

    if (__sanitizer_set_report_fd != nullptr) {
        // The interface takes the descriptor in the clothes of a pointer.
        __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(savedDescriptor)));
    } else {
        std::signal(SIGSEGV, showCaptureAndDie);
    }
    std::signal(SIGABRT, showCaptureAndDie);
}

std::string StandardError::take()
{
    std::cerr.flush();
    std::fflush(stderr);
    std::string text;
    // The descriptor is shared with the writer: pread leaves the position where the next message goes.
    char buffer[4096];
    for (;;) {
        const ssize_t length = pread(fileno(captureFile), buffer, sizeof buffer, takenUntil);
        if (length <= 0) {
            return text;
        }
        text.append(buffer, static_cast<std::size_t>(length));
        takenUntil += static_cast<long>(length);
    }
}

std::string StandardError::endCapture()
{
    std::string text = take();
    dup2(savedDescriptor, STDERR_FILENO);
    if (__sanitizer_set_report_fd != nullptr) {
        __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(STDERR_FILENO)));
    }
    close(savedDescriptor);
    std::fclose(captureFile);
    savedDescriptor = -1;
    captureFile = nullptr;
    return text;
}

} // namespace quon::testing
