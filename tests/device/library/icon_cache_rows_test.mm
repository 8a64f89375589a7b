// The replacements through which the home screen and the toolkit get the icons of apps.
#include "device/library/image_rows_support.h"

namespace velmoranth::standins::icon_cache_rows_test {
namespace {

constexpr const char* kImage = "-[SBHIconImageCache imageForIcon:]";
constexpr const char* kUnmasked = "-[SBHIconImageCache unmaskedImageForIcon:]";
constexpr const char* kApplication =
    "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]";
constexpr const char* kLeafIcon = "-[SBApplicationIcon getUnmaskedIconImage:]";
constexpr const char* kNode = "-[SBIcon nodeIdentifier]";
constexpr const char* kLeaf = "-[SBIcon leafIdentifier]";
constexpr const char* kImageCall = "-[SBHIconImageCache imageForIcon:] cache icon";
constexpr const char* kUnmaskedCall = "-[SBHIconImageCache unmaskedImageForIcon:] cache icon";

class IconCache : public ImageRows {
  protected:
    IconCache() {
        settings({"A"}, {"enable"});
        answerInTurn(kImage);
        answerInTurn(kUnmasked);
    }

    SBHIconImageCache* cache = named([[SBHIconImageCache alloc] init], "cache");
    SBIcon* icon = iconOf(@"com.a");
};

TEST_F(IconCache, KeepsTheThemesImageForBothUntilTheThemeChanges) {
    themePng(iconFile("com.a"));
    UIImage* const image = [cache imageForIcon:icon];
    EXPECT_EQ(pathOf(image), themePath(iconFile("com.a")));
    EXPECT_EQ(taken(), (Lines{kImageCall, kImageCall, sentTo("icon", kNode), kImageCall,
                              readsImage(iconFile("com.a"))}));
    EXPECT_EQ(address([cache imageForIcon:icon]), address(image));
    EXPECT_EQ(taken(), (Lines{kImageCall, kImageCall, sentTo("icon", kNode)}));
    EXPECT_EQ(address([cache unmaskedImageForIcon:icon]), address(image));
    EXPECT_EQ(taken(), (Lines{kUnmaskedCall, sentTo("icon", kNode)}));
    changeTheme();
    clearJournal();
    UIImage* const anew = [cache unmaskedImageForIcon:icon];
    EXPECT_NE(address(anew), address(image));
    EXPECT_EQ(pathOf(anew), themePath(iconFile("com.a")));
    EXPECT_EQ(taken(), (Lines{kUnmaskedCall, sentTo("icon", kNode), kUnmaskedCall,
                              readsImage(iconFile("com.a"))}));
    settings({"A"}, {});
    EXPECT_GE(answeredBy([cache imageForIcon:icon]), 1);
}

TEST_F(IconCache, KeepsThePlatformsImageWithoutAThemes) {
    EXPECT_EQ(answeredBy([cache imageForIcon:icon]), 2);
    EXPECT_EQ(answeredBy([cache imageForIcon:icon]), 2);
    EXPECT_EQ(answeredBy([cache unmaskedImageForIcon:icon]), 2);
    changeTheme();
    EXPECT_EQ(answeredBy([cache unmaskedImageForIcon:icon]), 2);
    // The images are the answers' again, and the test's.
    changeTheme();
    setAnswer(kImage, static_cast<id>(images[0]));
    setAnswer(kUnmasked, static_cast<id>(images[0]));
    const auto before = [images[0] retainCount];
    @autoreleasepool {
        [cache imageForIcon:icon];
    }
    EXPECT_EQ([images[0] retainCount], before + 1);
    changeTheme();
    EXPECT_EQ([images[0] retainCount], before);
}

TEST_F(IconCache, KeepsOneImageOnPurpose) {
    themePng(iconFile("com.a"));
    EXPECT_EQ(leftBy([this] { [cache imageForIcon:icon]; }), Lines{"UIImage +1"});
    expectNothingLeft([this] { [cache unmaskedImageForIcon:icon]; });
    EXPECT_EQ(leftBy([] { changeTheme(); }), Lines{"UIImage -1"});
}

TEST_F(IconCache, CalendarIsThePlatformsExceptUnmasked) {
    SBIcon* const calendar = iconOf(@"com.apple.mobilecal");
    themePng(iconFile("com.apple.mobilecal"));
    EXPECT_EQ(answeredBy([cache imageForIcon:calendar]), 2);
    EXPECT_EQ(pathOf([cache unmaskedImageForIcon:calendar]),
              themePath(iconFile("com.apple.mobilecal")));
    EXPECT_GT(answeredBy([cache imageForIcon:calendar]), 2);
}

TEST_F(IconCache, NilAnswerPassesThroughExceptUnmasked) {
    themePng(iconFile("com.a"));
    setAnswers(kImage, {images[0], nil, images[2]});
    EXPECT_EQ(answeredBy([cache imageForIcon:icon]), 2);
    EXPECT_EQ(taken(), Lines(3, kImageCall));
    setAnswer(kUnmasked, static_cast<id>(nil));
    EXPECT_EQ(pathOf([cache unmaskedImageForIcon:icon]), themePath(iconFile("com.a")));
}

TEST_F(IconCache, NilIconAndNilIdentifierAreNotKept) {
    EXPECT_EQ(answeredBy([cache imageForIcon:nil]), 2);
    EXPECT_EQ(answeredBy([cache unmaskedImageForIcon:nil]), 1);
    EXPECT_EQ(taken(), joined({Lines(3, "-[SBHIconImageCache imageForIcon:] cache nil"),
                               Lines(2, "-[SBHIconImageCache unmaskedImageForIcon:] cache nil")}));
    for (const id identifier :
         {static_cast<id>(nil), static_cast<id>([NSNumber numberWithInt:5])}) {
        setVariable(icon, "_nodeIdentifier", identifier);
        for (int time = 0; time < 2; ++time) {
            answerInTurn(kImage);
            EXPECT_EQ(answeredBy([cache imageForIcon:icon]), 2);
        }
    }
    changeTheme();
    // With the theming off any object will do.
    settings({"A"}, {});
    [cache imageForIcon:static_cast<SBIcon*>(static_cast<id>(@"no icon"))];
    EXPECT_EQ(taken(), Lines(2, "-[SBHIconImageCache imageForIcon:] cache \"no icon\""));
}

TEST_F(IconCache, PassesExceptionsOfTheIconOn) {
    expectExceptionsToPass(kNode, [this] {
        [cache imageForIcon:icon];
        [cache unmaskedImageForIcon:icon];
    });
}

TEST_F(IconCache, IsLoggedWithAFreshAnswer) {
    settings({"A"}, {"enable", "enableLogging"});
    EXPECT_EQ(answeredBy([cache imageForIcon:icon]), 3);
    EXPECT_EQ(logLines().front(),
              "VELMORANTH MainIcons, " + describe(images[2]) + "  With Identifier: com.a");
}

// --- The toolkit's application icons

const std::string kApplicationCall = sentToClass(kApplication, {"\"com.a\"", "-2", "2.5"});

id applicationIcon(NSString* identifier = @"com.a", int format = -2) {
    return [UIImage _applicationIconImageForBundleIdentifier:identifier format:format scale:2.5];
}

class ApplicationIconOniOS12 : public ImageRows {
  protected:
    ApplicationIconOniOS12() : ImageRows(kiOS12) {
        settings({"A"}, {"enable"});
        answerInTurn(kApplication);
    }
};

class ApplicationIconOniOS13 : public ImageRows {
  protected:
    ApplicationIconOniOS13() {
        settings({"A"}, {"enable"});
        answerInTurn(kApplication);
    }
};

class ApplicationIconBetween : public ImageRows {
  protected:
    ApplicationIconBetween() : ImageRows(kBetween) {}
};

TEST_F(ApplicationIconOniOS12, IsRedrawnAtThePlatformsSizeAndKept) {
    themePng(iconFile("com.a"));
    UIImage* const image = applicationIcon();
    EXPECT_EQ(wordsOf([image size]), "22×10");
    EXPECT_EQ(taken(), joined({{kApplicationCall, kApplicationCall, readsImage(iconFile("com.a")),
                                kApplicationCall},
                               redraws({22, 10}, "6×6 @1x")}));
    for (const char* const enable : {"enable", "removeDock"}) {
        settings({"A"}, {enable});
        EXPECT_EQ(address(applicationIcon()), address(image));
        EXPECT_EQ(taken(), Lines{kApplicationCall});
        EXPECT_EQ(logLines(), Lines{"Velmoranth useIconFromDict : com.a.-2"});
    }
    EXPECT_NE(address(applicationIcon(@"com.a", 3)), address(image));
}

TEST_F(ApplicationIconOniOS12, IsAskedForAgainWhenTheThemeChanges) {
    setAnswer(kApplication, static_cast<id>(images[0]));
    const id image = applicationIcon(@"com.a", 2);
    clearJournal();
    changeTheme();
    EXPECT_EQ(journalOf(sentToClass(kApplication, {"\"com.a\"", "2"})).size(), 3U);
    const id anew = applicationIcon(@"com.a", 2);
    EXPECT_NE(address(anew), address(image));
    clearJournal();
    EXPECT_EQ(address(applicationIcon(@"com.a", 2)), address(anew));
}

TEST_F(ApplicationIconOniOS12, NilOfThePlatformIsNotKept) {
    setAnswer(kApplication, static_cast<id>(nil));
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(address(applicationIcon()), nullptr);
        EXPECT_EQ(journalOf(kApplication).size(), 3U);
        clearJournal();
    }
}

TEST_F(ApplicationIconOniOS13, IsRedrawnAtThePlatformsSizeAndNotKept) {
    themePng(iconFile("com.a"));
    for (int time = 0; time < 2; ++time) {
        answerInTurn(kApplication);
        EXPECT_EQ(wordsOf([static_cast<UIImage*>(applicationIcon()) size]), "23×10");
        EXPECT_EQ(taken(), joined({Lines(3, kApplicationCall),
                                   {readsImage(iconFile("com.a")), kApplicationCall},
                                   redraws({23, 10}, "6×6 @1x")}));
    }
}

TEST_F(ApplicationIconOniOS13, NilIdentifierAndNilAnswerPassThrough) {
    for (const id identifier :
         {static_cast<id>(nil), static_cast<id>([NSNumber numberWithInt:5])}) {
        answerInTurn(kApplication);
        clearJournal();
        EXPECT_EQ(answeredBy(applicationIcon(identifier)), 2);
        EXPECT_EQ(taken(), Lines(3, sentToClass(kApplication, {wordsOf(identifier), "-2", "2.5"})));
    }
    setAnswers(kApplication, {images[0], nil, images[2]});
    EXPECT_EQ(answeredBy(applicationIcon()), 2);
}

TEST_F(ApplicationIconBetween, IsThePlatforms) {
    themePng(iconFile("com.a"));
    settings({"A"}, {"enable", "enableLogging"});
    answerInTurn(kApplication);
    EXPECT_EQ(answeredBy(applicationIcon()), 0);
    EXPECT_EQ(taken(), Lines{std::string(kApplication) + " \"com.a\" -2 2.5"});
}

// --- An app icon's own image

class LeafIcon : public ImageRows {
  protected:
    explicit LeafIcon(const SystemVersion& system = kiOS12) : ImageRows(system) {
        settings({"A"}, {"enable"});
        answerInTurn(kLeafIcon);
        setVariable(icon, "_leafIdentifier", @"com.a");
        themePng(iconFile("com.a"));
    }

