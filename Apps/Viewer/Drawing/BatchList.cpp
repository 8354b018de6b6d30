// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/BatchList.h"

#include "Viewer/Model/PreparedGeometries.h"
#include "Viewer/Model/WorkerPool.h"

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGFieldContainerFactory.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <utility>

namespace quon::viewer {

namespace {

// Geometries with more vertices are drawn by themselves: a call of their own is no longer what costs.
constexpr std::size_t MostVerticesOfPiece = 8192;
constexpr std::size_t MostVerticesOfBatch = 65536;
constexpr std::size_t MostItemsOfBatch = 4096;

// How many batches of a group are looked at for room.
constexpr std::size_t MostOpenBatches = 8;

// What a batch may extend, in radii of its smallest geometries: they keep a precision of some ten thousandths.
constexpr float MostRadii = 4096;

// How many of the last patterns of a batch are looked at for one that fits.
constexpr std::size_t MostPatternsCompared = 8;

// Sizes of one group are within a factor of two to the power of this.
constexpr int OctavesOfGroup = 4;

// In place of a logarithm, where there is no extent.
constexpr int NoSize = std::numeric_limits<int>::min();

// What is farther out than this, or no number, cannot be moved to an origin.
constexpr float FarthestPosition = 1e12F;

template <class Pointer>
osg::UInt32 idOf(const Pointer& container)
{
    return container == osg::NullFC ? 0 : osg::getContainerId(container);
}

std::array<osg::UInt32, 6> getProperties(const osg::GeometryPtr& geometry)
{
    return {idOf(geometry->getTypes()),   idOf(geometry->getLengths()), idOf(geometry->getPositions()),
            idOf(geometry->getNormals()), idOf(geometry->getColors()),  idOf(geometry->getIndices())};
}

// A colour component in 255 steps; NaN becomes 0.
std::uint8_t toByte(const float value)
{
    return static_cast<std::uint8_t>(std::lround((value > 0 ? std::min(value, 1.0F) : 0.0F) * 255));
}

float finite(const float value)
{
    return std::isfinite(value) ? value : 0.0F;
}

// Exact: the tolerant comparison of matrices would leave slow movements out.
bool isSame(const osg::Matrix& a, const osg::Matrix& b)
{
    return std::equal(a.getValues(), a.getValues() + 16, b.getValues());
}

bool isAffine(const osg::Matrix& matrix)
{
    return matrix[0][3] == 0 && matrix[1][3] == 0 && matrix[2][3] == 0 && matrix[3][3] == 1;
}

void include(osg::Pnt3f& minimum, osg::Pnt3f& maximum, const osg::Pnt3f& point)
{
    for (osg::UInt32 axis = 0; axis < 3; ++axis) {
        minimum[axis] = std::min(minimum[axis], point[axis]);
        maximum[axis] = std::max(maximum[axis], point[axis]);
    }
}

/** Copies vertices into buffers: moved, turned and without what OpenGL may not see. */
class Baker {
public:
    Baker(const osg::Matrix& toWorld, const std::array<double, 3>& origin)
    {
        for (std::size_t column = 0; column < 4; ++column) {
            for (std::size_t row = 0; row < 3; ++row) {
                m_columns[column][row] =
                    static_cast<double>(toWorld[static_cast<osg::UInt32>(column)][static_cast<osg::UInt32>(row)]);
            }
        }
        for (std::size_t row = 0; row < 3; ++row) {
            m_columns[3][row] -= origin[row];
            // The cofactors turn normals like the transposed inverse, and exist for flattened shapes too.
            const std::size_t second = (row + 1) % 3;
            const std::size_t third = (row + 2) % 3;
            for (std::size_t column = 0; column < 3; ++column) {
                const auto& left = m_columns[(column + 1) % 3];
                const auto& right = m_columns[(column + 2) % 3];
                m_cofactors[column][row] = left[second] * right[third] - left[third] * right[second];
            }
        }
    }

