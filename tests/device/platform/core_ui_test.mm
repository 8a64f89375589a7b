#include "device/standins/core_ui.h"

#include "device/platform/balanced_test.h"
#include "device/platform/core_ui_handles.h"
#include "device/platform/foundation_handles.h"
#include "device/platform/services.h"
#import "device/standins/record_words.h"

#include <memory>
#include <string>

namespace velmoranth::device::core_ui_test {
namespace {

using platform::BitmapImageRef;
using platform::BundleRef;
using platform::ClassRef;
using platform::CUICatalogRef;
using platform::ObjectRef;
using platform::OpenedCatalog;
using standins::journal;
using standins::living;
using standins::referencesTo;

ClassRef classOfCatalogs() {
    return wrapClass([CUICatalog class]);
}

NSError* corruptFile() {
    return [NSError errorWithDomain:@"NSCocoaErrorDomain"
                               code:259
                           userInfo:@{NSLocalizedDescriptionKey : @"It isn’t a catalog."}];
}

class CoreUITest : public BalancedTest {
  protected:
    void TearDown() override {
        standins::forgetCatalogFiles();
        BalancedTest::TearDown();
    }

    // A bundle that lies in a folder of this machine.
    static BundleRef bundle() {
        NSBundle* const bundle = [NSBundle bundleWithPath:@"/usr/lib"];
        standins::nameObject(bundle, "/usr/lib");
        return wrap<platform::Bundle>(bundle);
    }
};

// --- Opening
// -----------------------------------------------------------------------------------------

class OpeningCatalogs : public CoreUITest {};

TEST_F(OpeningCatalogs, TakesTheFileUrlOfAPath) {
    standins::addCatalogFile("/Theme one/Assets.car", {});
    OpenedCatalog opened = catalogClass().initWithURL(classOfCatalogs(), "/Theme one/Assets.car");
    ASSERT_NE(opened.catalog, nullptr);
    EXPECT_EQ(opened.error, std::nullopt);
    EXPECT_EQ(journal(), Lines{"-[CUICatalog initWithURL:error:] \"/Theme one/Assets.car\" set"});
    EXPECT_EQ(referencesTo(opened.catalog->native()), 1);
    opened.catalog.reset();
    EXPECT_EQ(living("CUICatalog"), 0);
}

TEST_F(OpeningCatalogs, TellsTheErrorOfAFileThatDoesNotOpen) {
    const OpenedCatalog missing = catalogClass().initWithURL(classOfCatalogs(), "/none.car");
    EXPECT_EQ(missing.catalog, nullptr);
    ASSERT_TRUE(missing.error);
    EXPECT_EQ(*missing.error, (platform::Error{"No such file.", "NSCocoaErrorDomain", 260}));
}

TEST_F(OpeningCatalogs, TellsTheErrorBesideACatalog) {
    standins::addCatalogFile("/odd.car", {.entries = {}, .error = corruptFile()});
    const OpenedCatalog opened = catalogClass().initWithURL(classOfCatalogs(), "/odd.car");
    EXPECT_NE(opened.catalog, nullptr);
    ASSERT_TRUE(opened.error);
    EXPECT_EQ(opened.error->localizedDescription, "It isn’t a catalog.");
    EXPECT_EQ(opened.error->code, 259);
}

TEST_F(OpeningCatalogs, MayFailWithoutAnError) {
    standins::addCatalogFile("/mute.car", {.entries = {}, .opens = false});
    const OpenedCatalog opened = catalogClass().initWithURL(classOfCatalogs(), "/mute.car");
    EXPECT_EQ(opened.catalog, nullptr);
    EXPECT_EQ(opened.error, std::nullopt);
}

TEST_F(OpeningCatalogs, TakesANameInABundle) {
    standins::addCatalogFile("/usr/lib/Other.car", {});
    OpenedCatalog opened =
        catalogClass().initWithNameFromBundle(classOfCatalogs(), "Other", bundle());
    ASSERT_NE(opened.catalog, nullptr);
    EXPECT_EQ(opened.error, std::nullopt);
    EXPECT_EQ(journal(),
              Lines{"-[CUICatalog initWithName:fromBundle:error:] \"Other\" /usr/lib set"});
    EXPECT_EQ(referencesTo(opened.catalog->native()), 1);
    const OpenedCatalog missing =
        catalogClass().initWithNameFromBundle(classOfCatalogs(), "None", bundle());
    EXPECT_EQ(missing.catalog, nullptr);
    ASSERT_TRUE(missing.error);
    EXPECT_EQ(missing.error->code, 260);
}

TEST_F(OpeningCatalogs, TakesTheDefaultOfABundle) {
    EXPECT_EQ(catalogClass().defaultUICatalogForBundle(classOfCatalogs(), bundle()), nullptr);
    standins::addCatalogFile("/usr/lib/Assets.car", {});
    CUICatalogRef catalog = catalogClass().defaultUICatalogForBundle(classOfCatalogs(), bundle());
    ASSERT_NE(catalog, nullptr);
    EXPECT_EQ(journal().back(), "+[CUICatalog defaultUICatalogForBundle:] /usr/lib");
    EXPECT_EQ(referencesTo(catalog->native()), 1);
    catalog.reset();
    EXPECT_EQ(living("CUICatalog"), 0);
}

TEST_F(OpeningCatalogs, MayBeAskedForNoBundle) {
    EXPECT_EQ(catalogClass().defaultUICatalogForBundle(classOfCatalogs(), nullptr), nullptr);
    EXPECT_EQ(catalogClass().initWithNameFromBundle(classOfCatalogs(), "A", nullptr).catalog,
              nullptr);
    EXPECT_EQ(journal(), (Lines{"+[CUICatalog defaultUICatalogForBundle:] nil",
                                "-[CUICatalog initWithName:fromBundle:error:] \"A\" nil set"}));
}

TEST_F(OpeningCatalogs, IsNilForANilClassWithoutAnError) {
    EXPECT_EQ(catalogClass().initWithURL(nullptr, "/none.car").catalog, nullptr);
    EXPECT_EQ(catalogClass().initWithURL(nullptr, "/none.car").error, std::nullopt);
    EXPECT_EQ(catalogClass().initWithNameFromBundle(nullptr, "A", bundle()).catalog, nullptr);
    EXPECT_EQ(catalogClass().initWithNameFromBundle(nullptr, "A", bundle()).error, std::nullopt);
    EXPECT_EQ(catalogClass().defaultUICatalogForBundle(nullptr, bundle()), nullptr);
    EXPECT_EQ(journal(), Lines{});
}

// --- Catalogs
// ----------------------------------------------------------------------------------------

class Catalogs : public CoreUITest {
  protected:
    void SetUp() override {
        CoreUITest::SetUp();
        plain_ = [[[CUINamedImage alloc] initWithName:@"b" scale:2] autorelease];
        large_ = [[[CUINamedImage alloc] initWithName:@"b" scale:3] autorelease];
        car_ = [[[NSObject alloc] init] autorelease];
        standins::addCatalogFile(
            "/theme.car", {.entries = {{"b", plain_, 2}, {"b", large_, 3}, {"a", car_, 1, 4}}});
        catalog_ = catalogClass().initWithURL(classOfCatalogs(), "/theme.car").catalog;
        standins::clearJournal();
    }

