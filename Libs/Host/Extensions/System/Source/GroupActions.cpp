// SPDX-License-Identifier: MIT
#include "GroupActions.h"

#include <OpenSG/OSGDrawAction.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGRenderAction.h>

namespace quon::extensions {

namespace {

using Functor = osg::Action::ResultE (osg::Group::*)(osg::Action*);

// The functors are protected.
class GroupFunctors : public osg::Group {
public:
    static constexpr Functor drawEnterFunctor = &GroupFunctors::drawEnter;
    static constexpr Functor drawLeaveFunctor = &GroupFunctors::drawLeave;
    static constexpr Functor renderEnterFunctor = &GroupFunctors::renderEnter;
    static constexpr Functor renderLeaveFunctor = &GroupFunctors::renderLeave;
    static constexpr Functor intersectFunctor = &GroupFunctors::intersect;
};

osg::Action::Functor wrap(Functor functor)
{
    return osg::osgTypedMethodFunctor2BaseCPtrRef<osg::Action::ResultE, osg::GroupPtr, osg::CNodePtr, osg::Action*>(
        functor);
}

} // namespace

void registerGroupActions(const osg::FieldContainerType& type)
{
    osg::DrawAction::registerEnterDefault(type, wrap(GroupFunctors::drawEnterFunctor));
    osg::DrawAction::registerLeaveDefault(type, wrap(GroupFunctors::drawLeaveFunctor));
    osg::RenderAction::registerEnterDefault(type, wrap(GroupFunctors::renderEnterFunctor));
    osg::RenderAction::registerLeaveDefault(type, wrap(GroupFunctors::renderLeaveFunctor));
    osg::IntersectAction::registerEnterDefault(type, wrap(GroupFunctors::intersectFunctor));
}

} // namespace quon::extensions
