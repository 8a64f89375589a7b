// The library's one instance of a class, and other instances and subclasses beside it; what the
// platform raises under a message.

// GNUstep counts objects for those who debug.
#undef NDEBUG

#include "device/library/device_process.h"
#include "device/library/ownership.h"
#import "device/standins/av_foundation.h"
#import "device/standins/controllers.h"
#import <Foundation/NSDebug.h>
#include <objc/runtime.h>

namespace velmoranth::standins::singletons_test {
namespace {

// A class that has nothing of its own.
id subclassOf(const char* name) {
    const Class cls = objc_allocateClassPair(static_cast<Class>(objc_getClass(name)),
                                             (std::string("Sub") + name).c_str(), 0);
    objc_registerClassPair(cls);
    return static_cast<id>(cls);
}

class Singletons : public DeviceProcess {
  protected:
    Singletons() {
        GSDebugAllocationActive(YES);
        loaded();
    }
};

TEST_F(Singletons, AreLeftAsTheyAreBySubclasses) {
    const id manager = [velMoranth() sharedIconManager];
    const id files = [fileManager() sharedFileManager];
    const auto subclass = static_cast<Class<VelMoranthMessages>>(subclassOf("VelMoranth"));
    const auto filesSubclass =
        static_cast<Class<VelmoranthFileManagerMessages>>(subclassOf("VelmoranthFileManager"));
    EXPECT_EQ([subclass sharedIconManager], manager);
    EXPECT_EQ([filesSubclass sharedFileManager], files);
    EXPECT_EQ([velMoranth() sharedIconManager], manager);
    EXPECT_EQ([fileManager() sharedFileManager], files);
}

TEST_F(Singletons, AreMadeAnewByTheClassItself) {
    const id before = [[velMoranth() sharedIconManager] retain];
    const id filesBefore = [[fileManager() sharedFileManager] retain];
    [static_cast<Class>(velMoranth()) initialize];
    [static_cast<Class>(fileManager()) initialize];
    const id after = [velMoranth() sharedIconManager];
    ASSERT_NE(after, nil);
    EXPECT_NE(after, before);
    EXPECT_NE([fileManager() sharedFileManager], filesBefore);
    EXPECT_EQ([after class], static_cast<Class>(velMoranth()));
    // Whoever holds the one before can go on with it.
    [static_cast<id<VelMoranthMessages>>(before) playUISound:1002];
    [before release];
    [filesBefore release];
}

TEST_F(Singletons, LetTheOneBeforeGoOnceNoPoolHoldsIt) {
    struct One {
        const char* cls;
        SEL shared;
    };

    for (const One& one : {One{"VelMoranth", @selector(sharedIconManager)},
                           One{"VelmoranthFileManager", @selector(sharedFileManager)}}) {
        SCOPED_TRACE(one.cls);
        const Class cls = static_cast<Class>(objc_getClass(one.cls));
        @autoreleasepool {
            const id before = [cls performSelector:one.shared];
            EXPECT_EQ(GSDebugAllocationCount(cls), 1);
            [cls initialize];
            // Whoever was handed it can go on with it.
            EXPECT_EQ(GSDebugAllocationCount(cls), 2);
            EXPECT_EQ([before class], cls);
            EXPECT_NE([cls performSelector:one.shared], before);
        }
        EXPECT_EQ(GSDebugAllocationCount(cls), 1);
    }
}

TEST_F(Singletons, AreNotHeldByTheirCallers) {
    const id manager = [velMoranth() sharedIconManager];
    const NSUInteger references = [manager retainCount];
    @autoreleasepool {
        for (int i = 0; i < 10; ++i) {
            [velMoranth() sharedIconManager];
        }
    }
    EXPECT_EQ([manager retainCount], references);
}

TEST_F(Singletons, LeaveSubclassesOfOthersToThemselves) {
    const id<SoundsMessages> sounds = [[static_cast<Class>(subclassOf("Sounds")) alloc] init];
    file("/User/Library/VelMoranth/Sounds/beepShortOn.aif", "FORM");
    @autoreleasepool {
        [sounds PlayOn:nil];
        EXPECT_EQ([[sounds soundToPlay] delegate], static_cast<id>(sounds));
    }
    [sounds release];
    EXPECT_EQ(living("AVAudioPlayer"), 0);
}

TEST_F(Singletons, PassOnWhatThePlatformRaises) {
    const Living living = livingAround([] {
        raiseFrom("-[UIView setTag:]", "Refused");
        NSString* name = nil;
        @try {
            [velMoranth() addShadowToIcon];
        } @catch (NSException* exception) {
            name = [exception name];
        }
        EXPECT_EQ(textOf(name), "Refused");
        raiseNoMore("-[UIView setTag:]");
        EXPECT_NE([velMoranth() addShadowToIcon], nil);
    });
    EXPECT_EQ(living.after, living.before);
}

}  // namespace
}  // namespace velmoranth::standins::singletons_test