    void addTo(VertexData& data, const GeometryData& content) const
    {
        const auto first = static_cast<osg::UInt32>(data.vertexCount);
        addVertices(data, content);
        append(data.triangles, content.triangles, first);
        append(data.lines, content.lines, first);
        append(data.points, content.points, first);
    }

    void addVertices(VertexData& data, const GeometryData& content) const
    {
        const VertexFormat& format = data.format;
        const std::size_t size = format.getSize();
        std::byte* vertex = data.addVertices(content.positions.size());
        for (std::size_t i = 0; i < content.positions.size(); ++i, vertex += size) {
            float position[3];
            transform(content.positions[i], position);
            std::memcpy(vertex, position, sizeof position);
            if (format.hasNormals) {
                std::int16_t normal[4] = {};
                turn(content.normals[i], normal);
                std::memcpy(vertex + format.getNormalOffset(), normal, sizeof normal);
            }
            if (format.hasColours) {
                const osg::Color4f& colour = content.colours[i];
                const std::uint8_t bytes[4] = {toByte(colour.red()), toByte(colour.green()), toByte(colour.blue()),
                                               toByte(colour.alpha())};
                std::memcpy(vertex + format.getColourOffset(), bytes, sizeof bytes);
            }
        }
    }

private:
    void transform(const osg::Pnt3f& point, float* result) const
    {
        const auto x = static_cast<double>(point[0]);
        const auto y = static_cast<double>(point[1]);
        const auto z = static_cast<double>(point[2]);
        for (std::size_t row = 0; row < 3; ++row) {
            result[row] = finite(static_cast<float>(m_columns[0][row] * x + m_columns[1][row] * y +
                                                    m_columns[2][row] * z + m_columns[3][row]));
        }
    }

    void turn(const osg::Vec3f& normal, std::int16_t* result) const
    {
        const auto x = static_cast<double>(normal[0]);
        const auto y = static_cast<double>(normal[1]);
        const auto z = static_cast<double>(normal[2]);
        double turned[3];
        for (std::size_t row = 0; row < 3; ++row) {
            turned[row] = m_cofactors[0][row] * x + m_cofactors[1][row] * y + m_cofactors[2][row] * z;
        }
        const double length = std::sqrt(turned[0] * turned[0] + turned[1] * turned[1] + turned[2] * turned[2]);
        // Without direction it stays zero, for which the face's own direction is taken.
        if (length > 0 && std::isfinite(length)) {
            for (std::size_t row = 0; row < 3; ++row) {
                // Rounded by hand: a hundred million times, a call takes its time.
                const double value = turned[row] / length * 32767;
                result[row] = static_cast<std::int16_t>(value + (value < 0 ? -0.5 : 0.5));
            }
        }
    }

    static void append(std::vector<osg::UInt32>& target, const std::vector<osg::UInt32>& source,
                       const osg::UInt32 first)
    {
        const std::size_t before = target.size();
        target.resize(before + source.size());
        std::transform(source.begin(), source.end(), target.begin() + static_cast<std::ptrdiff_t>(before),
                       [first](const osg::UInt32 index) { return first + index; });
    }

