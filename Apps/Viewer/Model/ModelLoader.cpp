// SPDX-License-Identifier: MIT
#include "Viewer/Model/ModelLoader.h"

#include "Viewer/Model/ModelBuilder.h"
#include "Viewer/Model/ModelReader.h"

#include <SceneUtilities/NodeUtils.h>

#include <OpenSG/OSGTransform.h>

#include <filesystem>
#include <utility>

namespace quon::viewer {

ModelLoader::ModelLoader(LoadControl::Progress progress)
    : m_progress(std::move(progress))
{}

LoadedModel ModelLoader::load(const std::string& file) const
{
    const LoadControl control(m_progress);
    ModelData data = ModelReader::read(file, control);
    LoadedModel model = describe(file, data);
    ModelBuilder builder(std::move(data));
    control.report(LoadControl::Step::Building, 0);
    builder.advance();
    control.report(LoadControl::Step::Building, 1);
    finish(model, builder.getRoot());
    return model;
}

LoadedModel ModelLoader::describe(const std::string& file, const ModelData& data)
{
    LoadedModel model;
    model.file = file;
    model.missing = data.missing;
    model.placement = {data.upAxis, data.metresPerUnit};
    model.isUpAxisStated = data.isUpAxisStated;
    model.isUnitStated = data.metresPerUnit > 0;
    model.parts = data.countParts();
    return model;
}

void ModelLoader::finish(LoadedModel& model, const osg::NodePtr& content)
{
    model.root = osg::Node::create();
    const osg::NodePtr root = model.root.get();
    beginEditCP(root, osg::Node::CoreFieldMask | osg::Node::ChildrenFieldMask);
    root->setCore(osg::Transform::create());
    root->addChild(content);
    endEditCP(root, osg::Node::CoreFieldMask | osg::Node::ChildrenFieldMask);
    model.placement.applyTo(root);
    NodeUtils::setName(root, std::filesystem::path(model.file).filename().string(), true);
}

} // namespace quon::viewer
