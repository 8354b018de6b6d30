// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGAction.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGSFSysTypes.h>

namespace quon::extensions {

class OverwriteGeometry;
using OverwriteGeometryPtr = osg::FCPtr<osg::GeometryPtr, OverwriteGeometry>;

/** A geometry whose own material beats that of a material group above it while its flag is on. */
class OverwriteGeometry : public osg::Geometry {
public:
    OSG_FIELD_CONTAINER_DECL(OverwriteGeometryPtr)

    typedef osg::Geometry Inherited;
    typedef OverwriteGeometryPtr Ptr;

    enum { OverwriteMaterialFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr osg::BitVector OverwriteMaterialFieldMask = osg::BitVector(1) << OverwriteMaterialFieldId;

    bool getOverwriteMaterial() const { return m_overwriteMaterial.getValue(); }
    void setOverwriteMaterial(bool overwrite) { m_overwriteMaterial.setValue(overwrite); }

protected:
    OverwriteGeometry() = default;
    OverwriteGeometry(const OverwriteGeometry& other);
    ~OverwriteGeometry() override = default;

private:
    friend class osg::FieldContainer;

    static osg::FieldDescription* _desc[];
    static osg::FieldContainerType _type;

    static osg::FieldContainerPtr createPrototype() { return createEmpty(); }
    static void registerActions();
    osg::Field* editOverwriteMaterialField() { return &m_overwriteMaterial; }

    template <osg::Action::ResultE (osg::MaterialDrawable::*enter)(osg::Action*)>
    osg::Action::ResultE enterWithOwnMaterial(osg::Action* action);

    osg::SFBool m_overwriteMaterial;
};

OSG_FIELD_CONTAINER_INL_DEF(OverwriteGeometry, OverwriteGeometryPtr)

} // namespace quon::extensions
