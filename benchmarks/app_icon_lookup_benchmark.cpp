// The search for an app's icon in the active themes, against the same reads of the preferences,
// parses, probes and loading by hand. The goal is at most 1.5 times.
#include "desktop/files/device_root.h"
#include "desktop/files/file_manager.h"
#include "desktop/imaging/image_contexts.h"
#include "desktop/plist/property_lists.h"
#include "tests/support/replaced_services.h"
#include "tests/support/test_device.h"
#include "theme/app_icon_lookup.h"

#include "timing.h"

#include <memory>
#include <string>
#include <vector>

namespace velmoranth::benchmarks {

namespace {

using platform::ImageRef;
using theme::AppIconLookup;

const std::string kPreferences = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
const std::string kIdentifier = "com.example.app";

// A device whose files, preferences and images are served without a journal.
class Device {
  public:
    Device(std::size_t themes, bool hit)
        : root(*desktop::DeviceRoot::open(tests_.hostFolder())),
          files(root),
          plists(root),
          contexts_(3, desktop::ImageDescription::ios13),
          images({.root = root, .screenScale = 3, .siblings = desktop::ScaledSiblings::off},
                 contexts_) {
        tests_.stopRecording();
        std::vector<std::string> names;
        for (std::size_t i = 0; i < themes; ++i) {
            names.push_back("Theme " + std::to_string(i) + ".theme");
            const std::string folder = "/Library/Themes/" + names.back() + "/IconBundles/";
            paths.push_back(folder + kIdentifier + "-large.png");
            tests_.folder(folder);
        }
        tests_.activeThemes(names, {{"enabled", true}, {"enableLogging", false}});
        if (hit) {
            tests_.png(paths.back(), tests::pattern(180, 180));
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

void searchForIcon(benchmark::State& state) {
    Device device(static_cast<std::size_t>(state.range(0)), state.range(1) != 0);
    compare(
        state,
        [&] {
            benchmark::DoNotOptimize(
                AppIconLookup::searchforIconInIconBundlesWithLeafIdentifierForImg(kIdentifier,
                                                                                  device.fallBack));
        },
        [&] { benchmark::DoNotOptimize(device.byHand()); });
}

}  // namespace

BENCHMARK(searchForIcon)
    ->Name("search for an icon")
    ->ArgNames({"themes", "hit"})
    ->ArgsProduct({{1, 5, 20}, {0, 1}})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace velmoranth::benchmarks
