// SPDX-License-Identifier: MIT
#include "Support/Fuzzer.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// Carries out files once each, in the order of their names: those of the folders that are named, and the files named.
int main(int argc, char** argv)
{
    LLVMFuzzerInitialize(&argc, &argv);

    std::vector<std::filesystem::path> files;
    for (int index = 1; index < argc; ++index) {
        if (std::filesystem::is_directory(argv[index])) {
            files.insert(files.end(), std::filesystem::directory_iterator(argv[index]),
                         std::filesystem::directory_iterator());
        } else {
            files.emplace_back(argv[index]);
        }
    }
    std::sort(files.begin(), files.end());

    for (const std::filesystem::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        if (!stream) {
            std::fprintf(stderr, "%s cannot be read\n", file.c_str());
            return 2;
        }
        // The last word before a crash.
        std::printf("%s\n", file.filename().c_str());
        std::fflush(stdout);
        const std::vector<char> content{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        const std::vector<std::uint8_t> bytes(content.begin(), content.end());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("%zu inputs\n", files.size());
    if (files.empty()) {
        std::fprintf(stderr, "There is no input\n");
        return 2;
    }
    return 0;
}
