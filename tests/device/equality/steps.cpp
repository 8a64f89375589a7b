// What is asked besides look-ups: settings, the settings panel's files, the image dump, catalogs,
// sounds and start-up.
#include "device/equality/steps.h"

#include <array>

namespace velmoranth::equality {
namespace {

constexpr const char* kFindIcon =
    "+[VelMoranth searchforIconInIconBundlesWithLeafIdentifier:forImg:]";
constexpr const char* kLoose = "+[VelMoranth deviceUIImageNamed:originalUIImage:]";
constexpr const char* kDump = "+[VelMoranth VelmoranthImageDump:named:inBundle:]";
constexpr const char* kSave = "+[VelmoranthFileManager saveCurrentSettinginFolderWithName:]";
constexpr const char* kRename = "+[VelmoranthFileManager renameFileFrom:to:]";
constexpr const char* kDelete = "+[VelmoranthFileManager deleteFileFromDevice:fromDir:]";
constexpr const char* kFonts = "+[VelmoranthFileManager overwriteFontFilesInDir:fromTheme:]";
constexpr const char* kFactory = "+[VelmoranthFileManager NoUserSettingCreateThemeNow]";
constexpr const char* kSuccess = "+[VelmoranthFileManager ShowSuccesView:]";
constexpr const char* kExtract = "+[VelMoranth imageFromBundlePath:extract:extractionPath:]";

constexpr const char* kSaved = "/User/Library/VelMoranth/UserSettings";
constexpr const char* kSavedWork =
    "/User/Library/VelMoranth/UserSettings/ Work com.qor.velmoranthprefs.plist";
constexpr const char* kMobileLibrary = "/private/var/mobile/Library";
constexpr const char* kDumped = "/private/var/mobile/Library/VelmoranthImageDump";

// What the settings decide and the process shows.
const Steps& shownSettings() {
    static const Steps kSteps{
        {"+[VelMoranth selectedTheme]"},
        {kFindIcon, {"com.example.seven"}},
        {kFindIcon, {"com.example.mail"}},
        {kLoose, {"plain"}},
        {"+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]",
         {"com.example.mail"},
         Given::image,
         2},
        {"-[SBIconLegibilityLabelView isHidden]"},
        {"-[SBIconLegibilityLabelView alpha]"},
        {"-[SBIconBadgeView layoutSubviews]"},
        {"-[SBIconView layoutSubviews]", {"com.example.mail"}},
        {"list", {kDumped}},
    };
    return kSteps;
}

void append(Steps& steps, const Steps& more) {
    steps.insert(steps.end(), more.begin(), more.end());
}

}  // namespace

Steps settingsSteps(Text next) {
    Steps steps = shownSettings();
    steps.push_back({"preferences", {next}});
    append(steps, {{"post", {kDevelopingPreferences}}, {"post", {kCompileAssets}}});
    append(steps, shownSettings());
    steps.push_back({"post", {kMainPreferences}});
    append(steps, shownSettings());
    steps.push_back({"erase", {kPreferencesFile}});
    append(steps, {{"post", {kMainPreferences}}, {"post", {kThemeChanged}}});
    append(steps, shownSettings());
    append(steps, {{"post", {"com.example.other"}}, {"post", {kDevelopingPreferences}}});
    return steps;
}

const Steps& panelSteps() {
    static const Steps kSteps{
        {"list", {kMobileLibrary}},
        {"+[VelmoranthFileManager sharedFileManager]"},
        {kFactory},
        {kSave, {"Work"}},
        {kSave, {"Work"}},
        {"list", {kSaved}},
        {kSave, {"Home"}},
        {"erase", {"/User/Library/VelMoranth/UserSettings/com.qor.velmoranthprefs.plist"}},
        {kSave, {"Home"}},
        {kSave, {nullptr}},
        {kSave, {""}},
        {kSave, {"a/b"}},
        {"erase", {"/User/Library/VelMoranth/UserSettings/com.qor.velmoranthprefs.plist"}},
        {kSave, {"Über %@ 日本"}},
        {kSave, {"../Elsewhere"}},
        {"list", {kMobileLibrary}},
        {kRename,
         {kSavedWork, "/User/Library/VelMoranth/UserSettings/ Play com.qor.velmoranthprefs.plist"}},
        {kRename, {kSavedWork, "/User/Library/VelMoranth/UserSettings/ Again"}},
        {kRename,
         {"/User/Library/VelMoranth/UserSettings/ Home com.qor.velmoranthprefs.plist",
          "/User/Library/VelMoranth/UserSettings/ Play com.qor.velmoranthprefs.plist"}},
        {kRename,
         {"/User/Library/VelMoranth/UserSettings/ Home com.qor.velmoranthprefs.plist",
          "/User/Library/VelMoranth/Nowhere/x"}},
        {kRename, {kSaved, "/User/Library/VelMoranth/Kept"}},
        {kRename, {"/User/Library/VelMoranth/Kept", kSaved}},
        {kRename, {kPreferencesFile, kPreferencesFile}},
        {kRename, {nullptr, "/User/Library/VelMoranth/x"}},
        {kRename, {kPreferencesFile, nullptr}},
        {kRename, {nullptr, nullptr}},
        {kRename, {"", ""}},
        {"list", {kMobileLibrary}},
        {kDelete,
         {"/User/Library/VelMoranth/UserSettings/ (null) com.qor.velmoranthprefs.plist", kSaved}},
        {kDelete, {kSavedWork, kSaved}},
        {kDelete, {nullptr, nullptr}},
        {kDelete, {"", "%@"}},
        {kDelete, {"/Library/Themes/First/IconBundles/com.example.gone-large.png", "Themes"}},
        {kDelete, {"/Library/Themes/First/Bundles", "/Library/Themes"}},
        {kDelete, {"/Library/Themes/First/Bundles", nullptr}},
        {"list", {"/Library/Themes/First"}},
        {"write", {"/Library/Themes/Second/Fonts/Menu.ttf", "text"}},
        {"write", {"/Library/Themes/Second/Fonts/More/Other.ttf", "text"}},
        {kFonts, {"/System/Library/Fonts", "/Library/Themes/Second/Fonts"}},
        {kFonts, {"/System/Library/Fonts", "/Library/Themes/Second/Fonts"}},
        {kFonts, {"/System/Library/Other", "/Library/Themes/Absent/Fonts"}},
        {kFonts, {"/System/Nowhere/Fonts", "/Library/Themes/Second/Fonts"}},
        {kFonts, {nullptr, "/Library/Themes/Second/Fonts"}},
        {kFonts, {"/System/Library/Third", nullptr}},
        {"list", {"/System"}},
        {"wait", {}, Given::image, 1000},
        {kSuccess, {"/Library/Themes/Second/Info.plist"}},
        {"wait", {}, Given::image, 300},
        {kSuccess, {"/Library/Themes/Second/UIImages/plain.png"}},
        {"wait", {}, Given::image, 300},
        {"wait", {}, Given::image, 400},
        {"+[VelmoranthFileManager finshedSelfAlert]"},
        {kSuccess, {nullptr}},
        {"+[VelmoranthFileManager finshedSelfAlert]"},
        {"wait", {}, Given::image, 1000},
        // No preferences any more, then no factory ones either.
        {"erase", {kPreferencesFile}},
        {kSave, {"Nothing"}},
        {kFactory},
        {kFactory},
        {"list", {"/private/var/mobile/Library/Preferences"}},
        {"erase", {kPreferencesFile}},
        {"erase", {kFactoryFile}},
        {kFactory},
        {"list", {kMobileLibrary}},
    };
    return kSteps;
}

const Steps& dumpSteps() {
    static const Steps kSteps{
        {"list", {kDumped}},
        {kDump, {"one", "com.example.kit"}},
        {kDump, {"one", "com.example.kit"}},
        {kDump, {"two", nullptr}},
        {kDump, {"com.example.app", "IconBundles"}},
        {kDump, {nullptr, "com.example.kit"}},
        {kDump, {nullptr, nullptr}},
        {kDump, {"", ""}},
        {kDump, {"dot.", nullptr}},
        {kDump, {"dot.png", nullptr}},
        {kDump, {"in/folder", "com.example.kit"}},
        {kDump, {"in/folder", nullptr}},
        {kDump, {"three", "in/folders/deep"}},
        {kDump, {"Größe 日本 %@", "com.exämple"}},
        {kDump, {"nothing", "com.example.kit"}, Given::none},
        {"list", {kDumped}},
        // What look-ups are asked for.
        {kFindIcon, {"com.example.mail"}},
        {kFindIcon, {"com.example.absent"}},
        {kFindIcon, {"com.example.mail"}, Given::none},
        {kFindIcon, {nullptr}},
        {"+[VelMoranth deviceUIImageNamed:fromBundle:originalUIImage:]",
         {"back", "com.example.kit"}},
        {"+[VelMoranth deviceUIImageNamed:fromBundle:originalUIImage:]", {"orphan", nullptr}},
        {kLoose, {"plain"}},
        {kLoose, {"absent"}, Given::none},
        {"+[UIImage imageNamed:inBundle:]", {"asked", "com.example.kit"}},
        {"+[UIImage kitImageNamed:]", {"asked.kit"}},
        {"list", {kDumped}},
        {"preferences", {"all"}},
        {kLoose, {"later"}},
        {"list", {kDumped}},
        {"+[VelMoranth contentTypeForImageData:]", {"\xFF\xD8"}},
        {"+[VelMoranth contentTypeForImageData:]", {"\x89PNG"}},
        {"+[VelMoranth contentTypeForImageData:]", {"GIF"}},
        {"+[VelMoranth contentTypeForImageData:]", {"II*"}},
        {"+[VelMoranth contentTypeForImageData:]", {"MM"}},
        {"+[VelMoranth contentTypeForImageData:]", {"text"}},
        {"+[VelMoranth contentTypeForImageData:]", {""}},
        {"+[VelMoranth contentTypeForImageData:]", {nullptr}},
    };
    return kSteps;
}

const Steps& soundSteps() {
    constexpr const char* kFeedback = "-[_UIFeedback play]";
    constexpr const char* kSound = "+[SBUISound soundWithFeedbackEventType:]";
    static const Steps kSteps{
        {"-[Sounds initClass:]"},
        {"-[Sounds initClass:]", {}, Given::none},
        {"-[Sounds PlayButtonClick:]"},
        {"-[Sounds PlaySlide:]"},
        {"-[Sounds PlaySlideWithClick:]"},  // has no file
        {"-[Sounds PlayError:]"},
        {"-[Sounds PlayReboot:]"},  // has no file
        {"-[Sounds PlaySuccess:]"},
        {"-[Sounds PlayOn:]"},
        {"-[Sounds PlayOff:]"},  // has no file
        {"-[VelMoranth initClass:]"},
        {"-[VelMoranth initClass:]", {}, Given::none},
        {"-[VelMoranth playUISound:]", {}, Given::image, 1104},
        {"-[VelMoranth playUISound:]", {}, Given::image, 1002},
        {"-[VelMoranth playUISound:]", {}, Given::image, 1003},
        {"-[VelMoranth playUISound:]", {}, Given::image, 7},
        {"-[VelMoranth playUISound:]", {}, Given::image, -1104},
        {"-[VelMoranth playsystemSound:]", {}, Given::image, 1002},
        {"-[VelMoranth playsystemSound:]", {}, Given::image, 1004},
        {"-[VelMoranth playsystemSound:]", {}, Given::image, 1005},
        {"-[VelMoranth playsystemSound:]", {}, Given::image, 0},
        {kFeedback, {}, Given::image, 1104},
        {kFeedback, {}, Given::image, 4294967295},
        {kSound, {}, Given::image, 1002},
        {kSound, {}, Given::image, 1010},
        {kSound, {}, Given::image, -1},
        {"preferences", {"one theme"}},
        {"-[VelMoranth playUISound:]", {}, Given::image, 1003},
        {"-[VelMoranth playUISound:]", {}, Given::image, 1002},
        {"preferences", {"off"}},
        {"post", {kMainPreferences}},
        {kFeedback, {}, Given::image, 1104},
        {kSound, {}, Given::image, 1002},
        {"erase", {kPreferencesFile}},
        {"-[VelMoranth playUISound:]", {}, Given::image, 1002},
    };
    return kSteps;
}

const Steps& catalogSteps() {
    static const Steps kSteps{
        {kExtract, {"/Library/Catalogs/Plain.car", "/User/Documents/out"}},
        {kExtract, {"/Library/Catalogs/Kit.bundle", "/User/Documents/out"}},
        {kExtract, {"/Library/Catalogs/Named.bundle", "/User/Documents/out"}},
        {kExtract, {"/Library/Catalogs/Empty.car", "/User/Documents/out"}},
        {kExtract, {"/Library/Catalogs/Absent.car", "/User/Documents/out"}},
        {kExtract, {"/Library/Catalogs/Absent.bundle", "/User/Documents/out"}},
        {kExtract, {nullptr, "/User/Documents/out"}},
        {kExtract, {"", nullptr}},
        {kExtract, {"/Library/Catalogs/Plain.car", nullptr}},
        {kExtract, {"/Library/Catalogs/Plain.car", "/Library/Themes/Second/Info.plist"}},
        {"list", {"/private/var/mobile/Documents"}},
        {"list", {"/(null)"}},
    };
    return kSteps;
}

const Steps& startUpSteps() {
    static const Steps kSteps{
        {"list", {kMobileLibrary}},
        {"+[VelMoranth sharedIconManager]"},
        {"+[VelmoranthFileManager sharedFileManager]"},
        {kFindIcon, {"com.example.mail"}},
    };
    return kSteps;
}

}  // namespace velmoranth::equality