    void TearDown() override {
        catalog_.reset();
        CoreUITest::TearDown();
    }

    [[nodiscard]] CUICatalog* native() const {
        return static_cast<CUICatalog*>(nativeOf(catalog_));
    }

    CUINamedImage* plain_ = nil;
    CUINamedImage* large_ = nil;
    NSObject* car_ = nil;
    CUICatalogRef catalog_;
};

TEST_F(Catalogs, NameTheirImagesInTheirOwnOrder) {
    EXPECT_EQ(catalog_->allImageNames(), (Lines{"b", "a"}));
    EXPECT_EQ(journal(), Lines{"-[CUICatalog allImageNames] CUICatalog"});
}

TEST_F(Catalogs, LeaveOutNamesThatAreNoStrings) {
    [native() setAllImageNames:@[ @"ä", @5, @"", car_ ]];
    EXPECT_EQ(catalog_->allImageNames(), (Lines{"ä", ""}));
    [native() setAllImageNames:@"no array"];
    EXPECT_EQ(catalog_->allImageNames(), Lines{});
}

TEST_F(Catalogs, FindAnImageByScale) {
    const ObjectRef image = catalog_->imageWithNameScaleFactor("b", 3);
    EXPECT_EQ(nativeOf(image), large_);
    EXPECT_NE(std::dynamic_pointer_cast<platform::CUINamedImage>(image), nullptr);
    EXPECT_EQ(nativeOf(catalog_->imageWithNameScaleFactor("b", 0)), plain_);
    EXPECT_EQ(journal(), (Lines{"-[CUICatalog imageWithName:scaleFactor:] CUICatalog \"b\" 3",
                                "-[CUICatalog imageWithName:scaleFactor:] CUICatalog \"b\" 0"}));
}

TEST_F(Catalogs, FindAnImageForAKindOfDevice) {
    EXPECT_EQ(catalog_->imageWithNameScaleFactor("a", 0), nullptr);
    const ObjectRef image = catalog_->imageWithNameScaleFactorDeviceIdiom("a", 0.5, 4);
    EXPECT_EQ(nativeOf(image), car_);
    EXPECT_EQ(std::dynamic_pointer_cast<platform::CUINamedImage>(image), nullptr);
    EXPECT_EQ(journal().back(),
              "-[CUICatalog imageWithName:scaleFactor:deviceIdiom:] CUICatalog \"a\" 0.5 4");
    EXPECT_EQ(catalog_->imageWithNameScaleFactorDeviceIdiom("c", 0, 4), nullptr);
}

TEST_F(Catalogs, GiveEveryRenditionOfAName) {
    const std::vector<ObjectRef> images = catalog_->imagesWithName("b");
    EXPECT_EQ(journal(), Lines{"-[CUICatalog imagesWithName:] CUICatalog \"b\""});
    ASSERT_EQ(images.size(), 2U);
    EXPECT_EQ(nativeOf(images[0]), plain_);
    EXPECT_EQ(nativeOf(images[1]), large_);
    EXPECT_TRUE(catalog_->imagesWithName("c").empty());
}

TEST_F(Catalogs, PassOnRenditionsOfOtherClasses) {
    [native() setImagesWithName:@[ plain_, @"odd", car_ ]];
    const std::vector<ObjectRef> images = catalog_->imagesWithName("b");
    ASSERT_EQ(images.size(), 3U);
    EXPECT_NE(std::dynamic_pointer_cast<platform::CUINamedImage>(images[0]), nullptr);
    EXPECT_EQ(std::dynamic_pointer_cast<platform::CUINamedImage>(images[1]), nullptr);
    EXPECT_EQ(nativeOf(images[2]), car_);
    [native() setImagesWithName:car_];
    EXPECT_TRUE(catalog_->imagesWithName("b").empty());
}

TEST_F(Catalogs, AreNotNeededByTheirImages) {
    const ObjectRef image = catalog_->imageWithNameScaleFactor("b", 2);
    catalog_.reset();
    EXPECT_EQ(living("CUICatalog"), 0);
    EXPECT_EQ(std::dynamic_pointer_cast<platform::CUINamedImage>(image)->name(), "b");
}

// --- Images and glyphs of catalogs
// -------------------------------------------------------------------

class CatalogImages : public CoreUITest {
  protected:
    void SetUp() override {
        CoreUITest::SetUp();
        native_ = [[[CUINamedImage alloc] initWithName:@"dock" scale:2.5] autorelease];
        image_ = wrap<platform::CUINamedImage>(native_);
    }