    double m_columns[4][3];
    double m_cofactors[3][3];
};

// A factor from 0.8 to 1.2, always the same for one place: of many geometries of one size some are left out before the
// others, here and there.
float vary(const std::uint32_t place)
{
    return 0.8F + 0.4F * static_cast<float>((place * 2654435761U) >> 16U) / 65536.0F;
}

// Of which corners of its world box lines consist; none when they consist of something else.
void findCorners(const DrawItem& item, const GeometryData& data, std::vector<std::uint8_t>& corners)
{
    constexpr std::size_t MostCorners = 8;
    corners.clear();
    if (data.lines.empty() || !data.triangles.empty() || !data.points.empty() || data.positions.size() > MostCorners) {
        return;
    }
    const Matrix4 toWorld(item.toWorld);
    for (const osg::Pnt3f& position : data.positions) {
        const Vector4 place = toWorld.transform(position);
        std::uint8_t corner = 0;
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            const auto value = static_cast<float>(place[axis]);
            if (value != item.minimum[axis] && value != item.maximum[axis]) {
                corners.clear();
                return;
            }
            corner = static_cast<std::uint8_t>(corner | (value == item.maximum[axis] ? 1U << axis : 0U));
        }
        corners.push_back(corner);
    }
}

Marker makeMarker(const DrawItem& item, const std::array<double, 3>& origin)
{
    Marker marker;
    const osg::Pnt3f centre = item.getCentre();
    for (osg::UInt32 axis = 0; axis < 3; ++axis) {
        marker.position.at(axis) = static_cast<float>(static_cast<double>(centre[axis]) - origin.at(axis));
    }
    // Seen from all sides a box covers a quarter of its surface on average.
    const osg::Vec3f extent = item.maximum - item.minimum;
    marker.size = std::sqrt((extent[0] * extent[1] + extent[1] * extent[2] + extent[2] * extent[0]) / 2);
    const std::vector<osg::Color4f>& colours = item.mesh->content->getData().colours;
    for (std::size_t component = 0; !colours.empty() && component < 4; ++component) {
        std::size_t sum = 0;
        for (const osg::Color4f& colour : colours) {
            sum += toByte(colour.getValuesRGBA()[component]);
        }
        marker.colour.at(component) = static_cast<std::uint8_t>(sum / colours.size());
    }
    return marker;
}

/// A mirror turns a surface inside out.
SurfaceFacing findFacing(const DrawItem& item)
{
    const SurfaceFacing facing = item.mesh->facing;
    if (facing == SurfaceFacing::Any) {
        return facing;
    }
    const auto value = [&](const osg::UInt32 column, const osg::UInt32 row) {
        return static_cast<double>(item.toWorld[column][row]);
    };
    const double volume = value(0, 0) * (value(1, 1) * value(2, 2) - value(1, 2) * value(2, 1)) +
                          value(0, 1) * (value(1, 2) * value(2, 0) - value(1, 0) * value(2, 2)) +
                          value(0, 2) * (value(1, 0) * value(2, 1) - value(1, 1) * value(2, 0));
    if (!(std::abs(volume) > 0)) {
        return SurfaceFacing::Any;
    }
    const bool isOutward = (facing == SurfaceFacing::Outward) == (volume > 0);
    return isOutward ? SurfaceFacing::Outward : SurfaceFacing::Inward;
}

/// Sets the world box of an item; false when it is too far out, or not a box.
bool setBounds(DrawItem& item)
{
    const Matrix4 toWorld(item.toWorld);
    const float infinity = std::numeric_limits<float>::infinity();
    item.minimum = osg::Pnt3f(infinity, infinity, infinity);
    item.maximum = osg::Pnt3f(-infinity, -infinity, -infinity);
    bool near = true;
    for (unsigned corner = 0; corner < 8; ++corner) {
        const Mesh& mesh = *item.mesh;
        const Vector4 place = toWorld.transform(osg::Pnt3f((corner & 1U) != 0 ? mesh.maximum[0] : mesh.minimum[0],
                                                           (corner & 2U) != 0 ? mesh.maximum[1] : mesh.minimum[1],
                                                           (corner & 4U) != 0 ? mesh.maximum[2] : mesh.minimum[2]));
        const osg::Pnt3f point(static_cast<float>(place[0]), static_cast<float>(place[1]),
                               static_cast<float>(place[2]));
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            // Written so that a NaN fails.
            near = near && std::abs(point[axis]) <= FarthestPosition;
        }
        include(item.minimum, item.maximum, point);
    }
    item.radius = (item.maximum - item.minimum).length() / 2;
    return near;
}

} // namespace

