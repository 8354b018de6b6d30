// SPDX-License-Identifier: MIT
//
// Not linked with the host services: a plug-in may bring them in when the scene graph is running already, and with
// them a type of attachment that the scene graph has not heard of when it was started.
#include <InteractionTesting/SceneFixture.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace {

using LateLoadingTest = quon::testing::SceneFixture;

template <typename Function>
Function find(void* library, const char* mangledName)
{
    void* const address = dlsym(library, mangledName);
    EXPECT_NE(address, nullptr) << mangledName;
    return reinterpret_cast<Function>(address);
}

TEST_F(LateLoadingTest, MarksWorkInAHostLoadedAfterTheSceneGraphWasStarted)
{
    const osg::RefPtr<osg::NodePtr> node(osg::Node::create());
    ASSERT_EQ(osg::FieldContainerFactory::the()->findType("koHostMarks"), nullptr) << "loaded already";
    // Never closed: the scene graph keeps the types for the rest of the process.
    void* const library = dlopen(KO_HOST_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto setIsEditable =
        find<void (*)(const osg::NodePtr&, bool)>(library, "_ZN11koNodeUtils13setIsEditableERKN3osg7NodePtrEb");
    const auto isEditable =
        find<bool (*)(const osg::NodePtr&)>(library, "_ZN11koNodeUtils10isEditableERKN3osg7NodePtrE");
    ASSERT_NE(setIsEditable, nullptr);
    ASSERT_NE(isEditable, nullptr);

    setIsEditable(node.get(), false);

    EXPECT_FALSE(isEditable(node.get()));
}

} // namespace
