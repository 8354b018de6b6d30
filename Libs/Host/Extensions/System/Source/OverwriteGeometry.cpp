// SPDX-License-Identifier: MIT
#include "OverwriteGeometry.h"

#include "LateRegistration.h"

#include <OpenSG/OSGDrawAction.h>
#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGIntersectActor.h>
#include <OpenSG/OSGRenderAction.h>

namespace quon::extensions {

osg::FieldDescription* OverwriteGeometry::_desc[] = {
    new osg::FieldDescription(osg::SFBool::getClassType(), "overwriteMaterial", OverwriteMaterialFieldId,
                              OverwriteMaterialFieldMask, false,
                              static_cast<osg::FieldAccessMethod>(&OverwriteGeometry::editOverwriteMaterialField)),
};

osg::FieldContainerType OverwriteGeometry::_type("koOverwriteGeometry", "Geometry", nullptr,
                                                 &OverwriteGeometry::createPrototype,
                                                 &OverwriteGeometry::registerActions, OverwriteGeometry::_desc,
                                                 sizeof(OverwriteGeometry::_desc));

OSG_FIELD_CONTAINER_DEF(OverwriteGeometry, OverwriteGeometryPtr)

namespace {

const LateRegistration lateRegistration;

} // namespace

OverwriteGeometry::OverwriteGeometry(const OverwriteGeometry& other)
    : Inherited(other)
    , m_overwriteMaterial(other.m_overwriteMaterial)
{}

// OpenSG's drawables use the action's material, which the outermost material group has set, before their own.
template <osg::Action::ResultE (osg::MaterialDrawable::*enter)(osg::Action*)>
osg::Action::ResultE OverwriteGeometry::enterWithOwnMaterial(osg::Action* action)
{
    auto* const drawAction = dynamic_cast<osg::DrawActionBase*>(action);
    if (!getOverwriteMaterial() || drawAction == nullptr || getMaterial() == osg::NullFC) {
        return (this->*enter)(action);
    }
    osg::Material* const material = drawAction->getMaterial();
    const osg::NodePtr materialNode = drawAction->getMaterialNode();
    drawAction->setMaterial(nullptr, osg::NullFC);
    const osg::Action::ResultE result = (this->*enter)(action);
    drawAction->setMaterial(material, materialNode);
    return result;
}

// Actions find their functors by the exact type: those of the geometry are not inherited.
void OverwriteGeometry::registerActions()
{
    using osg::Action;
    using osg::CNodePtr;
    using osg::MaterialDrawable;
    using osg::MaterialDrawablePtr;

    osg::DrawAction::registerEnterDefault(
        getClassType(),
        osg::osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, OverwriteGeometryPtr, CNodePtr, Action*>(
            &OverwriteGeometry::enterWithOwnMaterial<&MaterialDrawable::drawActionEnterHandler>));
    osg::DrawAction::registerLeaveDefault(
        getClassType(), osg::osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, MaterialDrawablePtr, CNodePtr, Action*>(
                            &MaterialDrawable::drawActionLeaveHandler));
    osg::RenderAction::registerEnterDefault(
        getClassType(),
        osg::osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, OverwriteGeometryPtr, CNodePtr, Action*>(
            &OverwriteGeometry::enterWithOwnMaterial<&MaterialDrawable::renderActionEnterHandler>));
    osg::RenderAction::registerLeaveDefault(
        getClassType(), osg::osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, MaterialDrawablePtr, CNodePtr, Action*>(
                            &MaterialDrawable::renderActionLeaveHandler));
    osg::IntersectAction::registerEnterDefault(
        getClassType(), osg::osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, osg::GeometryPtr, CNodePtr, Action*>(
                            &Geometry::intersect));
    osg::IntersectActor::regClassEnter(
        osg::osgTypedMethodFunctor2BaseCPtr<osg::NewActionTypes::ResultE, osg::GeometryPtr, osg::NodeCorePtr,
                                            osg::ActorBase::FunctorArgumentType&>(&Geometry::intersectActor),
        getClassType());
}

} // namespace quon::extensions
