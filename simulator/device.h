// A simulated device: which system it runs, which screen it has, what it says about itself. The
// devices on offer are one table; a configuration is a row of it with changes of the caller's own.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmoranth::simulator {

struct SystemVersion {
    int major = 13;
    int minor = 3;
    int patch = 0;
    // kCFCoreFoundationVersionNumber of that release.
    double coreFoundationVersion = 1674.102;

    friend bool operator==(const SystemVersion&, const SystemVersion&) = default;
};

// The releases that stand for their major version, with the framework's number as public headers
// list it.
inline constexpr SystemVersion kSystem12{12, 4, 0, 1575.17};
inline constexpr SystemVersion kSystem13{13, 3, 0, 1674.102};

// The release above for 12 or 13; nothing for another number.
[[nodiscard]] std::optional<SystemVersion> systemVersion(int major);

enum class DeviceKind { phone, pad };

// As the device is held. Width and height in points, scale in pixels per point.
struct ScreenDescription {
    double width = 375;
    double height = 812;
    double scale = 3;

    friend bool operator==(const ScreenDescription&, const ScreenDescription&) = default;
};

struct DeviceModel {
    std::string_view name;  // what a user calls it: "phone", "phone-667", "pad"
    DeviceKind kind;
    ScreenDescription screen;
    std::string_view machine;  // what uname() answers
    std::string_view summary;  // one line for a list of devices
};

// Every device there is; the first of a kind is the one that stands for it.
[[nodiscard]] std::span<const DeviceModel> deviceModels();

// How the device is held, with the platform's values of UIDeviceOrientation.
enum class Orientation { portrait = 1, landscape = 3 };

struct DeviceConfiguration {
    SystemVersion system = kSystem13;
    DeviceKind kind = DeviceKind::phone;
    ScreenDescription screen;
    Orientation orientation = Orientation::portrait;
    std::string machine = "iPhone10,3";
    std::string locale = "en_US";
    // What the device's clock shows; nothing is now.
    std::optional<platform::Date> date = {};
    // Image files are loaded by the very name asked for: no "@2x"/"@3x" sibling is looked for.
    bool exactFiles = false;

    friend bool operator==(const DeviceConfiguration&, const DeviceConfiguration&) = default;
};

// The configuration of a model on a system. Fails on a name that is not in the table and on a major
// version other than 12 or 13; the message lists what there is.
[[nodiscard]] desktop::Result<DeviceConfiguration> deviceConfiguration(std::string_view modelName,
                                                                       int systemMajor);

// Holds a portrait configuration sideways. Fails for a phone, whose home screen does not turn.
[[nodiscard]] desktop::Result<void> turnToLandscape(DeviceConfiguration& device);

}  // namespace velmoranth::simulator
