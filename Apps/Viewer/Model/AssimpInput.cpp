// SPDX-License-Identifier: MIT
#include "Viewer/Model/AssimpInput.h"

#include <assimp/DefaultLogger.hpp>
#include <assimp/IOStream.hpp>
#include <assimp/LogStream.hpp>
#include <assimp/Logger.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <utility>

namespace quon::viewer {

namespace {

// A whole file is often asked for in one piece, which may take long.
constexpr std::size_t LargestPiece = std::size_t(1) << 22;

// Files may have millions of errors; the first ones say what is wrong.
constexpr std::size_t LargestNumberOfMessages = 100;

constexpr std::array<const char*, 18> PictureExtensions{
    ".bmp", ".dds", ".exr", ".gif", ".hdr", ".jpeg", ".jpg",  ".ktx",  ".ktx2",
    ".pcx", ".png", ".ppm", ".psd", ".tga", ".tif",  ".tiff", ".webp", ".xpm",
};

std::string toLower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](const unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return text;
}

std::string extensionOf(const std::string& name)
{
    return toLower(std::filesystem::path(name).extension().string());
}

bool isPicture(const std::string& name)
{
    const std::string extension = extensionOf(name);
    return std::find(PictureExtensions.begin(), PictureExtensions.end(), extension) != PictureExtensions.end();
}

// Files come from systems with either separator.
std::string withoutFolders(const std::string& path)
{
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

thread_local std::vector<std::string>* currentMessages = nullptr;

} // namespace

/** A file that is being read; owns what does the reading. */
class AssimpFiles::Stream : public Assimp::IOStream {
public:
    Stream(Assimp::IOStream* stream, const LoadControl& control, const bool reports)
        : m_stream(stream)
        , m_control(control)
        , m_reports(reports)
    {}

    std::size_t Read(void* buffer, const std::size_t size, const std::size_t count) override
    {
        if (size == 0) {
            return 0;
        }
        const std::size_t wanted = size * count;
        std::size_t done = 0;
        while (done < wanted && !m_control.isCancelled()) {
            const std::size_t piece = std::min(wanted - done, LargestPiece);
            const std::size_t length = m_stream->Read(static_cast<char*>(buffer) + done, 1, piece);
            done += length;
            report();
            if (length < piece) {
                break;
            }
        }
        return done / size;
    }

    std::size_t Write(const void* buffer, const std::size_t size, const std::size_t count) override
    {
        return m_stream->Write(buffer, size, count);
    }

    aiReturn Seek(const std::size_t offset, const aiOrigin origin) override { return m_stream->Seek(offset, origin); }
    std::size_t Tell() const override { return m_stream->Tell(); }
    std::size_t FileSize() const override { return m_stream->FileSize(); }
    void Flush() override { m_stream->Flush(); }

private:
    void report()
    {
        if (!m_reports) {
            return;
        }
        const std::size_t size = m_stream->FileSize();
        const std::size_t place = m_stream->Tell();
        if (place >= size) {
            // How long it takes to understand what was read is anybody's guess.
            m_control.report(LoadControl::Step::Reading, -1);
        } else if (place > m_reported && place - m_reported >= size / 200) {
            m_reported = place;
            m_control.report(LoadControl::Step::Reading, static_cast<double>(place) / static_cast<double>(size));
        }
    }

    std::unique_ptr<Assimp::IOStream> m_stream;
    const LoadControl& m_control;
    bool m_reports;
    std::size_t m_reported = 0;
};

AssimpFiles::AssimpFiles(std::string file, const LoadControl& control)
    : m_file(std::move(file))
    , m_control(control)
{}

Assimp::IOStream* AssimpFiles::Open(const char* file, const char* mode)
{
    Assimp::IOStream* stream = DefaultIOSystem::Open(file, mode);
    if (stream != nullptr) {
        return new Stream(stream, m_control, file == m_file); // the caller's, ended by Close()
    }
    const std::string name = withoutFolders(file);
    if (std::find(m_missing.begin(), m_missing.end(), name) == m_missing.end()) {
        m_missing.push_back(name);
    }
    return nullptr;
}

std::vector<std::string> AssimpFiles::getMissingFiles() const
{
    const std::string model = std::filesystem::path(m_file).stem().string();
    std::vector<std::string> missing;
    std::vector<std::string> beside;
    const auto isBesideModel = [&](const std::string& name) { return name.compare(0, model.size(), model) == 0; };
    for (const std::string& name : m_missing) {
        if (name.empty() || isPicture(name)) {
            continue;
        }
        (isBesideModel(name) ? beside : missing).push_back(name);
    }
    // The material library of a model is usually called like the model; it is also what is tried in place of another.
    for (const std::string& name : beside) {
        const std::string extension = extensionOf(name);
        const bool inPlaceOfAnother = std::any_of(
            missing.begin(), missing.end(), [&](const std::string& other) { return extensionOf(other) == extension; });
        if (extension == ".mtl" && !inPlaceOfAnother) {
            missing.push_back(name);
        }
    }
    return missing;
}

/** Passes what means a loss on to the collector of the thread. */
class AssimpErrors::Log : public Assimp::Logger {
public:
    // Assimp keeps it for the rest of the process.
    static void install()
    {
        static const bool installed = [] {
            Assimp::DefaultLogger::set(new Log);
            return true;
        }();
        static_cast<void>(installed);
    }

    bool attachStream(Assimp::LogStream*, unsigned) override { return false; }
    bool detachStream(Assimp::LogStream*, unsigned) override { return false; }

protected:
    void OnDebug(const char*) override {}
    void OnVerboseDebug(const char*) override {}
    void OnInfo(const char*) override {}
    void OnWarn(const char* message) override
    {
        if (tellsOfLoss(message)) {
            add(message);
        }
    }

    void OnError(const char* message) override { add(message); }

private:
    // Most warnings are about files that are put right on the way.
    static bool tellsOfLoss(const std::string& message)
    {
        const auto contains = [&](const char* part) { return message.find(part) != std::string::npos; };
        return contains("kipping") || contains("nable to parse");
    }

    static void add(const char* message)
    {
        std::vector<std::string>* messages = currentMessages;
        if (messages != nullptr && messages->size() < LargestNumberOfMessages &&
            std::find(messages->begin(), messages->end(), message) == messages->end()) {
            messages->emplace_back(message);
        }
    }
};

AssimpErrors::AssimpErrors()
{
    Log::install();
    currentMessages = &m_messages;
}

AssimpErrors::~AssimpErrors()
{
    currentMessages = nullptr;
}

} // namespace quon::viewer
