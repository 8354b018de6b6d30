// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/SceneRenderer.h"

#include "Viewer/Model/GeometryData.h"
#include "Viewer/Model/SceneTraversal.h"
#include "Viewer/Model/ViewerError.h"

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <GL/glext.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quon::viewer {

namespace {

constexpr GLuint PositionAttribute = 0;
constexpr GLuint NormalAttribute = 1;
constexpr GLuint ColourAttribute = 2;

// What a geometry is made of when its material says nothing.
const osg::Color3f DefaultDiffuse(0.7F, 0.7F, 0.7F);

const char* const VertexShader = R"(
#version 120
attribute vec3 position;
attribute vec3 normal;
attribute vec4 colour;
uniform mat4 modelToEye;
uniform mat4 modelToClip;
uniform mat3 normalToEye;
varying vec3 eyePosition;
varying vec3 eyeNormal;
varying vec4 vertexColour;

void main()
{
    eyePosition = (modelToEye * vec4(position, 1.0)).xyz;
    eyeNormal = normalToEye * normal;
    vertexColour = colour;
    gl_Position = modelToClip * vec4(position, 1.0);
}
)";

// A key light and a weaker fill light that sit at the camera, and an even light from all around that is a little
// stronger from above: shape stays readable from every side.
const char* const FragmentShader = R"(
#version 120
uniform bool lit;
uniform bool hasNormals;
uniform bool hasColours;
uniform vec4 diffuse;
uniform vec3 emission;
uniform vec3 specular;
uniform float shininess;
varying vec3 eyePosition;
varying vec3 eyeNormal;
varying vec4 vertexColour;

void main()
{
    vec4 base = hasColours ? vec4(vertexColour.rgb, vertexColour.a * diffuse.a) : diffuse;
    if (!lit) {
        gl_FragColor = base;
        return;
    }
    vec3 toEye = normalize(-eyePosition);
    vec3 facing = cross(dFdx(eyePosition), dFdy(eyePosition));
    vec3 n = hasNormals && dot(eyeNormal, eyeNormal) > 0.0 ? eyeNormal : facing;
    n = dot(n, n) > 0.0 ? normalize(n) : toEye;
    // Surfaces have two sides; mirrored parts and wrong windings are lit like all others.
    n = dot(n, toEye) < 0.0 ? -n : n;

    vec3 key = normalize(vec3(-0.45, 0.65, 0.75));
    vec3 fill = normalize(vec3(0.75, -0.15, 0.55));
    float light = 0.36 + 0.08 * n.y + 0.56 * max(dot(n, key), 0.0) + 0.28 * max(dot(n, fill), 0.0);
    float shine = pow(max(dot(reflect(-key, n), toEye), 0.0), max(shininess, 1.0));
    gl_FragColor = vec4(emission + base.rgb * light + specular * shine, base.a);
}
)";

const char* const BackgroundVertexShader = R"(
#version 120
attribute vec3 position;
varying float height;

void main()
{
    height = position.y * 0.5 + 0.5;
    gl_Position = vec4(position.xy, 0.0, 1.0);
}
)";

const char* const BackgroundFragmentShader = R"(
#version 120
uniform vec3 top;
uniform vec3 bottom;
varying float height;

void main()
{
    gl_FragColor = vec4(mix(bottom, top, height), 1.0);
}
)";

GLuint compileShader(const GLenum kind, const char* source)
{
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled != GL_TRUE) {
        char log[1024] = {};
        glGetShaderInfoLog(shader, sizeof log, nullptr, log);
        glDeleteShader(shader);
        throw ViewerError("OpenGL shader", log);
    }
    return shader;
}

