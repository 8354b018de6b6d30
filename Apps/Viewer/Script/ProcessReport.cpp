// SPDX-License-Identifier: MIT
#include "Viewer/Script/ProcessReport.h"

#include "Viewer/Model/ContainerCount.h"

#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <system_error>

#if defined(__SANITIZE_ADDRESS__)
#define KO_SANITIZED_HEAP
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KO_SANITIZED_HEAP
#endif
#endif
#ifdef KO_SANITIZED_HEAP
// Of the sanitizer's own heap; gcc brings no header that declares it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // NOLINT(bugprone-reserved-identifier)
#endif

namespace quon::viewer {

namespace {

std::size_t countAllocated()
{
#ifdef KO_SANITIZED_HEAP
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
#endif
}

std::size_t countResident()
{
    std::ifstream pages("/proc/self/statm");
    std::size_t size = 0;
    std::size_t resident = 0;
    pages >> size >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

std::size_t countFiles()
{
    std::error_code error;
    const std::filesystem::directory_iterator files("/proc/self/fd", error);
    // The folder is open while it is read.
    return error ? 0 : static_cast<std::size_t>(std::distance(begin(files), end(files))) - 1;
}

std::size_t countContainers()
{
    ContainerCount count;
    count.proceed(std::numeric_limits<std::size_t>::max());
    return count.getCount();
}

} // namespace

ProcessReport ProcessReport::take()
{
    malloc_trim(0);
    ProcessReport report;
    report.containers = countContainers();
    report.resident = countResident();
    report.allocated = countAllocated();
    report.files = countFiles();
    return report;
}

std::string ProcessReport::write() const
{
    return "containers " + std::to_string(containers) + " resident " + std::to_string(resident) + " allocated " +
           std::to_string(allocated) + " files " + std::to_string(files);
}

} // namespace quon::viewer
