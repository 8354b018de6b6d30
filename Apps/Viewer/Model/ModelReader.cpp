// SPDX-License-Identifier: MIT
#include "Viewer/Model/ModelReader.h"

#include "Viewer/Model/AssimpInput.h"
#include "Viewer/Model/AssimpScene.h"
#include "Viewer/Model/ViewerError.h"

#include <QFile>

#include <assimp/Importer.hpp>
#include <assimp/ProgressHandler.hpp>
#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cmath>
#include <exception>
#include <filesystem>
#include <fstream>
#include <locale.h>
#include <optional>
#include <system_error>
#include <utility>

namespace quon::viewer {

namespace {

constexpr double MetresPerInch = 0.0254;
constexpr double MetresPerFoot = 0.3048;

/**
 * Makes numbers mean in this thread what they mean in files: some of Assimp's readers ask the locale which character
 * the decimal separator is.
 */
class PlainNumbers {
public:
    PlainNumbers()
        : m_plain(newlocale(LC_NUMERIC_MASK, "C", duplocale(uselocale(nullptr))))
        , m_previous(m_plain != nullptr ? uselocale(m_plain) : nullptr)
    {}

    ~PlainNumbers()
    {
        if (m_plain != nullptr) {
            uselocale(m_previous);
            freelocale(m_plain);
        }
    }

    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;

private:
    locale_t m_plain;
    locale_t m_previous;
};

/** Passes on what Assimp says about its progress, as far as it is about the steps after reading. */
class StepProgress : public Assimp::ProgressHandler {
public:
    StepProgress(const LoadControl& control, const int steps)
        : m_control(control)
        , m_steps(steps)
    {}

    void startStep() { ++m_step; }

    bool Update(float) override { return !m_control.isCancelled(); }
    void UpdateFileRead(int, int) override {}

    void UpdatePostProcess(const int current, const int total) override
    {
        const double share = total > 0 ? static_cast<double>(current) / total : 0;
        m_control.report(LoadControl::Step::Preparing, (m_step - 1 + share) / m_steps);
    }

private:
    const LoadControl& m_control;
    int m_steps;
    int m_step = 0;
};

// What the coordinates that Assimp hands over mean.
struct Convention {
    double metresPerUnit = 0;
    std::optional<UpAxis> upAxis;
};

/**
 * Conventions by what the format demands and Assimp 5.2 has done about it: it turns these formats so that y is up
 * unless said otherwise here, and converts Collada and IFC to metres. Formats not listed leave it to the author.
 */
struct FormatConvention {
    const char* extension; ///< the first one of Assimp's reader
    Convention convention;
};

const std::array<FormatConvention, 18>& getFormatConventions()
{
    static const std::array<FormatConvention, 18> conventions{{
        {"3ds", {0, UpAxis::Y}},
        {"3mf", {0, UpAxis::Z}},
        {"ase", {0, UpAxis::Y}},
        {"blend", {0, UpAxis::Z}},
        {"dae", {1, UpAxis::Y}},
        {"dxf", {0, UpAxis::Y}},
        {"gltf", {1, UpAxis::Y}},
        {"ifc", {1, UpAxis::Y}},
        {"iqm", {0, UpAxis::Y}},
        {"lwo", {1, UpAxis::Y}},
        {"lws", {1, UpAxis::Y}},
        {"md2", {0, UpAxis::Y}},
        {"md3", {0, UpAxis::Y}},
        {"md5mesh", {0, UpAxis::Y}},
        {"mdc", {0, UpAxis::Y}},
        {"mdl", {0, UpAxis::Y}},
        {"x3d", {1, UpAxis::Y}},
        {"amf", {0.001, std::nullopt}}, // unless the file says otherwise
    }};
    return conventions;
}

double getNumber(const aiMetadata& metadata, const char* key, const double fallback)
{
    double number = fallback;
    float single = 0;
    std::int32_t integer = 0;
    if (metadata.Get(key, number)) {
        return number;
    }
    if (metadata.Get(key, single)) {
        return static_cast<double>(single);
    }
    return metadata.Get(key, integer) ? static_cast<double>(integer) : fallback;
}

// Assimp leaves the coordinates as they are in the file.
Convention readFbxConvention(const aiScene& scene)
{
    Convention convention{0.01, UpAxis::Y};
    if (scene.mMetaData == nullptr) {
        return convention;
    }
    const double centimetres = getNumber(*scene.mMetaData, "UnitScaleFactor", 1);
    if (std::isfinite(centimetres) && centimetres > 0) {
        convention.metresPerUnit = centimetres / 100;
    }
    const double axis = getNumber(*scene.mMetaData, "UpAxis", 1);
    convention.upAxis = axis == 0 ? UpAxis::X : axis == 2 ? UpAxis::Z : UpAxis::Y;
    return convention;
}

// Assimp reads the unit and forgets it. It stands in the first element of the file.
double readAmfUnit(const std::string& file, const double fallback)
{
    std::ifstream stream(file, std::ios::binary);
    std::string head(4096, '\0');
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(stream.gcount()));
    const std::size_t element = head.find("<amf");
    const std::size_t end = element == std::string::npos ? element : head.find('>', element);
    const std::size_t unit = element == std::string::npos ? element : head.find("unit=", element);
    if (unit == std::string::npos || end == std::string::npos || unit > end || unit + 6 >= head.size()) {
        return fallback;
    }
    const std::size_t begin = unit + 6;
    const std::string word = head.substr(begin, head.find(head[begin - 1], begin) - begin);
    if (word == "meter") {
        return 1;
    }
    if (word == "inch") {
        return MetresPerInch;
    }
    if (word == "feet") {
        return MetresPerFoot;
    }
    return word == "micron" ? 1e-6 : fallback;
}

// The first extension of the reader that Assimp has chosen, which need not be that of the file.
std::string formatOf(const Assimp::Importer& importer)
{
    const int index = importer.GetPropertyInteger("importerIndex", -1);
    const aiImporterDesc* description = index < 0 ? nullptr : importer.GetImporterInfo(static_cast<std::size_t>(index));
    if (description == nullptr || description->mFileExtensions == nullptr) {
        return {};
    }
    const std::string extensions = description->mFileExtensions;
    return extensions.substr(0, extensions.find(' '));
}

Convention findConvention(const Assimp::Importer& importer, const aiScene& scene, const std::string& file)
{
    const std::string format = formatOf(importer);
    if (format == "fbx") {
        return readFbxConvention(scene);
    }
    Convention convention;
    for (const FormatConvention& candidate : getFormatConventions()) {
        if (format == candidate.extension) {
            convention = candidate.convention;
        }
    }
    if (format == "amf") {
        convention.metresPerUnit = readAmfUnit(file, convention.metresPerUnit);
    }
    return convention;
}

bool contains(const std::string& text, const char* part)
{
    return text.find(part) != std::string::npos;
}

// Told in other words already, or about what nobody shows.
bool isKnownMessage(const std::string& message)
{
    constexpr std::array<const char*, 13> Known{"locate material",
                                                "locate fallback material",
                                                "ailed to open",
                                                "nable to open",
                                                "exture",
                                                "nim",
                                                "amera",
                                                "ight ",
                                                "one index",
                                                "binormal",
                                                "tangent",
                                                "VMAP",
                                                "UV"};
    return std::any_of(Known.begin(), Known.end(), [&](const char* part) { return contains(message, part); });
}

} // namespace