GLuint linkProgram(const char* vertexSource, const char* fragmentSource)
{
    const GLuint vertexShader = compileShader(GL_VERTEX_SHADER, vertexSource);
    const GLuint fragmentShader = compileShader(GL_FRAGMENT_SHADER, fragmentSource);
    const GLuint program = glCreateProgram();
    glAttachShader(program, vertexShader);
    glAttachShader(program, fragmentShader);
    glBindAttribLocation(program, PositionAttribute, "position");
    glBindAttribLocation(program, NormalAttribute, "normal");
    glBindAttribLocation(program, ColourAttribute, "colour");
    glLinkProgram(program);
    glDeleteShader(vertexShader);
    glDeleteShader(fragmentShader);
    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked != GL_TRUE) {
        char log[1024] = {};
        glGetProgramInfoLog(program, sizeof log, nullptr, log);
        glDeleteProgram(program);
        throw ViewerError("OpenGL program", log);
    }
    return program;
}

// A colour component as OpenGL may see it; NaN becomes 0.
float component(const float value)
{
    return value > 0 ? std::min(value, 1.0F) : 0.0F;
}

template <class Pointer>
osg::UInt32 idOf(const Pointer& container)
{
    return container == osg::NullFC ? 0 : osg::getContainerId(container);
}

bool isTransparent(const osg::MaterialPtr& material)
{
    if (material == osg::NullFC) {
        return false;
    }
    const osg::Int32 mode = material->getTransparencyMode();
    if (mode == osg::Material::TransparencyForceTransparent) {
        return true;
    }
    return mode != osg::Material::TransparencyForceOpaque && material->isTransparent();
}

// A number as OpenGL may see it: what is not finite becomes the replacement.
float number(const float value, const float replacement)
{
    return std::isfinite(value) ? value : replacement;
}

/** The chunks of a material that have an effect here; null where it has none of the kind. */
struct Chunks {
    osg::LineChunkPtr line;
    osg::BlendChunkPtr blend;
    osg::PolygonChunkPtr polygon;
    bool depthTest = true;
    GLenum depthFunction = GL_LEQUAL;
    bool depthReadOnly = false;
    osg::Real32 depthNear = -1;
    osg::Real32 depthFar = -1;

    explicit Chunks(const osg::MaterialPtr& material)
    {
        const osg::ChunkMaterialPtr chunkMaterial =
            material == osg::NullFC ? osg::ChunkMaterialPtr(osg::NullFC) : osg::ChunkMaterialPtr::dcast(material);
        if (chunkMaterial == osg::NullFC) {
            return;
        }
        const auto& chunks = *chunkMaterial->getMFChunks();
        for (osg::UInt32 i = 0; i < chunks.size(); ++i) {
            const osg::StateChunkPtr chunk = chunks[i];
            if (chunk == osg::NullFC || chunk->getIgnore()) {
                continue;
            }
            // The depth-test chunk is one of these.
            if (const osg::DepthChunkPtr depth = osg::DepthChunkPtr::dcast(chunk); depth != osg::NullFC) {
                depthTest = depth->getEnable();
                depthFunction = depth->getFunc();
                depthReadOnly = depth->getReadOnly();
                depthNear = depth->getNear();
                depthFar = depth->getFar();
            }
            take(chunk, line);
            take(chunk, blend);
            take(chunk, polygon);
        }
    }

private:
    template <class Pointer>
    static void take(const osg::StateChunkPtr& chunk, Pointer& target)
    {
        const Pointer candidate = Pointer::dcast(chunk);
        if (candidate != osg::NullFC) {
            target = candidate;
        }
    }
};

struct DrawItem {
    GeometryInstance instance;
    osg::Int32 sortKey;
    double depth; ///< distance in front of the eye
};

void setEnabled(const GLenum capability, const bool enabled)
{
    if (enabled) {
        glEnable(capability);
    } else {
        glDisable(capability);
    }
}