bool IndexPattern::equals(const GeometryData& data, const std::vector<std::uint8_t>& others) const
{
    const auto isSame = [](const std::vector<GLushort>& a, const std::vector<osg::UInt32>& b) {
        return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin());
    };
    return isSame(triangles, data.triangles) && isSame(lines, data.lines) && isSame(points, data.points) &&
           corners == others;
}

osg::Pnt3f DrawItem::getCentre() const
{
    return osg::Pnt3f((minimum[0] + maximum[0]) / 2, (minimum[1] + maximum[1]) / 2, (minimum[2] + maximum[2]) / 2);
}

osg::MaterialPtr DrawGroup::getMaterial() const
{
    const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(materialId);
    return container == osg::NullFC ? osg::MaterialPtr(osg::NullFC) : material;
}

BatchList::BatchList()
    : m_mirror(*this)
{}

void BatchList::sceneChanged(const SceneChanges& changes)
{
    m_mirror.sceneChanged(changes);
    if (!m_ranks.empty()) {
        for (const osg::UInt32 id : changes.getDestroyed()) {
            m_ranks.erase(id);
        }
    }
    if (m_meshes.empty()) {
        return;
    }
    for (const osg::UInt32 id : changes.getDestroyed()) {
        dropMesh(id);
    }
    for (const auto& [id, mask] : changes.getChanged()) {
        // In ascending order: from here on nothing is known.
        if (id > m_newestId) {
            break;
        }
        if (m_meshes.count(id) != 0) {
            // Copies of a node share its geometry and come and go: they change its parents only.
            if ((mask & ~osg::NodeCore::ParentsFieldMask) != 0) {
                markStale(id);
            }
            continue;
        }
        if ((mask & ~osg::Attachment::ParentsFieldMask) == 0) {
            continue;
        }
        const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
        if (container == osg::NullFC || !container->getType().isAttachment()) {
            continue;
        }
        const osg::AttachmentPtr property = osg::AttachmentPtr::dcast(container);
        const auto& geometries = property->getParents();
        for (osg::UInt32 i = 0; i < geometries.size(); ++i) {
            markStale(osg::getContainerId(geometries[i]));
        }
    }
}

void BatchList::markStale(const osg::UInt32 geometryId)
{
    const auto mesh = m_meshes.find(geometryId);
    if (mesh != m_meshes.end() && !mesh->second.stale) {
        mesh->second.stale = true;
        if (!mesh->second.users.empty()) {
            m_staleMeshes.push_back(geometryId);
        }
    }
}

void BatchList::update(const osg::NodePtr& root, const osg::UInt32 mask)
{
    m_mirror.update(root, mask);
    refreshStaleMeshes();
}

void BatchList::refreshStaleMeshes()
{
    for (std::size_t i = 0; i < m_staleMeshes.size(); ++i) {
        const auto found = m_meshes.find(m_staleMeshes[i]);
        if (found == m_meshes.end() || found->second.users.empty()) {
            continue;
        }
        Mesh& mesh = found->second;
        if (mesh.stale) {
            const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(m_staleMeshes[i]);
            if (container == osg::NullFC) {
                continue;
            }
            read(osg::GeometryPtr::dcast(container), mesh);
        }
        for (const std::uint32_t user : mesh.users) {
            moveItem(user);
        }
    }
    m_staleMeshes.clear();
}

bool BatchList::isWanted(const osg::NodePtr&)
{
    return true;
}

void BatchList::geometryShown(const std::size_t place, const GeometryInstance& instance)
{
    m_items.growTo(place + 1);
    Mesh& mesh = getMesh(instance.geometry);
    DrawItem& item = m_items[place];
    const osg::UInt32 materialId = idOf(instance.material);
    if (item.mesh == &mesh && item.materialId == materialId && isSame(item.toWorld, instance.toWorld)) {
        return;
    }
    if (item.mesh != &mesh) {
        geometryGone(place);
        item.mesh = &mesh;
        item.geometryId = osg::getContainerId(instance.geometry);
        item.user = static_cast<std::uint32_t>(mesh.users.size());
        mesh.users.push_back(static_cast<std::uint32_t>(place));
    }
    item.material = instance.material;
    item.materialId = materialId;
    item.toWorld = instance.toWorld;
    moveItem(static_cast<std::uint32_t>(place));
}

