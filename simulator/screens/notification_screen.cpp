#include "simulator/screens/notification_screen.h"

#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/toolkit/base_classes.h"
#include "simulator/toolkit/class_rows.h"
#include "simulator/toolkit/named_views.h"
#include "simulator/toolkit/view_kit.h"

#include <algorithm>
#include <array>

namespace velmoranth::simulator {
namespace {

using desktop::FontWeight;
using desktop::TextAlignment;
using platform::Color;
using platform::ImageRef;
using platform::NullableString;
using platform::Rect;

constexpr std::array kClasses{
    ClassRow{"UNNotificationIcon", "NSObject", Systems::only13},
    ClassRow{"NCNotificationShortLookView", "UIView"},
};

// Points. The platform's size of the icon; estimates else.
constexpr double kIconSide = 20;
constexpr double kInset = 8;
constexpr double kTextInset = 14;
constexpr double kBannerHeaderHeight = 36;
constexpr double kHeight = 92;
constexpr double kRadius = 13;
constexpr double kWidest = 500;  // on a pad
constexpr Color kHeaderShade{1, 1, 1, 0.3};
constexpr Color kFaintText{0, 0, 0, 0.55};
constexpr BackdropStyle kMaterial{
    .blurRadius = 20, .tint = {1, 1, 1, 0.72}, .cornerRadius = kRadius};
// The format of the platform's icon requests that notifications have before iOS 13.
constexpr int kIconFormat = 5;
constexpr const char* kApp = "com.apple.MobileSMS";

ImageRef askForIcon(const ScreenContext& context) {
    if (context.device.system.major < 13) {
        return askForAppIcon(context, kApp, kIconFormat);
    }
    return context.runtime.send<ImageRef, NullableString, NullableString, NullableString>(
        *std::make_shared<NotificationIcon>(),
        "_initWithName:path:applicationIdentifier:", std::nullopt, std::nullopt, kApp);
}

Rect bannerFrame(const ScreenContext& context) {
    const double width = std::min(kWidest, context.bounds().size.width - 2 * kInset);
    return {{snapToPixels((context.bounds().size.width - width) / 2, context.scale()),
             statusBarHeight(context.device)},
            {width, kHeight}};
}

}  // namespace

void registerNotificationClasses(const ScreenContext& context) {
    addClasses(kClasses, context.device.system, context.runtime);
    if (context.device.system.major < 13) {
        return;
    }
    ClassMethods(context.runtime, "UNNotificationIcon")
        .add("_initWithName:path:applicationIdentifier:",
             [&context](NotificationIcon& icon, const NullableString&, const NullableString&,
                        const NullableString& app) {
                 return app ? icon.init(context.stockImages.icon(*app, kIconSide, context.scale(),
                                                                 IconMasking::masked))
                            : nullptr;
             });
}

NotificationScreen::NotificationScreen(const ScreenContext& context) : HomeOverlay(context) {
    const Rect frame = bannerFrame(context);
    const double width = frame.size.width;

    const auto shadow = makeBox(frame, platform::kClearColor);
    shadow->layer()->setShadowOpacity(0.25F);
    shadow->layer()->setShadowOffset({0, 4});
    shadow->layer()->setShadowRadius(14);
    shadow->layer()->setShadowPathRect({{4, 4}, {width - 8, kHeight - 8}});
    window().addSubview(shadow);
    addMaterial(frame, kMaterial);

    const auto banner = std::make_shared<NamedView>("NCNotificationShortLookView", frame);
    banner->desktopLayer()->appearance.cornerRadius = kRadius;
    banner->setClipsToBounds(true);
    banner->addSubview(makeBox({{0, 0}, {width, kBannerHeaderHeight}}, kHeaderShade));
    images().add(*banner, {{10, (kBannerHeaderHeight - kIconSide) / 2}, {kIconSide, kIconSide}},
                 ImagePlacement::fill, [&context] { return askForIcon(context); });
    banner->addSubview(makeText("MESSAGES", textStyle(13, kFaintText),
                                {{38, 0}, {width - 100, kBannerHeaderHeight}}));
    banner->addSubview(makeText("now", rightAligned(13, kFaintText),
                                {{width - 80 - kTextInset, 0}, {80, kBannerHeaderHeight}}));
    const double textWidth = width - 2 * kTextInset;
    banner->addSubview(
        makeText("Robin Kilner",
                 textStyle(15, platform::kBlackColor, TextAlignment::left, FontWeight::semibold),
                 {{kTextInset, kBannerHeaderHeight + 8}, {textWidth, 20}}));
    banner->addSubview(makeText("The kiln is cool. Shall we open it?",
                                textStyle(15, platform::kBlackColor),
                                {{kTextInset, kBannerHeaderHeight + 28}, {textWidth, 20}}));
    window().addSubview(banner);
}

}  // namespace velmoranth::simulator
