// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGFieldContainerFields.h>
#include <OpenSG/OSGStateChunk.h>
#include <OpenSG/OSGStateFields.h>

namespace osg {

/// The chunks that a material comes down to, at most one for each slot; holds a reference on each.
class OSG_SYSTEM_DLLMAPPING State : public FieldContainer {
public:
    typedef FieldContainer Inherited;
    typedef StatePtr Ptr;

    /// Slots that are chosen by the chunk's class: a free one, or the first one with whatever it holds.
    enum : Int32 { AutoSlot = -1, AutoSlotReplace = -2 };

    enum : UInt32 { ChunksFieldId = Inherited::NextFieldId, NextFieldId };
    static constexpr BitVector ChunksFieldMask = BitVector(1) << ChunksFieldId;

    OSG_FIELD_CONTAINER_DECL(StatePtr)

    /// @param slot one of the class's slots, AutoSlot or AutoSlotReplace
    /// @return false when there is no such slot, or no free one
    bool addChunk(const StateChunkPtr& chunk, Int32 slot = AutoSlotReplace);
    /// True when @p chunk was in the state.
    bool subChunk(const StateChunkPtr& chunk);
    void clearChunks();

    /// The chunk in a slot, null when the slot is free; slots are numbered by StateChunkClass::getId().
    StateChunkPtr getChunk(UInt32 slot) const;
    /// Indexed by slot; free slots are null.
    const MFStateChunkPtr* getMFChunks() const { return &m_mfChunks; }

protected:
    State() = default;
    State(const State& source);
    ~State() override;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    MFStateChunkPtr m_mfChunks;
};

} // namespace osg
