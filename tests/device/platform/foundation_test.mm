// GNUstep counts objects for those who debug.
#undef NDEBUG

#include "device/platform/phone_test.h"
#include "device/platform/services.h"
#include "device/standins/standin.h"
#import <Foundation/NSDebug.h>
#include <sys/stat.h>

namespace velmoranth::device {
namespace {

using platform::Data;
using platform::Error;
using standins::logLines;

Data bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

unsigned modeOf(const std::filesystem::path& path) {
    struct stat found = {};
    return ::stat(path.c_str(), &found) == 0 ? found.st_mode & 07777U : 0;
}

const std::string kWithNul("/Library/Themes\0/elsewhere", 26);

class FileManager : public PhoneTest {
  protected:
    platform::FileManager& files_ = fileManager();
};

TEST_F(FileManager, KnowsWhatExists) {
    write("/Library/Themes/a", "");
    EXPECT_TRUE(files_.fileExistsAtPath("/Library/Themes/a"));
    EXPECT_FALSE(files_.fileExistsAtPath("/Library/Themes/b"));
    EXPECT_FALSE(files_.fileExistsAtPath(""));
    EXPECT_FALSE(files_.fileExistsAtPath(kWithNul));

    const auto of = [&](const std::string& path) {
        const platform::FileExistence found = files_.fileExistsAtPathIsDirectory(path);
        return std::pair(found.exists, found.isDirectory);
    };
    EXPECT_EQ(of("/Library/Themes"), std::pair(true, true));
    EXPECT_EQ(of("/Library/Themes/a"), std::pair(true, false));
    EXPECT_EQ(of("/Library/Themes/b"), std::pair(false, false));
    EXPECT_EQ(of(kWithNul), std::pair(false, false));
}

TEST_F(FileManager, LinksAreFollowed) {
    std::filesystem::create_symlink("nowhere", at("/Library/dangling"));
    std::filesystem::create_symlink("Themes", at("/Library/there"));
    EXPECT_FALSE(files_.fileExistsAtPath("/Library/dangling"));
    EXPECT_TRUE(files_.fileExistsAtPathIsDirectory("/Library/there").isDirectory);
}

TEST_F(FileManager, SetsPermissions) {
    write("/Library/Themes/a", "");
    EXPECT_EQ(files_.setPosixPermissionsOfItemAtPath(0750, "/Library/Themes/a"), std::nullopt);
    EXPECT_EQ(modeOf(at("/Library/Themes/a")), 0750U);
    const platform::Failure missing = files_.setPosixPermissionsOfItemAtPath(0700, "/Library/b");
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->code, 4);
    EXPECT_EQ(missing->localizedDescription, "The file “b” doesn’t exist.");
}

TEST_F(FileManager, CopiesFoldersWithAllTheyHold) {
    write("/Library/Themes/One/a/b.png", "pixels");
    EXPECT_EQ(files_.copyItemAtPathToPath("/Library/Themes/One", "/Library/Themes/Two"),
              std::nullopt);
    EXPECT_EQ(read("/Library/Themes/Two/a/b.png"), "pixels");
    EXPECT_EQ(read("/Library/Themes/One/a/b.png"), "pixels");
}

TEST_F(FileManager, CopyFailsAsThePhoneSays) {
    write("/Library/Themes/a", "one");
    write("/Library/Themes/b", "two");
    EXPECT_EQ(files_.copyItemAtPathToPath("/Library/Themes/a", "/Library/Themes/b"),
              (Error{"“a” couldn’t be copied to “Themes” because an item with the same name "
                     "already exists.",
                     "NSCocoaErrorDomain", 516}));
    EXPECT_EQ(read("/Library/Themes/b"), "two");
    EXPECT_EQ(files_.copyItemAtPathToPath("/Library/Themes/c", "/Library/Themes/d"),
              (Error{"The file “c” couldn’t be opened because there is no such file.",
                     "NSCocoaErrorDomain", 260}));
    EXPECT_EQ(files_.copyItemAtPathToPath("/Library/Themes/a", "/Library/None/a"),
              (Error{"The file “a” doesn’t exist.", "NSCocoaErrorDomain", 4}));
}

TEST_F(FileManager, Moves) {
    write("/Library/Themes/a", "one");
    write("/Library/Themes/b", "two");
    EXPECT_EQ(files_.moveItemAtPathToPath("/Library/Themes/a", "/Library/Themes/c"), std::nullopt);
    EXPECT_EQ(read("/Library/Themes/c"), "one");
    EXPECT_FALSE(std::filesystem::exists(at("/Library/Themes/a")));
    EXPECT_EQ(files_.moveItemAtPathToPath("/Library/Themes/c", "/Library/Themes/b"),
              (Error{"“c” couldn’t be moved to “Themes” because an item with the same name already "
                     "exists.",
                     "NSCocoaErrorDomain", 516}));
    EXPECT_EQ(files_.moveItemAtPathToPath("/Library/Themes/a", "/Library/Themes/d"),
              (Error{"“a” couldn’t be moved to “Themes” because either the former doesn’t exist, "
                     "or the folder containing the latter doesn’t exist.",
                     "NSCocoaErrorDomain", 4}));
}

TEST_F(FileManager, RemovesAFolderButNotWhatItsLinksPointTo) {
    write("/Library/kept/a", "kept");
    write("/Library/Themes/One/b", "");
    std::filesystem::create_symlink("../../kept", at("/Library/Themes/One/link"));
    EXPECT_EQ(files_.removeItemAtPath("/Library/Themes/One"), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(at("/Library/Themes/One")));
    EXPECT_EQ(read("/Library/kept/a"), "kept");
    EXPECT_EQ(files_.removeItemAtPath("/Library/Themes/One"),
              (Error{"“One” couldn’t be removed.", "NSCocoaErrorDomain", 4}));
}

TEST_F(FileManager, CreatesFilesAndReplacesThem) {
    EXPECT_TRUE(files_.createFileAtPathContents("/User/a", bytesOf(std::string("x\0y", 3))));
    EXPECT_EQ(read("/var/mobile/a"), std::string("x\0y", 3));
    EXPECT_TRUE(files_.createFileAtPathContents("/User/a", {}));
    EXPECT_EQ(read("/var/mobile/a"), "");
    EXPECT_TRUE(std::filesystem::exists(at("/var/mobile/a")));
    EXPECT_FALSE(files_.createFileAtPathContents("/User/none/a", bytesOf("x")));
    EXPECT_FALSE(files_.createFileAtPathContents("/User", bytesOf("x")));
}

TEST_F(FileManager, CreatesFoldersAndThoseAbove) {
    EXPECT_EQ(files_.createDirectoryAtPathWithIntermediateDirectories("/Library/Themes/a/b/c"),
              std::nullopt);
    EXPECT_TRUE(std::filesystem::is_directory(at("/Library/Themes/a/b/c")));
    EXPECT_EQ(files_.createDirectoryAtPathWithIntermediateDirectories("/Library/Themes/a/b/c"),
              std::nullopt);
    write("/Library/Themes/file", "");
    EXPECT_EQ(files_.createDirectoryAtPathWithIntermediateDirectories("/Library/Themes/file"),
              (Error{"The file “file” couldn’t be saved in the folder “Themes” because a file with "
                     "the same name already exists.",
                     "NSCocoaErrorDomain", 516}));
    EXPECT_EQ(files_.createDirectoryAtPathWithIntermediateDirectories("/Library/Themes/file/a"),
              (Error{"The file “file” couldn’t be saved in the folder “Themes”.",
                     "NSCocoaErrorDomain", 512}));
}

TEST_F(FileManager, WritesWholeFilesAndReadsThem) {
    EXPECT_TRUE(files_.writeToFileAtomically(bytesOf("new"), "/Library/Themes/a"));
    EXPECT_EQ(files_.dataWithContentsOfFile("/Library/Themes/a"), bytesOf("new"));
    EXPECT_FALSE(files_.writeToFileAtomically(bytesOf("new"), "/Library/None/a"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(at("/Library/Themes")), {}), 1);
    // The old contents stay with whoever has them open, or by another name.
    std::filesystem::create_hard_link(at("/Library/Themes/a"), at("/Library/Themes/b"));
    EXPECT_TRUE(files_.writeToFileAtomically(bytesOf("newer"), "/Library/Themes/a"));
    EXPECT_EQ(read("/Library/Themes/a"), "newer");
    EXPECT_EQ(read("/Library/Themes/b"), "new");
    write("/Library/Themes/empty", "");
    EXPECT_EQ(files_.dataWithContentsOfFile("/Library/Themes/empty"), Data());
}

TEST_F(FileManager, WhatCannotBeReadIsNothing) {
    EXPECT_EQ(files_.dataWithContentsOfFile("/Library/Themes/none"), std::nullopt);
    EXPECT_EQ(files_.dataWithContentsOfFile("/Library/Themes"), std::nullopt);
    EXPECT_EQ(files_.dataWithContentsOfFile(""), std::nullopt);
    EXPECT_EQ(logLines(), std::vector<std::string>());
}

TEST_F(FileManager, APathThatWouldEndEarlyLeadsNowhere) {
    write("/Library/Themes/a", "kept");
    const std::string path("/Library/Themes/a\0b", 19);
    const auto isRefused = [](const platform::Failure& failure) {
        return failure && failure->domain == "NSPOSIXErrorDomain" && failure->code == 22;
    };
    EXPECT_TRUE(isRefused(files_.removeItemAtPath(path)));
    EXPECT_TRUE(isRefused(files_.moveItemAtPathToPath(path, "/Library/Themes/c")));
    EXPECT_TRUE(isRefused(files_.moveItemAtPathToPath("/Library/Themes/a", kWithNul)));
    EXPECT_TRUE(isRefused(files_.copyItemAtPathToPath(path, "/Library/Themes/c")));
    EXPECT_TRUE(isRefused(files_.setPosixPermissionsOfItemAtPath(0, path)));
    EXPECT_TRUE(isRefused(files_.createDirectoryAtPathWithIntermediateDirectories(path)));
    EXPECT_FALSE(files_.createFileAtPathContents(path, bytesOf("x")));
    EXPECT_FALSE(files_.writeToFileAtomically(bytesOf("x"), path));
    EXPECT_EQ(files_.dataWithContentsOfFile(path), std::nullopt);
    EXPECT_EQ(read("/Library/Themes/a"), "kept");
}

using Bundles = PhoneTest;

constexpr const char* kClock = "/System/Library/Frameworks/Clock.framework";

TEST_F(Bundles, AreFoundByPath) {
    write(std::string(kClock) + "/Info.plist",
          "<?xml version=\"1.0\"?><plist><dict><key>CFBundleIdentifier</key>"
          "<string>org.example.clock</string></dict></plist>");
    const platform::BundleRef bundle = bundles().bundleWithPath(kClock);
    ASSERT_NE(bundle, nullptr);
    EXPECT_EQ(bundle->bundleIdentifier(), "org.example.clock");
    EXPECT_EQ(bundle->className(), "NSBundle");
}

TEST_F(Bundles, MayHaveNoIdentifier) {
    std::filesystem::create_directories(at("/Library/Themes/Bare.theme"));
    const platform::BundleRef bundle = bundles().bundleWithPath("/Library/Themes/Bare.theme");
    ASSERT_NE(bundle, nullptr);
    EXPECT_EQ(bundle->bundleIdentifier(), std::nullopt);
}

TEST_F(Bundles, NeedAFolder) {
    EXPECT_EQ(bundles().bundleWithPath("/Library/Themes/none"), nullptr);
    EXPECT_EQ(bundles().bundleWithPath(kWithNul), nullptr);
}

TEST_F(Bundles, ThatCannotBeLoadedAreNot) {
    EXPECT_FALSE(bundles().load(nullptr));
    std::filesystem::create_directories(at("/Library/Themes/Bare.theme"));
    EXPECT_FALSE(bundles().load(bundles().bundleWithPath("/Library/Themes/Bare.theme")));
}

TEST_F(Bundles, BringTheirClasses) {
    EXPECT_EQ(objcRuntime().getClass("LoadedWithItsBundle"), nullptr);
    const platform::BundleRef bundle = bundles().bundleWithPath(LOADABLE_BUNDLE);
    EXPECT_TRUE(bundles().load(bundle));
    EXPECT_NE(objcRuntime().getClass("LoadedWithItsBundle"), nullptr);
    EXPECT_TRUE(bundles().load(bundle));  // already there
}

using Dates = PhoneTest;

TEST_F(Dates, BeginWithNow) {
    const double before = [[NSDate date] timeIntervalSinceReferenceDate];
    const double now = dates().date().secondsSinceReferenceDate;
    EXPECT_GE(now, before);
    EXPECT_LT(now, before + 60);
}

TEST_F(Dates, HaveADayOfTheirMonth) {
    [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneForSecondsFromGMT:0]];
    EXPECT_EQ(dates().dayFromDate({0}), 1);
    EXPECT_EQ(dates().dayFromDate({-1}), 31);
    EXPECT_EQ(dates().dayFromDate({60.0 * 60 * 24 * 27.5}), 28);
}

