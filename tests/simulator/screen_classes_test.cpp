// Which classes and methods a process has for its screens, and what they give before anything is
// replaced.
#include "simulator/process/process.h"
#include "simulator/screens/notification_screen.h"
#include "simulator/screens/switcher_screen.h"
#include "simulator/screens/today_screen.h"

#include "screen_test.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace velmoranth::simulator::screen_classes_test {
namespace {

using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;
using platform::Size;

constexpr const char* kWidgetBySize =
    "_queue_iconWithSize:scale:forWidgetWithIdentifier:extension:";
constexpr const char* kWidgetByFormat = "_queue_iconWithFormat:forWidgetWithIdentifier:extension:";
constexpr const char* kBanner = "SBSwitcherAppSuggestionBannerView";
constexpr const char* kBannerIcon = "_iconImageFromAppWithBundleIdentifier:withIconImageCache:";
constexpr const char* kNotificationIcon = "_initWithName:path:applicationIdentifier:";

// A running process of that screen, without the engine.
class Running {
  public:
    Running(ScreenKind kind, int system) {
        ScreenRequest request = device_.request("phone", system, {});
        request.screen = kind;
        request.loadEngine = false;
        auto process = SimulatedProcess::start(
            request, [this](const std::string& line) { log.push_back(line); });
        EXPECT_TRUE(process) << (process ? "" : toLine(process.error()));
        process_ = std::move(*process);
    }

    [[nodiscard]] desktop::Runtime& runtime() { return process_->runtime(); }

    [[nodiscard]] Screen& screen() { return process_->screen(); }

    [[nodiscard]] bool hasClass(const std::string& name) {
        return runtime().getClass(name) != nullptr;
    }

    [[nodiscard]] bool answers(const std::string& name, const std::string& selector) {
        return static_cast<bool>(runtime().methodOf(runtime().getClass(name), selector));
    }

    [[nodiscard]] bool classAnswers(const std::string& name, const std::string& selector) {
        return static_cast<bool>(
            runtime().methodOf(runtime().getMetaclass(runtime().getClass(name)), selector));
    }

    std::vector<std::string> log;

  private:
    ThemedDevice device_;
    std::unique_ptr<SimulatedProcess> process_;
};

// PKIconImageCache.
class Cache final : public platform::PKIconImageCache {
  public:
    [[nodiscard]] std::string className() const override { return "PKIconImageCache"; }
};

TEST(ScreenClasses, EachProcessHasItsOwn) {
    struct Case {
        const char* name;
        ProcessKind process;
        std::set<int> systems;
    };

    const std::vector<Case> cases{
        {"PKIconImageCache", ProcessKind::settings, {12, 13}},
        {"WeatherImageLoader", ProcessKind::weather, {13}},
        {"WGWidgetInfo", ProcessKind::homeScreen, {12, 13}},
        {"APWUtil", ProcessKind::homeScreen, {12, 13}},
        {kBanner, ProcessKind::homeScreen, {12, 13}},
        {"UNNotificationIcon", ProcessKind::homeScreen, {13}},
        {"SBIconView", ProcessKind::homeScreen, {12, 13}},
        {"SBHClockApplicationIconImageView", ProcessKind::homeScreen, {13}}};
    for (const ScreenKind kind :
         {ScreenKind::home, ScreenKind::settings, ScreenKind::weather, ScreenKind::controls}) {
        for (const int system : {12, 13}) {
            Running process(kind, system);
            for (const Case& on : cases) {
                EXPECT_EQ(process.hasClass(on.name),
                          on.process == definitionOf(kind).process && on.systems.contains(system))
                    << on.name << " on " << system;
            }
        }
    }
}

TEST(ScreenClasses, SelectorsFollowTheSystem) {
    for (const int system : {12, 13}) {
        Running home(ScreenKind::home, system);
        EXPECT_EQ(home.answers("WGWidgetInfo", kWidgetBySize), system == 13);
        EXPECT_EQ(home.answers("WGWidgetInfo", kWidgetByFormat), system == 12);
        EXPECT_TRUE(home.answers(kBanner, kBannerIcon));
        EXPECT_TRUE(home.classAnswers("APWUtil", "iconForBundleIdentifier:"));
        EXPECT_EQ(home.runtime().isKindOf(home.runtime().getClass(kBanner), "PLPlatterView"),
                  system == 13);
    }
    Running weather(ScreenKind::weather, 13);
    EXPECT_TRUE(weather.classAnswers("WeatherImageLoader", "conditionImageNamed:style:"));
}

TEST(ScreenClasses, EveryScreenIsLaidOutWithoutAWordInTheLog) {
    for (const ScreenKind kind :
         {ScreenKind::home, ScreenKind::today, ScreenKind::switcher, ScreenKind::notification,
          ScreenKind::settings, ScreenKind::weather}) {
        for (const int system : {12, 13}) {
            Running process(kind, system);
            process.screen().layoutViews();
            EXPECT_NE(process.screen().draw(), nullptr);
            EXPECT_TRUE(process.log.empty())
                << definitionOf(kind).name << system << ": " << process.log.front();
        }
    }
}

TEST(ScreenClasses, WidgetsIconIsThatOfItsExtensionsApp) {
    Running home(ScreenKind::today, 13);
    const auto ask = [&](const ObjectRef& extension, Size size, double scale) {
        return home.runtime().send<ImageRef, Size, double, NullableString, ObjectRef>(
            *std::make_shared<WidgetInfo>(std::nullopt), kWidgetBySize, size, scale, std::nullopt,
            extension);
    };
    const auto maps = std::make_shared<WidgetExtension>("com.apple.Maps");
    const ImageRef image = ask(maps, {20, 20}, 3);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (Size{20, 20}));
    EXPECT_EQ(image->scale(), 3);
    EXPECT_NE(ask(std::make_shared<WidgetExtension>("com.apple.news"), {20, 20}, 3), image);
    EXPECT_EQ(ask(maps, {40, 40}, 2)->size(), (Size{40, 40}));
    EXPECT_EQ(ask(nullptr, {20, 20}, 3), nullptr);
    EXPECT_EQ(ask(maps, {-1, -1}, 3), nullptr);
}

