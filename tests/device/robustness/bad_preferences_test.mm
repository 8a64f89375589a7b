// Preferences that are not what the library expects: values of other kinds, themes that are none,
// files that are no property lists. The library loads, what it replaces answers, and what it makes
// of a value is what the platform's conversions make of it.
#include "device/library/rows_support.h"
#include "device/standins/images.h"

#include <utility>

namespace velmoranth::standins::bad_preferences_test {
namespace {

constexpr const char* kImageNamed = "imageNamed:inBundle:withConfiguration:";
const std::string kPath = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";

constexpr const char* kSwitches[] = {"enable",           "enableLogging",  "enableIconMask",
                                     "enableOverlay",    "enableShadow",   "dynamicShadow",
                                     "removeDock",       "removeFolderBG", "removeLabels",
                                     "removeIconBadges", "removePageDots"};
constexpr const char* kNumbers[] = {"shadowRadiusVal", "opacityVal",     "xAxisVal",
                                    "yAxisVal",        "shadowWidthVal", "shadowHeightVal"};
constexpr const char* kWithoutEffect[] = {"enableImageDump", "iconReflection", "moreDockIcons"};

NSString* native(const std::string& text) {
    return [NSString stringWithUTF8String:text.c_str()];
}

// Containers in containers.
id nested(int depth) {
    id value = @"A";
    for (int i = 0; i < depth; ++i) {
        value = [NSArray arrayWithObject:value];
    }
    return value;
}

class BadPreferences : public DeviceProcess {
  protected:
    BadPreferences() {
        for (const char* const file :
             {"UIImages/wheel@3x.png", "IconBundles/com.a.b-large.png",
              "Velmoranth/iPhoneShadow.png", "Velmoranth/iPhoneOverlay.png",
              "Bundles/com.apple.springboard/SBBadgeBG.png",
              "Bundles/com.apple.mobileicons.framework/AppIconMask.png"}) {
            png("/Library/Themes/A/" + std::string(file), 6);
        }
        answerWith(kImageNamed, platforms);
        // It is initialised twice: what the first run makes is the platform's to let go.
        setAnswer("-[SBFloatyFolderView initWithFolder:orientation:viewMap:context:]", folder);
        answerWith("_applicationIconImageForBundleIdentifier:format:scale:", platforms);
    }

    static NSMutableDictionary* everythingOn() {
        NSMutableDictionary* const all = [NSMutableDictionary dictionary];
        [all setObject:[NSArray arrayWithObject:@"A"] forKey:@"ActiveThemes"];
        for (const char* const key : kSwitches) {
            [all setObject:[NSNumber numberWithBool:YES] forKey:native(key)];
        }
        for (const char* const key : kNumbers) {
            [all setObject:[NSNumber numberWithFloat:3.5F] forKey:native(key)];
        }
        return all;
    }

    static void reload() {
        postDarwinNotification("com.qor.velmoranthprefs.prefs");
        runMainQueue();
    }

    static void use(NSDictionary* values) {
        preferences(values);
        reload();
    }

    static UIImage* wheel() {
        return [UIImage imageNamed:@"wheel" inBundle:nil withConfiguration:nil];
    }

    // Calls of the phone, among which each setting but the image dump's shows.
    void callAll() const {
        wheel();
        [UIImage _applicationIconImageForBundleIdentifier:@"com.a.b" format:0 scale:2];
        SBIconView* const icon = [[[SBIconView alloc] init] autorelease];
        setVariable(icon, "_icon", [[[SBIcon alloc] init] autorelease]);
        [icon layoutSubviews];
        SBFloatingDockPlatterView* const dock =
            [[[SBFloatingDockPlatterView alloc] init] autorelease];
        setVariable(dock, "_backgroundView", [[[UIView alloc] init] autorelease]);
        [dock layoutSubviews];
        [[[SBFloatyFolderView alloc] initWithFolder:nil orientation:1 viewMap:nil
                                            context:nil] release];
        [folder->_gestureRecognizers removeAllObjects];
        [[[[SBIconLegibilityLabelView alloc] init] autorelease] alpha];
        [[[[SBIconBadgeView alloc] init] autorelease] layoutSubviews];
        [[[[SBIconListPageControl alloc] init] autorelease] layoutSubviews];
    }

