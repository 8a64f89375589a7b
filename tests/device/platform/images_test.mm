#include "device/standins/images.h"

#include "device/platform/balanced_test.h"
#include "device/platform/core_graphics_handles.h"
#include "device/platform/services.h"
#include "device/platform/uikit_handles.h"
#include "device/standins/core_ui.h"
#include <objc/runtime.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

namespace velmoranth::device::images_test {
namespace {

using platform::BitmapImageRef;
using platform::Data;
using platform::FontRef;
using platform::GraphicsContextRef;
using platform::ImageRef;
using platform::Size;
using standins::journal;
using standins::journalOf;
using standins::living;
using standins::referencesTo;

void append(Data& bytes, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(number >> static_cast<unsigned>(shift)));
    }
}

// The beginning of a PNG, which is all that the stand-ins read.
Data pngOf(std::uint32_t width, std::uint32_t height) {
    Data bytes{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
    append(bytes, width);
    append(bytes, height);
    bytes.insert(bytes.end(), {8, 6, 0, 0, 0, 0, 0, 0, 0});
    return bytes;
}

// A file for the length of a test.
class ImageFile {
  public:
    ImageFile(const std::string& name, const Data& bytes)
        : path_(std::filesystem::temp_directory_path() /
                ("velmoranth-images-" + std::to_string(::getpid()) + "-" + name)) {
        std::ofstream(path_, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }

    ImageFile(const ImageFile&) = delete;
    ImageFile& operator=(const ImageFile&) = delete;

    ~ImageFile() { std::remove(path_.c_str()); }

    [[nodiscard]] const std::string& path() const { return path_; }

  private:
    std::string path_;
};

ImageRef imageOfPixels(std::size_t width, std::size_t height, double scale = 1) {
    return wrap<platform::Image>(standins::imageOfPixels(width, height, scale));
}

// --- Images from files
// -------------------------------------------------------------------------------

class ImagesFromFiles : public BalancedTest {};

TEST_F(ImagesFromFiles, AreReadByUIImage) {
    const ImageFile file("plain.png", pngOf(30, 20));
    const ImageRef image = images().imageWithContentsOfFile(file.path());
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(journal(), Lines{"+[UIImage imageWithContentsOfFile:] " + file.path()});
    EXPECT_EQ(standins::pathOf(nativeOf(image)), file.path());
    EXPECT_EQ(image->size(), (Size{30, 20}));
    EXPECT_EQ(image->scale(), 1);
    EXPECT_EQ(image->className(), "UIImage");
}

TEST_F(ImagesFromFiles, HaveTheScaleOfTheirName) {
    const ImageFile file("icon@3x.png", pngOf(30, 60));
    const ImageRef image = images().imageWithContentsOfFile(file.path());
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->scale(), 3);
    EXPECT_EQ(image->size(), (Size{10, 20}));
}

TEST_F(ImagesFromFiles, MayHaveNamesInAnyScript) {
    const ImageFile file("Ünï-图.png", pngOf(1, 1));
    const ImageRef image = images().imageWithContentsOfFile(file.path());
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(standins::pathOf(nativeOf(image)), file.path());
}

TEST_F(ImagesFromFiles, AreNilWhenThereIsNoneToRead) {
    const ImageFile text("text.png", {'h', 'i'});
    EXPECT_EQ(images().imageWithContentsOfFile(text.path()), nullptr);
    EXPECT_EQ(images().imageWithContentsOfFile(text.path() + ".missing"), nullptr);
    EXPECT_EQ(images().imageWithContentsOfFile(""), nullptr);
    EXPECT_EQ(journal().size(), 3U);
}

TEST_F(ImagesFromFiles, EndWithTheirHandleWhateverPoolIsAround) {
    const ImageFile file("short.png", pngOf(2, 2));
    ImageRef image = images().imageWithContentsOfFile(file.path());
    EXPECT_EQ(living("UIImage"), 1);
    EXPECT_EQ(referencesTo(image->native()), 1);
    image.reset();
    EXPECT_EQ(living("UIImage"), 0);
}

TEST_F(ImagesFromFiles, HaveABitmapOfTheirPixels) {
    const ImageFile file("bitmap@2x.png", pngOf(6, 4));
    const ImageRef image = images().imageWithContentsOfFile(file.path());
    const BitmapImageRef bitmap = image->bitmap();
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(bitmap->layout().width, 6U);
    EXPECT_EQ(bitmap->layout().height, 4U);
    EXPECT_EQ(image->bitmap()->native(), bitmap->native());
    EXPECT_EQ(referencesTo(bitmap->native()), 2);
    EXPECT_FALSE(image->hasCIImage());
}

id raiseInsteadOfReading(id /*self*/, SEL /*selector*/, NSString* /*path*/) {
    [NSException raise:@"Unreadable" format:@"the disk is gone"];
    return nil;
}

TEST_F(ImagesFromFiles, PassOnWhatThePlatformRaises) {
    const Method method =
        class_getClassMethod([UIImage class], @selector(imageWithContentsOfFile:));
    const IMP own = method_setImplementation(method, reinterpret_cast<IMP>(&raiseInsteadOfReading));
    NSString* reason = nil;
    @try {
        static_cast<void>(images().imageWithContentsOfFile("/any.png"));
    } @catch (NSException* exception) {
        reason = [exception reason];
    }
    method_setImplementation(method, own);
    EXPECT_TRUE([reason isEqualToString:@"the disk is gone"]);
}

// --- Other images
// ------------------------------------------------------------------------------------

class ImageMessages : public BalancedTest {
  protected:
    void TearDown() override {
        standins::answerWith("_applicationIconImageForBundleIdentifier:format:scale:", nil);
        BalancedTest::TearDown();
    }
};

TEST_F(ImageMessages, MakeAnImageOfABitmap) {
    const BitmapImageRef bitmap = imageOfPixels(8, 6, 2)->bitmap();
    ImageRef image = images().imageWithCGImage(bitmap);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(journalOf("+[UIImage"), Lines{"+[UIImage imageWithCGImage:] 8×6 pixels"});
    EXPECT_EQ(image->scale(), 1);
    EXPECT_EQ(image->size(), (Size{8, 6}));
    EXPECT_EQ(image->bitmap()->native(), bitmap->native());
    EXPECT_EQ(referencesTo(image->native()), 1);
    image.reset();
    drain();
    EXPECT_EQ(referencesTo(bitmap->native()), 1);
}

TEST_F(ImageMessages, MakeNothingOfNil) {
    EXPECT_EQ(images().imageWithCGImage(nullptr), nullptr);
    images().drawInRect(nullptr, {{0, 0}, {1, 1}});
    EXPECT_EQ(images().pngRepresentation(nullptr), std::nullopt);
    EXPECT_EQ(journal(), Lines{});
}

TEST_F(ImageMessages, TellThatThereIsNoBitmap) {
    const ImageRef image =
        wrap<platform::Image>([[UIImage alloc] initWithCIImage:@"filter"], Hold::adopt);
    EXPECT_EQ(image->bitmap(), nullptr);
    EXPECT_TRUE(image->hasCIImage());
    EXPECT_EQ(images().pngRepresentation(image), std::nullopt);
    EXPECT_EQ(journal(), Lines{"UIImagePNGRepresentation 0×0 @1x"});
}

TEST_F(ImageMessages, DrawIntoTheRectangle) {
    images().drawInRect(imageOfPixels(1, 1), {{1, -2.5}, {3, 4}});
    EXPECT_EQ(journal(), Lines{"-[UIImage drawInRect:] 1×1 @1x (1, -2.5) 3×4"});
}

TEST_F(ImageMessages, EncodeTheBitmap) {
    const Data contents = pngOf(3, 3);
    const ImageFile file("encoded.png", contents);
    EXPECT_EQ(images().pngRepresentation(images().imageWithContentsOfFile(file.path())), contents);
    const std::optional<Data> drawn = images().pngRepresentation(imageOfPixels(3, 3));
    ASSERT_TRUE(drawn);
    EXPECT_EQ(Data(drawn->begin(), drawn->begin() + 29),
              Data(contents.begin(), contents.begin() + 29));
}

TEST_F(ImageMessages, AskForApplicationIcons) {
    UIImage* const icon = standins::imageOfPixels(60, 60);
    standins::answerWith("_applicationIconImageForBundleIdentifier:format:scale:", icon);
    const ImageRef answer =
        images().applicationIconImageForBundleIdentifierFormatScale("com.example.app", -2, 2.5);
    EXPECT_EQ(nativeOf(answer), icon);
    EXPECT_EQ(journal(), Lines{"+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] "
                               "\"com.example.app\" -2 2.5"});
}

TEST_F(ImageMessages, AskForTheIconOfNil) {
    EXPECT_EQ(images().applicationIconImageForBundleIdentifierFormatScale(std::nullopt, 0, 3),
              nullptr);
    EXPECT_EQ(journal(),
              Lines{"+[UIImage _applicationIconImageForBundleIdentifier:format:scale:] nil 0 3"});
}

UIImage* replacedIcon = nil;

id replacementOfIcons(id /*self*/, SEL /*selector*/, NSString* /*identifier*/, int /*format*/,
                      CGFloat /*scale*/) {
    return replacedIcon;
}

TEST_F(ImageMessages, ReachAnInstalledReplacement) {
    const Method method = class_getClassMethod(
        [UIImage class], @selector(_applicationIconImageForBundleIdentifier:format:scale:));
    const IMP own = method_setImplementation(method, reinterpret_cast<IMP>(&replacementOfIcons));
    replacedIcon = standins::imageOfPixels(1, 1);
    const ImageRef answer =
        images().applicationIconImageForBundleIdentifierFormatScale("com.example.app", 0, 2);
    method_setImplementation(method, own);
    EXPECT_EQ(nativeOf(answer), replacedIcon);
}

TEST_F(ImageMessages, AreTheSameForEveryKindOfImage) {
    UIImage* const image = standins::imageOfPixels(4, 2, 2);
    const auto label = wrap<platform::SBIconLabelImage>(image);
    const auto icon = wrap<platform::UNNotificationIcon>(image);
    EXPECT_EQ(label->size(), (Size{2, 1}));
    EXPECT_EQ(icon->scale(), 2);
    EXPECT_EQ(label->bitmap()->native(), icon->bitmap()->native());
    EXPECT_NE(std::dynamic_pointer_cast<platform::Image>(wrapAny(image)), nullptr);
}

// --- Image contexts
// ----------------------------------------------------------------------------------

class ImageContextStack : public BalancedTest {};

TEST_F(ImageContextStack, BeginsAndEndsContexts) {
    imageContexts().beginImageContextWithOptions({10, 5}, false, 3);
    EXPECT_EQ(standins::openImageContexts(), 1U);
    const ImageRef image = imageContexts().getImageFromCurrentImageContext();
    imageContexts().endImageContext();
    EXPECT_EQ(standins::openImageContexts(), 0U);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), (Size{10, 5}));
    EXPECT_EQ(image->scale(), 3);
    EXPECT_EQ(journal(),
              (Lines{"UIGraphicsBeginImageContextWithOptions 10×5 NO 3",
                     "UIGraphicsGetImageFromCurrentImageContext", "UIGraphicsEndImageContext"}));
}

