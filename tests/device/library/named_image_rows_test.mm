// The replacements of the class methods by which UIImage finds images by name.
#include "device/library/image_rows_support.h"

#include <ostream>

namespace velmoranth::standins::named_image_rows_test {
namespace {

constexpr const char* kWithConfiguration = "+[UIImage imageNamed:inBundle:withConfiguration:]";
constexpr const char* kWithTraits = "+[UIImage imageNamed:inBundle:compatibleWithTraitCollection:]";
constexpr const char* kInBundle = "+[UIImage imageNamed:inBundle:]";
constexpr const char* kSystem = "+[UIImage systemImageNamed:]";
constexpr const char* kBitmapFile = "+[UIImage imageWithContentsOfCPBitmapFile:flags:]";
constexpr const char* kKit = "com.x.kit";

struct Method {
    const char* name;
    id (*send)(NSString* name, NSBundle* bundle);
    // What follows the name in the call's line.
    Lines rest;
    // Of the log line, after the name.
    const char* logged;

    [[nodiscard]] bool takesBundle() const { return !rest.empty() && rest.front() == "bundle"; }
};

void PrintTo(const Method& method, std::ostream* stream) {
    *stream << method.name;
}

const Method kMethods[] = {
    {kSystem,
     [](NSString* name, NSBundle*) -> id { return [UIImage systemImageNamed:name]; },
     {},
     "systemImageNamed arg1: "},
    {kWithConfiguration,
     [](NSString* name, NSBundle* bundle) -> id {
         return [UIImage imageNamed:name inBundle:bundle withConfiguration:nil];
     },
     {"bundle", "nil"},
     "imageNamed arg1: "},
    {kWithTraits,
     [](NSString* name, NSBundle* bundle) -> id {
         return [UIImage imageNamed:name inBundle:bundle compatibleWithTraitCollection:nil];
     },
     {"bundle", "nil"},
     "imageNamed arg1: "},
    {kInBundle,
     [](NSString* name, NSBundle* bundle) -> id {
         return [UIImage imageNamed:name inBundle:bundle];
     },
     {"bundle"},
     "imageNamed arg1: "},
    {"+[UIImage _imageNamed:withTrait:]",
     [](NSString* name, NSBundle*) -> id { return [UIImage _imageNamed:name withTrait:nil]; },
     {"nil"},
     "_imageNamed arg1: "},
    {kBitmapFile,
     [](NSString* name, NSBundle*) -> id {
         return [UIImage imageWithContentsOfCPBitmapFile:name flags:7];
     },
     {"7"},
     "imageWithContentsOfCPBitmapFile arg1: "},
    {"+[UIImage kitImageNamed:]",
     [](NSString* name, NSBundle*) -> id { return [UIImage kitImageNamed:name]; },
     {},
     "kitImageNamed arg1: "},
    {"+[UIImage _kitImageNamed:withTrait:]",
     [](NSString* name, NSBundle*) -> id { return [UIImage _kitImageNamed:name withTrait:nil]; },
     {"nil"},
     "kitImageNamedwithTrait arg1: "},
};

class NamedImage : public testing::WithParamInterface<Method>, public ImageRows {
  protected:
    NamedImage() {
        settings({"A"}, {"enable"});
        nameObject(bundle, "bundle");
    }

    [[nodiscard]] bool isLookedUp() const { return method.name != kBitmapFile; }

    [[nodiscard]] std::string call(NSString* name) const {
        return sentToClass(method.name, joined({{wordsOf(name)}, method.rest}));
    }

    [[nodiscard]] std::string file(const std::string& name) const {
        return method.takesBundle() ? bundleFile(kKit, name) : looseFile(name);
    }

    [[nodiscard]] Lines misses(const std::string& name) const {
        if (!isLookedUp()) {
            return {};
        }
        return method.takesBundle() ? missesInBundle(kKit, name) : missesLoose(name);
    }

    // The platform's second answer after that look-up.
    void expectPlatforms(NSString* name, NSBundle* of, const Lines& lookup) {
        answerInTurn(method.name);
        nameObject(of, "bundle");
        clearJournal();
        EXPECT_EQ(answeredBy(method.send(name, of)), 1) << method.name;
        EXPECT_EQ(taken(), joined({{call(name), call(name)}, lookup})) << method.name;
    }

