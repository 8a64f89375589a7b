// Installing: which rows, in which order, into which class, with what in their slots.
#include "core/hook_table.h"
#include "core/settings.h"
#include "tests/support/replaced_services.h"
#include "tests/support/test_device.h"
#include "theme/themed_icons.h"

#include "expected_rows.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::core::hook_installation_test {
namespace {

using platform::ClassRef;
using platform::Implementation;
using Lines = std::vector<std::string>;

struct Receiver final : platform::Object {
    [[nodiscard]] std::string className() const override { return "Receiver"; }
};

Implementation numbered(int number) {
    return Implementation(
        std::function<int(platform::Object&)>([number](platform::Object&) { return number; }));
}

// What an implementation made by numbered() gives; 0 when there is none.
int numberOf(const Implementation& implementation) {
    Receiver receiver;
    const auto* const function = implementation.as<int(platform::Object&)>();
    return function == nullptr ? 0 : (*function)(receiver);
}

// A process with every class and method of the table. `methods` makes the platform's method of a
// row.
class WholePlatform : public ::testing::Test {
  protected:
    void addPlatform(const std::function<Implementation(const HookRow&)>& method,
                     const std::string& without = "") {
        for (const HookRow& row : HookTable::rows()) {
            if (row.targetClass == without) {
                continue;
            }
            device.runtime.addClass(std::string(row.targetClass));
            device.runtime.addMethod(targetOf(row), std::string(row.selector), method(row), "");
        }
    }

    // The platform's method of row n gives -n; of two rows for one method, that of the first.
    void addNumberedPlatform(const std::string& without = "") {
        addPlatform([](const HookRow& row) { return numbered(-row.number); }, without);
    }

    // Methods of the types that the replacements have.
    void addTypedPlatform() {
        addPlatform([](const HookRow& row) {
            return row.replacement.forwarding([] { return Implementation(); });
        });
    }

    ClassRef targetOf(const HookRow& row) {
        const ClassRef cls = device.runtime.getClass(std::string(row.targetClass));
        return row.side == HookSide::classSide ? device.runtime.getMetaclass(cls) : cls;
    }

    Implementation methodOf(const HookRow& row) {
        return device.runtime.methodOf(targetOf(row), std::string(row.selector));
    }

    // The table, with replacements that give their rows' numbers.
    static std::span<HookRow> numberedRows() {
        for (HookRow& row : HookTable::rows()) {
            row.replacement = numbered(row.number);
            row.saved = {};
        }
        return HookTable::rows();
    }

    static Lines expectedHooks(bool ios12, bool ios13) {
        Lines lines;
        for (const ExpectedRow& row : kExpectedRows) {
            if (row.gate == HookGate::always || (row.gate == HookGate::ios12 && ios12) ||
                (row.gate == HookGate::ios13 && ios13)) {
                lines.push_back(hookLine(row));
            }
        }
        return lines;
    }

    // The lines of hooks that name the class.
    Lines linesNaming(const std::string& className) const {
        Lines lines = device.journal.linesWith("MSHookMessageEx ");
        std::erase_if(lines, [&](const std::string& line) {
            return line.find("[" + className + " ") == std::string::npos;
        });
        return lines;
    }

    // Installs the whole table for that version.
    std::span<const HookRow> installNumbered(double version) {
        const std::span<HookRow> rows = numberedRows();
        device.system.number = version;
        HookTable::install();
        return rows;
    }

