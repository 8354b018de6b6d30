// SPDX-License-Identifier: MIT
#include "Viewer/Tools/EmbreePicker.h"

#include "Viewer/Model/GeometryData.h"
#include "Viewer/Model/Matrix4.h"
#include "Viewer/Model/Part.h"
#include "Viewer/Model/SceneTraversal.h"

#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGTransform.h>

#include <embree3/rtcore.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <set>
#include <unordered_map>
#include <utility>

namespace quon::viewer {

namespace {

constexpr osg::UInt32 AllBits = 0xFFFFFFFF;

// From here on nothing of a surface is to be seen.
constexpr float WhollyTransparent = 0.9999F;

bool isWhollyTransparent(const osg::MaterialPtr& material)
{
    if (material == osg::NullFC) {
        return false;
    }
    const osg::SimpleMaterialPtr simple = osg::SimpleMaterialPtr::dcast(material);
    return simple != osg::NullFC && simple->getTransparency() >= WhollyTransparent;
}

struct RawHit {
    unsigned instance;
    unsigned triangle;
    float u;
    float v;
    float distance;
};

// Handed through Embree to the filter below.
struct CollectingContext {
    RTCIntersectContext context; // first: Embree gives the filter a pointer to it
    std::vector<RawHit>* hits;
};

// Notes a hit and refuses it, so that the ray goes on to the next one.
void collectHit(const RTCFilterFunctionNArguments* arguments)
{
    auto* context = reinterpret_cast<CollectingContext*>(arguments->context);
    const auto* ray = reinterpret_cast<const RTCRay*>(arguments->ray);
    const auto* hit = reinterpret_cast<const RTCHit*>(arguments->hit);
    if (arguments->valid[0] != 0) {
        context->hits->push_back({hit->instID[0], hit->primID, hit->u, hit->v, ray->tfar});
    }
    arguments->valid[0] = 0;
}

// A corner of a clipped triangle: where it is in clip space and in the world.
struct ClippedCorner {
    Vector4 clip;
    Vector4 world;
};

using ClippedPolygon = std::vector<ClippedCorner>;

// The region as planes in clip space; a point is inside when every product is positive or zero.
using RegionPlanes = std::array<Vector4, 6>;

double product(const Vector4& plane, const Vector4& point)
{
    return plane[0] * point[0] + plane[1] * point[1] + plane[2] * point[2] + plane[3] * point[3];
}

void clip(ClippedPolygon& polygon, const RegionPlanes& planes)
{
    ClippedPolygon rest;
    for (const Vector4& plane : planes) {
        rest.clear();
        for (std::size_t i = 0; i < polygon.size(); ++i) {
            const ClippedCorner& from = polygon[i];
            const ClippedCorner& to = polygon[(i + 1) % polygon.size()];
            const double fromSide = product(plane, from.clip);
            const double toSide = product(plane, to.clip);
            if (fromSide >= 0) {
                rest.push_back(from);
            }
            if ((fromSide >= 0) != (toSide >= 0)) {
                const double share = fromSide / (fromSide - toSide);
                ClippedCorner crossing{};
                for (std::size_t axis = 0; axis < 4; ++axis) {
                    crossing.clip[axis] = from.clip[axis] + share * (to.clip[axis] - from.clip[axis]);
                    crossing.world[axis] = from.world[axis] + share * (to.world[axis] - from.world[axis]);
                }
                rest.push_back(crossing);
            }
        }
        polygon.swap(rest);
        if (polygon.empty()) {
            return;
        }
    }
}

} // namespace

/** The visible geometry below the root as Embree wants it: one scene per geometry core, one instance per node. */
class EmbreePicker::Scene final : private SceneVisitor {
public:
    struct Instance {
        osg::NodePtr node;
        osg::MaterialPtr material;
        Matrix4 toWorld;
        const GeometryData* data;
    };

    Scene()
        : m_device(rtcNewDevice(nullptr))
    {}

