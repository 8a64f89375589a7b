// For the tests of the other services that give icons and small images: a process that has all
// seven, replaced, each of whose methods writes its call with its receiver and arguments.
#pragma once

#include "icon_image_lines.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace velmoranth::tests {

struct TestWidget final : platform::WGWidgetInfo {
    // Answers the question for the identifier; the first is 1.
    std::function<platform::NullableString(int question)> identifier = [](int) {
        return std::nullopt;
    };
    mutable int questions = 0;

    [[nodiscard]] std::string className() const override { return "WGWidgetInfo"; }

    [[nodiscard]] platform::NullableString widgetIdentifier() const override {
        return identifier(++questions);
    }
};

struct TestSettingsIcons final : platform::PKIconImageCache {
    [[nodiscard]] std::string className() const override { return "PKIconImageCache"; }
};

struct TestNotificationIcon final : platform::UNNotificationIcon {
    [[nodiscard]] std::string className() const override { return "UNNotificationIcon"; }

    [[nodiscard]] platform::Size size() const override { return {}; }

    [[nodiscard]] double scale() const override { return 1; }

    [[nodiscard]] platform::BitmapImageRef bitmap() const override { return nullptr; }

    [[nodiscard]] bool hasCIImage() const override { return false; }
};

class IconSources : public IconProcess {
  protected:
    using Class = platform::Class;
    using NullableString = platform::NullableString;
    using ObjectRef = platform::ObjectRef;
    using Size = platform::Size;

    explicit IconSources(double versionNumber = kiOS13) {
        using platform::PKIconImageCache;
        using platform::SBSwitcherAppSuggestionBannerView;
        using platform::UISwitchModernVisualElement;
        using platform::UNNotificationIcon;
        using platform::WGWidgetInfo;
        addImageMethod<WGWidgetInfo, Size, double, NullableString, ObjectRef>(
            "WGWidgetInfo", kWidgetSelector,
            [this](WGWidgetInfo& self, Size size, double scale, NullableString identifier,
                   ObjectRef asked) {
                return wideningAnswer(receiver(self, widget) + record::words(size) + " " +
                                      text(scale) + " " + textOf(identifier) + " " + textOf(asked));
            });
        addImageMethod<SBSwitcherAppSuggestionBannerView, NullableString, ObjectRef>(
            "SBSwitcherAppSuggestionBannerView", kBannerSelector,
            [this](SBSwitcherAppSuggestionBannerView& self, NullableString identifier,
                   ObjectRef cache) {
                return wideningAnswer(receiver(self, *banner) + textOf(identifier) + " " +
                                      textOf(cache));
            });
        addImageMethod<PKIconImageCache, NullableString>(
            "PKIconImageCache", "imageForKey:", [this](PKIconImageCache& self, NullableString key) {
                return wideningAnswer(receiver(self, settingsIcons) + textOf(key));
            });
        addImageMethod<UNNotificationIcon, NullableString, NullableString, NullableString>(
            "UNNotificationIcon", kNotificationSelector,
            [this](UNNotificationIcon& self, NullableString name, NullableString path,
                   NullableString identifier) {
                return wideningAnswer(receiver(self, notificationIcon) + textOf(name) + " " +
                                      textOf(path) + " " + textOf(identifier));
            });
        addImageMethod<UISwitchModernVisualElement>(
            "UISwitchModernVisualElement", "_effectiveThumbImage",
            [this](UISwitchModernVisualElement& self) {
                return wideningAnswer(receiver(self, *switchElement));
            });
        device.runtime.addClass("APWUtil");
        device.runtime.addClassMethod(
            "APWUtil", "iconForBundleIdentifier:",
            std::function<ImageRef(Class&, NullableString)>(
                [this](Class& self, NullableString identifier) {
                    return wideningAnswer("orig " + self.name() + " " + textOf(identifier));
                }));
        device.runtime.addClass("WeatherImageLoader");
        device.runtime.addClassMethod(
            "WeatherImageLoader", "conditionImageNamed:style:",
            std::function<ImageRef(Class&, NullableString, long long)>(
                [this](Class& self, NullableString name, long long style) {
                    return wideningAnswer("orig " + self.name() + " " + textOf(name) + " " +
                                          std::to_string(style));
                }));
        install(versionNumber);
    }

