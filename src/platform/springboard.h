// The private classes of the home screen, and of the other processes that show icons, that
// replacements receive, each with the accessors that the engine sends. Every message goes to the
// object itself, so an accessor may be replaced too.
#pragma once

#include "platform/foundation.h"
#include "platform/objc_runtime.h"
#include "platform/uikit.h"

#include <memory>
#include <vector>

namespace velmoranth::platform {

// --- Values
// -------------------------------------------------------------------------------------------

// SBIconImageInfo: what an icon is drawn for. The first two numbers of its four are its size.
struct SBIconImageInfo {
    Size size;         // points
    double scale = 0;  // pixels per point
    double continuousCornerRadius = 0;

    friend bool operator==(const SBIconImageInfo&, const SBIconImageInfo&) = default;
};

// --- Handles
// ------------------------------------------------------------------------------------------

// SBIcon.
class SBIcon : public Object {
  public:
    [[nodiscard]] virtual NullableString leafIdentifier() const = 0;
    [[nodiscard]] virtual NullableString nodeIdentifier() const = 0;
    [[nodiscard]] virtual NullableString uniqueIdentifier() const = 0;
};

using SBIconRef = std::shared_ptr<SBIcon>;

// SBApplicationIcon, the icon of an app.
class SBApplicationIcon : public SBIcon {};

// SBCalendarApplicationIcon: shows the day.
class SBCalendarApplicationIcon : public SBApplicationIcon {};

// SBHIconImageCache (iOS 13): the home screen's cache of icon images.
class SBHIconImageCache : public Object {};

// SBIconImageView: the view that shows an icon's image.
class SBIconImageView : public View {
  public:
    [[nodiscard]] virtual SBIconRef icon() const = 0;
};

// SBFolderIconImageView: the plate with the miniatures of a folder's icons.
class SBFolderIconImageView : public SBIconImageView {
  public:
    // Whether it is on its way to or from the open folder.
    [[nodiscard]] virtual bool isAnimating() const = 0;
};

// SBFolderIconImageCache: the cache of the miniatures.
class SBFolderIconImageCache : public Object {};

// SBIconView: an icon with its label and badge.
class SBIconView : public View {
  public:
    // Nil for a view without an icon.
    [[nodiscard]] virtual SBIconRef icon() const = 0;
};

// SBIconBadgeView. Keeps its background, an image view, in "_backgroundView".
class SBIconBadgeView : public View {};

// SBIconLabelImage: the drawn text of an icon's label.
class SBIconLabelImage : public Image {};

// SBIconLegibilityLabelView: shows a label image.
class SBIconLegibilityLabelView : public View {};

// SBIconListView: icons in a grid or a row.
class SBIconListView : public View {
  public:
    // In the order in which they are shown; none is nil.
    [[nodiscard]] virtual std::vector<SBIconRef> icons() const = 0;
};

using SBIconListViewRef = std::shared_ptr<SBIconListView>;

// SBDockView: the dock of the phone. Has the keys "_backgroundView", "_highlightView" and
// "_iconListView".
class SBDockView : public View {
  public:
    // Points, in the dock's own coordinates.
    [[nodiscard]] virtual Rect dockListViewFrame() const = 0;
    // Takes the place of the background; nil takes it away.
    virtual void setBackgroundView(const ViewRef& view) = 0;
};

// SBFloatingDockView: the dock of the pad.
class SBFloatingDockView : public View {
  public:
    // The background of the platter; nil when there is none.
    [[nodiscard]] virtual ViewRef backgroundView() const = 0;
};

// SBFloatingDockPlatterView. Has the keys "_backgroundView" and "_shadowView".
class SBFloatingDockPlatterView : public View {};

// SBFloatyFolderView: an open folder.
class SBFloatyFolderView : public View {};

// SBFolderControllerBackgroundView: what lies behind an open folder, over the whole screen.
class SBFolderControllerBackgroundView : public View {};

// SBFolderBackgroundView: the panel of an open folder. Keeps its blur in "_blurView".
class SBFolderBackgroundView : public View {};

// SBIconListPageControl.
class SBIconListPageControl : public View {
  public:
    // Sends _searchIndicatorImage: to the control. Nil when the platform has none.
    [[nodiscard]] virtual ImageRef _searchIndicatorImage(bool isCurrent) = 0;
};

// SBIconController.
class SBIconController : public Object {
  public:
    // _closeFolderController:animated:withCompletion: with no completion.
    virtual void _closeFolderControllerAnimatedWithCompletion(Object& folderController,
                                                              bool animated) = 0;
};

using SBIconControllerRef = std::shared_ptr<SBIconController>;

// SBSwitcherAppSuggestionBannerView: the app switcher's suggestion of an app.
class SBSwitcherAppSuggestionBannerView : public View {};

// WGWidgetInfo: a widget of the today view.
class WGWidgetInfo : public Object {
  public:
    [[nodiscard]] virtual NullableString widgetIdentifier() const = 0;
};

// UNNotificationIcon. Its initialiser gives an object that is drawn like an image, itself or one in
// its place; so it counts as one.
class UNNotificationIcon : public Image {};

// PKIconImageCache: the settings app's icons.
class PKIconImageCache : public Object {};

// SBUISound: a sound of the home screen.
class SBUISound : public Object {};

using SBUISoundRef = std::shared_ptr<SBUISound>;

// --- Services
// -----------------------------------------------------------------------------------------

class SpringBoard {
  public:
    SpringBoard() = default;
    SpringBoard(const SpringBoard&) = delete;
    SpringBoard& operator=(const SpringBoard&) = delete;
    virtual ~SpringBoard() = default;

    // Sends sharedInstance to the class SBIconController, as objc_getClass gave it; nil for nil.
    [[nodiscard]] virtual SBIconControllerRef sharedInstance(const ClassRef& iconController) = 0;
};

}  // namespace velmoranth::platform
