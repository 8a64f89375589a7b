// What holds for every replaced method that gives an image: what reaches the platform's method, how
// often and what comes back, and what a call leaves behind.
#include "device/library/image_rows_support.h"
#include <objc/runtime.h>

#include <ostream>

namespace velmoranth::standins::image_rows_test {
namespace {

constexpr double kExact = 16777217.25;  // more than a float holds
constexpr long long kWide = 5'000'000'000;
constexpr IconImageInfo kInfo{60.25, 61.5, 3, 13.125};

// What a row is sent; each row takes what it has a place for.
struct Sent {
    id receiver = nil;
    id first = nil;
    id second = nil;
    id third = nil;
    BOOL flag = NO;
    int number = 0;
    long long wide = 0;
    double scale = 0;
    CGSize size{};
    IconImageInfo info{};
};

struct Row {
    const char* method;
    id (*send)(const Sent& sent);
    Lines (*arguments)(const Sent& sent);
    const SystemVersion& system = kiOS13;
    int calls = 2;  // with the theming off
    bool isInitializer = false;
};

id object(CGImageRef image) {
    return (id)image;
}

const Row kRows[] = {
    {"-[CUINamedVectorGlyph UIImageWithAsset:configuration:flippedHorizontally:]",
     [](const Sent& sent) -> id {
         return [sent.receiver UIImageWithAsset:sent.first
                                  configuration:sent.second
                            flippedHorizontally:sent.flag];
     },
     [](const Sent& sent) {
         return Lines{wordsOf(sent.first), wordsOf(sent.second), wordsOf(sent.flag)};
     }},
    {"-[CUINamedVectorGlyph image]",
     [](const Sent& sent) {
         return object([static_cast<CUINamedVectorGlyph*>(sent.receiver) image]);
     },
     [](const Sent&) { return Lines{}; }},
    {"-[CUINamedImage UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:]",
     [](const Sent& sent) -> id {
         return [sent.receiver UIImageWithAsset:sent.first
                                  configuration:sent.second
                            flippedHorizontally:sent.flag
                            optionalVectorImage:sent.third];
     },
     [](const Sent& sent) {
         return Lines{wordsOf(sent.first), wordsOf(sent.second), wordsOf(sent.flag),
                      wordsOf(sent.third)};
     }},
    {"-[_UIImageContent CGImage]",
     [](const Sent& sent) {
         return object([static_cast<_UIImageContent*>(sent.receiver) CGImage]);
     },
     [](const Sent&) { return Lines{}; }},
    {"+[UIImage systemImageNamed:]",
     [](const Sent& sent) -> id { return [sent.receiver systemImageNamed:sent.first]; },
     [](const Sent& sent) { return Lines{wordsOf(sent.first)}; }},
    {"+[UIImage imageNamed:inBundle:withConfiguration:]",
     [](const Sent& sent) -> id {
         return [sent.receiver imageNamed:sent.first
                                 inBundle:sent.second
                        withConfiguration:sent.third];
     },
     [](const Sent& sent) {
         return Lines{wordsOf(sent.first), wordsOf(sent.second), wordsOf(sent.third)};
     }},
    {"+[UIImage imageNamed:inBundle:compatibleWithTraitCollection:]",
     [](const Sent& sent) -> id {
         return [sent.receiver imageNamed:sent.first
                                  inBundle:sent.second
             compatibleWithTraitCollection:sent.third];
     },
     [](const Sent& sent) {
         return Lines{wordsOf(sent.first), wordsOf(sent.second), wordsOf(sent.third)};
     }},
    {"+[UIImage imageNamed:inBundle:]",
     [](const Sent& sent) -> id {
         return [sent.receiver imageNamed:sent.first inBundle:sent.second];
     },
     [](const Sent& sent) { return Lines{wordsOf(sent.first), wordsOf(sent.second)}; }},
    {"+[UIImage _imageNamed:withTrait:]",
     [](const Sent& sent) -> id {
         return [sent.receiver _imageNamed:sent.first withTrait:sent.third];
     },
     [](const Sent& sent) { return Lines{wordsOf(sent.first), wordsOf(sent.third)}; }},
    {"+[UIImage imageWithContentsOfCPBitmapFile:flags:]",
     [](const Sent& sent) -> id {
         return [sent.receiver imageWithContentsOfCPBitmapFile:sent.first flags:sent.number];
     },
     [](const Sent& sent) { return Lines{wordsOf(sent.first), wordsOf(sent.number)}; }},
    {"+[UIImage kitImageNamed:]",
     [](const Sent& sent) -> id { return [sent.receiver kitImageNamed:sent.first]; },
     [](const Sent& sent) { return Lines{wordsOf(sent.first)}; }},
    {"+[UIImage _kitImageNamed:withTrait:]",
     [](const Sent& sent) -> id {
         return [sent.receiver _kitImageNamed:sent.first withTrait:sent.third];
     },
     [](const Sent& sent) { return Lines{wordsOf(sent.first), wordsOf(sent.third)}; }},
    {"-[WGWidgetInfo _queue_iconWithSize:scale:forWidgetWithIdentifier:extension:]",
     [](const Sent& sent) -> id {
         return [sent.receiver _queue_iconWithSize:sent.size
                                             scale:sent.scale
                           forWidgetWithIdentifier:sent.first
                                         extension:sent.third];
     },
     [](const Sent& sent) {
         return Lines{exactly(sent.size).text, wordsOf(sent.scale), wordsOf(sent.first),
                      wordsOf(sent.third)};
     }},
    {"-[SBSwitcherAppSuggestionBannerView "
     "_iconImageFromAppWithBundleIdentifier:withIconImageCache:]",
     [](const Sent& sent) -> id {
         return [sent.receiver _iconImageFromAppWithBundleIdentifier:sent.first
                                                  withIconImageCache:sent.third];
     },
     [](const Sent& sent) { return Lines{wordsOf(sent.first), wordsOf(sent.third)}; }},
    {"-[SBCalendarApplicationIcon generateIconImageWithInfo:]",
     [](const Sent& sent) -> id { return [sent.receiver generateIconImageWithInfo:sent.info]; },
     [](const Sent& sent) { return Lines{wordsOf(sent.info)}; }},
    {"+[SBHClockApplicationIconImageView "
     "generateProcessedMappedIconImageWithName:imageInfo:includingMask:]",
     [](const Sent& sent) -> id {
         return [sent.receiver generateProcessedMappedIconImageWithName:sent.first
                                                              imageInfo:sent.info
                                                          includingMask:sent.flag];
     },
     [](const Sent& sent) {
         return Lines{wordsOf(sent.first), wordsOf(sent.info), wordsOf(sent.flag)};
     }},
    {"-[PKIconImageCache imageForKey:]",
     [](const Sent& sent) -> id { return [sent.receiver imageForKey:sent.first]; },
     [](const Sent& sent) { return Lines{wordsOf(sent.first)}; }},
    {"-[SBHIconImageCache imageForIcon:]",
     [](const Sent& sent) -> id { return [sent.receiver imageForIcon:sent.second]; },
     [](const Sent& sent) { return Lines{wordsOf(sent.second)}; }},
    {"-[SBHIconImageCache unmaskedImageForIcon:]",
     [](const Sent& sent) -> id { return [sent.receiver unmaskedImageForIcon:sent.second]; },
     [](const Sent& sent) { return Lines{wordsOf(sent.second)}; }},
    {"+[APWUtil iconForBundleIdentifier:]",
     [](const Sent& sent) -> id { return [sent.receiver iconForBundleIdentifier:sent.first]; },
     [](const Sent& sent) { return Lines{wordsOf(sent.first)}; }},
    {"-[UISwitchModernVisualElement _effectiveThumbImage]",
     [](const Sent& sent) -> id { return [sent.receiver _effectiveThumbImage]; },
     [](const Sent&) { return Lines{}; }},
    {"+[WeatherImageLoader conditionImageNamed:style:]",
     [](const Sent& sent) -> id {
         return [sent.receiver conditionImageNamed:sent.first
                                             style:static_cast<NSInteger>(sent.wide)];
     },
     [](const Sent& sent) { return Lines{wordsOf(sent.first), wordsOf(sent.wide)}; }},
    {"+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]",
     [](const Sent& sent) -> id {
         return [sent.receiver _applicationIconImageForBundleIdentifier:sent.first
                                                                 format:sent.number
                                                                  scale:sent.scale];
     },
     [](const Sent& sent) {
         return Lines{wordsOf(sent.first), wordsOf(sent.number), wordsOf(sent.scale)};
     },
     kiOS12},
    {"+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]",
     [](const Sent& sent) -> id {
         return [sent.receiver _applicationIconImageForBundleIdentifier:sent.first
                                                                 format:sent.number
                                                                  scale:sent.scale];
     },
     [](const Sent& sent) {
         return Lines{wordsOf(sent.first), wordsOf(sent.number), wordsOf(sent.scale)};
     },
     kiOS13, 3},
    {"-[SBApplicationIcon getUnmaskedIconImage:]",
     [](const Sent& sent) -> id { return [sent.receiver getUnmaskedIconImage:sent.number]; },
     [](const Sent& sent) { return Lines{wordsOf(sent.number)}; }, kiOS12},
};

void PrintTo(const Row& row, std::ostream* stream) {
    *stream << row.method;
}

std::string caseName(const testing::TestParamInfo<Row>& info) {
    std::string name;
    for (const char letter : std::string(info.param.method)) {
        if (std::isalnum(static_cast<unsigned char>(letter)) != 0) {
            name += letter;
        }
    }
    return name + (&info.param.system == &kiOS12 ? "OniOS12" : "OniOS13");
}

// A parent of the fixture comes before it: the row decides for which system the library is loaded.
class EveryImageRow : public testing::WithParamInterface<Row>, public ImageRows {
  protected:
    EveryImageRow() : ImageRows(GetParam().system) {
        sent.receiver = receiver(classOf(row.method));
        sent.first = has("UIImageWithAsset") ? static_cast<id>(asset) : text;
        sent.second = has("inBundle:")  ? static_cast<id>(bundle)
                      : has("ForIcon:") ? static_cast<id>(icon)
                                        : other;
        answer(images[0]);
    }

