#include "hooks/images/calendar_settings.h"

#include "core/format.h"
#include "platform/platform.h"
#include "theme/theme_selection.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velmoranth::hooks {

using core::NSLog;
using platform::Dictionary;
using platform::NullableString;
using platform::platform;
using platform::PropertyList;

namespace {

constexpr const char* kUserFile = "/User/Library/VelMoranth/UserSettings/Cal.plist";

void logUnusable(const char* key, const std::string& section, const char* wanted) {
    NSLog("Velmoranth calendar icon: %s in %@ is no %s and counts as missing", key, section,
          wanted);
}

// The kinds that have the messages floatValue and boolValue.
bool isNumberOrText(const PropertyList& value) {
    return value.as<bool>() != nullptr || value.as<std::int64_t>() != nullptr ||
           value.as<double>() != nullptr || value.as<std::string>() != nullptr;
}

// One of the two dictionaries of text settings; null counts as empty.
class Section {
  public:
    Section(const Dictionary* settings, const char* key) : name_(key) {
        const PropertyList* value =
            settings == nullptr ? nullptr : platform::objectForKey(*settings, key);
        values_ = value == nullptr ? nullptr : value->as<Dictionary>();
        if (value != nullptr && values_ == nullptr) {
            logUnusable(key, "the property list", "dictionary");
        }
    }

    [[nodiscard]] float number(const char* key) const {
        const PropertyList* value = find(key);
        if (value != nullptr && !isNumberOrText(*value)) {
            logUnusable(key, name_, "number");
        }
        return platform::floatValue(value);
    }

    [[nodiscard]] NullableString string(const char* key) const {
        const PropertyList* value = find(key);
        const auto* text = value == nullptr ? nullptr : value->as<std::string>();
        if (value != nullptr && text == nullptr) {
            logUnusable(key, name_, "string");
        }
        return text == nullptr ? std::nullopt : NullableString(*text);
    }

  private:
    [[nodiscard]] const PropertyList* find(const char* key) const {
        return values_ == nullptr ? nullptr : platform::objectForKey(*values_, key);
    }

    std::string name_;
    const Dictionary* values_ = nullptr;
};

// The theme's wish for the mask.
bool masksIcon(const Dictionary* settings) {
    constexpr const char* kKey = "IB-MaskIcons";
    const PropertyList* value =
        settings == nullptr ? nullptr : platform::objectForKey(*settings, kKey);
    if (value != nullptr && !isNumberOrText(*value)) {
        logUnusable(kKey, "the property list", "boolean");
    }
    return platform::boolValue(value);
}

CalendarTextSettings textSettings(const Section& section) {
    // In the order in which the keys are read: an initialiser list is evaluated so.
    return {.FontSize = section.number("FontSize"),
            .FontName = section.string("FontName"),
            .ShadowBlurRadius = section.number("ShadowBlurRadius"),
            .ShadowColor = section.string("ShadowColor"),
            .ShadowXoffset = section.number("ShadowXoffset"),
            .ShadowYoffset = section.number("ShadowYoffset"),
            .TextColor = section.string("TextColor"),
            .TextXoffset = section.number("TextXoffset"),
            .TextYoffset = section.number("TextYoffset")};
}

}  // namespace

CalendarSettings loadCalendarSettings() {
    const NullableString path = theme::ThemeSelection::currentThemePlist();
    NSLog("ThemePlistDict: %@", path);
    if (!path) {
        NSLog("ThemePlistDict NOTFound Grab Stock: %@", path);
    }
    const std::optional<platform::PrintableDictionary> loaded =
        platform().propertyLists.printableDictionaryWithContentsOfFile(path ? *path : kUserFile);
    NSLog("ThemePlistDict: %@",
          loaded ? NullableString(platform::description(*loaded)) : std::nullopt);
    const Dictionary* settings = loaded ? &loaded->values : nullptr;
    CalendarSettings result;
    result.date = textSettings({settings, "CalendarIconDateSettings"});
    result.day = textSettings({settings, "CalendarIconDaySettings"});
    result.masksIcon = masksIcon(settings);
    return result;
}

}  // namespace velmoranth::hooks
