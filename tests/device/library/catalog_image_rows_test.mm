// The replacements on what the platform makes of its asset catalogs.
#include "device/library/image_rows_support.h"
#include "device/library/load_library.h"
#include <objc/runtime.h>

namespace velmoranth::standins::catalog_image_rows_test {
namespace {

constexpr const char* kOfGlyph =
    "-[CUINamedVectorGlyph UIImageWithAsset:configuration:flippedHorizontally:]";
constexpr const char* kOfImage =
    "-[CUINamedImage UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:]";
constexpr const char* kGlyphBitmap = "-[CUINamedVectorGlyph image]";
constexpr const char* kContentBitmap = "-[_UIImageContent CGImage]";
constexpr const char* kGlyphOfContent = "-[_UIImageContent vectorGlyph]";
// Of the platform's second answer.
constexpr const char* kWraps = "+[UIImage imageWithCGImage:] 21×10 pixels";
constexpr const char* kKit = "com.x.kit";

class CatalogRows : public ImageRows {
  protected:
    static CUINamedVectorGlyph* glyphOf(id name, CUICatalog* of) {
        return named([[CUINamedVectorGlyph alloc] initWithName:name
                                                       catalog:of
                                                         image:nullptr
                                                         drawn:nil],
                     "glyph");
    }

    // The method's next answers are the images' bitmaps.
    void answerBitmapsInTurn(const std::string& method) {
        setAnswers(method, {(id)[images[0] CGImage], (id)[images[1] CGImage],
                            (id)[images[2] CGImage], (id)[images[3] CGImage]});
    }

    [[nodiscard]] int answeredBy(CGImageRef bitmap) const {
        for (std::size_t number = 0; number < images.size(); ++number) {
            if ([images[number] CGImage] == bitmap) {
                return static_cast<int>(number);
            }
        }
        return -1;
    }

    using ImageRows::answeredBy;

    // An object that has no variable of the names that are read.
    id stranger = named([[NSObject alloc] init], "stranger");
    NSBundle* bundle = bundleOf(kKit);
    UIImageAsset* asset = named([[UIImageAsset alloc] initWithBundle:bundle], "asset");
    CUICatalog* catalog = named([[CUICatalog alloc] initWithBundle:bundle], "catalog");
};

// --- Images of an asset, of a glyph and of a catalog's image

struct FromAsset {
    const char* method;
    id (*make)(id name);
    id (*send)(id receiver, id asset);
    std::string call;
    bool looksInNoBundle;  // where the asset's bundle is missing
};

const FromAsset kFromAsset[] = {
    {kOfGlyph,
     [](id name) -> id {
         return [[CUINamedVectorGlyph alloc] initWithName:name catalog:nil image:nullptr drawn:nil];
     },
     [](id receiver, id asset) -> id {
         return [receiver UIImageWithAsset:asset configuration:nil flippedHorizontally:YES];
     },
     "-[CUINamedVectorGlyph UIImageWithAsset:configuration:flippedHorizontally:] receiver asset "
     "nil YES",
     false},
    {kOfImage, [](id name) -> id { return [[CUINamedImage alloc] initWithName:name scale:2]; },
     [](id receiver, id asset) -> id {
         return [receiver UIImageWithAsset:asset
                             configuration:nil
                       flippedHorizontally:YES
                       optionalVectorImage:nil];
     },
     "-[CUINamedImage UIImageWithAsset:configuration:flippedHorizontally:optionalVectorImage:] "
     "receiver asset nil YES nil",
     true},
};

class ImageOfAsset : public testing::WithParamInterface<FromAsset>, public CatalogRows {
  protected:
    ImageOfAsset() {
        settings({"A"}, {"enable"});
        answerInTurn(row.method);
    }

    id send(id name, id of) {
        const id receiver = named(row.make(name), "receiver");
        nameObject(of, "asset");
        clearLog();
        return row.send(receiver, of);
    }

    // The platform's second answer, and the look-up, if any.
    void expectMiss(id name, id of, const Lines& lookup) {
        answerInTurn(row.method);
        EXPECT_EQ(answeredBy(send(name, of)), 1);
        EXPECT_EQ(taken(), joined({{row.call, row.call}, lookup}));
    }

