#include "desktop/core_ui/catalogs.h"

#include "desktop/core_ui/bundles.h"
#include "desktop/imaging/data_provider.h"
#include "desktop/runtime/runtime.h"
#include "tests/support/catalog/car_writer.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::desktop::catalogs_test {
namespace {

using catalog::Attribute;
using platform::CUICatalogRef;
using platform::ObjectRef;
using platform::OpenedCatalog;
using tests::CarPixels;
using tests::CarRendition;
using tests::CarWriter;
using Names = std::vector<std::string>;

constexpr const char* kSvg =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="4" height="3"><rect width="4" height="3" fill="#f00"/></svg>)";

class Catalogs : public testing::Test {
  protected:
    Catalogs() {
        host_.folder("root");
        runtime_.addClass("CUICatalog");
    }

    void write(const std::string& path, const CarWriter& car) {
        const tests::ByteVector bytes = car.build();
        host_.file("root" + path, std::string(bytes.begin(), bytes.end()));
    }

    [[nodiscard]] DesktopCatalogClass catalogs() const {
        return DesktopCatalogClass(DeviceRoot::open(host_ / "root").value());
    }

    [[nodiscard]] OpenedCatalog open(const std::string& path) {
        return catalogs().initWithURL(runtime_.getClass("CUICatalog"), path);
    }

    CUICatalogRef opened(const CarWriter& car) {
        write("/Assets.car", car);
        return open("/Assets.car").catalog;
    }

    [[nodiscard]] platform::BundleRef bundle(const std::string& path) const {
        return DesktopBundles(DeviceRoot::open(host_ / "root").value()).bundleWithPath(path);
    }

    // A picture of 1 × 1 of that name in its record.
    static void picture(CarWriter& car, CarRendition rendition) {
        car.bitmap(std::move(rendition), CarPixels::filled(1, 1, {255, 0, 0, 255}));
    }

    // The record's name of an image, "nil" for nil.
    static std::string source(const ObjectRef& object) {
        const auto image = std::dynamic_pointer_cast<DesktopNamedImage>(object);
        return image == nullptr ? "nil" : std::string(image->rendition().name);
    }

    static Names sources(const std::vector<ObjectRef>& objects) {
        Names names;
        for (const ObjectRef& object : objects) {
            names.push_back(source(object));
        }
        return names;
    }

    static std::shared_ptr<platform::CUINamedImage> first(const CUICatalogRef& catalog,
                                                          const std::string& name) {
        return std::dynamic_pointer_cast<platform::CUINamedImage>(
            catalog->imagesWithName(name).at(0));
    }

    Runtime runtime_{[](const std::string&) {}};
    tests::TemporaryFolder host_;
};

TEST_F(Catalogs, NamesAreThoseThatHaveAPictureInTheCatalogsOrder) {
    CarWriter car;
    car.facet("b", 1);
    car.facet("a", 2);
    car.facet("Color", 3);
    car.facet("Empty", 4);
    car.facet("Vector", 5);
    car.facet("Data", 6);
    picture(car, {.identifier = 1});
    picture(car, {.identifier = 2});
    car.color({.identifier = 3}, 1, {1, 0, 0, 1});
    car.file({.identifier = 5, .pixelFormat = catalog::fourCharacterCode("SVG ")}, kSvg);
    car.file({.identifier = 6, .pixelFormat = catalog::fourCharacterCode("DATA")}, "data");
    EXPECT_EQ(opened(car)->allImageNames(), (Names{"Vector", "a", "b"}));
}

TEST_F(Catalogs, ImagesOfANameAreAllItsPictures) {
    CarWriter car;
    car.facet("Star", 7);
    picture(car, {.identifier = 7, .scale = 3, .name = "three"});
    picture(car, {.identifier = 7, .scale = 1, .name = "one"});
    picture(car, {.identifier = 7, .scale = 2, .idiom = 2, .name = "pad"});
    picture(car, {.identifier = 8, .name = "other"});
    const CUICatalogRef catalog = opened(car);
    EXPECT_EQ(sources(catalog->imagesWithName("Star")), (Names{"one", "pad", "three"}));
    EXPECT_EQ(sources(catalog->imagesWithName("Nothing")), Names{});
    const auto image = first(catalog, "Star");
    EXPECT_EQ(image->name(), "Star");
    EXPECT_EQ(image->scale(), 1);
    EXPECT_EQ(image->className(), "CUINamedImage");
}

