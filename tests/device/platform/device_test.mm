#include "device/platform/exceptions.h"
#include "device/platform/services.h"
#import "device/standins/controllers.h"
#include <gtest/gtest.h>

namespace velmoranth::device::device_test {
namespace {

using standins::clearJournal;
using standins::journal;

TEST(CurrentDevice, IsAskedWhetherItHasAnIdiom) {
    @autoreleasepool {
        standins::setDevice(1, 3);
        clearJournal();
        EXPECT_TRUE(currentDevice().respondsToUserInterfaceIdiom());
        EXPECT_EQ(journal(), (Strings{"+[UIDevice currentDevice]",
                                      "-[UIDevice respondsToSelector:] userInterfaceIdiom"}));
        standins::setDevice(std::nullopt, 3);
        EXPECT_FALSE(currentDevice().respondsToUserInterfaceIdiom());
    }
}

TEST(CurrentDevice, HasIdiomAndOrientation) {
    @autoreleasepool {
        standins::setDevice(platform::kUserInterfaceIdiomPad,
                            platform::kDeviceOrientationLandscapeRight);
        clearJournal();
        EXPECT_EQ(currentDevice().userInterfaceIdiom(), platform::kUserInterfaceIdiomPad);
        EXPECT_EQ(currentDevice().orientation(), platform::kDeviceOrientationLandscapeRight);
        EXPECT_EQ(journal(), (Strings{"+[UIDevice currentDevice]", "-[UIDevice userInterfaceIdiom]",
                                      "+[UIDevice currentDevice]", "-[UIDevice orientation]"}));
        standins::setDevice(-1, 0);
        EXPECT_EQ(currentDevice().userInterfaceIdiom(), -1);
        EXPECT_EQ(currentDevice().orientation(), 0);
    }
}

TEST(MainScreen, HasScaleAndBounds) {
    @autoreleasepool {
        standins::setScreen({414, 896}, 3);
        clearJournal();
        EXPECT_EQ(mainScreen().scale(), 3);
        EXPECT_EQ(mainScreen().bounds(), (platform::Rect{{0, 0}, {414, 896}}));
        EXPECT_EQ(journal(), (Strings{"+[UIScreen mainScreen]", "-[UIScreen scale]",
                                      "+[UIScreen mainScreen]", "-[UIScreen bounds]"}));
    }
}

TEST(MainScreen, AndTheDevicePassOnWhatTheirMessagesRaise) {
    @autoreleasepool {
        const Operation operations[] = {
            {"-[UIDevice respondsToSelector:]",
             [] { static_cast<void>(currentDevice().respondsToUserInterfaceIdiom()); }},
            {"-[UIDevice userInterfaceIdiom]",
             [] { static_cast<void>(currentDevice().userInterfaceIdiom()); }},
            {"-[UIDevice orientation]", [] { static_cast<void>(currentDevice().orientation()); }},
            {"-[UIScreen scale]", [] { static_cast<void>(mainScreen().scale()); }},
            {"-[UIScreen bounds]", [] { static_cast<void>(mainScreen().bounds()); }},
        };
        for (const Operation& operation : operations) {
            standins::raiseFrom(operation.method, "Refused");
            EXPECT_EQ(raisedBy(operation.run), "Refused") << operation.method;
        }
    }
}

}  // namespace
}  // namespace velmoranth::device::device_test