    ImageRef widgetIcon() {
        return device.runtime.send<ImageRef, Size, double, NullableString, ObjectRef>(
            widget, kWidgetSelector, widgetSize, 1.5, "com.argument", extension);
    }

    [[nodiscard]] std::string widgetCall() const {
        return "orig WGWidgetInfo " + record::words(widgetSize) + " 1.5 com.argument " +
               textOf(extension);
    }

    ImageRef bannerIcon(const NullableString& identifier = "com.a") {
        return device.runtime.send<ImageRef, NullableString, ObjectRef>(*banner, kBannerSelector,
                                                                        identifier, extension);
    }

    [[nodiscard]] std::string bannerCall(const NullableString& identifier = "com.a") const {
        return "orig SBSwitcherAppSuggestionBannerView " + textOf(identifier) + " " +
               textOf(extension);
    }

    ImageRef settingsIcon(const NullableString& key = "Wifi") {
        return device.runtime.send<ImageRef, NullableString>(settingsIcons, "imageForKey:", key);
    }

    [[nodiscard]] static std::string settingsCall(const NullableString& key = "Wifi") {
        return "orig PKIconImageCache " + textOf(key);
    }

    ImageRef notification(const NullableString& name, const NullableString& identifier) {
        return device.runtime.send<ImageRef, NullableString, NullableString, NullableString>(
            notificationIcon, kNotificationSelector, name, "/a/path", identifier);
    }

    [[nodiscard]] static std::string notificationCall(const NullableString& name,
                                                      const NullableString& identifier) {
        return "orig UNNotificationIcon " + textOf(name) + " /a/path " + textOf(identifier);
    }

    ImageRef appIcon(const NullableString& identifier = "com.a") {
        return device.runtime.sendToClass<ImageRef, NullableString>(
            "APWUtil", "iconForBundleIdentifier:", identifier);
    }

    [[nodiscard]] static std::string appCall(const NullableString& identifier = "com.a") {
        return "orig APWUtil " + textOf(identifier);
    }

    ImageRef knob() {
        return device.runtime.send<ImageRef>(*switchElement, "_effectiveThumbImage");
    }

    ImageRef weather(const NullableString& name, long long style) {
        return device.runtime.sendToClass<ImageRef, NullableString, long long>(
            "WeatherImageLoader", "conditionImageNamed:style:", name, style);
    }

    [[nodiscard]] static std::string weatherCall(const NullableString& name, long long style) {
        return "orig WeatherImageLoader " + textOf(name) + " " + std::to_string(style);
    }

    static constexpr const char* kKnobCall = "orig UISwitchModernVisualElement ";
    static constexpr const char* kWidgetSelector =
        "_queue_iconWithSize:scale:forWidgetWithIdentifier:extension:";
    static constexpr const char* kBannerSelector =
        "_iconImageFromAppWithBundleIdentifier:withIconImageCache:";
    static constexpr const char* kNotificationSelector =
        "_initWithName:path:applicationIdentifier:";

    TestWidget widget;
    Size widgetSize{4, 5};
    std::shared_ptr<platform::SBSwitcherAppSuggestionBannerView> banner =
        std::make_shared<HomeScreenView<platform::SBSwitcherAppSuggestionBannerView>>(
            "SBSwitcherAppSuggestionBannerView");
    TestSettingsIcons settingsIcons;
    TestNotificationIcon notificationIcon;
    std::shared_ptr<platform::UISwitchModernVisualElement> switchElement =
        std::make_shared<HomeScreenView<platform::UISwitchModernVisualElement>>(
            "UISwitchModernVisualElement");
    // The widget's extension, and the banner's cache.
    ObjectRef extension = std::make_shared<PlainObject>("NSExtension");

  private:
    static std::string receiver(const platform::Object& self, const platform::Object& wanted) {
        return "orig " + (&self == &wanted ? self.className() : "other") + " ";
    }
};

}  // namespace velmoranth::tests
