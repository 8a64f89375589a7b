// The engine's shared library, mapped as the hooking loader maps it: its load-time entry points run
// by themselves, in their order.
#include "tests/support/places.h"
#include "tests/support/test_device.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace velmoranth::tests::load_time_test {
namespace {

TEST(LoadTime, LibraryRunsItsThreeEntryPointsInOrder) {
    TestDevice device;
    device.runtime.addClass("NSObject");
    device.runtime.addClass("SBHIconImageCache", "NSObject");
    device.runtime.addInstanceMethod(
        "SBHIconImageCache", "imageForIcon:",
        std::function<platform::ImageRef(platform::SBHIconImageCache&, platform::SBIconRef)>(
            [](platform::SBHIconImageCache&, const platform::SBIconRef&) { return nullptr; }));
    ASSERT_NE(dlopen(tests::kEngineLibrary, RTLD_NOW | RTLD_LOCAL), nullptr) << dlerror();

    std::vector<std::string> steps;
    for (const std::string& line : device.journal.linesWith("")) {
        for (const char* step :
             {"objc_registerClassPair VelMoranth ", "setuid ",
              "MSHookMessageEx -[SBHIconImageCache imageForIcon:]", "objc_msgSend VelMoranth load",
              "+[NSDictionary dictionaryWithContentsOfFile:] ",
              "CFNotificationCenterAddObserver "}) {
            if (line.starts_with(step)) {
                steps.push_back(
                    std::string(step).substr(0, std::string_view(step).find_last_not_of(' ') + 1));
            }
        }
    }
    EXPECT_EQ(steps, (std::vector<std::string>{
                         "objc_registerClassPair VelMoranth", "setuid",
                         "MSHookMessageEx -[SBHIconImageCache imageForIcon:]",
                         "objc_msgSend VelMoranth load", "setuid",
                         "+[NSDictionary dictionaryWithContentsOfFile:]",
                         "CFNotificationCenterAddObserver", "CFNotificationCenterAddObserver",
                         "CFNotificationCenterAddObserver", "CFNotificationCenterAddObserver"}));
}

}  // namespace
}  // namespace velmoranth::tests::load_time_test
