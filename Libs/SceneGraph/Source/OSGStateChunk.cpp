// SPDX-License-Identifier: MIT
#include <OpenSG/OSGStateChunk.h>

namespace osg {

FieldDescription* StateChunk::_desc[] = {
    describeField<&StateChunk::m_sfIgnore>("ignore", IgnoreFieldId),
};

FieldContainerType StateChunk::_type("StateChunk", "Attachment", nullptr, nullptr, nullptr, _desc, sizeof(_desc));

OSG_ABSTR_FIELD_CONTAINER_INL_DEF(StateChunk, StateChunkPtr)
OSG_ABSTR_FIELD_CONTAINER_DEF(StateChunk, StateChunkPtr)

StateChunk::~StateChunk() = default;

StateChunkClass::StateChunkClass(const Char8* name, const UInt32 numSlots)
    : m_name(name)
    , m_numSlots(static_cast<Int32>(numSlots))
{
    static UInt32 nextId = 0;
    m_id = nextId;
    nextId += numSlots;
}

const StateChunkClass* StateChunk::getClass() const
{
    static const StateChunkClass unknown("StateChunk");
    return &unknown;
}

bool StateChunk::isTransparent() const
{
    return false;
}

} // namespace osg
