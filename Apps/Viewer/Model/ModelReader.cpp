// SPDX-License-Identifier: MIT
#include "Viewer/Model/ModelReader.h"

#include "Viewer/Model/AssimpInput.h"
#include "Viewer/Model/ViewerError.h"

#include <OpenSG/OSGGL.h>

#include <QFile>

#include <assimp/GltfMaterial.h>
#include <assimp/Importer.hpp>
#include <assimp/ProgressHandler.hpp>
#include <assimp/config.h>
#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cmath>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <locale.h>
#include <optional>
#include <system_error>
#include <utility>

namespace quon::viewer {

namespace {

// Edges sharper than this stay sharp where normals have to be made.
constexpr float SmoothingAngle = 40.0F;

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

/** What had to be left out of a file. */
struct Losses {
    unsigned meshes = 0;         ///< without any face that can be shown
    unsigned meshesInFile = 0;   ///< as many as there were
    unsigned faces = 0;          ///< of meshes that stay
    unsigned meshReferences = 0; ///< of nodes, to meshes that are not in the file
};

bool isFinite(const aiVector3D& vector)
{
    return std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z);
}

/** Takes out of a scene what would break the steps that follow or could not be drawn. */
class SceneCleaner {
public:
    SceneCleaner(aiScene& scene, const LoadControl& control)
        : m_scene(scene)
        , m_control(control)
    {}

    Losses clean()
    {
        m_losses.meshesInFile = m_scene.mNumMeshes;
        std::vector<unsigned> places(m_scene.mNumMeshes, Removed);
        unsigned kept = 0;
        for (unsigned i = 0; i < m_scene.mNumMeshes; ++i) {
            m_control.throwIfCancelled();
            aiMesh* mesh = m_scene.mMeshes[i];
            m_scene.mMeshes[i] = nullptr;
            if (mesh != nullptr && cleanMesh(*mesh)) {
                places[i] = kept;
                m_scene.mMeshes[kept++] = mesh;
            } else {
                delete mesh;
                ++m_losses.meshes;
            }
        }
        m_scene.mNumMeshes = kept;
        cleanNodes(places);
        return m_losses;
    }

private:
    static constexpr unsigned Removed = static_cast<unsigned>(-1);

    // Returns false when nothing of the mesh can be shown.
    bool cleanMesh(aiMesh& mesh)
    {
        // Nobody shows morph targets, and they need not fit the mesh.
        for (unsigned i = 0; i < mesh.mNumAnimMeshes; ++i) {
            delete mesh.mAnimMeshes[i];
        }
        delete[] mesh.mAnimMeshes;
        mesh.mAnimMeshes = nullptr;
        mesh.mNumAnimMeshes = 0;

        if (mesh.mVertices == nullptr || mesh.mNumVertices == 0) {
            return false;
        }
        if (mesh.mFaces == nullptr || mesh.mNumFaces == 0) {
            if (mesh.mPrimitiveTypes != aiPrimitiveType_POINT) {
                return false;
            }
            makePoints(mesh);
        }
        const unsigned lost = dropFaces(mesh);
        if (mesh.mNumFaces == 0) {
            return false;
        }
        m_losses.faces += lost;
        if (mesh.mNormals != nullptr && !hasUsableNormals(mesh)) {
            // New ones are made.
            delete[] mesh.mNormals;
            mesh.mNormals = nullptr;
        }
        if (mesh.mTextureCoords[0] != nullptr &&
            !std::all_of(mesh.mTextureCoords[0], mesh.mTextureCoords[0] + mesh.mNumVertices, isFinite)) {
            for (aiVector3D*& texCoords : mesh.mTextureCoords) {
                delete[] texCoords;
                texCoords = nullptr;
            }
        }
        return true;
    }

    // A cloud of points may come without faces.
    static void makePoints(aiMesh& mesh)
    {
        delete[] mesh.mFaces;
        mesh.mNumFaces = mesh.mNumVertices;
        mesh.mFaces = new aiFace[mesh.mNumFaces];
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            mesh.mFaces[i].mNumIndices = 1;
            mesh.mFaces[i].mIndices = new unsigned[1]{i};
        }
    }