// The state of a new context, as far as anything here changes it.
void resetState()
{
    for (const int capability :
         {GL_DEPTH_TEST, GL_BLEND, GL_ALPHA_TEST, GL_LINE_SMOOTH, GL_LINE_STIPPLE, GL_CULL_FACE, GL_POLYGON_SMOOTH,
          GL_POLYGON_OFFSET_POINT, GL_POLYGON_OFFSET_LINE, GL_POLYGON_OFFSET_FILL}) {
        glDisable(static_cast<GLenum>(capability));
    }
    glDepthFunc(GL_LESS);
    glDepthMask(GL_TRUE);
    glDepthRange(0, 1);
    glBlendFunc(GL_ONE, GL_ZERO);
    glBlendEquation(GL_FUNC_ADD);
    glBlendColor(0, 0, 0, 0);
    glAlphaFunc(GL_ALWAYS, 0);
    glLineWidth(1);
    glPointSize(1);
    glFrontFace(GL_CCW);
    glCullFace(GL_BACK);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glPolygonOffset(0, 0);
    glUseProgram(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    for (const GLuint attribute : {PositionAttribute, NormalAttribute, ColourAttribute}) {
        glDisableVertexAttribArray(attribute);
    }
}

// Vertices as they lie in the buffer.
struct Vertex {
    float position[3];
    float normal[3];
    float colour[4];
};

const void* offsetInBuffer(const std::size_t offset)
{
    // OpenGL takes offsets in the clothes of pointers.
    return reinterpret_cast<const void*>(offset); // NOLINT(performance-no-int-to-ptr)
}

} // namespace

class SceneRenderer::Implementation final : private SceneVisitor {
public:
    Statistics draw(const osg::NodePtr& root, const Matrix4& view, const Matrix4& projection, const int width,
                    const int height)
    {
        if (m_program == 0) {
            createPrograms();
        }
        deleteDoomedBuffers();

        m_view = view;
        m_projection = projection;
        m_opaque.clear();
        m_transparent.clear();
        m_uploaded = 0;
        traverseScene(root, m_travMask, *this);
        std::stable_sort(m_opaque.begin(), m_opaque.end(),
                         [](const DrawItem& a, const DrawItem& b) { return a.sortKey < b.sortKey; });
        std::stable_sort(m_transparent.begin(), m_transparent.end(), [](const DrawItem& a, const DrawItem& b) {
            return a.sortKey != b.sortKey ? a.sortKey < b.sortKey : a.depth > b.depth;
        });

        glViewport(0, 0, width, height);
        resetState();
        glClear(GL_DEPTH_BUFFER_BIT);
        drawBackground();
        glUseProgram(m_program);
        drawPass(m_opaque, false);
        drawPass(m_transparent, true);
        resetState();

        const Statistics statistics{m_opaque.size(), m_transparent.size(), m_uploaded, m_meshes.size()};
        // Handles keep nothing alive: none is kept beyond the frame.
        m_opaque.clear();
        m_transparent.clear();
        return statistics;
    }

    void sceneChanged(const SceneChanges& changes)
    {
        if (m_meshes.empty()) {
            return;
        }
        std::unordered_set<osg::UInt32> changedProperties;
        for (const auto& [id, mask] : changes.getChanged()) {
            const auto mesh = m_meshes.find(id);
            if (mesh != m_meshes.end()) {
                // Copies of a node share its geometry and come and go: they change its parents only.
                mesh->second.stale = mesh->second.stale || (mask & ~osg::NodeCore::ParentsFieldMask) != 0;
            } else if ((mask & ~osg::Attachment::ParentsFieldMask) != 0) {
                changedProperties.insert(id);
            }
        }
        if (!changedProperties.empty()) {
            for (auto& [id, mesh] : m_meshes) {
                for (const osg::UInt32 property : mesh.properties) {
                    mesh.stale = mesh.stale || changedProperties.count(property) != 0;
                }
            }
        }
        for (const osg::UInt32 id : changes.getDestroyed()) {
            const auto mesh = m_meshes.find(id);
            if (mesh != m_meshes.end()) {
                // No context may be current now: the buffers go at the next drawing.
                doom(mesh->second);
                m_meshes.erase(mesh);
            }
        }
    }

    void releaseResources()
    {
        for (auto& [id, mesh] : m_meshes) {
            doom(mesh);
        }
        m_meshes.clear();
        deleteDoomedBuffers();
        if (m_program != 0) {
            glDeleteBuffers(1, &m_backgroundVertices);
            glDeleteProgram(m_backgroundProgram);
            glDeleteProgram(m_program);
        }
        m_backgroundVertices = m_backgroundProgram = m_program = 0;
    }

