// SPDX-License-Identifier: MIT
//
// Linked with the scene graph alone: the library and the host's extensions come when it is running already.
#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGFieldContainerFactory.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace {

TEST(LatePluginTest, TheLibraryWorksWhenItIsLoadedAfterTheSceneGraphWasStarted)
{
    ASSERT_EQ(osg::FieldContainerFactory::the()->findType("koHostMarks"), nullptr) << "loaded already";
    // Never closed: the scene graph keeps the types for the rest of the process.
    void* const plugin = dlopen(KO_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(plugin, nullptr) << dlerror();
    const auto selectLate = reinterpret_cast<const char* (*)()>(dlsym(plugin, "selectLate"));
    ASSERT_NE(selectLate, nullptr);

    EXPECT_STREQ(selectLate(), "");
}

} // namespace
