// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGDirectionalLightFields.h>
#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGSFMathTypes.h>

namespace osg {

/// A light at infinite distance.
class OSG_SYSTEM_DLLMAPPING DirectionalLight : public Light {
public:
    typedef Light Inherited;
    typedef DirectionalLightPtr Ptr;

    enum : UInt32 { DirectionFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector DirectionFieldMask = BitVector(1) << DirectionFieldId;

    OSG_FIELD_CONTAINER_DECL(DirectionalLightPtr)

    /// Towards the light, in the space of the beacon.
    const Vec3f& getDirection() const { return m_sfDirection.getValue(); }
    void setDirection(const Vec3f& direction) { m_sfDirection.setValue(direction); }
    const SFVec3f* getSFDirection() const { return &m_sfDirection; }
    SFVec3f* editSFDirection() { return &m_sfDirection; }

protected:
    DirectionalLight() = default;
    DirectionalLight(const DirectionalLight& source)
        : Inherited(source)
        , m_sfDirection(source.m_sfDirection)
    {}
    ~DirectionalLight() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFVec3f m_sfDirection{Vec3f(0, 0, 1)};
};

} // namespace osg