    static unsigned dropFaces(aiMesh& mesh)
    {
        unsigned kept = 0;
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            aiFace& face = mesh.mFaces[i];
            const bool usable = face.mNumIndices > 0 && face.mIndices != nullptr &&
                                std::all_of(face.mIndices, face.mIndices + face.mNumIndices, [&](const unsigned index) {
                                    return index < mesh.mNumVertices && isFinite(mesh.mVertices[index]);
                                });
            if (usable) {
                std::swap(mesh.mFaces[kept].mNumIndices, face.mNumIndices);
                std::swap(mesh.mFaces[kept].mIndices, face.mIndices);
                ++kept;
            }
        }
        const unsigned lost = mesh.mNumFaces - kept;
        mesh.mNumFaces = kept;
        return lost;
    }

    static bool hasUsableNormals(const aiMesh& mesh)
    {
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            const aiFace& face = mesh.mFaces[i];
            for (unsigned corner = 0; face.mNumIndices > 2 && corner < face.mNumIndices; ++corner) {
                const aiVector3D& normal = mesh.mNormals[face.mIndices[corner]];
                if (!isFinite(normal) || normal == aiVector3D(0, 0, 0)) {
                    return false;
                }
            }
        }
        return true;
    }

    void cleanNodes(const std::vector<unsigned>& places)
    {
        // Not recursive: how deep a file nests its nodes is up to the file.
        std::vector<aiNode*> pending{m_scene.mRootNode};
        while (!pending.empty()) {
            aiNode& node = *pending.back();
            pending.pop_back();
            unsigned kept = 0;
            for (unsigned i = 0; i < node.mNumMeshes; ++i) {
                const unsigned mesh = node.mMeshes[i];
                if (mesh >= places.size()) {
                    ++m_losses.meshReferences;
                } else if (places[mesh] != Removed) {
                    node.mMeshes[kept++] = places[mesh];
                }
            }
            node.mNumMeshes = kept;
            aiNode** const end = std::remove(node.mChildren, node.mChildren + node.mNumChildren, nullptr);
            node.mNumChildren = static_cast<unsigned>(end - node.mChildren);
            pending.insert(pending.end(), node.mChildren, end);
        }
    }

    aiScene& m_scene;
    const LoadControl& m_control;
    Losses m_losses;
};

osg::Color3f toColour(const aiColor4D& colour)
{
    return osg::Color3f(colour.r, colour.g, colour.b);
}

float getFloat(const aiMaterial& material, const char* key, const float fallback)
{
    float value = fallback;
    return material.Get(key, 0, 0, value) == aiReturn_SUCCESS && std::isfinite(value) ? value : fallback;
}

ModelData::Material convertMaterial(const aiMaterial& source)
{
    aiColor4D diffuse(0.7F, 0.7F, 0.7F, 1);
    if (source.Get(AI_MATKEY_BASE_COLOR, diffuse) != aiReturn_SUCCESS) {
        source.Get(AI_MATKEY_COLOR_DIFFUSE, diffuse);
    }
    if (source.GetTextureCount(aiTextureType_DIFFUSE) > 0) {
        // The picture itself is not shown: a light grey comes nearest to what it would cover.
        diffuse = aiColor4D(0.8F, 0.8F, 0.8F, diffuse.a);
    }
    aiColor4D specular(0, 0, 0, 1);
    aiColor4D emission(0, 0, 0, 1);
    source.Get(AI_MATKEY_COLOR_SPECULAR, specular);
    source.Get(AI_MATKEY_COLOR_EMISSIVE, emission);

    float opacity = getFloat(source, "$mat.opacity", 1);
    aiString alphaMode;
    if (source.Get(AI_MATKEY_GLTF_ALPHAMODE, alphaMode) == aiReturn_SUCCESS &&
        std::strcmp(alphaMode.C_Str(), "OPAQUE") == 0) {
        opacity = 1;
    }
    // Exporters write 0 where they mean "not used"; a part that nobody can see helps nobody.
    if (!(opacity > 0)) {
        opacity = 1;
    }

    ModelData::Material material;
    material.name = const_cast<aiMaterial&>(source).GetName().C_Str();
    material.diffuse = toColour(diffuse);
    // A touch of shine for files that leave it out: without it dark parts lose their shape.
    material.specular =
        osg::Color3f(std::max(specular.r, 0.12F), std::max(specular.g, 0.12F), std::max(specular.b, 0.12F));
    material.shininess = std::clamp(getFloat(source, "$mat.shininess", 24), 8.0F, 128.0F);
    material.emission = toColour(emission);
    material.transparency = 1 - std::min(opacity, 1.0F);
    return material;
}

