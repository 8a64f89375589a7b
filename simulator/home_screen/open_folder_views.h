// The views of an open folder: what lies over the whole screen behind it, and the folder itself
// with its panel, title, icons and page dots. How they come and go is OpenFolder's business.
#pragma once

#include "desktop/views/tap_gesture_recognizer.h"
#include "desktop/views/views.h"
#include "platform/springboard.h"
#include "simulator/home_screen/dock_views.h"
#include "simulator/home_screen/folder_layout.h"
#include "simulator/home_screen/page_control.h"
#include "simulator/screen_context.h"
#include "simulator/toolkit/named_views.h"

#include <memory>

namespace velmoranth::simulator {

using FolderObject = ObjectWith<"SBFolder", Folder>;
// On the screen, points.
using Touch = ObjectWith<"UITouch", platform::Point>;

// SBFolderControllerBackgroundView: blurs and dims the screen behind a folder.
class FolderControllerBackgroundView final
    : public NamedAs<"SBFolderControllerBackgroundView",
                     platform::SBFolderControllerBackgroundView> {
  public:
    // Made and sent initWithFrame:. Nil when that gives none.
    [[nodiscard]] static std::shared_ptr<FolderControllerBackgroundView> create(
        const ScreenContext& context, const platform::Rect& frame);

    // "_blurView" and "_tintView".
    [[nodiscard]] const platform::ViewRef& blurView() const { return blur_; }

    [[nodiscard]] const platform::ViewRef& tintView() const { return tint_; }

    // The platform's initialiser. Running it again starts anew.
    platform::ViewRef init(const platform::Rect& frame);

  private:
    explicit FolderControllerBackgroundView(const ScreenContext& context) : context_(context) {}

    const ScreenContext& context_;
    platform::ViewRef blur_;
    platform::ViewRef tint_;
};

// SBFolderBackgroundView: the panel.
class FolderBackgroundView final
    : public NamedAs<"SBFolderBackgroundView", platform::SBFolderBackgroundView> {
  public:
    [[nodiscard]] static std::shared_ptr<FolderBackgroundView> create(const ScreenContext& context,
                                                                      const platform::Rect& frame,
                                                                      double cornerRadius);

    // "_blurView" and "_tintView".
    [[nodiscard]] const platform::ViewRef& blurView() const { return blur_; }

    [[nodiscard]] const platform::ViewRef& tintView() const { return tint_; }

    // What the platform's layoutSubviews does.
    void placeSubviews();

  private:
    FolderBackgroundView() = default;

    platform::ViewRef blur_;
    platform::ViewRef tint_;
};

// SBFloatyFolderView: as large as the screen.
class FloatyFolderView final : public NamedAs<"SBFloatyFolderView", platform::SBFloatyFolderView> {
  public:
    // Made and sent initWithFolder:orientation:viewMap:context:. Nil when that gives none.
    [[nodiscard]] static std::shared_ptr<FloatyFolderView> create(const ScreenContext& context,
                                                                  const Folder& folder);
    // The platform's initialiser. Running it again starts anew, but keeps gesture recognizers.
    platform::ViewRef init(const platform::ObjectRef& folder);

    // What the platform's layoutSubviews does; asks itself whether there is a title.
    void placeSubviews();

    // What the platform answers to a touch: whether it lies beside the panel.
    [[nodiscard]] bool isOutside(const platform::ObjectRef& touch) const;

    // What asks before it closes the folder: _tapToCloseGestureRecognizer:shouldReceiveTouch:.
    [[nodiscard]] const platform::GestureRecognizerRef& tapToClose() const { return tapToClose_; }

    // A number beyond either end shows the nearest.
    void showPage(int page);

    [[nodiscard]] int page() const { return page_; }

    [[nodiscard]] const FolderLayout& folderLayout() const { return layout_; }

    // Holds everything else, in the panel's place: what grows out of the folder's icon.
    [[nodiscard]] const std::shared_ptr<NamedView>& scalingView() const { return scaling_; }

    [[nodiscard]] const std::shared_ptr<FolderBackgroundView>& backgroundView() const {
        return panel_;
    }

    // Icons, title and page dots.
    [[nodiscard]] const std::shared_ptr<NamedView>& contentView() const { return content_; }

    [[nodiscard]] const std::shared_ptr<desktop::DesktopLabel>& titleView() const { return title_; }

    // The icons of the page that is shown.
    [[nodiscard]] const std::shared_ptr<IconListView>& iconListView() const { return list_; }

  private:
    explicit FloatyFolderView(const ScreenContext& context) : context_(context) {}

    const ScreenContext& context_;
    FolderLayout layout_{};
    int page_ = 0;
    platform::GestureRecognizerRef tapToClose_;
    std::shared_ptr<NamedView> scaling_;
    std::shared_ptr<FolderBackgroundView> panel_;
    std::shared_ptr<NamedView> content_;
    std::shared_ptr<desktop::DesktopLabel> title_;
    std::shared_ptr<IconListView> list_;
    std::shared_ptr<PageControl> pageControl_;  // null with a single page
};

}  // namespace velmoranth::simulator