void BatchList::geometryGone(const std::size_t place)
{
    DrawItem& item = m_items[place];
    if (item.mesh == nullptr) {
        return;
    }
    const std::uint32_t group = item.group;
    const std::uint32_t batch = item.batch;
    takeOut(static_cast<std::uint32_t>(place));
    tidy(group, batch);
    std::vector<std::uint32_t>& users = item.mesh->users;
    users[item.user] = users.back();
    m_items[users.back()].user = item.user;
    users.pop_back();
    item = DrawItem();
}

Mesh& BatchList::getMesh(const osg::GeometryPtr& geometry)
{
    const osg::UInt32 id = osg::getContainerId(geometry);
    Mesh& mesh = m_meshes[id];
    if (mesh.stale || mesh.properties != getProperties(geometry)) {
        read(geometry, mesh);
        if (!mesh.users.empty()) {
            m_staleMeshes.push_back(id);
        }
    }
    return mesh;
}

void BatchList::read(const osg::GeometryPtr& geometry, Mesh& mesh)
{
    mesh.content = PreparedGeometries::read(m_prepared, geometry);
    const GeometryData& data = mesh.content->getData();
    mesh.minimum = mesh.content->getMinimum();
    mesh.maximum = mesh.content->getMaximum();
    mesh.vertexCount = data.positions.size();
    mesh.hasNormals = !data.normals.empty();
    mesh.hasColours = !data.colours.empty();
    mesh.facing = mesh.content->getFacing();
    mesh.counts = {data.triangles.size(), data.lines.size(), data.points.size()};
    mesh.properties = getProperties(geometry);
    m_newestId = std::max(m_newestId, osg::getContainerId(geometry));
    m_newestId = std::max(m_newestId, *std::max_element(mesh.properties.begin(), mesh.properties.end()));
    mesh.stale = false;
    mesh.buffersStale = true;
    ++m_readCount;
}

void BatchList::moveItem(const std::uint32_t place)
{
    const std::uint32_t group = m_items[place].group;
    const std::uint32_t batch = m_items[place].batch;
    takeOut(place);
    this->place(place, group, batch);
    tidy(group, batch);
}

void BatchList::place(const std::uint32_t place, const std::uint32_t formerGroup, const std::uint32_t formerBatch)
{
    DrawItem& item = m_items[place];
    const Mesh& mesh = *item.mesh;
    if (mesh.counts.getSum() == 0 || !Matrix4(item.toWorld).isFinite()) {
        return;
    }
    const bool isNear = setBounds(item);
    const bool single = !isNear || mesh.vertexCount > MostVerticesOfPiece || !isAffine(item.toWorld);
    const std::uint32_t groupIndex = findGroup(item);
    DrawGroup& group = *m_groups[groupIndex];
    item.group = groupIndex;
    ++group.itemCount;
    if (single) {
        item.slot = static_cast<std::uint32_t>(group.singles.size());
        group.singles.push_back(place);
        return;
    }
    const std::uint32_t preferred = groupIndex == formerGroup ? formerBatch : DrawItem::None;
    item.batch = findBatch(groupIndex, preferred, item);
    Batch& batch = *m_batches[item.batch];
    if (batch.items.empty()) {
        batch.minimum = item.minimum;
        batch.maximum = item.maximum;
    } else {
        include(batch.minimum, batch.maximum, item.minimum);
        include(batch.minimum, batch.maximum, item.maximum);
    }
    item.slot = static_cast<std::uint32_t>(batch.items.size());
    batch.items.push_back(place);
    batch.vertexCount += mesh.vertexCount;
    item.vertexCount = mesh.vertexCount;
    batch.stale = true;
}

