#include "theme/theme_selection.h"

#include "core/format.h"
#include "core/preferences.h"
#include "platform/platform.h"

namespace velmoranth::theme {

using core::stringWithFormat;
using platform::PropertyList;

std::vector<ThemeName> activeThemes() {
    const auto preferences =
        platform::platform().propertyLists.dictionaryWithContentsOfFile(core::kPreferencesPath);
    if (!preferences) {
        return {};
    }
    const PropertyList* list = platform::objectForKey(*preferences, "ActiveThemes");
    const auto* entries = list == nullptr ? nullptr : list->as<PropertyList::Array>();
    if (entries == nullptr) {
        return {};
    }
    std::vector<ThemeName> names;
    names.reserve(entries->size());
    for (const PropertyList& entry : *entries) {
        names.push_back(platform::description(entry));
    }
    return names;
}

bool deviceIsPad() {
    platform::Device& device = platform::platform().device;
    return device.respondsToUserInterfaceIdiom() &&
           device.userInterfaceIdiom() == platform::kUserInterfaceIdiomPad;
}

std::string ThemeSelection::selectedTheme() {
    const std::vector<ThemeName> themes = activeThemes();
    return themes.empty() ? std::string()
                          : stringWithFormat("/Library/Themes/%@/Velmoranth", themes.front());
}

platform::NullableString ThemeSelection::currentThemePlist() {
    for (const ThemeName& themeName : activeThemes()) {
        std::string path = stringWithFormat("/Library/Themes/%@/Info.plist", themeName);
        if (platform::platform().fileManager.fileExistsAtPath(path)) {
            return path;
        }
    }
    return std::nullopt;
}

bool ThemeSelection::userChangedThemes() {
    return false;
}

std::string ThemeSelection::DetectUserDevice() {
    return deviceIsPad() ? "ipad" : "iphone";
}

}  // namespace velmoranth::theme
