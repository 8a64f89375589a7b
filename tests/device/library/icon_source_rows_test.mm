// The replacements of the other services through which icons and small images reach the screen.
#include "device/library/image_rows_support.h"

#include <array>
#include <cstdint>

namespace velmoranth::standins::icon_source_rows_test {
namespace {

constexpr const char* kWidget =
    "-[WGWidgetInfo _queue_iconWithSize:scale:forWidgetWithIdentifier:extension:]";
constexpr const char* kBanner = "-[SBSwitcherAppSuggestionBannerView "
                                "_iconImageFromAppWithBundleIdentifier:withIconImageCache:]";
constexpr const char* kSettings = "-[PKIconImageCache imageForKey:]";
constexpr const char* kUtility = "+[APWUtil iconForBundleIdentifier:]";
constexpr const char* kKnob = "-[UISwitchModernVisualElement _effectiveThumbImage]";
constexpr const char* kWeather = "+[WeatherImageLoader conditionImageNamed:style:]";
constexpr const char* kIdentifier = "-[WGWidgetInfo widgetIdentifier]";
constexpr const char* kWeatherFramework = "com.apple.weather-framework";

using BannerIcon = ImageRows;
using SettingsIcon = ImageRows;
using UtilityIcon = ImageRows;
using SwitchKnob = ImageRows;
using WeatherImage = ImageRows;

class Widgets : public ImageRows {
  protected:
    Widgets() {
        settings({"A"}, {"enable"});
        answerInTurn(kWidget);
    }

    id send(CGSize size = {4, 5}) {
        return [widget _queue_iconWithSize:size
                                     scale:1.5
                   forWidgetWithIdentifier:@"com.argument"
                                 extension:nil];
    }