TEST_F(ImageContextStack, PassesOnThatAContextIsOpaque) {
    imageContexts().beginImageContextWithOptions({1, 1}, true, 0);
    EXPECT_EQ(journal(), Lines{"UIGraphicsBeginImageContextWithOptions 1×1 YES 0"});
    const ImageRef image = imageContexts().getImageFromCurrentImageContext();
    EXPECT_EQ(image->bitmap()->layout().alphaInfo, platform::AlphaInfo::noneSkipFirst);
    EXPECT_EQ(image->scale(), 2);
    imageContexts().endImageContext();
}

TEST_F(ImageContextStack, HoldsACurrentContextPastItsEnd) {
    imageContexts().beginImageContextWithOptions({1, 1}, false, 1);
    GraphicsContextRef context = imageContexts().getCurrentContext();
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(referencesTo(context->native()), 2);
    imageContexts().endImageContext();
    EXPECT_EQ(referencesTo(context->native()), 1);
    context->translateCTM(1, 1);
    context.reset();
    EXPECT_EQ(living("CGContextStandIn"), 0);
}

TEST_F(ImageContextStack, GoesBackToTheContextBefore) {
    imageContexts().beginImageContextWithOptions({1, 1}, false, 1);
    const GraphicsContextRef outer = imageContexts().getCurrentContext();
    imageContexts().beginImageContextWithOptions({2, 2}, false, 1);
    EXPECT_NE(imageContexts().getCurrentContext()->native(), outer->native());
    imageContexts().endImageContext();
    EXPECT_EQ(imageContexts().getCurrentContext()->native(), outer->native());
    imageContexts().endImageContext();
}

