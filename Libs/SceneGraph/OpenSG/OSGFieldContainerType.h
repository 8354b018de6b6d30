// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGFieldContainerPtr.h>
#include <OpenSG/OSGFieldDescription.h>

#include <string>
#include <vector>

namespace osg {

typedef FieldContainerPtr (*PrototypeCreateF)();
typedef void (*InitContainerF)();

/**
 * Describes a class of containers: name, base, fields, and the prototype that new containers are copied from.
 *
 * Objects register themselves with the factory; each class of containers has a static one. Types that exist when
 * osgInit() is called are initialised by it, later ones by FieldContainerFactory::initializePendingTypes(). Names are
 * unique in the process.
 */
class OSG_SYSTEM_DLLMAPPING FieldContainerType {
public:
    /**
     * @param name name of the class
     * @param parentName name of the base's type, null for none
     * @param groupName null for a group of its own; attachments of one group replace each other
     * @param prototypeCreate makes the prototype; null for an abstract class
     * @param initMethod called once before the prototype is made, may be null
     * @param descriptions the fields that the class adds, kept by pointer; may be null
     * @param descriptionBytes size of that array in bytes
     */
    FieldContainerType(const Char8* name, const Char8* parentName, const Char8* groupName,
                       PrototypeCreateF prototypeCreate, InitContainerF initMethod,
                       FieldDescription** descriptions = nullptr, UInt32 descriptionBytes = 0);
    FieldContainerType(const FieldContainerType&) = delete;
    FieldContainerType& operator=(const FieldContainerType&) = delete;
    ~FieldContainerType();

    const Char8* getCName() const { return m_name.c_str(); }
    const std::string& getName() const { return m_name; }
    UInt32 getId() const { return m_id; }
    UInt16 getGroupId() const { return m_groupId; }

    /// Null for the root of all types.
    FieldContainerType* getParent() const;

    /// True for the type itself and for all its bases.
    bool isDerivedFrom(const FieldContainerType& other) const;
    bool isNode() const;
    bool isNodeCore() const;
    bool isAttachment() const;
    bool isAbstract() const { return m_prototypeCreate == nullptr; }

    /// Null before osgInit() and for abstract types.
    FieldContainerPtr getPrototype() const { return m_prototype; }
    /// A new container of this type; null as long as there is no prototype.
    FieldContainerPtr createFieldContainer() const;

    /// Number of fields with those of the bases.
    UInt32 getNumFieldDescs() const;
    /// Null for an unknown field.
    const FieldDescription* getFieldDescription(UInt32 fieldId) const;
    const FieldDescription* findFieldDescription(const Char8* name) const;

    bool operator==(const FieldContainerType& other) const { return this == &other; }
    bool operator!=(const FieldContainerType& other) const { return this != &other; }

private:
    friend class FieldContainerFactory;

    void initialize();
    void destroyPrototype();

    std::string m_name;
    std::string m_parentName;
    UInt32 m_id;
    UInt16 m_groupId;
    mutable FieldContainerType* m_parent = nullptr;
    PrototypeCreateF m_prototypeCreate;
    InitContainerF m_initMethod;
    std::vector<FieldDescription*> m_descriptions;
    FieldContainerPtr m_prototype;
    bool m_initialized = false;
};

} // namespace osg