// Whatever calendar the user has chosen.
TEST_F(Dates, HaveADayOfTheGregorianCalendar) {
    standins::setLocale("he_IL@calendar=hebrew");
    [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneForSecondsFromGMT:0]];
    NSDate* const date = [NSDate dateWithTimeIntervalSinceReferenceDate:0];
    // The first of January 2001 was the sixth of Tevet.
    ASSERT_EQ([[[NSCalendar currentCalendar] components:NSCalendarUnitDay fromDate:date] day], 6);
    EXPECT_EQ(dates().dayFromDate({0}), 1);
    EXPECT_EQ(dates().dayFromDate({60.0 * 60 * 24 * 27.5}), 28);
}

TEST_F(Dates, HaveAWeekdayInTheUsersLanguage) {
    [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneForSecondsFromGMT:0]];
    for (const auto& [locale, monday] : {std::pair{"en_US", "Monday"},
                                         {"de_DE", "Montag"},
                                         {"fr_FR", "lundi"},
                                         {"ja_JP", "月曜日"}}) {
        standins::setLocale(locale);
        EXPECT_EQ(dates().stringFromDate({0}, "EEEE"), monday) << locale;
    }
}

TEST_F(Dates, AreWrittenInAFormat) {
    [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneForSecondsFromGMT:0]];
    EXPECT_EQ(dates().stringFromDate({0}, "yyyy-MM-dd HH:mm"), "2001-01-01 00:00");
    EXPECT_EQ(dates().stringFromDate({0}, "d"), "1");
}

TEST_F(Dates, LeaveNothingBehind) {
    GSDebugAllocationActive(YES);
    static_cast<void>(dates().stringFromDate({0}, "d"));
    static_cast<void>(dates().dayFromDate({0}));
    drain();
    const int formatters = GSDebugAllocationCount([NSDateFormatter class]);
    const int calendars = GSDebugAllocationCount([NSCalendar class]);
    for (int i = 0; i < 10; ++i) {
        static_cast<void>(dates().stringFromDate({0}, "d"));
        static_cast<void>(dates().dayFromDate({0}));
    }
    drain();
    EXPECT_EQ(GSDebugAllocationCount([NSDateFormatter class]), formatters);
    EXPECT_EQ(GSDebugAllocationCount([NSCalendar class]), calendars);
}

using SystemLog = PhoneTest;

TEST_F(SystemLog, WritesTheLineAsItIs) {
    standins::clearLog();
    systemLog().write("100 %@ %s of \xE5\xAD\x97");
    systemLog().write("");
    EXPECT_EQ(logLines(), (std::vector<std::string>{"100 %@ %s of \xE5\xAD\x97", ""}));
}

}  // namespace
}  // namespace velmoranth::device