TEST(ScreenClasses, IconsOfAppsHaveTheSizesOfTheirPlaces) {
    Running home(ScreenKind::home, 13);
    desktop::Runtime& runtime = home.runtime();
    const auto suggested = [&](const NullableString& app) {
        return runtime.sendToClass<ImageRef, NullableString>("APWUtil",
                                                             "iconForBundleIdentifier:", app);
    };
    EXPECT_EQ(suggested("com.apple.Maps")->size(), (Size{60, 60}));
    EXPECT_EQ(suggested(std::nullopt), nullptr);

    const auto banner = std::make_shared<SuggestionBannerView>(platform::Rect{{0, 0}, {300, 60}},
                                                               "com.apple.Maps", "Maps");
    runtime.send<void>(*banner, "layoutSubviews");
    ASSERT_NE(banner->iconView()->image(), nullptr);
    EXPECT_EQ(banner->iconView()->image()->size(), (Size{32, 32}));
    EXPECT_EQ((runtime.send<ImageRef, NullableString, ObjectRef>(*banner, kBannerIcon, std::nullopt,
                                                                 nullptr)),
              nullptr);

    const auto notification = [&](const NullableString& app) {
        return runtime.send<ImageRef, NullableString, NullableString, NullableString>(
            *std::make_shared<NotificationIcon>(), kNotificationIcon, std::nullopt, std::nullopt,
            app);
    };
    const ImageRef icon = notification("com.apple.Maps");
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->className(), "UNNotificationIcon");
    EXPECT_EQ(icon->size(), (Size{20, 20}));
    EXPECT_EQ(notification(std::nullopt), nullptr);
}

TEST(ScreenClasses, NotificationIconIsEmptyBeforeItsInitialiser) {
    const NotificationIcon icon;
    EXPECT_EQ(icon.size(), Size{});
    EXPECT_EQ(icon.bitmap(), nullptr);
}

TEST(ScreenClasses, SettingsAndWeatherHaveWhatTheyDraw) {
    Running settings(ScreenKind::settings, 12);
    const auto icon = [&](const NullableString& key) {
        return settings.runtime().send<ImageRef, NullableString>(*std::make_shared<Cache>(),
                                                                 "imageForKey:", key);
    };
    ASSERT_NE(icon("WiFi"), nullptr);
    EXPECT_EQ(icon("WiFi")->size(), (Size{29, 29}));
    EXPECT_EQ(icon("NoSuchKey"), nullptr);
    EXPECT_EQ(icon(std::nullopt), nullptr);

    Running weather(ScreenKind::weather, 13);
    const auto sign = [&](const NullableString& name, long long style) {
        return weather.runtime().sendToClass<ImageRef, NullableString, long long>(
            "WeatherImageLoader", "conditionImageNamed:style:", name, style);
    };
    ASSERT_NE(sign("rain", 0), nullptr);
    EXPECT_EQ(sign("rain", 0)->size(), (Size{30, 30}));
    ASSERT_NE(sign("rain", 1), nullptr);
    EXPECT_EQ(sign("no-such-condition", 0), nullptr);
    EXPECT_EQ(sign(std::nullopt, 0), nullptr);
}

}  // namespace
}  // namespace velmoranth::simulator::screen_classes_test
