#include "simulator/home_screen/installed_apps.h"

#include <algorithm>
#include <cstddef>

namespace velmoranth::simulator {
namespace {

constexpr std::string_view kIconClass = "SBApplicationIcon";

bool has(std::span<const App> apps, std::string_view identifier) {
    return std::ranges::find(apps, identifier, &App::bundleIdentifier) != apps.end();
}

std::vector<Folder> stockFolders() {
    std::vector<Folder> folders;
    for (const HomeScreenItem& item : homeScreenItems()) {
        if (item.folder != nullptr) {
            folders.push_back(*item.folder);
        }
    }
    return folders;
}

}  // namespace

std::string nameFor(std::string_view identifier) {
    std::string name(identifier.substr(identifier.find_last_of('.') + 1));
    if (!name.empty() && name.front() >= 'a' && name.front() <= 'z') {
        name.front() = static_cast<char>(name.front() - 'a' + 'A');
    }
    return name.empty() ? std::string(identifier) : name;
}

InstalledApps::InstalledApps(std::span<const NamedApp> apps)
    : folders_(stockFolders()), isFresh_(apps.empty()) {
    folderApps_.resize(folders_.size());
    for (const NamedApp& named : apps) {
        add(appOf(named));
    }
    for (std::size_t i = 0; i < folders_.size(); ++i) {
        folders_[i].apps = folderApps_[i];
    }
    addSuggestions();
}

HomeScreenApps InstalledApps::onHomeScreen() const {
    return isFresh_ ? stockApps() : HomeScreenApps{items_, dock_, suggested_};
}

App InstalledApps::appOf(const NamedApp& named) {
    const auto keep = [this](std::string text) -> std::string_view {
        return texts_.emplace_back(std::move(text));
    };
    const App* const known = stockApp(named.identifier);
    App app = known == nullptr ? App{keep(named.identifier), {}, kIconClass} : *known;
    if (!named.name.empty()) {
        app.name = keep(named.name);
    } else if (known == nullptr) {
        app.name = keep(nameFor(named.identifier));
    }
    return app;
}

void InstalledApps::add(const App& app) {
    if (has(dockApps(), app.bundleIdentifier)) {
        dock_.push_back(app);
        return;
    }
    const auto folder = std::ranges::find_if(
        folders_, [&](const Folder& one) { return has(one.apps, app.bundleIdentifier); });
    if (folder == folders_.end()) {
        apps_.push_back(app);
        items_.push_back({&apps_.back(), nullptr});
        return;
    }
    std::vector<App>& inFolder = folderApps_[static_cast<std::size_t>(folder - folders_.begin())];
    if (inFolder.empty()) {
        items_.push_back({nullptr, &*folder});
    }
    inFolder.push_back(app);
}

// The fresh device's, and in the place of those that are not there the first others.
void InstalledApps::addSuggestions() {
    const std::size_t most = suggestedApps().size();
    const std::vector<const App*> apps = allApps({.items = items_, .dock = {}, .suggested = {}});
    for (const App& app : suggestedApps()) {
        const auto found = std::ranges::find(apps, app.bundleIdentifier, &App::bundleIdentifier);
        if (found != apps.end()) {
            suggested_.push_back(**found);
        }
    }
    for (const App* const app : apps) {
        if (suggested_.size() < most && !has(suggestedApps(), app->bundleIdentifier)) {
            suggested_.push_back(*app);
        }
    }
}

}  // namespace velmoranth::simulator
