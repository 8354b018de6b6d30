// SPDX-License-Identifier: MIT
#include "Viewer/Model/GeometryData.h"

#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGeoProperty.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quon::viewer {

namespace {

// Beyond this a product of two coordinates leaves single precision.
constexpr float LargestCoordinate = 1e18F;

bool isUsable(const osg::Pnt3f& point)
{
    // Written so that a NaN fails.
    return std::abs(point[0]) <= LargestCoordinate && std::abs(point[1]) <= LargestCoordinate &&
           std::abs(point[2]) <= LargestCoordinate;
}

class PrimitiveReader {
public:
    PrimitiveReader(GeometryData& data, const std::vector<osg::UInt32>& indices)
        : m_data(data)
        , m_indices(indices)
    {}

    void read(const osg::UInt32 type, const std::size_t begin, const std::size_t end)
    {
        switch (type) {
        case GL_POINTS:
            for (std::size_t i = begin; i < end; ++i) {
                if (isValid(i)) {
                    m_data.points.push_back(m_indices[i]);
                }
            }
            break;
        case GL_LINES:
            for (std::size_t i = begin; i + 1 < end; i += 2) {
                addLine(i, i + 1);
            }
            break;
        case GL_LINE_STRIP:
        case GL_LINE_LOOP:
            for (std::size_t i = begin; i + 1 < end; ++i) {
                addLine(i, i + 1);
            }
            if (type == GL_LINE_LOOP && end - begin > 2) {
                addLine(end - 1, begin);
            }
            break;
        case GL_TRIANGLES:
            for (std::size_t i = begin; i + 2 < end; i += 3) {
                addTriangle(i, i + 1, i + 2);
            }
            break;
        case GL_TRIANGLE_STRIP:
            for (std::size_t i = begin; i + 2 < end; ++i) {
                // Every second triangle of a strip runs the other way round.
                const bool swapped = (i - begin) % 2 == 1;
                addTriangle(swapped ? i + 1 : i, swapped ? i : i + 1, i + 2);
            }
            break;
        case GL_TRIANGLE_FAN:
        case GL_POLYGON:
            for (std::size_t i = begin + 1; i + 1 < end; ++i) {
                addTriangle(begin, i, i + 1);
            }
            break;
        case GL_QUADS:
            for (std::size_t i = begin; i + 3 < end; i += 4) {
                addTriangle(i, i + 1, i + 2);
                addTriangle(i, i + 2, i + 3);
            }
            break;
        case GL_QUAD_STRIP:
            for (std::size_t i = begin; i + 3 < end; i += 2) {
                addTriangle(i, i + 1, i + 3);
                addTriangle(i, i + 3, i + 2);
            }
            break;
        default:
            break;
        }
    }

private:
    bool isValid(const std::size_t place) const
    {
        const osg::UInt32 index = m_indices[place];
        return index < m_data.positions.size() && isUsable(m_data.positions[index]);
    }

    void addLine(const std::size_t a, const std::size_t b)
    {
        if (isValid(a) && isValid(b)) {
            m_data.lines.insert(m_data.lines.end(), {m_indices[a], m_indices[b]});
        }
    }

    void addTriangle(const std::size_t a, const std::size_t b, const std::size_t c)
    {
        if (isValid(a) && isValid(b) && isValid(c)) {
            m_data.triangles.insert(m_data.triangles.end(), {m_indices[a], m_indices[b], m_indices[c]});
        }
    }

    GeometryData& m_data;
    const std::vector<osg::UInt32>& m_indices;
};

// A property shorter than the positions cannot be indexed with them and is left out.
template <class Property, class Value, class Read>
void readProperty(const Property& property, const std::size_t count, std::vector<Value>& values, const Read& readValue)
{
    if (property == osg::NullFC || property->getSize() < count) {
        return;
    }
    values.reserve(count);
    for (osg::UInt32 i = 0; i < count; ++i) {
        values.push_back(readValue(i));
    }
}

std::vector<osg::UInt32> readIndices(const osg::GeometryPtr& geometry, const std::size_t positionCount)
{
    std::vector<osg::UInt32> indices;
    const osg::GeoIndicesPtr property = geometry->getIndices();
    if (property == osg::NullFC) {
        indices.resize(positionCount);
        for (std::size_t i = 0; i < positionCount; ++i) {
            indices[i] = static_cast<osg::UInt32>(i);
        }
        return indices;
    }
    const osg::UInt32 count = property->getSize();
    indices.reserve(count);
    for (osg::UInt32 i = 0; i < count; ++i) {
        indices.push_back(property->getValue(i));
    }
    return indices;
}

} // namespace

