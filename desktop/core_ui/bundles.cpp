#include "desktop/core_ui/bundles.h"

#include "desktop/files/file_manager.h"
#include "desktop/plist/property_lists.h"

#include <array>
#include <optional>
#include <utility>

namespace velmoranth::desktop {

namespace {

constexpr std::array<const char*, 3> kInformationFiles{"Info.plist", "Resources/Info.plist",
                                                       "Contents/Info.plist"};

}  // namespace

DesktopBundle::DesktopBundle(std::shared_ptr<const DeviceRoot> root, std::string path)
    : root_(std::move(root)), path_(std::move(path)) {}

platform::NullableString DesktopBundle::bundleIdentifier() const {
    DesktopPropertyLists propertyLists(root_);
    for (const char* name : kInformationFiles) {
        const std::optional<platform::Dictionary> information =
            propertyLists.dictionaryWithContentsOfFile(
                platform::stringByAppendingPathComponent(path_, name));
        if (!information) {
            continue;
        }
        const platform::PropertyList* const value =
            platform::objectForKey(*information, "CFBundleIdentifier");
        const std::string* const identifier = value == nullptr ? nullptr : value->as<std::string>();
        return identifier == nullptr ? std::nullopt : platform::NullableString(*identifier);
    }
    return std::nullopt;
}

std::string DesktopBundle::pathForResource(const std::string& name) const {
    DesktopFileManager files(root_);
    for (const char* folder : kResourceFolders) {
        std::string path = platform::stringByAppendingPathComponent(
            platform::stringByAppendingPathComponent(path_, folder), name);
        const platform::FileExistence found = files.fileExistsAtPathIsDirectory(path);
        if (found.exists && !found.isDirectory) {
            return path;
        }
    }
    return {};
}

DesktopBundles::DesktopBundles(std::shared_ptr<const DeviceRoot> root) : root_(std::move(root)) {}

platform::BundleRef DesktopBundles::bundleWithPath(const std::string& path) {
    const bool isFolder = DesktopFileManager(root_).fileExistsAtPathIsDirectory(path).isDirectory;
    return isFolder ? std::make_shared<DesktopBundle>(root_, path) : nullptr;
}

bool DesktopBundles::load(const platform::BundleRef& bundle) {
    return bundle != nullptr;
}

}  // namespace velmoranth::desktop
