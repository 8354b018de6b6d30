// SPDX-License-Identifier: MIT
#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>

#include <benchmark/benchmark.h>

int main(int argc, char** argv)
{
    // As in a host that draws: every edit is recorded.
    osg::ChangeList::setReadWriteDefault();
    osg::osgInit(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    osg::osgExit();
    return 0;
}
