// For the tests of the calendar and clock icons: a process with both generators, replaced, in which
// views, labels, fonts and image contexts write what is asked of them into the journal ("date label
// setText 5"). Labels draw nothing, so that a picture depends on no font.
#pragma once

#include "core/format.h"
#include "desktop/plist/property_lists.h"
#include "desktop/views/layer.h"
#include "tests/hooks/springboard/chrome_fixture.h"

#include "icon_image_lines.h"

#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

struct NamedFont final : platform::Font {
    explicit NamedFont(std::string fontName) : name(std::move(fontName)) {}

    std::string name;

    [[nodiscard]] std::string className() const override { return "UIFont"; }
};

// Knows the one font "Helvetica".
class OneFont final : public platform::Fonts {
  public:
    explicit OneFont(Journal& journal) : journal_(journal) {}

    platform::FontRef fontWithNameSize(const platform::NullableString& name, double size) override {
        std::array<char, 40> points{};
        std::snprintf(points.data(), points.size(), "%.17g", size);
        const std::string font = name.value_or("nil") + " " + points.data();
        journal_.write("font " + font);
        return name == "Helvetica" ? std::make_shared<NamedFont>(font) : nullptr;
    }

  private:
    Journal& journal_;
};

[[nodiscard]] inline std::string text(const platform::Color& color) {
    return color == platform::kClearColor   ? "clear"
           : color == platform::kWhiteColor ? "white"
           : color == platform::kGrayColor
               ? "gray"
               : text(color.red * 255) + " " + text(color.green * 255) + " " +
                     text(color.blue * 255) + " " + text(color.alpha);
}

// The contexts of the process; each is known by whether it is the current one.
class WatchedContexts final : public platform::ImageContexts {
  public:
    WatchedContexts(Journal& journal, platform::ImageContexts& process)
        : journal_(journal), process_(process) {}

    platform::GraphicsContextRef current;
    platform::ImageRef snapshot;

    void beginImageContextWithOptions(platform::Size size, bool opaque, double scale) override {
        process_.beginImageContextWithOptions(size, opaque, scale);
    }

    platform::GraphicsContextRef getCurrentContext() override {
        journal_.write("currentContext");
        current = process_.getCurrentContext();
        return current;
    }

    platform::ImageRef getImageFromCurrentImageContext() override {
        snapshot = process_.getImageFromCurrentImageContext();
        return snapshot;
    }

    void endImageContext() override { process_.endImageContext(); }

  private:
    Journal& journal_;
    platform::ImageContexts& process_;
};

// The layer of a view, which writes when it is rendered.
class WatchedLayer final : public platform::Layer {
  public:
    WatchedLayer(std::shared_ptr<desktop::DesktopLayer> layer,
                 std::function<void(const platform::GraphicsContextRef&)> whenRendered)
        : layer_(std::move(layer)), whenRendered_(std::move(whenRendered)) {}

    [[nodiscard]] std::string className() const override { return "CALayer"; }

    [[nodiscard]] platform::Rect bounds() const override { return layer_->bounds(); }

    void renderInContext(const platform::GraphicsContextRef& context) override {
        whenRendered_(context);
        layer_->renderInContext(context);
    }

    // The generators change no layer.
    void setOpacity(float /*opacity*/) override { FAIL(); }

    void setMasksToBounds(bool /*masks*/) override { FAIL(); }

    void setShadowColor(const platform::Color& /*color*/) override { FAIL(); }

    void setShadowOpacity(float /*opacity*/) override { FAIL(); }

    void setShadowOffset(platform::Size /*offset*/) override { FAIL(); }

    void setShadowRadius(double /*radius*/) override { FAIL(); }

    void setShadowPathRect(const platform::Rect& /*rect*/) override { FAIL(); }

  private:
    std::shared_ptr<desktop::DesktopLayer> layer_;
    std::function<void(const platform::GraphicsContextRef&)> whenRendered_;
};

template <class Base>
class DrawnView : public WritingView<Base> {
  public:
    DrawnView(Journal& journal, const WatchedContexts& contexts, std::string className,
              std::string name)
        : WritingView<Base>(journal, std::move(className), std::move(name)), contexts_(contexts) {}

