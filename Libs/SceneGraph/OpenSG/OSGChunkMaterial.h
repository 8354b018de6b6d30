// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGChunkMaterialFields.h>
#include <OpenSG/OSGMFSysTypes.h>
#include <OpenSG/OSGMaterial.h>

namespace osg {

/// A material made of state chunks; of two that take the same slot the later one is used.
class OSG_SYSTEM_DLLMAPPING ChunkMaterial : public Material {
public:
    typedef Material Inherited;
    typedef ChunkMaterialPtr Ptr;

    enum : UInt32 { ChunksFieldId = Inherited::NextFieldId, SlotsFieldId, NextFieldId };
    static constexpr BitVector ChunksFieldMask = BitVector(1) << ChunksFieldId;
    static constexpr BitVector SlotsFieldMask = BitVector(1) << SlotsFieldId;

    OSG_FIELD_CONTAINER_DECL(ChunkMaterialPtr)

    /**
     * Appends @p chunk and references it; a chunk that is there already is added once more.
     *
     * @param chunk must not be null (not checked)
     * @param slot slot of the chunk's class, or State::AutoSlot, or State::AutoSlotReplace (-2)
     * @return true
     */
    bool addChunk(StateChunkPtr chunk, Int32 slot = State::AutoSlotReplace);
    /// False when the chunk was taken out, true (and a warning in the log) when it was not there with this slot.
    bool subChunk(StateChunkPtr chunk, Int32 slot = State::AutoSlotReplace);
    void clearChunks();

    /// The index of a chunk, -1 when it is not there.
    Int32 find(StateChunkPtr chunk) const;
    /// The first chunk of exactly this type, null when there is none.
    StateChunkPtr find(const FieldContainerType& type, Int32 slot = State::AutoSlotReplace) const;

    StateChunkPtr getChunks(const UInt32 index) const { return m_mfChunks[index]; }
    const MFStateChunkPtr* getMFChunks() const { return &m_mfChunks; }
    /// Empty as long as every chunk was added with AutoSlotReplace.
    const MFInt32* getMFSlots() const { return &m_mfSlots; }

    StatePtr makeState() override;
    void rebuildState() override;
    bool isTransparent() const override;

protected:
    ChunkMaterial() = default;
    ChunkMaterial(const ChunkMaterial& source);
    ~ChunkMaterial() override;

    /// Puts the chunks into @p state.
    void addChunks(const StatePtr& state) const;

    static FieldDescription* _desc[];
    static FieldContainerType _type;

private:
    Int32 getSlot(const UInt32 index) const
    {
        return index < m_mfSlots.size() ? m_mfSlots[index] : static_cast<Int32>(State::AutoSlotReplace);
    }

    MFStateChunkPtr m_mfChunks;
    MFInt32 m_mfSlots;
};

} // namespace osg
