// The library comes to life: the three steps, the class VelMoranth and its singleton.
#include "core/entry_points.h"
#include "core/hook_table.h"
#include "core/settings.h"
#include "core/velmoranth.h"
#include "filemanager/velmoranth_file_manager.h"
#include "tests/support/replaced_services.h"
#include "tests/support/test_device.h"

#include "expected_rows.h"
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace velmoranth::core::start_up_test {
namespace {

using Lines = std::vector<std::string>;
using tests::TestDevice;

const std::string kDoubledPath =
    "/var/mobile/var/mobile/User/Library/Preferences/com.qor.velmoranthprefs.plist";
const std::string kFactory =
    "/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist";
const std::string kLive = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
const std::string kLoaded = "log LOAD_VELMORANTH " + std::string(46, '*') + "LOADED VELMORANTH " +
                            std::string(44, '*') + " LOAD_VELMORANTH";

// Without what the runtime is asked on the way.
Lines withoutLookups(const tests::Journal& journal) {
    Lines lines;
    for (const std::string& line : journal.lines()) {
        const std::string request = line.substr(std::min(line.find_first_not_of(' '), line.size()));
        if (!request.starts_with("objc_getClass ") && !request.starts_with("object_getClass ") &&
            !request.starts_with("warning: ")) {
            lines.push_back(line);
        }
    }
    return lines;
}

void append(Lines& lines, const Lines& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

// +load where the doubled path is absent and there are no factory preferences; the first message to
// the file manager's class initialises it.
Lines loadLines(bool isFirst) {
    Lines lines{"setuid 0", "setgid 0", "NSHomeDirectory",
                "-[NSFileManager fileExistsAtPath:] " + kDoubledPath,
                "objc_msgSend VelmoranthFileManager NoUserSettingCreateThemeNow"};
    if (isFirst) {
        lines.emplace_back("called +[VelmoranthFileManager initialize] VelmoranthFileManager");
    }
    append(lines,
           {"-[NSFileManager setAttributes:ofItemAtPath:error:] /User/Library/Preferences 0777",
            "chmod /User/Library/Preferences 0777", tests::copyLine(kFactory, kLive),
            "log Velmoranth Failed to move '" + kFactory + "' to '" + kLive +
                "': The file “com.qor.velmoranthprefs.plist” couldn’t be opened because there is "
                "no such file."});
    return lines;
}

platform::ClassRef mainClass(TestDevice& device) {
    return device.runtime.getClass("VelMoranth");
}

TEST(StartUp, RunsInOrder) {
    const TestDevice device;
    registerClasses();
    installHooks();
    startSettings();
    Lines expected{"objc_registerClassPair VelmoranthFileManager NSObject",
                   "objc_registerClassPair Sounds NSObject",
                   "objc_registerClassPair VelMoranth NSObject"};
    append(expected, tests::calledBack("+[VelMoranth load]", loadLines(true)));
    for (std::size_t i = 0; i < kExpectedRows.size(); ++i) {
        if (kExpectedRows[i].gate != HookGate::ios12) {
            expected.push_back(std::string("MSHookMessageEx nil ") + kExpectedRows[i].selector);
        }
        if (kExpectedRows[i].number == 10) {
            expected.emplace_back("class_addMethod nil handleTap \"v@:\"");
        }
    }
    append(expected,
           {"objc_msgSend VelMoranth load", "called +[VelMoranth initialize] VelMoranth"});
    append(expected, tests::calledBack("+[VelMoranth load]", loadLines(false)));
    append(expected,
           {"+[NSDictionary dictionaryWithContentsOfFile:] " + kLive,
            "CFNotificationCenterAddObserver nil \"com.qor.velmoranthprefs.prefs\" nil 2",
            "CFNotificationCenterAddObserver nil \"com.qor.velmoranththemechanged.prefs\" nil 2",
            "CFNotificationCenterAddObserver nil \"com.qor.velmoranthdevelopingprefs.prefs\" nil 2",
            "CFNotificationCenterAddObserver nil \"com.qor.velmoranthcompileassets.prefs\" nil 2"});
    EXPECT_EQ(withoutLookups(device.journal), expected);
}

TEST(StartUp, TheHooksAreInstalledByTheFirstConstructorAlone) {
    TestDevice device;
    registerClasses();
    EXPECT_EQ(device.system.versionNumberReads, 0);
    EXPECT_EQ(device.journal.count("MSHookMessageEx "), 0U);
    installHooks();
    EXPECT_EQ(device.system.versionNumberReads, 2);
    const std::size_t hooks = device.journal.count("MSHookMessageEx ");
    EXPECT_GT(hooks, 0U);
    startSettings();
    EXPECT_EQ(device.system.versionNumberReads, 2);
    EXPECT_EQ(device.journal.count("MSHookMessageEx "), hooks);
}

TEST(StartUp, EverythingIsOffUntilTheSettingsAreRead) {
    const TestDevice device;
    device.preferences({{"enable", true}, {"opacityVal", 0.5}});
    registerClasses();
    installHooks();
    EXPECT_EQ(settings(), Settings());
    EXPECT_EQ(device.journal.count("+[NSDictionary dictionaryWithContentsOfFile:] "), 0U);
    startSettings();
    EXPECT_TRUE(settings().enable);
    EXPECT_EQ(settings().opacityVal, 0.5F);
}

TEST(StartUp, FactoryPreferencesBecomeTheLiveOnesBeforeTheyAreRead) {
    const TestDevice device;
    device.preferences({{"enable", true}});
    const std::string contents = device.contents(kLive);
    device.remove(kLive);
    device.file(kFactory, contents);
    registerClasses();
    EXPECT_EQ(device.contents(kLive), contents);
    installHooks();
    startSettings();
    EXPECT_TRUE(settings().enable);
    EXPECT_EQ(device.contents(kLive), contents);
    EXPECT_EQ(device.mode("/User/Library/Preferences"), 0777U);
    // Once they were put there, then they stood there already.
    EXPECT_EQ(device.journal.count(tests::kCopy), 2U);
    EXPECT_EQ(device.journal.count(tests::kMove), 1U);
}

TEST(StartUp, AFileAtTheDoubledPathKeepsTheFactoryPreferencesAway) {
    const TestDevice device;
    device.file(kDoubledPath, "anything");
    device.file(kFactory, "{}");
    registerClasses();
    startSettings();
    EXPECT_FALSE(device.exists(kLive));
    EXPECT_EQ(device.journal.count("-[NSFileManager setAttributes:"), 0U);
    EXPECT_EQ(device.journal.count("chmod "), 0U);
    EXPECT_EQ(device.journal.count(tests::kCopy), 0U);
    EXPECT_EQ(device.journal.count("-[NSFileManager fileExistsAtPath:] " + kDoubledPath), 2U);
}

TEST(StartUp, LivePreferencesDoNotKeepTheFactoryOnesFromBeingAskedFor) {
    const TestDevice device;
    device.file(kLive, "{ enable = YES; }");
    device.file(kFactory, "{}");
    registerClasses();
    EXPECT_EQ(device.journal.count(tests::kCopy), 1U);
    EXPECT_EQ(device.contents(kLive), "{ enable = YES; }");
}

TEST(Load, TakesRootsIdsFirstAndIgnoresTheResult) {
    TestDevice device;
    registerClasses();
    device.journal.clear();
    VelMoranth::load();
    EXPECT_EQ(withoutLookups(device.journal), loadLines(false));
}

TEST(Load, IsSilentUntilTheLookupsHaveTurnedLoggingOn) {
    TestDevice device;
    device.file(kDoubledPath, "");
    device.preferences({{"enableLogging", true}});
    loadSettings();
    device.journal.clear();
    VelMoranth::load();
    EXPECT_EQ(device.journal.lines(),
              (Lines{"setuid 0", "setgid 0", "NSHomeDirectory",
                     "-[NSFileManager fileExistsAtPath:] " + kDoubledPath}));
    refreshLookupSwitches();
    device.journal.clear();
    VelMoranth::load();
    EXPECT_EQ(device.journal.lines(),
              (Lines{"setuid 0", "setgid 0", kLoaded, "NSHomeDirectory",
                     "-[NSFileManager fileExistsAtPath:] " + kDoubledPath}));
}

TEST(Load, LooksBelowTheHomeDirectory) {
    TestDevice device;
    device.libSystem.home = "/var/root/";
    VelMoranth::load();
    EXPECT_EQ(device.journal.linesWith("-[NSFileManager fileExistsAtPath:] "),
              (Lines{"-[NSFileManager fileExistsAtPath:] "
                     "/var/root/var/mobile/User/Library/Preferences/com.qor.velmoranthprefs."
                     "plist"}));
}

TEST(Singleton, IsNilAfterTheDirectLoadAndMadeForTheFirstMessage) {
    const TestDevice device;
    EXPECT_EQ(VelMoranth::sharedIconManager(), nullptr);
    registerClasses();
    EXPECT_EQ(VelMoranth::sharedIconManager(), nullptr);
    installHooks();
    EXPECT_EQ(VelMoranth::sharedIconManager(), nullptr);
    startSettings();
    const VelMoranthRef manager = VelMoranth::sharedIconManager();
    ASSERT_NE(manager, nullptr);
    EXPECT_EQ(manager->className(), "VelMoranth");
    EXPECT_EQ(VelMoranth::sharedIconManager(), manager);
}

// Notes which singletons exist: the main class's whenever +load begins, the file manager's whenever
// a folder is opened up for the factory preferences.
struct WatchingLibSystem final : platform::LibSystem {
    explicit WatchingLibSystem(platform::LibSystem& libSystem) : real(libSystem) {}

    platform::LibSystem& real;
    std::vector<bool> singletonExists;
    std::vector<bool> fileManagerExists;

    int setuid(unsigned id) override {
        singletonExists.push_back(VelMoranth::sharedIconManager() != nullptr);
        return real.setuid(id);
    }

    int setgid(unsigned id) override { return real.setgid(id); }

    int chmod(const std::string& path, unsigned mode) override {
        fileManagerExists.push_back(filemanager::VelmoranthFileManager::sharedFileManager() !=
                                    nullptr);
        return real.chmod(path, mode);
    }

    int mkdir(const std::string& path, unsigned mode) override { return real.mkdir(path, mode); }

    std::string machine() override { return real.machine(); }

    std::string homeDirectory() override { return real.homeDirectory(); }

    void dispatchAfterOnMainQueue(std::int64_t nanoseconds,
                                  const std::function<void()>& block) override {
        real.dispatchAfterOnMainQueue(nanoseconds, block);
    }
};

TEST(Singleton, ExistsWhenLoadRunsForTheSecondTime) {
    const TestDevice device;
    const platform::Platform& all = platform::platform();
    WatchingLibSystem libSystem(all.libSystem);
    tests::replaceServices({.libSystem = &libSystem});
    registerClasses();
    startSettings();
    EXPECT_EQ(libSystem.singletonExists, (std::vector<bool>{false, true}));
}

// The factory preferences are asked for by message, the first one to their class.
TEST(Singleton, OfTheFileManagerExistsWhenFactoryPreferencesAreMade) {
    const TestDevice device;
    const platform::Platform& all = platform::platform();
    WatchingLibSystem libSystem(all.libSystem);
    tests::replaceServices({.libSystem = &libSystem});
    EXPECT_EQ(filemanager::VelmoranthFileManager::sharedFileManager(), nullptr);
    registerClasses();
    EXPECT_EQ(libSystem.fileManagerExists, std::vector<bool>{true});
}

TEST(Initialize, OfASubclassLeavesTheSingleton) {
    TestDevice device;
    registerClasses();
    startSettings();
    const VelMoranthRef manager = VelMoranth::sharedIconManager();
    ASSERT_TRUE(device.runtime.addClass("Sub", "VelMoranth"));
    // The first message to the subclass, which inherits +initialize.
    device.runtime.sendMessage(device.runtime.getClass("Sub"), "load");
    EXPECT_EQ(VelMoranth::sharedIconManager(), manager);
    VelMoranth::initialize(device.runtime.getClass("Sub"));
    EXPECT_EQ(VelMoranth::sharedIconManager(), manager);
}

TEST(Initialize, OfASubclassMakesNone) {
    TestDevice device;
    registerClasses();
    device.runtime.addClass("Sub", "VelMoranth");
    VelMoranth::initialize(device.runtime.getClass("Sub"));
    VelMoranth::initialize(nullptr);
    EXPECT_EQ(VelMoranth::sharedIconManager(), nullptr);
}

TEST(Initialize, OfTheClassMakesTheSingletonAnewAndReleasesTheOld) {
    TestDevice device;
    registerClasses();
    VelMoranth::initialize(mainClass(device));
    VelMoranthRef first = VelMoranth::sharedIconManager();
    ASSERT_NE(first, nullptr);
    const std::weak_ptr<VelMoranth> old = first;
    VelMoranth::initialize(mainClass(device));
    EXPECT_NE(VelMoranth::sharedIconManager(), first);
    first.reset();
    EXPECT_TRUE(old.expired());
}

TEST(InitClass, GivesTheAudioSessionTheAmbientCategory) {
    TestDevice device;
    VelMoranth manager;
    manager.initClass(nullptr);
    EXPECT_TRUE(device.journal.lines().empty());
    manager.initClass(std::make_shared<VelMoranth>());
    EXPECT_EQ(device.journal.lines(), (Lines{"+[AVAudioSession sharedInstance]",
                                             "-[AVAudioSession setCategory:error:] AVAudioSession "
                                             "\"AVAudioSessionCategoryAmbient\""}));
}

}  // namespace
}  // namespace velmoranth::core::start_up_test
