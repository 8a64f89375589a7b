// For the tests of the calendar and clock icons: a process with both generators, replaced, in which
// records call views, labels and fonts by name ("-[UILabel setText:] date label "5""). Labels draw
// nothing, so that a picture depends on no font.
#pragma once

#include "core/format.h"
#include "desktop/plist/property_lists.h"
#include "desktop/views/layer.h"
#include "tests/hooks/springboard/chrome_fixture.h"

#include "icon_image_lines.h"
#include "record/operations.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

struct NamedFont final : platform::Font, record::Named {
    explicit NamedFont(std::string fontName) : name(std::move(fontName)) {}

    std::string name;

    [[nodiscard]] std::string className() const override { return "UIFont"; }

    [[nodiscard]] std::string nameInRecords() const override { return name; }
};

// Knows the one font "Helvetica".
struct OneFont final : platform::Fonts {
    std::vector<platform::NullableString> asked;  // whole, as records cut long ones off

    platform::FontRef fontWithNameSize(const platform::NullableString& name, double size) override {
        asked.push_back(name);
        return name == "Helvetica" ? std::make_shared<NamedFont>(*name + " " + record::words(size))
                                   : nullptr;
    }
};

// The contexts of the process; each is known by whether it is the current one.
class WatchedContexts final : public platform::ImageContexts {
  public:
    explicit WatchedContexts(platform::ImageContexts& process) : process_(process) {}

    platform::GraphicsContextRef current;
    platform::ImageRef snapshot;

    void beginImageContextWithOptions(platform::Size size, bool opaque, double scale) override {
        process_.beginImageContextWithOptions(size, opaque, scale);
    }

    platform::GraphicsContextRef getCurrentContext() override {
        current = process_.getCurrentContext();
        return current;
    }

    platform::ImageRef getImageFromCurrentImageContext() override {
        snapshot = process_.getImageFromCurrentImageContext();
        return snapshot;
    }

    void endImageContext() override { process_.endImageContext(); }

  private:
    platform::ImageContexts& process_;
};

// The layer of a view, which draws nothing of its subviews but what they draw themselves.
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
class DrawnView : public NamedViewOf<Base> {
  public:
    DrawnView(const WatchedContexts& contexts, std::string className, std::string name)
        : NamedViewOf<Base>(std::move(className), std::move(name)), contexts_(contexts) {}

    [[nodiscard]] platform::LayerRef layer() override {
        return std::make_shared<WatchedLayer>(this->desktopLayer(),
                                              [this](const platform::GraphicsContextRef& context) {
                                                  EXPECT_EQ(context, contexts_.current);
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
        record::tell(*this, record::messageOf("ImageView", "setImage"), image);
        setContents(image);
    }
};

class DrawnLabel final : public DrawnView<platform::Label> {
  public:
    using DrawnView::DrawnView;

    platform::Size shadowOffset;

    void setFont(const platform::FontRef& font) override {
        record::tell(*this, record::messageOf("Label", "setFont"), font);
    }

    void setTextAlignment(platform::TextAlignment alignment) override {
        record::tell(*this, record::messageOf("Label", "setTextAlignment"), alignment);
    }

    void setText(const platform::NullableString& string) override {
        record::tell(*this, record::messageOf("Label", "setText"), string);
    }

    void setTextColor(const platform::Color& color) override {
        record::tell(*this, record::messageOf("Label", "setTextColor"), color);
    }

    void setShadowColor(const platform::Color& color) override {
        record::tell(*this, record::messageOf("Label", "setShadowColor"), color);
    }

    void setShadowOffset(platform::Size offset) override {
        record::tell(*this, record::messageOf("Label", "setShadowOffset"), offset);
        shadowOffset = offset;
    }
};

class DrawnViews final : public platform::Views {
  public:
    explicit DrawnViews(const WatchedContexts& contexts) : contexts_(contexts) {}

    std::shared_ptr<DrawnView<platform::View>> container;
    std::shared_ptr<DrawnPicture> picture;
    // The day of the month, then the weekday.
    std::vector<std::shared_ptr<DrawnLabel>> labels;

    platform::ViewRef viewWithFrame(const platform::Rect& frame) override {
        container = made<DrawnView<platform::View>>("UIView", "container", frame);
        return container;
    }

    platform::LabelRef labelWithFrame(const platform::Rect& frame) override {
        labels.push_back(
            made<DrawnLabel>("UILabel", labels.empty() ? "date label" : "weekday label", frame));
        return labels.back();
    }

    platform::ImageViewRef imageView() override { return nullptr; }

    // The overlay's.
    platform::ImageViewRef imageViewWithImage(const platform::ImageRef& image) override {
        const platform::ImageViewRef view = made<DrawnPicture>(
            "UIImageView", "base", platform::Rect{{0, 0}, platform::sizeOf(image)});
        view->setImage(image);
        return view;
    }

    platform::ImageViewRef imageViewWithFrame(const platform::Rect& frame) override {
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
        auto view = std::make_shared<T>(contexts_, className, name);
        view->setNodeFrame(frame);
        return view;
    }

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
        device.useServices({.imageContexts = &contexts, .fonts = &fonts, .views = &views});
    }

    [[nodiscard]] static std::string textOfInfo(const platform::SBIconImageInfo& asked) {
        return record::words(asked.size) + " " + text(asked.scale) + " " +
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
    WatchedContexts contexts{device.services().imageContexts};
    OneFont fonts;
    DrawnViews views{contexts};
};

}  // namespace velmoranth::tests