    void setBackgroundColor(const platform::Color& color) override {
        this->write("setBackgroundColor " + text(color));
        WritingView<Base>::setBackgroundColor(color);
    }

    [[nodiscard]] platform::LayerRef layer() override {
        return std::make_shared<WatchedLayer>(
            this->desktopLayer(), [this](const platform::GraphicsContextRef& context) {
                const bool isCurrent = context == contexts_.current;
                this->write(isCurrent ? "render" : "render elsewhere");
            });
    }

  private:
    const WatchedContexts& contexts_;
};

class DrawnPicture final : public DrawnView<platform::ImageView> {
  public:
    using DrawnView::DrawnView;

    [[nodiscard]] platform::ImageRef image() const override { return contents(); }

    void setImage(const platform::ImageRef& image) override {
        write(image == nullptr ? "setImage nil" : "setImage");
        setContents(image);
    }
};

class DrawnLabel final : public DrawnView<platform::Label> {
  public:
    using DrawnView::DrawnView;

    platform::Size shadowOffset;

    void setFont(const platform::FontRef& font) override {
        const auto named = std::dynamic_pointer_cast<NamedFont>(font);
        write("setFont " + (named == nullptr ? "nil" : named->name));
    }

    void setTextAlignment(platform::TextAlignment alignment) override {
        write("setTextAlignment " + std::to_string(static_cast<int>(alignment)));
    }

    void setText(const platform::NullableString& string) override {
        write("setText " + string.value_or("nil"));
    }

    void setTextColor(const platform::Color& color) override {
        write("setTextColor " + text(color));
    }

    void setShadowColor(const platform::Color& color) override {
        write("setShadowColor " + text(color));
    }

    void setShadowOffset(platform::Size offset) override {
        write("setShadowOffset " + text(offset));
        shadowOffset = offset;
    }
};

class DrawnViews final : public platform::Views {
  public:
    DrawnViews(Journal& journal, const WatchedContexts& contexts)
        : journal_(journal), contexts_(contexts) {}

    std::shared_ptr<DrawnView<platform::View>> container;
    std::shared_ptr<DrawnPicture> picture;
    // The day of the month, then the weekday.
    std::vector<std::shared_ptr<DrawnLabel>> labels;

    platform::ViewRef viewWithFrame(const platform::Rect& frame) override {
        journal_.write("viewWithFrame " + text(frame));
        container = made<DrawnView<platform::View>>("UIView", "container", frame);
        return container;
    }

    platform::LabelRef labelWithFrame(const platform::Rect& frame) override {
        journal_.write("labelWithFrame " + text(frame));
        labels.push_back(
            made<DrawnLabel>("UILabel", labels.empty() ? "date label" : "weekday label", frame));
        return labels.back();
    }

    platform::ImageViewRef imageView() override { return nullptr; }

    // The overlay's.
    platform::ImageViewRef imageViewWithImage(const platform::ImageRef& image) override {
        journal_.write("imageViewWithImage");
        const platform::ImageViewRef view = made<DrawnPicture>(
            "UIImageView", "base", platform::Rect{{0, 0}, platform::sizeOf(image)});
        view->setImage(image);
        return view;
    }

    platform::ImageViewRef imageViewWithFrame(const platform::Rect& frame) override {
        journal_.write("imageViewWithFrame " + text(frame));
        picture = made<DrawnPicture>("UIImageView", "picture", frame);
        return picture;
    }

    platform::GestureRecognizerRef tapGestureRecognizer(
        platform::Object& /*target*/, const platform::Selector& /*action*/) override {
        return nullptr;
    }

    void animateWithDurationAnimationsCompletion(
        double /*duration*/, const std::function<void()>& /*animations*/,
        const std::function<void(bool finished)>& /*completion*/) override {}

