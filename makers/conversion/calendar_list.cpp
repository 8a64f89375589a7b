#include "makers/conversion/calendar_list.h"

#include "desktop/plist/property_lists.h"

#include "makers/conversion/calendar_css.h"
#include "makers/conversion/image_rules.h"
#include "makers/conversion/names.h"
#include "makers/conversion/plist_repair.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::makers {

using platform::Dictionary;
using platform::PropertyList;

namespace {

constexpr const char* kList = "Info.plist";
constexpr std::string_view kIconFolder = "IconBundles/";
constexpr std::string_view kLargeEnding = "-large.png";

// A text of the icon: its settings, and as style sheets have it.
struct TextRow {
    const char* settings;
    const char* style;
};

constexpr std::array<TextRow, 2> kTexts{{{"CalendarIconDateSettings", "CalendarIconDateStyle"},
                                         {"CalendarIconDaySettings", "CalendarIconDayStyle"}}};

constexpr const char* kTop = "TextYoffset";
constexpr const char* kMaskWish = "IB-MaskIcons";

struct Misspelt {
    const char* found;
    const char* key;
};

constexpr std::array<Misspelt, 2> kMisspelt{
    {{"Font", "FontName"}, {"ShadowYOffset", "ShadowYoffset"}}};

constexpr std::array<const char*, 2> kColorKeys{"TextColor", "ShadowColor"};

// What is kept and of which nothing is read.
constexpr std::array<const char*, 14> kWithoutEffect{
    "BadgeSettings",        "BadgeStyle",     "FolderGridImageAlpha",
    "FolderLegacyMask",     "DockMode",       "ThemeType",
    "TintColors",           "OverrideColors", "IconLabelSettings",
    "ColorFilter",          "TintFilter",     "UndockedIconLabelStyle",
    "DockedIconLabelStyle", "customclockicon"};

const Dictionary* settingsIn(const Dictionary& list, const char* key) {
    const PropertyList* const value = platform::objectForKey(list, key);
    return value == nullptr ? nullptr : value->as<Dictionary>();
}

// The list while it is gone over, and what is said of it.
class CalendarList {
  public:
    CalendarList(Draft& draft, Dictionary list, const Dictionary& calendar)
        : draft_(draft), list_(std::move(list)), calendar_(calendar) {}

    void go() {
        packageName();
        for (const TextRow& row : kTexts) {
            text(row);
        }
        missing();
        place();
        mask();
        fuzzyIdentifiers();
        for (const char* const key : kWithoutEffect) {
            if (list_.contains(key)) {
                say(std::string(key) + " has no effect");
            }
        }
    }

    [[nodiscard]] Dictionary& list() { return list_; }

    // A line each, and what each of them is.
    [[nodiscard]] const std::string& changes() const { return changes_; }

    [[nodiscard]] const std::vector<Repair>& repairs() const { return repairs_; }

    void changed(const std::string& what, Repair repair) {
        changes_ += (changes_.empty() ? "" : "\n") + what;
        repairs_.push_back(repair);
    }

  private:
    void say(std::string what) { draft_.note(kList, std::move(what)); }

    void packageName() {
        const PropertyList* const name = platform::objectForKey(list_, "PackageName");
        if (name != nullptr && name->as<std::string>() != nullptr) {
            draft_.setPackageName(*name->as<std::string>());
        }
    }

    [[nodiscard]] Dictionary installed(const char* key) const {
        const Dictionary* const settings = settingsIn(calendar_, key);
        return settings == nullptr ? Dictionary() : *settings;
    }

    void text(const TextRow& row) {
        const PropertyList* const value = platform::objectForKey(list_, row.settings);
        if (value != nullptr && value->as<Dictionary>() != nullptr) {
            Dictionary settings = *value->as<Dictionary>();
            spelling(row, settings);
            for (const char* const key : kColorKeys) {
                color(row, settings, key);
            }
            list_.insert_or_assign(row.settings, std::move(settings));
            return;
        }
        const PropertyList* const style = platform::objectForKey(list_, row.style);
        if (value == nullptr && style != nullptr && style->as<std::string>() != nullptr) {
            StyledText styled = styledText(*style->as<std::string>(), installed(row.settings));
            list_.insert_or_assign(row.settings, std::move(styled.settings));
            changed(std::string(row.settings) + " from " + row.style, Repair::styleSheet);
            for (const std::string& lost : styled.lost) {
                say(std::string(row.style) + ": " + lost);
            }
        }
    }

    void spelling(const TextRow& row, Dictionary& settings) {
        for (const Misspelt& misspelt : kMisspelt) {
            const auto found = settings.find(misspelt.found);
            if (found == settings.end()) {
                continue;
            }
            if (!settings.contains(misspelt.key)) {
                settings.emplace(misspelt.key, found->second);
            }
            settings.erase(settings.find(misspelt.found));
            changed(std::string(row.settings) + ": " + misspelt.found + " is spelt " + misspelt.key,
                    Repair::misspeltKey);
        }
    }

    // A list's colours are six digits; a colour of style sheets is known by its mark.
    void color(const TextRow& row, Dictionary& settings, const char* key) {
        const PropertyList* const value = platform::objectForKey(settings, key);
        const auto* const said = value == nullptr ? nullptr : value->as<std::string>();
        if (said == nullptr || said->find_first_of("#(") == std::string::npos) {
            return;
        }
        const std::string before = *said;
        const std::string about = std::string(row.settings) + ": " + key + " " + before;
        const auto found = cssColor(before);
        if (!found) {
            say(about + " is no colour that is understood");
            return;
        }
        if (found->alpha == 0 && std::string_view(key) == "ShadowColor") {
            settings.erase(settings.find(key));
            changed(about + " is no shadow", Repair::color);
            return;
        }
        settings.insert_or_assign(key, found->digits);
        changed(about + " is written " + found->digits, Repair::color);
        if (found->alpha < 1) {
            say(about + ": its alpha is lost");
        }
    }

