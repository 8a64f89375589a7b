// Every key of the preferences file in one table: where the engine keeps its value, and what the
// command and the settings panel say of it. The engine takes its part of each row at compile time,
// so that the words of the others stay out of its binary.
#pragma once

#include "core/preferences.h"
#include "core/settings.h"

#include <array>
#include <cstddef>
#include <limits>
#include <string_view>

namespace velmoranth::core {

enum class SettingKind { yesOrNo, number, themes };

// Which numbers mean something, both ends included.
struct NumberRange {
    double least = -std::numeric_limits<float>::max();  // the engine keeps 32 bits
    double most = std::numeric_limits<float>::max();
};

inline constexpr NumberRange kFromZero{.least = 0};
inline constexpr NumberRange kZeroToOne{.least = 0, .most = 1};

// The member of the record that keeps a value. Without one the value is read as a yes or no and
// kept nowhere: changing it has no effect through the record.
struct SettingMember {
    constexpr SettingMember() = default;

    // NOLINTBEGIN(google-explicit-constructor): the table has the member itself.
    constexpr SettingMember(SharedValue<bool> Settings::* member) : flag(member) {}

    constexpr SettingMember(SharedValue<float> Settings::* member, NumberRange numbers = {})
        : number(member), range(numbers) {}

    // NOLINTEND(google-explicit-constructor)

    SharedValue<bool> Settings::* flag = nullptr;
    SharedValue<float> Settings::* number = nullptr;
    NumberRange range = {};  // of a number
};

// When a home screen that is running shows that a value has changed: a view that it has made is
// treated once, and what was taken from a view is not put back.
enum class Shows {
    atOnce,
    iconsAtOnce,   // and views after a respring
    atOnceWhenOn,  // switched off, after a respring
    afterRespring,
};

struct SettingRow {
    std::string_view key;
    // Its place, from 1, in the order in which loadSettings reads the keys. 0 for the list of
    // themes, which only the lookups read.
    std::size_t readAs = 0;
    SettingMember member;
    Shows shows = Shows::atOnce;
    std::string_view summary;
    std::string_view title = {};  // of its switch in the panel, if it has one
    // What is posted when it has changed: of themes where pictures are kept that have to be made
    // again.
    std::string_view notice = kPreferencesNotice;
    bool isOnInPreview = false;  // unless it is set there

    [[nodiscard]] constexpr SettingKind kind() const {
        return readAs == 0                ? SettingKind::themes
               : member.number != nullptr ? SettingKind::number
                                          : SettingKind::yesOrNo;
    }
};

// In the order in which they are shown.
inline constexpr std::array<SettingRow, 21> kSettingRows{{
    {"ActiveThemes", 0, SettingMember(), Shows::iconsAtOnce,
     "the themes in use, by the names of their folders; the first that has a picture wins", "",
     kThemeChangedNotice},
    {"enable", 3, &Settings::enable, Shows::atOnceWhenOn, "theming as a whole", "Theming",
     kThemeChangedNotice, true},
    {"enableIconMask", 4, &Settings::enableIconMask, Shows::atOnce, "the theme's icon mask",
     "Icon Mask", kThemeChangedNotice, true},
    {"enableOverlay", 5, &Settings::enableOverlay, Shows::atOnce, "the theme's overlay over icons",
     "Overlay", kThemeChangedNotice, true},
    {"enableShadow", 6, &Settings::enableShadow, Shows::afterRespring,
     "the theme's shadow picture behind every icon", "Shadow Image"},
    {"dynamicShadow", 7, &Settings::dynamicShadow, Shows::afterRespring,
     "a drawn shadow behind every icon, as the next six have it", "Dynamic Shadow"},
    {"shadowRadiusVal", 13, SettingMember(&Settings::shadowRadiusVal, kFromZero),
     Shows::afterRespring, "blur of the drawn shadow, points"},
    {"opacityVal", 14, SettingMember(&Settings::opacityVal, kZeroToOne), Shows::afterRespring,
     "opacity of the drawn shadow, 0 to 1"},
    {"xAxisVal", 15, &Settings::xAxisVal, Shows::afterRespring,
     "offset of the drawn shadow to the right, points"},
    {"yAxisVal", 16, &Settings::yAxisVal, Shows::afterRespring,
     "offset of the drawn shadow downwards, points"},
    {"shadowWidthVal", 17, &Settings::shadowWidthVal, Shows::afterRespring,
     "width of the drawn shadow, points"},
    {"shadowHeightVal", 18, &Settings::shadowHeightVal, Shows::afterRespring,
     "height of the drawn shadow, points"},
    {"removeDock", 8, &Settings::removeDock, Shows::atOnceWhenOn,
     "the theme's dock picture in place of the dock's own background", "Dock Background"},
    {"removeFolderBG", 9, &Settings::removeFolderBG, Shows::atOnce,
     "a tap anywhere on an open folder closes it", "Folder Backgrounds"},
    {"removeLabels", 10, &Settings::removeLabels, Shows::atOnceWhenOn, "icons without labels",
     "Icon Labels"},
    {"removeIconBadges", 11, &Settings::removeIconBadges, Shows::atOnceWhenOn,
     "icons without badges", "Badges"},
    {"removePageDots", 12, &Settings::removePageDots, Shows::atOnceWhenOn, "no page dots",
     "Page Dots"},
    {"enableLogging", 2, &Settings::enableLogging, Shows::atOnce,
     "write what is looked up to the log, too", "Logging"},
    {"enableImageDump", 1, SettingMember(), Shows::atOnce, "dump every image asked for",
     "Image Dump", kDevelopingNotice},
    {"iconReflection", 19, SettingMember(), Shows::atOnce,
     "kept for older preferences; changes nothing"},
    {"moreDockIcons", 20, SettingMember(), Shows::atOnce,
     "kept for older preferences; changes nothing"},
}};

}  // namespace velmoranth::core