    const std::string line = sentTo("widget", kWidget, {"4×5", "1.5", "\"com.argument\"", "nil"});
    const std::string asksIdentifier = sentTo("widget", kIdentifier);
    WGWidgetInfo* widget = named([[WGWidgetInfo alloc] init], "widget");
};

TEST_F(Widgets, WithIdentifierAreThePlatforms) {
    themePng(iconFile("w"));
    setVariable(widget, "_widgetIdentifier", @"w");
    EXPECT_EQ(answeredBy(send()), 2);
    EXPECT_EQ(taken(), (Lines{line, asksIdentifier, line, asksIdentifier, line}));
}

TEST_F(Widgets, WithoutIdentifierAreRedrawnAtTheSizeAskedFor) {
    for (const id without : {static_cast<id>(nil), static_cast<id>([NSNumber numberWithInt:5])}) {
        setVariable(widget, "_widgetIdentifier", without);
        answerInTurn(kWidget);
        clearJournal();
        UIImage* const image = send();
        EXPECT_EQ(wordsOf([image size]), "4×5");
        EXPECT_EQ(taken(),
                  joined({{line, asksIdentifier, line, asksIdentifier, asksIdentifier, line},
                          redraws({4, 5}, "image 2"),
                          {asksIdentifier}}));
    }
    themePng(iconFile("(null)"));
    EXPECT_NE(address(send()), nullptr);
    EXPECT_EQ(journalOf("+[UIImage imageWithContentsOfFile:]"),
              Lines{readsImage(iconFile("(null)"))});
}

TEST_F(Widgets, NilOfThePlatformIsAskedForOnceMore) {
    setAnswers(kWidget, {images[0], nil, images[2]});
    EXPECT_EQ(answeredBy(send()), 2);
    EXPECT_EQ(taken(), (Lines{line, asksIdentifier, line, line}));
}

TEST_F(Widgets, OfAKeptIconAreThatImage) {
    // Kept by the home screen.
    themePng(iconFile("w"));
    SBHIconImageCache* const cache = named([[SBHIconImageCache alloc] init], "cache");
    setAnswer("-[SBHIconImageCache imageForIcon:]", static_cast<id>(images[5]));
    UIImage* const kept = [cache imageForIcon:iconOf(@"w")];
    EXPECT_EQ(pathOf(kept), themePath(iconFile("w")));
    setVariable(widget, "_widgetIdentifier", @"w");
    clearJournal();
    EXPECT_EQ(address(send()), address(kept));
    EXPECT_EQ(taken(), (Lines{line, asksIdentifier}));
    changeTheme();
    EXPECT_EQ(answeredBy(send()), 3);
}

TEST_F(Widgets, PassExceptionsOfTheirIdentifierOn) {
    setAnswer(kWidget, static_cast<id>(images[0]));
    expectExceptionsToPass(kIdentifier, [this] { send(); });
}

TEST_F(BannerIcon, IsRedrawnAtThePlatformsSize) {
    settings({"A"}, {"enable"});
    SBSwitcherAppSuggestionBannerView* const banner =
        named([[SBSwitcherAppSuggestionBannerView alloc] init], "banner");
    const std::string line = sentTo("banner", kBanner, {"\"com.a\"", "nil"});
    const auto send = [&] {
        clearJournal();
        return [banner _iconImageFromAppWithBundleIdentifier:@"com.a" withIconImageCache:nil];
    };
    answerInTurn(kBanner);
    EXPECT_EQ(wordsOf([send() size]), "23×10") << "of the fourth answer";
    EXPECT_EQ(taken(), joined({Lines(4, line), redraws({23, 10}, "image 2")}));
    themePng(iconFile("com.a"), 7);
    answerInTurn(kBanner);
    EXPECT_EQ(wordsOf([send() size]), "23×10");
    const Lines found{line, line, line, readsImage(iconFile("com.a")), line};
    EXPECT_EQ(taken(), joined({found, redraws({23, 10}, "7×7 @1x")}));
    file(themePath(iconFile("com.a")), "no image");
    answerInTurn(kBanner);
    EXPECT_EQ(wordsOf([send() size]), "23×10");
    EXPECT_EQ(taken(), joined({found, redraws({23, 10}, "")}));
    setAnswers(kBanner, {images[0], nil, images[2]});
    EXPECT_EQ(answeredBy(send()), 2);
    EXPECT_EQ(taken(), Lines(3, line));
}

TEST_F(SettingsIcon, IsTheThemesAtTheSizeOfANewAnswer) {
    settings({"A"}, {"enable"});
    answerInTurn(kSettings);
    PKIconImageCache* const cache = named([[PKIconImageCache alloc] init], "cache");
    const std::string line = sentTo("cache", kSettings, {"\"Wifi\""});
    const auto send = [&] {
        clearJournal();
        return [cache imageForKey:@"Wifi"];
    };
    EXPECT_EQ(wordsOf([send() size]), "22×10");
    EXPECT_EQ(taken(), joined({{line, line},
                               missesInBundle("com.apple.Preferences", "Wifi"),
                               {line},
                               redraws({22, 10}, "image 1")}));
    const std::string wifi = bundleFile("com.apple.Preferences", "Wifi");
    themePng(wifi);
    EXPECT_EQ(wordsOf([send() size]), "25×10");
    EXPECT_EQ(taken(),
              joined({{line, line, readsImage(wifi), line}, redraws({25, 10}, "2×2 @3x")}));
    setAnswer(kSettings, static_cast<id>(nil));
    EXPECT_EQ(address(send()), nullptr);
    EXPECT_EQ(taken(), joined({{line, line, line}, redraws({0, 0}, "2×2 @3x")}));
}

TEST_F(UtilityIcon, IsTheThemesAndNothingIsKept) {
    settings({"A"}, {"enable"});
    answerInTurn(kUtility);
    const std::string line = sentToClass(kUtility, {"\"com.a\""});
    EXPECT_EQ(answeredBy([APWUtil iconForBundleIdentifier:@"com.a"]), 1);
    EXPECT_EQ(taken(), (Lines{line, line}));
    themePng(iconFile("com.a"));
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(pathOf([APWUtil iconForBundleIdentifier:@"com.a"]), themePath(iconFile("com.a")));
        EXPECT_EQ(taken(), (Lines{line, line, readsImage(iconFile("com.a"))}));
    }
}

TEST_F(UtilityIcon, IsMaskedAndOverlaid) {
    settings({"A"}, {"enable", "enableIconMask", "enableOverlay"});
    setAnswer(kUtility, static_cast<id>(images[0]));
    themePng("A/com.apple.mobileicons.framework/AppIconMask.png");
    themePng("A/Velmoranth/iPhoneOverlay.png");
    UIImage* const image = [APWUtil iconForBundleIdentifier:@"com.a"];
    // The mask leaves 20 × 10 points; a layer is drawn at the screen's scale.
    EXPECT_EQ(wordsOf([image size]), "20×10");
    EXPECT_EQ(journalOf("CGImageMaskCreate ").size(), 1U);
    EXPECT_EQ(journalOf("CGImageCreateWithMask ").size(), 1U);
    EXPECT_EQ(journalOf("-[CALayer renderInContext:] ").size(), 1U);
    // One overlay is kept.
    changeTheme();
    EXPECT_EQ(leftBy([] { [APWUtil iconForBundleIdentifier:@"com.a"]; }), Lines{"UIImage +1"});
    expectNothingLeft([] { [APWUtil iconForBundleIdentifier:@"com.a"]; });
    expectExceptionsToPass(kUtility, [] { [APWUtil iconForBundleIdentifier:@"com.a"]; });
    EXPECT_EQ(openImageContexts(), 0U);
}

TEST_F(SwitchKnob, IsTheFirstForTheLifeOfTheProcess) {
    settings({"A"}, {"enable"});
    UISwitchModernVisualElement* const knob =
        named([[UISwitchModernVisualElement alloc] init], "knob");
    // Nil is not kept, and an exception keeps nothing.
    setAnswer(kKnob, static_cast<id>(nil));
    clearJournal();
    EXPECT_EQ(address([knob _effectiveThumbImage]), nullptr);
    EXPECT_EQ(taken(), joined({{sentTo("knob", kKnob), sentTo("knob", kKnob)},
                               missesLoose("UISwitchKnob.png")}));
    expectExceptionsToPass(kKnob, [knob] { [knob _effectiveThumbImage]; });
    answerInTurn(kKnob);
    clearJournal();
    EXPECT_EQ(answeredBy([knob _effectiveThumbImage]), 1);
    EXPECT_EQ(taken().size(), 6U);
    themePng(looseFile("UISwitchKnob.png"));
    changeTheme();
    clearJournal();
    EXPECT_EQ(answeredBy([knob _effectiveThumbImage]), 1);
    EXPECT_EQ(taken(), Lines{sentTo("knob", kKnob)});
    settings({"A"}, {});
    EXPECT_EQ(answeredBy([knob _effectiveThumbImage]), 4);
    EXPECT_EQ(taken(), (Lines{sentTo("knob", kKnob), sentTo("knob", kKnob)}));
}

TEST_F(SwitchKnob, OfTheThemeIsKeptOnPurpose) {
    settings({"A"}, {"enable"});
    themePng(looseFile("UISwitchKnob.png"));
    setAnswer(kKnob, static_cast<id>(images[0]));
    UISwitchModernVisualElement* const knob =
        named([[UISwitchModernVisualElement alloc] init], "knob");
    const auto before = [images[0] retainCount];
    EXPECT_EQ(leftBy([knob] { [knob _effectiveThumbImage]; }), Lines{"UIImage +1"});
    EXPECT_EQ(leftBy([knob] { [knob _effectiveThumbImage]; }), Lines{});
    EXPECT_EQ(pathOf([knob _effectiveThumbImage]), themePath(looseFile("UISwitchKnob.png")));
    EXPECT_EQ([images[0] retainCount], before);
}

std::string weatherLine(const std::string& name, long long style) {
    return sentToClass(kWeather, {name, std::to_string(style)});
}

TEST_F(WeatherImage, IsThePlatformsNewAnswerWithoutAFile) {
    settings({"A"}, {"enable"});
    answerInTurn(kWeather);
    EXPECT_EQ(answeredBy([WeatherImageLoader conditionImageNamed:@"rain" style:3]), 1);
    EXPECT_EQ(taken(), joined({{weatherLine("\"rain\"", 3)},
                               missesInBundle(kWeatherFramework, "rain"),
                               {weatherLine("\"rain\"", 3)}}));
}

TEST_F(WeatherImage, IsKeptForEveryStyleOfAnyWidth) {
    settings({"A"}, {"enable", "enableLogging"});
    themePng(bundleFile(kWeatherFramework, "rain"));
    answerInTurn(kWeather);
    UIImage* const image = [WeatherImageLoader conditionImageNamed:@"rain" style:0];
    EXPECT_EQ(pathOf(image), themePath(bundleFile(kWeatherFramework, "rain")));
    for (const std::int64_t style : {INT64_C(5'000'000'000), INT64_C(-1), INT64_MAX, INT64_MIN}) {
        for (int time = 0; time < 2; ++time) {
            changeTheme();
            clearJournal();
            clearLog();
            EXPECT_EQ(address([WeatherImageLoader conditionImageNamed:@"rain"
                                                                style:static_cast<long>(style)]),
                      address(image));
            EXPECT_EQ(taken(), Lines(2, weatherLine("\"rain\"", style)));
            EXPECT_NE(logLines().front().find("Style: " + std::to_string(style) + "   "),
                      std::string::npos);
        }
    }
    clearLog();
    [WeatherImageLoader conditionImageNamed:@"rain" style:0];
    EXPECT_TRUE(logLines().front().ends_with(
        "WeatherImgArray: (\n    \"rain.0\",\n    \"rain.5000000000\",\n    \"rain.-1\",\n    "
        "\"rain.9223372036854775807\",\n    \"rain.-9223372036854775808\"\n)"))
        << logLines().front();
}

// --- A notification's icon, which is made by an initialiser

constexpr const char* kNotification =
    "-[UNNotificationIcon _initWithName:path:applicationIdentifier:]";

class NotificationIcon : public ImageRows {
  protected:
    // The caller's reference goes with the message, and it has one to what comes.
    static id initialise(NSString* name = @"icon", NSString* identifier = @"com.a") {
        @autoreleasepool {
            return [[UNNotificationIcon alloc] _initWithName:name
                                                        path:@"/p"
                                       applicationIdentifier:identifier];
        }
    }

    static std::string line(const std::string& name, const std::string& identifier) {
        return sentToClass(kNotification, {name, "\"/p\"", identifier});
    }

    const std::string usual = line("\"icon\"", "\"com.a\"");
    Call call = [] {
        UNNotificationIcon* const made = [UNNotificationIcon alloc];
        @try {
            [[made _initWithName:@"icon" path:@"/p" applicationIdentifier:@"com.a"] release];
        } @catch (id) {
            [made release];
            @throw;
        }
        changeTheme();
    };
};

TEST_F(NotificationIcon, IsThePlatformsOwnObjectWithOneReference) {
    for (const char* const enable : {"removeDock", "enable"}) {
        settings({"A"}, {enable});
        UNNotificationIcon* const made = [UNNotificationIcon alloc];
        id result = nil;
        @autoreleasepool {
            result = [made _initWithName:@"icon" path:@"/p" applicationIdentifier:@"com.a"];
        }
        EXPECT_EQ(address(result), address(made));
        const bool isOn = std::string(enable) == "enable";
        EXPECT_EQ(taken(), Lines(isOn ? 3 : 2, usual));
        // With the theming on it is kept besides.
        EXPECT_EQ([result retainCount], isOn ? 2U : 1U);
        changeTheme();
        EXPECT_EQ([result retainCount], 1U);
        [result release];
        EXPECT_EQ(living("UNNotificationIcon"), 0);
    }
}

TEST_F(NotificationIcon, IsTheThemesWithOneReferenceForTheCaller) {
    settings({"A"}, {"enable"});
    themePng(iconFile("com.a"));
    UNNotificationIcon* const kept = [[UNNotificationIcon alloc] init];
    setAnswer(kNotification, static_cast<id>(images[0]));
    const auto before = [images[0] retainCount];
    const id image = initialise();
    EXPECT_EQ(pathOf(image), themePath(iconFile("com.a")));
    EXPECT_EQ(taken(), joined({Lines(3, usual), {readsImage(iconFile("com.a"))}}));
    EXPECT_EQ([image retainCount], 2U);  // the caller's, and the kept one's
    EXPECT_EQ([images[0] retainCount], before);
    changeTheme();
    EXPECT_EQ([image retainCount], 1U);
    [image release];
    EXPECT_EQ(living("UNNotificationIcon"), 1);  // no receiver is left
    [kept release];
}

TEST_F(NotificationIcon, WhoseNameIsItsIdentifierIsKeptUntilTheThemeChanges) {
    settings({"A"}, {"enable"});
    themePng(iconFile("com.a"));
    setAnswer(kNotification, static_cast<id>(images[0]));
    const std::string same = line("\"com.a\"", "\"com.a\"");
    const id first = initialise(@"com.a");
    clearJournal();
    for (int time = 0; time < 3; ++time) {
        const id again = initialise(@"com.a");
        EXPECT_EQ(address(again), address(first));
        EXPECT_EQ(taken(), Lines(2, same));
        EXPECT_EQ([first retainCount], 3U);
        [again release];
    }
    changeTheme();
    const id anew = initialise(@"com.a");
    EXPECT_NE(address(anew), address(first));
    EXPECT_EQ(pathOf(anew), themePath(iconFile("com.a")));
    [first release];
    [anew release];
    EXPECT_EQ(living("UNNotificationIcon"), 0);
}

TEST_F(NotificationIcon, NilOfThePlatformLetsTheReceiverGo) {
    for (const char* const enable : {"removeDock", "enable"}) {
        settings({"A"}, {enable});
        setAnswer(kNotification, static_cast<id>(nil));
        EXPECT_EQ(address(initialise()), nullptr);
        EXPECT_EQ(taken(), Lines(std::string(enable) == "enable" ? 3 : 2, usual));
        EXPECT_EQ(living("UNNotificationIcon"), 0);
        setAnswers(kNotification, {images[0], nil, images[2]});
        const id result = initialise();
        EXPECT_EQ(answeredBy(result), std::string(enable) == "enable" ? 2 : -1);
        [result release];
        EXPECT_EQ(living("UNNotificationIcon"), 0);
        clearJournal();
    }
}

TEST_F(NotificationIcon, AnotherObjectOfThePlatformsIsTheCallers) {
    settings({"A"}, {});
    UNNotificationIcon* const other = [[UNNotificationIcon alloc] init];
    for (const id answer : {static_cast<id>(other), static_cast<id>(images[1])}) {
        setAnswers(kNotification, {images[0], answer});
        const auto before = [answer retainCount];
        const id result = initialise();
        EXPECT_EQ(address(result), address(answer));
        EXPECT_EQ([answer retainCount], before + 1);
        EXPECT_EQ(living("UNNotificationIcon"), 1);
        [result release];
    }
    clearAnswer(kNotification);
    EXPECT_EQ([other retainCount], 1U);
    [other release];
}

TEST_F(NotificationIcon, ArgumentsReachThePlatform) {
    setAnswer(kNotification, static_cast<id>(images[0]));
    NSString* const name = ownString("icon", "name");
    NSString* const path = ownString("/p", "path");
    NSString* const identifier = ownString("com.a", "identifier");
    const id number = named([[NSNumber alloc] initWithInt:5], "number");
    for (const auto& switches :
         {std::initializer_list<const char*>{}, {"enable"}, {"enable", "enableLogging"}}) {
        settings({"A"}, switches);
        for (const auto& [first, second, third] : {std::array<id, 3>{name, path, identifier},
                                                   {nil, nil, nil},
                                                   {number, number, number}}) {
            clearJournal();
            @autoreleasepool {
                [[[UNNotificationIcon alloc] _initWithName:first
                                                      path:second
                                     applicationIdentifier:third] release];
            }
            const Lines calls = journalOf("-[UNNotificationIcon");
            EXPECT_GE(calls.size(), 2U);
            EXPECT_EQ(calls, Lines(calls.size(),
                                   sentToClass(kNotification,
                                               {wordsOf(first), wordsOf(second), wordsOf(third)})));
        }
    }
    changeTheme();
    EXPECT_EQ([name retainCount], 1U);
    EXPECT_EQ([path retainCount], 1U);
    EXPECT_EQ([identifier retainCount], 1U);
}

TEST_F(NotificationIcon, LeavesNothingBehindAndPassesExceptionsOn) {
    for (const bool hasImage : {false, true}) {
        if (hasImage) {
            themePng(iconFile("com.a"));
        }
        for (const auto& switches :
             {std::initializer_list<const char*>{}, {"enable"}, {"enable", "enableLogging"}}) {
            settings({"A"}, switches);
            for (const bool hasAnswer : {false, true}) {
                if (hasAnswer) {
                    setAnswer(kNotification, static_cast<id>(images[0]));
                } else {
                    clearAnswer(kNotification);
                }
                expectNothingLeft(call);
                expectExceptionsToPass(kNotification, call);
                EXPECT_EQ(living("UNNotificationIcon"), 0);
            }
        }
    }
}

}  // namespace
}  // namespace velmoranth::standins::icon_source_rows_test
