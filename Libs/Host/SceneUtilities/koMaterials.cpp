// SPDX-License-Identifier: MIT
#include <SceneUtilities/koMaterials.h>

#include <SceneUtilities/HostMarks.h>

#include <OpenSG/OSGSimpleAttachments.h>

using quon::host::Mark;

void koMaterials::setName(const osg::MaterialPtr& material, const std::string& name, bool givenByProgram)
{
    if (material == osg::NullFC) {
        return;
    }
    osg::setName(material, name);
    quon::host::setMark(material, Mark::NameGivenByProgram, givenByProgram);
}

std::string koMaterials::getName(const osg::MaterialPtr& material)
{
    const osg::Char8* name = material != osg::NullFC ? osg::getName(material) : nullptr;
    return name != nullptr ? name : "";
}

bool koMaterials::isNameGivenByProgram(const osg::MaterialPtr& material)
{
    return quon::host::hasMark(material, Mark::NameGivenByProgram);
}
