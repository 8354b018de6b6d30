// SPDX-License-Identifier: MIT
#include "Viewer/Model/PreparedGeometries.h"

#include "Viewer/Model/ModelData.h"

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGeoProperty.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quon::viewer {

void prepareGeometries(ModelData& data, const LoadControl& control)
{
    const auto total = static_cast<double>(data.meshes.size());
    for (std::size_t i = 0; i < data.meshes.size(); ++i) {
        const auto report = [&](const double share) {
            control.report(LoadControl::Step::Indexing, (static_cast<double>(i) + share) / total);
            return !control.isCancelled();
        };
        report(0);
        control.throwIfCancelled();
        ModelData::Mesh& mesh = data.meshes[i];
        mesh.content = std::make_shared<const GeometryContent>(GeometryData::read(mesh));
        mesh.content->prepare(report);
    }
    control.throwIfCancelled();
}

void PreparedGeometries::add(const osg::GeometryPtr& geometry, std::shared_ptr<const GeometryContent> content)
{
    if (content == nullptr) {
        return;
    }
    const osg::UInt32 id = osg::getContainerId(geometry);
    Entry& entry = m_entries[id];
    entry.content = std::move(content);
    entry.properties = getProperties(geometry);
    m_newestId = std::max({m_newestId, id, *std::max_element(entry.properties.begin(), entry.properties.end())});
}

std::shared_ptr<const GeometryContent> PreparedGeometries::read(const PreparedGeometries* prepared,
                                                                const osg::GeometryPtr& geometry)
{
    if (prepared != nullptr && geometry != osg::NullFC) {
        const auto found = prepared->m_entries.find(osg::getContainerId(geometry));
        if (found != prepared->m_entries.end() && found->second.properties == getProperties(geometry)) {
            return found->second.content;
        }
    }
    return std::make_shared<const GeometryContent>(GeometryData::read(geometry));
}

void PreparedGeometries::sceneChanged(const SceneChanges& changes)
{
    if (m_entries.empty()) {
        return;
    }
    for (const osg::UInt32 id : changes.getDestroyed()) {
        m_entries.erase(id);
    }
    for (const auto& [id, mask] : changes.getChanged()) {
        // In ascending order: from here on nothing is known.
        if (id > m_newestId) {
            break;
        }
        if (m_entries.count(id) != 0) {
            // Copies of a node share its geometry and come and go: they change its parents only.
            if ((mask & ~osg::NodeCore::ParentsFieldMask) != 0) {
                m_entries.erase(id);
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
            m_entries.erase(osg::getContainerId(geometries[i]));
        }
    }
}

PreparedGeometries::Properties PreparedGeometries::getProperties(const osg::GeometryPtr& geometry)
{
    const auto idOf = [](const auto& property) { return property == osg::NullFC ? 0 : osg::getContainerId(property); };
    return {idOf(geometry->getTypes()),   idOf(geometry->getLengths()), idOf(geometry->getPositions()),
            idOf(geometry->getNormals()), idOf(geometry->getColors()),  idOf(geometry->getTexCoords()),
            idOf(geometry->getIndices())};
}

} // namespace quon::viewer