    void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double /*duration*/, double /*delay*/, double /*damping*/, double /*initialVelocity*/,
        unsigned /*options*/, const std::function<void()>& /*animations*/,
        const std::function<void(bool finished)>& /*completion*/) override {}

  private:
    template <class T>
    std::shared_ptr<T> made(const std::string& className, const std::string& name,
                            const platform::Rect& frame) {
        auto view = std::make_shared<T>(journal_, contexts_, className, name);
        view->setNodeFrame(frame);
        return view;
    }

    Journal& journal_;
    const WatchedContexts& contexts_;
};

struct TestCalendarIcon final : platform::SBCalendarApplicationIcon {
    [[nodiscard]] std::string className() const override { return "SBCalendarApplicationIcon"; }

    [[nodiscard]] platform::NullableString leafIdentifier() const override { return "leaf"; }

    [[nodiscard]] platform::NullableString nodeIdentifier() const override { return "node"; }

    [[nodiscard]] platform::NullableString uniqueIdentifier() const override { return "unique"; }
};

class DrawnIcons : public IconProcess {
  protected:
    static constexpr const char* kClockClass = "SBHClockApplicationIconImageView";
    static constexpr const char* kClockSelector =
        "generateProcessedMappedIconImageWithName:imageInfo:includingMask:";

    explicit DrawnIcons(double versionNumber = kiOS13) {
        using platform::Class;
        using platform::NullableString;
        using platform::SBCalendarApplicationIcon;
        using platform::SBIconImageInfo;
        addImageMethod<SBCalendarApplicationIcon, SBIconImageInfo>(
            "SBCalendarApplicationIcon", "generateIconImageWithInfo:",
            [this](SBCalendarApplicationIcon& self, SBIconImageInfo asked) {
                return answer(std::string("orig ") + (&self == &calendar ? "calendar " : "other ") +
                              textOfInfo(asked));
            });
        device.runtime.addClass(kClockClass);
        device.runtime.addClass("SBHClockVariant", kClockClass);
        device.runtime.addClassMethod(
            kClockClass, kClockSelector,
            std::function<ImageRef(Class&, NullableString, SBIconImageInfo, bool)>(
                [this](Class& self, NullableString name, SBIconImageInfo asked, bool masks) {
                    return answer(clockCall(name, asked, masks, self.name()));
                }));
        install(versionNumber);
        replaceServices({.imageContexts = &contexts, .fonts = &fonts, .views = &views});
    }

    [[nodiscard]] static std::string textOfInfo(const platform::SBIconImageInfo& asked) {
        return text(asked.size) + " " + text(asked.scale) + " " +
               text(asked.continuousCornerRadius);
    }

    [[nodiscard]] std::string calendarCall() const { return "orig calendar " + textOfInfo(info); }

    [[nodiscard]] static std::string clockCall(const platform::NullableString& name,
                                               const platform::SBIconImageInfo& asked, bool masks,
                                               const std::string& className = kClockClass) {
        return "orig [" + className + "] " + textOf(name) + " " + textOfInfo(asked) +
               (masks ? " masked" : " unmasked");
    }

    ImageRef calendarIcon() {
        return device.runtime.send<ImageRef>(calendar, "generateIconImageWithInfo:", info);
    }

    ImageRef clockIcon(const platform::NullableString& name = "Clock", bool masks = true,
                       const std::string& className = kClockClass) {
        return device.runtime.sendToClass<ImageRef>(className, kClockSelector, name, info, masks);
    }

    // Writes the theme's Info.plist.
    void infoPlist(const platform::Dictionary& values, const std::string& theme = "A") const {
        plist("/Library/Themes/" + theme + "/Info.plist", values);
    }

    void plist(const std::string& path, const platform::Dictionary& values) const {
        const platform::Data bytes = desktop::writeXmlPropertyList(values);
        device.file(path, std::string(bytes.begin(), bytes.end()));
    }

    TestCalendarIcon calendar;
    // 6 × 9 pixels.
    platform::SBIconImageInfo info{{2, 3}, 1.5, 13.25};
    WatchedContexts contexts{device.journal, platform::platform().imageContexts};
    OneFont fonts{device.journal};
    DrawnViews views{device.journal, contexts};
};

}  // namespace velmoranth::tests