TEST_F(Catalogs, ImageForEveryDeviceAndForOneKind) {
    CarWriter car;
    car.facet("Both", 1);
    car.facet("Phone", 2);
    car.facet("Pad", 3);
    car.facet("Car", 4);
    picture(car, {.identifier = 1, .idiom = 0, .name = "both"});
    picture(car, {.identifier = 1, .idiom = 1, .name = "both~phone"});
    picture(car, {.identifier = 2, .idiom = 1, .name = "phone"});
    picture(car, {.identifier = 3, .idiom = 2, .name = "pad"});
    picture(car, {.identifier = 4, .idiom = 4, .name = "car"});
    const CUICatalogRef catalog = opened(car);
    EXPECT_EQ(source(catalog->imageWithNameScaleFactor("Both", 0)), "both");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactorDeviceIdiom("Both", 0, 1)), "both~phone");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactorDeviceIdiom("Both", 0, 2)), "both");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactor("Phone", 0)), "nil");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactorDeviceIdiom("Phone", 0, 1)), "phone");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactorDeviceIdiom("Pad", 0, 1)), "nil");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactorDeviceIdiom("Pad", 0, 4)), "nil");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactorDeviceIdiom("Car", 0, 4)), "car");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactor("Nothing", 0)), "nil");
}

TEST_F(Catalogs, ImageOfTheNearestScale) {
    CarWriter car;
    car.facet("Star", 1);
    picture(car, {.identifier = 1, .scale = 1, .name = "one"});
    picture(car, {.identifier = 1, .scale = 2, .name = "two"});
    car.facet("Large", 2);
    picture(car, {.identifier = 2, .scale = 3, .name = "three"});
    const CUICatalogRef catalog = opened(car);
    EXPECT_EQ(source(catalog->imageWithNameScaleFactor("Star", 1)), "one");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactor("Star", 1.5)), "two");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactor("Star", 3)), "two");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactor("Star", 0)), "one");
    EXPECT_EQ(source(catalog->imageWithNameScaleFactor("Large", 1)), "three");
}

TEST_F(Catalogs, ImageForAnySettingBeforeThoseForOne) {
    CarWriter car;
    car.facet("Star", 1);
    picture(
        car,
        {.identifier = 1, .scale = 1, .attributes = {{Attribute::appearance, 1}}, .name = "dark"});
    picture(car, {.identifier = 1, .scale = 2, .name = "any"});
    EXPECT_EQ(source(opened(car)->imageWithNameScaleFactor("Star", 1)), "any");
}

TEST_F(Catalogs, AppearanceCountsBeforeSizeClassesAndThoseBeforeMemory) {
    const std::vector<Attribute> order{Attribute::deploymentTarget,    Attribute::subtype,
                                       Attribute::graphicsClass,       Attribute::memoryClass,
                                       Attribute::displayGamut,        Attribute::verticalSizeClass,
                                       Attribute::horizontalSizeClass, Attribute::appearance};
    CarWriter car;
    // Each with the one attribute that counts less than those before it.
    for (std::size_t i = 0; i + 1 < order.size(); ++i) {
        const auto identifier = static_cast<std::uint16_t>(i + 1);
        car.facet("Star" + std::to_string(i), identifier);
        picture(car, {.identifier = identifier, .attributes = {{order[i], 2}}, .name = "less"});
        picture(car, {.identifier = identifier, .attributes = {{order[i + 1], 1}}, .name = "more"});
    }
    const CUICatalogRef catalog = opened(car);
    for (std::size_t i = 0; i + 1 < order.size(); ++i) {
        EXPECT_EQ(source(catalog->imageWithNameScaleFactor("Star" + std::to_string(i), 0)), "less")
            << i;
    }
}

TEST_F(Catalogs, CopiesForEveryTargetAreAmongTheImagesAndTheOldestIsTaken) {
    CarWriter car;
    car.facet("Star", 1);
    picture(car,
            {.identifier = 1, .attributes = {{Attribute::deploymentTarget, 5}}, .name = "new"});
    picture(car, {.identifier = 1, .name = "old"});
    const CUICatalogRef catalog = opened(car);
    EXPECT_EQ(sources(catalog->imagesWithName("Star")), (Names{"old", "new"}));
    EXPECT_EQ(source(catalog->imageWithNameScaleFactor("Star", 0)), "old");
}

TEST_F(Catalogs, BitmapIsThatOfTheRendition) {
    CarWriter car;
    car.facet("Star", 1);
    // Half transparent red, premultiplied.
    car.bitmap({.identifier = 1, .scale = 2}, CarPixels::filled(3, 2, {100, 50, 0, 128}));
    const auto image = first(opened(car), "Star");
    const platform::BitmapImageRef bitmap = image->image();
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(bitmap->layout().width, 3U);
    EXPECT_EQ(bitmap->layout().height, 2U);
    const platform::Data& samples = *samplesOf(bitmap->dataProvider());
    ASSERT_EQ(samples.size(), 24U);
    EXPECT_EQ((std::vector<int>{samples[0], samples[1], samples[2], samples[3]}),
              (std::vector<int>{0, 50, 100, 128}));
    EXPECT_EQ(image->createImageFromPDFRenditionWithScale(2), nullptr);
}

