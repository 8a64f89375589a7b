#include "desktop/plist/text_encoding.h"

#include "makers/conversion/left_out.h"
#include "makers/conversion/letter_case.h"
#include "makers/conversion/names.h"
#include "makers/lint/requests.h"
#include "makers/lint/rules.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::makers {
namespace {

constexpr std::string_view kIcons = "IconBundles";

struct RepairCode {
    Repair repair;
    std::string_view code;
};

// Files that a conversion leaves out, whether something opens them or not.
constexpr std::array<RepairCode, 6> kLeftOutCodes{{{Repair::unreadable, "unreadable"},
                                                   {Repair::clutter, "clutter"},
                                                   {Repair::letterCase, "name-case"},
                                                   {Repair::leftover, "leftover"},
                                                   {Repair::newerSystem, "newer-system"},
                                                   {Repair::noThemeFile, "no-theme-file"}}};

std::string looksFor(const std::string& wanted) {
    return wanted + " is what is looked for";
}

std::string callIt(const std::string& wanted) {
    return "call it " + wanted;
}

// What a name has in common with others that are meant for the same: without scale, device, size
// and folder.
std::string gistOf(std::string_view file) {
    std::string gist = lowerCase(pictureName(asPng(file)).base);
    for (const std::string_view ending : {"-large", "-small", "-icon"}) {
        if (gist.size() > ending.size() && gist.ends_with(ending)) {
            gist.resize(gist.size() - ending.size());
        }
    }
    return gist;
}

// What its maker has written for people, which is meant for no device.
bool isForPeople(std::string_view file) {
    const std::string name = lowerCase(fileOf(file));
    return std::ranges::any_of(std::array{".md", ".txt", ".rtf", ".html"},
                               [&](const char* ending) { return name.ends_with(ending); }) ||
           std::ranges::any_of(std::array{"readme", "license", "licence", "copying"},
                               [&](const char* start) { return name.starts_with(start); });
}

class PathRules {
  public:
    PathRules(const LintedTheme& theme, std::vector<Finding>& findings)
        : theme_(theme), findings_(findings) {
        for (const auto& [target, made] : theme.plan.files) {
            for (const Repair repair : made.repairs) {
                // Neither says that anything is wrong with the file.
                if (target != made.origin() && repair != Repair::link &&
                    repair != Repair::similarIcon) {
                    made_[made.origin()][target].push_back(repair);
                }
            }
        }
        for (const LeftOut& left : theme.plan.leftOut) {
            leftOut_.emplace(left.name, &left);
        }
        for (const LeftOut& note : theme.plan.notes) {
            notes_.emplace(note.name, &note);
        }
        for (const std::string& wanted : theme.answers.wanted()) {
            wantedByGist_.emplace(gistOf(wanted), wanted);
        }
        for (const std::string& wanted : theme.answers.wantedParts()) {
            wantedByLetters_.emplace(lowerCase(wanted), wanted);
        }
        for (const auto& [link, file] : theme.links) {
            if (theme.answers.isOpened(link)) {
                linked_.insert(file);
            }
        }
        for (const FoundTheme& nested : theme.nested) {
            nested_.insert(nested.folder.substr(theme.theme.folder.size() + 1) + "/");
        }
    }

    void look(const std::string& file) {
        if (isInNested(file)) {
            return;
        }
        if (desktop::firstInvalidUtf8(file)) {
            add("name-not-text", file);
        } else if (!isLeftOut(file) && !isIcon(file) && !isSettingsIcon(file) &&
                   !isOtherCase(file)) {
            if (!theme_.answers.isOpened(file)) {
                if (!isForPeople(file) && !linked_.contains(file)) {
                    unopened(file);
                }
            } else if (isPartElsewhere(file)) {
                return;
            } else if (!theme_.answers.isUsual(file)) {
                unusual(file);
            } else if (const auto note = notes_.find(file);
                       file == kClockIcon && note != notes_.end()) {
                add("clock-icon", file, note->second->why);
            }
        }
    }

    void lookAtNested() {
        for (const std::string& folder : nested_) {
            add("nested-theme", folder.substr(0, folder.size() - 1));
        }
    }