    tests::TestDevice device;
};

using HookInstallation = WholePlatform;

TEST_F(HookInstallation, Ios12InstallsItsThreeRowsAfterTheAlwaysRows) {
    addNumberedPlatform();
    installNumbered(1575.23);
    const Lines hooks = device.journal.linesWith("MSHookMessageEx ");
    EXPECT_EQ(hooks.size(), 52U);
    EXPECT_EQ(hooks, expectedHooks(true, false));
}

TEST_F(HookInstallation, Ios13InstallsItsTwoRowsAfterTheAlwaysRows) {
    addNumberedPlatform();
    installNumbered(1665.15);
    const Lines hooks = device.journal.linesWith("MSHookMessageEx ");
    EXPECT_EQ(hooks.size(), 51U);
    EXPECT_EQ(hooks, expectedHooks(false, true));
}

TEST_F(HookInstallation, BetweenTheThresholdsOnlyTheAlwaysRows) {
    addNumberedPlatform();
    const Lines always = expectedHooks(false, false);
    EXPECT_EQ(always.size(), 49U);
    for (const double version :
         {std::nextafter(1575.23, 2000.0), 1600.0, std::nextafter(1665.15, 0.0)}) {
        device.journal.clear();
        installNumbered(version);
        EXPECT_EQ(device.journal.linesWith("MSHookMessageEx "), always) << version;
    }
}

TEST_F(HookInstallation, EachRowKeepsThePlatformsMethodInItsOwnSlot) {
    addNumberedPlatform();
    const std::span<const HookRow> rows = installNumbered(1575.23);
    for (const HookRow& row : rows) {
        SCOPED_TRACE(row.number);
        const bool isOpen = row.gate != HookGate::ios13;
        EXPECT_EQ(row.isInstalled(), isOpen);
        EXPECT_EQ(numberOf(row.saved), isOpen ? -row.number : 0);
        if (isOpen) {
            EXPECT_EQ(numberOf(methodOf(row)), row.number);
        }
    }
}

TEST_F(HookInstallation, TheIos13RowsOfASharedMethodFillTheirSlotsAlone) {
    addNumberedPlatform();
    const std::span<const HookRow> rows = installNumbered(1674.102);
    EXPECT_EQ(numberOf(rows[52].saved), -50);
    EXPECT_EQ(numberOf(rows[53].saved), -52);
    EXPECT_EQ(numberOf(methodOf(rows[52])), 53);
    EXPECT_EQ(numberOf(methodOf(rows[53])), 54);
    for (const std::size_t number : {50U, 51U, 52U}) {
        EXPECT_FALSE(rows[number - 1].isInstalled()) << number;
    }
}

TEST_F(HookInstallation, TheTwoBadgeRowsGoToClassAndMetaclass) {
    addNumberedPlatform();
    installNumbered(1600);
    const ClassRef cls = device.runtime.getClass("SBIconBadgeView");
    const ClassRef metaclass = device.runtime.getMetaclass(cls);
    EXPECT_EQ(numberOf(device.runtime.methodOf(cls, "layoutSubviews")), 19);
    EXPECT_EQ(numberOf(device.runtime.methodOf(metaclass, "_maxTextWidth")), 20);
    EXPECT_FALSE(device.runtime.hasOwnMethod(cls, "_maxTextWidth"));
    EXPECT_FALSE(device.runtime.hasOwnMethod(metaclass, "layoutSubviews"));
    EXPECT_EQ(linesNaming("SBIconBadgeView"),
              (Lines{"MSHookMessageEx -[SBIconBadgeView layoutSubviews]",
                     "MSHookMessageEx +[SBIconBadgeView _maxTextWidth]"}));
}

TEST_F(HookInstallation, LooksEachClassUpOnceWithinASet) {
    addNumberedPlatform();
    installNumbered(1600);
    const Lines lines = device.journal.lines();
    for (const ExpectedRow& row : kExpectedRows) {
        if (row.gate == HookGate::always) {
            EXPECT_EQ(std::count(lines.begin(), lines.end(),
                                 std::string("objc_getClass ") + row.targetClass),
                      1)
                << row.number;
        }
    }
    EXPECT_EQ(device.journal.count("objc_getClass SBDockView"), 0U);
    EXPECT_EQ(device.journal.count("objc_getClass SBApplicationIcon"), 0U);
}

TEST_F(HookInstallation, AMissingClassInstallsNothingAndTheRestGoesOn) {
    addNumberedPlatform("SBFloatyFolderView");
    const std::span<const HookRow> rows = installNumbered(1575.23);
    for (const HookRow& row : rows) {
        const bool isMissing = row.targetClass == "SBFloatyFolderView";
        EXPECT_EQ(row.isInstalled(), !isMissing && row.gate != HookGate::ios13) << row.number;
    }
    // Handed on all the same, in their places, after one look-up.
    EXPECT_EQ(device.journal.linesWith("MSHookMessageEx nil"),
              (Lines{"MSHookMessageEx nil _showsTitle",
                     "MSHookMessageEx nil initWithFolder:orientation:viewMap:context:",
                     "MSHookMessageEx nil _tapToCloseGestureRecognizer:shouldReceiveTouch:"}));
    EXPECT_EQ(device.journal.count("MSHookMessageEx "), 52U);
    EXPECT_EQ(device.journal.linesWith("MSHookMessageEx ")[8], "MSHookMessageEx nil _showsTitle");
    EXPECT_EQ(device.journal.count("objc_getClass SBFloatyFolderView"), 1U);
    EXPECT_EQ(device.journal.count("log "), 0U);
}

TEST_F(HookInstallation, AMissingClassOfClassSideRowsInstallsNothing) {
    addNumberedPlatform("UIImage");
    const std::span<const HookRow> rows = installNumbered(1665.15);
    EXPECT_FALSE(rows[30].isInstalled());
    EXPECT_FALSE(rows[52].isInstalled());
    EXPECT_TRUE(rows[53].isInstalled());
    EXPECT_EQ(device.journal.count("MSHookMessageEx nil"), 9U);
}

TEST_F(HookInstallation, AMissingSelectorInstallsNothingAndTheRestGoesOn) {
    device.runtime.addClass("SBIconImageView");
    device.runtime.addMethod(device.runtime.getClass("SBIconImageView"), "darkeningOverlayImage",
                             numbered(-3), "");
    const std::span<const HookRow> rows = installNumbered(1600);
    EXPECT_FALSE(rows[1].isInstalled());
    EXPECT_EQ(numberOf(rows[2].saved), -3);
}

const std::string kReadVersion = "kCFCoreFoundationVersionNumber";

// A system whose version is different at each reading.
struct ChangingSystem final : platform::CoreFoundation {
    explicit ChangingSystem(std::vector<double> numbers) : numbers_(std::move(numbers)) {}

