#include "core/settings.h"

#include "core/preferences.h"
#include "tests/core/forgotten_steps.h"
#include "tests/support/test_device.h"

#include <gtest/gtest.h>

#include <concepts>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::core::settings_test {
namespace {

using platform::Dictionary;
using platform::PropertyList;
using tests::TestDevice;

constexpr const char* kPath = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";

const std::vector<std::pair<const char*, SharedValue<bool> Settings::*>> kSwitches{
    {"enableLogging", &Settings::enableLogging},
    {"enable", &Settings::enable},
    {"enableIconMask", &Settings::enableIconMask},
    {"enableOverlay", &Settings::enableOverlay},
    {"enableShadow", &Settings::enableShadow},
    {"dynamicShadow", &Settings::dynamicShadow},
    {"removeDock", &Settings::removeDock},
    {"removeFolderBG", &Settings::removeFolderBG},
    {"removeLabels", &Settings::removeLabels},
    {"removeIconBadges", &Settings::removeIconBadges},
    {"removePageDots", &Settings::removePageDots},
};

const std::vector<std::pair<const char*, SharedValue<float> Settings::*>> kNumbers{
    {"shadowRadiusVal", &Settings::shadowRadiusVal},
    {"opacityVal", &Settings::opacityVal},
    {"xAxisVal", &Settings::xAxisVal},
    {"yAxisVal", &Settings::yAxisVal},
    {"shadowWidthVal", &Settings::shadowWidthVal},
    {"shadowHeightVal", &Settings::shadowHeightVal},
};

// Every key with a value that is not its zero.
Dictionary everything() {
    Dictionary all;
    for (const auto& entry : kSwitches) {
        all.insert_or_assign(entry.first, true);
    }
    double number = 1.5;
    for (const auto& entry : kNumbers) {
        all.insert_or_assign(entry.first, number);
        number += 1;
    }
    return all;
}

Settings everythingOn() {
    return {.enableLogging = true,
            .enable = true,
            .enableIconMask = true,
            .enableOverlay = true,
            .enableShadow = true,
            .dynamicShadow = true,
            .removeDock = true,
            .removeFolderBG = true,
            .removeLabels = true,
            .removeIconBadges = true,
            .removePageDots = true,
            .shadowRadiusVal = 1.5F,
            .opacityVal = 2.5F,
            .xAxisVal = 3.5F,
            .yAxisVal = 4.5F,
            .shadowWidthVal = 5.5F,
            .shadowHeightVal = 6.5F};
}

bool loaded(const TestDevice& device, const PropertyList& value) {
    device.preferences({{"enable", value}});
    loadSettings();
    return settings().enable;
}

float loadedNumber(const TestDevice& device, const PropertyList& value) {
    device.preferences({{"opacityVal", value}});
    loadSettings();
    return settings().opacityVal;
}

TEST(Settings, BeginOffAndEmpty) {
    const TestDevice device;
    EXPECT_EQ(settings(), Settings());
    const Settings& record = settings();
    for (const auto& [key, member] : kSwitches) {
        EXPECT_FALSE(record.*member) << key;
    }
    for (const auto& [key, member] : kNumbers) {
        EXPECT_EQ(record.*member, 0.0F) << key;
    }
    EXPECT_TRUE(SettingsStore().empty());
    EXPECT_TRUE(device.journal.lines().empty());
}

TEST(LoadSettings, ReadsTheOneFileOnce) {
    const TestDevice device;
    EXPECT_STREQ(kPreferencesPath, kPath);
    loadSettings();
    EXPECT_EQ(device.journal.lines(),
              (std::vector<std::string>{
                  std::string("+[NSDictionary dictionaryWithContentsOfFile:] ") + kPath}));
}

TEST(LoadSettings, WithoutFileAtFirstStartEverythingIsOff) {
    const TestDevice device;
    loadSettings();
    EXPECT_EQ(settings(), Settings());
    EXPECT_TRUE(SettingsStore().empty());
}

TEST(LoadSettings, EachSwitchHasItsMember) {
    const TestDevice device;
    for (const auto& [key, member] : kSwitches) {
        device.preferences({{key, true}});
        loadSettings();
        Settings expected;
        expected.*member = true;
        EXPECT_EQ(settings(), expected) << key;
    }
}

TEST(LoadSettings, EachNumberHasItsMember) {
    const TestDevice device;
    for (const auto& [key, member] : kNumbers) {
        device.preferences({{key, -2.25}});
        loadSettings();
        Settings expected;
        expected.*member = -2.25F;
        EXPECT_EQ(settings(), expected) << key;
    }
}

TEST(LoadSettings, ReadsAllKeysOfAFile) {
    const TestDevice device;
    device.preferences(everything());
    loadSettings();
    EXPECT_EQ(settings(), everythingOn());
    EXPECT_EQ(SettingsStore(), everything());
}

TEST(LoadSettings, AMissingKeyTurnsItsMemberOff) {
    const TestDevice device;
    for (const auto& [key, member] : kSwitches) {
        device.preferences(everything());
        loadSettings();
        Dictionary less = everything();
        less.erase(key);
        device.preferences(less);
        loadSettings();
        Settings expected = everythingOn();
        expected.*member = false;
        EXPECT_EQ(settings(), expected) << key;
    }
    for (const auto& [key, member] : kNumbers) {
        device.preferences(everything());
        loadSettings();
        Dictionary less = everything();
        less.erase(key);
        device.preferences(less);
        loadSettings();
        Settings expected = everythingOn();
        expected.*member = 0;
        EXPECT_EQ(settings(), expected) << key;
    }
}

TEST(LoadSettings, AFileWithoutEnableTurnsThemingOff) {
    const TestDevice device;
    ASSERT_TRUE(loaded(device, true));
    device.preferences({{"enableLogging", true}});
    loadSettings();
    EXPECT_FALSE(settings().enable);
    EXPECT_TRUE(settings().enableLogging);
}

TEST(LoadSettings, ADeletedFileEmptiesTheStoreAndKeepsTheRecord) {
    const TestDevice device;
    device.preferences(everything());
    loadSettings();
    device.remove(kPath);
    loadSettings();
    EXPECT_EQ(settings(), everythingOn());
    EXPECT_TRUE(SettingsStore().empty());
}

TEST(LoadSettings, AFileThatIsNoDictionaryIsAsGoodAsNone) {
    const TestDevice device;
    device.preferences(everything());
    const std::string whole = device.contents(kPath);
    const std::vector<std::string> broken{
        "",
        whole.substr(0, whole.size() / 2),
        "bplist00",
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><array><true/></array></plist>",
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><string>enable</string></plist>",
        "( enable, 1 )",
    };
    for (const std::string& text : broken) {
        SCOPED_TRACE(text);
        device.file(kPath, whole);
        loadSettings();
        ASSERT_FALSE(SettingsStore().empty());
        device.file(kPath, text);
        loadSettings();
        EXPECT_EQ(settings(), everythingOn());
        EXPECT_TRUE(SettingsStore().empty());
    }
    EXPECT_EQ(device.journal.count("log "), 0U);
}

TEST(LoadSettings, AFolderInTheFilesPlaceIsAsGoodAsNone) {
    const TestDevice device;
    ASSERT_TRUE(loaded(device, true));
    device.remove(kPath);
    device.folder(kPath);
    loadSettings();
    EXPECT_TRUE(settings().enable);
    EXPECT_TRUE(SettingsStore().empty());
    EXPECT_EQ(device.journal.count("log "), 0U);
}

TEST(LoadSettings, AnEmptyDictionaryIsAFile) {
    const TestDevice device;
    device.preferences(everything());
    loadSettings();
    device.preferences({});
    loadSettings();
    EXPECT_EQ(settings(), Settings());
    EXPECT_TRUE(SettingsStore().empty());
}

TEST(LoadSettings, TheStoreIsReplacedWhole) {
    const TestDevice device;
    const Dictionary first{
        {"enable", true}, {"ActiveThemes", PropertyList::Array{"A", "B"}}, {"of another", 7}};
    device.preferences(first);
    loadSettings();
    EXPECT_EQ(SettingsStore(), first);
    const Dictionary second{{"enableImageDump", true}};
    device.preferences(second);
    loadSettings();
    EXPECT_EQ(SettingsStore(), second);
}

TEST(LoadSettings, DiscardedKeysChangeNothing) {
    const TestDevice device;
    for (const char* const key : {"enableImageDump", "iconReflection", "moreDockIcons"}) {
        for (const bool value : {true, false}) {
            device.preferences({{key, value}});
            loadSettings();
            EXPECT_EQ(settings(), Settings()) << key;
            Dictionary all = everything();
            all.insert_or_assign(key, value);
            device.preferences(all);
            loadSettings();
            EXPECT_EQ(settings(), everythingOn()) << key;
        }
    }
    EXPECT_FALSE(lookupImageDump());
}

// Also those three whose values are kept nowhere.
TEST(LoadSettings, EveryKeyIsLookedUpAndConvertedInItsTurn) {
    TestDevice device;
    device.preferences({{"enable", true}, {"iconReflection", "yes"}, {"opacityVal", 2}});
    device.journal.clear();
    {
        const tests::WatchedSteps watched(device.journal);
        loadSettings();
    }
    std::vector<std::string> expected{
        std::string("+[NSDictionary dictionaryWithContentsOfFile:] ") + kPath};
    const auto key = [&expected](const std::string& name, const std::string& conversion) {
        expected.push_back("objectForKey " + name);
        expected.push_back(conversion);
    };
    const auto missing = [&key](const std::vector<std::string>& names, const std::string& how) {
        for (const std::string& name : names) {
            key(name, how + " (null)");
        }
    };
    missing({"enableImageDump", "enableLogging"}, "boolValue");
    key("enable", "boolValue 1");
    missing({"enableIconMask", "enableOverlay", "enableShadow", "dynamicShadow", "removeDock",
             "removeFolderBG", "removeLabels", "removeIconBadges", "removePageDots"},
            "boolValue");
    missing({"shadowRadiusVal"}, "floatValue");
    key("opacityVal", "floatValue 2");
    missing({"xAxisVal", "yAxisVal", "shadowWidthVal", "shadowHeightVal"}, "floatValue");
    key("iconReflection", "boolValue yes");
    missing({"moreDockIcons"}, "boolValue");
    EXPECT_EQ(device.journal.lines(), expected);
}

TEST(LoadSettings, SwitchesConvertAsThePlatformsBoolValue) {
    const TestDevice device;
    for (const PropertyList& value :
         {PropertyList(true), PropertyList(1), PropertyList(-5), PropertyList(0.5),
          PropertyList("YES"), PropertyList("1"), PropertyList(" true"), PropertyList("07")}) {
        EXPECT_TRUE(loaded(device, value)) << platform::description(value);
    }
    for (const PropertyList& value :
         {PropertyList(false), PropertyList(0), PropertyList(0.0), PropertyList("NO"),
          PropertyList("0"), PropertyList(""), PropertyList("off"),
          PropertyList(PropertyList::Array{true}), PropertyList(Dictionary{{"a", true}})}) {
        EXPECT_FALSE(loaded(device, value)) << platform::description(value);
    }
}

TEST(LoadSettings, NumbersConvertAsThePlatformsFloatValue) {
    const TestDevice device;
    EXPECT_EQ(loadedNumber(device, 7), 7.0F);
    EXPECT_EQ(loadedNumber(device, "3.25"), 3.25F);
    EXPECT_EQ(loadedNumber(device, " -1.5pt"), -1.5F);
    EXPECT_EQ(loadedNumber(device, "much"), 0.0F);
    EXPECT_EQ(loadedNumber(device, true), 1.0F);
    EXPECT_EQ(loadedNumber(device, PropertyList::Array{1.0}), 0.0F);
}

TEST(LoadSettings, NumbersHaveThirtyTwoBits) {
    static_assert(std::same_as<decltype(Settings::opacityVal), SharedValue<float>> &&
                  sizeof(SharedValue<float>) == 4);
    const TestDevice device;
    EXPECT_EQ(loadedNumber(device, 0.1), 0.1F);
    EXPECT_NE(static_cast<double>(settings().opacityVal), 0.1);
    EXPECT_EQ(loadedNumber(device, 16777217), 16777216.0F);
    EXPECT_EQ(loadedNumber(device, "1e39"), std::numeric_limits<float>::infinity());
}

TEST(LookupSwitches, BeginOff) {
    const TestDevice device;
    EXPECT_FALSE(lookupLogging());
    EXPECT_FALSE(lookupImageDump());
    refreshLookupSwitches();
    EXPECT_FALSE(lookupLogging());
    EXPECT_FALSE(lookupImageDump());
}

TEST(LookupSwitches, ComeFromTheFileAtEachRefresh) {
    const TestDevice device;
    device.preferences({{"enableLogging", true}});
    refreshLookupSwitches();
    EXPECT_TRUE(lookupLogging());
    EXPECT_FALSE(lookupImageDump());
    device.preferences({{"enableImageDump", "yes"}});
    refreshLookupSwitches();
    EXPECT_FALSE(lookupLogging());
    EXPECT_TRUE(lookupImageDump());
    EXPECT_EQ(device.journal.lines(),
              std::vector<std::string>(
                  2, std::string("+[NSDictionary dictionaryWithContentsOfFile:] ") + kPath));
}

TEST(LookupSwitches, KeepTheirValuesWhenTheFileIsGone) {
    const TestDevice device;
    device.preferences({{"enableLogging", true}, {"enableImageDump", true}});
    refreshLookupSwitches();
    device.remove(kPath);
    refreshLookupSwitches();
    refreshLookupLogging();
    EXPECT_TRUE(lookupLogging());
    EXPECT_TRUE(lookupImageDump());
    device.file(kPath, "( no, dictionary )");
    refreshLookupSwitches();
    EXPECT_TRUE(lookupLogging());
    EXPECT_TRUE(lookupImageDump());
}

TEST(LookupSwitches, TheSearchOfIconsReadsTheMasksSwitchTooAndForgetsIt) {
    TestDevice device;
    device.preferences({{"enableLogging", true}, {"enableIconMask", true}});
    device.journal.clear();
    const std::vector<std::string> both{
        std::string("+[NSDictionary dictionaryWithContentsOfFile:] ") + kPath,
        "objectForKey enableImageDump", "boolValue (null)", "objectForKey enableLogging",
        "boolValue 1"};
    std::vector<std::string> all = both;
    all.insert(all.end(), {"objectForKey enableIconMask", "boolValue 1"});
    const tests::WatchedSteps watched(device.journal);
    refreshIconLookupSwitches();
    EXPECT_EQ(device.journal.lines(), all);
    EXPECT_TRUE(lookupLogging());
    EXPECT_FALSE(settings().enableIconMask);
    device.journal.clear();
    refreshLookupSwitches();
    EXPECT_EQ(device.journal.lines(), both);
    device.remove(kPath);
    device.journal.clear();
    refreshIconLookupSwitches();
    EXPECT_EQ(device.journal.lines(), std::vector<std::string>{both.front()});
    EXPECT_TRUE(lookupLogging());
}

TEST(LookupSwitches, TheDumpRefreshesLoggingAlone) {
    const TestDevice device;
    device.preferences({{"enableLogging", true}, {"enableImageDump", true}});
    refreshLookupLogging();
    EXPECT_TRUE(lookupLogging());
    EXPECT_FALSE(lookupImageDump());
}

TEST(LookupSwitches, AreApartFromTheRecord) {
    const TestDevice device;
    device.preferences({{"enableLogging", true}, {"enableImageDump", true}});
    loadSettings();
    EXPECT_FALSE(lookupLogging());
    EXPECT_FALSE(lookupImageDump());
    device.preferences({});
    loadSettings();
    device.preferences({{"enableLogging", true}, {"enable", true}});
    refreshLookupSwitches();
    EXPECT_EQ(settings(), Settings());
    EXPECT_TRUE(SettingsStore().empty());
}

}  // namespace
}  // namespace velmoranth::core::settings_test