    ~Scene()
    {
        clear();
        for (auto& [id, mesh] : m_meshes) {
            rtcReleaseScene(mesh.scene);
        }
        rtcReleaseDevice(m_device);
    }

    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    void build(const osg::NodePtr& root)
    {
        clear();
        m_top = rtcNewScene(m_device);
        rtcSetSceneFlags(m_top, RTC_SCENE_FLAG_ROBUST | RTC_SCENE_FLAG_CONTEXT_FILTER_FUNCTION);
        traverseScene(root, AllBits, *this);
        for (osg::NodePtr node = root; node != osg::NullFC; node = node->getParent()) {
            // The place of the root hangs on what is above it.
            watchNode(node);
        }
        rtcCommitScene(m_top);
        // A mesh that no node showed this time is stale the moment its geometry changes: rather build it again.
        for (auto mesh = m_meshes.begin(); mesh != m_meshes.end();) {
            if (mesh->second.used) {
                ++mesh;
            } else {
                rtcReleaseScene(mesh->second.scene);
                mesh = m_meshes.erase(mesh);
            }
        }
    }

    void clear()
    {
        if (m_top != nullptr) {
            rtcReleaseScene(m_top);
            m_top = nullptr;
        }
        m_instances.clear();
        m_watched.clear();
        for (auto& [id, mesh] : m_meshes) {
            mesh.used = false;
        }
    }

    /** Whether the changes touch something that this scene was built from; drops the meshes that they make stale. */
    bool isTouchedBy(const SceneChanges& changes)
    {
        bool touched = false;
        for (const osg::UInt32 id : changes.getDestroyed()) {
            touched = touched || m_watched.count(id) != 0;
            dropMesh(id);
        }
        for (const auto& [id, mask] : changes.getChanged()) {
            const auto watched = m_watched.find(id);
            if (watched != m_watched.end() && (watched->second.mask & mask) != 0) {
                touched = true;
                for (const osg::UInt32 mesh : watched->second.meshes) {
                    dropMesh(mesh);
                }
            }
        }
        return touched;
    }

    const std::vector<Instance>& getInstances() const { return m_instances; }

    std::vector<RawHit> intersect(const Ray& ray, const bool nearestOnly) const
    {
        std::vector<RawHit> hits;
        RTCRayHit query{};
        query.ray.org_x = ray.origin[0];
        query.ray.org_y = ray.origin[1];
        query.ray.org_z = ray.origin[2];
        query.ray.dir_x = ray.direction[0];
        query.ray.dir_y = ray.direction[1];
        query.ray.dir_z = ray.direction[2];
        query.ray.tnear = 0;
        query.ray.tfar = ray.length;
        query.ray.mask = AllBits;
        query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        query.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;

        CollectingContext context{};
        rtcInitIntersectContext(&context.context);
        if (!nearestOnly) {
            context.hits = &hits;
            context.context.filter = collectHit;
        }
        rtcIntersect1(m_top, &context.context, &query);
        if (nearestOnly && query.hit.geomID != RTC_INVALID_GEOMETRY_ID) {
            hits.push_back({query.hit.instID[0], query.hit.primID, query.hit.u, query.hit.v, query.ray.tfar});
        }

        std::stable_sort(hits.begin(), hits.end(), [](const RawHit& a, const RawHit& b) {
            return a.distance != b.distance ? a.distance < b.distance
                                            : std::pair(a.instance, a.triangle) < std::pair(b.instance, b.triangle);
        });
        // A tree may hold a triangle more than once.
        hits.erase(std::unique(hits.begin(), hits.end(),
                               [](const RawHit& a, const RawHit& b) {
                                   return a.instance == b.instance && a.triangle == b.triangle;
                               }),
                   hits.end());
        return hits;
    }

private:
    struct Mesh {
        GeometryData data;
        RTCScene scene = nullptr;
        bool used = false;
    };

    struct Watched {
        osg::BitVector mask = 0;         ///< the fields that matter
        std::vector<osg::UInt32> meshes; ///< ids of the geometries that go stale with it
    };