void BatchList::takeOut(const std::uint32_t place)
{
    DrawItem& item = m_items[place];
    if (item.group == DrawItem::None) {
        return;
    }
    DrawGroup& group = *m_groups[item.group];
    --group.itemCount;
    std::vector<std::uint32_t>* items = &group.singles;
    if (item.batch != DrawItem::None) {
        Batch& batch = *m_batches[item.batch];
        items = &batch.items;
        batch.stale = true;
        batch.vertexCount -= item.vertexCount;
    }
    (*items)[item.slot] = items->back();
    m_items[items->back()].slot = item.slot;
    items->pop_back();
    item.group = item.batch = DrawItem::None;
}

/// Drops a batch and a group that something was taken out of when they are empty; lets others be filled again.
void BatchList::tidy(const std::uint32_t groupIndex, const std::uint32_t batchIndex)
{
    if (groupIndex == DrawItem::None) {
        return;
    }
    DrawGroup& group = *m_groups[groupIndex];
    if (batchIndex != DrawItem::None) {
        Batch& batch = *m_batches[batchIndex];
        const auto open = std::find(group.open.begin(), group.open.end(), batchIndex);
        if (batch.items.empty()) {
            if (open != group.open.end()) {
                group.open.erase(open);
            }
            group.batches.erase(std::find(group.batches.begin(), group.batches.end(), batchIndex));
            batch.buffers.release(m_doomedBuffers);
            batch.markers.release(m_doomedBuffers);
            m_batches[batchIndex] = nullptr;
            m_freeBatches.push_back(batchIndex);
        } else if (open == group.open.end() && batch.items.size() < MostItemsOfBatch / 2 &&
                   batch.vertexCount < MostVerticesOfBatch / 2) {
            group.open.push_back(batchIndex);
        }
    }
    if (group.itemCount == 0) {
        m_groupIndices.erase(
            GroupKey(group.materialId, group.format.hasNormals, group.format.hasColours, group.facing, group.size));
        m_groups[groupIndex] = nullptr;
        m_freeGroups.push_back(groupIndex);
    }
}

std::uint32_t BatchList::findGroup(const DrawItem& item)
{
    // Points without extent have a size class of their own.
    const int size = item.radius > 0 && std::isfinite(item.radius)
                         ? static_cast<int>(std::floor(std::log2(item.radius) / OctavesOfGroup))
                         : NoSize;
    const VertexFormat format = item.mesh->getFormat();
    const SurfaceFacing facing = findFacing(item);
    const auto [index, isNew] =
        m_groupIndices.try_emplace(GroupKey(item.materialId, format.hasNormals, format.hasColours, facing, size), 0);
    if (!isNew) {
        return index->second;
    }
    if (m_freeGroups.empty()) {
        m_freeGroups.push_back(static_cast<std::uint32_t>(m_groups.size()));
        m_groups.emplace_back();
    }
    index->second = m_freeGroups.back();
    m_freeGroups.pop_back();
    auto group = std::make_unique<DrawGroup>();
    group->material = item.material;
    group->materialId = item.materialId;
    group->format = format;
    group->facing = facing;
    group->size = size;
    group->leastRadius = size == NoSize ? 0.0F : std::ldexp(1.0F, size * OctavesOfGroup);
    const auto [rank, isNewMaterial] = m_ranks.try_emplace(item.materialId, m_nextRank);
    m_nextRank += isNewMaterial ? 1 : 0;
    group->rank = rank->second;
    m_groups[index->second] = std::move(group);
    return index->second;
}

