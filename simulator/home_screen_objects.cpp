#include "simulator/home_screen_objects.h"

namespace velmoranth::simulator {

IconView::IconView(const platform::Rect& frame, const Frames& frames, ApplicationIconRef icon,
                   std::shared_ptr<IconLabelView> label)
    : DesktopView(frame),
      frames_(frames),
      icon_(std::move(icon)),
      imageView_(std::make_shared<IconImageView>(icon_)),
      label_(std::move(label)) {}

std::shared_ptr<IconView> IconView::create(const platform::Rect& frame, const Frames& frames,
                                           const ApplicationIconRef& icon,
                                           std::shared_ptr<IconLabelView> label) {
    const std::shared_ptr<IconView> view(new IconView(frame, frames, icon, std::move(label)));
    view->addSubview(view->imageView_);
    view->addSubview(view->label_);
    return view;
}

void IconView::placeSubviews() {
    imageView_->setFrame(frames_.image);
    if (label_ != nullptr) {
        label_->setFrame(frames_.label);
    }
}

}  // namespace velmoranth::simulator