    void watchNode(const osg::NodePtr& node)
    {
        m_watched[osg::getContainerId(node)].mask = osg::Node::TravMaskFieldMask | osg::Node::ParentFieldMask |
                                                    osg::Node::ChildrenFieldMask | osg::Node::CoreFieldMask |
                                                    osg::AttachmentContainer::AttachmentsFieldMask;
        const osg::NodeCorePtr core = node->getCore();
        if (core == osg::NullFC) {
            return;
        }
        if (osg::TransformPtr::dcast(core) != osg::NullFC) {
            m_watched[osg::getContainerId(core)].mask = osg::Transform::MatrixFieldMask;
        } else if (osg::MaterialGroupPtr::dcast(core) != osg::NullFC) {
            m_watched[osg::getContainerId(core)].mask = osg::MaterialGroup::MaterialFieldMask;
        } else if (osg::SwitchPtr::dcast(core) != osg::NullFC) {
            m_watched[osg::getContainerId(core)].mask = osg::Switch::ChoiceFieldMask;
        }
    }

    bool enterNode(const osg::NodePtr& node) override
    {
        watchNode(node);
        return !koNodeUtils::isAuxiliaryNode(node);
    }

    void visitGeometry(const GeometryInstance& instance) override
    {
        const osg::UInt32 id = osg::getContainerId(instance.geometry);
        // Without its parents: copies of the node that share the core come and go with every selection.
        m_watched[id] = {~osg::NodeCore::ParentsFieldMask, {id}};
        const auto watchProperty = [&](const osg::AttachmentPtr& property) {
            if (property != osg::NullFC) {
                Watched& watched = m_watched[osg::getContainerId(property)];
                watched.mask = ~osg::Attachment::ParentsFieldMask;
                watched.meshes.push_back(id);
            }
        };
        watchProperty(instance.geometry->getTypes());
        watchProperty(instance.geometry->getLengths());
        watchProperty(instance.geometry->getPositions());
        watchProperty(instance.geometry->getIndices());
        watchProperty(instance.geometry->getTexCoords());
        if (instance.material != osg::NullFC) {
            m_watched[osg::getContainerId(instance.material)].mask = ~osg::BitVector(0);
        }

        const Matrix4 toWorld(instance.toWorld);
        if (!toWorld.isFinite()) {
            return;
        }
        Mesh& mesh = getMesh(id, instance.geometry);
        // Rays hit triangles only; what has none is found by rectangles.
        if (!mesh.data.triangles.empty()) {
            RTCGeometry geometry = rtcNewGeometry(m_device, RTC_GEOMETRY_TYPE_INSTANCE);
            rtcSetGeometryInstancedScene(geometry, mesh.scene);
            rtcSetGeometryTransform(geometry, 0, RTC_FORMAT_FLOAT4X4_COLUMN_MAJOR, instance.toWorld.getValues());
            rtcCommitGeometry(geometry);
            rtcAttachGeometryByID(m_top, geometry, static_cast<unsigned>(m_instances.size()));
            rtcReleaseGeometry(geometry);
        }
        m_instances.push_back({instance.node, instance.material, toWorld, &mesh.data});
    }

    Mesh& getMesh(const osg::UInt32 id, const osg::GeometryPtr& geometry)
    {
        Mesh& mesh = m_meshes[id];
        mesh.used = true;
        if (mesh.scene != nullptr) {
            return mesh;
        }
        mesh.data = GeometryData::read(geometry);
        mesh.scene = rtcNewScene(m_device);
        rtcSetSceneFlags(mesh.scene, RTC_SCENE_FLAG_ROBUST | RTC_SCENE_FLAG_CONTEXT_FILTER_FUNCTION);
        if (!mesh.data.triangles.empty()) {
            RTCGeometry triangles = rtcNewGeometry(m_device, RTC_GEOMETRY_TYPE_TRIANGLE);
            void* vertices = rtcSetNewGeometryBuffer(triangles, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                                     3 * sizeof(float), mesh.data.positions.size());
            auto* coordinate = static_cast<float*>(vertices);
            for (const osg::Pnt3f& position : mesh.data.positions) {
                coordinate = std::copy_n(position.getValues(), 3, coordinate);
            }
            void* indices = rtcSetNewGeometryBuffer(triangles, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                                    3 * sizeof(unsigned), mesh.data.triangles.size() / 3);
            std::memcpy(indices, mesh.data.triangles.data(), mesh.data.triangles.size() * sizeof(osg::UInt32));
            rtcCommitGeometry(triangles);
            rtcAttachGeometryByID(mesh.scene, triangles, 0);
            rtcReleaseGeometry(triangles);
        }
        rtcCommitScene(mesh.scene);
        return mesh;
    }