    double versionNumber() override { return numbers_.at(readings_++); }

    bool isSystemVersionAtLeast(int /*major*/, int /*minor*/, int /*patch*/) override {
        return false;
    }

  private:
    std::vector<double> numbers_;
    std::size_t readings_ = 0;
};

TEST_F(HookInstallation, ReadsTheVersionBeforeEachGatedSet) {
    addNumberedPlatform();
    numberedRows();
    // Each set goes by its own reading.
    ChangingSystem system({1575.23, 1665.15});
    device.useServices({.coreFoundation = &system});
    HookTable::install();
    Lines expected = expectedHooks(true, true);
    expected.insert(expected.begin() + 49, kReadVersion);
    expected.insert(expected.begin() + 53, kReadVersion);
    Lines lines = device.journal.lines();
    std::erase_if(lines, [](const std::string& line) {
        return line != kReadVersion && !line.starts_with("MSHookMessageEx ");
    });
    EXPECT_EQ(lines, expected);
}

TEST_F(HookInstallation, AddsAMethodBetweenTheTenthRowAndTheEleventh) {
    addNumberedPlatform();
    installNumbered(1575.23);
    const Lines& lines = device.journal.lines();
    const auto added = std::find(lines.begin(), lines.end(),
                                 "class_addMethod SBFloatyFolderView handleTap \"v@:\"");
    ASSERT_NE(added, lines.end());
    ASSERT_NE(added, lines.begin());
    EXPECT_EQ(*(added - 1), hookLine(kExpectedRows[9]));
    EXPECT_EQ(*(added + 1), hookLine(kExpectedRows[10]));
    EXPECT_EQ(device.journal.count("class_addMethod "), 1U);
    EXPECT_EQ(device.journal.count("objc_getClass SBFloatyFolderView"), 1U);
    EXPECT_TRUE(
        device.runtime.hasOwnMethod(device.runtime.getClass("SBFloatyFolderView"), "handleTap"));
}

TEST_F(HookInstallation, AddsNothingToAMissingClass) {
    addNumberedPlatform("SBFloatyFolderView");
    const std::span<const HookRow> rows = installNumbered(1600);
    EXPECT_EQ(device.journal.linesWith("class_addMethod "),
              (Lines{"class_addMethod nil handleTap \"v@:\""}));
    EXPECT_TRUE(rows[48].isInstalled());
}

using HookTableInstall = WholePlatform;

TEST_F(HookTableInstall, ReadsTheVersionTwiceAndLogsNothing) {
    addTypedPlatform();
    HookTable::install();
    EXPECT_EQ(device.system.versionNumberReads, 2);
    EXPECT_EQ(device.journal.count("log "), 0U);
    EXPECT_EQ(device.journal.count("warning: "), 0U);
}

TEST_F(HookTableInstall, InstallsTheRowsOfTheRunningSystem) {
    addTypedPlatform();
    std::vector<Implementation> before;
    for (const HookRow& row : HookTable::rows()) {
        before.push_back(methodOf(row));
    }
    device.system.number = 1575.23;
    HookTable::install();
    Lines expected;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const HookRow& row = HookTable::rows()[i];
        SCOPED_TRACE(row.number);
        const bool isOpen = row.gate != HookGate::ios13;
        EXPECT_EQ(row.isInstalled(), isOpen);
        if (isOpen) {
            expected.push_back(hookLine(kExpectedRows[i]));
            EXPECT_TRUE(methodOf(row) == row.replacement);
            EXPECT_TRUE(row.saved == before[i]);
        }
    }
    EXPECT_EQ(device.journal.linesWith("MSHookMessageEx "), expected);
}

