// For the tests of docks, folders and page dots: views that records call by name
// ("-[UIView insertSubview:atIndex:] list picture 0"), and image views of that kind for whatever
// the replacements make. Animations are held back: a test runs their blocks itself.
#pragma once

#include "platform/platform.h"

#include "record/operations.h"
#include "record/recorder.h"
#include "springboard_fixture.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

// A view that records call by name.
class NamedView : public record::Named {
  public:
    [[nodiscard]] static std::string nameOf(const platform::ViewRef& view) {
        const auto* const named = dynamic_cast<const NamedView*>(view.get());
        return view == nullptr ? "nil" : named == nullptr ? "unnamed" : named->name_;
    }

    [[nodiscard]] std::string nameInRecords() const override { return name_; }

  protected:
    explicit NamedView(std::string name) : name_(std::move(name)) {}

  private:
    const std::string name_;
};

template <class Base>
class NamedViewOf : public HomeScreenView<Base>, public NamedView {
  public:
    NamedViewOf(std::string className, std::string name)
        : HomeScreenView<Base>(std::move(className)), NamedView(std::move(name)) {}
};

using PlainView = NamedViewOf<platform::View>;

// What the replacements make: a UIImageView with the name "picture".
class Picture final : public NamedViewOf<platform::ImageView> {
  public:
    Picture() : NamedViewOf<platform::ImageView>("UIImageView", "picture") {}

    [[nodiscard]] platform::ImageRef image() const override { return contents(); }

    void setImage(const platform::ImageRef& image) override { setContents(image); }
};

struct HeldRecognizer final : platform::GestureRecognizer {
    HeldRecognizer(const platform::Object& tapTarget, platform::Selector tapAction)
        : target(&tapTarget), action(std::move(tapAction)) {}

    [[nodiscard]] std::string className() const override { return "UITapGestureRecognizer"; }

    const platform::Object* target;
    platform::Selector action;
};

class HeldViews final : public platform::Views {
  public:
    struct Animation {
        std::function<void()> animations;
        std::function<void(bool finished)> completion;
    };

    // Nothing on the home screen's chrome makes these.
    platform::ViewRef viewWithFrame(const platform::Rect& /*frame*/) override { return nullptr; }

    platform::LabelRef labelWithFrame(const platform::Rect& /*frame*/) override { return nullptr; }

    platform::ImageViewRef imageView() override {
        if (whenAnImageViewIsMade) {
            whenAnImageViewIsMade();
        }
        return std::make_shared<Picture>();
    }

    platform::ImageViewRef imageViewWithImage(const platform::ImageRef& image) override {
        const platform::ImageViewRef view = std::make_shared<Picture>();
        view->setImage(image);
        view->setFrame({{0, 0}, platform::sizeOf(image)});
        return view;
    }

    platform::ImageViewRef imageViewWithFrame(const platform::Rect& frame) override {
        const auto view = std::make_shared<Picture>();
        view->setNodeFrame(frame);
        return view;
    }

    platform::GestureRecognizerRef tapGestureRecognizer(platform::Object& target,
                                                        const platform::Selector& action) override {
        return std::make_shared<HeldRecognizer>(target, action);
    }

    void animateWithDurationAnimationsCompletion(
        double /*duration*/, const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) override {
        held.push_back({animations, completion});
    }

    void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double /*duration*/, double /*delay*/, double /*damping*/, double /*initialVelocity*/,
        unsigned /*options*/, const std::function<void()>& /*animations*/,
        const std::function<void(bool finished)>& /*completion*/) override {}

    std::vector<Animation> held;
    std::function<void()> whenAnImageViewIsMade;
};

class ChromeProcess : public SpringBoardProcess {
  protected:
    ChromeProcess() { device.useServices({.views = &views}); }

    [[nodiscard]] std::shared_ptr<PlainView> plainView(const std::string& name,
                                                       const std::string& className = "UIView") {
        return std::make_shared<PlainView>(className, name);
    }

    // Gives a class an instance variable that holds what `view` holds at the time.
    template <class Receiver>
    void addViewVariable(const std::string& className, const std::string& name,
                         const platform::ViewRef& view) {
        device.runtime.addInstanceVariable<Receiver>(className, name,
                                                     [&view](Receiver&) { return view; });
    }

    // What the journal holds since the last time, without the search for pictures.
    Lines steps() {
        Lines lines = taken();
        std::erase_if(lines, [](const std::string& line) {
            return line.starts_with("+[NSDictionary dictionaryWithContentsOfFile:] ") ||
                   line.starts_with("+[UIImage imageWithContentsOfFile:] ");
        });
        return lines;
    }

    [[nodiscard]] static Lines namesOf(const std::vector<platform::ViewRef>& list) {
        Lines names;
        for (const platform::ViewRef& view : list) {
            names.push_back(NamedView::nameOf(view));
        }
        return names;
    }

    HeldViews views;
};

}  // namespace velmoranth::tests
