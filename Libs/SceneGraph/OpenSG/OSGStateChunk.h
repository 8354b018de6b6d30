// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGStateChunkFields.h>

#include <string>

namespace osg {

/// Names a kind of chunk and numbers it.
class OSG_SYSTEM_DLLMAPPING StateChunkClass {
public:
    /// @param numSlots how many chunks of this class a State can hold at the same time
    explicit StateChunkClass(const Char8* name, UInt32 numSlots = 1);

    /// The first slot of this class.
    UInt32 getId() const { return m_id; }
    const Char8* getName() const { return m_name.c_str(); }
    Int32 getNumSlots() const { return m_numSlots; }

private:
    std::string m_name;
    UInt32 m_id;
    Int32 m_numSlots;
};

/**
 * Base of the pieces of render state that materials are made of.
 *
 * Chunks of one class compete for one slot of a State. A chunk that is added to several materials shows every change
 * in all of them.
 */
class OSG_SYSTEM_DLLMAPPING StateChunk : public Attachment {
public:
    typedef Attachment Inherited;
    typedef StateChunkPtr Ptr;

    enum : UInt32 { IgnoreFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector IgnoreFieldMask = BitVector(1) << IgnoreFieldId;

    OSG_ABSTR_FIELD_CONTAINER_DECL(StateChunkPtr)

    /// The class that decides which slot the chunk takes; derived chunks may share that of their base.
    virtual const StateChunkClass* getClass() const;
    UInt32 getClassId() const { return getClass()->getId(); }

    /// Whether the chunk makes what is drawn with it transparent.
    virtual bool isTransparent() const;

    /// Whether the renderer is to pass over this chunk.
    bool getIgnore() const { return m_sfIgnore.getValue(); }
    void setIgnore(bool ignore) { m_sfIgnore.setValue(ignore); }
    const SFBool* getSFIgnore() const { return &m_sfIgnore; }
    SFBool* editSFIgnore() { return &m_sfIgnore; }

protected:
    StateChunk() = default;
    StateChunk(const StateChunk& source)
        : Inherited(source)
        , m_sfIgnore(source.m_sfIgnore)
    {}
    ~StateChunk() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    SFBool m_sfIgnore{false};
};

} // namespace osg