TEST_F(ImageContextStack, HasNoContextForAnImpossibleSize) {
    imageContexts().beginImageContextWithOptions({0, 5}, false, 1);
    EXPECT_EQ(imageContexts().getCurrentContext(), nullptr);
    EXPECT_EQ(imageContexts().getImageFromCurrentImageContext(), nullptr);
    EXPECT_EQ(standins::openImageContexts(), 1U);
    imageContexts().endImageContext();
    EXPECT_EQ(standins::openImageContexts(), 0U);
}

TEST_F(ImageContextStack, MayBeEmpty) {
    EXPECT_EQ(imageContexts().getCurrentContext(), nullptr);
    EXPECT_EQ(imageContexts().getImageFromCurrentImageContext(), nullptr);
    imageContexts().endImageContext();
    EXPECT_EQ(journal().size(), 3U);
}

// --- Fonts
// -------------------------------------------------------------------------------------------

class FontsByName : public BalancedTest {
  protected:
    void SetUp() override {
        standins::addFont("Helvetica Neue");
        BalancedTest::SetUp();
    }
};

TEST_F(FontsByName, AreFound) {
    FontRef font = fonts().fontWithNameSize("Helvetica Neue", 12.5);
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(journal(), Lines{"+[UIFont fontWithName:size:] \"Helvetica Neue\" 12.5"});
    EXPECT_EQ([static_cast<UIFont*>(nativeOf(font)) pointSize], 12.5);
    EXPECT_EQ(referencesTo(font->native()), 1);
    font.reset();
    EXPECT_EQ(living("UIFont"), 0);
}

