// The main class's look-ups, imaging and tools, by message: what they give, of nil too, and that
// they keep nothing that they do not have to.
#include "device/library/device_process.h"
#include "device/library/ownership.h"
#import "device/standins/controllers.h"
#import "device/standins/images.h"

namespace velmoranth::standins::main_class_test {
namespace {

using Lines = std::vector<std::string>;

class MainClass : public DeviceProcess {
  protected:
    MainClass() {
        activeThemes({"A", "B"});
        loaded();
        class_ = velMoranth();
        original_ = imageOfPixels(4, 4);
    }

    // The size of a theme's image says which file it is.
    static void themeImage(const std::string& path, unsigned side) {
        png("/Library/Themes/" + path, side);
    }

    static double sideOf(UIImage* image) { return [image size].width; }

    static UIView* viewHolding(NSInteger tag) {
        UIView* const root = [[[UIView alloc] init] autorelease];
        UIView* const branch = [[[UIView alloc] init] autorelease];
        UIView* const leaf = [[[UIView alloc] init] autorelease];
        [leaf setTag:tag];
        [branch addSubview:leaf];
        [root addSubview:branch];
        return root;
    }

    Class<VelMoranthMessages> class_;
    UIImage* original_;
};

TEST_F(MainClass, TellsOfTheSelectedTheme) {
    file("/Library/Themes/B/Info.plist", "");
    EXPECT_EQ(textOf([class_ selectedTheme]), "/Library/Themes/A/Velmoranth");
    EXPECT_EQ(textOf([class_ currentThemePlist]), "/Library/Themes/B/Info.plist");
    EXPECT_FALSE([class_ userChangedThemes]);
}

TEST_F(MainClass, TellsOfNoThemes) {
    preferences([NSDictionary dictionary]);
    EXPECT_EQ(textOf([class_ selectedTheme]), "");
    EXPECT_EQ([class_ currentThemePlist], nil);
}

TEST_F(MainClass, KnowsTheDevice) {
    setDevice(0, 1);
    EXPECT_EQ(textOf([class_ DetectUserDevice]), "iphone");
    setDevice(1, 1);
    EXPECT_EQ(textOf([class_ DetectUserDevice]), "ipad");
    setDevice(std::nullopt, 1);
    EXPECT_EQ(textOf([class_ DetectUserDevice]), "iphone");
}

TEST_F(MainClass, FindsAnAppsIconOrGivesTheFallBackItself) {
    themeImage("B/IconBundles/com.example.app-large.png", 11);
    const auto find = [&](NSString* identifier, UIImage* image) {
        return [class_ searchforIconInIconBundlesWithLeafIdentifier:identifier forImg:image];
    };
    EXPECT_EQ(sideOf(find(@"com.example.app", original_)), 11);
    EXPECT_EQ(sideOf(find(@"com.example.app", nil)), 11);
    EXPECT_EQ(find(@"com.example.other", original_), original_);
    EXPECT_EQ(find(nil, original_), original_);
    EXPECT_EQ(find(nil, nil), nil);
}

TEST_F(MainClass, FindsInterfaceImagesByNameAndBundle) {
    themeImage("A/Bundles/com.example/first.png", 5);
    themeImage("A/UIImages/zweités 図.png", 6);
    const auto inBundle = [&](NSString* name, NSString* bundle) {
        return [class_ deviceUIImageNamed:name fromBundle:bundle originalUIImage:original_];
    };
    UIImage* const first = inBundle(@"first", @"com.example");
    EXPECT_EQ(sideOf(first), 5);
    // The same one from now on.
    EXPECT_EQ(inBundle(@"first", @"com.other"), first);
    NSString* const second = [NSString stringWithUTF8String:"zweités 図"];
    EXPECT_EQ(sideOf([class_ deviceUIImageNamed:second originalUIImage:original_]), 6);
    EXPECT_EQ(inBundle(@"third", nil), original_);
    EXPECT_EQ(inBundle(nil, @"com.example"), original_);
    EXPECT_EQ([class_ deviceUIImageNamed:nil originalUIImage:original_], original_);
    EXPECT_EQ([class_ deviceUIImageNamed:@"third" originalUIImage:nil], nil);
}

TEST_F(MainClass, SearchesFolders) {
    themeImage("B/two/x.png", 7);
    themeImage("B/(null)x.png", 8);
    themeImage("B/5x.png", 9);
    EXPECT_EQ(sideOf([class_ searchFolder:@"two/" forImageStr:@"x.png"]), 7);
    EXPECT_EQ([class_ searchFolder:@"one/" forImageStr:@"x.png"], nil);
    EXPECT_EQ(sideOf([class_ searchFolder:nil forImageStr:@"x.png"]), 8);
    EXPECT_EQ([class_ searchFolder:nil forImageStr:nil], nil);
    NSArray* const folders = [NSArray arrayWithObjects:@"one/", @"two/", nil];
    EXPECT_EQ(sideOf([class_ searchFolders:folders forImageString:@"x.png"]), 7);
    EXPECT_EQ([class_ searchFolders:folders forImageString:nil], nil);
    EXPECT_EQ([class_ searchFolders:nil forImageString:@"x.png"], nil);
}

TEST_F(MainClass, TakesAnyObjectsForFolders) {
    themeImage("B/two/x.png", 7);
    NSArray* const mixed = [NSArray
        arrayWithObjects:[NSNull null], [NSNumber numberWithInt:5], [NSArray array], @"two/", nil];
    EXPECT_EQ(sideOf([class_ searchFolders:mixed forImageString:@"x.png"]), 7);
    themeImage("B/5x.png", 9);
    EXPECT_EQ(sideOf([class_ searchFolders:mixed forImageString:@"x.png"]), 9);
    EXPECT_EQ([class_ searchFolders:@"two/" forImageString:@"x.png"], nil);
}

TEST_F(MainClass, RemembersWhichNamesWereAsked) {
    EXPECT_FALSE([class_ hasSearchForImageNamedOrBundle:@"x" forImg:original_]);
    EXPECT_TRUE([class_ hasSearchForImageNamedOrBundle:@"x" forImg:nil]);
    EXPECT_FALSE([class_ hasSearchForImageNamedOrBundle:nil forImg:nil]);
    EXPECT_EQ(logLines(),
              (Lines{"Velmoranth UIDictHasImg : x", "Velmoranth UIDictHasImg : (null)"}));
}

TEST_F(MainClass, MasksIcons) {
    EXPECT_EQ([class_ iconMask], nil);
    themeImage("A/Bundles/com.apple.mobileicons.framework/AppIconMask.png", 4);
    UIImage* const mask = [class_ iconMask];
    EXPECT_EQ(sideOf(mask), 4);
    [class_ clearIconMask];
    UIImage* const masked = [class_ maskImage:original_ withMask:mask];
    ASSERT_NE(masked, nil);
    EXPECT_NE(masked, original_);
    // Of the picture's own bytes, wherever they are.
    EXPECT_EQ(CGImageGetDataProvider(maskOf([masked CGImage])),
              CGImageGetDataProvider([mask CGImage]));
    EXPECT_EQ([class_ maskImage:nil withMask:mask], nil);
    EXPECT_EQ([class_ maskImage:original_ withMask:nil], nil);
    EXPECT_EQ([class_ maskImage:nil withMask:nil], nil);
}

TEST_F(MainClass, DrawsOverlaysOverIcons) {
    EXPECT_EQ([class_ redrawIconWithOverlay:original_], original_);
    EXPECT_EQ([class_ redrawIconWithOverlay:nil], nil);
    themeImage("A/Velmoranth/iPhoneOverlay.png", 9);
    UIImage* const overlay = [class_ iconOverlay];
    EXPECT_EQ(sideOf(overlay), 9);
    EXPECT_EQ([class_ iconOverlay], overlay);
    UIImage* const redrawn = [class_ redrawIconWithOverlay:original_];
    EXPECT_NE(redrawn, original_);
    EXPECT_EQ(sideOf(redrawn), 4);
    EXPECT_EQ([class_ redrawIconWithOverlay:nil], nil);
    remove("/Library/Themes/A/Velmoranth/iPhoneOverlay.png");
    [class_ clearIconOverlay];
    EXPECT_EQ([class_ iconOverlay], nil);
}

TEST_F(MainClass, MakesShadows) {
    themeImage("A/Velmoranth/iPhoneShadow.png", 12);
    UIImageView* const shadow = [class_ addShadowToIcon];
    EXPECT_EQ(sideOf([shadow image]), 12);
    EXPECT_EQ([shadow tag], 478);
    EXPECT_EQ(wordsOf([shadow frame]), "(-10, -10) 80×80");
    remove("/Library/Themes/A/Velmoranth/iPhoneShadow.png");
    UIImageView* const next = [class_ addShadowToIcon];
    EXPECT_NE(next, shadow);
    EXPECT_EQ([next image], [shadow image]);
    [class_ clearShadowImg];
    EXPECT_EQ([[class_ addShadowToIcon] image], nil);
}

TEST_F(MainClass, MakesReflectionsAndSizes) {
    UIView* const view = [[[UIView alloc] initWithFrame:{{1, 2}, {4, 6}}] autorelease];
    EXPECT_EQ(wordsOf([[class_ reflectedImage:view withHeight:3] size]), "4×3");
    EXPECT_EQ([class_ reflectedImage:view withHeight:0], nil);
    EXPECT_EQ([class_ reflectedImage:view withHeight:NSUIntegerMax], nil);
    EXPECT_EQ([class_ reflectedImage:view withHeight:NSUInteger{1} << 32U], nil);
    EXPECT_EQ([class_ reflectedImage:nil withHeight:3], nil);
    EXPECT_EQ(wordsOf([[class_ imageWithImage:original_ scaledToSize:{8, 2}] size]), "8×2");
    EXPECT_EQ([class_ imageWithImage:original_ scaledToSize:CGSize{}], nil);
    EXPECT_EQ(wordsOf([[class_ imageWithImage:nil scaledToSize:{8, 2}] size]), "8×2");
    EXPECT_EQ(openImageContexts(), 0U);
}

TEST_F(MainClass, StripsTaggedViews) {
    struct Removal {
        NSInteger tag;
        void (*remove)(Class<VelMoranthMessages> cls, UIView* view);
    };

    const Removal removals[] = {
        {547,
         [](Class<VelMoranthMessages> cls, UIView* view) { [cls removeAllOverlaysfrom:view]; }},
        {478, [](Class<VelMoranthMessages> cls, UIView* view) { [cls removeAllShadowsfrom:view]; }},
        {2232, [](Class<VelMoranthMessages> cls, UIView* view) { [cls removeFolderfrom:view]; }},
        {777,
         [](Class<VelMoranthMessages> cls, UIView* view) { [cls removeReflectedIconsfrom:view]; }},
    };
    for (const Removal& removal : removals) {
        for (const NSInteger tag : {547, 478, 2232, 777, 2322}) {
            UIView* const view = viewHolding(tag);
            removal.remove(class_, view);
            EXPECT_EQ([view viewWithTag:tag] == nil, tag == removal.tag) << tag;
        }
        removal.remove(class_, nil);
    }
}

TEST_F(MainClass, GivesTheHomeScreensFurniture) {
    const std::string springBoard = "A/Bundles/com.apple.springboard/";
    EXPECT_EQ([[class_ FolderImage] image], nil);
    EXPECT_EQ([class_ pageDots:YES], nil);
    themeImage("A/Velmoranth/Folder.png", 21);
    themeImage(springBoard + "SBBadgeBG.png", 22);
    themeImage(springBoard + "SBPageDotCurrent.png", 23);
    themeImage(springBoard + "SBPageDot.png", 24);
    themeImage(springBoard + "Spotlight_Pages.png", 25);
    themeImage("A/Velmoranth/SBDockBGiphone.png", 26);
    EXPECT_EQ(sideOf([[class_ FolderImage] image]), 21);
    EXPECT_EQ([[class_ FolderImage] tag], 2322);
    EXPECT_EQ(sideOf([[class_ badgeImage] image]), 22);
    EXPECT_EQ(sideOf([class_ pageDots:YES]), 23);
    EXPECT_EQ(sideOf([class_ pageDots:NO]), 24);
    EXPECT_EQ(sideOf([class_ spotlightPageDot]), 25);
    UIImageView* const dock = [class_ SBDockImgWithFrame:{{1, 2}, {375, 96}}];
    EXPECT_EQ(sideOf([dock image]), 26);
    EXPECT_EQ(wordsOf([dock frame]), "(1, 12) 375×96");
}

TEST_F(MainClass, ReadsColours) {
    const auto color = [&](NSString* text) {
        return exactly(*[[class_ colorWithHexString:text] CGColor]).text;
    };
    EXPECT_EQ(color(@" 0x00fF00\n"),
              exactly(*[[UIColor colorWithRed:0 green:1 blue:0 alpha:1] CGColor]).text);
    const std::string gray = exactly(*[[UIColor grayColor] CGColor]).text;
    EXPECT_EQ(color(@"#FF0000"), gray);
    EXPECT_EQ(color(@""), gray);
    EXPECT_EQ(color(nil), gray);
}

TEST_F(MainClass, MakesColoursOfEveryTextThatIsOne) {
    clearJournal();
    for (NSString* const text : {@"000000", @"FFFFFF", @"0x808080", @"12345"}) {
        EXPECT_NE([class_ colorWithHexString:text], nil);
    }
    EXPECT_EQ(journalOf("+[UIColor"),
              (Lines{"+[UIColor colorWithRed:green:blue:alpha:] 0 0 0 1",
                     "+[UIColor colorWithRed:green:blue:alpha:] 1 1 1 1",
                     "+[UIColor colorWithRed:green:blue:alpha:] 0.501960813999176 "
                     "0.501960813999176 0.501960813999176 1",
                     "+[UIColor grayColor]"}));
}

TEST_F(MainClass, DumpsImages) {
    const std::string root = "/var/mobile/Library/VelmoranthImageDump";
    [class_ VelmoranthImageDump:original_ named:@"x" inBundle:nil];
    EXPECT_TRUE(exists(root + "/UIImages/x@3x.png"));
    [class_ VelmoranthImageDump:original_ named:@"com.example" inBundle:@"IconBundles"];
    EXPECT_TRUE(exists(root + "/Bundles/IconBundles/com.example@3x.png"));
    EXPECT_TRUE(exists(root + "/IconBundles/com.example@3x.png"));
    clearLog();
    [class_ VelmoranthImageDump:nil named:nil inBundle:nil];
    EXPECT_EQ(logLines(), (Lines{"VelmoranthImageDump imgToDump: (null) HASNODATA:    Imgnamed: "
                                 "(null)   inBundle: (null)"}));
}

TEST_F(MainClass, NamesContentTypes) {
    const auto type = [&](const char* bytes) {
        return textOf([class_ contentTypeForImageData:[NSData dataWithBytes:bytes length:2]]);
    };
    EXPECT_EQ(type("\xFF\xD8"), "image/jpeg");
    EXPECT_EQ(type("\x89P"), "image/png");
    EXPECT_EQ(type("GI"), "image/gif");
    EXPECT_EQ(type("II"), "image/tiff");
    EXPECT_EQ(type("MM"), "image/tiff");
    EXPECT_EQ(type("xy"), "(nil)");
    EXPECT_EQ([class_ contentTypeForImageData:[NSData data]], nil);
    EXPECT_EQ([class_ contentTypeForImageData:nil], nil);
    EXPECT_EQ([class_ contentTypeForImageData:@"GIF"], nil);
}

TEST_F(MainClass, SaysThatThereIsNoCatalog) {
    EXPECT_EQ([class_ imageFromBundlePath:@"/none/Assets.car" extract:YES extractionPath:@"/out"],
              nil);
    EXPECT_EQ(logLines(), (Lines{"Velmoranth Assets Bundle /none/Assets.car not found"}));
    EXPECT_EQ([class_ imageFromBundlePath:nil extract:NO extractionPath:nil], nil);
}

TEST_F(MainClass, KeepsNothingOfWhatItGives) {
    themeImage("A/IconBundles/app-large.png", 11);
    themeImage("A/Bundles/com.apple.mobileicons.framework/AppIconMask.png", 4);
    themeImage("A/Velmoranth/iPhoneOverlay.png", 9);
    themeImage("A/Velmoranth/iPhoneShadow.png", 12);
    themeImage("A/UIImages/x.png", 13);
    const Living living = livingAround([&] {
        UIImage* const image = imageOfPixels(4, 4);
        UIView* const view = [[[UIView alloc] initWithFrame:{{0, 0}, {4, 4}}] autorelease];
        [class_ selectedTheme];
        [class_ searchforIconInIconBundlesWithLeafIdentifier:@"app" forImg:image];
        [class_ deviceUIImageNamed:@"x" originalUIImage:image];
        [class_ maskImage:image withMask:[class_ iconMask]];
        [class_ redrawIconWithOverlay:image];
        [class_ addShadowToIcon];
        [class_ reflectedImage:view withHeight:2];
        [class_ imageWithImage:image scaledToSize:{2, 2}];
        [class_ removeAllShadowsfrom:view];
        [class_ FolderImage];
        [class_ badgeImage];
        [class_ pageDots:YES];
        [class_ SBDockImgWithFrame:{}];
        [class_ colorWithHexString:@"102030"];
        [class_ VelmoranthImageDump:image named:@"x" inBundle:nil];
    });
    EXPECT_EQ(living.after, living.before);
    [class_ clearIconOverlay];
    [class_ clearShadowImg];
}

TEST_F(MainClass, GivesBackWhatItKept) {
    themeImage("A/Velmoranth/iPhoneOverlay.png", 9);
    const long before = living("UIImage");
    @autoreleasepool {
        [class_ iconOverlay];
    }
    EXPECT_EQ(living("UIImage"), before + 1);
    [class_ clearIconOverlay];
    EXPECT_EQ(living("UIImage"), before);
}

}  // namespace
}  // namespace velmoranth::standins::main_class_test
