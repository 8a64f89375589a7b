#include "simulator/screens/switcher_screen.h"

#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/home_screen/icons.h"
#include "simulator/toolkit/base_classes.h"
#include "simulator/toolkit/class_rows.h"
#include "simulator/toolkit/named_views.h"
#include "simulator/toolkit/view_kit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>

namespace velmoranth::simulator {
namespace {

using desktop::FontWeight;
using platform::Color;
using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;
using platform::Rect;
using platform::Size;
using platform::ViewRef;

constexpr std::array kSwitcherClasses{
    ClassRow{"PLPlatterView", "UIView", Systems::only13},
    ClassRow{"SBSwitcherAppSuggestionBannerView", "PLPlatterView", Systems::only13},
    ClassRow{"SBSwitcherAppSuggestionBannerView", "UIView", Systems::only12},
    ClassRow{"SBFluidSwitcherItemContainer", "UIView"},
};

// Points: estimates.
constexpr double kPhoneCardShare = 0.66;  // of the screen's sides
constexpr double kCardGap = 20;
constexpr double kCardHeaderHeight = 40;
constexpr double kHeaderIconSide = 29;
constexpr double kBannerHeight = 60;
constexpr double kBannerInset = 8;
constexpr double kBannerRadius = 13;
constexpr double kBannerIconSide = 32;
constexpr double kWidestBanner = 420;  // on a pad
constexpr BackdropStyle kBackdrop{.blurRadius = 24, .tint = {0, 0, 0, 0.25}};
constexpr BackdropStyle kBannerMaterial{
    .blurRadius = 24, .tint = {1, 1, 1, 0.78}, .cornerRadius = kBannerRadius};
// The format of the platform's icon requests for the icons over the cards.
constexpr int kHeaderIconFormat = 0;

constexpr const char* kSuggestedApp = "com.apple.Music";
constexpr const char* kSuggestedName = "Music";

// What an app's picture is made of.
enum class Content { list, messages, pictures, article };

struct Card {
    std::string_view app;
    std::string_view name;
    Content content;
    Color accent;
};

// The one used last is the second: one more lies beside it on either side of a phone.
constexpr std::array kCards{
    Card{"com.apple.mobileslideshow", "Photos", Content::pictures, {0.4, 0.62, 0.6, 1}},
    Card{"com.apple.MobileSMS", "Messages", Content::messages, {0.3, 0.75, 0.4, 1}},
    Card{"com.apple.mobilenotes", "Notes", Content::list, {0.88, 0.68, 0.25, 1}},
    Card{"com.apple.mobilesafari", "Safari", Content::article, {0.45, 0.61, 0.78, 1}},
    Card{"com.apple.mobilemail", "Mail", Content::list, {0.25, 0.5, 0.85, 1}},
    Card{"com.apple.iBooks", "Books", Content::article, {0.86, 0.63, 0.44, 1}}};

constexpr Color kPaper{0.98, 0.98, 0.985, 1};
constexpr Color kInk{0.25, 0.27, 0.31, 1};
constexpr Color kPaleInk{0.8, 0.81, 0.84, 1};

// Lines of text, as a small picture of a page shows them. In shares of the page's width.
class Page {
  public:
    Page(platform::View& view, const Card& card)
        : view_(view), card_(card), size_(view.bounds().size), unit_(size_.width / 100) {}

    void draw() {
        box({0, 0}, {100, 14}, {0.955, 0.955, 0.965, 1}, 0);
        bar({35, 6}, 30, kInk);
        switch (card_.content) {
            case Content::list:
                return drawList();
            case Content::messages:
                return drawMessages();
            case Content::pictures:
                return drawPictures();
            case Content::article:
                return drawArticle();
        }
    }

  private:
    [[nodiscard]] double height() const { return size_.height / unit_; }

    void box(const platform::Point& origin, const Size& size, const Color& color, double radius) {
        view_.addSubview(makeBox(
            {{origin.x * unit_, origin.y * unit_}, {size.width * unit_, size.height * unit_}},
            color, radius * unit_));
    }

    void bar(const platform::Point& origin, double width, const Color& color) {
        box(origin, {width, 2.4}, color, 1.2);
    }

    void drawList() {
        constexpr std::array kWidths{52.0, 40.0, 60.0, 46.0};
        std::size_t row = 0;
        for (double y = 18; y < height(); y += 18, ++row) {
            box({6, y + 2}, {11, 11}, row == 0 ? card_.accent : kPaleInk, 5.5);
            bar({22, y + 3.5}, kWidths.at(row % kWidths.size()), kInk);
            bar({22, y + 9}, 68, kPaleInk);
            box({22, y + 16}, {78, 0.4}, kPaleInk, 0);
        }
    }

