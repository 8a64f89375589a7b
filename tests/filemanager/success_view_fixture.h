// For the tests of the success image: image views that records call by their numbers.
#pragma once

#include "desktop/views/views.h"

#include "panel_fixture.h"

namespace velmoranth::filemanager {

// "image view 1": numbered from 1 on in the order in which they were made.
class NumberedImageView final : public desktop::DesktopImageView, public record::Named {
  public:
    NumberedImageView(int number, const platform::Rect& frame)
        : DesktopImageView(frame), number_(number) {}

    [[nodiscard]] std::string nameInRecords() const override {
        return "image view " + std::to_string(number_);
    }

  private:
    const int number_;
};

// Those of the device, but for the image views with a frame.
class NumberedImageViews final : public platform::Views {
  public:
    explicit NumberedImageViews(platform::Views& real) : real_(real) {}

    platform::ViewRef viewWithFrame(const platform::Rect& frame) override {
        return real_.viewWithFrame(frame);
    }

    platform::LabelRef labelWithFrame(const platform::Rect& frame) override {
        return real_.labelWithFrame(frame);
    }

    platform::ImageViewRef imageView() override { return real_.imageView(); }

    platform::ImageViewRef imageViewWithImage(const platform::ImageRef& image) override {
        return real_.imageViewWithImage(image);
    }

    platform::ImageViewRef imageViewWithFrame(const platform::Rect& frame) override {
        made.push_back(
            std::make_shared<NumberedImageView>(static_cast<int>(made.size()) + 1, frame));
        return made.back();
    }

    platform::GestureRecognizerRef tapGestureRecognizer(platform::Object& target,
                                                        const platform::Selector& action) override {
        return real_.tapGestureRecognizer(target, action);
    }

    void animateWithDurationAnimationsCompletion(
        double duration, const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) override {
        real_.animateWithDurationAnimationsCompletion(duration, animations, completion);
    }

    void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double duration, double delay, double damping, double initialVelocity, unsigned options,
        const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) override {
        real_
            .animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
                duration, delay, damping, initialVelocity, options, animations, completion);
    }

    std::vector<std::shared_ptr<NumberedImageView>> made;

  private:
    platform::Views& real_;
};

inline const std::string kAnimate =
    "+[UIView animateWithDuration:delay:usingSpringWithDamping:initialSpringVelocity:options:"
    "animations:completion:]";
inline const Lines kSpring{kAnimate + " 0.3 0 0.5 0.5 65536 set set"};

// A frame of the success image that stands at that point with sides of that length.
[[nodiscard]] inline std::string frameText(double x, double y, double side) {
    return record::words(platform::Rect{{x, y}, {side, side}});
}

[[nodiscard]] inline std::string setFrameLine(int number, double x, double y, double side) {
    return "-[UIView setFrame:] image view " + std::to_string(number) + " " + frameText(x, y, side);
}

// What showing writes up to the image, of 4 × 4 pixels where there is one; `name` is the view's
// that presents.
[[nodiscard]] inline Lines openingLines(int number, const std::string& path, bool hasImage,
                                        double x, double y, const std::string& name = "root") {
    return {"-[UIApplication keyWindow]", "-[UIViewController view] " + name,
            "-[UIImageView initWithFrame:] " + frameText(x, y, 0),
            "+[UIImage imageWithContentsOfFile:] " + path,
            "-[UIImageView setImage:] image view " + std::to_string(number) +
                (hasImage ? " 4×4 @1x" : " nil")};
}

[[nodiscard]] inline Lines animationLines(int number, double x, double y, double side,
                                          const std::string& name = "root") {
    return joined({kSpring, tests::calledBack(kAnimate, {"-[UIViewController view] " + name,
                                                         setFrameLine(number, x, y, side)})});
}

// All of it. The origin is that of 375 × 812 points unless another one is given.
[[nodiscard]] inline Lines showLines(int number, const std::string& path, bool hasImage,
                                     double x = 147.5, double y = 366,
                                     const std::string& name = "root") {
    return joined({openingLines(number, path, hasImage, x, y, name),
                   animationLines(number, x, y, 200, name),
                   {"-[UIViewController view] " + name,
                    "-[UIView addSubview:] UIView image view " + std::to_string(number),
                    "dispatch_after 600000000"}});
}

[[nodiscard]] inline Lines finishLines(int number, double x = 147.5, double y = 366,
                                       const std::string& name = "root") {
    const std::string view = "image view " + std::to_string(number);
    return joined(
        {animationLines(number, x, y, 0, name),
         {"-[UIView setHidden:] " + view + " YES", "-[UIView removeFromSuperview] " + view}});
}

// The same, when its time comes.
[[nodiscard]] inline Lines timedFinishLines(int number, double x = 147.5, double y = 366,
                                            const std::string& name = "root") {
    return tests::calledBack("dispatch_after", finishLines(number, x, y, name));
}

class SuccessImages : public PanelFiles {
  protected:
    SuccessImages() {
        device.useServices({.views = &views});
        rootView = showRoot("root", {{0, 0}, {375, 812}});
        device.journal.clear();
    }

    std::shared_ptr<desktop::DesktopView> showRoot(const std::string& name,
                                                   const platform::Rect& frame) {
        auto view = std::make_shared<desktop::DesktopView>(frame);
        root = device.application.showRoot(name, view);
        return view;
    }

    // Runs what waits on the main queue, the oldest first, as often as that.
    void runMainQueue(std::size_t count = 1) {
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_FALSE(device.libSystem.mainQueue.empty());
            const auto block = device.libSystem.mainQueue.front().second;
            device.libSystem.mainQueue.erase(device.libSystem.mainQueue.begin());
            block();
        }
    }

    Lines takeLines() {
        Lines lines = device.journal.lines();
        device.journal.clear();
        return lines;
    }

    NumberedImageViews views{device.services().views};
    std::shared_ptr<desktop::DesktopView> rootView;
    std::shared_ptr<tests::TestViewController> root;
};

}  // namespace velmoranth::filemanager
