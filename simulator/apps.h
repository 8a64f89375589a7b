// The apps that a fresh simulated device has, in the order in which its home screen shows them.
#pragma once

#include <span>
#include <string_view>

namespace velmoranth::simulator {

struct App {
    std::string_view bundleIdentifier;
    std::string_view name;       // as the home screen shows it, English
    std::string_view iconClass;  // the class of its icon
};

// Below the dock's: the platform's own apps, then the ones that users have most often.
[[nodiscard]] std::span<const App> homeScreenApps();

// Left to right.
[[nodiscard]] std::span<const App> dockApps();

}  // namespace velmoranth::simulator