std::uint32_t BatchList::findBatch(const std::uint32_t groupIndex, const std::uint32_t preferred, const DrawItem& item)
{
    DrawGroup& group = *m_groups[groupIndex];
    if (preferred != DrawItem::None && fits(*m_batches[preferred], group, item)) {
        return preferred;
    }
    for (std::size_t i = group.open.size(); i > 0; --i) {
        if (fits(*m_batches[group.open[i - 1]], group, item)) {
            return group.open[i - 1];
        }
    }
    if (m_freeBatches.empty()) {
        m_freeBatches.push_back(static_cast<std::uint32_t>(m_batches.size()));
        m_batches.emplace_back();
    }
    const std::uint32_t index = m_freeBatches.back();
    m_freeBatches.pop_back();
    m_batches[index] = std::make_unique<Batch>();
    group.batches.push_back(index);
    if (group.open.size() == MostOpenBatches) {
        group.open.erase(group.open.begin());
    }
    group.open.push_back(index);
    return index;
}

bool BatchList::fits(const Batch& batch, const DrawGroup& group, const DrawItem& item)
{
    if (batch.items.empty()) {
        return true;
    }
    if (batch.items.size() >= MostItemsOfBatch || batch.vertexCount + item.mesh->vertexCount > MostVerticesOfBatch) {
        return false;
    }
    if (!(group.leastRadius > 0)) {
        return true;
    }
    const float farthest = MostRadii * group.leastRadius;
    for (osg::UInt32 axis = 0; axis < 3; ++axis) {
        if (!(std::max(batch.maximum[axis], item.maximum[axis]) - std::min(batch.minimum[axis], item.minimum[axis]) <=
              farthest)) {
            return false;
        }
    }
    return true;
}

void BatchList::dropMesh(const osg::UInt32 geometryId)
{
    const auto mesh = m_meshes.find(geometryId);
    if (mesh == m_meshes.end()) {
        return;
    }
    while (!mesh->second.users.empty()) {
        geometryGone(mesh->second.users.back());
    }
    // No context may be current now: the buffers go at the next drawing.
    mesh->second.buffers.release(m_doomedBuffers);
    m_meshes.erase(mesh);
}

void BatchList::build(const std::vector<Batch*>& batches, WorkerPool& workers)
{
    const std::size_t width = workers.getWidth();
    m_contents.resize(std::max(m_contents.size(), std::min(2 * width, batches.size())));
    const auto getContent = [&](const std::size_t place) -> BatchContent& { return m_contents[place % (2 * width)]; };
    // While some are put together, the ones before go into their buffers.
    for (std::size_t first = 0; first < batches.size() + width; first += width) {
        const std::size_t end = std::min(first + width, batches.size());
        workers.forEach(
            end - std::min(first, end),
            [&](const std::size_t i) { prepare(*batches[first + i], getContent(first + i)); },
            [&] {
                for (std::size_t i = first - std::min(first, width); i < std::min(first, batches.size()); ++i) {
                    fill(*batches[i], getContent(i));
                }
            });
    }
}

void BatchList::fill(Batch& batch, const BatchContent& content)
{
    batch.buffers.fillVertices(content.data);
    batch.markers.fill(content.markers);
    batch.stale = false;
    ++m_buildCount;
}

/// In several threads at once: touches nothing but the batch, its items and the content.
void BatchList::prepare(Batch& batch, BatchContent& content)
{
    sortItems(batch, content);
    VertexData& data = content.data;
    data.clear();
    data.format = m_items[batch.items.front()].mesh->getFormat();
    data.vertices.reserve(batch.vertexCount * data.format.getSize());
    batch.ends.clear();
    batch.radii.clear();
    batch.boxes.clear();
    batch.patterns.clear();
    batch.patternOfItem.clear();
    batch.firstVertices.clear();
    content.markers.clear();
    IndexCounts counts;
    for (const auto& [radius, place] : content.order) {
        const DrawItem& item = m_items[place];
        batch.firstVertices.push_back(static_cast<std::uint32_t>(data.vertexCount));
        batch.patternOfItem.push_back(findPattern(batch, item, content.corners));
        Baker(item.toWorld, batch.origin).addVertices(data, item.mesh->content->getData());
        counts += item.mesh->counts;
        batch.ends.push_back(counts);
        batch.radii.push_back(radius);
        batch.boxes.push_back({item.minimum, item.maximum});
        content.markers.push_back(makeMarker(item, batch.origin));
    }
}

