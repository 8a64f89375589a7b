// The functions and variables that the library exports to C, and that it exports nothing else.
#include "device/library/device_process.h"
#include "device/library/load_library.h"
#include "device/standins/core_graphics.h"

#include <cstddef>

namespace velmoranth::standins::exports_test {
namespace {

using CreateImage = CGImageRef (*)(int pixelsWide, int pixelsHigh);
using CreateContext = CGContextRef (*)(int pixelsWide, int pixelsHigh);

class Exports : public DeviceProcess {
  protected:
    Exports() { loaded(); }

    template <class Function>
    static Function function(const char* name) {
        return reinterpret_cast<Function>(exportedSymbol(name));
    }
};

TEST_F(Exports, AGradientThatItsCallerOwns) {
    const auto create = function<CreateImage>("CreateGradientImage");
    ASSERT_NE(create, nullptr);
    const std::vector<std::string> before = allLiving();
    const CGImageRef image = create(3, 16);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(referencesTo(image), 1);
    EXPECT_EQ(CGImageGetWidth(image), 3U);
    EXPECT_EQ(CGImageGetHeight(image), 16U);
    EXPECT_EQ(CGImageGetBitsPerPixel(image), 8U);
    EXPECT_EQ(CGColorSpaceGetModel(CGImageGetColorSpace(image)), kCGColorSpaceModelMonochrome);
    // From black at the bottom, where CoreGraphics begins, to white.
    const Bytes bytes = bytesOf(image);
    const std::size_t row = CGImageGetBytesPerRow(image);
    ASSERT_EQ(bytes.size(), 16 * row);
    EXPECT_GT(bytes[0], 240);
    EXPECT_LT(bytes[15 * row], 16);
    for (std::size_t y = 1; y < 16; ++y) {
        EXPECT_LT(bytes[y * row], bytes[(y - 1) * row]) << y;
        EXPECT_EQ(bytes[y * row], bytes[y * row + 2]) << y;
    }
    CGImageRelease(image);
    EXPECT_EQ(allLiving(), before);
}

TEST_F(Exports, AContextThatItsCallerOwns) {
    const auto create = function<CreateContext>("MyCreateBitmapContext");
    ASSERT_NE(create, nullptr);
    const std::vector<std::string> before = allLiving();
    const CGContextRef context = create(5, 7);
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(referencesTo(context), 1);
    EXPECT_EQ(journalOf("CGBitmapContextCreate "),
              std::vector<std::string>{"CGBitmapContextCreate 5 7 8 0 1 8194"});
    const CGImageRef image = CGBitmapContextCreateImage(context);
    EXPECT_EQ(CGImageGetWidth(image), 5U);
    EXPECT_EQ(CGImageGetHeight(image), 7U);
    CGImageRelease(image);
    CGContextRelease(context);
    EXPECT_EQ(allLiving(), before);
}

TEST_F(Exports, NothingOfImpossibleSizes) {
    const auto createImage = function<CreateImage>("CreateGradientImage");
    const auto createContext = function<CreateContext>("MyCreateBitmapContext");
    const std::vector<std::string> before = allLiving();
    for (const auto& [width, height] : {std::pair{0, 4}, {4, 0}, {-1, 4}, {4, -1}}) {
        EXPECT_EQ(createImage(width, height), nullptr) << width << " " << height;
        EXPECT_EQ(createContext(width, height), nullptr) << width << " " << height;
    }
    EXPECT_EQ(allLiving(), before);
}

TEST_F(Exports, VariablesThatAreEmptyAtFirst) {
    for (const char* const name : {"tap", "blurEffect"}) {
        const auto* const variable = static_cast<const id*>(exportedSymbol(name));
        ASSERT_NE(variable, nullptr) << name;
        EXPECT_EQ(*variable, nil) << name;
    }
    const auto* const found = static_cast<const bool*>(exportedSymbol("themeImgFound"));
    ASSERT_NE(found, nullptr);
    EXPECT_FALSE(*found);
}

TEST_F(Exports, NothingElse) {
    for (const char* const name :
         {"_ZN10velmoranth7imaging19CreateGradientImageEii",
          "_ZN10velmoranth7imaging21MyCreateBitmapContextEii", "_Z19CreateGradientImageii",
          "_ZN10velmoranth8platform8platformEv", "_ZTIN10velmoranth8platform6ObjectE"}) {
        EXPECT_EQ(exportedSymbol(name), nullptr) << name;
    }
}

}  // namespace
}  // namespace velmoranth::standins::exports_test
