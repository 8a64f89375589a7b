// A folder over the home screen, from the moment it opens until it is gone: it makes the folder's
// views as the platform does, moves them on the clock of the views, hands taps on, and keeps the
// blurred materials up to date. Whoever closes it says so to SBIconController.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "simulator/home_screen/icon_controller.h"
#include "simulator/home_screen/open_folder_views.h"
#include "simulator/picture.h"
#include "simulator/screen_context.h"

#include <memory>
#include <vector>

namespace velmoranth::simulator {

// The platform's times in seconds and its curves: as a public re-creation of the screen fits them.
inline constexpr double kFolderDuration = 0.35;
inline constexpr double kFolderContentDuration = 0.25;

enum class Animated { no, yes };

class OpenFolder : public std::enable_shared_from_this<OpenFolder> {
  public:
    // The folder of an icon of the page, which draws back while it is open. Closed still, its views
    // in the page's window, behind those of `front` alone. Nil when an initialiser gave no view.
    [[nodiscard]] static std::shared_ptr<OpenFolder> create(
        const ScreenContext& context, platform::ViewRef page, std::shared_ptr<IconView> icon,
        const std::vector<platform::ViewRef>& front);

    void open(Animated animated);

    // A folder that closes already goes on; `completion` is called when it is gone.
    void close(Animated animated, const FolderCompletion& completion);

    // Closed, and its views gone.
    [[nodiscard]] bool isGone() const { return state_ == State::gone; }

    // A finger that goes down and up again there, points of the screen.
    void tap(const platform::Point& point);

    // Draws anew what the folder's materials blur. `size` is the screen's in pixels.
    void drawMaterials(desktop::PixelSize size) const;

    [[nodiscard]] const Folder& folder() const { return *icon_->item().folder; }

    [[nodiscard]] const std::shared_ptr<FloatyFolderView>& view() const { return view_; }

    [[nodiscard]] const std::shared_ptr<FolderControllerBackgroundView>& backgroundView() const {
        return background_;
    }

    // Where things are when it is open.
    [[nodiscard]] ShownFolder shown() const;

  private:
    enum class State { closed, open, closing, gone };

    OpenFolder(const ScreenContext& context, platform::ViewRef page, std::shared_ptr<IconView> icon)
        : context_(context),
          window_(desktop::ViewNode::of(page)->superview()),
          page_(std::move(page)),
          icon_(std::move(icon)) {}

    void setAlpha(const platform::ViewRef& view, double alpha) const;
    // The folder's icon knows while it moves.
    void setIconAnimating(bool isAnimating) const;
    [[nodiscard]] desktop::ViewTransform atIcon() const;
    void showOpen() const;
    void showClosed() const;
    void finishClosing();
    [[nodiscard]] std::shared_ptr<desktop::DesktopBitmapImage> drawBehind(
        const platform::ViewRef& front, desktop::PixelSize size) const;

    const ScreenContext& context_;
    platform::ViewRef window_;
    platform::ViewRef page_;
    std::shared_ptr<IconView> icon_;
    State state_ = State::closed;
    std::shared_ptr<FolderControllerBackgroundView> background_;
    std::shared_ptr<FloatyFolderView> view_;
    std::vector<FolderCompletion> completions_;
};

}  // namespace velmoranth::simulator
