// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/ShaderPrograms.h"

#include "Viewer/Drawing/MaterialState.h"
#include "Viewer/Drawing/VertexBuffers.h"
#include "Viewer/Model/ViewerError.h"

#include <GL/glext.h>

#include <array>
#include <cstddef>

namespace quon::viewer {

namespace {

// In front of both shaders of a program: the version, and which of its kinds it is.
constexpr std::array<const char*, 8> Preambles{"#version 120\n",
                                               "#version 120\n#define LIT\n",
                                               "#version 120\n#define COLOURED\n",
                                               "#version 120\n#define LIT\n#define COLOURED\n",
                                               "#version 120\n#define MARKER\n",
                                               "#version 120\n#define MARKER\n#define LIT\n",
                                               "#version 120\n#define MARKER\n#define COLOURED\n",
                                               "#version 120\n#define MARKER\n#define LIT\n#define COLOURED\n"};

const char* const VertexShader = R"(
#ifdef MARKER
attribute vec4 position;
uniform vec3 markerSizes;
#else
attribute vec3 position;
attribute vec3 normal;
#endif
attribute vec4 colour;
uniform mat4 modelToEye;
uniform mat4 modelToClip;
uniform mat4 eyeToClip;
uniform mat3 normalToEye;
varying vec3 eyePosition;
varying vec3 eyeNormal;
varying vec4 vertexColour;

void main()
{
#ifdef COLOURED
    vertexColour = colour;
#endif
    gl_Position = modelToClip * vec4(position.xyz, 1.0);
#ifdef MARKER
    // Its middle says where it is to be seen; how deep, a place in front of that.
    vec4 eye = modelToEye * vec4(position.xyz, 1.0);
    vec4 front = eyeToClip * vec4(eye.xy, eye.z + position.w * markerSizes.z, 1.0);
    gl_Position.z = front.w > 0.0 ? front.z / front.w * gl_Position.w : gl_Position.z;
    gl_PointSize = clamp(position.w * markerSizes.x / gl_Position.w, 1.0, markerSizes.y);
#elif defined(LIT)
    eyePosition = (modelToEye * vec4(position, 1.0)).xyz;
    eyeNormal = normalToEye * normal;
#endif
}
)";

// A key light and a weaker fill light that sit at the camera, and an even light from all around that is a little
// stronger from above: shape stays readable from every side.
const char* const FragmentShader = R"(
uniform vec4 diffuse;
uniform vec3 emission;
uniform vec3 specular;
uniform float shininess;
varying vec3 eyePosition;
varying vec3 eyeNormal;
varying vec4 vertexColour;

void main()
{
#ifdef COLOURED
    vec4 base = vec4(vertexColour.rgb, vertexColour.a * diffuse.a);
#else
    vec4 base = diffuse;
#endif
#if defined(LIT) && defined(MARKER)
    // What surfaces of all directions have of their colour on average.
    gl_FragColor = vec4(emission + base.rgb * 0.7, base.a);
#elif defined(LIT)
    vec3 toEye = normalize(-eyePosition);
    vec3 facing = cross(dFdx(eyePosition), dFdy(eyePosition));
    vec3 n = dot(eyeNormal, eyeNormal) > 0.0 ? eyeNormal : facing;
    n = dot(n, n) > 0.0 ? normalize(n) : toEye;
    // Surfaces have two sides; mirrored parts and wrong windings are lit like all others.
    n = dot(n, toEye) < 0.0 ? -n : n;

    vec3 key = normalize(vec3(-0.45, 0.65, 0.75));
    vec3 fill = normalize(vec3(0.75, -0.15, 0.55));
    float light = 0.36 + 0.08 * n.y + 0.56 * max(dot(n, key), 0.0) + 0.28 * max(dot(n, fill), 0.0);
    float shine = pow(max(dot(reflect(-key, n), toEye), 0.0), max(shininess, 1.0));
    gl_FragColor = vec4(emission + base.rgb * light + specular * shine, base.a);
#else
    gl_FragColor = base;
#endif
}
)";

const char* const BackgroundVertexShader = R"(
attribute vec3 position;
varying float height;

void main()
{
    height = position.y * 0.5 + 0.5;
    gl_Position = vec4(position.xy, 0.0, 1.0);
}
)";

const char* const BackgroundFragmentShader = R"(
uniform vec3 top;
uniform vec3 bottom;
varying float height;

void main()
{
    gl_FragColor = vec4(mix(bottom, top, height), 1.0);
}
)";