    const Method& method = GetParam();
    NSBundle* bundle = bundleOf(kKit);
};

INSTANTIATE_TEST_SUITE_P(Of, NamedImage, testing::ValuesIn(kMethods),
                         [](const testing::TestParamInfo<Method>& info) {
                             std::string name;
                             for (const char letter : std::string(info.param.name)) {
                                 if (std::isalnum(static_cast<unsigned char>(letter)) != 0) {
                                     name += letter;
                                 }
                             }
                             return name;
                         });

TEST_P(NamedImage, IsLookedUpWithThePlatformsSecondAnswer) {
    expectPlatforms(@"back", bundle, misses("back"));
}

TEST_P(NamedImage, IsTheThemesForTheLifeOfTheProcess) {
    themePng(file("back"));
    answerInTurn(method.name);
    const id image = method.send(@"back", bundle);
    if (!isLookedUp()) {
        EXPECT_EQ(answeredBy(image), 1);
        return;
    }
    EXPECT_EQ(pathOf(image), themePath(file("back")));
    EXPECT_EQ(taken(), (Lines{call(@"back"), call(@"back"), readsImage(file("back"))}));
    themePng(file("back"), 9);
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(address(method.send(@"back", bundle)), address(image));
        EXPECT_EQ(taken(), (Lines{call(@"back"), call(@"back")}));
        EXPECT_EQ(logLines(), Lines{"VELMORANTH WeatherImageLoader Dict HasImg"});
        changeTheme();
        clearLog();
        clearJournal();
    }
}

TEST_P(NamedImage, KeepsOneImageOnPurpose) {
    themePng(file("back"));
    setAnswer(method.name, static_cast<id>(images[0]));
    const auto retained = [images[0] retainCount];
    EXPECT_EQ(leftBy([this] { method.send(@"back", bundle); }),
              isLookedUp() ? Lines{"UIImage +1"} : Lines{});
    expectNothingLeft([this] { method.send(@"back", bundle); });
    EXPECT_EQ([images[0] retainCount], retained);
}

TEST_P(NamedImage, NilOfThePlatformIsThemedOrPassedOn) {
    setAnswer(method.name, static_cast<id>(nil));
    EXPECT_EQ(address(method.send(@"back", bundle)), nullptr);
    EXPECT_EQ(taken(), joined({{call(@"back"), call(@"back")}, misses("back")}));
    themePng(file("back"));
    EXPECT_EQ(pathOf(method.send(@"back", bundle)), isLookedUp() ? themePath(file("back")) : "");
}

TEST_P(NamedImage, WithoutNameOrBundle) {
    const bool isLeft = !isLookedUp() || method.name == kInBundle;
    for (const id name : {static_cast<id>(nil), static_cast<id>([NSNumber numberWithInt:5])}) {
        expectPlatforms(static_cast<NSString*>(name), bundle, isLeft ? Lines{} : misses("(null)"));
    }
    if (method.takesBundle()) {
        expectPlatforms(@"back", bundleOf(nullptr), missesLoose("back"));
        answerInTurn(method.name);
        clearJournal();
        EXPECT_EQ(answeredBy(method.send(@"back", nil)), 1);
        EXPECT_EQ(journalOf("+[UIImage imageWithContentsOfFile:]"), missesLoose("back"));
    }
}

TEST_P(NamedImage, ExceptionsThatAreLeftToThePlatform) {
    const bool isInBundle = method.name == kInBundle;

    struct Left {
        const char* name;
        bool isLeft;
    };

    for (const auto& [name, isLeft] : {Left{"circle.fill", method.name == kSystem},
                                       {"ClockIconBackgroundSquare", method.name == kWithTraits},
                                       {"<image asset: 0x1>", isInBundle}}) {
        NSString* const text = [NSString stringWithUTF8String:name];
        expectPlatforms(text, bundle, isLeft ? Lines{} : misses(name));
    }
    const Lines weathers = method.takesBundle() ? Lines{} : misses("rain");
    expectPlatforms(@"rain", bundleOf("com.apple.weather-framework"), weathers);
}

TEST_P(NamedImage, IsLoggedWithAFreshAnswer) {
    for (const char* const enable : {"enable", "removeDock"}) {
        settings({"A"}, {enable, "enableLogging"});
        answerInTurn(method.name);
        EXPECT_EQ(answeredBy(method.send(@"back", bundle)), 2);
        EXPECT_EQ(steps(), Lines(3, call(@"back")));
        const std::string line = logLines().front();
        EXPECT_EQ(line.rfind("VELMORANTH " + std::string(method.logged) + "back", 0), 0U) << line;
        EXPECT_TRUE(line.ends_with(describe(images[1]))) << line;
        EXPECT_EQ(line.find(describe(bundle)) != std::string::npos, method.takesBundle()) << line;
    }
}

}  // namespace
}  // namespace velmoranth::standins::named_image_rows_test
