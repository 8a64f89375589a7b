// CoreGraphics: geometry, colours, bitmap images with the layout they are stored in, image masks,
// bitmap contexts and gradients.
#pragma once

#include "platform/foundation.h"
#include "platform/objc_runtime.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace velmoranth::platform {

// --- Values
// -------------------------------------------------------------------------------------------

// Points, unless a comment says pixels.
struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
    double width = 0;
    double height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
    Point origin;
    Size size;

    friend bool operator==(const Rect&, const Rect&) = default;
};

// A colour in sRGB, straight alpha, each component 0 to 1.
struct Color {
    // Which of the colours that the platform has by a message of their own, if it is one.
    enum class Name { none, clear, black, white, gray };

    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    Name name = Name::none;

    // However they were come by.
    friend bool operator==(const Color& a, const Color& b) {
        return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha;
    }
};

// +[UIColor clearColor].
inline constexpr Color kClearColor{0, 0, 0, 0, Color::Name::clear};
// +[UIColor blackColor].
inline constexpr Color kBlackColor{0, 0, 0, 1, Color::Name::black};
// +[UIColor whiteColor].
inline constexpr Color kWhiteColor{1, 1, 1, 1, Color::Name::white};
// +[UIColor grayColor].
inline constexpr Color kGrayColor{0.5, 0.5, 0.5, 1, Color::Name::gray};

enum class ColorSpace { deviceGray, deviceRGB, indexed };

// CGImageAlphaInfo, with the platform's values. "last" and "first" are straight alpha.
enum class AlphaInfo : std::uint32_t {
    none = 0,
    premultipliedLast = 1,
    premultipliedFirst = 2,
    last = 3,
    first = 4,
    noneSkipLast = 5,
    noneSkipFirst = 6,
    only = 7,
};

// CGBitmapInfo's byte order, with the platform's values. `standard`: components lie in memory in
// the order in which the alpha kind names them, 16-bit components with the most significant byte
// first.
enum class ByteOrder : std::uint32_t { standard = 0, little32 = 0x2000 };

// How the samples of a bitmap image lie in memory, top row first.
struct BitmapLayout {
    std::size_t width = 0;   // pixels
    std::size_t height = 0;  // pixels
    std::size_t bitsPerComponent = 0;
    std::size_t bitsPerPixel = 0;
    std::size_t bytesPerRow = 0;
    ColorSpace colorSpace = ColorSpace::deviceRGB;
    AlphaInfo alphaInfo = AlphaInfo::none;
    ByteOrder byteOrder = ByteOrder::standard;

    friend bool operator==(const BitmapLayout&, const BitmapLayout&) = default;
};

// --- Handles
// ------------------------------------------------------------------------------------------

// CGDataProvider: where an image has its samples from, height × bytesPerRow bytes that never
// change. Only the platform looks at them.
class DataProvider : public Object {};

using DataProviderRef = std::shared_ptr<DataProvider>;

// CGImage: a bitmap image, or an image mask. Never changes.
class BitmapImage : public Object {
  public:
    [[nodiscard]] virtual const BitmapLayout& layout() const = 0;
    // Of the samples as they stand (CGImageGetDataProvider); nil when it has none.
    [[nodiscard]] virtual DataProviderRef dataProvider() const = 0;
    // Whether this is an image mask: samples say how much is hidden, not a colour.
    [[nodiscard]] virtual bool isMask() const = 0;
};

using BitmapImageRef = std::shared_ptr<BitmapImage>;

// CGGradient.
class Gradient : public Object {};

using GradientRef = std::shared_ptr<Gradient>;

// CGGradientDrawingOptions, with the platform's values.
inline constexpr std::uint32_t kGradientDrawsBeforeStartLocation = 1;
inline constexpr std::uint32_t kGradientDrawsAfterEndLocation = 2;

// CGContext: a bitmap to draw into. A context made by CoreGraphics has its origin at the bottom
// left with y upwards, one of UIKit at the top left with y downwards; memory has the top row first
// in both.
class GraphicsContext : public Object {
  public:
    // CGContextTranslateCTM: moves the user space by (x, y) of its own units.
    virtual void translateCTM(double x, double y) = 0;
    // CGContextDrawLinearGradient from `start` to `end` (user space). `options` as above; a side
    // without its option stays untouched. Nil draws nothing.
    virtual void drawLinearGradient(const GradientRef& gradient, Point start, Point end,
                                    std::uint32_t options) = 0;
    // CGBitmapContextCreateImage: a snapshot; later drawing does not change it. Nil when it cannot
    // be made.
    [[nodiscard]] virtual BitmapImageRef createImage() = 0;
};

using GraphicsContextRef = std::shared_ptr<GraphicsContext>;

// --- Services
// -----------------------------------------------------------------------------------------

class CoreGraphics {
  public:
    CoreGraphics() = default;
    CoreGraphics(const CoreGraphics&) = delete;
    CoreGraphics& operator=(const CoreGraphics&) = delete;
    virtual ~CoreGraphics() = default;

    // CGImageMaskCreate with no decode array. The first `bitsPerComponent` bits of each pixel are
    // its sample, used as stored. Nil when a size is 0, bitsPerComponent is not 1, 2, 4 or 8, the
    // row is shorter than its pixels, or the provider is nil or too short.
    [[nodiscard]] virtual BitmapImageRef imageMaskCreate(std::size_t width, std::size_t height,
                                                         std::size_t bitsPerComponent,
                                                         std::size_t bitsPerPixel,
                                                         std::size_t bytesPerRow,
                                                         const DataProviderRef& provider,
                                                         bool shouldInterpolate) = 0;

    // CGImageCreateWithMask: the image with its alpha multiplied by the mask's, at the image's
    // size; a mask of another size is stretched. An image mask's sample S (0 to 1) gives alpha 1 -
    // S. For a gray image that is no mask: alpha 1 - S as well, which is what the reflection relies
    // on. Nil when either is nil, `image` is a mask, or `mask` is neither a mask nor a gray image
    // without alpha.
    [[nodiscard]] virtual BitmapImageRef imageCreateWithMask(const BitmapImageRef& image,
                                                             const BitmapImageRef& mask) = 0;

    // CGBitmapContextCreate with memory of its own, zeroed; bytesPerRow 0 lets the platform choose.
    // `bitmapInfo` is an alpha kind and a byte order or-ed together, in the platform's values. Nil
    // when a size is not positive or the combination is not supported. Supported: gray 8 bits
    // without alpha (0) and RGB 8 bits with 8194 (premultiplied first, 32-bit little-endian: bytes
    // B, G, R, A).
    [[nodiscard]] virtual GraphicsContextRef bitmapContextCreate(
        std::int64_t width, std::int64_t height, std::size_t bitsPerComponent,
        std::size_t bytesPerRow, ColorSpace space, std::uint32_t bitmapInfo) = 0;

    // CGGradientCreateWithColorComponents: a stop has the space's components and alpha; no
    // locations means evenly spread.
    [[nodiscard]] virtual GradientRef gradientCreateWithColorComponents(
        ColorSpace space, const std::vector<double>& components,
        const std::optional<std::vector<double>>& locations) = 0;
};

}  // namespace velmoranth::platform
