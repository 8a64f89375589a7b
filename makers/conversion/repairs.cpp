#include "makers/conversion/repairs.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace velmoranth::makers {
namespace {

constexpr std::array kRepairs{
    RepairRow{Repair::letterCase, "name-case", "spells it in the letters that are looked for",
              "capital and small letters count"},
    RepairRow{Repair::iconName, "icon-name icon-place icon-in-bundle icon-case",
              "gives it the name that is looked for",
              "an app's icon is looked for under that name"},
    RepairRow{Repair::otherIcon, "icon-spare", "leaves out what is not taken"},
    RepairRow{Repair::smallerIcon, "icon-too-large", "makes it smaller"},
    RepairRow{Repair::maskAlpha, "mask-hides-nothing mask-hides-everything mask-alpha",
              "makes it a gray mask of its alpha, where that cuts",
              "black with alpha hides nothing; now white hides"},
    RepairRow{Repair::maskName, "", "makes the mask without a scale",
              "the mask is looked for under that name"},
    RepairRow{Repair::imageName, "image-name part-name scale-missing scaled-only",
              "gives it the name that is looked for", "the image is looked for under that name"},
    RepairRow{Repair::dotName, "", "makes the home screen's dots of the toolkit's",
              "dots are looked for under that name"},
    RepairRow{Repair::folderPlate, "image-place", "puts it where it is looked for",
              "the folders' plate is looked for there"},
    RepairRow{Repair::settingsIcon, "settings-icon",
              "puts it where the settings look for it as well",
              "the settings look for their icons there"},
    RepairRow{Repair::appFolder, "", "names the folder by the app's identifier",
              "images of an app are looked for there"},
    RepairRow{Repair::noPicture, "picture-empty picture-broken", "leaves it out"},
    RepairRow{Repair::clutter, "clutter", "leaves it out",
              "left behind by an archiver or a file manager"},
    RepairRow{Repair::leftover, "leftover", "leaves it out",
              "the name looks like one that was left over from editing"},
    RepairRow{Repair::newerSystem, "newer-system", "leaves it out",
              "icons for a dark or tinted screen are of newer systems"},
    RepairRow{Repair::noThemeFile, "no-theme-file", "leaves it out"},
    RepairRow{Repair::unreadable, "unreadable", "leaves it out"},
    RepairRow{Repair::link, "", "puts the file in the place of a link to it",
              "a link becomes the file that it leads to"},
    RepairRow{Repair::ownTheme, "nested-theme", "makes it a theme beside the other"},
    RepairRow{Repair::similarIcon, "similar-icon", "gives it the icon of the one it resembles"},
    RepairRow{Repair::listText, "list-broken", "puts it right, where one clear change does it"},
    RepairRow{Repair::misspeltKey, "calendar-key-misspelt", "spells it as it is read"},
    RepairRow{Repair::color, "calendar-color", "writes it with six digits"},
    RepairRow{Repair::styleSheet, "calendar-style-sheet", "makes the settings of it"},
    RepairRow{Repair::missingSettings, "calendar-missing calendar-text-missing",
              "fills in the settings that a device has"},
    RepairRow{Repair::textPlace, "calendar-overlap", "puts the day where a device has it"},
    RepairRow{Repair::calendarMask, "calendar-unmasked", "lets the mask cut the calendar too"},
};

bool hasWord(std::string_view words, std::string_view word) {
    while (!words.empty()) {
        const std::string_view first = words.substr(0, words.find(' '));
        if (first == word) {
            return true;
        }
        words.remove_prefix(std::min(words.size(), first.size() + 1));
    }
    return false;
}

}  // namespace

std::span<const RepairRow> repairs() {
    return kRepairs;
}

const RepairRow& rowOf(Repair repair) {
    return kRepairs.at(static_cast<std::size_t>(repair) - 1);
}

const RepairRow* repairOf(std::string_view code) {
    const auto* const found = std::ranges::find_if(
        kRepairs, [&](const RepairRow& row) { return hasWord(row.codes, code); });
    return found == kRepairs.end() ? nullptr : found;
}

}  // namespace velmoranth::makers
