#include "makers/conversion/image_rules.h"

#include "makers/conversion/names.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace velmoranth::makers {
namespace {

constexpr std::string_view kHomeScreen = "Bundles/com.apple.springboard";
constexpr std::string_view kToolkit = "UIImages";

// A name that is looked for exactly so, and the family of scaled pictures that it is made of.
struct Row {
    std::string_view folder;
    std::string_view base;
    std::string_view target;  // with its folder
};

constexpr std::array<Row, 18> kRows{{
    {"AnemoneEffects", "iPhoneOverlay", "AnemoneEffects/iPhoneOverlay.png"},
    {"AnemoneEffects", "iPadOverlay", "AnemoneEffects/iPadOverlay.png"},
    {"AnemoneEffects", "iPhoneShadow", "AnemoneEffects/iPhoneShadow.png"},
    {"AnemoneEffects", "iPadShadow", "AnemoneEffects/iPadShadow.png"},
    {"Velmoranth", "iPhoneOverlay", "Velmoranth/iPhoneOverlay.png"},
    {"Velmoranth", "iPadOverlay", "Velmoranth/iPadOverlay.png"},
    {"Velmoranth", "iPhoneShadow", "Velmoranth/iPhoneShadow.png"},
    {kHomeScreen, "ANEMFolderIconBG-Apple",
     "Bundles/com.apple.springboard/ANEMFolderIconBG-Apple.png"},
    {kHomeScreen, "ANEMFolderIconBG", "Bundles/com.apple.springboard/ANEMFolderIconBG.png"},
    {kHomeScreen, "ANEMFolderBackground", "Bundles/com.apple.springboard/ANEMFolderBackground.png"},
    {kHomeScreen, "SBBadgeBG", "Bundles/com.apple.springboard/SBBadgeBG.png"},
    {kHomeScreen, "SBDockBG", "Bundles/com.apple.springboard/SBDockBG@2x.png"},
    {kHomeScreen, "SBPageDotCurrent", "Bundles/com.apple.springboard/SBPageDotCurrent.png"},
    {kHomeScreen, "SBPageDot", "Bundles/com.apple.springboard/SBPageDot.png"},
    {kHomeScreen, "Spotlight_Pages", "Bundles/com.apple.springboard/Spotlight_Pages.png"},
    {"ANEMPageDots", "Dot_Current", "ANEMPageDots/Dot_Current.png"},
    {"ANEMPageDots", "Dot_Pages", "ANEMPageDots/Dot_Pages.png"},
    {"ANEMPageDots", "Spotlight_Pages", "ANEMPageDots/Spotlight_Pages.png"},
}};

// Dots that the toolkit has under other names. Not taken where the theme has a dot of its own.
struct Dot {
    std::string_view base;  // of the toolkit's
    std::string_view target;
    std::string_view other;
};

constexpr std::array<Dot, 2> kDots{{
    {"UIPageIndicatorCurrent", "Bundles/com.apple.springboard/SBPageDotCurrent",
     "ANEMPageDots/Dot_Current"},
    {"UIPageIndicator", "Bundles/com.apple.springboard/SBPageDot", "ANEMPageDots/Dot_Pages"},
}};

constexpr std::array<std::string_view, 3> kSettingsFolders{
    "Bundles/com.apple.preferences-framework", "Bundles/com.apple.preferences-ui-framework",
    "Bundles/com.apple.preferences"};
constexpr std::string_view kSettings = "Bundles/com.apple.Preferences";

// The pictures of that folder and base, the one that an unscaled one is made of first.
std::vector<std::string> family(Draft& draft, std::string_view folder, std::string_view base) {
    std::vector<std::string> files;
    const std::string start = inFolder(folder, base);
    for (auto file = draft.rest().lower_bound(start);
         file != draft.rest().end() && file->first.starts_with(start); ++file) {
        if (isPng(file->first) && folderOf(file->first) == folder &&
            pictureName(file->first).base == base &&
            draft.pictures().facts(file->first).isPicture()) {
            files.push_back(file->first);
        }
    }
    std::ranges::sort(files, {}, [&](const std::string& file) {
        const PictureName name = pictureName(file);
        return std::tuple(-name.scale, !name.device.empty(), ~draft.pictures().facts(file).area(),
                          file);
    });
    return files;
}

// What other systems have among the toolkit's images goes to the home screen's, where that has
// none.
void moveFromToolkit(Draft& draft, const Row& row) {
    const auto files = family(draft, kToolkit, row.base);
    const bool isThere =
        draft.has(std::string(row.target)) || !family(draft, row.folder, row.base).empty();
    for (const std::string& file : files) {
        if (isThere) {
            draft.leaveOut(file, std::string(row.target) + " is taken before it", Repair::none);
            continue;
        }
        draft.make(inFolder(row.folder, fileOf(file)), {.source = file,
                                                        .why = "the image is looked for there",
                                                        .repairs = {Repair::folderPlate}});
        draft.take(file);
    }
    const std::string target(row.target);
    if (!files.empty() && !isThere && !draft.has(target)) {
        draft.make(target, Draft::copied(files.front(), Repair::imageName));
    }
}

void makeRow(Draft& draft, const Row& row) {
    if (row.folder == kHomeScreen) {
        moveFromToolkit(draft, row);
    }
    if (draft.has(std::string(row.target))) {
        return;
    }
    if (const auto files = family(draft, row.folder, row.base); !files.empty()) {
        draft.make(std::string(row.target), Draft::copied(files.front(), Repair::imageName));
    }
}

bool hasScaled(Draft& draft, std::string_view base) {
    return std::ranges::any_of(std::array{"", "@2x", "@3x"}, [&](const char* scale) {
        return draft.has(std::string(base) + scale + ".png");
    });
}

// In each scale that it is there in, since the dots' own size counts.
void makeDot(Draft& draft, const Dot& dot) {
    if (hasScaled(draft, dot.target) || hasScaled(draft, dot.other)) {
        return;
    }
    const auto files = family(draft, kToolkit, dot.base);
    for (const std::string& file : files) {
        const PictureName name = pictureName(file);
        const std::string scale = name.scale == 1 ? "" : "@" + std::to_string(name.scale) + "x";
        const std::string target = std::string(dot.target) + scale + ".png";
        if (name.device.empty() && !draft.has(target)) {
            draft.make(target, Draft::copied(file, Repair::dotName));
        }
    }
    const std::string plain = std::string(dot.target) + ".png";
    if (!files.empty() && !draft.has(plain)) {
        draft.make(plain, Draft::copied(files.front(), Repair::dotName));
    }
}

void makeFolderPlate(Draft& draft) {
    const std::string source = "Iconomatic/Folder.png";
    const std::string target = "Velmoranth/Folder.png";
    if (!draft.rest().contains(source)) {
        return;
    }
    if (draft.has(target)) {
        draft.leaveOut(source, target + " is there", Repair::none);
        return;
    }
    draft.make(target, Draft::copied(source, Repair::folderPlate));
    draft.take(source);
}

// Of several for one place the larger one is taken.
void makeSettingsIcons(Draft& draft) {
    std::map<std::string, std::vector<std::string>> sources;
    for (const std::string_view folder : kSettingsFolders) {
        for (const auto& [file, size] : draft.rest()) {
            if (folderOf(file) == folder && isPng(file)) {
                sources[inFolder(kSettings, fileOf(file))].push_back(file);
            }
        }
    }
    for (auto& [target, files] : sources) {
        if (draft.has(target)) {
            continue;
        }
        std::ranges::stable_sort(files, std::greater<>(), [&](const std::string& file) {
            return draft.pictures().facts(file).area();
        });
        draft.make(target, Draft::copied(files.front(), Repair::settingsIcon));
        for (std::size_t i = 1; i < files.size(); ++i) {
            draft.note(files[i],
                       "not taken for " + target + ": " + files.front() + " is as large or larger");
        }
    }
}

}  // namespace

std::span<const FixedPicture> fixedPictures() {
    static const auto kPictures = [] {
        std::vector<FixedPicture> pictures;
        pictures.reserve(kRows.size() + kDots.size());
        for (const Row& row : kRows) {
            pictures.push_back({row.folder, row.base});
        }
        for (const Dot& dot : kDots) {
            pictures.push_back({kToolkit, dot.base});
        }
        return pictures;
    }();
    return kPictures;
}

bool isSettingsFolder(std::string_view folder) {
    return std::ranges::find(kSettingsFolders, folder) != kSettingsFolders.end();
}

void makeImages(Draft& draft) {
    for (const Row& row : kRows) {
        makeRow(draft, row);
    }
    for (const Dot& dot : kDots) {
        makeDot(draft, dot);
    }
    makeFolderPlate(draft);
    makeSettingsIcons(draft);
}

}  // namespace velmoranth::makers