    [[nodiscard]] static bool has(const char* part) {
        return std::string(GetParam().method).find(part) != std::string::npos;
    }

    [[nodiscard]] static Class classOf(const std::string& method) {
        return static_cast<Class>(objc_getClass(method.substr(2, method.find(' ') - 2).c_str()));
    }

    // The class itself, or an object of it that the theme may have an image for.
    [[nodiscard]] id receiver(Class cls, const std::string& name = "receiver") const {
        if (row.method[0] == '+') {
            return static_cast<id>(cls);
        }
        id made = [cls alloc];
        if ([made isKindOfClass:[CUINamedVectorGlyph class]]) {
            made = [made initWithName:@"star" catalog:catalog image:nullptr drawn:nil];
        } else if ([made isKindOfClass:[CUINamedImage class]]) {
            made = [made initWithName:@"star" scale:1];
        } else if ([made isKindOfClass:[_UIImageContent class]]) {
            made = [made initWithVectorGlyph:glyph CGImage:nullptr];
        } else {
            made = [made init];
        }
        if ([made isKindOfClass:[SBIcon class]]) {
            setVariable(made, "_leafIdentifier", @"star");
        }
        return named(made, name);
    }

    // What the platform's method answers from now on; a bitmap where it gives bitmaps.
    void answer(UIImage* image) const {
        setAnswer(row.method, givesBitmaps() ? object([image CGImage]) : static_cast<id>(image));
    }

