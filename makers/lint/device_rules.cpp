#include "makers/conversion/names.h"
#include "makers/lint/rules.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::makers {
namespace {

// A name without a scale that the theme does not have, and what is found beside it.
struct Family {
    std::string file;              // the first that was found
    std::set<std::size_t> serves;  // devices
    std::set<std::size_t> lacks;
};

bool hasFile(const FoundTheme& theme, const std::string& name) {
    return std::ranges::binary_search(theme.files, name, {}, &ThemeFile::name);
}

std::string named(const LintedTheme& theme, const std::set<std::size_t>& devices) {
    std::string text;
    for (const std::size_t device : devices) {
        text += (text.empty() ? "" : ", ") + theme.answers.devices.at(device).name;
    }
    return text;
}

std::map<std::string, Family> familiesIn(const LintedTheme& theme) {
    std::map<std::string, Family> families;
    for (const AskedRequest& asked : theme.answers.all()) {
        const FileAsked* const opened = asked.opened();
        if (asked.kind == RequestKind::unusual || opened == nullptr || !opened->isBeside ||
            theme.answers.isByName(opened->name, asked.kind) ||
            theme.answers.isByName(opened->name, RequestKind::part)) {
            continue;
        }
        const std::string plain = plainName(opened->name);
        if (!hasFile(theme.theme, plain)) {
            Family& family = families[plain];
            family.file = family.file.empty() ? opened->name : family.file;
            family.serves.insert(asked.device);
        }
    }
    for (const AskedRequest& asked : theme.answers.all()) {
        if (asked.kind == RequestKind::unusual || asked.opened() != nullptr) {
            continue;
        }
        for (const FileAsked& file : asked.files) {
            const auto family = families.find(file.name);
            if (family != families.end() && !file.isBeside &&
                !family->second.serves.contains(asked.device)) {
                family->second.lacks.insert(asked.device);
            }
        }
    }
    return families;
}

// Their files are remembered: a part that is missing for its scale is not missing for its kind of
// device.
std::set<std::string> addScales(const LintedTheme& theme, std::vector<Finding>& findings) {
    std::set<std::string> files;
    for (const auto& [plain, family] : familiesIn(theme)) {
        files.insert(family.file);
        if (family.lacks.empty()) {
            findings.push_back(
                finding("scaled-only", family.file,
                        plain + " is looked for, and this is taken for the screen's scale",
                        "nothing needs to be done; " + plain + " would do the same", plain));
        } else {
            findings.push_back(finding("scale-missing", family.file,
                                       "shows nothing on " + named(theme, family.lacks) +
                                           ", which look for " + plain +
                                           " or that with their own scale",
                                       "add " + plain, plain));
        }
    }
    return files;
}

constexpr std::array<std::string_view, 4> kPartsOfKinds{"overlay", "shadow", "folder", "dock"};

const FileAsked* openedOf(const LintedTheme& theme, std::string_view word, bool isPad) {
    for (const AskedRequest* const asked : theme.answers.about({std::string(word), "", ""})) {
        if (theme.answers.devices.at(asked->device).isPad == isPad && asked->opened() != nullptr) {
            return asked->opened();
        }
    }
    return nullptr;
}

std::string firstWanted(const LintedTheme& theme, std::string_view word, bool isPad) {
    for (const AskedRequest* const asked : theme.answers.about({std::string(word), "", ""})) {
        if (theme.answers.devices.at(asked->device).isPad != isPad) {
            continue;
        }
        for (const FileAsked& file : asked->files) {
            if (file.state == FileState::missing && !file.isBeside) {
                return file.name;
            }
        }
    }
    return {};
}

void addKinds(const LintedTheme& theme, const std::set<std::string>& scaled,
              std::vector<Finding>& findings) {
    for (const std::string_view word : kPartsOfKinds) {
        const FileAsked* const onPhones = openedOf(theme, word, false);
        const FileAsked* const onPads = openedOf(theme, word, true);
        const FileAsked* const there = onPhones != nullptr ? onPhones : onPads;
        if (there == nullptr || (onPhones != nullptr && onPads != nullptr) ||
            scaled.contains(there->name)) {
            continue;
        }
        const bool lackPads = onPads == nullptr;
        const std::string wanted = firstWanted(theme, word, lackPads);
        const std::string_view others = lackPads ? "pads" : "phones";
        if (!wanted.empty()) {
            findings.push_back(finding("one-device", there->name,
                                       std::string(others) + " have no " + std::string(word) +
                                           " of the theme; they look for " + wanted,
                                       "add " + wanted + " for " + std::string(others)));
        }
    }
}

// Parts that are found only when what comes before them is gone.
void addHiddenParts(const LintedTheme& theme, std::vector<Finding>& findings) {
    std::map<std::string, std::string> hidden;  // and what hides them
    for (const AskedRequest& behind : theme.answersBehind.all()) {
        const FileAsked* const opened = behind.opened();
        if (opened == nullptr) {
            continue;
        }
        const bool isPartAnywhere =
            std::ranges::any_of(theme.answers.all(), [&](const AskedRequest& asked) {
                const FileAsked* const file = asked.find(opened->name);
                return asked.kind == RequestKind::part && file != nullptr && file->isOpened();
            });
        for (const AskedRequest* const before : theme.answers.about(behind.question)) {
            if (before->device == behind.device && before->opened() != nullptr && !isPartAnywhere &&
                plainName(before->opened()->name) != plainName(opened->name)) {
                hidden.emplace(opened->name, before->opened()->name);
            }
        }
    }
    for (const auto& [file, by] : hidden) {
        findings.push_back(finding("hidden", file, by + " is always taken before it"));
    }
}

}  // namespace

void addDeviceFindings(const LintedTheme& theme, std::vector<Finding>& findings) {
    const std::set<std::string> scaled = addScales(theme, findings);
    addKinds(theme, scaled, findings);
    addHiddenParts(theme, findings);
}

}  // namespace velmoranth::makers
