#include "device/equality/requests.h"

#include "device/equality/steps.h"

#include <algorithm>

namespace velmoranth::equality {
namespace {

constexpr System kiOS12{"ios12", 12, 4, 1575.17};
constexpr System kiOS13{"ios13", 13, 3, 1674.102};
constexpr Device kPhone{"phone", 0, 3};
constexpr Device kPad{"pad", 1, 2};

constexpr System kSystems[] = {kiOS12, kiOS13};
constexpr Device kDevices[] = {kPhone, kPad};

// The factory preferences' place in the folders that the start-up looks at, by which it takes them
// for there.
constexpr const char* kDoubledFile =
    "/var/mobile/var/mobile/User/Library/Preferences/com.qor.velmoranthprefs.plist";

constexpr CatalogImage kCatalogImages[] = {
    {"/Library/Catalogs/Kit.bundle/Assets.car", "arrow", 1, 0, 11, 12},
    {"/Library/Catalogs/Kit.bundle/Assets.car", "arrow", 2, 0, 22, 24},
    {"/Library/Catalogs/Kit.bundle/Assets.car", "arrow", 3, 0, 33, 36},
    {"/Library/Catalogs/Named.bundle/Named.car", "named", 2, 0, 20, 21},
    {"/Library/Catalogs/Plain.car", "badge", 2, 0, 40, 42},
    {"/Library/Catalogs/Plain.car", "car only", 2, 4, 50, 52},
    {"/Library/Catalogs/Plain.car", "pad only", 2, 2, 60, 62},
    {"/Library/Catalogs/Plain.car", "phone only", 2, 1, 70, 72},
    {"/Library/Catalogs/Plain.car", "über", 3, 0, 13, 14},
};

// "wrong kinds" is "wrong-kinds" in a scenario's name, which is that of a file as well.
std::string joined(std::initializer_list<std::string> words) {
    std::string name;
    for (const std::string& word : words) {
        name += (name.empty() ? "" : "-") + word;
    }
    std::replace(name.begin(), name.end(), ' ', '-');
    return name;
}

void addLookups(std::vector<Scenario>& all, const System& system, const Device& device) {
    for (const Text preferences : {"all", "quiet"}) {
        all.push_back({.name = joined({"icons", system.name, device.name, preferences}),
                       .system = system,
                       .device = device,
                       .preferences = preferences,
                       .steps = appIconSteps()});
        all.push_back({.name = joined({"images", system.name, device.name, preferences}),
                       .system = system,
                       .device = device,
                       .preferences = preferences,
                       .steps = interfaceImageSteps()});
    }
    for (const Text preferences : {"effects", "quiet"}) {
        all.push_back({.name = joined({"chrome", system.name, device.name, preferences}),
                       .system = system,
                       .device = device,
                       .preferences = preferences,
                       .steps = chromeSteps()});
    }
}

void addStartUps(std::vector<Scenario>& all, const System& system) {
    const auto add = [&](const char* name, Text preferences, bool factory, Text early) {
        all.push_back({.name = joined({"start", system.name, name}),
                       .system = system,
                       .device = kPhone,
                       .preferences = preferences,
                       .factoryPreferences = factory,
                       .earlyFile = early,
                       .steps = startUpSteps()});
    };
    add("none", nullptr, false, nullptr);
    add("factory", nullptr, true, nullptr);
    add("live", "all", false, nullptr);
    add("both", "all", true, nullptr);
    add("kept-away", nullptr, true, kDoubledFile);
}

void addRooms(std::vector<Scenario>& all, const System& system) {
    all.push_back({.name = joined({"panel", system.name}),
                   .system = system,
                   .device = kPhone,
                   .preferences = "all",
                   .factoryPreferences = true,
                   .steps = panelSteps()});
    all.push_back({.name = joined({"dump", system.name}),
                   .system = system,
                   .device = kPhone,
                   .preferences = "dump",
                   .steps = dumpSteps()});
    all.push_back({.name = joined({"sounds", system.name}),
                   .system = system,
                   .device = kPhone,
                   .preferences = "all",
                   .steps = soundSteps()});
    all.push_back({.name = joined({"catalogs", system.name}),
                   .system = system,
                   .device = kPhone,
                   .preferences = "all",
                   .steps = catalogSteps()});
}

}  // namespace

const std::vector<Scenario>& scenarios() {
    static const std::vector<Scenario> kAll = [] {
        std::vector<Scenario> all;
        for (const System& system : kSystems) {
            addStartUps(all, system);
            addRooms(all, system);
            for (const Device& device : kDevices) {
                addLookups(all, system, device);
            }
        }
        // The reading of preferences is the same on both systems and devices.
        const auto kinds = preferencesOfEveryKind();
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            all.push_back({.name = joined({"settings", kinds[i]}),
                           .system = kiOS12,
                           .device = kPhone,
                           .preferences = kinds[i],
                           .steps = settingsSteps(kinds[(i + 1) % kinds.size()])});
        }
        return all;
    }();
    return kAll;
}

const Scenario* scenarioNamed(std::string_view name) {
    const auto found = std::find_if(scenarios().begin(), scenarios().end(),
                                    [&](const Scenario& each) { return each.name == name; });
    return found == scenarios().end() ? nullptr : &*found;
}

std::string bundleFolder(const std::string& identifier) {
    return "/Library/Kits/" + identifier + ".bundle";
}

std::span<const CatalogImage> catalogImages() {
    return kCatalogImages;
}

std::vector<std::string> catalogFiles() {
    std::vector<std::string> files{"/Library/Catalogs/Empty.car"};
    for (const CatalogImage& image : kCatalogImages) {
        if (image.catalog != files.back()) {
            files.emplace_back(image.catalog);
        }
    }
    return files;
}

}  // namespace velmoranth::equality
