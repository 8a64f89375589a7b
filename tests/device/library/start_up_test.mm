// What the library does when it is loaded into a process: the order of its steps, what it replaces
// on which system, and what it needs nothing of.

// GNUstep counts objects for those who debug.
#undef NDEBUG

#include "device/library/device_process.h"
#include "device/library/replaced_methods.h"
#include "device/standins/hooking.h"
#include "device/standins/images.h"
#include "device/standins/messages.h"
#include "device/standins/springboard.h"
#import <Foundation/NSDebug.h>
#include <objc/runtime.h>

#include <algorithm>
#include <cstddef>

namespace velmoranth::standins::start_up_test {
namespace {

using Lines = std::vector<std::string>;

const std::string kAdded = "class_addMethod SBFloatyFolderView handleTap \"v@:\"";
constexpr std::ptrdiff_t kRowsBeforeAdded = 10;

// As the journal has them.
Lines installed(const Lines& rows) {
    Lines lines;
    for (const std::string& row : rows) {
        lines.push_back("MSHookMessageEx " + row);
    }
    return lines;
}

// All that is done on one system.
Lines installedWith(const Lines& gated) {
    Lines lines = installed(kAlways);
    lines.insert(lines.begin() + kRowsBeforeAdded, kAdded);
    std::ranges::copy(installed(gated), std::back_inserter(lines));
    return lines;
}

Lines journalOfAny(std::initializer_list<const char*> beginnings) {
    Lines lines;
    for (const std::string& line : journal()) {
        if (std::ranges::any_of(
                beginnings, [&](const char* beginning) { return line.starts_with(beginning); })) {
            lines.push_back(line);
        }
    }
    return lines;
}

Lines installations() {
    return journalOfAny({"MSHookMessageEx ", "class_addMethod "});
}

Method methodOf(const char* className, const char* selector, bool isClassMethod) {
    const Class cls = static_cast<Class>(objc_getClass(className));
    return isClassMethod ? class_getClassMethod(cls, sel_registerName(selector))
                         : class_getInstanceMethod(cls, sel_registerName(selector));
}

class StartUp : public DeviceProcess {};

TEST_F(StartUp, RunsItsStepsInOrder) {
    load();
    Lines expected = {"setuid 0", "setgid 0"};
    std::ranges::copy(installedWith(kOniOS13), std::back_inserter(expected));
    for (const char* const step :
         {"setuid 0", "setgid 0",
          "CFNotificationCenterAddObserver nil \"com.qor.velmoranthprefs.prefs\" nil 2",
          "CFNotificationCenterAddObserver nil \"com.qor.velmoranththemechanged.prefs\" nil 2",
          "CFNotificationCenterAddObserver nil \"com.qor.velmoranthdevelopingprefs.prefs\" nil 2",
          "CFNotificationCenterAddObserver nil \"com.qor.velmoranthcompileassets.prefs\" nil 2"}) {
        expected.push_back(step);
    }
    EXPECT_EQ(journalOfAny({"setuid ", "setgid ", "MSHookMessageEx ", "class_addMethod ",
                            "CFNotificationCenterAddObserver "}),
              expected);
}

TEST_F(StartUp, HooksTheRowsOfiOS13) {
    runSystem(kiOS13);
    load();
    EXPECT_EQ(installations(), installedWith(kOniOS13));
    EXPECT_EQ(journalOf("MSHookMessageEx ").size(), 51U);
}

TEST_F(StartUp, HooksTheRowsOfiOS12) {
    runSystem(kiOS12);
    load();
    EXPECT_EQ(installations(), installedWith(kOniOS12));
    EXPECT_EQ(journalOf("MSHookMessageEx ").size(), 52U);
}

TEST_F(StartUp, HooksNeitherSetBetweenTheTwo) {
    runSystem(kBetween);
    load();
    EXPECT_EQ(installations(), installedWith({}));
}

TEST_F(StartUp, TakesTheLastNumberOfiOS12ForItsOwn) {
    runSystem({12, 4, 1575.23});
    load();
    EXPECT_EQ(installations(), installedWith(kOniOS12));
}

TEST_F(StartUp, TakesTheNextNumberForNeither) {
    runSystem({12, 4, 1575.24});
    load();
    EXPECT_EQ(installations(), installedWith({}));
}

TEST_F(StartUp, TakesTheFirstNumberOfiOS13ForItsOwn) {
    runSystem({13, 0, 1665.15});
    load();
    EXPECT_EQ(installations(), installedWith(kOniOS13));
}

TEST_F(StartUp, TakesTheNumberBeforeForNeither) {
    runSystem({13, 0, 1665.14});
    load();
    EXPECT_EQ(installations(), installedWith({}));
}

TEST_F(StartUp, ReplacesMethodsOnTheSideThatTheyAreOn) {
    const IMP instanceBefore =
        method_getImplementation(methodOf("SBIconBadgeView", "layoutSubviews", false));
    const IMP classBefore =
        method_getImplementation(methodOf("SBIconBadgeView", "_maxTextWidth", true));
    const IMP inherited = method_getImplementation(methodOf("UIView", "layoutSubviews", false));
    load();
    EXPECT_NE(method_getImplementation(methodOf("SBIconBadgeView", "layoutSubviews", false)),
              instanceBefore);
    EXPECT_NE(method_getImplementation(methodOf("SBIconBadgeView", "_maxTextWidth", true)),
              classBefore);
    EXPECT_EQ(methodOf("SBIconBadgeView", "_maxTextWidth", false), nullptr);
    // The parent of those that inherit what is replaced stays as it was.
    EXPECT_EQ(method_getImplementation(methodOf("UIView", "layoutSubviews", false)), inherited);
}

TEST_F(StartUp, AddsAMethodWithItsTypes) {
    EXPECT_EQ(methodOf("SBFloatyFolderView", "handleTap", false), nullptr);
    load();
    const Method added = methodOf("SBFloatyFolderView", "handleTap", false);
    ASSERT_NE(added, nullptr);
    EXPECT_STREQ(method_getTypeEncoding(added), "v@:");
    EXPECT_EQ(methodOf("UIView", "handleTap", false), nullptr);
}

TEST_F(StartUp, IsNotHarmedByClassesThatTheProcessLacks) {
    for (const char* const name :
         {"SBIconView", "SBFloatyFolderView", "SBIconBadgeView", "SBUISound", "SBDockView"}) {
        hideClass(name);
    }
    load();
    Lines expected = installed(kAlways);
    std::ranges::copy(installed(kOniOS13), std::back_inserter(expected));
    for (std::string& line : expected) {
        for (const char* const name : {"SBIconView ", "SBFloatyFolderView ", "SBIconBadgeView ",
                                       "SBUISound ", "SBDockView "}) {
            const std::size_t place = line.find(std::string("[") + name);
            if (place != std::string::npos) {
                line = line.substr(0, place - 1) + "nil " +
                       line.substr(place + 1 + std::string(name).size());
                line.pop_back();  // its bracket
            }
        }
    }
    EXPECT_EQ(installations(), expected);
    EXPECT_NE([velMoranth() sharedIconManager], nil);
}

TEST_F(StartUp, MakesTheSingletonsAtTheFirstMessages) {
    load();
    const id manager = [velMoranth() sharedIconManager];
    ASSERT_NE(manager, nil);
    EXPECT_EQ([manager class], static_cast<Class>(velMoranth()));
    EXPECT_EQ([velMoranth() sharedIconManager], manager);
    const id fileManager = [DeviceProcess::fileManager() sharedFileManager];
    ASSERT_NE(fileManager, nil);
    EXPECT_EQ([DeviceProcess::fileManager() sharedFileManager], fileManager);
}

// The factory preferences are asked for by message, which makes the one instance of the class;
// where they are not, nothing has been sent to it.
TEST_F(StartUp, HasSetTheFileManagerUpWhenItIsAskedForFactoryPreferences) {
    GSDebugAllocationActive(YES);
    load();
    EXPECT_EQ(GSDebugAllocationCount(static_cast<Class>(objc_getClass("VelmoranthFileManager"))),
              1);
}

TEST_F(StartUp, LeavesTheFileManagerAloneWhereItFindsAFile) {
    GSDebugAllocationActive(YES);
    file("/var/mobile/var/mobile/User/Library/Preferences/com.qor.velmoranthprefs.plist", "");
    load();
    EXPECT_EQ(GSDebugAllocationCount(static_cast<Class>(objc_getClass("VelmoranthFileManager"))),
              0);
}

// Another thread may call a method as soon as it is replaced, before the hooking library has said
// what it was.
TEST_F(StartUp, ReachesThePlatformThroughAHookThatIsBeingInstalled) {
    UIImage* const image = imageOfPixels(3, 3);
    setAnswer("+[UIImage kitImageNamed:]", image);
    setAnswer("-[SBIconLegibilityLabelView alpha]", 0.25);
    SBIconListPageControl* const dots = [[[SBIconListPageControl alloc] init] autorelease];
    SBIconLegibilityLabelView* const label = [[[SBIconLegibilityLabelView alloc] init] autorelease];
    SBFolderIconImageView* const folder = [SBFolderIconImageView alloc];
    Lines entered;
    whileHooking([&](Class cls, SEL selector) {
        const std::string name = std::string(class_getName(cls)) + " " + sel_getName(selector);
        clearJournal();
        if (name == "UIImage kitImageNamed:") {
            EXPECT_EQ([UIImage kitImageNamed:@"any"], image);
            EXPECT_EQ(journal(), Lines(2, "+[UIImage kitImageNamed:] UIImage \"any\""));
        } else if (name == "SBIconLegibilityLabelView alpha") {
            EXPECT_EQ([label alpha], 0.25);
        } else if (name == "SBIconListPageControl layoutSubviews") {
            [dots layoutSubviews];
            EXPECT_EQ(journal(),
                      Lines(2, "-[SBIconListPageControl layoutSubviews] SBIconListPageControl"));
        } else if (name == "SBFolderIconImageView initWithFrame:") {
            EXPECT_EQ([folder initWithFrame:CGRect{}], folder);
        } else {
            return;
        }
        entered.push_back(name);
    });
    load();
    EXPECT_EQ(entered,
              (Lines{"SBFolderIconImageView initWithFrame:", "SBIconListPageControl layoutSubviews",
                     "SBIconLegibilityLabelView alpha", "UIImage kitImageNamed:"}));
    [folder release];
}

TEST_F(StartUp, RestoresTheFactoryPreferencesAndReadsThem) {
    activeThemes({"A"}, {"enableLogging"});
    const std::string live = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
    const std::string factory = contents(live);
    remove(live);
    file("/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist", factory);
    load();
    EXPECT_EQ(contents(live), factory);
    // What is logged on this notice is so only with logging on.
    clearLog();
    postDarwinNotification("com.qor.velmoranthcompileassets.prefs");
    runMainQueue();
    EXPECT_EQ(logLines(),
              (Lines{"VELMORANTH ********************************************** "
                     "CompileAssetsCallback CFStringRef:com.qor.velmoranthcompileassets.prefs "
                     "********************************************"}));
}

TEST_F(StartUp, KeepsThePreferencesThatThereAre) {
    activeThemes({"A"});
    const std::string live = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
    const std::string before = contents(live);
    file("/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist", "factory");
    load();
    EXPECT_EQ(contents(live), before);
}

TEST_F(StartUp, DoesNotAskForFactoryPreferencesWhereItFindsAFile) {
    file("/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist", "factory");
    // The path that it looks at begins at the home directory and goes on from the root.
    file("/var/mobile/var/mobile/User/Library/Preferences/com.qor.velmoranthprefs.plist", "");
    load();
    EXPECT_FALSE(exists("/User/Library/Preferences/com.qor.velmoranthprefs.plist"));
}

TEST_F(StartUp, TellsOfLoadingOnceLookUpsHaveSeenLoggingOn) {
    activeThemes({"A"}, {"enableLogging"});
    load();
    const std::string line = "LOAD_VELMORANTH " + std::string(46, '*') + "LOADED VELMORANTH " +
                             std::string(44, '*') + " LOAD_VELMORANTH";
    EXPECT_EQ(std::ranges::count(logLines(), line), 0);
    [velMoranth() deviceUIImageNamed:@"x" originalUIImage:nil];
    clearLog();
    [velMoranth() load];
    EXPECT_EQ(std::ranges::count(logLines(), line), 1);
}

TEST_F(StartUp, LeavesNothingBehind) {
    const Lines before = allLiving();
    @autoreleasepool {
        load();
    }
    EXPECT_EQ(allLiving(), before);
}

}  // namespace
}  // namespace velmoranth::standins::start_up_test