    void TearDown() override {
        image_.reset();
        CoreUITest::TearDown();
    }

    CUINamedImage* native_ = nil;
    platform::CUINamedImageRef image_;
};

TEST_F(CatalogImages, HaveANameAndAScale) {
    EXPECT_EQ(image_->name(), "dock");
    EXPECT_EQ(image_->scale(), 2.5);
}

TEST_F(CatalogImages, MayHaveNoName) {
    for (const id name : { static_cast<id>(nil), static_cast<id>(@7) }) {
        const auto image = wrap<platform::CUINamedImage>(
            [[CUINamedImage alloc] initWithName:name scale:1], Hold::adopt);
        EXPECT_EQ(image->name(), std::nullopt);
    }
}

TEST_F(CatalogImages, GiveTheirStoredBitmap) {
    EXPECT_EQ(image_->image(), nullptr);
    const CGImageRef bitmap = standins::createImage({}, {});
    [native_ setImage:bitmap];
    {
        const BitmapImageRef answer = image_->image();
        EXPECT_EQ(answer->native(), bitmap);
        EXPECT_EQ(referencesTo(bitmap), 3);
    }
    EXPECT_EQ(referencesTo(bitmap), 2);
    CGImageRelease(bitmap);
    EXPECT_EQ(journal(), (Lines{"-[CUINamedImage image] CUINamedImage dock",
                                "-[CUINamedImage image] CUINamedImage dock"}));
}

TEST_F(CatalogImages, DrawTheirPdfForTheCaller) {
    EXPECT_EQ(image_->createImageFromPDFRenditionWithScale(2), nullptr);
    [native_ setPDFSize:CGSize{10, 20}];
    BitmapImageRef bitmap = image_->createImageFromPDFRenditionWithScale(1.5);
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(journal().back(),
              "-[CUINamedImage createImageFromPDFRenditionWithScale:] CUINamedImage dock 1.5");
    EXPECT_EQ(bitmap->layout().width, 15U);
    EXPECT_EQ(bitmap->layout().height, 30U);
    EXPECT_EQ(referencesTo(bitmap->native()), 1);
    bitmap.reset();
    EXPECT_EQ(living("CGImageStandIn"), 0);
}

TEST_F(CatalogImages, MayBeGlyphs) {
    CUINamedVectorGlyph* const native =
        [[[CUINamedVectorGlyph alloc] initWithName:@"star" catalog:nil image:nullptr
                                             drawn:nil] autorelease];
    EXPECT_EQ(wrap<platform::CUINamedVectorGlyph>(native)->name(), "star");
    EXPECT_NE(std::dynamic_pointer_cast<platform::CUINamedVectorGlyph>(wrapAny(native)), nullptr);
}

}  // namespace
}  // namespace velmoranth::device::core_ui_test
