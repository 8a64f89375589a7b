#include "hooks/images/drawn_icon_hooks.h"

#include "core/format.h"
#include "core/settings.h"
#include "hooks/images/calendar_settings.h"
#include "imaging/chrome_images.h"
#include "imaging/rendered_layer.h"
#include "platform/platform.h"
#include "theme/app_icon_lookup.h"
#include "theme/icon_theming.h"
#include "theme/interface_image_lookup.h"

#include <string>

namespace velmoranth::hooks {

using core::NSLog;
using core::OriginalImplementation;
using core::settings;
using imaging::ChromeImages;
using platform::ImageRef;
using platform::NullableString;
using platform::platform;
using platform::Rect;
using theme::InterfaceImageLookup;

namespace {

constexpr double kDateLabelHeight = 30;  // points
constexpr double kDayLabelHeight = 12;   // points

// The container, filled with the theme's background: white where it has none.
platform::ViewRef makeContainer(const Rect& frame) {
    const platform::ViewRef container = platform().views.viewWithFrame(frame);
    container->setBackgroundColor(platform::kClearColor);
    const platform::ImageViewRef imageView = platform().views.imageViewWithFrame(frame);
    imageView->setBackgroundColor(platform::kClearColor);
    const auto background = [] {
        return theme::AppIconLookup::searchforIconInIconBundlesWithLeafIdentifierForImg(
            "com.apple.mobilecal", nullptr);
    };
    ImageRef image = background();
    if (image == nullptr) {
        image = background();
        container->setBackgroundColor(platform::kWhiteColor);
    }
    imageView->setImage(image);
    container->insertSubviewAtIndex(imageView, 0);
    return container;
}

platform::LabelRef makeLabel(const CalendarTextSettings& text, double width, double height) {
    platform::LabelRef label = platform().views.labelWithFrame(
        {{static_cast<double>(text.TextXoffset), static_cast<double>(text.TextYoffset)},
         {width, height}});
    label->setFont(
        platform().fonts.fontWithNameSize(text.FontName, static_cast<double>(text.FontSize)));
    label->setTextAlignment(platform::TextAlignment::center);
    return label;
}

void setShadow(platform::Label& label, const CalendarTextSettings& text) {
    if (text.ShadowColor) {
        label.setShadowColor(ChromeImages::colorWithHexString(text.ShadowColor));
    }
    label.setShadowOffset(
        {static_cast<double>(text.ShadowXoffset), static_cast<double>(text.ShadowYoffset)});
}

platform::LabelRef makeDateLabel(const CalendarTextSettings& text, double width) {
    platform::LabelRef label = makeLabel(text, width, kDateLabelHeight);
    label->setText(
        core::stringWithFormat("%ld", platform().dates.dayFromDate(platform().dates.date())));
    if (text.TextColor) {
        label->setTextColor(ChromeImages::colorWithHexString(text.TextColor));
    }
    label->setBackgroundColor(platform::kClearColor);
    setShadow(*label, text);
    return label;
}

platform::LabelRef makeDayLabel(const CalendarTextSettings& text, double width) {
    platform::LabelRef label = makeLabel(text, width, kDayLabelHeight);
    label->setText(platform().dates.stringFromDate(platform().dates.date(), "EEEE"));
    // Unlike the date's, whether there is a colour or not.
    label->setTextColor(ChromeImages::colorWithHexString(text.TextColor));
    setShadow(*label, text);
    return label;
}

}  // namespace

ImageRef SBCalendarApplicationIconHooks::generateIconImageWithInfo(
    const OriginalImplementation<Signature>& original, platform::SBCalendarApplicationIcon& self,
    platform::SBIconImageInfo info) {
    original(self, info);
    if (!settings().enable) {
        return original(self, info);
    }
    const CalendarSettings calendar = loadCalendarSettings();
    const platform::ViewRef container = makeContainer({{0, 0}, info.size});
    // The date's label asks for a place that is not there yet and comes to lie in front; the
    // weekday's then goes between.
    container->insertSubviewAtIndex(makeDateLabel(calendar.date, info.size.width), 2);
    container->insertSubviewAtIndex(makeDayLabel(calendar.day, info.size.width), 1);
    ImageRef image = imaging::renderedLayer(container->layer());
    if (calendar.masksIcon) {
        image = theme::withIconMask(image);
    }
    return theme::withOverlay(image);
}

ImageRef SBHClockApplicationIconImageViewHooks::
    generateProcessedMappedIconImageWithNameImageInfoIncludingMask(
        const OriginalImplementation<Signature>& original, platform::Class& self,
        NullableString name, platform::SBIconImageInfo info, bool includingMask) {
    original(self, name, info, includingMask);
    if (settings().enableLogging) {
        NSLog("VELMORANTH SBHClockApplicationIconImageView setIcon: %@", name);
    }
    if (!settings().enable) {
        return original(self, name, info, includingMask);
    }
    const auto find = [&name](const char* bundleIdentifier, const ImageRef& fallBack) {
        return InterfaceImageLookup::deviceUIImageNamedFromBundleOriginalUIImage(
            name, bundleIdentifier, fallBack);
    };
    ImageRef image = find("com.apple.SpringBoardHome", nullptr);
    if (image == nullptr) {
        image = find("com.apple.springboard", nullptr);
    }
    if (image == nullptr) {
        image = find("com.apple.SpringBoardHome", original(self, name, info, false));
    }
    return theme::withOverlay(theme::withIconMask(image));
}

}  // namespace velmoranth::hooks
