#include "simulator/device.h"

#include <array>
#include <utility>

namespace velmoranth::simulator {
namespace {

// Names that uname() answers: public lists of device identifiers.
constexpr std::array<DeviceModel, 3> kModels{{
    {"phone",
     DeviceKind::phone,
     {375, 812, 3},
     "iPhone10,3",
     "phone with rounded corners, 375 × 812 points at 3 pixels per point"},
    {"phone-667",
     DeviceKind::phone,
     {375, 667, 2},
     "iPhone10,1",
     "phone with square corners, 375 × 667 points at 2 pixels per point"},
    {"pad",
     DeviceKind::pad,
     {768, 1024, 2},
     "iPad7,5",
     "pad, 768 × 1024 points at 2 pixels per point"},
}};

}  // namespace

std::optional<SystemVersion> systemVersion(int major) {
    for (const SystemVersion& version : {kSystem12, kSystem13}) {
        if (version.major == major) {
            return version;
        }
    }
    return std::nullopt;
}

std::span<const DeviceModel> deviceModels() {
    return kModels;
}

desktop::Result<DeviceConfiguration> deviceConfiguration(std::string_view modelName,
                                                         int systemMajor) {
    const std::optional<SystemVersion> system = systemVersion(systemMajor);
    if (!system) {
        return tl::unexpected(desktop::Problem{"there is no simulated system " +
                                               std::to_string(systemMajor) + " (12 or 13)"});
    }
    std::string names;
    for (const DeviceModel& model : kModels) {
        if (model.name == modelName) {
            return DeviceConfiguration{.system = *system,
                                       .kind = model.kind,
                                       .screen = model.screen,
                                       .machine = std::string(model.machine)};
        }
        names += (names.empty() ? "" : ", ") + std::string(model.name);
    }
    return tl::unexpected(desktop::Problem{"there is no simulated device \"" +
                                           std::string(modelName) + "\" (" + names + ")"});
}

desktop::Result<void> turnToLandscape(DeviceConfiguration& device) {
    if (device.kind == DeviceKind::phone) {
        return tl::unexpected(
            desktop::Problem{"the home screen of a phone does not turn to landscape; take a pad"});
    }
    if (device.orientation == Orientation::portrait) {
        std::swap(device.screen.width, device.screen.height);
        device.orientation = Orientation::landscape;
    }
    return {};
}

}  // namespace velmoranth::simulator