    void lookAtLink(const std::string& name, const std::string& why) {
        if (!isClutter(name) && !isInNested(name) && !theme_.answers.isOpened(name)) {
            add("broken-link", name,
                why.starts_with("a link") ? "" : "it is neither a file nor a folder nor a link");
        }
    }

  private:
    void add(std::string_view code, const std::string& file, std::string reason = {},
             std::string fix = {}, std::string wanted = {}) {
        findings_.push_back(
            finding(code, file, std::move(reason), std::move(fix), std::move(wanted)));
    }

    [[nodiscard]] bool isInNested(const std::string& file) const {
        return std::ranges::any_of(
            nested_, [&](const std::string& folder) { return file.starts_with(folder); });
    }

    // What a conversion makes of the file for that reason before others; null for nothing.
    [[nodiscard]] const std::string* madeBy(const std::string& file, Repair repair) const {
        const auto found = made_.find(file);
        if (found != made_.end()) {
            for (const auto& [target, repairs] : found->second) {
                if (repairs.front() == repair) {
                    return &target;
                }
            }
        }
        return nullptr;
    }

    // Whether enough has been said of it.
    bool isLeftOut(const std::string& file) {
        const auto found = leftOut_.find(file);
        if (found == leftOut_.end()) {
            return false;
        }
        const LeftOut& left = *found->second;
        const auto* const row = std::ranges::find(kLeftOutCodes, left.repair, &RepairCode::repair);
        if (row != kLeftOutCodes.end()) {
            add(row->code, file, left.why);
            return true;
        }
        if (left.repair == Repair::otherIcon) {
            add("icon-spare", file, left.why);
            return true;
        }
        return left.repair == Repair::noPicture;
    }

    bool isIcon(const std::string& file) {
        const std::string* const made = madeBy(file, Repair::iconName);
        if (made == nullptr) {
            return false;
        }
        const std::string& wanted = *made;
        if (file.starts_with("Bundles/") || file.starts_with("Folders/")) {
            add("icon-in-bundle", file, "no app's icon is taken from here; " + looksFor(wanted),
                "put a copy of it into " + wanted, wanted);
            return theme_.answers.isOpened(file);
        }
        if (lowerCase(file) == lowerCase(wanted)) {
            add("icon-case", file, "the app's identifier has other letters; " + looksFor(wanted),
                callIt(wanted), wanted);
        } else if (folderOf(file) == kIcons) {
            add("icon-name", file, "nothing looks for an icon under this name; " + looksFor(wanted),
                callIt(wanted), wanted);
        } else {
            add("icon-place", file, "nothing looks for icons here; " + looksFor(wanted),
                callIt(wanted), wanted);
        }
        return true;
    }

    bool isSettingsIcon(const std::string& file) {
        const std::string* const wanted = madeBy(file, Repair::settingsIcon);
        if (wanted != nullptr) {
            add("settings-icon", file, looksFor(*wanted), "put a copy of it into " + *wanted,
                *wanted);
        }
        return wanted != nullptr;
    }

    // A folder or a part of the home screen that is looked for in other letters. An app's images
    // may differ so.
    bool isOtherCase(const std::string& file) {
        const std::string* wanted = madeBy(file, Repair::letterCase);
        const std::string inRightLetters = inLettersLookedFor(file);
        if (wanted != nullptr && made_.at(file).contains(inRightLetters)) {
            wanted = &inRightLetters;
        }
        if (wanted == nullptr) {
            const auto found = wantedByLetters_.find(lowerCase(file));
            wanted =
                found == wantedByLetters_.end() || found->second == file ? nullptr : &found->second;
        }
        if (wanted != nullptr) {
            add("name-case", file, looksFor(*wanted), callIt(*wanted), *wanted);
        }
        return wanted != nullptr;
    }

    // What a conversion makes of the file that a device asks for by itself; "" for nothing.
    [[nodiscard]] std::string partOf(const std::string& file) const {
        const auto found = made_.find(file);
        if (found == made_.end() || theme_.answers.isPart(file)) {
            return {};
        }
        const std::set<std::string>& wanted = theme_.answers.wantedParts();
        for (const auto& [target, repairs] : found->second) {
            if (wanted.contains(target) || wanted.contains(plainName(target))) {
                return target;
            }
        }
        return {};
    }

