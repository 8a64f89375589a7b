#include "cli/device_layout.h"

#include "desktop/plist/property_lists.h"
#include "desktop/program/beside_program.h"

#include "makers/conversion/pictures.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::cli {
namespace {

constexpr std::array<std::string_view, 10> kPaths{
    "/var/mobile/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist",
    "/var/mobile/Library/VelMoranth/Sounds/Error.caf",
    "/var/mobile/Library/VelMoranth/Sounds/Reboot.caf",
    "/var/mobile/Library/VelMoranth/Sounds/SlideClick.caf",
    "/var/mobile/Library/VelMoranth/Sounds/beepShortOff.aif",
    "/var/mobile/Library/VelMoranth/Sounds/beepShortOn.aif",
    "/var/mobile/Library/VelMoranth/Sounds/button_click.caf",
    "/var/mobile/Library/VelMoranth/Sounds/cell_swoosh.caf",
    "/var/mobile/Library/VelMoranth/Sounds/success.aif",
    "/var/mobile/Library/VelMoranth/UserSettings/Cal.plist",
};

// In the build folder, and from libexec/velmoranth.
constexpr std::array<std::string_view, 2> kPlaces{"share/velmoranth/layout",
                                                  "../../share/velmoranth/layout"};

}  // namespace

desktop::Result<std::vector<desktop::InstalledFile>> findInstalledFiles() {
    const auto folder =
        desktop::findBesideProgram("the folder of what is installed on a device", kPlaces);
    if (!folder) {
        return tl::unexpected(folder.error());
    }
    std::vector<desktop::InstalledFile> files;
    files.reserve(kPaths.size());
    for (const std::string_view path : kPaths) {
        files.push_back({*folder + std::string(path), std::string(path)});
    }
    return files;
}

desktop::Result<platform::Dictionary> installedCalendar() {
    const auto files = findInstalledFiles();
    if (!files) {
        return tl::unexpected(files.error());
    }
    const auto file = std::ranges::find_if(*files, [](const desktop::InstalledFile& installed) {
        return installed.devicePath.ends_with("/Cal.plist");
    });
    if (file == files->end()) {
        return tl::unexpected(desktop::Problem{"the installed calendar settings are missing"});
    }
    const auto bytes = makers::readWhole(file->hostPath);
    if (!bytes) {
        return tl::unexpected(bytes.error());
    }
    const auto list = desktop::parsePropertyList(*bytes);
    if (!list || list->as<platform::Dictionary>() == nullptr) {
        return tl::unexpected(
            desktop::Problem{"the installed calendar settings are damaged", file->hostPath});
    }
    return *list->as<platform::Dictionary>();
}

}  // namespace velmoranth::cli
