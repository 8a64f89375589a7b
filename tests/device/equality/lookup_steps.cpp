// Look-ups of images: apps' icons, images of the interface, and the chrome of the home screen.
#include "device/equality/steps.h"

namespace velmoranth::equality {
namespace {

constexpr const char* kFindIcon =
    "+[VelMoranth searchforIconInIconBundlesWithLeafIdentifier:forImg:]";
constexpr const char* kApplicationIcon =
    "+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]";
constexpr const char* kUnmaskedIcon = "-[SBApplicationIcon getUnmaskedIconImage:]";
constexpr const char* kImageForIcon = "-[SBHIconImageCache imageForIcon:]";
constexpr const char* kUnmaskedForIcon = "-[SBHIconImageCache unmaskedImageForIcon:]";
constexpr const char* kContents = "-[SBIconImageView contentsImage]";
constexpr const char* kPanelIcon = "-[PKIconImageCache imageForKey:]";
constexpr const char* kReportIcon = "+[APWUtil iconForBundleIdentifier:]";
constexpr const char* kWeather = "+[WeatherImageLoader conditionImageNamed:style:]";

constexpr const char* kInBundle = "+[VelMoranth deviceUIImageNamed:fromBundle:originalUIImage:]";
constexpr const char* kLoose = "+[VelMoranth deviceUIImageNamed:originalUIImage:]";
constexpr const char* kFolder = "+[VelMoranth searchFolder:forImageStr:]";
constexpr const char* kFolders = "+[VelMoranth searchFolders:forImageString:]";
constexpr const char* kSeen = "+[VelMoranth hasSearchForImageNamedOrBundle:forImg:]";
constexpr const char* kNamedWith = "+[UIImage imageNamed:inBundle:withConfiguration:]";
constexpr const char* kNamedFor = "+[UIImage imageNamed:inBundle:compatibleWithTraitCollection:]";
constexpr const char* kNamedIn = "+[UIImage imageNamed:inBundle:]";
constexpr const char* kNamedTrait = "+[UIImage _imageNamed:withTrait:]";
constexpr const char* kSystemNamed = "+[UIImage systemImageNamed:]";
constexpr const char* kKitNamed = "+[UIImage kitImageNamed:]";
constexpr const char* kKitTrait = "+[UIImage _kitImageNamed:withTrait:]";
constexpr const char* kBitmapFile = "+[UIImage imageWithContentsOfCPBitmapFile:flags:]";
constexpr const char* kKit = "com.example.kit";

// Two hundred characters, of which a file's name cannot hold more than twice.
constexpr const char* kLong =
    "com.example.abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyzabcd"
    "efghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrst"
    "uvwxyzabcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz";

}  // namespace

const Steps& appIconSteps() {
    static const Steps kSteps{
        {"+[VelMoranth selectedTheme]"},
        {"+[VelMoranth currentThemePlist]"},
        {"+[VelMoranth userChangedThemes]"},
        {"+[VelMoranth DetectUserDevice]"},
        {kFindIcon, {"com.example.mail"}},
        {kFindIcon, {"com.example.notes"}},
        {kFindIcon, {"com.example.maps"}},
        {kFindIcon, {"com.example.music"}},
        {kFindIcon, {"com.example.music-large@2x"}},
        {kFindIcon, {"com.example.photos"}},
        {kFindIcon, {"com.example.clock@2x"}},
        {kFindIcon, {"com.example.empty"}},
        {kFindIcon, {"com.example.cut"}},
        {kFindIcon, {"com.example.folder"}},
        {kFindIcon, {"com.example.gone"}},
        {kFindIcon, {"com.example.absent"}},
        {kFindIcon, {"com.example.absent"}, Given::none},
        {kFindIcon, {"com.example.mail"}, Given::none},
        {kFindIcon, {nullptr}},
        {kFindIcon, {nullptr}, Given::none},
        {kFindIcon, {""}},
        {kFindIcon, {"com.exämple.ümlaut 日本"}},
        {kFindIcon, {"100%@ %s%d%n"}},
        {kFindIcon, {"line\nbreak"}},
        {kFindIcon, {"with 'quotes' \"and\" \\"}},
        {kFindIcon, {".hidden"}},
        {kFindIcon, {"../Bundles/escaped"}},
        {kFindIcon, {"/com.example.mail"}},
        {kFindIcon, {"./com.example.mail"}},
        {kFindIcon, {"COM.EXAMPLE.MAIL"}},
        {kFindIcon, {kLong}},
        {kApplicationIcon, {"com.example.mail"}, Given::image, 2},
        {kApplicationIcon, {"com.example.mail"}, Given::image, 2},
        {kApplicationIcon, {"com.example.mail"}, Given::none, 2},
        {kApplicationIcon, {"com.example.mail"}, Given::image, 1},
        {kApplicationIcon, {"com.example.notes"}, Given::image, 2},
        {kApplicationIcon, {"com.example.cut"}, Given::image, 2},
        {kApplicationIcon, {"com.example.absent"}, Given::image, 2},
        {kApplicationIcon, {"com.example.maps"}, Given::none, 2},
        {kApplicationIcon, {nullptr}, Given::image, 2},
        {kApplicationIcon, {nullptr}, Given::none, 0},
        {kApplicationIcon, {""}, Given::image, -1},
        {kUnmaskedIcon, {"com.example.maps"}, Given::image, 2},
        {kUnmaskedIcon, {"com.example.maps"}, Given::image, 2},
        {kUnmaskedIcon, {"com.example.absent"}, Given::none, 2},
        {kUnmaskedIcon, {nullptr}, Given::image, 2},
        {kImageForIcon, {"com.example.music"}},
        {kImageForIcon, {"com.example.music"}},
        {kImageForIcon, {"com.apple.mobilecal"}},
        {kImageForIcon, {"com.example.nodes"}},
        {kImageForIcon, {"com.example.nodes"}, Given::none},
        {kImageForIcon, {nullptr}},
        {kUnmaskedForIcon, {"com.example.music"}},
        {kUnmaskedForIcon, {"com.example.photos"}},
        {kUnmaskedForIcon, {"com.example.cut"}},
        {kUnmaskedForIcon, {nullptr}, Given::none},
        {kContents, {"com.example.unique"}},
        {kContents, {"com.example.unique"}},
        {kContents, {"com.example.absent"}, Given::none},
        {kContents, {nullptr}},
        {kPanelIcon, {"wifi"}},
        {kPanelIcon, {"wifi"}},
        {kPanelIcon, {"absent"}, Given::none},
        {kPanelIcon, {nullptr}},
        {kReportIcon, {"com.example.photos"}},
        {kReportIcon, {"com.example.absent"}},
        {kReportIcon, {nullptr}, Given::none},
        // What was kept goes with a change of the themes, and what is found after is new.
        {"write", {"/Library/Themes/First/IconBundles/com.example.absent-large.png", "52 53"}},
        {kApplicationIcon, {"com.example.absent"}, Given::image, 2},
        {kImageForIcon, {"com.example.nodes"}},
        {"post", {kThemeChanged}},
        {kApplicationIcon, {"com.example.absent"}, Given::image, 2},
        {kApplicationIcon, {"com.example.mail"}, Given::image, 2},
        {"preferences", {"one theme"}},
        {kImageForIcon, {"com.example.nodes"}},
        {kFindIcon, {"com.example.mail"}},
        {"post", {kThemeChanged}},
        {kImageForIcon, {"com.example.nodes"}},
        {kApplicationIcon, {"com.example.mail"}, Given::image, 2},
        {"post", {kMainPreferences}},
        {kApplicationIcon, {"com.example.mail"}, Given::image, 2},
        {"preferences", {"off"}},
        {"post", {kMainPreferences}},
        {kApplicationIcon, {"com.example.mail"}, Given::image, 2},
        {kApplicationIcon, {"com.example.maps"}, Given::image, 2},
        {kImageForIcon, {"com.example.music"}},
        {"post", {kThemeChanged}},
        {kApplicationIcon, {"com.example.mail"}, Given::image, 2},
        {"erase", {kPreferencesFile}},
        {"post", {kThemeChanged}},
        {kFindIcon, {"com.example.mail"}},
        {"+[VelMoranth selectedTheme]"},
        {"+[VelMoranth currentThemePlist]"},
    };
    return kSteps;
}

const Steps& interfaceImageSteps() {
    static const Steps kSteps{
        {kInBundle, {"back", kKit}},
        {kInBundle, {"back", kKit}},
        {kInBundle, {"back", kKit}, Given::none},
        // Kept by the name alone.
        {kInBundle, {"back", "com.example.other"}},
        {kLoose, {"back"}},
        {kInBundle, {"back@2x", kKit}},
        {kInBundle, {"back@3x", kKit}},
        {kInBundle, {"forward", kKit}},
        {kInBundle, {"bare", kKit}},
        {kInBundle, {"tab.png", kKit}},
        {kInBundle, {"tab", kKit}},
        {kInBundle, {"only", kKit}},
        {kInBundle, {"only@2x", kKit}},
        {kInBundle, {"pad", kKit}},
        {kInBundle, {"pad~ipad", kKit}},
        {kInBundle, {"pad@2x~ipad", kKit}},
        {kInBundle, {"mended", kKit}},
        {kInBundle, {"absent", kKit}},
        {kInBundle, {"absent", kKit}, Given::none},
        {kInBundle, {"forward", "com.example.absent"}},
        {kInBundle, {nullptr, kKit}},
        {kInBundle, {"orphan", nullptr}},
        {kInBundle, {nullptr, nullptr}},
        {kInBundle, {"", kKit}},
        {kInBundle, {"", ""}},
        {kInBundle, {"../com.example.other/back", kKit}},
        {kLoose, {"glyph"}},
        {kLoose, {"glyph"}, Given::none},
        {kLoose, {"chart"}},
        {kLoose, {"plain"}},
        {kLoose, {"loose"}},
        {kLoose, {"named.png"}},
        {kLoose, {""}},
        {kLoose, {nullptr}},
        {kLoose, {nullptr}, Given::none},
        {kLoose, {"absent"}},
        {kLoose, {"%d%@"}, Given::none},
        {kFolder, {"Folder/", "a.png"}},
        {kFolder, {"Other/", "a.png"}},
        {kFolder, {"", "a.png"}},
        {kFolder, {nullptr, "a.png"}},
        {kFolder, {"Folder/", nullptr}},
        {kFolder, {"Absent/", "a.png"}},
        {kFolders, {"a.png", "Other/", "Folder/"}},
        {kFolders, {"a.png", "Absent/", "Other/"}},
        {kFolders, {"a.png"}},
        {kFolders, {nullptr, "Folder/"}},
        {kSeen, {"one"}},
        {kSeen, {"one"}},
        {kSeen, {nullptr}},
        {kSeen, {nullptr}},
        {kSeen, {""}, Given::none},
        {kSeen, {""}},
        // As the interface asks.
        {kNamedWith, {"forward", kKit}},
        {kNamedWith, {"pad~ipad", kKit}},
        {kNamedWith, {"absent", kKit}},
        {kNamedWith, {"plain", nullptr}},
        {kNamedWith, {nullptr, kKit}},
        {kNamedWith, {"sunny", "com.apple.weather-framework"}},
        {kNamedFor, {"forward", kKit}},
        {kNamedFor, {"ClockIconBackgroundSquare", kKit}},
        {kNamedFor, {"absent", nullptr}},
        {kNamedIn, {"bare", kKit}},
        {kNamedIn, {"<image asset 7>", kKit}},
        {kNamedIn, {nullptr, kKit}},
        {kNamedIn, {"absent", kKit}, Given::none},
        {kNamedTrait, {"chart"}},
        {kNamedTrait, {"none of it"}},
        {kNamedTrait, {nullptr}},
        {kSystemNamed, {"heart.fill"}},
        {kSystemNamed, {"circle.fill"}},
        {kSystemNamed, {nullptr}, Given::none},
        {kKitNamed, {"glyph"}},
        {kKitNamed, {"none"}},
        {kKitTrait, {"named.png"}},
        {kKitTrait, {nullptr}},
        {kBitmapFile, {"/var/mobile/Library/SpringBoard/OriginalHomeBackground.cpbitmap"}},
        {kBitmapFile, {nullptr}, Given::none},
        {kWeather, {"sunny"}, Given::image, 3},
        {kWeather, {"sunny"}, Given::image, 3},
        {kWeather, {"rain"}, Given::image, -4},
        {kWeather, {nullptr}, Given::none, 0},
        // What was found stays for the life of the process.
        {"preferences", {"one theme"}},
        {"post", {kThemeChanged}},
        {kInBundle, {"back", kKit}},
        {kLoose, {"absent"}},
        {kLoose, {"plain"}},
        {kNamedIn, {"forward", kKit}},
    };
    return kSteps;
}

const Steps& chromeSteps() {
    static const Steps kSteps{
        {"+[VelMoranth iconMask]"},
        {"+[VelMoranth iconOverlay]"},
        {"+[VelMoranth iconOverlay]"},
        {"+[VelMoranth clearIconOverlay]"},
        {"+[VelMoranth clearIconMask]"},
        {"+[VelMoranth clearShadowImg]"},
        {"+[VelMoranth iconOverlay]"},
        {"+[VelMoranth FolderImage]"},
        {"+[VelMoranth badgeImage]"},
        {"+[VelMoranth pageDots:]", {}, Given::image, 1},
        {"+[VelMoranth pageDots:]", {}, Given::image, 0},
        {"+[VelMoranth spotlightPageDot]"},
        {"+[VelMoranth addShadowToIcon]"},
        {"+[VelMoranth redrawIconWithOverlay:]"},
        {"+[VelMoranth imageWithImage:scaledToSize:]", {}, Given::image, 17},
        {"+[VelMoranth imageWithImage:scaledToSize:]", {}, Given::none, 18},
        {"+[VelMoranth colorWithHexString:]", {"#112233"}},
        {"+[VelMoranth colorWithHexString:]", {" 0xFF8000\n"}},
        {"+[VelMoranth colorWithHexString:]", {"ab12CD"}},
        {"+[VelMoranth colorWithHexString:]", {"zz1 -2"}},
        {"+[VelMoranth colorWithHexString:]", {""}},
        {"+[VelMoranth colorWithHexString:]", {nullptr}},
        {kApplicationIcon, {"com.example.mail"}, Given::image, 2},
        {kApplicationIcon, {"com.example.absent"}, Given::image, 2},
        {kImageForIcon, {"com.example.notes"}},
        {kUnmaskedForIcon, {"com.example.maps"}},
        {kContents, {"com.example.unique"}},
        {kReportIcon, {"com.example.photos"}},
        {"post", {kThemeChanged}},
        {kImageForIcon, {"com.example.music"}},
        {"-[SBIconBadgeView layoutSubviews]"},
        {"-[SBIconView layoutSubviews]", {"com.example.mail"}},
        {"-[SBIconView layoutSubviews]", {nullptr}},
    };
    return kSteps;
}

}  // namespace velmoranth::equality