/// Large ones first, so that small ones can be left out; finds the box and the origin of the batch as well.
void BatchList::sortItems(Batch& batch, BatchContent& content)
{
    content.order.clear();
    for (const std::uint32_t place : batch.items) {
        content.order.emplace_back(m_items[place].radius * vary(place), place);
    }
    std::sort(content.order.begin(), content.order.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first > b.first : a.second < b.second;
    });

    // The box may have become smaller since.
    batch.minimum = m_items[batch.items.front()].minimum;
    batch.maximum = m_items[batch.items.front()].maximum;
    for (std::size_t i = 0; i < content.order.size(); ++i) {
        DrawItem& item = m_items[content.order[i].second];
        batch.items[i] = content.order[i].second;
        item.slot = static_cast<std::uint32_t>(i);
        include(batch.minimum, batch.maximum, item.minimum);
        include(batch.minimum, batch.maximum, item.maximum);
    }
    for (osg::UInt32 axis = 0; axis < 3; ++axis) {
        batch.origin[axis] = (static_cast<double>(batch.minimum[axis]) + static_cast<double>(batch.maximum[axis])) / 2;
    }
}

std::uint32_t BatchList::findPattern(Batch& batch, const DrawItem& item, std::vector<std::uint8_t>& corners)
{
    const GeometryData& data = item.mesh->content->getData();
    findCorners(item, data, corners);
    const std::size_t count = batch.patterns.size();
    for (std::size_t i = count; i > 0 && count - i < MostPatternsCompared; --i) {
        if (batch.patterns[i - 1].equals(data, corners)) {
            return static_cast<std::uint32_t>(i - 1);
        }
    }
    IndexPattern pattern;
    pattern.triangles.assign(data.triangles.begin(), data.triangles.end());
    pattern.lines.assign(data.lines.begin(), data.lines.end());
    pattern.points.assign(data.points.begin(), data.points.end());
    pattern.corners = corners;
    batch.patterns.push_back(std::move(pattern));
    return static_cast<std::uint32_t>(count);
}

void BatchList::build(Mesh& mesh)
{
    m_data.clear();
    m_data.format = mesh.getFormat();
    Baker(osg::Matrix(), {}).addTo(m_data, mesh.content->getData());
    mesh.buffers.fill(m_data);
    mesh.buffersStale = false;
    ++m_buildCount;
    if (mesh.vertexCount > MostVerticesOfPiece) {
        // Nobody copies from it; it is read again when it changes.
        mesh.content = nullptr;
        m_data = {};
    }
}

void BatchList::deleteDoomedBuffers()
{
    if (!m_doomedBuffers.empty()) {
        glDeleteBuffers(static_cast<GLsizei>(m_doomedBuffers.size()), m_doomedBuffers.data());
        m_doomedBuffers.clear();
    }
}

void BatchList::release()
{
    m_mirror.clear();
    for (auto& [id, mesh] : m_meshes) {
        mesh.buffers.release(m_doomedBuffers);
    }
    m_meshes.clear();
    m_staleMeshes.clear();
    m_items.clear();
    deleteDoomedBuffers();
    m_data = VertexData();
    m_contents = std::vector<BatchContent>();
}

std::vector<DrawGroup*> BatchList::getGroups() const
{
    std::vector<DrawGroup*> groups;
    for (const auto& group : m_groups) {
        if (group != nullptr) {
            groups.push_back(group.get());
        }
    }
    std::stable_sort(groups.begin(), groups.end(),
                     [](const DrawGroup* a, const DrawGroup* b) { return a->rank < b->rank; });
    return groups;
}

std::size_t BatchList::takeReadCount()
{
    return std::exchange(m_readCount, 0);
}

std::size_t BatchList::takeBuildCount()
{
    return std::exchange(m_buildCount, 0);
}

} // namespace quon::viewer
