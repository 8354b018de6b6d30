// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMaterial.h>

#include <string>

class koMaterials {
public:
    static void setName(const osg::MaterialPtr& material, const std::string& name, bool givenByProgram);
};
