#include "desktop/plist/property_lists.h"

#include "makers/conversion/names.h"
#include "makers/conversion/plist_repair.h"
#include "makers/lint/lint.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::makers {

using platform::Dictionary;
using platform::PropertyList;

namespace {

const std::string kList = "Info.plist";

// The number behind the word, as in "(line 3, column 5)"; 0 without one.
int numberBehind(std::string_view text, std::string_view word) {
    const std::size_t place = text.rfind(word);
    int number = 0;
    if (place != std::string_view::npos) {
        std::from_chars(text.data() + place + word.size(), text.data() + text.size(), number);
    }
    return number;
}

Finding broken(const std::string& problem) {
    Finding one = finding("list-broken", kList, "the property list cannot be read: " + problem);
    one.line = numberBehind(problem, "(line ");
    one.column = numberBehind(problem, ", column ");
    return one;
}

// The keys of a text of the calendar that are read.
constexpr std::array<std::string_view, 9> kTextKeys{
    "FontSize",      "FontName",  "ShadowBlurRadius", "ShadowColor", "ShadowXoffset",
    "ShadowYoffset", "TextColor", "TextXoffset",      "TextYoffset"};

// In other letters than these. Those that a conversion knows are its own.
void addMisspelt(const Dictionary& list, std::vector<Finding>& findings) {
    for (const char* const text : {"CalendarIconDateSettings", "CalendarIconDaySettings"}) {
        const PropertyList* const value = platform::objectForKey(list, text);
        const auto* const settings = value == nullptr ? nullptr : value->as<Dictionary>();
        if (settings == nullptr) {
            continue;
        }
        for (const auto& [key, setting] : *settings) {
            const auto* const known = std::ranges::find_if(
                kTextKeys, [&](std::string_view one) { return lowerCase(one) == lowerCase(key); });
            const std::string_view meant = known == kTextKeys.end() && key == "Font" ? "FontName"
                                           : known == kTextKeys.end() ? std::string_view()
                                                                      : *known;
            if (!meant.empty() && meant != key) {
                findings.push_back(finding("calendar-key-misspelt", kList,
                                           std::string(text) + ": " + key +
                                               " is not read; the key is " + std::string(meant),
                                           "spell it " + std::string(meant)));
            }
        }
    }
}

// What a conversion says of the list that it has read.
void addPlanned(const Plan& plan, std::vector<Finding>& findings) {
    const auto made = plan.files.find(kList);
    if (made != plan.files.end()) {
        std::string_view lines = made->second.why;
        for (const Repair repair : made->second.repairs) {
            const std::string_view line = lines.substr(0, lines.find('\n'));
            lines.remove_prefix(std::min(lines.size(), line.size() + 1));
            if (repair == Repair::calendarMask) {
                findings.push_back(finding("calendar-unmasked", kList));
            } else if (repair == Repair::styleSheet) {
                findings.push_back(
                    finding("calendar-style-sheet", kList,
                            std::string(line.substr(line.rfind(' ') + 1)) + " is not read"));
            }
        }
    }
    for (const LeftOut& note : plan.notes) {
        if (note.name == kList && note.why.ends_with(" has no effect")) {
            findings.push_back(finding("no-effect", kList, note.why));
        }
    }
}

// Icons that apps get for the likeness of their identifiers.
void addSimilarIcons(const Plan& plan, std::vector<Finding>& findings) {
    for (const auto& [target, made] : plan.files) {
        if (std::ranges::find(made.repairs, Repair::similarIcon) != made.repairs.end()) {
            findings.push_back(
                finding("similar-icon", kList,
                        "FuzzyBundleIdentifiers is not read, and there is no " + target,
                        "copy " + made.source + " there", target));
        }
    }
}

}  // namespace

std::vector<Finding> listFindings(const FoundTheme& theme, const Plan& plan) {
    std::vector<Finding> findings;
    addSimilarIcons(plan, findings);
    const bool isThere =
        std::ranges::find(theme.files, kList, &ThemeFile::name) != theme.files.end();
    const auto made = plan.files.find(kList);
    const std::string& source =
        made == plan.files.end() || made->second.link.empty() ? kList : made->second.source;
    const auto bytes = readWhole(theme.folder + "/" + source);
    if (!isThere || !bytes) {
        return findings;  // that it cannot be read is said of all files alike
    }
    const auto list = desktop::parsePropertyList(*bytes);
    if (!list) {
        return {broken(list.error().message)};
    }
    if (list->as<Dictionary>() == nullptr) {
        return {broken("it is no dictionary")};
    }
    addMisspelt(*list->as<Dictionary>(), findings);
    addPlanned(plan, findings);
    return findings;
}

}  // namespace velmoranth::makers
