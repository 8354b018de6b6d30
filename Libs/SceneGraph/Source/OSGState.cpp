// SPDX-License-Identifier: MIT
#include <OpenSG/OSGState.h>

namespace osg {

FieldDescription* State::_desc[] = {
    describeField<&State::m_mfChunks>("chunks", ChunksFieldId),
};

FieldContainerType State::_type(
    "State", "FieldContainer", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(State, StatePtr)
OSG_FIELD_CONTAINER_DEF(State, StatePtr)

State::State(const State& source)
    : Inherited(source)
    , m_mfChunks(source.m_mfChunks)
{
    for (const StateChunkPtr& chunk : m_mfChunks) {
        addRefCP(chunk);
    }
}

State::~State()
{
    clearChunks();
}

bool State::addChunk(const StateChunkPtr& chunk, const Int32 slot)
{
    if (chunk == NullFC) {
        return false;
    }
    const StateChunkClass& chunkClass = *chunk->getClass();
    UInt32 index = chunkClass.getId();
    if (slot == AutoSlot) {
        const UInt32 end = index + static_cast<UInt32>(chunkClass.getNumSlots());
        while (index < end && getChunk(index) != NullFC) {
            ++index;
        }
        if (index == end) {
            return false;
        }
    } else if (slot != AutoSlotReplace) {
        if (slot < 0 || slot >= chunkClass.getNumSlots()) {
            return false;
        }
        index += static_cast<UInt32>(slot);
    }
    if (index >= m_mfChunks.size()) {
        m_mfChunks.resize(index + 1);
    }
    const StateChunkPtr newChunk = chunk;
    StateChunkPtr oldChunk = m_mfChunks[index];
    addRefCP(newChunk);
    m_mfChunks[index] = newChunk;
    subRefCP(oldChunk);
    return true;
}

bool State::subChunk(const StateChunkPtr& chunk)
{
    if (chunk == NullFC) {
        return false;
    }
    const MFStateChunkPtr::iterator found = m_mfChunks.find(chunk);
    if (found == m_mfChunks.end()) {
        return false;
    }
    StateChunkPtr oldChunk = *found;
    *found = NullFC;
    subRefCP(oldChunk);
    return true;
}

void State::clearChunks()
{
    MFStateChunkPtr chunks;
    chunks.swap(m_mfChunks);
    for (const StateChunkPtr& chunk : chunks) {
        subRefCP(chunk);
    }
}

StateChunkPtr State::getChunk(const UInt32 slot) const
{
    return slot < m_mfChunks.size() ? m_mfChunks[slot] : StateChunkPtr();
}

} // namespace osg