    void dropMesh(const osg::UInt32 id)
    {
        const auto mesh = m_meshes.find(id);
        if (mesh != m_meshes.end()) {
            // The instances hold it until the next build.
            rtcReleaseScene(mesh->second.scene);
            m_meshes.erase(mesh);
        }
    }

    RTCDevice m_device;
    RTCScene m_top = nullptr;
    std::vector<Instance> m_instances;
    std::unordered_map<osg::UInt32, Mesh> m_meshes;
    std::unordered_map<osg::UInt32, Watched> m_watched;
};

bool EmbreePicker::Key::equals(const Key& other) const
{
    if (rectangle.has_value() != other.rectangle.has_value() ||
        (rectangle && (!(*rectangle == *other.rectangle) || enclosed != other.enclosed || depth != other.depth))) {
        return false;
    }
    // Exact: the tolerant comparisons of points and matrices would let a slow camera keep a stale answer.
    return set && other.set && std::equal(pointer.getValues(), pointer.getValues() + 2, other.pointer.getValues()) &&
           std::equal(camera.getValues(), camera.getValues() + 16, other.camera.getValues()) && width == other.width &&
           height == other.height && region == other.region && transparency == other.transparency &&
           revision == other.revision;
}

EmbreePicker::EmbreePicker()
    : m_scene(std::make_unique<Scene>())
{}

EmbreePicker::~EmbreePicker() = default;

void EmbreePicker::setViewportSize(const int width, const int height)
{
    m_width = std::max(1, width);
    m_height = std::max(1, height);
}

void EmbreePicker::setPointer(const osg::Pnt2f& position)
{
    m_pointer = position;
}

osg::Pnt2f EmbreePicker::getPointer() const
{
    return m_pointer;
}

void EmbreePicker::setCamera(const osg::Matrix& camera)
{
    m_camera = camera;
}

osg::Matrix EmbreePicker::getCamera() const
{
    return m_camera;
}

const std::vector<osg::NodePtr>& EmbreePicker::getPickedNodes(osg::SelectionOption* option)
{
    m_asksForNodes = true;
    const std::vector<osg::NodePtr>& nodes = LazyPicker::getPickedNodes(option);
    m_asksForNodes = false;
    return nodes;
}

void EmbreePicker::setRoot(const osg::NodePtr& root)
{
    LazyPicker::setRoot(root);
    m_sceneStale = true;
    ++m_revision;
}

void EmbreePicker::invalidate()
{
    LazyPicker::invalidate();
    m_sceneStale = true;
    ++m_revision;
}

void EmbreePicker::sceneChanged(const SceneChanges& changes)
{
    if (m_scene->isTouchedBy(changes)) {
        m_sceneStale = true;
        ++m_revision;
    }
}

osg::NodePtr EmbreePicker::findNodeAt(const osg::Pnt2f& position)
{
    const std::vector<Hit> hits = pickRay(position, true);
    return hits.empty() ? osg::NodePtr(osg::NullFC) : hits.front().node;
}

bool EmbreePicker::isCacheValid()
{
    // The picks and the node list share one dirty flag: each has to prove by its own key that it is up to date.
    return (m_asksForNodes ? m_nodesKey : m_pickKey).equals(getCurrentKey());
}

bool EmbreePicker::updateSelectionOption(osg::SelectionOption*& option)
{
    const auto* region = dynamic_cast<const RegionOption*>(option);
    m_rectangle = region == nullptr ? std::nullopt : std::optional<PixelRectangle>(region->getRectangle());
    // Part of the key that isCacheValid() compares.
    return false;
}

void EmbreePicker::computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                                 osg::MaterialPtr& material, osg::SelectionOption*)
{
    const std::vector<Hit> hits = pickRay(m_pointer, true);
    const Hit hit = hits.empty() ? Hit() : hits.front();
    node = hit.node;
    point = hit.point;
    normal = hit.normal;
    uv = hit.uv;
    material = hit.material;
    m_pickKey = getCurrentKey();
}

