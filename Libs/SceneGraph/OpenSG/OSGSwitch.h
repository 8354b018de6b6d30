// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGSwitchFields.h>

namespace osg {

/// Tells which of its node's children are to be drawn; volumes are those of all children.
class OSG_SYSTEM_DLLMAPPING Switch : public Group {
public:
    typedef Group Inherited;
    typedef SwitchPtr Ptr;

    enum : UInt32 { ChoiceFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector ChoiceFieldMask = BitVector(1) << ChoiceFieldId;

    OSG_FIELD_CONTAINER_DECL(SwitchPtr)

    static constexpr Int32 SwitchAll = -2;
    static constexpr Int32 SwitchNone = -1;

    /// Index of a child, SwitchAll or SwitchNone.
    Int32 getChoice() const { return m_sfChoice.getValue(); }
    void setChoice(Int32 choice) { m_sfChoice.setValue(choice); }
    const SFInt32* getSFChoice() const { return &m_sfChoice; }
    SFInt32* editSFChoice() { return &m_sfChoice; }

protected:
    Switch() = default;
    Switch(const Switch& source)
        : Inherited(source)
        , m_sfChoice(source.m_sfChoice)
    {}
    ~Switch() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFInt32 m_sfChoice{SwitchNone};
};

} // namespace osg
