// SPDX-License-Identifier: MIT
#include "Viewer/Tools/EmbreePicker.h"

#include "Viewer/Model/GeometryContent.h"
#include "Viewer/Model/Matrix4.h"
#include "Viewer/Model/PagedArray.h"
#include "Viewer/Model/Part.h"
#include "Viewer/Model/PreparedGeometries.h"
#include "Viewer/Model/SceneMirror.h"
#include "Viewer/Model/SceneTraversal.h"
#include "Viewer/Model/TriangleTree.h"

#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <embree3/rtcore.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <set>
#include <unordered_map>
#include <utility>

namespace quon::viewer {

namespace {

constexpr osg::UInt32 AllBits = 0xFFFFFFFF;

// From here on nothing of a surface is to be seen.
constexpr float WhollyTransparent = 0.9999F;

// Embree ends the process when it gets a ray with larger numbers, also when it has turned one into an instance's space.
constexpr double LargestRayNumber = 1e18;

// What is flatter or smaller cannot be turned back in single precision.
constexpr double WorstCondition = 1e5;
constexpr double LargestInverse = 1e9;

/** How large numbers become on the way from the world into the space of a node. */
struct WayBack {
    bool exists = false; ///< in single precision
    double scale = 0;    ///< largest element that is multiplied
    double shift = 0;    ///< largest element that is added

    explicit WayBack(const Matrix4& toWorld)
    {
        const Matrix4 inverse = toWorld.inverted(&exists);
        double forth = 0;
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 3; ++column) {
                forth = std::max(forth, std::abs(toWorld(row, column)));
                scale = std::max(scale, std::abs(inverse(row, column)));
            }
            shift = std::max(shift, std::abs(inverse(row, 3)));
        }
        exists = exists && inverse.isFinite() && forth * scale < WorstCondition && scale < LargestInverse;
    }
};

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

double product(const Vector4& plane, const Vector4& point)
{
    return plane[0] * point[0] + plane[1] * point[1] + plane[2] * point[2] + plane[3] * point[3];
}

void clip(ClippedPolygon& polygon, const std::array<Vector4, 6>& planes)
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

/** A geometry core. */
struct EmbreePicker::Mesh {
    std::shared_ptr<const GeometryContent> content;
    std::array<osg::UInt32, 5> properties{}; ///< ids of what it was read from
    bool stale = false;                      ///< the geometry has changed since
    std::vector<std::size_t> users;          ///< places of the instances

    const GeometryData& getData() const { return content->getData(); }
};

/**
 * The visible geometry below the root as Embree wants it: one scene per geometry core, one instance per node.
 *
 * Follows the scene from edit to edit; only the tree over the instances is built anew after one.
 */
class EmbreePicker::Scene final : private SceneMirror::Listener {
public:
    struct Instance {
        osg::NodePtr node; ///< null: there is no instance in this place
        osg::MaterialPtr material;
        osg::UInt32 materialId = 0;
        osg::Matrix matrix;
        Matrix4 toWorld;
        Mesh* mesh = nullptr;
        std::size_t user = 0; ///< among the users of the mesh
        bool attached = false;
        std::unique_ptr<TriangleTree> ownTree; ///< in world space, of what is too flat for an instance
    };

    Scene()
        : m_device(TriangleTree::getDevice())
        , m_top(rtcNewScene(m_device.get()))
        , m_mirror(*this)
    {
        rtcSetSceneFlags(m_top, RTC_SCENE_FLAG_ROBUST | RTC_SCENE_FLAG_CONTEXT_FILTER_FUNCTION);
        rtcCommitScene(m_top);
        // The picker promises nothing about edits that it did not hear of, and is asked more often than it is told.
        m_mirror.setChecksPerUpdate(0);
    }

    ~Scene()
    {
        clear();
        rtcReleaseScene(m_top);
    }

    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /**
     * Brings everything up to date.
     *
     * @return whether anything of it is different from before
     */
    bool update(const osg::NodePtr& root)
    {
        m_mirror.update(root, AllBits);
        refreshStaleMeshes();
        if (m_topStale) {
            rtcCommitScene(m_top);
            m_topStale = false;
        }
        return std::exchange(m_changed, false);
    }

    void clear()
    {
        m_mirror.clear();
        m_meshes.clear();
        m_staleMeshes.clear();
        m_instances.clear();
        m_materials.clear();
        m_largestScaleBack = 1;
        m_largestShiftBack = 0;
    }

    void setPrepared(const PreparedGeometries* prepared) { m_prepared = prepared; }