GLuint compileShader(const GLenum kind, const char* preamble, const char* source)
{
    const GLuint shader = glCreateShader(kind);
    const std::array<const char*, 2> sources{preamble, source};
    glShaderSource(shader, 2, sources.data(), nullptr);
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

GLuint linkProgram(const char* preamble, const char* vertexSource, const char* fragmentSource)
{
    const GLuint vertexShader = compileShader(GL_VERTEX_SHADER, preamble, vertexSource);
    const GLuint fragmentShader = compileShader(GL_FRAGMENT_SHADER, preamble, fragmentSource);
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

} // namespace

ShaderPrograms::ShaderPrograms()
{
    try {
        for (std::size_t i = 0; i < m_programs.size(); ++i) {
            Program& program = m_programs.at(i);
            program.name = linkProgram(Preambles.at(i), VertexShader, FragmentShader);
            const auto find = [&](const char* name) { return glGetUniformLocation(program.name, name); };
            program.modelToEye = find("modelToEye");
            program.modelToClip = find("modelToClip");
            program.eyeToClip = find("eyeToClip");
            program.normalToEye = find("normalToEye");
            program.diffuse = find("diffuse");
            program.emission = find("emission");
            program.specular = find("specular");
            program.shininess = find("shininess");
            program.markerSizes = find("markerSizes");
        }
        m_background = linkProgram(Preambles.front(), BackgroundVertexShader, BackgroundFragmentShader);
    } catch (const ViewerError&) {
        release();
        throw;
    }
    const float corners[] = {-1, -1, 0, 1, -1, 0, -1, 1, 0, 1, 1, 0};
    glGenBuffers(1, &m_backgroundVertices);
    glBindBuffer(GL_ARRAY_BUFFER, m_backgroundVertices);
    glBufferData(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

ShaderPrograms::~ShaderPrograms()
{
    release();
}

void ShaderPrograms::release()
{
    for (const Program& program : m_programs) {
        glDeleteProgram(program.name);
    }
    glDeleteProgram(m_background);
    glDeleteBuffers(1, &m_backgroundVertices);
}

void ShaderPrograms::drawBackground(const osg::Color3f& top, const osg::Color3f& bottom) const
{
    glUseProgram(m_background);
    glUniform3fv(glGetUniformLocation(m_background, "top"), 1, top.getValuesRGB());
    glUniform3fv(glGetUniformLocation(m_background, "bottom"), 1, bottom.getValuesRGB());
    glDepthMask(GL_FALSE);
    glBindBuffer(GL_ARRAY_BUFFER, m_backgroundVertices);
    glEnableVertexAttribArray(PositionAttribute);
    glVertexAttribPointer(PositionAttribute, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableVertexAttribArray(PositionAttribute);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glDepthMask(GL_TRUE);
    glUseProgram(0);
}

void ShaderPrograms::use(const MaterialState& material, const bool coloured, const bool markers)
{
    m_current = &m_programs.at((material.lit ? 1U : 0U) + (coloured ? 2U : 0U) + (markers ? 4U : 0U));
    glUseProgram(m_current->name);
    glUniform4fv(m_current->diffuse, 1, material.diffuse.getValuesRGBA());
    glUniform3fv(m_current->emission, 1, material.emission.getValuesRGB());
    glUniform3fv(m_current->specular, 1, material.specular.getValuesRGB());
    glUniform1f(m_current->shininess, material.shininess);
}

void ShaderPrograms::setMatrices(const Matrix4& modelToEye, const Matrix4& projection) const
{
    const Matrix4 inverse = modelToEye.inverted();
    GLfloat normalToEye[9];
    for (int column = 0; column < 3; ++column) {
        for (int row = 0; row < 3; ++row) {
            normalToEye[column * 3 + row] = static_cast<GLfloat>(inverse(column, row));
        }
    }
    glUniformMatrix4fv(m_current->modelToEye, 1, GL_FALSE, modelToEye.toMatrix().getValues());
    glUniformMatrix4fv(m_current->modelToClip, 1, GL_FALSE, (projection * modelToEye).toMatrix().getValues());
    glUniformMatrix3fv(m_current->normalToEye, 1, GL_FALSE, normalToEye);
    glUniformMatrix4fv(m_current->eyeToClip, 1, GL_FALSE, projection.toMatrix().getValues());
}

void ShaderPrograms::setMarkerSizes(const double pixels, const double mostPixels, const double lift) const
{
    glUniform3f(m_current->markerSizes, static_cast<GLfloat>(pixels), static_cast<GLfloat>(mostPixels),
                static_cast<GLfloat>(lift));
}

} // namespace quon::viewer
