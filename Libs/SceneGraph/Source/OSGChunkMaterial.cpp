// SPDX-License-Identifier: MIT
#include <OpenSG/OSGChunkMaterial.h>

#include <OpenSG/OSGLog.h>

namespace osg {

FieldDescription* ChunkMaterial::_desc[] = {
    describeField<&ChunkMaterial::m_mfChunks>("chunks", ChunksFieldId),
    describeField<&ChunkMaterial::m_mfSlots>("slots", SlotsFieldId),
};

FieldContainerType ChunkMaterial::_type(
    "ChunkMaterial", "Material", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(ChunkMaterial, ChunkMaterialPtr)
OSG_FIELD_CONTAINER_DEF(ChunkMaterial, ChunkMaterialPtr)

ChunkMaterial::ChunkMaterial(const ChunkMaterial& source)
    : Inherited(source)
    , m_mfChunks(source.m_mfChunks)
    , m_mfSlots(source.m_mfSlots)
{
    for (const StateChunkPtr& chunk : m_mfChunks) {
        addRefCP(chunk);
    }
}

ChunkMaterial::~ChunkMaterial()
{
    clearChunks();
}

bool ChunkMaterial::addChunk(StateChunkPtr chunk, const Int32 slot)
{
    m_mfChunks.makeRoom(); // what can fail, before the chunk gains its reference
    if (slot != State::AutoSlotReplace || !m_mfSlots.empty()) {
        m_mfSlots.resize(m_mfChunks.size(), State::AutoSlotReplace);
        m_mfSlots.push_back(slot);
    }
    addRefCP(chunk);
    m_mfChunks.push_back(chunk);
    return true;
}

bool ChunkMaterial::subChunk(StateChunkPtr chunk, const Int32 slot)
{
    for (UInt32 index = 0; index < m_mfChunks.size(); ++index) {
        if (m_mfChunks[index] == chunk && getSlot(index) == slot) {
            m_mfChunks.erase(m_mfChunks.begin() + index);
            if (index < m_mfSlots.size()) {
                m_mfSlots.erase(m_mfSlots.begin() + index);
            }
            subRefCP(chunk);
            return false;
        }
    }
    FWARNING(("ChunkMaterial::subChunk: the chunk is not one of mine!\n"));
    return true;
}

void ChunkMaterial::clearChunks()
{
    MFStateChunkPtr chunks;
    chunks.swap(m_mfChunks);
    m_mfSlots.clear();
    for (const StateChunkPtr& chunk : chunks) {
        subRefCP(chunk);
    }
}

Int32 ChunkMaterial::find(StateChunkPtr chunk) const
{
    const MFStateChunkPtr::const_iterator found = m_mfChunks.find(chunk);
    return found != m_mfChunks.end() ? static_cast<Int32>(found - m_mfChunks.begin()) : -1;
}

StateChunkPtr ChunkMaterial::find(const FieldContainerType& type, const Int32 slot) const
{
    for (UInt32 index = 0; index < m_mfChunks.size(); ++index) {
        if (m_mfChunks[index] != NullFC && m_mfChunks[index]->getType() == type && getSlot(index) == slot) {
            return m_mfChunks[index];
        }
    }
    return NullFC;
}

StatePtr ChunkMaterial::makeState()
{
    const StatePtr state = State::create();
    addChunks(state);
    return state;
}

void ChunkMaterial::rebuildState()
{
    if (m_state == NullFC) {
        m_state = State::create();
        addRefCP(m_state);
    } else {
        m_state->clearChunks();
    }
    addChunks(m_state);
}

bool ChunkMaterial::isTransparent() const
{
    if (getTransparencyMode() != TransparencyAutoDetection) {
        return Inherited::isTransparent();
    }
    for (const StateChunkPtr& chunk : m_mfChunks) {
        if (chunk != NullFC && chunk->isTransparent()) {
            return true;
        }
    }
    return false;
}

void ChunkMaterial::addChunks(const StatePtr& state) const
{
    for (UInt32 index = 0; index < m_mfChunks.size(); ++index) {
        state->addChunk(m_mfChunks[index], getSlot(index));
    }
}

} // namespace osg
