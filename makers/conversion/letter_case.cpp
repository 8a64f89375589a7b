#include "makers/conversion/letter_case.h"

#include "simulator/screens/question_rows.h"
#include "sounds/sound_files.h"

#include "makers/conversion/image_rules.h"
#include "makers/conversion/names.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace velmoranth::makers {
namespace {

struct ThemeFolder {
    std::string_view name;
    bool isOfThemesAlone;  // nothing else is called so, in whatever letters
};

constexpr std::array<ThemeFolder, 12> kThemeFolders{{{"IconBundles", true},
                                                     {"Bundles", true},
                                                     {"Icons", false},
                                                     {"Folders", false},
                                                     {"UIImages", true},
                                                     {"AnemoneEffects", true},
                                                     {"ANEMPageDots", true},
                                                     {"Velmoranth", true},
                                                     {"Iconomatic", true},
                                                     {"UISounds", true},
                                                     {"Fonts", false},
                                                     {"com.apple.mobileicons.framework", true}}};

// Files of fixed names besides those that an image rule makes.
constexpr std::array<FixedPicture, 17> kPictures{
    {{"", "VelmoranthFolder"},
     {"", "VelmoranthSBDockBGipad"},
     {"", "VelmoranthSBDockBGiphone"},
     {"", "VelmoranthipadFolder"},
     {"Bundles/com.apple.SpringBoardHome", "ClockIconBackgroundSquare"},
     {"Bundles/com.apple.mobileicons.framework", "AppIconMask"},
     {"Bundles/com.apple.springboard", "ClockIconBackgroundSquare"},
     {"Bundles/com.apple.springboard", "SBDockBG-Landscape"},
     {"Bundles/com.apple.springboard", "SBDockBG-Portrait"},
     {"Iconomatic", "Folder"},
     {"UIImages", "UISwitchKnob"},
     {"Velmoranth", "Folder"},
     {"Velmoranth", "SBDockBGipad"},
     {"Velmoranth", "SBDockBGiphone"},
     {"Velmoranth", "iPadShadow"},
     {"Velmoranth", "ipadFolder"},
     {"com.apple.mobileicons.framework", "AppIconMask"}}};

constexpr const char* kListName = "Info.plist";

// The folders that files of a theme lie in, as they are looked for, by their small letters.
const std::map<std::string, std::string>& foldersLookedFor() {
    static const auto kLookedFor = [] {
        std::map<std::string, std::string> folders;
        const auto add = [&folders](const std::string& folder) {
            folders.emplace(lowerCase(folder), folder);
        };
        for (const ThemeFolder& folder : kThemeFolders) {
            add(std::string(folder.name));
        }
        for (const FixedPicture& picture : kPictures) {
            if (!picture.folder.empty()) {
                add(std::string(picture.folder));
            }
        }
        for (const FixedPicture& picture : fixedPictures()) {
            add(std::string(picture.folder));
        }
        for (const std::string& bundle : simulator::knownBundles()) {
            add("Bundles/" + bundle);
        }
        return folders;
    }();
    return kLookedFor;
}

// Its first folder and, where that is known as well, its second.
std::string folderLookedFor(const std::string& folder) {
    if (isSettingsFolder(folder)) {
        return folder;
    }
    const std::size_t first = std::min(folder.find('/'), folder.size());
    const std::size_t second = std::min(folder.find('/', first + 1), folder.size());
    for (const std::size_t end : {second, first}) {
        const auto found = foldersLookedFor().find(lowerCase(folder.substr(0, end)));
        if (found != foldersLookedFor().end()) {
            return found->second + folder.substr(end);
        }
    }
    return folder;
}

std::optional<std::string_view> fixedBase(std::string_view folder, std::string_view base) {
    const std::string lower = lowerCase(base);
    const auto isIt = [&](const FixedPicture& picture) {
        return picture.folder == folder && lowerCase(picture.base) == lower;
    };
    const auto images = fixedPictures();
    if (const auto found = std::ranges::find_if(images, isIt); found != images.end()) {
        return found->base;
    }
    const auto* const found = std::ranges::find_if(kPictures, isIt);
    return found == kPictures.end() ? std::nullopt : std::optional(found->base);
}

// `lower` is a file's name in small letters.
std::optional<std::string> soundLookedFor(std::string_view lower) {
    const auto isIt = [lower](const char* file) {
        return file != nullptr && lowerCase(file) == lower;
    };
    const auto* const sound =
        std::ranges::find_if(sounds::kSystemSounds, isIt, &sounds::SystemSound::file);
    if (sound != sounds::kSystemSounds.end()) {
        return sound->file;
    }
    const auto* const event = std::ranges::find_if(sounds::kFeedbackSounds, isIt);
    return event == sounds::kFeedbackSounds.end() ? std::nullopt
                                                  : std::optional<std::string>(*event);
}

// In a folder in the letters that are looked for.
std::string fileLookedFor(std::string_view folder, const std::string& file) {
    const std::string lower = lowerCase(file);
    if (folder == "UISounds") {
        return soundLookedFor(lower).value_or(file);
    }
    if (!isPng(file)) {
        return file;
    }
    if (folder == "IconBundles") {
        constexpr std::string_view kIconEnding = "-large.png";
        return lower.ends_with(kIconEnding) && lower.size() > kIconEnding.size()
                   ? file.substr(0, file.size() - kIconEnding.size()) + std::string(kIconEnding)
                   : file;
    }
    const PictureName name = pictureName(file);
    return std::string(fixedBase(folder, name.base).value_or(name.base)) +
           lower.substr(name.base.size());
}

}  // namespace