TEST_F(Catalogs, BitmapThatCannotBeDecodedIsNil) {
    CarWriter car;
    car.facet("Star", 1);
    car.bitmap({.identifier = 1, .width = 4, .height = 4}, catalog::Compression::astc,
               tests::ByteVector(16));
    const auto image = first(opened(car), "Star");
    EXPECT_EQ(image->image(), nullptr);
    EXPECT_EQ(image->createImageFromPDFRenditionWithScale(1), nullptr);
}

TEST_F(Catalogs, VectorIsDrawnAtTheScaleAskedForAndHasNoBitmap) {
    CarWriter car;
    car.facet("Glyph", 1);
    car.file({.identifier = 1, .scale = 1, .pixelFormat = catalog::fourCharacterCode("SVG ")},
             kSvg);
    const auto image = first(opened(car), "Glyph");
    EXPECT_EQ(image->image(), nullptr);
    const platform::BitmapImageRef drawn = image->createImageFromPDFRenditionWithScale(3);
    if (drawn == nullptr) {
        GTEST_SKIP() << "this build draws no SVG";
    }
    EXPECT_EQ(drawn->layout().width, 12U);
    EXPECT_EQ(drawn->layout().height, 9U);
    EXPECT_EQ((*samplesOf(drawn->dataProvider()))[2], 255);
}

TEST_F(Catalogs, ImageOutlivesItsCatalog) {
    CarWriter car;
    car.facet("Star", 1);
    picture(car, {.identifier = 1});
    CUICatalogRef catalog = opened(car);
    const auto image = first(catalog, "Star");
    catalog.reset();
    EXPECT_NE(image->image(), nullptr);
}

TEST_F(Catalogs, FileThatIsMissingOrNoCatalogIsAnError) {
    host_.file("root/odd.car", "no catalog");
    const OpenedCatalog missing = open("/none.car");
    EXPECT_EQ(missing.catalog, nullptr);
    ASSERT_TRUE(missing.error);
    EXPECT_EQ(missing.error->code, 260);
    const OpenedCatalog odd = open("/odd.car");
    EXPECT_EQ(odd.catalog, nullptr);
    ASSERT_TRUE(odd.error);
    EXPECT_EQ(platform::description(*odd.error),
              "Error Domain=NSCocoaErrorDomain Code=259 \"The file “odd.car” couldn’t be opened "
              "because it isn’t in the correct format.\"");
}

TEST_F(Catalogs, NilClassAnswersNilWithoutAnError) {
    CarWriter car;
    write("/B/Assets.car", car);
    EXPECT_EQ(catalogs().initWithURL(nullptr, "/B/Assets.car").catalog, nullptr);
    EXPECT_FALSE(catalogs().initWithURL(nullptr, "/none.car").error);
    EXPECT_EQ(catalogs().defaultUICatalogForBundle(nullptr, bundle("/B")), nullptr);
    EXPECT_FALSE(catalogs().initWithNameFromBundle(nullptr, "None", bundle("/B")).error);
}

TEST_F(Catalogs, CatalogsOfABundle) {
    CarWriter car;
    car.facet("Star", 1);
    picture(car, {.identifier = 1});
    write("/A.app/Assets.car", car);
    write("/A.app/More.car", CarWriter());
    const platform::ClassRef cls = runtime_.getClass("CUICatalog");
    const CUICatalogRef standard = catalogs().defaultUICatalogForBundle(cls, bundle("/A.app"));
    ASSERT_NE(standard, nullptr);
    EXPECT_EQ(standard->allImageNames(), Names{"Star"});
    const OpenedCatalog named = catalogs().initWithNameFromBundle(cls, "More", bundle("/A.app"));
    ASSERT_NE(named.catalog, nullptr);
    EXPECT_EQ(named.catalog->allImageNames(), Names{});
    for (const platform::BundleRef& none : {bundle("/A.app"), platform::BundleRef()}) {
        const OpenedCatalog missing = catalogs().initWithNameFromBundle(cls, "None", none);
        EXPECT_EQ(missing.catalog, nullptr);
        ASSERT_TRUE(missing.error);
        EXPECT_EQ(missing.error->localizedDescription,
                  "The file “None.car” couldn’t be opened because there is no such file.");
    }
    EXPECT_EQ(catalogs().defaultUICatalogForBundle(cls, nullptr), nullptr);
}

TEST_F(Catalogs, CatalogOutsideTheRootIsNotOpened) {
    const tests::ByteVector bytes = CarWriter().build();
    host_.file("outside.car", std::string(bytes.begin(), bytes.end()));
    host_.link("root/link.car", host_ / "outside.car");
    EXPECT_EQ(open("/link.car").catalog, nullptr);
    EXPECT_EQ(open("/../outside.car").catalog, nullptr);
}

}  // namespace
}  // namespace velmoranth::desktop::catalogs_test