void EmbreePicker::computePickedNodes(std::vector<osg::NodePtr>* nodes, osg::SelectionOption*)
{
    nodes->clear();
    if (m_rectangle) {
        *nodes = pickParts(*m_rectangle);
    } else {
        for (const Hit& hit : pickRegion()) {
            nodes->push_back(hit.node);
        }
    }
    m_nodesKey = getCurrentKey();
}

void EmbreePicker::computeMultiPicked(const MultiMode mode, std::vector<osg::NodePtr>* nodes,
                                      std::vector<osg::Pnt3f>* points, std::vector<osg::Vec3f>* normals,
                                      std::vector<osg::MaterialPtr>* materials)
{
    std::vector<Hit> hits;
    if (mode == AllHits) {
        hits = pickRay(m_pointer, false);
    } else if (mode == Region) {
        hits = pickRegion();
    }
    for (const Hit& hit : hits) {
        nodes->push_back(hit.node);
        points->push_back(hit.point);
        normals->push_back(hit.normal);
        materials->push_back(hit.material);
    }
    m_pickKey = getCurrentKey();
}

EmbreePicker::Key EmbreePicker::getCurrentKey() const
{
    Key key;
    key.pointer = m_pointer;
    key.camera = m_camera;
    key.width = m_width;
    key.height = m_height;
    key.region = getSelectionRegion();
    key.transparency = getTransparencyEvaluationEnabled();
    key.rectangle = m_rectangle;
    key.enclosed = getFullyEnclosed();
    key.depth = getDepthSelection();
    key.revision = m_revision;
    key.set = true;
    return key;
}

bool EmbreePicker::makeRay(const osg::Pnt2f& position, Ray& ray) const
{
    const Matrix4 worldToClip(m_camera);
    bool invertible = false;
    const Matrix4 clipToWorld = worldToClip.inverted(&invertible);
    const double x = (static_cast<double>(position[0]) + 0.5) / m_width * 2 - 1;
    const double y = 1 - (static_cast<double>(position[1]) + 0.5) / m_height * 2;
    const Vector4 nearPoint = clipToWorld * Vector4{x, y, -1, 1};
    const Vector4 farPoint = clipToWorld * Vector4{x, y, 1, 1};
    if (!invertible) {
        return false;
    }

    double direction[3] = {};
    double length = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double start = nearPoint[axis] / nearPoint[3];
        direction[axis] = farPoint[axis] / farPoint[3] - start;
        length += direction[axis] * direction[axis];
        ray.origin[static_cast<osg::UInt32>(axis)] = static_cast<float>(start);
    }
    length = std::sqrt(length);
    // Written so that a NaN anywhere fails.
    if (!(length > 0) || !std::isfinite(length)) {
        return false;
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        ray.direction[static_cast<osg::UInt32>(axis)] = static_cast<float>(direction[axis] / length);
    }
    ray.length = static_cast<float>(length);
    return true;
}