    const FromAsset& row = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Of, ImageOfAsset, testing::ValuesIn(kFromAsset),
                         [](const testing::TestParamInfo<FromAsset>& info) {
                             return std::string(info.index == 0 ? "Glyph" : "CatalogImage");
                         });

TEST_P(ImageOfAsset, IsLookedUpInTheContainingBundle) {
    expectMiss(@"star", asset, missesInBundle(kKit, "star"));
    EXPECT_EQ(logLines(), Lines{"UIImageAsset LoadImage :star  fromBundle: com.x.kit"});
}

TEST_P(ImageOfAsset, IsTheThemesAndKept) {
    themePng(bundleFile(kKit, "star"));
    const id image = send(@"star", asset);
    EXPECT_EQ(pathOf(image), themePath(bundleFile(kKit, "star")));
    EXPECT_EQ(taken(), (Lines{row.call, row.call, readsImage(bundleFile(kKit, "star"))}));
    EXPECT_EQ(address(send(@"star", asset)), address(image));
    changeTheme();
    clearJournal();
    EXPECT_EQ(address(send(@"star", asset)), address(image));
    EXPECT_EQ(taken(), (Lines{row.call, row.call}));
}

TEST_P(ImageOfAsset, KeepsOneImageOnPurpose) {
    themePng(bundleFile(kKit, "star"));
    const id receiver = named(row.make(@"star"), "receiver");
    const Call call = [&] { row.send(receiver, asset); };
    EXPECT_EQ(leftBy(call), Lines{"UIImage +1"});
    expectNothingLeft(call);
    EXPECT_EQ([receiver retainCount], 1U);
    EXPECT_EQ([asset retainCount], 1U);
}

TEST_P(ImageOfAsset, NilOfThePlatformIsLookedUpInBothPlaces) {
    setAnswers(row.method, {images[0], nil, nil, images[3]});
    EXPECT_EQ(answeredBy(send(@"star", asset)), 3);
    EXPECT_EQ(taken(), joined({{row.call, row.call},
                               missesInBundle(kKit, "star"),
                               {row.call},
                               missesLoose("star"),
                               {row.call}}));
    themePng(looseFile("star"));
    setAnswer(row.method, static_cast<id>(nil));
    EXPECT_EQ(pathOf(send(@"star", asset)), themePath(looseFile("star")));
}

TEST_P(ImageOfAsset, WithoutNameIsThePlatforms) {
    themePng(looseFile("(null)"));
    themePng(bundleFile(kKit, "(null)"));
    expectMiss(nil, asset, {});
    expectMiss([NSNumber numberWithInt : 5], asset, {});
}

TEST_P(ImageOfAsset, AssetWithoutBundle) {
    const Lines lookup =
        row.looksInNoBundle ? missesInBundle("(null)", "star") : missesLoose("star");
    for (const id without : {static_cast<id>(nil), static_cast<id>(@"no bundle"), stranger}) {
        UIImageAsset* const bare = named([[UIImageAsset alloc] initWithBundle:without], "asset");
        expectMiss(@"star", bare, lookup);
        EXPECT_EQ(logLines(), Lines{"UIImageAsset LoadImage :star  fromBundle: (null)"});
    }
    UIImageAsset* const anonymous =
        named([[UIImageAsset alloc] initWithBundle:bundleOf(nullptr)], "asset");
    expectMiss(@"star", anonymous, missesInBundle("(null)", "star"));
}

TEST_P(ImageOfAsset, WhatIsNoAssetIsLookedUpAmongTheLooseImages) {
    expectMiss(@"star", stranger, missesLoose("star"));
    EXPECT_EQ(logLines(), Lines{});
    themePng(looseFile("star"));
    EXPECT_EQ(pathOf(send(@"star", stranger)), themePath(looseFile("star")));
}

TEST_P(ImageOfAsset, NilAsset) {
    const id receiver = named(row.make(@"star"), "receiver");
    EXPECT_EQ(answeredBy(row.send(receiver, nil)), 1);
    // A glyph's is left to the platform.
    EXPECT_EQ(journalOf("+[UIImage imageWithContentsOfFile:]").size(),
              row.looksInNoBundle ? 4U : 0U);
}

TEST_P(ImageOfAsset, SubclassOfAssetsIsOneToo) {
    themePng(bundleFile(kKit, "star"));
    const id made = [heirOf([UIImageAsset class], "UIMutableAsset") alloc];
    const id heir = named([made initWithBundle:bundle], "asset");
    EXPECT_EQ(pathOf(send(@"star", heir)), themePath(bundleFile(kKit, "star")));
}

TEST_P(ImageOfAsset, WithoutTheClassOfAssetsThereIsNone) {
    hideClass("UIImageAsset");
    expectMiss(@"star", asset, missesLoose("star"));
}

TEST_P(ImageOfAsset, IsLogged) {
    settings({"A"}, {"enable", "enableLogging"});
    const id receiver = named(row.make(@"star"), "receiver");
    EXPECT_EQ(answeredBy(row.send(receiver, asset)), 2);
    EXPECT_EQ(taken(), joined({{row.call, row.call, row.call}, missesInBundle(kKit, "star")}));
    const std::string line = logLines().front();
    EXPECT_EQ(line, row.looksInNoBundle
                        ? "VELMORANTH CUINamedImage :UIImageWithAsset " + describe(asset) +
                              "    optionalVectorImage: (null)  Orig " + describe(images[1]) + " " +
                              describe(receiver)
                        : "VELMORANTH CUINamedVectorGlyph UIImageWithAsset: " + describe(asset) +
                              " Orig: " + describe(images[1]));
}

TEST_F(CatalogRows, DescriptionOfAnAssetIsThePlatformsWithoutALine) {
    settings({"A"}, {"enable", "enableLogging"});
    answerInTurn(kOfImage);
    CUINamedImage* const image =
        named([[CUINamedImage alloc] initWithName:@"<image asset: 0x1>" scale:1], "image");
    EXPECT_EQ(answeredBy([image UIImageWithAsset:asset
                                   configuration:nil
                             flippedHorizontally:NO
                             optionalVectorImage:nil]),
              1);
    EXPECT_EQ(logLines(), Lines{});
    EXPECT_EQ(taken().size(), 2U);
}

// --- The bitmap of a glyph

class GlyphBitmap : public CatalogRows {
  protected:
    GlyphBitmap() {
        settings({"A"}, {"enable"});
        answerBitmapsInTurn(kGlyphBitmap);
    }