GeometryData GeometryData::read(const osg::GeometryPtr& geometry)
{
    GeometryData data;
    if (geometry == osg::NullFC || geometry->getPositions() == osg::NullFC || geometry->getTypes() == osg::NullFC ||
        geometry->getLengths() == osg::NullFC) {
        return data;
    }

    const osg::GeoPositionsPtr positions = geometry->getPositions();
    const std::size_t count = positions->getSize();
    readProperty(positions, count, data.positions, [&](const osg::UInt32 i) { return positions->getValue(i); });
    const osg::GeoNormalsPtr normals = geometry->getNormals();
    readProperty(normals, count, data.normals, [&](const osg::UInt32 i) { return normals->getValue(i); });
    const osg::GeoTexCoordsPtr texCoords = geometry->getTexCoords();
    readProperty(texCoords, count, data.texCoords, [&](const osg::UInt32 i) { return texCoords->getValue(i); });
    const osg::GeoColorsPtr colours = geometry->getColors();
    const osg::GeoColors4fPtr coloursWithAlpha =
        colours == osg::NullFC ? osg::GeoColors4fPtr(osg::NullFC) : osg::GeoColors4fPtr::dcast(colours);
    if (coloursWithAlpha != osg::NullFC) {
        const auto& values = *coloursWithAlpha->getFieldPtr();
        readProperty(colours, count, data.colours, [&](const osg::UInt32 i) { return values[i]; });
    } else {
        readProperty(colours, count, data.colours, [&](const osg::UInt32 i) {
            const osg::Color3f colour = colours->getValue(i);
            return osg::Color4f(colour.red(), colour.green(), colour.blue(), 1.0F);
        });
    }

    const std::vector<osg::UInt32> indices = readIndices(geometry, count);
    const osg::GeoPTypesPtr types = geometry->getTypes();
    const osg::GeoPLengthsPtr lengths = geometry->getLengths();
    const osg::UInt32 primitives = std::min(types->getSize(), lengths->getSize());
    PrimitiveReader reader(data, indices);
    std::size_t begin = 0;
    for (osg::UInt32 i = 0; i < primitives && begin < indices.size(); ++i) {
        const std::size_t length = lengths->getValue(i);
        const std::size_t end = begin + std::min(length, indices.size() - begin);
        reader.read(types->getValue(i), begin, end);
        begin = end;
    }
    return data;
}

GeometryData GeometryData::read(const ModelData::Mesh& mesh)
{
    GeometryData data;
    data.positions = mesh.positions;
    data.normals = mesh.normals;
    data.colours = mesh.colours;
    data.texCoords = mesh.texCoords;
    PrimitiveReader(data, mesh.indices).read(mesh.primitive, 0, mesh.indices.size());
    return data;
}

bool GeometryData::getBounds(osg::Pnt3f& minimum, osg::Pnt3f& maximum) const
{
    bool first = true;
    for (const std::vector<osg::UInt32>* indices : {&triangles, &lines, &points}) {
        for (const osg::UInt32 index : *indices) {
            const osg::Pnt3f& position = positions[index];
            if (first) {
                minimum = maximum = position;
                first = false;
                continue;
            }
            for (osg::UInt32 axis = 0; axis < 3; ++axis) {
                minimum[axis] = std::min(minimum[axis], position[axis]);
                maximum[axis] = std::max(maximum[axis], position[axis]);
            }
        }
    }
    return !first;
}

} // namespace quon::viewer
