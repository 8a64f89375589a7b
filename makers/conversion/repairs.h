// What a conversion does to a theme, and which findings of a check are gone once it is done: one
// table for both.
#pragma once

#include <span>
#include <string_view>

namespace velmoranth::makers {

enum class Repair {
    none,
    letterCase,       // a name gets the letters that are looked for
    iconName,         // an icon gets the name that is looked for
    otherIcon,        // another icon is taken for the same app
    smallerIcon,      // an icon is made smaller
    maskAlpha,        // a mask that cuts by its alpha becomes a gray one
    maskName,         // the mask without a scale is made
    imageName,        // an image gets the name that is looked for
    dotName,          // the toolkit's page dots become the home screen's
    folderPlate,      // the plate of folders goes where it is looked for
    settingsIcon,     // an icon of the settings goes where it is looked for
    appFolder,        // a folder named like an app becomes one named by its identifier
    noPicture,        // what is no picture is left out
    clutter,          // what archivers and file managers leave behind is left out
    leftover,         // what was left over from editing is left out
    newerSystem,      // what newer systems look for is left out
    noThemeFile,      // texts, scripts, wallpapers, the maker's own files are left out
    unreadable,       // what cannot be read is left out
    link,             // a link becomes the file that it leads to
    ownTheme,         // a theme inside of another one becomes one of its own
    similarIcon,      // an app gets the icon of one whose identifier resembles its own
    listText,         // a property list that does not parse is put right
    misspeltKey,      // a key of a calendar text is spelt as it is read
    color,            // a colour is written with six digits
    styleSheet,       // a style sheet becomes settings
    missingSettings,  // the settings of a calendar text are filled in
    textPlace,        // the day of the month goes below the weekday
    calendarMask,     // the theme's mask cuts the calendar's icon too
};

struct RepairRow {
    Repair repair;
    // Of the findings that it puts an end to, with blanks between.
    std::string_view codes;
    // Behind "velmoranth convert": "gives it the name that is looked for".
    std::string_view does;
    // In the report of a conversion; "" where the line has more to say.
    std::string_view why = {};
};

// In the order of the enumeration, without the first.
[[nodiscard]] std::span<const RepairRow> repairs();
[[nodiscard]] const RepairRow& rowOf(Repair repair);

// Null for a code that no repair puts an end to.
[[nodiscard]] const RepairRow* repairOf(std::string_view code);

}  // namespace velmoranth::makers
