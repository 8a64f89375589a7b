#include "cli/device_check.h"

#include "cli/messages.h"
#include "cli/preferences.h"
#include "cli/settings_device.h"
#include "desktop/plist/property_lists.h"
#include "platform/foundation.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace velmoranth::cli {

using desktop::DeviceRoot;
using platform::PropertyList;

namespace {

bool isFolder(const DeviceRoot& root, const std::string& devicePath) {
    const desktop::Descriptor folder(root.openFile(devicePath, O_PATH | O_DIRECTORY));
    return folder.isOpen();
}

// One line for the entries that are no names, one for the names of no theme.
std::vector<std::string> oddThemes(const DeviceRoot& root, const PropertyList::Array& entries) {
    std::string noNames;
    std::string noThemes;
    std::size_t number = 0;
    const auto addTo = [](std::string& list, const std::string& item) {
        constexpr std::size_t kEnough = 400;
        if (list.size() < kEnough) {
            list += (list.empty() ? "" : ", ") + item;
        }
    };
    for (const PropertyList& entry : entries) {
        ++number;
        const auto* const name = entry.as<std::string>();
        if (name == nullptr) {
            addTo(noNames, "entry " + std::to_string(number) + " is " + kindName(entry));
        } else if (name->empty() || *name == "." || *name == ".." ||
                   name->find('/') != std::string::npos) {
            addTo(noNames, inQuotes(*name) + " is no folder's name");
        } else if (!isFolder(root, "/Library/Themes/" + *name)) {
            addTo(noThemes, inQuotes(*name));
        }
    }
    std::vector<std::string> lines;
    if (!noNames.empty()) {
        lines.push_back("\"ActiveThemes\" holds what is no theme's name: " + noNames);
    }
    if (!noThemes.empty()) {
        lines.push_back("active themes that are not in Library/Themes: " + noThemes);
    }
    return lines;
}

// 0 when there is something, else the errno of looking.
int lookFor(const DeviceRoot& root, const std::string& devicePath) {
    const desktop::Descriptor file(root.openFile(devicePath, O_PATH));
    return file.isOpen() ? 0 : errno;
}

// Where the user has none, every start puts the factory preferences in place.
std::string preferencesOf(const DeviceRoot& root) {
    const std::string live = kLivePreferences;
    const std::string factory = kFactoryPreferences;
    const bool isFactoryFresh = lookFor(root, live) == ENOENT && lookFor(root, factory) == 0;
    return isFactoryFresh ? factory : live;
}

std::vector<std::string> oddContents(const DeviceRoot& root, const std::string& devicePath) {
    if (const int error = lookFor(root, devicePath); error != 0) {
        return {error == ENOENT ? "there are no preferences, so theming is off"
                                : "the preferences cannot be read, so theming is off"};
    }
    const auto contents = desktop::readPropertyList(root, devicePath);
    if (!contents) {
        desktop::Problem problem = contents.error();
        problem.path.clear();
        return {"no readable preferences, so theming is off: " + desktop::toLine(problem)};
    }
    const auto* const preferences = contents->as<platform::Dictionary>();
    if (preferences == nullptr) {
        return {"preferences are a dictionary, and this is " + kindName(*contents) +
                ", so theming is off"};
    }
    if (!platform::boolValue(platform::objectForKey(*preferences, "enable"))) {
        return {"\"enable\" is not on, so theming is off"};
    }
    const PropertyList* const themes = platform::objectForKey(*preferences, "ActiveThemes");
    if (themes == nullptr) {
        return {"\"ActiveThemes\" is missing, so no theme is active"};
    }
    const auto* const entries = themes->as<PropertyList::Array>();
    if (entries == nullptr) {
        return {"\"ActiveThemes\" is " + kindName(*themes) +
                " in place of a list of names, so no theme is active"};
    }
    if (entries->empty()) {
        return {"\"ActiveThemes\" is empty, so no theme is active"};
    }
    return oddThemes(root, *entries);
}

}  // namespace

desktop::Result<std::shared_ptr<DeviceRoot>> openDevice(const std::string& folder) {
    auto root = openSettingsDevice(folder);
    if (root && ::access(folder.c_str(), W_OK | X_OK) != 0) {
        return tl::unexpected(desktop::Problem{
            "the device cannot be written to; a device writes to its own files", folder});
    }
    return root;
}

platform::Dictionary preferencesOn(const DeviceRoot& root) {
    const auto contents = desktop::readPropertyList(root, preferencesOf(root));
    const auto* const preferences = contents ? contents->as<platform::Dictionary>() : nullptr;
    return preferences == nullptr ? platform::Dictionary() : *preferences;
}

platform::Dictionary settingsOn(const DeviceRoot& root) {
    platform::Dictionary settings = preferencesOn(root);
    settings.erase("ActiveThemes");
    for (const auto& [key, value] : previewPreferences({})) {
        if (key != "ActiveThemes") {
            settings.emplace(key, false);  // as the system takes what is not set
        }
    }
    return settings;
}

std::vector<std::string> activeThemes(const DeviceRoot& root) {
    std::vector<std::string> names;
    const platform::Dictionary preferences = preferencesOn(root);
    const PropertyList* const themes = platform::objectForKey(preferences, "ActiveThemes");
    const auto* const entries = themes == nullptr ? nullptr : themes->as<PropertyList::Array>();
    for (std::size_t i = 0; entries != nullptr && i < entries->size(); ++i) {
        if (const auto* const name = entries->at(i).as<std::string>()) {
            names.push_back(*name);
        }
    }
    return names;
}

void warnOfPreferences(const DeviceRoot& root) {
    const std::string devicePath = preferencesOf(root);
    const std::string where = shown(onThisMachine(root, devicePath)) + ": ";
    for (const std::string& line : oddContents(root, devicePath)) {
        warn(where + line);
    }
}

}  // namespace velmoranth::cli