TEST_F(HookTableInstall, AddsTheTapThatClosesAFolderAfterItsRow) {
    addTypedPlatform();
    const ClassRef folder = device.runtime.getClass("SBFloatyFolderView");
    EXPECT_FALSE(device.runtime.methodOf(folder, "handleTap"));
    device.journal.clear();
    HookTable::install();
    EXPECT_TRUE(device.runtime.hasOwnMethod(folder, "handleTap"));
    const Lines& lines = device.journal.lines();
    const auto added = std::find(lines.begin(), lines.end(),
                                 "class_addMethod SBFloatyFolderView handleTap \"v@:\"");
    ASSERT_NE(added, lines.end());
    ASSERT_NE(added, lines.begin());
    EXPECT_EQ(*(added - 1), hookLine(kExpectedRows[9]));
    EXPECT_EQ(*(added + 1), hookLine(kExpectedRows[10]));
    EXPECT_EQ(device.journal.count("class_addMethod "), 1U);
}

TEST_F(HookTableInstall, TheThresholdsDecideOnTheRunningSystem) {
    addTypedPlatform();
    device.system.number = std::nextafter(1575.23, 2000.0);
    HookTable::install();
    device.system.number = std::nextafter(1665.15, 0.0);
    HookTable::install();
    for (const std::size_t number : {50U, 51U, 52U, 53U, 54U}) {
        EXPECT_FALSE(HookTable::rows()[number - 1].isInstalled()) << number;
    }
    EXPECT_TRUE(HookTable::rows()[43].isInstalled());
    device.system.number = 1665.15;
    HookTable::install();
    EXPECT_TRUE(HookTable::rows()[52].isInstalled());
    EXPECT_FALSE(HookTable::rows()[49].isInstalled());
}

TEST_F(HookTableInstall, AReplacementReachesItsOwnRowsPlatformMethod) {
    int calls = 0;
    device.runtime.addClass("UIImage");
    device.runtime.addClassMethod(
        "UIImage", "_applicationIconImageForBundleIdentifier:format:scale:",
        std::function<platform::ImageRef(platform::Class&, platform::NullableString, int, double)>(
            [&](platform::Class& self, const platform::NullableString& identifier, int format,
                double scale) {
                ++calls;
                EXPECT_EQ(self.name(), "UIImage");
                EXPECT_EQ(identifier, "com.a");
                EXPECT_EQ(format, 2);
                EXPECT_EQ(scale, 3);
                return device.image(tests::solid(6, 6, {1, 2, 3}));
            }));
    device.system.number = 1575.23;
    HookTable::install();
    const auto image =
        device.runtime.sendToClass<platform::ImageRef, platform::NullableString, int, double>(
            "UIImage", "_applicationIconImageForBundleIdentifier:format:scale:", "com.a", 2, 3.0);
    EXPECT_GT(calls, 0);
    EXPECT_EQ(tests::drawnPixels(image), tests::solid(6, 6, {1, 2, 3}));
}