GLenum primitiveOf(const aiMesh& mesh)
{
    // The meshes are sorted: one kind each.
    switch (mesh.mPrimitiveTypes & (aiPrimitiveType_POINT | aiPrimitiveType_LINE | aiPrimitiveType_TRIANGLE)) {
    case aiPrimitiveType_POINT:
        return GL_POINTS;
    case aiPrimitiveType_LINE:
        return GL_LINES;
    default:
        return GL_TRIANGLES;
    }
}

template <class Value>
std::vector<Value> convertVectors(const aiVector3D* values, const unsigned count)
{
    std::vector<Value> converted;
    converted.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        converted.emplace_back(values[i].x, values[i].y, values[i].z);
    }
    return converted;
}

ModelData::Mesh convertMesh(const aiMesh& source)
{
    ModelData::Mesh mesh;
    mesh.primitive = static_cast<osg::UInt8>(primitiveOf(source));
    mesh.material = source.mMaterialIndex;
    mesh.positions = convertVectors<osg::Pnt3f>(source.mVertices, source.mNumVertices);
    if (source.HasNormals()) {
        mesh.normals = convertVectors<osg::Vec3f>(source.mNormals, source.mNumVertices);
    }
    if (source.HasVertexColors(0)) {
        mesh.colours.reserve(source.mNumVertices);
        for (unsigned i = 0; i < source.mNumVertices; ++i) {
            const aiColor4D& colour = source.mColors[0][i];
            mesh.colours.emplace_back(colour.r, colour.g, colour.b, colour.a);
        }
    }
    if (source.HasTextureCoords(0)) {
        mesh.texCoords.reserve(source.mNumVertices);
        for (unsigned i = 0; i < source.mNumVertices; ++i) {
            mesh.texCoords.emplace_back(source.mTextureCoords[0][i].x, source.mTextureCoords[0][i].y);
        }
    }
    mesh.indices.reserve(std::size_t(source.mNumFaces) * 3);
    for (unsigned face = 0; face < source.mNumFaces; ++face) {
        const aiFace& corners = source.mFaces[face];
        mesh.indices.insert(mesh.indices.end(), corners.mIndices, corners.mIndices + corners.mNumIndices);
    }
    return mesh;
}

osg::Matrix toMatrix(const aiMatrix4x4& m)
{
    // Both take rows here.
    return osg::Matrix(m.a1, m.a2, m.a3, m.a4, m.b1, m.b2, m.b3, m.b4, m.c1, m.c2, m.c3, m.c4, m.d1, m.d2, m.d3, m.d4);
}

/** Copies a scene that is fit to be drawn into plain arrays. */
class SceneConverter {
public:
    SceneConverter(const aiScene& scene, const LoadControl& control, ModelData& data)
        : m_scene(scene)
        , m_control(control)
        , m_data(data)
    {}

