// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMaterial.h>

#include <string>

/** Names of materials; the same names as osg::setName() and osg::getName(). */
class koMaterials {
public:
    koMaterials() = delete;

    /**
     * Names @p material. Null is ignored.
     *
     * @param givenByProgram whether the name comes from the program and not from the user
     */
    static void setName(const osg::MaterialPtr& material, const std::string& name, bool givenByProgram);

    /** Returns the name of @p material; empty for a material without name and for null. */
    static std::string getName(const osg::MaterialPtr& material);

    /** Returns what the last setName() said; false for a material never named by it and for null. */
    static bool isNameGivenByProgram(const osg::MaterialPtr& material);
};
