#include "core/change_observers.h"

#include "core/settings.h"
#include "tests/support/test_device.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace velmoranth::core::change_observers_test {
namespace {

using Lines = std::vector<std::string>;
using tests::TestDevice;

constexpr const char* kPrefs = "com.qor.velmoranthprefs.prefs";
constexpr const char* kTheme = "com.qor.velmoranththemechanged.prefs";
constexpr const char* kDeveloping = "com.qor.velmoranthdevelopingprefs.prefs";
constexpr const char* kCompile = "com.qor.velmoranthcompileassets.prefs";
const std::string kRead =
    "+[NSDictionary dictionaryWithContentsOfFile:] "
    "/User/Library/Preferences/com.qor.velmoranthprefs.plist";

// The line of the observer with that label, for that notification.
std::string noticeLine(const std::string& label, const std::string& name) {
    return "log VELMORANTH " + std::string(46, '*') + label + " CFStringRef:" + name + " " +
           std::string(44, '*');
}

void setLogging(const TestDevice& device, bool on) {
    device.preferences({{"enableLogging", on}});
    loadSettings();
}

class ChangeObservers : public ::testing::Test {
  protected:
    // Registered, with logging on or off in the record; then the journal begins.
    void begin(bool logging) {
        setLogging(device, logging);
        registerChangeObservers();
        device.journal.clear();
    }

    TestDevice device;
};

TEST_F(ChangeObservers, AreRegisteredInOrder) {
    registerChangeObservers();
    EXPECT_EQ(
        device.journal.lines(),
        (Lines{
            "CFNotificationCenterAddObserver nil \"com.qor.velmoranthprefs.prefs\" nil 2",
            "CFNotificationCenterAddObserver nil \"com.qor.velmoranththemechanged.prefs\" nil 2",
            "CFNotificationCenterAddObserver nil \"com.qor.velmoranthdevelopingprefs.prefs\" nil 2",
            "CFNotificationCenterAddObserver nil \"com.qor.velmoranthcompileassets.prefs\" nil "
            "2"}));
}

TEST_F(ChangeObservers, ThePreferencesNoticeLogsThenReloads) {
    begin(true);
    ASSERT_TRUE(device.notifications.post(kPrefs));
    EXPECT_EQ(device.journal.lines(),
              tests::calledBack(kPrefs, {noticeLine("PreferencesChangedCallback", kPrefs), kRead}));
}

TEST_F(ChangeObservers, TheThemeNoticeLogsThenReloads) {
    begin(true);
    ASSERT_TRUE(device.notifications.post(kTheme));
    EXPECT_EQ(device.journal.lines(),
              tests::calledBack(kTheme, {noticeLine("Theme PreferencesChangedCallback", kTheme),
                                         kRead, "log Velmoranth UpdateIcons "}));
}

TEST_F(ChangeObservers, TheDevelopingNoticeLogsAlone) {
    begin(true);
    device.preferences({{"enable", true}, {"enableImageDump", true}});
    const Settings before = settings();
    const platform::Dictionary store = SettingsStore();
    ASSERT_TRUE(device.notifications.post(kDeveloping));
    EXPECT_EQ(device.journal.lines(),
              tests::calledBack(kDeveloping,
                                {noticeLine("DevelopingPrefsChangedNotification", kDeveloping)}));
    EXPECT_EQ(settings(), before);
    EXPECT_EQ(SettingsStore(), store);
    EXPECT_FALSE(lookupImageDump());
}

TEST_F(ChangeObservers, TheCompileNoticeLogsAloneWithABlankBeforeItsLabel) {
    begin(true);
    device.preferences({{"enable", true}});
    const Settings before = settings();
    ASSERT_TRUE(device.notifications.post(kCompile));
    EXPECT_EQ(device.journal.lines(),
              tests::calledBack(kCompile, {noticeLine(" CompileAssetsCallback", kCompile)}));
    EXPECT_EQ(settings(), before);
}

TEST_F(ChangeObservers, AreSilentWhileLoggingIsOff) {
    begin(false);
    device.notifications.post(kPrefs);
    device.notifications.post(kDeveloping);
    device.notifications.post(kCompile);
    Lines expected = tests::calledBack(kPrefs, {kRead});
    expected.push_back(std::string("called ") + kDeveloping);
    expected.push_back(std::string("called ") + kCompile);
    EXPECT_EQ(device.journal.lines(), expected);
    device.journal.clear();
    device.notifications.post(kTheme);
    EXPECT_EQ(device.journal.lines(),
              tests::calledBack(kTheme, {kRead, "log Velmoranth UpdateIcons "}));
}

TEST_F(ChangeObservers, TheNoticeThatTurnsLoggingOffIsLogged) {
    for (const auto& [name, label] : {std::pair{kPrefs, "PreferencesChangedCallback"},
                                      std::pair{kTheme, "Theme PreferencesChangedCallback"}}) {
        begin(true);
        device.preferences({{"enableLogging", false}, {"enable", true}});
        device.notifications.post(name);
        EXPECT_EQ(device.journal.lines().at(1), "  " + noticeLine(label, name));
        EXPECT_EQ(device.journal.lines().at(2), "  " + kRead);
        EXPECT_FALSE(settings().enableLogging);
        EXPECT_TRUE(settings().enable);
    }
}

TEST_F(ChangeObservers, TheNoticeThatTurnsLoggingOnIsNot) {
    for (const char* const name : {kPrefs, kTheme}) {
        setLogging(device, false);
        if (name == kPrefs) {
            registerChangeObservers();
        }
        device.preferences({{"enableLogging", true}});
        device.journal.clear();
        device.notifications.post(name);
        EXPECT_EQ(device.journal.lines().at(1), "  " + kRead);
        EXPECT_EQ(device.journal.count("log VELMORANTH"), 0U);
        EXPECT_TRUE(settings().enableLogging);
    }
}

TEST_F(ChangeObservers, ADeletedFileKeepsTheRecordThroughANotice) {
    begin(true);
    device.remove("/User/Library/Preferences/com.qor.velmoranthprefs.plist");
    device.notifications.post(kPrefs);
    EXPECT_TRUE(settings().enableLogging);
    EXPECT_TRUE(SettingsStore().empty());
}

TEST_F(ChangeObservers, WriteTheNameThatTheyAreGiven) {
    setLogging(device, true);
    device.journal.clear();
    PreferencesChangedCallback(device.notifications, nullptr, "one", nullptr, nullptr);
    DevelopingPrefsChangedNotification(device.notifications, nullptr, "two", nullptr, nullptr);
    CompileAssetsCallback(device.notifications, nullptr, "three %@", nullptr, nullptr);
    EXPECT_EQ(device.journal.linesWith("log "),
              (Lines{noticeLine("PreferencesChangedCallback", "one"),
                     noticeLine("DevelopingPrefsChangedNotification", "two"),
                     noticeLine(" CompileAssetsCallback", "three %@")}));
}

}  // namespace
}  // namespace velmoranth::core::change_observers_test