    void expectThePlatformsSecond(CUINamedVectorGlyph* glyph) {
        answerBitmapsInTurn(kGlyphBitmap);
        clearJournal();
        EXPECT_EQ(answeredBy([glyph image]), 1);
        EXPECT_EQ(taken(), (Lines{sentTo("glyph", kGlyphBitmap), sentTo("glyph", kGlyphBitmap)}));
    }
};

TEST_F(GlyphBitmap, IsLookedUpInTheBundleOfItsCatalog) {
    CUINamedVectorGlyph* const glyph = glyphOf(@"star", catalog);
    EXPECT_EQ(answeredBy([glyph image]), 1);
    EXPECT_EQ(taken(),
              joined({{sentTo("glyph", kGlyphBitmap), sentTo("glyph", kGlyphBitmap), kWraps},
                      missesInBundle(kKit, "star")}));
}

TEST_F(GlyphBitmap, IsThatOfTheThemesImage) {
    themePng(bundleFile(kKit, "star"), 7);
    CUINamedVectorGlyph* const glyph = glyphOf(@"star", catalog);
    const CGImageRef bitmap = [glyph image];
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(CGImageGetWidth(bitmap), 7U);
    EXPECT_EQ(taken(), (Lines{sentTo("glyph", kGlyphBitmap), sentTo("glyph", kGlyphBitmap), kWraps,
                              readsImage(bundleFile(kKit, "star"))}));
    EXPECT_EQ([glyph image], bitmap);
    EXPECT_EQ(taken(), (Lines{sentTo("glyph", kGlyphBitmap), sentTo("glyph", kGlyphBitmap),
                              "+[UIImage imageWithCGImage:] 23×10 pixels"}));
}

TEST_F(GlyphBitmap, LivesAsLongAsTheCallersPool) {
    themePng(bundleFile(kKit, "star"), 7);
    CUINamedVectorGlyph* const glyph = glyphOf(@"star", catalog);
    CGImageRef themes = nullptr;
    for (int time = 0; time < 3; ++time) {
        @autoreleasepool {
            themes = [glyph image];
            EXPECT_GT(referencesTo(themes), 1);
        }
        EXPECT_EQ(referencesTo(themes), 1);  // the kept image's
    }
    const CGImageRef platforms = [images[0] CGImage];
    setAnswer(kGlyphBitmap, (id)platforms);
    const long before = referencesTo(platforms);
    for (const char* const enable : {"enable", "removeDock"}) {
        settings({}, {enable});
        @autoreleasepool {
            EXPECT_EQ([glyphOf(@"other", catalog) image], platforms);
        }
        EXPECT_EQ(referencesTo(platforms), before);
    }
}

TEST_F(GlyphBitmap, OfNilIsLookedUpInBothPlacesAndAskedForAnew) {
    setAnswers(kGlyphBitmap, {(id)[images[0] CGImage], nil, (id)[images[2] CGImage]});
    CUINamedVectorGlyph* const glyph = glyphOf(@"star", catalog);
    EXPECT_EQ(answeredBy([glyph image]), 2);
    EXPECT_EQ(taken(), joined({{sentTo("glyph", kGlyphBitmap), sentTo("glyph", kGlyphBitmap)},
                               missesInBundle(kKit, "star"),
                               missesLoose("star"),
                               {sentTo("glyph", kGlyphBitmap)}}));
    setAnswer(kGlyphBitmap, static_cast<id>(nil));
    EXPECT_EQ([glyph image], nullptr);
    themePng(looseFile("star"), 8);
    EXPECT_EQ(CGImageGetWidth([glyph image]), 8U);
}

TEST_F(GlyphBitmap, TwoGlyphsAreAlwaysThePlatforms) {
    for (NSString* const name : {@"arrow.up.circle.fill", @"plus.circle.fill"}) {
        themePng(bundleFile(kKit, textOf(name)));
        themePng(looseFile(textOf(name)));
        expectThePlatformsSecond(glyphOf(name, catalog));
    }
}

TEST_F(GlyphBitmap, WithoutNameCatalogOrBundleIsThePlatforms) {
    themePng(looseFile("star"));
    expectThePlatformsSecond(glyphOf(nil, catalog));
    expectThePlatformsSecond(glyphOf([NSNumber numberWithInt:5], catalog));
    expectThePlatformsSecond(glyphOf(@"star", nil));
    for (const id without : {static_cast<id>(nil), static_cast<id>(@"no bundle"), stranger}) {
        CUICatalog* const bare = named([[CUICatalog alloc] initWithBundle:without], "catalog");
        expectThePlatformsSecond(glyphOf(@"star", bare));
    }
    // A catalog of a class without the variable.
    expectThePlatformsSecond(glyphOf(@"star", stranger));
}

TEST_F(GlyphBitmap, OfAClassWithoutACatalogIsThePlatforms) {
    themePng(looseFile("star"));
    const Class plain =
        classWithMethodOf("PlainGlyph", [StandIn class], "image", [CUINamedVectorGlyph class]);
    class_addMethod(plain, @selector(name),
                    class_getMethodImplementation([NSObject class], @selector(description)), "@@:");
    const id glyph = [[[plain alloc] init] autorelease];
    answerBitmapsInTurn("-[PlainGlyph image]");
    clearJournal();
    EXPECT_EQ(answeredBy([static_cast<CUINamedVectorGlyph*>(glyph) image]), 1);
    EXPECT_EQ(taken(), (Lines{"-[PlainGlyph image] PlainGlyph", "-[PlainGlyph image] PlainGlyph"}));
}

// --- The bitmap of an image's content

class ContentBitmap : public CatalogRows {
  protected:
    ContentBitmap() {
        settings({"A"}, {"enable"});
        answerBitmapsInTurn(kContentBitmap);
    }