    [[nodiscard]] static bool givesBitmaps() { return has(" image]") || has(" CGImage]"); }

    // The platform's method as the journal shows it; an object has that name.
    [[nodiscard]] std::string line(const Sent& what, const std::string& object = "receiver") const {
        const bool isMade = has("_initWith");
        const std::string name =
            class_getName(row.method[0] == '+' ? static_cast<Class>(what.receiver)
                                               : object_getClass(what.receiver));
        return sentTo(row.method[0] == '+' || isMade ? name : object, row.method,
                      row.arguments(what));
    }

    // Every image that a row may look for.
    static void addThemesImages() {
        for (const std::string& identifier :
             {"com.x.kit", "com.apple.Preferences", "com.apple.SpringBoardHome",
              "com.apple.weather-framework"}) {
            themePng(bundleFile(identifier, "star"));
        }
        for (const char* const name : {"star", "UISwitchKnob.png"}) {
            themePng(looseFile(name));
        }
        for (const char* const name : {"star", "(null)", "com.apple.mobilecal"}) {
            themePng(iconFile(name));
        }
    }

    const Row& row = GetParam();
    NSString* text = ownString("star", "text");
    id other = named([[NSObject alloc] init], "other");
    NSBundle* bundle = bundleOf("com.x.kit");
    SBIcon* icon = iconOf(@"star");
    UIImageAsset* asset = named([[UIImageAsset alloc] initWithBundle:bundle], "asset");
    CUICatalog* catalog = named([[CUICatalog alloc] initWithBundle:bundle], "catalog");
    CUINamedVectorGlyph* glyph = named([[CUINamedVectorGlyph alloc] initWithName:@"star"
                                                                         catalog:catalog
                                                                           image:nullptr
                                                                           drawn:nil],
                                       "glyph");
    Sent sent{.third = other,
              .flag = YES,
              .number = 7,
              .wide = kWide,
              .scale = kExact,
              .size = {60.1, 30.25},
              .info = kInfo};
    // No icon is kept from one to the next.
    Call call = [this] {
        row.send(sent);
        changeTheme();
    };
};

INSTANTIATE_TEST_SUITE_P(Of, EveryImageRow, testing::ValuesIn(kRows), caseName);

TEST_P(EveryImageRow, WithThemingOffIsThePlatformsLastAnswer) {
    addThemesImages();
    settings({"A"}, {"enableIconMask", "enableOverlay", "enableImageDump"});
    const auto last = static_cast<std::size_t>(row.calls - 1);
    for (const id answer :
         {static_cast<id>(images[7]), static_cast<id>(nil), static_cast<id>(@"")}) {
        std::vector<id> answers(images.begin(), images.begin() + 4);
        answers[last] = answer;
        setAnswers(row.method, {answers[0], answers[1], answers[2], answers[3]});
        const id result = row.send(sent);
        EXPECT_EQ(address(result), address(answer));
        Lines calls(static_cast<std::size_t>(row.calls), line(sent));
        if (has("getUnmaskedIconImage:")) {
            calls.insert(calls.begin() + 1, kAsksForiOS12);
        }
        EXPECT_EQ(taken(), calls);
    }
}

TEST_P(EveryImageRow, ArgumentsReachThePlatform) {
    Sent nothing{.receiver = sent.receiver,
                 .number = INT32_MIN,
                 .wide = INT64_MIN,
                 .scale = 0.1,
                 .size = {0.1, -kExact},
                 .info = {-1, 1e-9, 0.1, kExact}};
    // A number where a string is expected.
    Sent odd = sent;
    odd.first = named([[NSNumber alloc] initWithInt:5], "number");
    odd.third = [NSNull null];
    odd.number = INT32_MAX;
    odd.wide = INT64_MAX;
    const bool isClock = has("generateProcessedMappedIcon");
    for (const auto& switches : {std::initializer_list<const char*>{},
                                 {"enable"},
                                 {"enable", "enableLogging"},
                                 {"enableLogging"}}) {
        settings({"A"}, switches);
        for (const Sent& what : {sent, nothing, odd}) {
            row.send(what);
            Sent unmasked = what;
            unmasked.flag = NO;
            const Lines calls = journalOf(row.method);
            ASSERT_FALSE(calls.empty());
            EXPECT_EQ(calls.front(), line(what));
            for (const std::string& call : calls) {
                // The clock's last is asked for without its mask.
                EXPECT_TRUE(call == line(what) || (isClock && call == line(unmasked))) << call;
            }
            clearJournal();
        }
    }
}

TEST_P(EveryImageRow, SubclassThatIsAskedStaysTheReceiver) {
    addThemesImages();
    const Class heir = heirOf(classOf(row.method), "HeirOfTheClass");
    for (const char* const enable : {"removeDock", "enable"}) {
        settings({"A"}, {enable});
        Sent what = sent;
        what.receiver = receiver(heir, "heir");
        clearJournal();
        row.send(what);
        const Lines calls = journalOf(row.method);
        ASSERT_FALSE(calls.empty());
        EXPECT_EQ(journal().front(), line(what, "heir"));
        EXPECT_EQ(calls, Lines(calls.size(), line(what, "heir")));
    }
}

TEST_P(EveryImageRow, LeavesNothingBehind) {
    const auto expectSame = [&] {
        expectNothingLeft(call);
        EXPECT_EQ([text retainCount], 1U);
        EXPECT_EQ([other retainCount], 1U);
        EXPECT_EQ([icon retainCount], 1U);
        EXPECT_EQ([asset retainCount], 1U);
        EXPECT_EQ(openImageContexts(), 0U);
    };
    // Once without the theme's images and once with them.
    for (const bool hasImages : {false, true}) {
        if (hasImages) {
            addThemesImages();
        }
        for (const auto& switches :
             {std::initializer_list<const char*>{}, {"enable"}, {"enable", "enableLogging"}}) {
            settings({"A"}, switches);
            for (UIImage* const image : {images[0], static_cast<UIImage*>(nil)}) {
                answer(image);
                expectSame();
            }
        }
    }
}

TEST_P(EveryImageRow, PassesExceptionsOn) {
    // On iOS 12 a change of the theme asks for the kept application icons itself; nil is not kept.
    if (&row.system == &kiOS12 && has("_applicationIconImage")) {
        answer(nil);
    }
    for (const bool hasImages : {false, true}) {
        if (hasImages) {
            addThemesImages();
        }
        for (const auto& switches :
             {std::initializer_list<const char*>{}, {"enable"}, {"enable", "enableLogging"}}) {
            settings({"A"}, switches);
            expectExceptionsToPass(row.method, call);
            EXPECT_EQ(openImageContexts(), 0U);
        }
    }
}

}  // namespace
}  // namespace velmoranth::standins::image_rows_test
