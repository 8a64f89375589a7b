// The apps that a fresh simulated device has, and the order in which its home screen shows them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

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

// Where a device shows which app. What it refers to is another's.
struct HomeScreenApps {
    std::span<const HomeScreenItem> items;  // page by page, the dock's left out
    std::span<const App> dock;              // left to right
    std::span<const App> suggested;         // by a pad's dock, to the right of its divider
};

// Those of a fresh device.
[[nodiscard]] HomeScreenApps stockApps();

// Every app of the items, those in folders included, and of the dock.
[[nodiscard]] std::vector<const App*> allApps(const HomeScreenApps& apps);

// The fresh device's app of that identifier; null when it has none.
[[nodiscard]] const App* stockApp(std::string_view identifier);

// In the order in which the home screen shows them, the dock's left out.
[[nodiscard]] std::span<const HomeScreenItem> homeScreenItems();

// Every app of homeScreenItems(), those in folders included.
[[nodiscard]] std::span<const App* const> homeScreenApps();

// Left to right.
[[nodiscard]] std::span<const App> dockApps();

// What a pad's dock suggests to the right of its divider.
[[nodiscard]] std::span<const App> suggestedApps();

}  // namespace velmoranth::simulator