    void convert()
    {
        for (unsigned i = 0; i < m_scene.mNumMaterials; ++i) {
            m_data.materials.push_back(convertMaterial(*m_scene.mMaterials[i]));
        }
        convertNodes();
        convertMeshes();
    }

private:
    void convertNodes()
    {
        struct Entry {
            const aiNode* source;
            std::size_t parent;
        };
        std::vector<Entry> pending{{m_scene.mRootNode, 0}};
        while (!pending.empty()) {
            m_control.throwIfCancelled();
            const Entry entry = pending.back();
            pending.pop_back();
            const std::size_t place = m_data.nodes.size();
            ModelData::Node node;
            node.name = entry.source->mName.C_Str();
            node.matrix = toMatrix(entry.source->mTransformation);
            node.parent = entry.parent;
            node.meshes.assign(entry.source->mMeshes, entry.source->mMeshes + entry.source->mNumMeshes);
            m_data.nodes.push_back(std::move(node));
            for (unsigned i = entry.source->mNumChildren; i > 0; --i) {
                pending.push_back({entry.source->mChildren[i - 1], place});
            }
        }
    }

    // Meshes that no node uses are not taken along.
    void convertMeshes()
    {
        std::vector<std::size_t> places(m_scene.mNumMeshes, static_cast<std::size_t>(-1));
        for (ModelData::Node& node : m_data.nodes) {
            for (std::size_t& mesh : node.meshes) {
                std::size_t& place = places.at(mesh);
                if (place == static_cast<std::size_t>(-1)) {
                    m_control.throwIfCancelled();
                    place = m_data.meshes.size();
                    m_data.meshes.push_back(convertMesh(*m_scene.mMeshes[mesh]));
                }
                mesh = place;
            }
        }
    }

    const aiScene& m_scene;
    const LoadControl& m_control;
    ModelData& m_data;
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
        , m_progress(new StepProgress(control, static_cast<int>(Steps.size())))
    {
        // Both are the importer's from here on.
        m_importer.SetIOHandler(m_files);
        m_importer.SetProgressHandler(m_progress);
        m_importer.SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, SmoothingAngle);
        m_importer.SetPropertyInteger(AI_CONFIG_PP_RVC_FLAGS, Unused);
    }

    ModelData read()
    {
        m_control.report(LoadControl::Step::Reading, 0);
        const PlainNumbers plainNumbers;
        const aiScene* scene = m_importer.ReadFile(m_file, 0);
        m_control.throwIfCancelled();
        checkScene(scene);
        const Losses losses = SceneCleaner(*const_cast<aiScene*>(scene), m_control).clean();
        if (scene->mNumMeshes == 0) {
            fail(losses.meshes > 0 ? ModelReader::tr("none of its meshes can be shown")
                                   : ModelReader::tr("holds no meshes"));
        }
        if (!hasMeshInNode(*scene)) {
            fail(ModelReader::tr("holds no meshes"));
        }
        for (const unsigned step : Steps) {
            m_progress->startStep();
            scene = m_importer.ApplyPostProcessing(step);
            m_control.throwIfCancelled();
            checkScene(scene);
        }

        ModelData data;
        SceneConverter(*scene, m_control, data).convert();
        const Convention convention = findConvention(m_importer, *scene, m_file);
        data.metresPerUnit = convention.metresPerUnit;
        data.upAxis = convention.upAxis.value_or(UpAxis::Y);
        data.isUpAxisStated = convention.upAxis.has_value();
        data.missing = describeLosses(losses);
        return data;
    }

private:
    // One by one: between them there is a chance to stop.
    static constexpr std::array<unsigned, 5> Steps{aiProcess_RemoveComponent, aiProcess_Triangulate,
                                                   aiProcess_SortByPType, aiProcess_GenSmoothNormals,
                                                   aiProcess_JoinIdenticalVertices};

    // What nobody shows, and what would keep vertices apart that look the same.
    static constexpr int Unused = static_cast<int>(aiComponent_ANIMATIONS) | static_cast<int>(aiComponent_BONEWEIGHTS) |
                                  static_cast<int>(aiComponent_CAMERAS) | static_cast<int>(aiComponent_LIGHTS) |
                                  static_cast<int>(aiComponent_TANGENTS_AND_BITANGENTS) |
                                  static_cast<int>(aiComponent_TEXTURES);

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

    QStringList describeLosses(const Losses& losses) const
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