std::vector<EmbreePicker::Hit> EmbreePicker::pickRay(const osg::Pnt2f& position, const bool nearestOnly)
{
    updateScene();
    std::vector<Hit> hits;
    Ray ray;
    if (!makeRay(position, ray)) {
        return hits;
    }

    const bool transparency = getTransparencyEvaluationEnabled();
    std::vector<RawHit> rawHits = m_scene->intersect(ray, nearestOnly);
    const auto isPassed = [&](const RawHit& raw) {
        return transparency && isWhollyTransparent(m_scene->getInstances()[raw.instance].material);
    };
    if (nearestOnly && !rawHits.empty() && isPassed(rawHits.front())) {
        rawHits = m_scene->intersect(ray, false);
    }

    for (const RawHit& raw : rawHits) {
        if (isPassed(raw)) {
            continue;
        }
        const Scene::Instance& instance = m_scene->getInstances()[raw.instance];
        const GeometryData& data = *instance.data;
        const double weights[3] = {1.0 - static_cast<double>(raw.u) - static_cast<double>(raw.v),
                                   static_cast<double>(raw.u), static_cast<double>(raw.v)};
        Vector4 corners[3];
        Vector4 point{};
        double uv[2] = {};
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const osg::UInt32 index = data.triangles[raw.triangle * std::size_t(3) + corner];
            corners[corner] = instance.toWorld.transform(data.positions[index]);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                point[axis] += weights[corner] * corners[corner][axis];
            }
            if (!data.texCoords.empty()) {
                uv[0] += weights[corner] * static_cast<double>(data.texCoords[index][0]);
                uv[1] += weights[corner] * static_cast<double>(data.texCoords[index][1]);
            }
        }
        double edges[2][3] = {};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            edges[0][axis] = corners[1][axis] - corners[0][axis];
            edges[1][axis] = corners[2][axis] - corners[0][axis];
        }

        Hit hit;
        hit.node = instance.node;
        hit.material = instance.material;
        hit.distance = raw.distance;
        hit.point =
            osg::Pnt3f(static_cast<float>(point[0]), static_cast<float>(point[1]), static_cast<float>(point[2]));
        hit.uv = osg::Vec2f(static_cast<float>(uv[0]), static_cast<float>(uv[1]));
        hit.normal = osg::Vec3f(static_cast<float>(edges[0][1] * edges[1][2] - edges[0][2] * edges[1][1]),
                                static_cast<float>(edges[0][2] * edges[1][0] - edges[0][0] * edges[1][2]),
                                static_cast<float>(edges[0][0] * edges[1][1] - edges[0][1] * edges[1][0]));
        hit.normal.normalize();
        if (getMakeNormalsConsistent() && hit.normal.dot(ray.direction) > 0) {
            hit.normal.negate();
        }
        hits.push_back(hit);
        if (nearestOnly) {
            break;
        }
    }
    return hits;
}

std::vector<EmbreePicker::Hit> EmbreePicker::pickRegion()
{
    updateScene();
    const int reach = std::max(0, getSelectionRegion());
    const double left = (static_cast<double>(m_pointer[0]) - reach) / m_width * 2 - 1;
    const double right = (static_cast<double>(m_pointer[0]) + 1 + reach) / m_width * 2 - 1;
    const double top = 1 - (static_cast<double>(m_pointer[1]) - reach) / m_height * 2;
    const double bottom = 1 - (static_cast<double>(m_pointer[1]) + 1 + reach) / m_height * 2;
    const RegionPlanes planes{Vector4{1, 0, 0, -left}, Vector4{-1, 0, 0, right}, Vector4{0, 1, 0, -bottom},
                              Vector4{0, -1, 0, top},  Vector4{0, 0, 1, 1},      Vector4{0, 0, -1, 1}};
    const Matrix4 worldToClip(m_camera);
    std::vector<Hit> hits;
    if (!worldToClip.isFinite()) {
        return hits;
    }

    std::set<osg::NodePtr> inFront;
    if (!getDepthSelection()) {
        for (int y = -reach; y <= reach; ++y) {
            for (int x = -reach; x <= reach; ++x) {
                const osg::Pnt2f pixel(m_pointer[0] + static_cast<float>(x), m_pointer[1] + static_cast<float>(y));
                if (const osg::NodePtr node = findNodeAt(pixel); node != osg::NullFC) {
                    inFront.insert(node);
                }
            }
        }
    }

    for (const Scene::Instance& instance : m_scene->getInstances()) {
        if ((!getDepthSelection() && inFront.count(instance.node) == 0) ||
            (getTransparencyEvaluationEnabled() && isWhollyTransparent(instance.material))) {
            continue;
        }
        const GeometryData& data = *instance.data;
        Hit hit;
        double nearest = std::numeric_limits<double>::infinity();
        bool enclosed = true;
        for (std::size_t i = 0; i + 2 < data.triangles.size(); i += 3) {
            ClippedPolygon polygon;
            for (std::size_t corner = 0; corner < 3; ++corner) {
                const Vector4 world = instance.toWorld.transform(data.positions[data.triangles[i + corner]]);
                polygon.push_back({worldToClip * world, world});
                for (const Vector4& plane : planes) {
                    enclosed = enclosed && product(plane, polygon.back().clip) >= 0;
                }
            }
            if (getFullyEnclosed() && !enclosed) {
                break;
            }
            const Vector4 a = polygon[0].world;
            const Vector4 b = polygon[1].world;
            const Vector4 c = polygon[2].world;
            clip(polygon, planes);
            for (const ClippedCorner& corner : polygon) {
                const double depth = corner.clip[2] / corner.clip[3];
                if (depth < nearest) {
                    nearest = depth;
                    hit.point = osg::Pnt3f(static_cast<float>(corner.world[0]), static_cast<float>(corner.world[1]),
                                           static_cast<float>(corner.world[2]));
                    const double u[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
                    const double v[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
                    hit.normal = osg::Vec3f(static_cast<float>(u[1] * v[2] - u[2] * v[1]),
                                            static_cast<float>(u[2] * v[0] - u[0] * v[2]),
                                            static_cast<float>(u[0] * v[1] - u[1] * v[0]));
                }
            }
        }
        if (!std::isfinite(nearest) || (getFullyEnclosed() && !enclosed)) {
            continue;
        }
        hit.normal.normalize();
        Ray ray;
        if (getMakeNormalsConsistent() && makeRay(m_pointer, ray) && hit.normal.dot(ray.direction) > 0) {
            hit.normal.negate();
        }
        hit.node = instance.node;
        hit.material = instance.material;
        hit.distance = static_cast<float>(nearest);
        hits.push_back(hit);
    }
    std::stable_sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) { return a.distance < b.distance; });
    return hits;
}

