// SPDX-License-Identifier: MIT
#include "Viewer/Model/TriangleTree.h"

#include "Viewer/Model/GeometryData.h"

#include <embree3/rtcore.h>

#include <algorithm>
#include <cstring>
#include <mutex>

namespace quon::viewer {

namespace {

bool passOnProgress(void* progress, const double share)
{
    return (*static_cast<const TriangleTree::Progress*>(progress))(share);
}

RTCGeometry makeTriangles(RTCDevice device, const GeometryData& data)
{
    RTCGeometry triangles = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
    void* vertices = rtcSetNewGeometryBuffer(triangles, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, 3 * sizeof(float),
                                             data.positions.size());
    auto* coordinate = static_cast<float*>(vertices);
    for (const osg::Pnt3f& position : data.positions) {
        coordinate = std::copy_n(position.getValues(), 3, coordinate);
    }
    void* indices = rtcSetNewGeometryBuffer(triangles, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, 3 * sizeof(unsigned),
                                            data.triangles.size() / 3);
    std::memcpy(indices, data.triangles.data(), data.triangles.size() * sizeof(osg::UInt32));
    rtcCommitGeometry(triangles);
    return triangles;
}

} // namespace

TriangleTree::TriangleTree(const GeometryData& data, const Progress& progress)
    : m_device(getDevice())
    , m_scene(rtcNewScene(m_device.get()))
{
    rtcSetSceneFlags(m_scene, RTC_SCENE_FLAG_ROBUST | RTC_SCENE_FLAG_CONTEXT_FILTER_FUNCTION);
    if (!data.triangles.empty()) {
        RTCGeometry triangles = makeTriangles(m_device.get(), data);
        rtcAttachGeometryByID(m_scene, triangles, 0);
        rtcReleaseGeometry(triangles);
    }
    if (progress) {
        rtcSetSceneProgressMonitorFunction(m_scene, passOnProgress, const_cast<Progress*>(&progress));
    }
    rtcCommitScene(m_scene);
    rtcSetSceneProgressMonitorFunction(m_scene, nullptr, nullptr);
}

TriangleTree::~TriangleTree()
{
    rtcReleaseScene(m_scene);
}

std::shared_ptr<RTCDeviceTy> TriangleTree::getDevice()
{
    static std::mutex mutex;
    static std::weak_ptr<RTCDeviceTy> shared;
    const std::lock_guard<std::mutex> lock(mutex);
    std::shared_ptr<RTCDeviceTy> device = shared.lock();
    if (device == nullptr) {
        device = std::shared_ptr<RTCDeviceTy>(rtcNewDevice(nullptr), rtcReleaseDevice);
        shared = device;
    }
    return device;
}

} // namespace quon::viewer
