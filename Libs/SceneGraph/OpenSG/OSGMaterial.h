// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGMaterialFields.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGState.h>

namespace osg {

/**
 * Base of the materials: how something is drawn.
 *
 * Each end of an edit rebuilds the material's State, which holds a reference of its own on each chunk.
 */
class OSG_SYSTEM_DLLMAPPING Material : public AttachmentContainer {
public:
    typedef AttachmentContainer Inherited;
    typedef MaterialPtr Ptr;

    enum : UInt32 { SortKeyFieldId = Inherited::NextFieldId, TransparencyModeFieldId, NextFieldId };
    static constexpr BitVector SortKeyFieldMask = BitVector(1) << SortKeyFieldId;
    static constexpr BitVector TransparencyModeFieldMask = BitVector(1) << TransparencyModeFieldId;

    OSG_ABSTR_FIELD_CONTAINER_DECL(MaterialPtr)

    static constexpr Int32 TransparencyAutoDetection = 0;
    static constexpr Int32 TransparencyForceTransparent = 1;
    static constexpr Int32 TransparencyForceOpaque = 2;
    static constexpr Int32 NoStateSorting = 0x7FFFFFFF;

    /// The state as of the last rebuildState(), which this calls when there is none yet; @p index is ignored.
    StatePtr getState(UInt32 index = 0);
    /// A new state with the chunks of this material; the count is zero.
    virtual StatePtr makeState() = 0;
    virtual void rebuildState() = 0;

    virtual bool isTransparent() const;

    /// Drawn in ascending order, the opaque ones before the transparent ones.
    Int32 getSortKey() const { return m_sfSortKey.getValue(); }
    void setSortKey(Int32 sortKey) { m_sfSortKey.setValue(sortKey); }
    const SFInt32* getSFSortKey() const { return &m_sfSortKey; }
    SFInt32* editSFSortKey() { return &m_sfSortKey; }

    /// One of the three constants.
    Int32 getTransparencyMode() const { return m_sfTransparencyMode.getValue(); }
    void setTransparencyMode(Int32 transparencyMode) { m_sfTransparencyMode.setValue(transparencyMode); }
    const SFInt32* getSFTransparencyMode() const { return &m_sfTransparencyMode; }
    SFInt32* editSFTransparencyMode() { return &m_sfTransparencyMode; }

    /// Rebuilds the state, whatever changed.
    void changed(BitVector whichField, UInt32 origin) override;

protected:
    Material() = default;
    Material(const Material& source)
        : Inherited(source)
        , m_sfSortKey(source.m_sfSortKey)
        , m_sfTransparencyMode(source.m_sfTransparencyMode)
    {}
    ~Material() override;

    StatePtr m_state; // referenced

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFInt32 m_sfSortKey{0};
    SFInt32 m_sfTransparencyMode{0};
};

} // namespace osg