// A process with a gray icon for every app, and one theme with red icons for all that are asked
// for.
class InstalledReplacements : public ::testing::Test {
  protected:
    struct Icon final : platform::SBIcon {
        [[nodiscard]] std::string className() const override { return "SBIcon"; }

        [[nodiscard]] platform::NullableString leafIdentifier() const override { return kCalendar; }

        [[nodiscard]] platform::NullableString nodeIdentifier() const override { return kCalendar; }

        [[nodiscard]] platform::NullableString uniqueIdentifier() const override {
            return kCalendar;
        }
    };

    struct Cache final : platform::SBHIconImageCache {
        [[nodiscard]] std::string className() const override { return "SBHIconImageCache"; }
    };

    void SetUp() override {
        device.activeThemes({"T"}, {{"enable", true}});
        loadSettings();
        device.png(std::string("/Library/Themes/T/IconBundles/") + kCalendar + "-large.png", kRed);
        device.runtime.addClass("UIImage");
        device.runtime.addClassMethod(
            "UIImage", kApplicationIcon,
            std::function<ImageRef(platform::Class&, NullableString, int, double)>(
                [this](platform::Class&, const NullableString&, int, double) {
                    return device.image(kGray);
                }));
        device.runtime.addClass("SBHIconImageCache");
        for (const char* const selector : {"imageForIcon:", "unmaskedImageForIcon:"}) {
            device.runtime.addInstanceMethod(
                "SBHIconImageCache", selector,
                std::function<ImageRef(platform::SBHIconImageCache&, platform::SBIconRef)>(
                    [this](platform::SBHIconImageCache&, const platform::SBIconRef&) {
                        return device.image(kGray);
                    }));
        }
    }

    tests::Pixels applicationIcon() {
        return tests::drawnPixels(device.runtime.sendToClass<ImageRef, NullableString, int, double>(
            "UIImage", kApplicationIcon, kCalendar, 2, 3.0));
    }

    tests::Pixels cached(const char* selector) {
        Cache cache;
        return tests::drawnPixels(device.runtime.send<ImageRef, platform::SBIconRef>(
            cache, selector, std::make_shared<Icon>()));
    }

    using ImageRef = platform::ImageRef;
    using NullableString = platform::NullableString;

    static constexpr const char* kApplicationIcon =
        "_applicationIconImageForBundleIdentifier:format:scale:";
    static constexpr const char* kCalendar = "com.apple.mobilecal";
    const tests::Pixels kGray = tests::solid(6, 6, {90, 90, 90});
    const tests::Pixels kRed = tests::solid(6, 6, {255, 0, 0});
    tests::TestDevice device;
};

TEST_F(InstalledReplacements, OnIos12TheAppIconIsKeptUnderItsFormat) {
    device.system.number = 1575.23;
    HookTable::install();
    EXPECT_EQ(applicationIcon(), kRed);
    EXPECT_EQ(theme::ThemedIconIdentifiers(), (Lines{"com.apple.mobilecal.2"}));
}

TEST_F(InstalledReplacements, OnIos13TheAppIconIsKeptNowhere) {
    device.system.number = 1665.15;
    HookTable::install();
    EXPECT_EQ(applicationIcon(), kRed);
    EXPECT_FALSE(theme::themedIconsExist());
}

TEST_F(InstalledReplacements, BetweenThemTheAppIconIsThePlatforms) {
    device.system.number = 1600;
    HookTable::install();
    EXPECT_EQ(applicationIcon(), kGray);
}

TEST_F(InstalledReplacements, TheIconCachesTwoMethodsHaveTheirOwn) {
    HookTable::install();
    // Only the first leaves the calendar to its own drawing.
    EXPECT_EQ(cached("imageForIcon:"), kGray);
    EXPECT_EQ(cached("unmaskedImageForIcon:"), kRed);
}

}  // namespace
}  // namespace velmoranth::core::hook_installation_test