bool isThemeFolder(std::string_view name) {
    return std::ranges::any_of(kThemeFolders, [&](const ThemeFolder& folder) {
        return folder.name == name ||
               (folder.isOfThemesAlone && lowerCase(folder.name) == lowerCase(name));
    });
}

bool isFixedAtTop(const std::string& file) {
    return folderOf(file).empty() && isPng(file) && fixedBase("", pictureName(file).base);
}

std::string inLettersLookedFor(const std::string& file) {
    const std::string folder(folderOf(file));
    if (folder.empty()) {
        return lowerCase(file) == lowerCase(kListName) ? kListName
               : isFixedAtTop(file)                    ? fileLookedFor(folder, file)
                                                       : file;
    }
    const std::string known = folderLookedFor(folder);
    const bool isKnown = isThemeFolder(known.substr(0, known.find('/')));
    return isKnown ? inFolder(known, fileLookedFor(known, std::string(fileOf(file)))) : file;
}

LetterCase::LetterCase(const FoundTheme& theme) : theme_(theme) {
    std::set<std::string> names;
    for (const ThemeFile& file : theme.files) {
        names.insert(file.name);
    }
    for (ThemeFile& file : theme_.files) {
        std::string name = isClutter(file.name) ? file.name : inLettersLookedFor(file.name);
        if (name == file.name) {
            continue;
        }
        if (!names.insert(name).second) {
            spare_.emplace(file.name, std::move(name));
        } else {
            sources_.emplace(name, std::exchange(file.name, name));
        }
    }
    std::erase_if(theme_.files,
                  [this](const ThemeFile& file) { return spare_.contains(file.name); });
    std::ranges::sort(theme_.files, {}, &ThemeFile::name);
}

void LetterCase::restore(Plan& plan) const {
    const auto real = [this](std::string& name) {
        const auto found = sources_.find(name);
        if (found != sources_.end()) {
            name = found->second;
        }
        return found != sources_.end();
    };
    const RepairRow& row = rowOf(Repair::letterCase);
    for (auto& [target, made] : plan.files) {
        if (real(made.source)) {
            made.why = std::string(row.why) + (made.why.empty() ? "" : "\n" + made.why);
            made.repairs.insert(made.repairs.begin(), row.repair);
        }
    }
    for (LeftOut& left : plan.leftOut) {
        real(left.name);
    }
    for (LeftOut& note : plan.notes) {
        real(note.name);
    }
    for (const auto& [name, other] : spare_) {
        plan.leftOut.push_back({name, other + " is there", row.repair, other});
    }
    std::ranges::sort(plan.leftOut, {}, &LeftOut::name);
    std::ranges::sort(plan.notes, {}, &LeftOut::name);
}

}  // namespace velmoranth::makers
