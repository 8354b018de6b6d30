// SPDX-License-Identifier: MIT
#include <OpenSG/OSGFieldContainerPtr.h>

#include <OpenSG/OSGFieldContainer.h>
#include <OpenSG/OSGThread.h>

#include <ostream>

namespace osg {

void addRefCP(const FieldContainerPtrBase& objectP)
{
    if (FieldContainer* const container = ContainerAccess::get(objectP)) {
        ContainerAccess::addRef(*container);
    }
}

void subRefCP(const FieldContainerPtrBase& objectP)
{
    FieldContainer* const container = ContainerAccess::get(objectP);
    if (container == nullptr) {
        return;
    }
    if (ContainerAccess::getRefCount(*container) <= 1) {
        // The handle that led to the destruction does not dangle. It is cleared first, as it may go down with the
        // container.
        ContainerAccess::set(const_cast<FieldContainerPtrBase&>(objectP), nullptr);
    }
    ContainerAccess::subRef(*container);
}

void clearRefCP(FieldContainerPtrBase& objectP)
{
    if (FieldContainer* const container = ContainerAccess::get(objectP)) {
        ContainerAccess::set(objectP, nullptr);
        ContainerAccess::subRef(*container);
    }
}

void setRefdCP(FieldContainerPtrBase& objectP, const FieldContainerPtrBase& newObjectP)
{
    if (objectP == newObjectP) {
        return;
    }
    FieldContainer* const newContainer = ContainerAccess::get(newObjectP);
    if (FieldContainer* const oldContainer = ContainerAccess::get(objectP)) {
        ContainerAccess::subRef(*oldContainer);
    }
    ContainerAccess::set(objectP, newContainer);
    if (newContainer != nullptr) {
        ContainerAccess::addRef(*newContainer);
    }
}

void endEditCP(const FieldContainerPtr& objectP, const BitVector whichField, const UInt32 origin)
{
    if (objectP != NullFC) {
        // changed() may do anything, also to the handle that was passed by reference.
        FieldContainer& container = *objectP;
        Thread::getCurrentChangeList()->addChanged(ContainerAccess::getId(container), whichField);
        container.changed(whichField, origin);
    }
}

void changedCP(const FieldContainerPtr& objectP, const BitVector whichField, const UInt32 origin)
{
    endEditCP(objectP, whichField, origin);
}

std::ostream& operator<<(std::ostream& stream, const FieldContainerPtrBase& handle)
{
    const FieldContainer* const container = ContainerAccess::get(handle);
    if (container == nullptr) {
        return stream << "NullFC";
    }
    return stream << container->getTypeName() << " (" << ContainerAccess::getId(*container) << ")";
}

} // namespace osg
