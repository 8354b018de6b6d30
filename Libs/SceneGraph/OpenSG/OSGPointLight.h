// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGPointLightFields.h>
#include <OpenSG/OSGSFMathTypes.h>

namespace osg {

/// A light that shines from one point in all directions.
class OSG_SYSTEM_DLLMAPPING PointLight : public Light {
public:
    typedef Light Inherited;
    typedef PointLightPtr Ptr;

    enum : UInt32 { PositionFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector PositionFieldMask = BitVector(1) << PositionFieldId;

    OSG_FIELD_CONTAINER_DECL(PointLightPtr)

    /// In the space of the beacon.
    const Pnt3f& getPosition() const { return m_sfPosition.getValue(); }
    void setPosition(const Pnt3f& position) { m_sfPosition.setValue(position); }
    const SFPnt3f* getSFPosition() const { return &m_sfPosition; }
    SFPnt3f* editSFPosition() { return &m_sfPosition; }

protected:
    PointLight() = default;
    PointLight(const PointLight& source)
        : Inherited(source)
        , m_sfPosition(source.m_sfPosition)
    {}
    ~PointLight() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFPnt3f m_sfPosition;
};

} // namespace osg