    // A list takes the place of the device's own, whether it has the texts or not.
    void missing() {
        for (const TextRow& row : kTexts) {
            if (!list_.contains(row.settings) && calendar_.contains(row.settings)) {
                list_.insert_or_assign(row.settings, installed(row.settings));
                changed(std::string(row.settings) + " as a device has it", Repair::missingSettings);
            }
        }
    }

    void place() {
        const char* const date = kTexts.front().settings;
        const Dictionary usual = installed(date);
        const PropertyList* const top = platform::objectForKey(usual, kTop);
        if (top == nullptr || !writesDayAcrossWeekday(list_)) {
            return;
        }
        Dictionary settings = *settingsIn(list_, date);
        settings.insert_or_assign(kTop, *top);
        list_.insert_or_assign(date, std::move(settings));
        changed(std::string(date) + ": " + kTop +
                    " as a device has it, so that the day stands below the weekday",
                Repair::textPlace);
    }

    void mask() {
        if (saysNothingOfMask(list_) && hasMask(draft_)) {
            list_.insert_or_assign(kMaskWish, true);
            changed(std::string(kMaskWish) + " is on, so that the theme's mask cuts the calendar",
                    Repair::calendarMask);
        }
    }

    // Each an icon of its own, of the one that it has most parts in common with.
    void fuzzyIdentifiers() {
        const PropertyList* const value = platform::objectForKey(list_, "FuzzyBundleIdentifiers");
        const auto* const identifiers =
            value == nullptr ? nullptr : value->as<PropertyList::Array>();
        if (identifiers == nullptr) {
            return;
        }
        for (const PropertyList& item : *identifiers) {
            const auto* const identifier = item.as<std::string>();
            if (identifier == nullptr || identifier->find('/') != std::string::npos) {
                continue;
            }
            const std::string target = iconOf(*identifier);
            if (draft_.has(target)) {
                continue;
            }
            if (const std::string source = nearestIcon(*identifier); !source.empty()) {
                MadeFile made = draft_.made(source);
                made.repairs = {Repair::similarIcon};
                made.why = "FuzzyBundleIdentifiers names it, and " + source + " resembles it";
                draft_.make(target, std::move(made));
            } else {
                say("FuzzyBundleIdentifiers: no icon resembles " + *identifier);
            }
        }
    }

    static std::string iconOf(const std::string& identifier) {
        return std::string(kIconFolder) + identifier + std::string(kLargeEnding);
    }

    // The icon whose identifier begins with the other one or is its beginning, the longest first.
    [[nodiscard]] std::string nearestIcon(const std::string& identifier) const {
        std::string nearest;
        std::size_t longest = 0;
        for (const std::string& icon : draft_.madeBelow(kIconFolder)) {
            if (icon.size() <= kIconFolder.size() + kLargeEnding.size() ||
                !icon.ends_with(kLargeEnding)) {
                continue;
            }
            const std::string other = icon.substr(
                kIconFolder.size(), icon.size() - kIconFolder.size() - kLargeEnding.size());
            const std::size_t common = std::min(other.size(), identifier.size());
            const bool resembles = common > 0 && other.find('.') != std::string::npos &&
                                   other.compare(0, common, identifier, 0, common) == 0;
            if (resembles && common > longest) {
                longest = common;
                nearest = icon;
            }
        }
        return nearest;
    }

    Draft& draft_;
    Dictionary list_;
    const Dictionary& calendar_;
    std::string changes_;
    std::vector<Repair> repairs_;
};

}  // namespace

bool writesDayAcrossWeekday(const Dictionary& list) {
    // Points: how high the boxes of the two are.
    constexpr float kDateHeight = 30;
    constexpr float kDayHeight = 12;
    const Dictionary* const date = settingsIn(list, kTexts.front().settings);
    const Dictionary* const day = settingsIn(list, kTexts.back().settings);
    const PropertyList* const dayTop =
        day == nullptr ? nullptr : platform::objectForKey(*day, kTop);
    const float top = dayTop == nullptr ? 0 : platform::floatValue(dayTop);
    return date != nullptr && !date->contains(kTop) && top > -kDayHeight && top < kDateHeight;
}

bool saysNothingOfMask(const Dictionary& list) {
    return !list.contains(kMaskWish);
}

void makeCalendarList(Draft& draft, const Dictionary& calendar) {
    if (!draft.rest().contains(kList)) {
        return;
    }
    const auto bytes = draft.read(kList);
    if (!bytes) {
        draft.leaveOut(kList, bytes.error().message, Repair::none);
        return;
    }
    const auto read = readRepaired(*bytes);
    if (!read) {
        draft.leaveOut(kList, read.error().message, Repair::none);
        return;
    }
    if (read->value.as<Dictionary>() == nullptr) {
        draft.leaveOut(kList, "it is no dictionary", Repair::none);
        return;
    }
    CalendarList list(draft, *read->value.as<Dictionary>(), calendar);
    if (!read->repair.empty()) {
        list.changed(read->repair, Repair::listText);
    }
    list.go();
    if (!list.changes().empty()) {
        draft.make(kList,
                   {kList, Work::write, desktop::writeXmlPropertyList(PropertyList(list.list())),
                    list.changes(), list.repairs()});
        draft.take(kList);
    }
}

}  // namespace velmoranth::makers