TEST_F(FontsByName, AreNilForAnUnknownName) {
    EXPECT_EQ(fonts().fontWithNameSize("No Such Face", 12), nullptr);
    EXPECT_EQ(journal().size(), 1U);
}

TEST_F(FontsByName, AreNilForNilWithoutAMessage) {
    EXPECT_EQ(fonts().fontWithNameSize(std::nullopt, 12), nullptr);
    EXPECT_EQ(journal(), Lines{});
}

TEST_F(FontsByName, HaveTheSystemsSizeForOneThatIsNone) {
    for (const double size : {0.0, -3.0, std::numeric_limits<double>::quiet_NaN()}) {
        const FontRef font = fonts().fontWithNameSize("Helvetica Neue", size);
        ASSERT_NE(font, nullptr);
        EXPECT_EQ([static_cast<UIFont*>(nativeOf(font)) pointSize], standins::kSystemFontSize);
    }
    EXPECT_EQ(journal(), (Lines{"+[UIFont fontWithName:size:] \"Helvetica Neue\" 0",
                                "+[UIFont fontWithName:size:] \"Helvetica Neue\" -3",
                                "+[UIFont fontWithName:size:] \"Helvetica Neue\" 0"}));
}

// --- Image contents
// ----------------------------------------------------------------------------------

class ImageContents : public BalancedTest {
  protected:
    static std::shared_ptr<platform::UIImageContent> contentOf(CUINamedVectorGlyph* glyph) {
        return wrap<platform::UIImageContent>(
            [[_UIImageContent alloc] initWithVectorGlyph:glyph CGImage:nullptr], Hold::adopt);
    }
};

TEST_F(ImageContents, GiveTheirGlyph) {
    CUINamedVectorGlyph* const glyph = [[[CUINamedVectorGlyph alloc] initWithName:@"star.fill"
                                                                          catalog:nil
                                                                            image:nullptr
                                                                            drawn:nil] autorelease];
    const auto content = contentOf(glyph);
    const platform::CUINamedVectorGlyphRef answer = content->vectorGlyph();
    EXPECT_EQ(journal(), Lines{"-[_UIImageContent vectorGlyph] _UIImageContent"});
    EXPECT_EQ(nativeOf(answer), glyph);
    EXPECT_EQ(answer->name(), "star.fill");
}

TEST_F(ImageContents, MayHaveNone) {
    EXPECT_EQ(contentOf(nil)->vectorGlyph(), nullptr);
}

}  // namespace
}  // namespace velmoranth::device::images_test
