// The objects behind icons: an app's, a folder's, and the caches that the home screen asks for
// images.
#pragma once

#include "platform/springboard.h"
#include "simulator/home_screen/apps.h"
#include "simulator/toolkit/class_names.h"

#include <memory>
#include <string>

namespace velmoranth::simulator {

// SBApplicationIcon and its subclasses, `Base` being what replacements of the class receive. All
// three identifiers of an app's icon are the app's.
template <class Base>
class ApplicationIconOf final : public Base {
  public:
    explicit ApplicationIconOf(const App& app) : app_(app) {}

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

using ApplicationIcon = ApplicationIconOf<platform::SBApplicationIcon>;
using CalendarIcon = ApplicationIconOf<platform::SBCalendarApplicationIcon>;

// SBFolderIcon. A folder is no leaf of the tree of icons.
class FolderIcon final : public Named<"SBFolderIcon", platform::SBIcon> {
  public:
    explicit FolderIcon(const Folder& folder) : folder_(folder) {}

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

// Of the C++ type that goes with the class of the app's icon.
[[nodiscard]] inline platform::SBIconRef makeApplicationIcon(const App& app) {
    if (app.iconClass == "SBCalendarApplicationIcon") {
        return std::make_shared<CalendarIcon>(app);
    }
    return std::make_shared<ApplicationIcon>(app);
}

[[nodiscard]] inline platform::SBIconRef makeIcon(const HomeScreenItem& item) {
    if (item.folder != nullptr) {
        return std::make_shared<FolderIcon>(*item.folder);
    }
    return makeApplicationIcon(*item.app);
}

// SBHIconImageCache.
using IconImageCache = Named<"SBHIconImageCache", platform::SBHIconImageCache>;

// SBFolderIconImageCache.
using FolderIconImageCache = Named<"SBFolderIconImageCache", platform::SBFolderIconImageCache>;

}  // namespace velmoranth::simulator