    SBApplicationIcon* icon = named([[SBApplicationIcon alloc] init], "icon");
    const std::string line = sentTo("icon", kLeafIcon, {"2"});
};

struct LeafIconOniOS13 : LeafIcon {
    LeafIconOniOS13() : LeafIcon(kiOS13) {}
};

TEST_F(LeafIcon, IsTheThemesAndKeptForEveryFormat) {
    UIImage* const image = [icon getUnmaskedIconImage:2];
    EXPECT_EQ(pathOf(image), themePath(iconFile("com.a")));
    EXPECT_EQ(taken(), (Lines{line, kAsksForiOS12, sentTo("icon", kLeaf), line,
                              readsImage(iconFile("com.a"))}));
    EXPECT_EQ(address([icon getUnmaskedIconImage:-7]), address(image));
    EXPECT_EQ(taken(),
              (Lines{sentTo("icon", kLeafIcon, {"-7"}), kAsksForiOS12, sentTo("icon", kLeaf)}));
}

TEST_F(LeafIcon, WithoutIdentifierIsNotKept) {
    setVariable(icon, "_leafIdentifier", nil);
    for (const int expected : {1, 3}) {
        EXPECT_EQ(answeredBy([icon getUnmaskedIconImage:2]), expected);
    }
    EXPECT_EQ(taken(), (Lines{line, kAsksForiOS12, sentTo("icon", kLeaf), line, line, kAsksForiOS12,
                              sentTo("icon", kLeaf), line}));
}

TEST_F(LeafIcon, PassesExceptionsOfTheIdentifierOn) {
    expectExceptionsToPass(kLeaf, [this] { [icon getUnmaskedIconImage:2]; });
}

// The system's version is compared in full.
TEST_F(LeafIcon, AsksForSystem12_0_0) {
    [icon getUnmaskedIconImage:2];
    EXPECT_EQ(journalOf("-[NSProcessInfo"), Lines{kAsksForiOS12});
}

struct LeafIconOnTheFirstiOS12 : LeafIcon {
    LeafIconOnTheFirstiOS12() : LeafIcon({12, 0, 1556}) {}
};

TEST_F(LeafIconOnTheFirstiOS12, IsTheThemes) {
    EXPECT_EQ(pathOf([icon getUnmaskedIconImage:2]), themePath(iconFile("com.a")));
}

struct LeafIconOnTheLastiOS11 : LeafIcon {
    LeafIconOnTheLastiOS11() : LeafIcon({11, 99, 1452.23}) {}
};

TEST_F(LeafIconOnTheLastiOS11, IsThePlatforms) {
    EXPECT_EQ(answeredBy([icon getUnmaskedIconImage:2]), 1);
    EXPECT_EQ(taken(), (Lines{line, kAsksForiOS12, line}));
}

TEST_F(LeafIconOniOS13, IsThePlatforms) {
    EXPECT_EQ(answeredBy([icon getUnmaskedIconImage:2]), 0);
    EXPECT_EQ(taken(), Lines{line});
}

}  // namespace
}  // namespace velmoranth::standins::icon_cache_rows_test
