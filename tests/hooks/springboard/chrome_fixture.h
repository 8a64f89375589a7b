// For the tests of docks, folders and page dots: views that write the messages that change them
// into the journal ("list insertSubview picture at 0"), and image views of that kind for whatever
// the replacements make. Animations are held back: a test runs their blocks itself.
#pragma once

#include "platform/platform.h"
#include "tests/support/replaced_services.h"

#include "springboard_fixture.h"

#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

// A view that a journal knows by name.
class NamedView {
  public:
    NamedView(const NamedView&) = delete;
    NamedView& operator=(const NamedView&) = delete;

    [[nodiscard]] static std::string nameOf(const platform::ViewRef& view) {
        const auto* const named = dynamic_cast<const NamedView*>(view.get());
        return view == nullptr ? "nil" : named == nullptr ? "unnamed" : named->name_;
    }

  protected:
    NamedView(Journal& journal, std::string name) : journal_(journal), name_(std::move(name)) {}

    virtual ~NamedView() = default;

    void write(const std::string& message) const { journal_.write(name_ + " " + message); }

  private:
    Journal& journal_;
    std::string name_;
};

template <class Base>
class WritingView : public HomeScreenView<Base>, public NamedView {
  public:
    WritingView(Journal& journal, std::string className, std::string name)
        : HomeScreenView<Base>(std::move(className)), NamedView(journal, std::move(name)) {}

    void setTag(int tag) override {
        write("setTag " + std::to_string(tag));
        HomeScreenView<Base>::setTag(tag);
    }

    void setFrame(const platform::Rect& frame) override {
        write("setFrame " + text(frame));
        HomeScreenView<Base>::setFrame(frame);
    }

    void addSubview(const platform::ViewRef& view) override {
        write("addSubview " + nameOf(view));
        HomeScreenView<Base>::addSubview(view);
    }

    void insertSubviewAtIndex(const platform::ViewRef& view, std::size_t index) override {
        write("insertSubview " + nameOf(view) + " at " + std::to_string(index));
        HomeScreenView<Base>::insertSubviewAtIndex(view, index);
    }

    void removeFromSuperview() override {
        write("removeFromSuperview");
        HomeScreenView<Base>::removeFromSuperview();
    }

    void setAlpha(double alpha) override {
        write("setAlpha " + text(alpha));
        HomeScreenView<Base>::setAlpha(alpha);
    }

    void setHidden(bool hidden) override {
        write(hidden ? "setHidden YES" : "setHidden NO");
        HomeScreenView<Base>::setHidden(hidden);
    }

    void addGestureRecognizer(const platform::GestureRecognizerRef& recognizer) override {
        write("addGestureRecognizer");
        HomeScreenView<Base>::addGestureRecognizer(recognizer);
    }
};

using PlainView = WritingView<platform::View>;

// What the replacements make: a UIImageView with the name "picture".
class Picture final : public WritingView<platform::ImageView> {
  public:
    explicit Picture(Journal& journal)
        : WritingView<platform::ImageView>(journal, "UIImageView", "picture") {}

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

    explicit HeldViews(Journal& journal) : journal_(journal) {}

    // Nothing on the home screen's chrome makes these.
    platform::ViewRef viewWithFrame(const platform::Rect& /*frame*/) override { return nullptr; }

    platform::LabelRef labelWithFrame(const platform::Rect& /*frame*/) override { return nullptr; }

    platform::ImageViewRef imageView() override {
        journal_.write("imageView");
        if (whenAnImageViewIsMade) {
            whenAnImageViewIsMade();
        }
        return made();
    }

    platform::ImageViewRef imageViewWithImage(const platform::ImageRef& image) override {
        journal_.write("imageViewWithImage");
        const platform::ImageViewRef view = made();
        view->setImage(image);
        view->setFrame({{0, 0}, platform::sizeOf(image)});
        return view;
    }

    platform::ImageViewRef imageViewWithFrame(const platform::Rect& frame) override {
        journal_.write("imageViewWithFrame " + text(frame));
        const auto view = made();
        view->setNodeFrame(frame);
        return view;
    }

    platform::GestureRecognizerRef tapGestureRecognizer(platform::Object& target,
                                                        const platform::Selector& action) override {
        journal_.write("tapGestureRecognizer " + target.className() + " " + action);
        return std::make_shared<HeldRecognizer>(target, action);
    }

    void animateWithDurationAnimationsCompletion(
        double duration, const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) override {
        std::array<char, 40> seconds{};
        std::snprintf(seconds.data(), seconds.size(), "%.17g", duration);
        journal_.write("animate " + std::string(seconds.data()));
        held.push_back({animations, completion});
    }

    void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double /*duration*/, double /*delay*/, double /*damping*/, double /*initialVelocity*/,
        unsigned /*options*/, const std::function<void()>& /*animations*/,
        const std::function<void(bool finished)>& /*completion*/) override {}

    std::vector<Animation> held;
    std::function<void()> whenAnImageViewIsMade;

  private:
    [[nodiscard]] std::shared_ptr<Picture> made() const {
        return std::make_shared<Picture>(journal_);
    }

    Journal& journal_;
};

class ChromeProcess : public SpringBoardProcess {
  protected:
    ChromeProcess() { replaceServices({.views = &views}); }

    [[nodiscard]] std::shared_ptr<PlainView> plainView(const std::string& name,
                                                       const std::string& className = "UIView") {
        return std::make_shared<PlainView>(device.journal, className, name);
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
            return line.starts_with("readPlist ") || line.starts_with("load ");
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

    HeldViews views{device.journal};
};

}  // namespace velmoranth::tests
