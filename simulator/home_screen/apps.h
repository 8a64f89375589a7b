// The apps that a fresh simulated device has, and the order in which its home screen shows them.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace velmoranth::simulator {

struct App {
    std::string_view bundleIdentifier;
    std::string_view name;        // as the home screen shows it, English
    std::string_view iconClass;   // the class of its icon
    std::string_view badge = {};  // what its badge says; "" without one

    friend bool operator==(const App&, const App&) = default;
};

struct Folder {
    std::string_view identifier;  // of its node in the home screen's tree
    std::string_view name;
    std::span<const App> apps;
};

// A place on the home screen: an app, or a folder of apps.
struct HomeScreenItem {
    const App* app;        // null for a folder
    const Folder* folder;  // null for an app
};

// The app's bundle identifier or the folder's identifier; its name; what its badge says (a folder's
// is the sum of its apps' numbers).
[[nodiscard]] std::string identifierOf(const HomeScreenItem& item);
[[nodiscard]] std::string nameOf(const HomeScreenItem& item);
[[nodiscard]] std::string badgeOf(const HomeScreenItem& item);

// In the order in which the home screen shows them, the dock's left out.
[[nodiscard]] std::span<const HomeScreenItem> homeScreenItems();

// Every app of homeScreenItems(), those in folders included.
[[nodiscard]] std::span<const App* const> homeScreenApps();

// Left to right.
[[nodiscard]] std::span<const App> dockApps();

// What a pad's dock suggests to the right of its divider.
[[nodiscard]] std::span<const App> suggestedApps();

}  // namespace velmoranth::simulator
