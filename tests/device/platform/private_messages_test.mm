// Objects and classes of a release that lacks the messages that the platform does not document: the
// stand-ins' root has none of them, and raises for what it does not understand.
#include "device/platform/private_messages.h"

#include "device/platform/balanced_test.h"
#include "device/platform/exceptions.h"
#include "device/platform/handles.h"
#include "device/platform/services.h"
#include <dlfcn.h>

#include <functional>
#include <memory>
#include <string_view>

@interface Undocumented : NSObject
- (int)undocumented;
@end

namespace {

bool imagesAreOthers = false;

}  // namespace

// The class that has the icons of apps is looked up by name.
extern "C" __attribute__((visibility("default"))) Class objc_getClass(const char* name) {
    static const auto kReal =
        reinterpret_cast<Class (*)(const char*)>(dlsym(RTLD_NEXT, "objc_getClass"));
    return imagesAreOthers && std::string_view(name) == "UIImage" ? [StandIn class] : kReal(name);
}

namespace velmoranth::device::private_messages_test {
namespace {

class PrivateMessages : public BalancedTest {
  protected:
    template <class Interface>
    static std::shared_ptr<Interface> lacking() {
        return wrap<Interface>([[[StandIn alloc] init] autorelease]);
    }

    static platform::ClassRef lackingClass() { return wrapClass([StandIn class]); }
};

TEST_F(PrivateMessages, AreUnderstoodOrNot) {
    StandIn* const object = [[[StandIn alloc] init] autorelease];
    const Class cls = [StandIn class];
    EXPECT_EQ(ifUnderstood(object, @selector(description)), object);
    EXPECT_EQ(ifUnderstood(object, @selector(undocumented)), nil);
    EXPECT_EQ(ifUnderstood(static_cast<id>(nil), @selector(description)), nil);
    EXPECT_EQ(ifUnderstood(cls, @selector(alloc)), cls);
    EXPECT_EQ(ifUnderstood(cls, @selector(undocumented)), Nil);
    EXPECT_EQ(ifMade(cls, @selector(init)), cls);
    EXPECT_EQ(ifMade(cls, @selector(alloc)), Nil);
    EXPECT_EQ(raisedBy([&] { [static_cast<id>(object) undocumented]; }),
              "NSInvalidArgumentException");
}

TEST_F(PrivateMessages, OfIconsGiveNil) {
    const auto icon = lacking<platform::SBIcon>();
    EXPECT_EQ(icon->leafIdentifier(), std::nullopt);
    EXPECT_EQ(icon->nodeIdentifier(), std::nullopt);
    EXPECT_EQ(icon->uniqueIdentifier(), std::nullopt);
    EXPECT_EQ(lacking<platform::WGWidgetInfo>()->widgetIdentifier(), std::nullopt);
    EXPECT_EQ(lacking<platform::SBIconView>()->icon(), nullptr);
    EXPECT_EQ(lacking<platform::SBIconImageView>()->icon(), nullptr);
    EXPECT_FALSE(lacking<platform::SBFolderIconImageView>()->isAnimating());
    EXPECT_TRUE(lacking<platform::SBIconListView>()->icons().empty());
}

// Documented, but asked of what may only stand in an image's place.
TEST_F(PrivateMessages, OfImagesGiveNothing) {
    const auto image = lacking<platform::UNNotificationIcon>();
    EXPECT_EQ(image->size(), platform::Size());
    EXPECT_EQ(image->scale(), 0);
    EXPECT_EQ(image->bitmap(), nullptr);
    EXPECT_FALSE(image->hasCIImage());
    images().drawInRect(image, {{0, 0}, {4, 4}});
}

TEST_F(PrivateMessages, OfDocksAndPagesDoNothing) {
    const auto dock = lacking<platform::SBDockView>();
    EXPECT_EQ(dock->dockListViewFrame(), platform::Rect{});
    dock->setBackgroundView(nullptr);
    EXPECT_EQ(lacking<platform::SBFloatingDockView>()->backgroundView(), nullptr);
    const auto pages = lacking<platform::SBIconListPageControl>();
    EXPECT_EQ(pages->_searchIndicatorImage(true), nullptr);
}

TEST_F(PrivateMessages, OfTheIconsControllerDoNothing) {
    EXPECT_EQ(springBoard().sharedInstance(lackingClass()), nullptr);
    const auto folder = lacking<platform::SBFloatyFolderView>();
    lacking<platform::SBIconController>()->_closeFolderControllerAnimatedWithCompletion(*folder,
                                                                                        true);
}

TEST_F(PrivateMessages, OfTheToolkitGiveNil) {
    EXPECT_EQ(lacking<platform::UIFeedback>()->_effectiveSystemSoundID(), 0U);
    EXPECT_EQ(lacking<platform::UIImageContent>()->vectorGlyph(), nullptr);
    imagesAreOthers = true;
    EXPECT_EQ(images().applicationIconImageForBundleIdentifierFormatScale("com.example", 2, 3),
              nullptr);
    imagesAreOthers = false;
}

TEST_F(PrivateMessages, OfCatalogsGiveNil) {
    const platform::OpenedCatalog atPath = catalogClass().initWithURL(lackingClass(), "/x.car");
    EXPECT_EQ(atPath.catalog, nullptr);
    EXPECT_EQ(atPath.error, std::nullopt);
    const platform::OpenedCatalog named =
        catalogClass().initWithNameFromBundle(lackingClass(), "x", nullptr);
    EXPECT_EQ(named.catalog, nullptr);
    EXPECT_EQ(named.error, std::nullopt);
    EXPECT_EQ(catalogClass().defaultUICatalogForBundle(lackingClass(), nullptr), nullptr);
    const auto catalog = lacking<platform::CUICatalog>();
    EXPECT_TRUE(catalog->allImageNames().empty());
    EXPECT_EQ(catalog->imageWithNameScaleFactor("x", 2), nullptr);
    EXPECT_EQ(catalog->imageWithNameScaleFactorDeviceIdiom("x", 2, 0), nullptr);
    EXPECT_TRUE(catalog->imagesWithName("x").empty());
}

TEST_F(PrivateMessages, OfCatalogsImagesGiveNil) {
    const auto image = lacking<platform::CUINamedImage>();
    EXPECT_EQ(image->name(), std::nullopt);
    EXPECT_EQ(image->scale(), 0);
    EXPECT_EQ(image->createImageFromPDFRenditionWithScale(2), nullptr);
    EXPECT_EQ(image->image(), nullptr);
    EXPECT_EQ(lacking<platform::CUINamedVectorGlyph>()->name(), std::nullopt);
}

}  // namespace
}  // namespace velmoranth::device::private_messages_test