std::vector<osg::NodePtr> EmbreePicker::pickParts(const PixelRectangle& rectangle)
{
    updateRegionIndex();
    // What lies beside the view is not seen, however far the rectangle reaches.
    const PixelRectangle seen{std::max(0.0, rectangle.left), std::max(0.0, rectangle.top),
                              std::min(static_cast<double>(m_width), rectangle.right),
                              std::min(static_cast<double>(m_height), rectangle.bottom)};
    const Matrix4 worldToClip(m_camera);
    if (!worldToClip.isFinite() || !(seen.left < seen.right) || !(seen.top < seen.bottom)) {
        return {};
    }
    std::vector<osg::NodePtr> parts =
        m_regionIndex.find(RegionIndex::Region(seen, worldToClip, m_width, m_height), getFullyEnclosed());
    if (!getDepthSelection() && !parts.empty()) {
        const std::set<osg::NodePtr> inFront = findPartsInFront(seen);
        parts.erase(std::remove_if(parts.begin(), parts.end(),
                                   [&](const osg::NodePtr& part) { return inFront.count(part) == 0; }),
                    parts.end());
    }
    return parts;
}

std::set<osg::NodePtr> EmbreePicker::findPartsInFront(const PixelRectangle& rectangle)
{
    const double left = std::floor(rectangle.left);
    const double top = std::floor(rectangle.top);
    double step = 1;
    while (std::ceil((rectangle.right - left) / step) * std::ceil((rectangle.bottom - top) / step) > LargestRayCount) {
        ++step;
    }
    std::set<osg::NodePtr> nodes;
    for (double y = top; y < rectangle.bottom; y += step) {
        for (double x = left; x < rectangle.right; x += step) {
            nodes.insert(findNodeAt(osg::Pnt2f(static_cast<float>(x), static_cast<float>(y))));
        }
    }
    std::set<osg::NodePtr> parts;
    for (const osg::NodePtr& node : nodes) {
        parts.insert(findPart(node));
    }
    return parts;
}

void EmbreePicker::updateRegionIndex()
{
    updateScene();
    const Key key = getCurrentKey();
    if (m_regionIndexKey.set && m_regionIndexKey.revision == key.revision &&
        m_regionIndexKey.transparency == key.transparency) {
        return;
    }
    m_regionIndex.clear();
    for (const Scene::Instance& instance : m_scene->getInstances()) {
        if (!key.transparency || !isWhollyTransparent(instance.material)) {
            m_regionIndex.add(instance.node, instance.toWorld, *instance.data);
        }
    }
    m_regionIndexKey = key;
}

void EmbreePicker::updateScene()
{
    if (m_sceneStale) {
        m_scene->build(getRoot());
        m_sceneStale = false;
    }
}

} // namespace quon::viewer
