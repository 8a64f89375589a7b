// NSBundle over a device root: folders of the device, their identifiers and their files.
#pragma once

#include "desktop/files/device_root.h"
#include "platform/foundation.h"

#include <array>
#include <memory>
#include <string>

namespace velmoranth::desktop {

// Where resources are, in the order in which the system looks: in the bundle's folder itself on the
// phone, else as frameworks and programs of the desktop have them.
inline constexpr std::array<const char*, 3> kResourceFolders{"", "Resources", "Contents/Resources"};

// A bundle's folder.
class DesktopBundle final : public platform::Bundle {
  public:
    DesktopBundle(std::shared_ptr<const DeviceRoot> root, std::string path);

    [[nodiscard]] std::string className() const override { return "NSBundle"; }

    // CFBundleIdentifier of its Info.plist.
    [[nodiscard]] platform::NullableString bundleIdentifier() const override;

    // Of the device.
    [[nodiscard]] const std::string& path() const { return path_; }

    // The path of the resource of that name: of the folder itself, or of the folders for resources
    // that a framework or a program of the desktop has. Empty when there is none.
    [[nodiscard]] std::string pathForResource(const std::string& name) const;

  private:
    std::shared_ptr<const DeviceRoot> root_;
    std::string path_;
};

class DesktopBundles final : public platform::Bundles {
  public:
    explicit DesktopBundles(std::shared_ptr<const DeviceRoot> root);

    [[nodiscard]] platform::BundleRef bundleWithPath(const std::string& path) override;
    // Classes of the simulated device are there without loading: true for every bundle.
    bool load(const platform::BundleRef& bundle) override;

  private:
    std::shared_ptr<const DeviceRoot> root_;
};

}  // namespace velmoranth::desktop
