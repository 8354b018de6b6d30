// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/CoverReader.h"

#include "Viewer/Drawing/CoverMap.h"
#include "Viewer/Drawing/VertexBuffers.h"

#include <GL/glext.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace quon::viewer {

namespace {

const char* const FarthestVertexShader = R"(#version 150
in vec3 position;

void main()
{
    gl_Position = vec4(position, 1.0);
}
)";

const char* const FarthestFragmentShader = R"(#version 150
uniform sampler2DMS depth;
uniform int samples;
out vec4 farthest;

void main()
{
    ivec2 place = ivec2(gl_FragCoord.xy);
    float result = 0.0;
    for (int i = 0; i < samples; ++i) {
        result = max(result, texelFetch(depth, place, i).r);
    }
    farthest = vec4(result);
}
)";

/** Compiles and links; 0 where that language is not known. */
GLuint makeProgram(const char* vertexSource, const char* fragmentSource)
{
    const GLuint program = glCreateProgram();
    for (const auto& [kind, source] : {std::pair<GLenum, const char*>(GL_VERTEX_SHADER, vertexSource),
                                       std::pair<GLenum, const char*>(GL_FRAGMENT_SHADER, fragmentSource)}) {
        const GLuint shader = glCreateShader(kind);
        glShaderSource(shader, 1, &source, nullptr);
        glCompileShader(shader);
        glAttachShader(program, shader);
        glDeleteShader(shader);
    }
    glBindAttribLocation(program, PositionAttribute, "position");
    glLinkProgram(program);
    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked == GL_TRUE) {
        return program;
    }
    glDeleteProgram(program);
    return 0;
}

/** Binds what was bound before at the end of the scope. */
class BoundFramebuffers {
public:
    BoundFramebuffers()
    {
        glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &m_drawn);
        glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &m_read);
    }

    ~BoundFramebuffers()
    {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(m_drawn));
        glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(m_read));
    }

    BoundFramebuffers(const BoundFramebuffers&) = delete;
    BoundFramebuffers& operator=(const BoundFramebuffers&) = delete;

    GLuint getDrawn() const { return static_cast<GLuint>(m_drawn); }

private:
    GLint m_drawn = 0;
    GLint m_read = 0;
};

std::uint8_t toByte(const float component)
{
    return static_cast<std::uint8_t>(std::lround(component * 255));
}

// No eye sees so few steps of one colour, and blending takes long to come nearer.
constexpr unsigned LargestStep = 8;

bool isSameByte(const std::uint8_t a, const std::uint8_t b)
{
    return static_cast<unsigned>(a) - b + LargestStep <= 2 * LargestStep;
}

} // namespace

CoverReader::~CoverReader()
{
    releaseDepth();
    releaseColour();
    glDeleteProgram(m_farthestProgram);
    glDeleteBuffers(1, &m_corners);
}

void CoverReader::clearErrors()
{
    while (glGetError() != GL_NO_ERROR) {
    }
}

bool CoverReader::beginDepth(const int width, const int height, const int samples)
{
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &m_drawn);
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &m_read);
    const bool isSame = m_depthWidth == width && m_depthHeight == height && m_depthSamples == samples;
    if (!isSame) {
        clearErrors();
        releaseDepth();
        m_depthWidth = width;
        m_depthHeight = height;
        m_depthSamples = samples;
        m_isDepthPossible = makeDepth(width, height, samples) && glGetError() == GL_NO_ERROR;
        clearErrors();
    }
    if (!m_isDepthPossible) {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(m_drawn));
        glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(m_read));
        return false;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, m_depthFramebuffer);
    return true;
}

bool CoverReader::makeDepth(const int width, const int height, const int samples)
{
    if (samples > 1) {
        makeFarthestProgram();
        if (m_farthestProgram == 0) {
            return false;
        }
    }
    const GLenum target = samples > 1 ? GL_TEXTURE_2D_MULTISAMPLE : GL_TEXTURE_2D;
    glGenTextures(1, &m_depthTexture);
    glBindTexture(target, m_depthTexture);
    if (samples > 1) {
        glTexImage2DMultisample(target, samples, GL_DEPTH_COMPONENT24, width, height, GL_TRUE);
    } else {
        glTexImage2D(target, 0, GL_DEPTH_COMPONENT24, width, height, 0, GL_DEPTH_COMPONENT, GL_UNSIGNED_INT, nullptr);
        glTexParameteri(target, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(target, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    }
    glBindTexture(target, 0);
    glGenFramebuffers(1, &m_depthFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_depthFramebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, target, m_depthTexture, 0);
    glDrawBuffer(GL_NONE);
    glReadBuffer(GL_NONE);
    bool isComplete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    if (samples > 1) {
        glGenRenderbuffers(1, &m_farthestBuffer);
        glBindRenderbuffer(GL_RENDERBUFFER, m_farthestBuffer);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_R32F, width, height);
        glGenFramebuffers(1, &m_farthestFramebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, m_farthestFramebuffer);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_farthestBuffer);
        isComplete = isComplete && glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    }
    return isComplete;
}

