// For the tests of the success image: image views, the root view and animations whose every step is
// in the journal.
#pragma once

#include "desktop/views/views.h"

#include "panel_fixture.h"

namespace velmoranth::filemanager {

// "image view 1 frame {…}": numbered from 1 on in the order in which they were made.
class RecordingImageView final : public desktop::DesktopImageView {
  public:
    RecordingImageView(tests::Journal& journal, int number, const platform::Rect& frame)
        : DesktopImageView(frame),
          journal_(journal),
          name_("image view " + std::to_string(number)) {}

    void setFrame(const platform::Rect& frame) override {
        journal_.write(name_ + " frame " + tests::text(frame));
        DesktopImageView::setFrame(frame);
    }

    void setImage(const platform::ImageRef& image) override {
        journal_.write(name_ + (image == nullptr ? " image nil" : " image"));
        DesktopImageView::setImage(image);
    }

    void setHidden(bool hidden) override {
        journal_.write(name_ + (hidden ? " hidden" : " shown"));
        DesktopImageView::setHidden(hidden);
    }

    void removeFromSuperview() override {
        journal_.write(name_ + " removed");
        DesktopImageView::removeFromSuperview();
    }

    [[nodiscard]] const std::string& name() const { return name_; }

  private:
    tests::Journal& journal_;
    std::string name_;
};

class RecordingRootView final : public desktop::DesktopView {
  public:
    RecordingRootView(tests::Journal& journal, const platform::Rect& frame)
        : DesktopView(frame), journal_(journal) {}

    void addSubview(const platform::ViewRef& view) override {
        const auto image = std::dynamic_pointer_cast<RecordingImageView>(view);
        journal_.write("add " + (image == nullptr ? std::string("another view") : image->name()));
        DesktopView::addSubview(view);
    }

  private:
    tests::Journal& journal_;
};

// Around those of the device.
class RecordingImageViews final : public platform::Views {
  public:
    RecordingImageViews(tests::Journal& journal, platform::Views& real)
        : journal_(journal), real_(real) {}

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
        journal_.write("imageViewWithFrame " + tests::text(frame));
        made.push_back(std::make_shared<RecordingImageView>(
            journal_, static_cast<int>(made.size()) + 1, frame));
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
                duration, delay, damping, initialVelocity, options,
                [this, animations] {
                    journal_.write("animations");
                    animations();
                    journal_.write("animations end");
                },
                [this, completion](bool finished) {
                    journal_.write("completion");
                    completion(finished);
                    journal_.write("completion end");
                });
    }

    std::vector<std::shared_ptr<RecordingImageView>> made;

  private:
    tests::Journal& journal_;
    platform::Views& real_;
};

inline const Lines kSpring{
    "spring 0.29999999999999999 delay 0 damping 0.5 velocity 0.5 options 65536 completion"};

// A frame of the success image that stands at that point with sides of that length.
[[nodiscard]] inline std::string frameText(double x, double y, double side) {
    return tests::text(platform::Rect{{x, y}, {side, side}});
}

// What showing writes up to the image; `name` is the view's that presents.
[[nodiscard]] inline Lines openingLines(int number, const std::string& path, bool hasImage,
                                        double x, double y, const std::string& name = "root") {
    return {"keyWindow", "view of " + name, "imageViewWithFrame " + frameText(x, y, 0),
            "load " + path,
            "image view " + std::to_string(number) + (hasImage ? " image" : " image nil")};
}

[[nodiscard]] inline Lines animationLines(int number, double x, double y, double side,
                                          const std::string& name = "root") {
    return joined({kSpring,
                   {"animations", "view of " + name,
                    "image view " + std::to_string(number) + " frame " + frameText(x, y, side),
                    "animations end"}});
}

// All of it. The origin is that of 375 × 812 points unless another one is given.
[[nodiscard]] inline Lines showLines(int number, const std::string& path, bool hasImage,
                                     double x = 147.5, double y = 366,
                                     const std::string& name = "root") {
    return joined({openingLines(number, path, hasImage, x, y, name),
                   animationLines(number, x, y, 200, name),
                   {"view of " + name, "add image view " + std::to_string(number),
                    "dispatchAfter 600000000"}});
}

[[nodiscard]] inline Lines finishLines(int number, double x = 147.5, double y = 366,
                                       const std::string& name = "root") {
    const std::string view = "image view " + std::to_string(number);
    return joined({animationLines(number, x, y, 0, name), {view + " hidden", view + " removed"}});
}

class SuccessImages : public PanelFiles {
  protected:
    SuccessImages() {
        tests::replaceServices({.views = &views});
        rootView = showRoot("root", {{0, 0}, {375, 812}});
        device.journal.clear();
    }

    std::shared_ptr<RecordingRootView> showRoot(const std::string& name,
                                                const platform::Rect& frame) {
        auto view = std::make_shared<RecordingRootView>(device.journal, frame);
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

    RecordingImageViews views{device.journal, platform::platform().views};
    std::shared_ptr<RecordingRootView> rootView;
    std::shared_ptr<tests::RecordingViewController> root;
};

}  // namespace velmoranth::filemanager
