// SPDX-License-Identifier: MIT
//
// Uses what every component builds on.
#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>

int main(int argc, char** argv)
{
    return osg::osgInit(argc, argv) ? 0 : 1;
}
