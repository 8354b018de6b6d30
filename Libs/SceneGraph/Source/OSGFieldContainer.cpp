// SPDX-License-Identifier: MIT
#include <OpenSG/OSGFieldContainer.h>

#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGThread.h>

#include "OSGPool.h"

#include <cstdio>
#include <limits>
#include <new>
#include <vector>

namespace osg {

FieldContainerType FieldContainer::_type("FieldContainer", nullptr, nullptr, nullptr, nullptr);

namespace {

// Counts as far below zero as this belong to containers that are being destroyed.
constexpr Int32 dyingCount = std::numeric_limits<Int32>::min() / 2;

// Destroying a container releases others. This far it happens one inside the other, in the order that everybody
// expects; deeper down containers wait until the stack is free again.
constexpr UInt32 deepestDestruction = 128;
UInt32 destructionDepth = 0;

std::vector<FieldContainer*>& waitingForDestruction()
{
    static std::vector<FieldContainer*>* const waiting = new std::vector<FieldContainer*>;
    return *waiting;
}

// False where there is no memory to wait in: destroying a container must not fail.
bool letWait(FieldContainer& container) noexcept
{
    try {
        waitingForDestruction().push_back(&container);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

#if !defined(OSG_PLAIN_MEMORY)

// Larger pieces are whole cache lines and begin with one: what a walk reads of a node lies in the first of two.
constexpr std::size_t smallGranularity = 16;
constexpr std::size_t largestPooled = 1024;

constexpr std::size_t roundUp(const std::size_t size)
{
    const std::size_t granularity = size <= Pool::CacheLine ? smallGranularity : Pool::CacheLine;
    return (size + granularity - 1) / granularity * granularity;
}

// Zero before any constructor runs and never destroyed, as containers live longer than statics.
Pool pools[largestPooled / smallGranularity + 1];

#endif

} // namespace

FieldContainer::~FieldContainer() = default;

Field* FieldContainer::getField(const UInt32 fieldId)
{
    const FieldDescription* const description = getType().getFieldDescription(fieldId);
    return description != nullptr ? description->getField(*this) : nullptr;
}

Field* FieldContainer::getField(const Char8* fieldName)
{
    const FieldDescription* const description = getType().findFieldDescription(fieldName);
    return description != nullptr ? description->getField(*this) : nullptr;
}

void FieldContainer::changed(BitVector, UInt32) {}

void FieldContainer::dump(const UInt32 indent, BitVector) const
{
    std::fprintf(stderr, "%*s%s (%u), %d references\n", static_cast<int>(indent), "", getTypeName(), m_containerId,
                 m_refCount);
}

void FieldContainer::onCreate(const FieldContainer*) {}

void FieldContainer::onDestroy() {}

#if defined(OSG_PLAIN_MEMORY)

// So that the sanitizer sees the use of destroyed containers.
void* FieldContainer::operator new(const std::size_t size)
{
    return ::operator new(size);
}

void FieldContainer::operator delete(void* memory, std::size_t)
{
    ::operator delete(memory);
}

#else

void* FieldContainer::operator new(const std::size_t size)
{
    const std::size_t rounded = roundUp(size);
    return rounded <= largestPooled ? pools[rounded / smallGranularity].take(rounded) : ::operator new(size);
}

void FieldContainer::operator delete(void* memory, const std::size_t size)
{
    const std::size_t rounded = roundUp(size);
    if (rounded <= largestPooled) {
        pools[rounded / smallGranularity].giveBack(memory);
    } else {
        ::operator delete(memory);
    }
}

#endif

bool ContainerAccess::adopt(FieldContainer* container, const FieldContainer* source)
{
    if (Thread::getCurrentChangeList() == nullptr) {
        delete container;
        return false;
    }
    try {
        container->m_containerId = FieldContainerFactory::the()->registerContainer(*container);
    } catch (...) {
        delete container;
        throw;
    }
    if (container->m_containerId == 0) {
        FFATAL(("FieldContainer: there are no identifiers left.\n"));
        delete container;
        return false;
    }
    Thread::getCurrentChangeList()->addCreated(container->m_containerId);
    container->onCreate(source);
    return true;
}

void ContainerAccess::addRef(FieldContainer& container)
{
    ++container.m_refCount;
    Thread::getCurrentChangeList()->addAddRefd(container.m_containerId);
}

void ContainerAccess::subRef(FieldContainer& container)
{
    if (--container.m_refCount > 0) {
        Thread::getCurrentChangeList()->addSubRefd(container.m_containerId);
    } else {
        destroy(container);
    }
}

void ContainerAccess::destroy(FieldContainer& container)
{
    if (container.m_refCount < dyingCount / 2) {
        return; // somebody released a container from inside its own destruction
    }
    container.m_refCount = dyingCount;
    Thread::getCurrentChangeList()->addDestroyed(container.m_containerId);
    FieldContainerFactory::the()->unregisterContainer(container.m_containerId);
    if (destructionDepth >= deepestDestruction && letWait(container)) {
        return;
    }
    ++destructionDepth;
    container.onDestroy();
    delete &container;
    while (destructionDepth == 1 && !waitingForDestruction().empty()) {
        FieldContainer* const next = waitingForDestruction().back();
        waitingForDestruction().pop_back();
        next->onDestroy();
        delete next;
    }
    --destructionDepth;
}

UInt32 ContainerAccess::beginPermanent()
{
    return FieldContainerFactory::the()->m_liveCount;
}

void ContainerAccess::endPermanent(const UInt32 liveBefore)
{
    FieldContainerFactory& factory = *FieldContainerFactory::the();
    factory.m_permanentCount += factory.m_liveCount - liveBefore;
}

UInt16 FieldContainerPtrBase::getContainerSize() const
{
    return static_cast<UInt16>(m_container->getContainerSize());
}

void FieldContainerPtrBase::dump(const UInt32 indent, const BitVector flags) const
{
    if (m_container != nullptr) {
        m_container->dump(indent, flags);
    } else {
        std::fprintf(stderr, "%*sNullFC\n", static_cast<int>(indent), "");
    }
}

} // namespace osg