    static bool& found() { return *static_cast<bool*>(exportedSymbol("themeImgFound")); }

    static _UIImageContent* contentOf(CUINamedVectorGlyph* glyph) {
        return named([[_UIImageContent alloc] initWithVectorGlyph:glyph CGImage:nullptr],
                     "content");
    }

    _UIImageContent* content = contentOf(glyphOf(@"star", nil));
};

TEST_F(ContentBitmap, IsLookedUpAmongTheLooseImagesAndCountsAsFound) {
    EXPECT_FALSE(found());
    EXPECT_EQ(answeredBy([content CGImage]), 1);
    EXPECT_EQ(taken(),
              joined({{sentTo("content", kContentBitmap), sentTo("content", kContentBitmap),
                       sentTo("content", kGlyphOfContent), kWraps},
                      missesLoose("star")}));
    EXPECT_TRUE(found());
}

TEST_F(ContentBitmap, IsThatOfTheThemesImage) {
    themePng(looseFile("star"), 7);
    const CGImageRef bitmap = [content CGImage];
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(CGImageGetWidth(bitmap), 7U);
    EXPECT_TRUE(found());
    EXPECT_EQ(taken(),
              (Lines{sentTo("content", kContentBitmap), sentTo("content", kContentBitmap),
                     sentTo("content", kGlyphOfContent), kWraps, readsImage(looseFile("star"))}));
    found() = false;
    EXPECT_EQ([content CGImage], bitmap);
    EXPECT_TRUE(found());
}

TEST_F(ContentBitmap, FlagStaysWhereNothingIsLookedUp) {
    for (const bool before : {true, false}) {
        settings({"A"}, {"enableLogging"});
        found() = before;
        answerBitmapsInTurn(kContentBitmap);
        EXPECT_EQ(answeredBy([content CGImage]), 1);
        EXPECT_EQ(taken(),
                  (Lines{sentTo("content", kContentBitmap), sentTo("content", kContentBitmap)}));
        EXPECT_EQ(found(), before);
        settings({"A"}, {"enable", "enableLogging"});
        for (CUINamedVectorGlyph* const glyph :
             {static_cast<CUINamedVectorGlyph*>(nil), glyphOf(nil, nil)}) {
            answerBitmapsInTurn(kContentBitmap);
            clearJournal();
            EXPECT_EQ(answeredBy([contentOf(glyph) CGImage]), 2);
            EXPECT_EQ(
                taken(),
                (Lines{sentTo("content", kContentBitmap), sentTo("content", kContentBitmap),
                       sentTo("content", kGlyphOfContent), sentTo("content", kContentBitmap)}));
            EXPECT_EQ(found(), before);
        }
    }
}

TEST_F(ContentBitmap, NilOfThePlatformIsANewAnswer) {
    themePng(looseFile("star"));
    setAnswers(kContentBitmap, {(id)[images[0] CGImage], nil, (id)[images[2] CGImage]});
    EXPECT_EQ(answeredBy([content CGImage]), 2);
    EXPECT_EQ(taken(),
              (Lines{sentTo("content", kContentBitmap), sentTo("content", kContentBitmap),
                     sentTo("content", kGlyphOfContent), sentTo("content", kContentBitmap)}));
    setAnswer(kContentBitmap, static_cast<id>(nil));
    EXPECT_EQ([content CGImage], nullptr);
}

TEST_F(ContentBitmap, LivesAsLongAsTheCallersPool) {
    const CGImageRef platforms = [images[0] CGImage];
    setAnswer(kContentBitmap, (id)platforms);
    const long before = referencesTo(platforms);
    for (const char* const enable : {"enable", "removeDock"}) {
        settings({"A"}, {enable});
        @autoreleasepool {
            EXPECT_EQ([content CGImage], platforms);
        }
        EXPECT_EQ(referencesTo(platforms), before);
    }
}

TEST_F(ContentBitmap, PassesExceptionsOfItsGlyphOn) {
    setAnswer(kContentBitmap, (id)[images[0] CGImage]);
    expectExceptionsToPass(kGlyphOfContent, [this] { [content CGImage]; });
}

}  // namespace
}  // namespace velmoranth::standins::catalog_image_rows_test
