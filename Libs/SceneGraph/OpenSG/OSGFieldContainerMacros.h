// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

/**
 * @file
 * What each class of containers declares and defines, as in classes written for OpenSG by hand.
 *
 * The class itself brings the static members `_type` (FieldContainerType) and, with fields of its own, `_desc` (array
 * of FieldDescription*), a constructor and a copy constructor, both protected, and the friend osg::FieldContainer.
 *
 * create() stays out of line, or compilers warn of the null that it returns before osgInit() wherever it is used.
 */

#define OSG_ABSTR_FIELD_CONTAINER_DECL(OSG_FIELD_CONTAINER_PTR)                                                        \
public:                                                                                                                \
    static ::osg::FieldContainerType& getClassType();                                                                  \
    static ::osg::UInt32 getClassTypeId();                                                                             \
    ::osg::FieldContainerType& getType() override;                                                                     \
    const ::osg::FieldContainerType& getType() const override;                                                         \
    ::osg::UInt32 getContainerSize() const override;

#define OSG_FIELD_CONTAINER_DECL(OSG_FIELD_CONTAINER_PTR)                                                              \
    OSG_ABSTR_FIELD_CONTAINER_DECL(OSG_FIELD_CONTAINER_PTR)                                                            \
    [[gnu::noinline]] static OSG_FIELD_CONTAINER_PTR create();                                                         \
    [[gnu::noinline]] static OSG_FIELD_CONTAINER_PTR createEmpty();                                                    \
    ::osg::FieldContainerPtr shallowCopy() const override;

#define OSG_ABSTR_FIELD_CONTAINER_INL_DEF(OSG_CLASS, OSG_FIELD_CONTAINER_PTR)                                          \
    ::osg::FieldContainerType& OSG_CLASS::getClassType()                                                               \
    {                                                                                                                  \
        return _type;                                                                                                  \
    }                                                                                                                  \
    ::osg::UInt32 OSG_CLASS::getClassTypeId()                                                                          \
    {                                                                                                                  \
        return _type.getId();                                                                                          \
    }

#define OSG_ABSTR_FIELD_CONTAINER_DEF(OSG_CLASS, OSG_FIELD_CONTAINER_PTR)                                              \
    ::osg::FieldContainerType& OSG_CLASS::getType()                                                                    \
    {                                                                                                                  \
        return _type;                                                                                                  \
    }                                                                                                                  \
    const ::osg::FieldContainerType& OSG_CLASS::getType() const                                                        \
    {                                                                                                                  \
        return _type;                                                                                                  \
    }                                                                                                                  \
    ::osg::UInt32 OSG_CLASS::getContainerSize() const                                                                  \
    {                                                                                                                  \
        return static_cast<::osg::UInt32>(sizeof(OSG_CLASS));                                                          \
    }

#define OSG_FIELD_CONTAINER_INL_DEF(OSG_CLASS, OSG_FIELD_CONTAINER_PTR)                                                \
    OSG_ABSTR_FIELD_CONTAINER_INL_DEF(OSG_CLASS, OSG_FIELD_CONTAINER_PTR)                                              \
    OSG_FIELD_CONTAINER_PTR OSG_CLASS::create()                                                                        \
    {                                                                                                                  \
        const ::osg::FieldContainerPtr prototype = _type.getPrototype();                                               \
        if (prototype == ::osg::NullFC) {                                                                              \
            return ::osg::NullFC;                                                                                      \
        }                                                                                                              \
        OSG_CLASS* const container = new OSG_CLASS(static_cast<const OSG_CLASS&>(*prototype));                         \
        return OSG_FIELD_CONTAINER_PTR(::osg::ContainerAccess::adopt(container, &*prototype) ? container : nullptr);   \
    }                                                                                                                  \
    OSG_FIELD_CONTAINER_PTR OSG_CLASS::createEmpty()                                                                   \
    {                                                                                                                  \
        OSG_CLASS* const container = new OSG_CLASS;                                                                    \
        return OSG_FIELD_CONTAINER_PTR(::osg::ContainerAccess::adopt(container, nullptr) ? container : nullptr);       \
    }

#define OSG_FIELD_CONTAINER_DEF(OSG_CLASS, OSG_FIELD_CONTAINER_PTR)                                                    \
    OSG_ABSTR_FIELD_CONTAINER_DEF(OSG_CLASS, OSG_FIELD_CONTAINER_PTR)                                                  \
    ::osg::FieldContainerPtr OSG_CLASS::shallowCopy() const                                                            \
    {                                                                                                                  \
        OSG_CLASS* const container = new OSG_CLASS(*this);                                                             \
        return OSG_FIELD_CONTAINER_PTR(::osg::ContainerAccess::adopt(container, this) ? container : nullptr);          \
    }
