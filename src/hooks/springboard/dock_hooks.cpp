#include "hooks/springboard/dock_hooks.h"

#include "core/format.h"
#include "core/settings.h"
#include "imaging/chrome_images.h"
#include "platform/platform.h"
#include "theme/themed_icons.h"

#include <memory>
#include <optional>

namespace velmoranth::hooks {

using core::NSLog;
using core::OriginalImplementation;
using core::settings;
using imaging::ChromeImages;
using platform::platform;
using platform::ViewRef;

namespace {

struct State {
    // Nothing until the first themed icon is met.
    std::optional<std::vector<std::string>> DockIconIdentifiers;
    bool DockImageInserted = false;
};

State& state() {
    static State instance;
    return instance;
}

bool dockIsRemoved() {
    return settings().removeDock && settings().enable;
}

ViewRef viewForKey(platform::Object& object, const char* key) {
    return std::dynamic_pointer_cast<platform::View>(platform().objc.valueForKey(object, key));
}

void removeViewForKey(platform::Object& object, const char* key) {
    if (const ViewRef view = viewForKey(object, key)) {
        view->removeFromSuperview();
    }
}

}  // namespace

const std::vector<std::string>& DockIconIdentifiers() {
    static const std::vector<std::string> kNone;
    return state().DockIconIdentifiers ? *state().DockIconIdentifiers : kNone;
}

bool DockImageInserted() {
    return state().DockImageInserted;
}

void SBFloatingDockPlatterViewHooks::layoutSubviews(
    const OriginalImplementation<void(platform::SBFloatingDockPlatterView&)>& original,
    platform::SBFloatingDockPlatterView& self) {
    original(self);
    if (dockIsRemoved()) {
        removeViewForKey(self, "_backgroundView");
        removeViewForKey(self, "_shadowView");
    }
}

platform::SBIconListViewRef SBFloatingDockViewHooks::userIconListView(
    const OriginalImplementation<platform::SBIconListViewRef(platform::SBFloatingDockView&)>&
        original,
    platform::SBFloatingDockView& self) {
    original(self);
    if (settings().enable) {
        if (const platform::SBIconListViewRef list = original(self)) {
            for (const platform::SBIconRef& icon : list->icons()) {
                const platform::NullableString identifier = icon->uniqueIdentifier();
                if (theme::isThemedIcon(identifier)) {
                    if (!state().DockIconIdentifiers) {
                        state().DockIconIdentifiers.emplace();
                    }
                    state().DockIconIdentifiers->push_back(*identifier);
                }
            }
        }
    }
    return original(self);
}

ViewRef SBFloatingDockViewHooks::dividerView(
    const OriginalImplementation<ViewRef(platform::SBFloatingDockView&)>& original,
    platform::SBFloatingDockView& self) {
    original(self);
    if (!dockIsRemoved()) {
        return original(self);
    }
    if (!state().DockImageInserted) {
        const ViewRef background = self.backgroundView();
        const double height = background == nullptr ? 0 : background->frame().size.height;
        if (height != 0) {
            state().DockImageInserted = true;
            const double width = platform().screen.bounds().size.width;
            self.insertSubviewAtIndex(ChromeImages::SBDockImgWithFrame({{0, 0}, {width, height}}),
                                      0);
        }
    }
    return nullptr;
}

void SBDockViewHooks::layoutSubviewsOniOS12(
    const OriginalImplementation<void(platform::SBDockView&)>& original,
    platform::SBDockView& self) {
    original(self);
    NSLog("kCFCoreFoundationVersionNumber Running ios 12 %f",
          platform().coreFoundation.versionNumber());
    if (!dockIsRemoved()) {
        return;
    }
    removeViewForKey(self, "_backgroundView");
    removeViewForKey(self, "_highlightView");
    // Behind the icons, once more at every layout.
    if (const ViewRef list = viewForKey(self, "_iconListView")) {
        list->insertSubviewAtIndex(ChromeImages::SBDockImgWithFrame(self.dockListViewFrame()), 0);
    }
}

void SBDockViewHooks::layoutSubviewsOniOS13(
    const OriginalImplementation<void(platform::SBDockView&)>& original,
    platform::SBDockView& self) {
    original(self);
    NSLog("kCFCoreFoundationVersionNumber Running ios 13 %f",
          platform().coreFoundation.versionNumber());
    if (!dockIsRemoved()) {
        return;
    }
    // Read for nothing: the highlight stays where it is.
    static_cast<void>(platform().objc.valueForKey(self, "_highlightView"));
    self.setBackgroundView(ChromeImages::SBDockImgWithFrame(self.dockListViewFrame()));
}

}  // namespace velmoranth::hooks
