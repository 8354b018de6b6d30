// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/MaterialState.h"

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <GL/glext.h>

#include <algorithm>
#include <cmath>

namespace quon::viewer {

namespace {

// What a geometry is made of when its material says nothing.
const osg::Color3f DefaultDiffuse(0.7F, 0.7F, 0.7F);

// A colour component as OpenGL may see it; NaN becomes 0.
float component(const float value)
{
    return value > 0 ? std::min(value, 1.0F) : 0.0F;
}

osg::Color3f components(const osg::Color3f& colour)
{
    return osg::Color3f(component(colour.red()), component(colour.green()), component(colour.blue()));
}

// A number as OpenGL may see it: what is not finite becomes the replacement.
float number(const float value, const float replacement)
{
    return std::isfinite(value) ? value : replacement;
}

bool isTransparent(const osg::MaterialPtr& material)
{
    const osg::Int32 mode = material->getTransparencyMode();
    if (mode == osg::Material::TransparencyForceTransparent) {
        return true;
    }
    return mode != osg::Material::TransparencyForceOpaque && material->isTransparent();
}

void readDepth(MaterialState& state, const osg::DepthChunkPtr& chunk)
{
    state.depthTest = chunk->getEnable();
    state.depthFunction = chunk->getFunc();
    state.depthReadOnly = chunk->getReadOnly();
    const bool hasRange = chunk->getNear() >= 0 && chunk->getFar() >= 0;
    state.depthNear = hasRange ? static_cast<double>(chunk->getNear()) : 0.0;
    state.depthFar = hasRange ? static_cast<double>(chunk->getFar()) : 1.0;
}

void readLine(MaterialState& state, const osg::LineChunkPtr& chunk)
{
    state.lineWidth = std::clamp(number(chunk->getWidth(), 1), 0.1F, 64.0F);
    state.lineSmooth = chunk->getSmooth();
    state.stippleRepeat = chunk->getStippleRepeat();
    state.stipplePattern = chunk->getStipplePattern();
}

void readBlending(MaterialState& state, const osg::BlendChunkPtr& chunk)
{
    const osg::Color4f colour = chunk->getColor();
    state.hasBlending = true;
    state.sourceFactor = chunk->getSrcFactor();
    state.destinationFactor = chunk->getDestFactor();
    state.blendEquation = chunk->getEquation();
    state.blendColour = osg::Color4f(component(colour.red()), component(colour.green()), component(colour.blue()),
                                     component(colour.alpha()));
    state.alphaFunction = chunk->getAlphaFunc();
    state.alphaValue = component(chunk->getAlphaValue());
}

void readPolygon(MaterialState& state, const osg::PolygonChunkPtr& chunk)
{
    state.cullFace = chunk->getCullFace();
    state.frontFace = chunk->getFrontFace();
    state.frontMode = chunk->getFrontMode();
    state.backMode = chunk->getBackMode();
    state.polygonSmooth = chunk->getSmooth();
    state.offsetPoint = chunk->getOffsetPoint();
    state.offsetLine = chunk->getOffsetLine();
    state.offsetFill = chunk->getOffsetFill();
    state.offsetFactor = number(chunk->getOffsetFactor(), 0);
    state.offsetBias = number(chunk->getOffsetBias(), 0);
}

void readChunk(MaterialState& state, const osg::StateChunkPtr& chunk)
{
    // The depth-test chunk is a depth chunk.
    if (const osg::DepthChunkPtr depth = osg::DepthChunkPtr::dcast(chunk); depth != osg::NullFC) {
        readDepth(state, depth);
    } else if (const osg::LineChunkPtr line = osg::LineChunkPtr::dcast(chunk); line != osg::NullFC) {
        readLine(state, line);
    } else if (const osg::BlendChunkPtr blend = osg::BlendChunkPtr::dcast(chunk); blend != osg::NullFC) {
        readBlending(state, blend);
    } else if (const osg::PolygonChunkPtr polygon = osg::PolygonChunkPtr::dcast(chunk); polygon != osg::NullFC) {
        readPolygon(state, polygon);
    }
}

void setEnabled(const GLenum capability, const bool enabled)
{
    if (enabled) {
        glEnable(capability);
    } else {
        glDisable(capability);
    }
}

} // namespace

MaterialState MaterialState::read(const osg::MaterialPtr& material)
{
    MaterialState state;
    state.diffuse = osg::Color4f(DefaultDiffuse.red(), DefaultDiffuse.green(), DefaultDiffuse.blue(), 1);
    if (material == osg::NullFC) {
        return state;
    }
    state.transparent = isTransparent(material);
    state.sortKey = material->getSortKey();

    if (const osg::SimpleMaterialPtr simple = osg::SimpleMaterialPtr::dcast(material); simple != osg::NullFC) {
        const osg::Color3f diffuse = components(simple->getDiffuse());
        const float opacity = 1 - component(simple->getTransparency());
        state.diffuse = osg::Color4f(diffuse.red(), diffuse.green(), diffuse.blue(), opacity);
        state.emission = components(simple->getEmission());
        state.specular = components(simple->getSpecular());
        state.shininess = number(simple->getShininess(), 1);
        state.lit = simple->getLit();
        state.coloursCount = simple->getColorMaterial() != GL_NONE;
    }
    if (const osg::ChunkMaterialPtr chunkMaterial = osg::ChunkMaterialPtr::dcast(material);
        chunkMaterial != osg::NullFC) {
        const auto& chunks = *chunkMaterial->getMFChunks();
        for (osg::UInt32 i = 0; i < chunks.size(); ++i) {
            const osg::StateChunkPtr chunk = chunks[i];
            if (chunk != osg::NullFC && !chunk->getIgnore()) {
                readChunk(state, chunk);
            }
        }
    }
    return state;
}

bool MaterialState::isOrderless() const
{
    const bool usual = sourceFactor == GL_SRC_ALPHA && destinationFactor == GL_ONE_MINUS_SRC_ALPHA;
    const bool replaces = sourceFactor == GL_ONE && destinationFactor == GL_ZERO;
    const bool adds = blendEquation == GL_NONE || blendEquation == GL_FUNC_ADD;
    return !lit && (!hasBlending || (adds && (usual || replaces)));
}

bool MaterialState::isCovering() const
{
    return isNearestSeen() && isCoverable() && frontMode == GL_FILL && backMode == GL_FILL;
}

bool MaterialState::isNearestSeen() const
{
    return !transparent && passesNearer() && !depthReadOnly && !hasBlending && alphaFunction == GL_NONE &&
           !polygonSmooth;
}

bool MaterialState::passesNearer() const
{
    return depthTest && (depthFunction == GL_LESS || depthFunction == GL_LEQUAL);
}

bool MaterialState::isCoverable() const
{
    const bool isMoved = offsetPoint || offsetLine || offsetFill || depthNear != 0 || depthFar != 1;
    return passesNearer() && !isMoved;
}

bool MaterialState::isOverlay() const
{
    return (!depthTest || depthFunction == GL_ALWAYS) && alphaFunction == GL_NONE && stipplePattern == 0xFFFF;
}

void MaterialState::apply(const float pixelRatio, const bool smoothLines) const
{
    setEnabled(GL_DEPTH_TEST, depthTest);
    glDepthFunc(depthFunction);
    glDepthMask(transparent || depthReadOnly ? GL_FALSE : GL_TRUE);
    glDepthRange(depthNear, depthFar);

    glPointSize(PointSize * pixelRatio);
    glLineWidth(lineWidth * pixelRatio);
    setEnabled(GL_LINE_SMOOTH, lineSmooth && smoothLines);
    setEnabled(GL_LINE_STIPPLE, stipplePattern != 0xFFFF);
    glLineStipple(stippleRepeat, stipplePattern);

    // One and zero is the blending that replaces.
    const bool replaces = sourceFactor == GL_ONE && destinationFactor == GL_ZERO;
    setEnabled(GL_BLEND, hasBlending ? !replaces : transparent);
    glBlendFunc(sourceFactor, destinationFactor);
    glBlendEquation(blendEquation == GL_NONE ? GL_FUNC_ADD : blendEquation);
    glBlendColor(blendColour.red(), blendColour.green(), blendColour.blue(), blendColour.alpha());
    setEnabled(GL_ALPHA_TEST, alphaFunction != GL_NONE);
    if (alphaFunction != GL_NONE) {
        glAlphaFunc(alphaFunction, alphaValue);
    }

    setEnabled(GL_CULL_FACE, cullFace != GL_NONE);
    glCullFace(cullFace != GL_NONE ? cullFace : GL_BACK);
    glFrontFace(frontFace);
    glPolygonMode(GL_FRONT, frontMode);
    glPolygonMode(GL_BACK, backMode);
    setEnabled(GL_POLYGON_SMOOTH, polygonSmooth);
    setEnabled(GL_POLYGON_OFFSET_POINT, offsetPoint);
    setEnabled(GL_POLYGON_OFFSET_LINE, offsetLine);
    setEnabled(GL_POLYGON_OFFSET_FILL, offsetFill);
    glPolygonOffset(offsetFactor, offsetBias);
}

void MaterialState::reset()
{
    for (const int capability :
         {GL_DEPTH_TEST, GL_BLEND, GL_ALPHA_TEST, GL_LINE_SMOOTH, GL_LINE_STIPPLE, GL_CULL_FACE, GL_POLYGON_SMOOTH,
          GL_POLYGON_OFFSET_POINT, GL_POLYGON_OFFSET_LINE, GL_POLYGON_OFFSET_FILL, GL_VERTEX_PROGRAM_POINT_SIZE}) {
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
    glLineStipple(1, 0xFFFF);
    glPointSize(1);
    glFrontFace(GL_CCW);
    glCullFace(GL_BACK);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glPolygonOffset(0, 0);
}

} // namespace quon::viewer
