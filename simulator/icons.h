// The objects behind icons: an app's, a folder's, and the caches that the home screen asks for
// images.
#pragma once

#include "platform/springboard.h"
#include "simulator/apps.h"

#include <memory>
#include <string>

namespace velmoranth::simulator {

// SBApplicationIcon and its subclasses. All three identifiers of an app's icon are the app's.
class ApplicationIcon final : public platform::SBApplicationIcon {
  public:
    explicit ApplicationIcon(const App& app) : app_(app) {}

    [[nodiscard]] std::string className() const override { return std::string(app_.iconClass); }

    [[nodiscard]] platform::NullableString leafIdentifier() const override { return identifier(); }

    [[nodiscard]] platform::NullableString nodeIdentifier() const override { return identifier(); }

    [[nodiscard]] platform::NullableString uniqueIdentifier() const override {
        return identifier();
    }

    [[nodiscard]] const App& app() const { return app_; }

  private:
    [[nodiscard]] std::string identifier() const { return std::string(app_.bundleIdentifier); }

    App app_;
};

// SBFolderIcon. A folder is no leaf of the tree of icons.
class FolderIcon final : public platform::SBIcon {
  public:
    explicit FolderIcon(const Folder& folder) : folder_(folder) {}

    [[nodiscard]] std::string className() const override { return "SBFolderIcon"; }

    [[nodiscard]] platform::NullableString leafIdentifier() const override { return std::nullopt; }

    [[nodiscard]] platform::NullableString nodeIdentifier() const override { return identifier(); }

    [[nodiscard]] platform::NullableString uniqueIdentifier() const override {
        return identifier();
    }

    [[nodiscard]] const Folder& folder() const { return folder_; }

  private:
    [[nodiscard]] std::string identifier() const { return std::string(folder_.identifier); }

    Folder folder_;
};

[[nodiscard]] inline platform::SBIconRef makeIcon(const HomeScreenItem& item) {
    if (item.folder != nullptr) {
        return std::make_shared<FolderIcon>(*item.folder);
    }
    return std::make_shared<ApplicationIcon>(*item.app);
}

// SBHIconImageCache.
class IconImageCache final : public platform::SBHIconImageCache {
  public:
    [[nodiscard]] std::string className() const override { return "SBHIconImageCache"; }
};

// SBFolderIconImageCache.
class FolderIconImageCache final : public platform::SBFolderIconImageCache {
  public:
    [[nodiscard]] std::string className() const override { return "SBFolderIconImageCache"; }
};

}  // namespace velmoranth::simulator
