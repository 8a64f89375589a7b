#include "simulator/home_screen/folder_icon_views.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace velmoranth::simulator {

using platform::ImageRef;
using platform::Rect;
using platform::SBIconRef;
using platform::ViewRef;

namespace {

// A real screenshot measured by pixel, and a public re-creation, of an icon of 60 points: three
// cells of 13 a row, 3 apart, 7.5 from the edge.
constexpr double kMeasuredSide = 60;
constexpr double kCellSide = 13;
constexpr double kCellPitch = 16;
constexpr double kCellInset = 7.5;
constexpr std::size_t kColumns = 3;
constexpr std::size_t kCells = 9;

}  // namespace

ViewRef FolderIconImageView::create(const ScreenContext& context, const SBIconRef& icon,
                                    const Rect& frame) {
    const std::shared_ptr<FolderIconImageView> view(new FolderIconImageView(context, icon));
    return context.runtime.send<ViewRef, Rect>(*view, "initWithFrame:", frame);
}

ViewRef FolderIconImageView::init(const Rect& frame) {
    for (const ViewRef& view : {plate_, grid_}) {
        if (view != nullptr) {
            view->removeFromSuperview();
        }
    }
    setFrame(frame);
    const Rect bounds{{0, 0}, frame.size};
    plate_ = std::make_shared<NamedView>(
        context_.device.system.major < 13 ? "SBFolderIconBackgroundView" : "UIView", bounds);
    grid_ = std::make_shared<NamedView>("UIView", bounds);
    cells_.clear();
    addSubview(plate_);
    addSubview(grid_);
    setPlateImage(plateImage_);
    return ViewRef(shared_from_this(), this);
}

void FolderIconImageView::setPlateImage(const ImageRef& image) {
    plateImage_ = image;
    desktop::ViewNode::of(plate_)->setContents(image);
}

void FolderIconImageView::placeSubviews() {
    const Rect bounds = this->bounds();
    plate_->setFrame(bounds);
    grid_->setFrame(bounds);
    const auto folder = std::dynamic_pointer_cast<FolderIcon>(icon_);
    const std::span<const App> apps =
        folder == nullptr ? std::span<const App>() : folder->folder().apps;
    const double unit = bounds.size.width / kMeasuredSide;
    for (std::size_t i = 0; i < std::min(apps.size(), kCells); ++i) {
        if (i == cells_.size()) {
            cells_.push_back(std::make_shared<desktop::DesktopImageView>());
            grid_->addSubview(cells_.back());
        }
        const std::size_t rowIndex = i / kColumns;
        const auto column = static_cast<double>(i % kColumns);
        const auto row = static_cast<double>(rowIndex);
        cells_[i]->setFrame(
            {{(kCellInset + column * kCellPitch) * unit, (kCellInset + row * kCellPitch) * unit},
             {kCellSide * unit, kCellSide * unit}});
        cells_[i]->setImage(context_.runtime.send<ImageRef, SBIconRef>(
            *context_.folderIconImageCache, "gridCellImageForIcon:", makeApplicationIcon(apps[i])));
    }
}

}  // namespace velmoranth::simulator
