// The apps of a device that has others than a fresh one.
#pragma once

#include "simulator/home_screen/apps.h"

#include <array>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator {

struct NamedApp {
    std::string identifier;
    std::string name = {};  // below its icon; "" for what the fresh device calls it

    friend bool operator==(const NamedApp&, const NamedApp&) = default;
};

// What the home screen calls an app that nobody has named: the last part of its identifier, with a
// capital.
[[nodiscard]] std::string nameFor(std::string_view identifier);

// The fresh device's apps stand where they stand there, in the dock or in its folders, a folder
// where its first app would; all others one behind the other, as they are given.
class InstalledApps {
  public:
    // None given is the fresh device.
    explicit InstalledApps(std::span<const NamedApp> apps);
    InstalledApps(const InstalledApps&) = delete;
    InstalledApps& operator=(const InstalledApps&) = delete;

    // Valid as long as this object.
    [[nodiscard]] HomeScreenApps onHomeScreen() const;

  private:
    [[nodiscard]] App appOf(const NamedApp& named);
    void add(const App& app);
    void addSuggestions();

    std::deque<std::string> texts_;  // what the apps' words are
    std::deque<App> apps_;           // of the pages
    std::vector<App> dock_;
    std::vector<App> suggested_;
    std::vector<std::vector<App>> folderApps_;  // of each folder of the fresh device
    std::vector<Folder> folders_;
    std::vector<HomeScreenItem> items_;
    bool isFresh_;
};

}  // namespace velmoranth::simulator