/** Reads one file. */
class ModelReader::Run {
public:
    Run(const std::string& file, const LoadControl& control)
        : m_file(file)
        , m_control(control)
        , m_files(new AssimpFiles(file, control))
        , m_progress(new StepProgress(control, static_cast<int>(AssimpSteps.size())))
    {
        // Both are the importer's from here on.
        m_importer.SetIOHandler(m_files);
        m_importer.SetProgressHandler(m_progress);
        configureAssimpSteps(m_importer);
    }

    ModelData read()
    {
        m_control.report(LoadControl::Step::Reading, 0);
        const PlainNumbers plainNumbers;
        const aiScene* scene = m_importer.ReadFile(m_file, 0);
        m_control.throwIfCancelled();
        checkScene(scene);
        const AssimpLosses losses = cleanAssimpScene(*const_cast<aiScene*>(scene), m_control);
        if (scene->mNumMeshes == 0) {
            fail(losses.meshes > 0 ? ModelReader::tr("none of its meshes can be shown")
                                   : ModelReader::tr("holds no meshes"));
        }
        if (!hasMeshInNode(*scene)) {
            fail(ModelReader::tr("holds no meshes"));
        }
        for (const unsigned step : AssimpSteps) {
            m_progress->startStep();
            scene = m_importer.ApplyPostProcessing(step);
            m_control.throwIfCancelled();
            checkScene(scene);
        }

        ModelData data;
        convertAssimpScene(*scene, m_control, data);
        const Convention convention = findConvention(m_importer, *scene, m_file);
        data.metresPerUnit = convention.metresPerUnit;
        data.upAxis = convention.upAxis.value_or(UpAxis::Y);
        data.isUpAxisStated = convention.upAxis.has_value();
        data.missing = describeLosses(losses);
        return data;
    }

private:
    [[noreturn]] void fail(const QString& reason) const { throw ViewerError(m_file, reason.toStdString()); }

    void checkScene(const aiScene* scene) const
    {
        if (scene == nullptr || scene->mRootNode == nullptr) {
            fail(explain());
        }
    }