    osg::Color3f m_top;
    osg::Color3f m_bottom;
    float m_pixelRatio = 1;
    osg::UInt32 m_travMask = 0xFFFFFFFF;

private:
    struct Mesh {
        GLuint vertices = 0;
        GLuint indices = 0;
        GLsizei triangles = 0; ///< numbers of indices; the three kinds follow each other in the buffer
        GLsizei lines = 0;
        GLsizei points = 0;
        bool hasNormals = false;
        bool hasColours = false;
        bool stale = true;
        osg::Pnt3f centre;
        std::array<osg::UInt32, 6> properties{}; ///< ids of what the buffers were filled from
    };

    struct Uniforms {
        GLint modelToEye;
        GLint modelToClip;
        GLint normalToEye;
        GLint lit;
        GLint hasNormals;
        GLint hasColours;
        GLint diffuse;
        GLint emission;
        GLint specular;
        GLint shininess;
    };

    bool enterNode(const osg::NodePtr&) override { return true; }

    void visitGeometry(const GeometryInstance& instance) override
    {
        const Matrix4 toWorld(instance.toWorld);
        const Mesh& mesh = getMesh(instance.geometry);
        if (mesh.triangles + mesh.lines + mesh.points == 0 || !toWorld.isFinite()) {
            return;
        }
        const Vector4 centre = m_view * (toWorld * Matrix4().transform(mesh.centre));
        const osg::Int32 sortKey = instance.material == osg::NullFC ? 0 : instance.material->getSortKey();
        // Sorting needs an order even where the camera gives none.
        const double depth = std::isfinite(centre[2]) ? -centre[2] : 0.0;
        (isTransparent(instance.material) ? m_transparent : m_opaque).push_back({instance, sortKey, depth});
    }

    static std::array<osg::UInt32, 6> getProperties(const osg::GeometryPtr& geometry)
    {
        return {idOf(geometry->getTypes()),   idOf(geometry->getLengths()), idOf(geometry->getPositions()),
                idOf(geometry->getNormals()), idOf(geometry->getColors()),  idOf(geometry->getIndices())};
    }

    const Mesh& getMesh(const osg::GeometryPtr& geometry)
    {
        Mesh& mesh = m_meshes[osg::getContainerId(geometry)];
        if (mesh.stale || mesh.properties != getProperties(geometry)) {
            upload(geometry, mesh);
        }
        return mesh;
    }