    void sceneChanged(const SceneChanges& changes)
    {
        m_mirror.sceneChanged(changes);
        for (const osg::UInt32 id : changes.getDestroyed()) {
            dropMesh(id);
        }
        for (const auto& [id, mask] : changes.getChanged()) {
            // In ascending order: from here on nothing is known.
            if (id > m_newestId) {
                break;
            }
            noteContainer(id, mask);
        }
    }

    /** Whether update() has anything to do. */
    bool isOutOfDate() const { return m_changed || m_topStale || !m_staleMeshes.empty() || m_mirror.isOutOfDate(); }

    /** By place; some may be empty. */
    const PagedArray<Instance>& getInstances() const { return m_instances; }

    std::vector<RawHit> intersect(const Ray& ray, const bool nearestOnly) const
    {
        std::vector<RawHit> hits;
        if (!isBearable(ray)) {
            return hits;
        }
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

    /** Those that stand somewhere, in the order of the scene, which that of the places need not be. */
    std::vector<const Instance*> findInstancesInOrder()
    {
        std::vector<const Instance*> instances;
        for (const std::size_t place : m_mirror.findShownInOrder()) {
            if (m_instances[place].toWorld.isFinite()) {
                instances.push_back(&m_instances[place]);
            }
        }
        return instances;
    }

private:
    bool isWanted(const osg::NodePtr& node) override { return !koNodeUtils::isAuxiliaryNode(node); }

    void geometryShown(const std::size_t place, const GeometryInstance& shown) override
    {
        m_instances.growTo(place + 1);
        Mesh& mesh = getMesh(shown.geometry);
        Instance& instance = m_instances[place];
        const osg::UInt32 materialId = shown.material == osg::NullFC ? 0 : osg::getContainerId(shown.material);
        if (instance.node == shown.node && instance.mesh == &mesh && instance.materialId == materialId &&
            std::equal(instance.matrix.getValues(), instance.matrix.getValues() + 16, shown.toWorld.getValues())) {
            return;
        }
        geometryGone(place);
        instance.node = shown.node;
        instance.material = shown.material;
        instance.materialId = materialId;
        instance.matrix = shown.toWorld;
        instance.toWorld = Matrix4(shown.toWorld);
        instance.mesh = &mesh;
        instance.user = mesh.users.size();
        mesh.users.push_back(place);
        ++m_materials[materialId];
        m_newestId = std::max(m_newestId, materialId);
        attach(place);
        m_changed = true;
    }

    void geometryGone(const std::size_t place) override
    {
        Instance& instance = m_instances[place];
        if (instance.mesh == nullptr) {
            return;
        }
        detach(place);
        std::vector<std::size_t>& users = instance.mesh->users;
        users[instance.user] = users.back();
        m_instances[users.back()].user = instance.user;
        users.pop_back();
        const auto material = m_materials.find(instance.materialId);
        if (--material->second == 0) {
            m_materials.erase(material);
        }
        instance = Instance();
        m_changed = true;
    }

    void noteContainer(const osg::UInt32 id, const osg::BitVector mask)
    {
        if (m_materials.count(id) != 0) {
            m_changed = true;
        }
        if (m_meshes.count(id) != 0) {
            // Copies of a node share its geometry and come and go: they change its parents only.
            if ((mask & ~osg::NodeCore::ParentsFieldMask) != 0) {
                markStale(id);
            }
            return;
        }
        if ((mask & ~osg::Attachment::ParentsFieldMask) == 0) {
            return;
        }
        const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
        if (container == osg::NullFC || !container->getType().isAttachment()) {
            return;
        }
        const osg::AttachmentPtr property = osg::AttachmentPtr::dcast(container);
        const auto& geometries = property->getParents();
        for (osg::UInt32 i = 0; i < geometries.size(); ++i) {
            markStale(osg::getContainerId(geometries[i]));
        }
    }

    void markStale(const osg::UInt32 id)
    {
        const auto mesh = m_meshes.find(id);
        if (mesh != m_meshes.end() && !mesh->second.stale) {
            mesh->second.stale = true;
            m_staleMeshes.push_back(id);
        }
    }

    void refreshStaleMeshes()
    {
        for (const osg::UInt32 id : m_staleMeshes) {
            const auto mesh = m_meshes.find(id);
            if (mesh == m_meshes.end() || !mesh->second.stale) {
                continue;
            }
            if (mesh->second.users.empty()) {
                dropMesh(id);
                continue;
            }
            const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
            if (container != osg::NullFC) {
                read(osg::GeometryPtr::dcast(container), mesh->second);
            }
            for (const std::size_t place : mesh->second.users) {
                detach(place);
                attach(place);
            }
            m_changed = true;
        }
        m_staleMeshes.clear();
    }

    void attach(const std::size_t place)
    {
        Instance& instance = m_instances[place];
        if (instance.mesh->getData().triangles.empty() || !instance.toWorld.isFinite()) {
            return;
        }
        RTCScene tree = instance.mesh->content->getTree().getScene();
        osg::Matrix matrix = instance.matrix;
        if (const WayBack wayBack(instance.toWorld); wayBack.exists) {
            m_largestScaleBack = std::max(m_largestScaleBack, wayBack.scale);
            m_largestShiftBack = std::max(m_largestShiftBack, wayBack.shift);
        } else {
            // No ray gets into its space. What is flat can be seen all the same, and be selected.
            instance.ownTree = makeTreeInWorld(instance);
            tree = instance.ownTree->getScene();
            matrix.setIdentity();
        }
        RTCGeometry geometry = rtcNewGeometry(m_device.get(), RTC_GEOMETRY_TYPE_INSTANCE);
        rtcSetGeometryInstancedScene(geometry, tree);
        rtcSetGeometryTransform(geometry, 0, RTC_FORMAT_FLOAT4X4_COLUMN_MAJOR, matrix.getValues());
        rtcCommitGeometry(geometry);
        rtcAttachGeometryByID(m_top, geometry, static_cast<unsigned>(place));
        rtcReleaseGeometry(geometry);
        instance.attached = true;
        m_topStale = true;
    }

    static std::unique_ptr<TriangleTree> makeTreeInWorld(const Instance& instance)
    {
        const GeometryData& data = instance.mesh->getData();
        GeometryData moved;
        moved.triangles = data.triangles;
        moved.positions.reserve(data.positions.size());
        for (const osg::Pnt3f& position : data.positions) {
            const Vector4 place = instance.toWorld.transform(position);
            moved.positions.emplace_back(static_cast<float>(place[0]), static_cast<float>(place[1]),
                                         static_cast<float>(place[2]));
        }
        return std::make_unique<TriangleTree>(moved);
    }

    void detach(const std::size_t place)
    {
        if (m_instances[place].attached) {
            rtcDetachGeometry(m_top, static_cast<unsigned>(place));
            m_instances[place].attached = false;
            m_instances[place].ownTree = nullptr;
            m_topStale = true;
        }
    }

    Mesh& getMesh(const osg::GeometryPtr& geometry)
    {
        Mesh& mesh = m_meshes[osg::getContainerId(geometry)];
        if (mesh.content == nullptr) {
            read(geometry, mesh);
        } else if (!mesh.stale && mesh.properties != getProperties(geometry)) {
            markStale(osg::getContainerId(geometry));
        }
        return mesh;
    }

    static std::array<osg::UInt32, 5> getProperties(const osg::GeometryPtr& geometry)
    {
        const auto idOf = [](const osg::AttachmentPtr& property) {
            return property == osg::NullFC ? 0 : osg::getContainerId(property);
        };
        return {idOf(geometry->getTypes()), idOf(geometry->getLengths()), idOf(geometry->getPositions()),
                idOf(geometry->getIndices()), idOf(geometry->getTexCoords())};
    }

    void read(const osg::GeometryPtr& geometry, Mesh& mesh)
    {
        // The instances hold the old tree until they are attached again.
        mesh.content = PreparedGeometries::read(m_prepared, geometry);
        mesh.properties = getProperties(geometry);
        m_newestId = std::max(m_newestId, osg::getContainerId(geometry));
        m_newestId = std::max(m_newestId, *std::max_element(mesh.properties.begin(), mesh.properties.end()));
        mesh.stale = false;
    }

    // Whether Embree can take a ray, and turn it into the space of every instance.
    bool isBearable(const Ray& ray) const
    {
        double farthest = 1;
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            farthest = std::max(farthest, std::abs(static_cast<double>(ray.origin[axis])));
        }
        return farthest < LargestRayNumber && 3 * farthest * m_largestScaleBack + m_largestShiftBack < LargestRayNumber;
    }

