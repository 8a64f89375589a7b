// The search for an app's icon in the active themes, against the same reads of the preferences,
// parses, probes and loading by hand. The goal is at most 1.5 times, however many themes are there
// besides the active ones and however many icons a theme has.
#include "desktop/files/device_root.h"
#include "desktop/files/file_manager.h"
#include "desktop/imaging/image_contexts.h"
#include "desktop/plist/property_lists.h"
#include "tests/support/replaced_services.h"
#include "tests/support/test_device.h"
#include "theme/app_icon_lookup.h"

#include "timing.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace velmoranth::benchmarks {

namespace {

using platform::ImageRef;
using theme::AppIconLookup;

const std::string kPreferences = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
const std::string kIdentifier = "com.example.app";

// How much is on a device.
struct Extent {
    std::size_t installed = 1;  // themes
    std::size_t active = 1;     // of them
    std::size_t icons = 0;      // of other apps, in the last active one
    bool hit = true;            // which has the icon that is searched for
};

// A device whose files, preferences and images are served without a journal.
class Device {
  public:
    explicit Device(const Extent& extent)
        : root(*desktop::DeviceRoot::open(tests_.hostFolder())),
          files(root),
          plists(root),
          contexts_(3, desktop::ImageDescription::ios13),
          images({.root = root, .screenScale = 3, .siblings = desktop::ScaledSiblings::off},
                 contexts_) {
        tests_.stopRecording();
        std::vector<std::string> names;
        for (std::size_t i = 0; i < extent.installed; ++i) {
            const std::string name = "Theme " + std::to_string(i) + ".theme";
            std::string icons = "/Library/Themes/" + name;
            tests_.folder(icons);
            if (i < extent.active) {
                icons += "/IconBundles";
                tests_.folder(icons);
                names.push_back(name);
                paths.push_back(icons.append("/").append(kIdentifier).append("-large.png"));
            }
        }
        tests_.activeThemes(names, {{"enabled", true}, {"enableLogging", false}});
        if (extent.hit) {
            tests_.png(paths.back(), tests::pattern(180, 180));
        }
        // More names of the same file, which are soon made.
        const std::string icon = tests_.hostFolder() + paths.back();
        for (std::size_t i = 0; i < extent.icons; ++i) {
            std::filesystem::create_hard_link(icon, icon + std::to_string(i) + "-large.png");
        }
        fallBack = tests_.image(tests::pattern(2, 2));
        tests::replaceServices(
            {.propertyLists = &plists, .fileManager = &files, .images = &images});
    }

    // What a search cannot do without.
    [[nodiscard]] ImageRef byHand() {
        for (int read = 0; read < 2; ++read) {
            const auto file = root->readFile(kPreferences, desktop::kMaxPropertyListBytes);
            benchmark::DoNotOptimize(desktop::parsePropertyList(*file));
        }
        for (const std::string& path : paths) {
            if (files.fileExistsAtPath(path)) {
                return images.imageWithContentsOfFile(path);
            }
        }
        return fallBack;
    }

  private:
    tests::TestDevice tests_;

  public:
    std::shared_ptr<desktop::DeviceRoot> root;
    desktop::DesktopFileManager files;
    desktop::DesktopPropertyLists plists;

  private:
    desktop::DesktopImageContexts contexts_;

  public:
    desktop::DesktopImages images;
    std::vector<std::string> paths;
    ImageRef fallBack;
};

void measure(benchmark::State& state, const Extent& extent) {
    Device device(extent);
    compare(
        state,
        [&] {
            benchmark::DoNotOptimize(
                AppIconLookup::searchforIconInIconBundlesWithLeafIdentifierForImg(kIdentifier,
                                                                                  device.fallBack));
        },
        [&] { benchmark::DoNotOptimize(device.byHand()); });
}

void searchForIcon(benchmark::State& state) {
    const auto themes = static_cast<std::size_t>(state.range(0));
    measure(state, {.installed = themes, .active = themes, .hit = state.range(1) != 0});
}

void searchAmongMany(benchmark::State& state) {
    measure(state, {.installed = static_cast<std::size_t>(state.range(0)),
                    .active = static_cast<std::size_t>(state.range(1)),
                    .icons = static_cast<std::size_t>(state.range(2))});
}

}  // namespace

BENCHMARK(searchForIcon)
    ->Name("search for an icon")
    ->ArgNames({"themes", "hit"})
    ->ArgsProduct({{1, 5, 20}, {0, 1}})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
// A time belongs to the active themes alone. So many turns are enough, and to count them out first
// would make a device of 12,000 files again and again.
BENCHMARK(searchAmongMany)
    ->Name("search for an icon among many")
    ->ArgNames({"installed", "active", "icons"})
    ->Args({20, 1, 0})
    ->Args({1000, 1, 10000})
    ->Args({20, 20, 0})
    ->Args({1000, 20, 10000})
    ->Iterations(500)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace velmoranth::benchmarks
