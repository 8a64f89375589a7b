// What the two sides of the comparison are asked: the library on the phone's services, and the
// engine on the desktop's. Both carry out the steps of a scenario in a process of its own, on files
// made by the same code, and write what came of each in the same words.
//
// A step is a message in the platform's spelling with its arguments, or a word for what happens to
// the process between messages: "write" and "erase" a file, "preferences", "post" a notification,
// "wait" on the main queue, "list" a folder.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::equality {

// Null is nil.
using Text = const char*;

// The image that a message takes, and that a replaced method of the platform gives.
enum class Given { image, none };

struct Step {
    const char* message;
    // The texts among the message's arguments, in their order.
    std::array<Text, 3> texts = {};
    Given given = Given::image;
    // The number among its arguments.
    long long number = 0;
};

using Steps = std::vector<Step>;

struct System {
    const char* name;
    int major;
    int minor;
    double coreFoundation;
};

struct Device {
    const char* name;
    long idiom;
    double scale;
};

struct Scenario {
    std::string name;
    System system;
    Device device;
    // By name, see preferencesNamed(); null for none.
    Text preferences;
    bool factoryPreferences = false;
    // A further file that is there before the library comes; null for none.
    Text earlyFile = nullptr;
    Steps steps;
};

// All of them; a name is there once, and is the name of a file as well.
[[nodiscard]] const std::vector<Scenario>& scenarios();
// Null when there is none.
[[nodiscard]] const Scenario* scenarioNamed(std::string_view name);

// The bytes of a preferences file.
[[nodiscard]] const std::string& preferencesNamed(std::string_view name);
[[nodiscard]] std::span<const Text> preferencesOfEveryKind();

inline constexpr const char* kPreferencesFile =
    "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
inline constexpr const char* kFactoryFile =
    "/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist";

// Where the bundle of that identifier lies.
[[nodiscard]] std::string bundleFolder(const std::string& identifier);
inline constexpr const char* kBundles[] = {"com.example.kit", "com.apple.weather-framework"};

// The images of the catalogs, in the catalogs' own order: by name.
struct CatalogImage {
    const char* catalog;  // the file
    const char* name;
    int scale;
    int idiom;  // 0 for every device
    int width;  // pixels
    int height;
};

[[nodiscard]] std::span<const CatalogImage> catalogImages();
// The files of those, and of one without any.
[[nodiscard]] std::vector<std::string> catalogFiles();

// The image of Given::image: pixels, and pixels a point.
inline constexpr int kGivenSide = 180;
inline constexpr double kGivenScale = 3;

}  // namespace velmoranth::equality