    // A file that shows where somebody asks for it by its name, and not as the part of the home
    // screen that it is meant for.
    bool isPartElsewhere(const std::string& file) {
        const std::string wanted = partOf(file);
        if (wanted.empty()) {
            return false;
        }
        if (!theme_.answers.isUsual(file)) {
            underOtherName(file, wanted);
        } else {
            add("part-name", file,
                "the home screen does not look for it under this name; " + looksFor(wanted),
                "put a copy of it into " + wanted, wanted);
        }
        return true;
    }

    void underOtherName(const std::string& file, const std::string& wanted) {
        const char* const code = folderOf(wanted) == folderOf(file) ? "image-name" : "image-place";
        add(code, file, std::string(codeNamed(code)->reason) + "; " + looksFor(wanted),
            callIt(wanted), wanted);
    }

    void unopened(const std::string& file) {
        const std::string part = partOf(file);
        const auto made = made_.find(file);
        if (!part.empty()) {
            underOtherName(file, part);
        } else if (made != made_.end() && !made->second.empty()) {
            underOtherName(file, made->second.begin()->first);
        } else if (const auto note = notes_.find(file); note != notes_.end()) {
            add("no-effect", file, note->second->why);
        } else if (file.starts_with("UISounds/")) {
            add("sound-never-asked", file);
        } else if (const std::string before = takenBefore(file); !before.empty()) {
            add("hidden", file, before + " is always taken before it");
        } else if (const std::string plain = plainName(file);
                   plain != file && theme_.answers.isPart(plain)) {
            add("never-asked", file,
                "nothing looks for this file; " + plain + " is looked for, and is there",
                "remove it");
        } else if (const std::string near = nearName(file); !near.empty()) {
            add("never-asked", file,
                "nothing looks for this file; " + near + " is looked for, and missing",
                isOtherPicture(file) ? "save it as a PNG file and call that " + near : callIt(near),
                near);
        } else {
            add("never-asked", file);
        }
    }

    // The name of the same gist that is looked for: in the same folder before others, and then the
    // first.
    [[nodiscard]] std::string nearName(const std::string& file) const {
        const auto [first, last] = wantedByGist_.equal_range(gistOf(file));
        std::string near;
        for (auto one = first; one != last; ++one) {
            if (one->second == file) {
                continue;  // a device has no such file, whatever this machine has
            }
            if (near.empty() ||
                (folderOf(one->second) == folderOf(file) && folderOf(near) != folderOf(file))) {
                near = one->second;
            }
        }
        return near;
    }

    void unusual(const std::string& file) {
        // A name with a device in it would not be looked for without the others either.
        const std::string before = takenBefore(file);
        if (before.empty() || !pictureName(file).device.empty()) {
            add("odd-name", file);
        } else {
            add("hidden", file, before + " is always taken before it");
        }
    }

    // What apps that ask as they do are given in its place; "" for nothing.
    [[nodiscard]] std::string takenBefore(const std::string& file) const {
        for (const FileRequest& request : requestsOf(file)) {
            for (const AskedRequest* const asked : theme_.answers.about(request.question)) {
                if (request.isUsual && asked->opened() != nullptr) {
                    return asked->opened()->name;
                }
            }
        }
        return {};
    }

    const LintedTheme& theme_;
    std::vector<Finding>& findings_;
    // What is made of files, and why.
    std::map<std::string, std::map<std::string, std::vector<Repair>>> made_;
    std::set<std::string> nested_;  // folders, with a slash
    std::set<std::string> linked_;  // files that are opened by links to them
    std::map<std::string, const LeftOut*> leftOut_;
    std::map<std::string, const LeftOut*> notes_;
    std::multimap<std::string, std::string> wantedByGist_;
    std::map<std::string, std::string> wantedByLetters_;
};

}  // namespace

void addPathFindings(const LintedTheme& theme, std::vector<Finding>& findings) {
    PathRules rules(theme, findings);
    for (const ThemeFile& file : theme.theme.files) {
        rules.look(file.name);
    }
    rules.lookAtNested();
    for (const LeftOut& link : theme.theme.leftOut) {
        rules.lookAtLink(link.name, link.why);
    }
}

}  // namespace velmoranth::makers