    void drawMessages() {
        struct Bubble {
            double width;
            double height;
            bool isOwn;
        };

        constexpr std::array kBubbles{Bubble{52, 12, false}, Bubble{44, 12, true},
                                      Bubble{62, 24, false}, Bubble{34, 12, true},
                                      Bubble{56, 24, true},  Bubble{40, 12, false},
                                      Bubble{58, 12, true}};
        double y = 20;
        for (std::size_t i = 0; y < height(); ++i) {
            const Bubble& bubble = kBubbles.at(i % kBubbles.size());
            box({bubble.isOwn ? 95 - bubble.width : 5, y}, {bubble.width, bubble.height},
                bubble.isOwn ? card_.accent : Color{0.89, 0.89, 0.91, 1}, 6);
            y += bubble.height + 5;
        }
    }

    void drawPictures() {
        constexpr std::array<Color, 5> kColors{{{0.42, 0.58, 0.7, 1},
                                                {0.78, 0.6, 0.45, 1},
                                                {0.5, 0.66, 0.5, 1},
                                                {0.7, 0.5, 0.55, 1},
                                                {0.85, 0.76, 0.55, 1}}};
        std::size_t i = 0;
        for (double y = 15; y < height(); y += 25) {
            for (double x = 0; x < 100; x += 25, ++i) {
                box({x + 0.4, y + 0.4}, {24.2, 24.2},
                    kColors.at((i * 2 + i / 4 + i / 7) % kColors.size()), 0);
            }
        }
    }

    void drawArticle() {
        const double picture = std::min(46.0, height() / 3);
        box({0, 14}, {100, picture}, card_.accent, 0);
        bar({8, picture + 20}, 64, kInk);
        bar({8, picture + 25.5}, 40, kInk);
        const double text = picture + 34;
        for (double y = text; y < height(); y += 5.5) {
            const bool endsParagraph = std::fmod(y - text, 33) > 26;
            bar({8, y}, endsParagraph ? 46 : 84, kPaleInk);
        }
    }

