// The variables that the library exports for open folders.
#include "desktop/views/view_node.h"
#include "platform/springboard.h"
#include "tests/support/places.h"
#include "tests/support/test_device.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace velmoranth::tests::open_folder_exports_test {
namespace {

using platform::GestureRecognizerRef;
using platform::ObjectRef;
using platform::ViewRef;

// A folder view that sees what the variable holds when it is given a recognizer.
struct FolderView final : desktop::ViewImplementation<platform::SBFloatyFolderView> {
    [[nodiscard]] std::string className() const override { return "SBFloatyFolderView"; }

    void addGestureRecognizer(const GestureRecognizerRef& recognizer) override {
        held.push_back(*variable);
        ViewImplementation::addGestureRecognizer(recognizer);
    }

    const GestureRecognizerRef* variable = nullptr;
    std::vector<GestureRecognizerRef> held;
};

TEST(OpenFolderExports, TapHoldsTheRecognizerFromBeforeItIsAdded) {
    TestDevice device;
    constexpr const char* kInit = "initWithFolder:orientation:viewMap:context:";
    const auto view = std::make_shared<FolderView>();
    device.runtime.addClass("SBFloatyFolderView");
    device.runtime.addInstanceMethod(
        "SBFloatyFolderView", kInit,
        std::function<ViewRef(platform::SBFloatyFolderView&, ObjectRef, std::int64_t, ObjectRef,
                              ObjectRef)>([&](platform::SBFloatyFolderView&, const ObjectRef&,
                                              std::int64_t, const ObjectRef&,
                                              const ObjectRef&) { return ViewRef(view); }));
    device.preferences({{"enable", true}, {"removeFolderBG", true}});

    void* const library = dlopen(tests::kEngineLibrary, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    auto* const tap = static_cast<GestureRecognizerRef*>(dlsym(library, "tap"));
    auto* const blurEffect = static_cast<ObjectRef*>(dlsym(library, "blurEffect"));
    ASSERT_NE(tap, nullptr);
    ASSERT_NE(blurEffect, nullptr);
    EXPECT_EQ(*tap, nullptr);
    EXPECT_EQ(*blurEffect, nullptr);

    view->variable = tap;
    for (int i = 0; i < 2; ++i) {
        device.runtime.send<ViewRef, ObjectRef, std::int64_t, ObjectRef, ObjectRef>(
            *view, kInit, nullptr, 1, nullptr, nullptr);
    }
    EXPECT_EQ(view->held, view->recognizers());
    EXPECT_EQ(view->held.size(), 2U);
    EXPECT_EQ(*tap, view->held.back());
    EXPECT_EQ(*blurEffect, nullptr);
}

}  // namespace
}  // namespace velmoranth::tests::open_folder_exports_test