    QString explain() const
    {
        const std::string error = m_importer.GetErrorString();
        if (contains(error, "No suitable reader")) {
            const std::string extension = std::filesystem::path(m_file).extension().string();
            return !extension.empty() && m_importer.IsExtensionSupported(extension)
                       ? ModelReader::tr("is damaged, or not of the format that its name says")
                       : ModelReader::tr("unknown format");
        }
        for (const std::string& name : m_files->getUnopenedFiles()) {
            if (!name.empty() && contains(error, name.c_str())) {
                return ModelReader::tr("refers to %1, which is not there").arg(QFile::decodeName(name.c_str()));
            }
        }
        return error.empty() ? ModelReader::tr("cannot be read")
                             : ModelReader::tr("cannot be read: %1").arg(QString::fromStdString(error));
    }

    static bool hasMeshInNode(const aiScene& scene)
    {
        std::vector<const aiNode*> pending{scene.mRootNode};
        while (!pending.empty()) {
            const aiNode* node = pending.back();
            pending.pop_back();
            if (node->mNumMeshes > 0) {
                return true;
            }
            pending.insert(pending.end(), node->mChildren, node->mChildren + node->mNumChildren);
        }
        return false;
    }

    QStringList describeLosses(const AssimpLosses& losses) const
    {
        QStringList lines;
        if (losses.meshes > 0) {
            lines << ModelReader::tr("%n of %1 meshes could not be read.", nullptr, static_cast<int>(losses.meshes))
                         .arg(losses.meshesInFile);
        }
        if (losses.faces > 0) {
            lines << ModelReader::tr("%n faces could not be read.", nullptr, static_cast<int>(losses.faces));
        }
        if (losses.meshReferences > 0) {
            lines << ModelReader::tr("%n meshes are used but not in the file.", nullptr,
                                     static_cast<int>(losses.meshReferences));
        }
        for (const std::string& name : m_files->getMissingFiles()) {
            lines << ModelReader::tr("The file %1 is missing.").arg(QFile::decodeName(name.c_str()));
        }
        return lines << describeErrors();
    }

    QStringList describeErrors() const
    {
        std::vector<std::string> messages = m_errors.getMessages();
        messages.erase(std::remove_if(messages.begin(), messages.end(), isKnownMessage), messages.end());
        if (messages.empty()) {
            return {};
        }
        const QString first = QString::fromStdString(ViewerError::oneLine(messages.front()));
        if (messages.size() == 1) {
            return {ModelReader::tr("The reader reported: %1").arg(first)};
        }
        return {
            ModelReader::tr("The reader reported %n problems, first: %1", nullptr, static_cast<int>(messages.size()))
                .arg(first)};
    }

    const std::string& m_file;
    const LoadControl& m_control;
    AssimpErrors m_errors;
    Assimp::Importer m_importer;
    AssimpFiles* m_files;
    StepProgress* m_progress;
};

ModelData ModelReader::read(const std::string& file, const LoadControl& control)
{
    checkFile(file);
    try {
        return Run(file, control).read();
    } catch (const ViewerError&) {
        throw;
    } catch (const std::exception& error) {
        throw ViewerError(file, tr("cannot be read: %1").arg(QString::fromLocal8Bit(error.what())).toStdString());
    }
}

void ModelReader::checkFile(const std::string& file)
{
    namespace fs = std::filesystem;
    const auto fail = [&](const QString& reason) { throw ViewerError(file, reason.toStdString()); };
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found) {
        fail(tr("no such file"));
    }
    if (error) {
        fail(QString::fromLocal8Bit(error.message().c_str()));
    }
    if (fs::is_directory(status)) {
        fail(tr("is a directory"));
    }
    if (!fs::is_regular_file(status)) {
        fail(tr("is not a regular file"));
    }
    const auto size = fs::file_size(file, error);
    if (error) {
        fail(QString::fromLocal8Bit(error.message().c_str()));
    }
    if (size == 0) {
        fail(tr("is empty"));
    }
    if (!std::ifstream(file, std::ios::binary)) {
        fail(tr("may not be read"));
    }
}

std::vector<ModelReader::Format> ModelReader::getFormats()
{
    const Assimp::Importer importer;
    std::vector<Format> formats;
    for (std::size_t i = 0; i < importer.GetImporterCount(); ++i) {
        const aiImporterDesc* description = importer.GetImporterInfo(i);
        if (description == nullptr) {
            continue;
        }
        const QStringList extensions =
            QString::fromLatin1(description->mFileExtensions).toLower().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (!extensions.isEmpty()) {
            formats.push_back({QString::fromUtf8(description->mName), extensions});
        }
    }
    std::sort(formats.begin(), formats.end(), [](const Format& left, const Format& right) {
        return left.name.compare(right.name, Qt::CaseInsensitive) < 0;
    });
    return formats;
}

} // namespace quon::viewer