    platform::View& view_;
    const Card& card_;
    Size size_;
    double unit_;  // points
};

// Where the cards lie, from the first on: as many as there is room for.
std::vector<Rect> cardFrames(const ScreenContext& context) {
    const Size screen = context.bounds().size;
    const double free = screen.height - kBannerHeight - 2 * kBannerInset;
    if (context.device.kind == DeviceKind::phone) {
        const Size card{std::round(screen.width * kPhoneCardShare),
                        std::round(screen.height * kPhoneCardShare)};
        const double middle = (screen.width - card.width) / 2;
        const double top = std::round((free - card.height + kCardHeaderHeight) / 2);
        std::vector<Rect> frames;
        for (const double place : {-1.0, 0.0, 1.0}) {
            frames.push_back({{middle + place * (card.width + kCardGap), top}, card});
        }
        return frames;
    }
    constexpr std::size_t kRows = 2;
    const std::size_t columns = screen.width > screen.height ? 3 : 2;
    const double gap = 2 * kCardGap;
    const double widest =
        (screen.width - gap * static_cast<double>(columns + 1)) / static_cast<double>(columns);
    const double highest = (free - gap) / kRows - kCardHeaderHeight - kCardGap;
    const double share = std::min(widest / screen.width, highest / screen.height);
    const Size card{std::round(screen.width * share), std::round(screen.height * share)};
    const double pitchX = card.width + gap;
    const double pitchY = card.height + kCardHeaderHeight + kCardGap;
    const double left = (screen.width - pitchX * static_cast<double>(columns) + gap) / 2;
    const double top = (free - pitchY * kRows) / 2 + kCardHeaderHeight + kCardGap / 2;
    std::vector<Rect> frames;
    frames.reserve(columns * kRows);
    for (std::size_t row = 0; row < kRows; ++row) {
        const double y = std::round(top + pitchY * static_cast<double>(row));
        for (std::size_t column = 0; column < columns; ++column) {
            frames.push_back({{left + pitchX * static_cast<double>(column), y}, card});
        }
    }
    return frames;
}

Rect suggestionFrame(const ScreenContext& context) {
    const Size screen = context.bounds().size;
    const double width =
        context.device.kind == DeviceKind::pad ? kWidestBanner : screen.width - 2 * kBannerInset;
    const double bottom = std::max(kBannerInset, bottomInset(context.device) - 10);
    return {{snapToPixels((screen.width - width) / 2, context.scale()),
             screen.height - bottom - kBannerHeight},
            {width, kBannerHeight}};
}

// The card with its app's icon and name over it.
ViewRef makeCard(const ScreenContext& context, const Card& card, const Rect& frame,
                 AskedImages& images) {
    const auto container = std::make_shared<NamedView>(
        "SBFluidSwitcherItemContainer",
        Rect{{snapToPixels(frame.origin.x, context.scale()), frame.origin.y - kCardHeaderHeight},
             {frame.size.width, frame.size.height + kCardHeaderHeight}});
    // The card's shadow lies under its header too.
    const Rect pageFrame{{0, kCardHeaderHeight}, frame.size};
    const ViewRef shadow = makeBox(pageFrame, platform::kClearColor);
    shadow->layer()->setShadowOpacity(0.3F);
    shadow->layer()->setShadowOffset({0, 6});
    shadow->layer()->setShadowRadius(16);
    shadow->layer()->setShadowPathRect({{4, 4}, {frame.size.width - 8, frame.size.height - 8}});
    container->addSubview(shadow);
    images.add(*container, {{10, 3}, {kHeaderIconSide, kHeaderIconSide}}, ImagePlacement::fill,
               [&context, app = std::string(card.app)] {
                   return askForAppIcon(context, app, kHeaderIconFormat);
               });
    container->addSubview(makeText(
        card.name, {.weight = FontWeight::semibold, .size = 15, .color = platform::kWhiteColor},
        {{48, 0}, {frame.size.width - 58, kCardHeaderHeight - 4}}));
    const bool hasRoundScreen = bottomInset(context.device) > 0;
    const ViewRef page = makeBox(pageFrame, kPaper, hasRoundScreen ? 26 : 10);
    page->setClipsToBounds(true);
    Page(*page, card).draw();
    container->addSubview(page);
    return container;
}

}  // namespace

SuggestionBannerView::SuggestionBannerView(const Rect& frame, std::string app,
                                           const std::string& name)
    : app_(std::move(app)), iconView_(std::make_shared<desktop::DesktopImageView>()) {
    setFrame(frame);
    iconView_->setFrame(
        {{14, (kBannerHeight - kBannerIconSide) / 2}, {kBannerIconSide, kBannerIconSide}});
    addSubview(iconView_);
    const double left = 14 + kBannerIconSide + 12;
    const double width = frame.size.width - left - 14;
    addSubview(
        makeText(name, {.weight = FontWeight::semibold, .size = 16}, {{left, 10}, {width, 21}}));
    addSubview(makeText("Suggested: headphones connected", {.size = 13, .color = {0, 0, 0, 0.55}},
                        {{left, 31}, {width, 18}}));
}

void registerSwitcherClasses(const ScreenContext& context) {
    addClasses(kSwitcherClasses, context.device.system, context.runtime);
    constexpr const char* kIconSelector =
        "_iconImageFromAppWithBundleIdentifier:withIconImageCache:";
    ClassMethods(context.runtime, "SBSwitcherAppSuggestionBannerView")
        .add(kIconSelector,
             [&context](platform::SBSwitcherAppSuggestionBannerView&, const NullableString& app,
                        const ObjectRef&) {
                 return app ? context.stockImages.icon(*app, kBannerIconSide, context.scale(),
                                                       IconMasking::masked)
                            : nullptr;
             })
        .add(
            "layoutSubviews",
            [&context](SuggestionBannerView& view) {
                view.iconView()->setImage(context.runtime.send<ImageRef, NullableString, ObjectRef>(
                    view, kIconSelector, view.app(), context.iconImageCache));
            })
        .addVariable("_iconView", &SuggestionBannerView::iconView);
}

SwitcherScreen::SwitcherScreen(const ScreenContext& context) : HomeOverlay(context) {
    addMaterial(context.bounds(), kBackdrop);
    const std::vector<Rect> frames = cardFrames(context);
    for (std::size_t i = 0; i < std::min(frames.size(), kCards.size()); ++i) {
        window().addSubview(makeCard(context, kCards.at(i), frames[i], images()));
    }
    const Rect banner = suggestionFrame(context);
    addMaterial(banner, kBannerMaterial);
    window().addSubview(
        std::make_shared<SuggestionBannerView>(banner, kSuggestedApp, kSuggestedName));
}

}  // namespace velmoranth::simulator