    void dropMesh(const osg::UInt32 id)
    {
        const auto mesh = m_meshes.find(id);
        if (mesh == m_meshes.end()) {
            return;
        }
        while (!mesh->second.users.empty()) {
            geometryGone(mesh->second.users.back());
        }
        m_meshes.erase(mesh);
    }

    std::shared_ptr<RTCDeviceTy> m_device;
    RTCScene m_top;
    const PreparedGeometries* m_prepared = nullptr;
    SceneMirror m_mirror;
    PagedArray<Instance> m_instances;
    std::unordered_map<osg::UInt32, Mesh> m_meshes;
    std::vector<osg::UInt32> m_staleMeshes;
    osg::UInt32 m_newestId = 0; ///< of all geometries, properties and materials that were ever met
    std::unordered_map<osg::UInt32, std::size_t> m_materials; ///< how many instances are seen with it, by its id
    double m_largestScaleBack = 1;                            ///< of all instances that ever were, see WayBack
    double m_largestShiftBack = 0;
    bool m_topStale = false;
    bool m_changed = false; ///< since the last update
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

/** Whether all of an instance is on the outer side of one of the planes. */
bool EmbreePicker::isOutside(const Mesh& mesh, const Matrix4& toClip, const RegionPlanes& planes)
{
    const osg::Pnt3f& minimum = mesh.content->getMinimum();
    const osg::Pnt3f& maximum = mesh.content->getMaximum();
    std::array<bool, 6> outside{true, true, true, true, true, true};
    for (unsigned corner = 0; corner < 8; ++corner) {
        const Vector4 clip = toClip.transform(osg::Pnt3f((corner & 1U) != 0 ? maximum[0] : minimum[0],
                                                         (corner & 2U) != 0 ? maximum[1] : minimum[1],
                                                         (corner & 4U) != 0 ? maximum[2] : minimum[2]));
        for (std::size_t i = 0; i < planes.size(); ++i) {
            // Not a number is outside of nothing.
            outside.at(i) = outside.at(i) && product(planes.at(i), clip) < 0;
        }
    }
    return std::any_of(outside.begin(), outside.end(), [](const bool all) { return all; });
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
    m_rootChanged = true;
    ++m_revision;
}

void EmbreePicker::setPrepared(const PreparedGeometries* prepared)
{
    m_scene->setPrepared(prepared);
}

void EmbreePicker::invalidate()
{
    LazyPicker::invalidate();
    m_scene->clear();
    ++m_revision;
}

void EmbreePicker::sceneChanged(const SceneChanges& changes)
{
    m_scene->sceneChanged(changes);
}

osg::NodePtr EmbreePicker::findNodeAt(const osg::Pnt2f& position)
{
    const std::vector<Hit> hits = pickRay(position, true);
    return hits.empty() ? osg::NodePtr(osg::NullFC) : hits.front().node;
}

bool EmbreePicker::isCacheValid()
{
    updateScene();
    // The picks and the node list share one dirty flag: each has to prove by its own key that it is up to date.
    return (m_asksForNodes ? m_nodesKey : m_pickKey).equals(getCurrentKey());
}

bool EmbreePicker::updateSelectionOption(osg::SelectionOption*& option)
{
    // Called first for every question.
    ++m_statistics.asked;
    const auto* region = dynamic_cast<const RegionOption*>(option);
    m_rectangle = region == nullptr ? std::nullopt : std::optional<PixelRectangle>(region->getRectangle());
    // Part of the key that isCacheValid() compares.
    return false;
}

void EmbreePicker::computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                                 osg::MaterialPtr& material, osg::SelectionOption*)
{
    ++m_statistics.queried;
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
    ++m_statistics.queried;
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
    ++m_statistics.queried;
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
        const GeometryData& data = instance.mesh->getData();
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

    const PagedArray<Scene::Instance>& instances = m_scene->getInstances();
    for (std::size_t place = 0; place < instances.size(); ++place) {
        const Scene::Instance& instance = instances[place];
        if (!instance.attached || isOutside(*instance.mesh, worldToClip * instance.toWorld, planes) ||
            (!getDepthSelection() && inFront.count(instance.node) == 0) ||
            (getTransparencyEvaluationEnabled() && isWhollyTransparent(instance.material))) {
            continue;
        }
        const GeometryData& data = instance.mesh->getData();
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
    for (const Scene::Instance* instance : m_scene->findInstancesInOrder()) {
        if (!key.transparency || !isWhollyTransparent(instance->material)) {
            m_regionIndex.add(instance->node, instance->toWorld, instance->mesh->getData());
        }
    }
    m_regionIndexKey = key;
}

void EmbreePicker::updateScene()
{
    if (m_rootChanged || m_scene->isOutOfDate()) {
        m_rootChanged = false;
        m_revision += m_scene->update(getRoot()) ? 1U : 0U;
    }
}

} // namespace quon::viewer