void CoverReader::makeFarthestProgram()
{
    if (m_farthestProgram != 0 || !m_isFarthestPossible) {
        return;
    }
    m_farthestProgram = makeProgram(FarthestVertexShader, FarthestFragmentShader);
    m_isFarthestPossible = m_farthestProgram != 0;
    const std::array<float, 12> corners{-1, -1, 0, 1, -1, 0, -1, 1, 0, 1, 1, 0};
    glGenBuffers(1, &m_corners);
    glBindBuffer(GL_ARRAY_BUFFER, m_corners);
    glBufferData(GL_ARRAY_BUFFER, sizeof corners, corners.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void CoverReader::readDepth(CoverMap& map)
{
    map.setSize(m_depthWidth, m_depthHeight);
    GLenum format = GL_DEPTH_COMPONENT;
    if (m_depthSamples > 1) {
        glBindFramebuffer(GL_FRAMEBUFFER, m_farthestFramebuffer);
        drawFarthest();
        format = GL_RED;
    }
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, m_depthWidth, m_depthHeight, format, GL_FLOAT, map.getPixels());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(m_drawn));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(m_read));
}

void CoverReader::drawFarthest() const
{
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glDisable(GL_CULL_FACE);
    glUseProgram(m_farthestProgram);
    glUniform1i(glGetUniformLocation(m_farthestProgram, "depth"), 0);
    glUniform1i(glGetUniformLocation(m_farthestProgram, "samples"), m_depthSamples);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, m_depthTexture);
    VertexBuffers::unbind();
    glBindBuffer(GL_ARRAY_BUFFER, m_corners);
    glEnableVertexAttribArray(PositionAttribute);
    glVertexAttribPointer(PositionAttribute, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    VertexBuffers::unbind();
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, 0);
    glUseProgram(0);
}

bool CoverReader::readColour(CoverMap& map, const int width, const int height, const osg::Color4f& colour)
{
    const BoundFramebuffers bound;
    if ((m_colourWidth != width || m_colourHeight != height) && !makeColour(width, height)) {
        return false;
    }
    glBindFramebuffer(GL_READ_FRAMEBUFFER, bound.getDrawn());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_colourFramebuffer);
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_colourFramebuffer);
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    if (glGetError() != GL_NO_ERROR) {
        clearErrors();
        return false;
    }
    map.setSize(width, height);
    const std::uint8_t red = toByte(colour.red());
    const std::uint8_t green = toByte(colour.green());
    const std::uint8_t blue = toByte(colour.blue());
    float* value = map.getPixels();
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        const bool has =
            isSameByte(pixels[i], red) && isSameByte(pixels[i + 1], green) && isSameByte(pixels[i + 2], blue);
        *value++ = has ? 0.0F : 1.0F;
    }
    map.finish();
    return true;
}

bool CoverReader::makeColour(const int width, const int height)
{
    clearErrors();
    releaseColour();
    glGenRenderbuffers(1, &m_colourBuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, m_colourBuffer);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
    glGenFramebuffers(1, &m_colourFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_colourFramebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_colourBuffer);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE || glGetError() != GL_NO_ERROR) {
        clearErrors();
        releaseColour();
        return false;
    }
    m_colourWidth = width;
    m_colourHeight = height;
    return true;
}

void CoverReader::releaseDepth()
{
    glDeleteFramebuffers(1, &m_depthFramebuffer);
    glDeleteFramebuffers(1, &m_farthestFramebuffer);
    glDeleteTextures(1, &m_depthTexture);
    glDeleteRenderbuffers(1, &m_farthestBuffer);
    m_depthFramebuffer = m_farthestFramebuffer = m_depthTexture = m_farthestBuffer = 0;
    m_depthWidth = m_depthHeight = m_depthSamples = 0;
}

void CoverReader::releaseColour()
{
    glDeleteFramebuffers(1, &m_colourFramebuffer);
    glDeleteRenderbuffers(1, &m_colourBuffer);
    m_colourFramebuffer = m_colourBuffer = 0;
    m_colourWidth = m_colourHeight = 0;
}

} // namespace quon::viewer
