// The variables that the library exports for open folders.
#include "platform/objc_runtime.h"
#include "platform/uikit.h"
#include "tests/support/places.h"
#include "tests/support/test_device.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace velmoranth::tests::open_folder_exports_test {
namespace {

TEST(OpenFolderExports, TapAndBlurEffectAreThereAndNil) {
    TestDevice device;
    void* const library = dlopen(tests::kEngineLibrary, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    void* const tap = dlsym(library, "_ZN10velmoranth5hooks3tapEv");
    void* const blurEffect = dlsym(library, "_ZN10velmoranth5hooks10blurEffectEv");
    ASSERT_NE(tap, nullptr);
    ASSERT_NE(blurEffect, nullptr);
    EXPECT_EQ(reinterpret_cast<platform::GestureRecognizerRef& (*)()>(tap)(), nullptr);
    EXPECT_EQ(reinterpret_cast<platform::ObjectRef& (*)()>(blurEffect)(), nullptr);
    // The rest is the library's own.
    EXPECT_EQ(dlsym(library, "_ZN10velmoranth5hooks17DockImageInsertedEv"), nullptr);
    EXPECT_EQ(dlsym(library, "_ZN10velmoranth5hooks25FolderBackgroundImageViewEv"), nullptr);
}

}  // namespace
}  // namespace velmoranth::tests::open_folder_exports_test