    // What the preferences make of those calls: messages, and how much is logged.
    Lines effectOf(NSDictionary* values) const {
        use(values);
        // What is made at the first call of a kind and kept is there at the second.
        for (int time = 0; time < 2; ++time) {
            clearJournal();
            clearLog();
            @autoreleasepool {
                callAll();
            }
        }
        Lines effect = journal();
        effect.push_back(std::to_string(logLines().size()) + " lines logged");
        return effect;
    }

    static NSDictionary* with(const char* key, id value) {
        NSMutableDictionary* const values = everythingOn();
        [values setObject:value forKey:native(key)];
        return values;
    }

    SBFloatyFolderView* folder = [[[SBFloatyFolderView alloc] init] autorelease];
    UIImage* platforms = [[imageOfPixels(8, 8) retain] autorelease];
};

struct BadValue {
    id value;
    bool asSwitch;
    double asNumber;
};

std::vector<BadValue> badValues() {
    return {{@"YES", true, 0},
            {@"off", false, 0},
            {@"", false, 0},
            {@" 2.5pt", true, 2.5},
            {@"1e39", true, HUGE_VAL},
            {[NSNumber numberWithLongLong:7], true, 7},
            {[NSNumber numberWithDouble:0.5], true, 0.5},
            {[NSNumber numberWithBool:YES], true, 1},
            {[NSArray arrayWithObject:@"YES"], false, 0},
            {[NSDictionary dictionaryWithObject:@"YES" forKey:@"enable"], false, 0},
            {[NSDate dateWithTimeIntervalSinceReferenceDate:1], false, 0},
            {[NSData dataWithBytes:"YES" length:3], false, 0}};
}

TEST_F(BadPreferences, SwitchesAreWhatTheirValuesConvertTo) {
    loaded();
    for (const char* const key : kSwitches) {
        SCOPED_TRACE(key);
        const Lines effects[] = {effectOf(with(key, [NSNumber numberWithBool:NO])),
                                 effectOf(with(key, [NSNumber numberWithBool:YES]))};
        ASSERT_NE(effects[0], effects[1]);
        for (const BadValue& bad : badValues()) {
            EXPECT_EQ(effectOf(with(key, bad.value)), effects[bad.asSwitch ? 1 : 0])
                << describe(bad.value);
        }
    }
}

TEST_F(BadPreferences, NumbersAreWhatTheirValuesConvertTo) {
    loaded();
    for (const char* const key : kNumbers) {
        SCOPED_TRACE(key);
        const Lines usual = effectOf(everythingOn());
        for (const BadValue& bad : badValues()) {
            const Lines effect = effectOf(with(key, bad.value));
            EXPECT_NE(effect, usual) << describe(bad.value);
            if (bad.asNumber != HUGE_VAL) {
                EXPECT_EQ(effect, effectOf(with(key, [NSNumber numberWithDouble:bad.asNumber])))
                    << describe(bad.value);
            }
        }
    }
}

TEST_F(BadPreferences, OfKeysWithoutEffectHaveNone) {
    loaded();
    const Lines usual = effectOf(everythingOn());
    for (const char* const key : kWithoutEffect) {
        for (const BadValue& bad : badValues()) {
            if (std::string(key) != "enableImageDump" || !bad.asSwitch) {
                EXPECT_EQ(effectOf(with(key, bad.value)), usual) << key << describe(bad.value);
            }
        }
    }
}

TEST_F(BadPreferences, LeaveNothingBehind) {
    loaded();
    const auto callWithEach = [this] {
        for (const BadValue& bad : badValues()) {
            for (const char* const key : kSwitches) {
                static_cast<void>(effectOf(with(key, bad.value)));
            }
        }
        static_cast<void>(effectOf(everythingOn()));
    };
    static_cast<void>(leftBy(callWithEach));
    EXPECT_EQ(leftBy(callWithEach), Lines{});
}

TEST_F(BadPreferences, ThemesThatAreNoListAreNone) {
    loaded();
    for (const id themes :
         {static_cast<id>(@"A"), static_cast<id>([NSNumber numberWithInt:1]),
          static_cast<id>([NSDictionary dictionaryWithObject:@"A" forKey:@"A"]),
          static_cast<id>([NSData dataWithBytes:"A" length:1]), static_cast<id>([NSArray array])}) {
        use(with("ActiveThemes", themes));
        EXPECT_EQ(address(wheel()), address(platforms)) << describe(themes);
        EXPECT_EQ(textOf([velMoranth() selectedTheme]), "") << describe(themes);
    }
}

TEST_F(BadPreferences, ThemesAmongWhatAreNoNamesAreAsked) {
    loaded();
    use(with("ActiveThemes",
             [NSArray arrayWithObjects:[NSNumber numberWithInt:7], [NSDictionary dictionary],
                                       nested(3), [NSData data], @"", @"A", nil]));
    EXPECT_EQ(pathOf(wheel()), "/Library/Themes/A/UIImages/wheel@3x.png");
    EXPECT_EQ(textOf([velMoranth() selectedTheme]), "/Library/Themes/7/Velmoranth");
}

TEST_F(BadPreferences, NestedDeepAreReadAllTheSame) {
    loaded();
    for (const int depth : {500, 600, 2000}) {
        preferences([NSDictionary dictionary]);
        EXPECT_EQ(textOf([velMoranth() selectedTheme]), "");
        use(with("theirs", nested(depth)));
        EXPECT_EQ(textOf([velMoranth() selectedTheme]), "/Library/Themes/A/Velmoranth") << depth;
    }
    use(with("ActiveThemes", nested(600)));
    EXPECT_EQ(address(wheel()), address(platforms));
    use(everythingOn());
    EXPECT_EQ(pathOf(wheel()), "/Library/Themes/A/UIImages/wheel@3x.png");
}

// Files that give no dictionary.
std::vector<std::string> noDictionaries() {
    const std::string xml = "<?xml version=\"1.0\"?><plist version=\"1.0\">";
    const std::string array = xml + "<array><string>A</string></array></plist>";
    std::string garbage;
    for (unsigned i = 0; i < 4096; ++i) {
        garbage += static_cast<char>(i * 2654435761U >> 13U);
    }
    std::string containers = xml + "<array>";
    while (containers.size() < 2'000'000) {
        containers += "<array><dict><key>a</key><array/></dict></array>";
    }
    return {"",
            garbage,
            "bplist00",
            std::string(64, '\0'),
            array,
            array.substr(0, 60),
            containers + "</array></plist>",
            "( enable, 1 )"};
}

TEST_F(BadPreferences, FilesThatAreNoneAreAsGoodAsNoneAtTheStart) {
    file(kPath, noDictionaries().at(1));
    load();
    EXPECT_EQ(address(wheel()), address(platforms));
    for (const std::string& bytes : noDictionaries()) {
        file(kPath, bytes);
        reload();
        clearJournal();
        EXPECT_EQ(address(wheel()), address(platforms)) << bytes.substr(0, 40);
        EXPECT_EQ(journalOf("+[UIImage imageWithContentsOfFile:]"), Lines{});
    }
    use(everythingOn());
    EXPECT_EQ(pathOf(wheel()), "/Library/Themes/A/UIImages/wheel@3x.png");
}

// As the engine has it: the record stays, and there are no themes.
TEST_F(BadPreferences, FilesThatAreNoneKeepTheSwitches) {
    loaded();
    SBIconListPageControl* const dots = [[[SBIconListPageControl alloc] init] autorelease];
    for (const std::string& bytes : noDictionaries()) {
        use(everythingOn());
        EXPECT_EQ(textOf([velMoranth() selectedTheme]), "/Library/Themes/A/Velmoranth");
        file(kPath, bytes);
        reload();
        EXPECT_EQ(textOf([velMoranth() selectedTheme]), "") << bytes.substr(0, 40);
        [dots setHidden:NO];
        [dots layoutSubviews];
        EXPECT_TRUE(dots->_hidden) << bytes.substr(0, 40);
    }
}

}  // namespace
}  // namespace velmoranth::standins::bad_preferences_test