    void upload(const osg::GeometryPtr& geometry, Mesh& mesh)
    {
        const GeometryData data = GeometryData::read(geometry);
        std::vector<Vertex> vertices(data.positions.size());
        for (std::size_t i = 0; i < vertices.size(); ++i) {
            Vertex& vertex = vertices[i];
            for (osg::UInt32 axis = 0; axis < 3; ++axis) {
                vertex.position[axis] = number(data.positions[i][axis], 0);
                vertex.normal[axis] = data.normals.empty() ? 0 : number(data.normals[i][axis], 0);
            }
            for (osg::UInt32 channel = 0; channel < 4; ++channel) {
                vertex.colour[channel] = data.colours.empty() ? 1 : component(data.colours[i][channel]);
            }
        }
        std::vector<osg::UInt32> indices = data.triangles;
        indices.insert(indices.end(), data.lines.begin(), data.lines.end());
        indices.insert(indices.end(), data.points.begin(), data.points.end());

        if (mesh.vertices == 0) {
            glGenBuffers(1, &mesh.vertices);
            glGenBuffers(1, &mesh.indices);
        }
        glBindBuffer(GL_ARRAY_BUFFER, mesh.vertices);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(Vertex)), vertices.data(),
                     GL_STATIC_DRAW);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.indices);
        glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(osg::UInt32)),
                     indices.data(), GL_STATIC_DRAW);

        mesh.triangles = static_cast<GLsizei>(data.triangles.size());
        mesh.lines = static_cast<GLsizei>(data.lines.size());
        mesh.points = static_cast<GLsizei>(data.points.size());
        mesh.hasNormals = !data.normals.empty();
        mesh.hasColours = !data.colours.empty();
        mesh.properties = getProperties(geometry);
        mesh.stale = false;
        osg::Pnt3f minimum;
        osg::Pnt3f maximum;
        data.getBounds(minimum, maximum);
        mesh.centre =
            osg::Pnt3f((minimum[0] + maximum[0]) / 2, (minimum[1] + maximum[1]) / 2, (minimum[2] + maximum[2]) / 2);
        ++m_uploaded;
    }

    void createPrograms()
    {
        m_program = linkProgram(VertexShader, FragmentShader);
        m_backgroundProgram = linkProgram(BackgroundVertexShader, BackgroundFragmentShader);
        const auto find = [&](const char* name) { return glGetUniformLocation(m_program, name); };
        m_uniforms = {find("modelToEye"), find("modelToClip"), find("normalToEye"), find("lit"),
                      find("hasNormals"), find("hasColours"),  find("diffuse"),     find("emission"),
                      find("specular"),   find("shininess")};

        const float corners[] = {-1, -1, 0, 1, -1, 0, -1, 1, 0, 1, 1, 0};
        glGenBuffers(1, &m_backgroundVertices);
        glBindBuffer(GL_ARRAY_BUFFER, m_backgroundVertices);
        glBufferData(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STATIC_DRAW);
    }

    void drawBackground()
    {
        glUseProgram(m_backgroundProgram);
        glUniform3fv(glGetUniformLocation(m_backgroundProgram, "top"), 1, m_top.getValuesRGB());
        glUniform3fv(glGetUniformLocation(m_backgroundProgram, "bottom"), 1, m_bottom.getValuesRGB());
        glDepthMask(GL_FALSE);
        glBindBuffer(GL_ARRAY_BUFFER, m_backgroundVertices);
        glEnableVertexAttribArray(PositionAttribute);
        glVertexAttribPointer(PositionAttribute, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glDisableVertexAttribArray(PositionAttribute);
        glDepthMask(GL_TRUE);
    }

    void drawPass(const std::vector<DrawItem>& items, const bool transparent)
    {
        bool first = true;
        osg::MaterialPtr current;
        for (const DrawItem& item : items) {
            if (first || item.instance.material != current) {
                current = item.instance.material;
                applyMaterial(current, transparent);
                first = false;
            }
            drawInstance(item.instance);
        }
    }

    void applyMaterial(const osg::MaterialPtr& material, const bool transparent)
    {
        const Chunks chunks(material);
        setEnabled(GL_DEPTH_TEST, chunks.depthTest);
        glDepthFunc(chunks.depthFunction);
        glDepthMask(transparent || chunks.depthReadOnly ? GL_FALSE : GL_TRUE);
        const bool hasRange = chunks.depthNear >= 0 && chunks.depthFar >= 0;
        glDepthRange(hasRange ? static_cast<double>(chunks.depthNear) : 0.0,
                     hasRange ? static_cast<double>(chunks.depthFar) : 1.0);
        applyLines(chunks.line);
        applyBlending(chunks.blend, transparent);
        applyPolygons(chunks.polygon);

        osg::Color3f diffuse = DefaultDiffuse;
        osg::Color3f emission;
        osg::Color3f specular;
        float shininess = 1;
        float opacity = 1;
        bool lit = true;
        const osg::SimpleMaterialPtr simple =
            material == osg::NullFC ? osg::SimpleMaterialPtr(osg::NullFC) : osg::SimpleMaterialPtr::dcast(material);
        m_coloursCount = true;
        if (simple != osg::NullFC) {
            diffuse = simple->getDiffuse();
            emission = simple->getEmission();
            specular = simple->getSpecular();
            shininess = number(simple->getShininess(), 1);
            opacity = 1 - component(simple->getTransparency());
            lit = simple->getLit();
            m_coloursCount = simple->getColorMaterial() != GL_NONE;
        }
        glUniform1i(m_uniforms.lit, lit ? 1 : 0);
        glUniform4f(m_uniforms.diffuse, component(diffuse.red()), component(diffuse.green()), component(diffuse.blue()),
                    opacity);
        glUniform3f(m_uniforms.emission, component(emission.red()), component(emission.green()),
                    component(emission.blue()));
        glUniform3f(m_uniforms.specular, component(specular.red()), component(specular.green()),
                    component(specular.blue()));
        glUniform1f(m_uniforms.shininess, shininess);
        // Points have no chunk of their own; this is the size at which one is still found with the eye.
        glPointSize(3 * m_pixelRatio);
    }

    void applyLines(const osg::LineChunkPtr& line) const
    {
        const bool given = line != osg::NullFC;
        const float width = given ? number(line->getWidth(), 1) : 1;
        glLineWidth(std::clamp(width, 0.1F, 64.0F) * m_pixelRatio);
        setEnabled(GL_LINE_SMOOTH, given && line->getSmooth());
        const bool stippled = given && line->getStipplePattern() != 0xFFFF;
        setEnabled(GL_LINE_STIPPLE, stippled);
        if (stippled) {
            glLineStipple(line->getStippleRepeat(), line->getStipplePattern());
        }
    }

    static void applyBlending(const osg::BlendChunkPtr& blend, const bool transparent)
    {
        if (blend == osg::NullFC) {
            setEnabled(GL_BLEND, transparent);
            glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
            glBlendEquation(GL_FUNC_ADD);
            glDisable(GL_ALPHA_TEST);
            return;
        }
        // One and zero is the blending that replaces.
        setEnabled(GL_BLEND, blend->getSrcFactor() != GL_ONE || blend->getDestFactor() != GL_ZERO);
        glBlendFunc(blend->getSrcFactor(), blend->getDestFactor());
        glBlendEquation(blend->getEquation() == GL_NONE ? GL_FUNC_ADD : blend->getEquation());
        const osg::Color4f colour = blend->getColor();
        glBlendColor(component(colour.red()), component(colour.green()), component(colour.blue()),
                     component(colour.alpha()));
        setEnabled(GL_ALPHA_TEST, blend->getAlphaFunc() != GL_NONE);
        if (blend->getAlphaFunc() != GL_NONE) {
            glAlphaFunc(blend->getAlphaFunc(), component(blend->getAlphaValue()));
        }
    }

    static void applyPolygons(const osg::PolygonChunkPtr& polygon)
    {
        const bool given = polygon != osg::NullFC;
        const bool culled = given && polygon->getCullFace() != GL_NONE;
        setEnabled(GL_CULL_FACE, culled);
        glCullFace(culled ? polygon->getCullFace() : GL_BACK);
        glFrontFace(given ? polygon->getFrontFace() : GL_CCW);
        glPolygonMode(GL_FRONT, given ? polygon->getFrontMode() : GL_FILL);
        glPolygonMode(GL_BACK, given ? polygon->getBackMode() : GL_FILL);
        setEnabled(GL_POLYGON_SMOOTH, given && polygon->getSmooth());
        setEnabled(GL_POLYGON_OFFSET_POINT, given && polygon->getOffsetPoint());
        setEnabled(GL_POLYGON_OFFSET_LINE, given && polygon->getOffsetLine());
        setEnabled(GL_POLYGON_OFFSET_FILL, given && polygon->getOffsetFill());
        glPolygonOffset(given ? number(polygon->getOffsetFactor(), 0) : 0,
                        given ? number(polygon->getOffsetBias(), 0) : 0);
    }

    void drawInstance(const GeometryInstance& instance)
    {
        const Mesh& mesh = m_meshes[osg::getContainerId(instance.geometry)];
        const Matrix4 modelToEye = m_view * Matrix4(instance.toWorld);
        const Matrix4 modelToClip = m_projection * modelToEye;
        const Matrix4 inverse = modelToEye.inverted();
        GLfloat normalToEye[9];
        for (int column = 0; column < 3; ++column) {
            for (int row = 0; row < 3; ++row) {
                normalToEye[column * 3 + row] = static_cast<GLfloat>(inverse(column, row));
            }
        }
        glUniformMatrix4fv(m_uniforms.modelToEye, 1, GL_FALSE, modelToEye.toMatrix().getValues());
        glUniformMatrix4fv(m_uniforms.modelToClip, 1, GL_FALSE, modelToClip.toMatrix().getValues());
        glUniformMatrix3fv(m_uniforms.normalToEye, 1, GL_FALSE, normalToEye);
        glUniform1i(m_uniforms.hasNormals, mesh.hasNormals ? 1 : 0);
        glUniform1i(m_uniforms.hasColours, mesh.hasColours && m_coloursCount ? 1 : 0);

        glBindBuffer(GL_ARRAY_BUFFER, mesh.vertices);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.indices);
        setAttribute(PositionAttribute, 3, offsetof(Vertex, position));
        setAttribute(NormalAttribute, 3, offsetof(Vertex, normal));
        setAttribute(ColourAttribute, 4, offsetof(Vertex, colour));
        std::size_t offset = 0;
        for (const auto& [mode, count] : {std::pair(GL_TRIANGLES, mesh.triangles), std::pair(GL_LINES, mesh.lines),
                                          std::pair(GL_POINTS, mesh.points)}) {
            if (count > 0) {
                glDrawElements(static_cast<GLenum>(mode), count, GL_UNSIGNED_INT, offsetInBuffer(offset));
            }
            offset += static_cast<std::size_t>(count) * sizeof(osg::UInt32);
        }
    }

    static void setAttribute(const GLuint attribute, const GLint size, const std::size_t offset)
    {
        glEnableVertexAttribArray(attribute);
        glVertexAttribPointer(attribute, size, GL_FLOAT, GL_FALSE, sizeof(Vertex), offsetInBuffer(offset));
    }

    void doom(const Mesh& mesh)
    {
        if (mesh.vertices != 0) {
            m_doomedBuffers.insert(m_doomedBuffers.end(), {mesh.vertices, mesh.indices});
        }
    }

    void deleteDoomedBuffers()
    {
        if (!m_doomedBuffers.empty()) {
            glDeleteBuffers(static_cast<GLsizei>(m_doomedBuffers.size()), m_doomedBuffers.data());
            m_doomedBuffers.clear();
        }
    }

    Matrix4 m_view;
    Matrix4 m_projection;
    std::vector<DrawItem> m_opaque;
    std::vector<DrawItem> m_transparent;
    std::size_t m_uploaded = 0;
    bool m_coloursCount = true; ///< whether the current material lets a geometry's colours through

    std::unordered_map<osg::UInt32, Mesh> m_meshes; ///< by id of the geometry; ids are never reused
    std::vector<GLuint> m_doomedBuffers;
    GLuint m_program = 0;
    GLuint m_backgroundProgram = 0;
    GLuint m_backgroundVertices = 0;
    Uniforms m_uniforms{};
};

SceneRenderer::SceneRenderer()
    : m_implementation(std::make_unique<Implementation>())
{}

SceneRenderer::~SceneRenderer() = default;

void SceneRenderer::setBackground(const osg::Color3f& top, const osg::Color3f& bottom)
{
    m_implementation->m_top = top;
    m_implementation->m_bottom = bottom;
}

void SceneRenderer::setPixelRatio(const double ratio)
{
    m_implementation->m_pixelRatio = static_cast<float>(ratio);
}

void SceneRenderer::setTravMask(const osg::UInt32 mask)
{
    m_implementation->m_travMask = mask;
}

void SceneRenderer::sceneChanged(const SceneChanges& changes)
{
    m_implementation->sceneChanged(changes);
}

void SceneRenderer::draw(const osg::NodePtr& root, const Matrix4& view, const Matrix4& projection, const int width,
                         const int height)
{
    m_statistics = m_implementation->draw(root, view, projection, width, height);
}

void SceneRenderer::releaseResources()
{
    m_implementation->releaseResources();
}

} // namespace quon::viewer
