// Gradients and bitmap contexts.
#include "device/standins/core_graphics.h"
#include "device/standins/core_graphics_objects.h"
#include "device/standins/messages.h"
#include "record/operations.h"
#include "record/words.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace velmoranth::standins {
namespace {

constexpr std::size_t kLargestSide = 32768;
constexpr CGBitmapInfo kLittle32 = 0x2000;
constexpr CGGradientDrawingOptions kBeforeStart = 1;
constexpr CGGradientDrawingOptions kAfterEnd = 2;

using Color = std::array<CGFloat, 4>;  // red, green, blue, alpha

struct ContextKind {
    CGColorSpaceModel model;
    CGBitmapInfo bitmapInfo;
    std::size_t bytesPerPixel;
    // Where red, green, blue and alpha lie in a pixel; a gray one has its sample first.
    std::array<std::size_t, 4> places;
};

constexpr ContextKind kContextKinds[] = {
    {kCGColorSpaceModelMonochrome, 0, 1, {0, 0, 0, 0}},
    {kCGColorSpaceModelRGB, 1, 4, {0, 1, 2, 3}},
    {kCGColorSpaceModelRGB, 2, 4, {1, 2, 3, 0}},
    {kCGColorSpaceModelRGB, 5, 4, {0, 1, 2, 3}},
    {kCGColorSpaceModelRGB, 6, 4, {1, 2, 3, 0}},
    {kCGColorSpaceModelRGB, kLittle32 | 1, 4, {3, 2, 1, 0}},
    {kCGColorSpaceModelRGB, kLittle32 | 2, 4, {2, 1, 0, 3}},
    {kCGColorSpaceModelRGB, kLittle32 | 5, 4, {3, 2, 1, 0}},
    {kCGColorSpaceModelRGB, kLittle32 | 6, 4, {2, 1, 0, 3}},
};

const ContextKind* kindOf(CGColorSpaceModel model, CGBitmapInfo bitmapInfo) {
    const auto* const kind = std::find_if(
        std::begin(kContextKinds), std::end(kContextKinds), [=](const ContextKind& candidate) {
            return candidate.model == model && candidate.bitmapInfo == bitmapInfo;
        });
    return kind == std::end(kContextKinds) ? nullptr : kind;
}

CGContextStandIn* newContext(const ContextKind& kind, std::size_t width, std::size_t height,
                             std::size_t bytesPerRow) {
    auto* const context = [[CGContextStandIn alloc] init];
    context->layout_ = new ImageLayout{.width = width,
                                       .height = height,
                                       .bitsPerComponent = 8,
                                       .bitsPerPixel = kind.bytesPerPixel * 8,
                                       .bytesPerRow = bytesPerRow,
                                       .model = kind.model,
                                       .bitmapInfo = kind.bitmapInfo};
    context->memory_ = new Bytes(bytesPerRow * height);
    context->scale_ = 1;
    return context;
}

// Rows that the context chooses the length of are padded, as a phone may.
std::size_t paddedRow(std::size_t width, const ContextKind& kind) {
    return (width * kind.bytesPerPixel + 31) / 32 * 32;
}

Color colorAt(const std::vector<std::vector<CGFloat>>& stops, CGFloat t) {
    std::size_t after = 0;
    while (after < stops.size() && stops[after][4] <= t) {
        ++after;
    }
    const std::vector<CGFloat>& from = stops[after == 0 ? 0 : after - 1];
    const std::vector<CGFloat>& to = stops[std::min(after, stops.size() - 1)];
    const CGFloat width = to[4] - from[4];
    const CGFloat share = width > 0 ? (t - from[4]) / width : 0;
    Color color{};
    for (std::size_t i = 0; i < color.size(); ++i) {
        color[i] = from[i] + (to[i] - from[i]) * std::clamp(share, 0.0, 1.0);
    }
    return color;
}

// As those of a list; nil for none.
Words wordsOfNumbers(const CGFloat* numbers, std::size_t count) {
    return {numbers == nullptr ? record::kNil
                               : record::words(std::vector<double>(numbers, numbers + count))};
}

std::uint8_t over(std::uint8_t below, CGFloat sample, CGFloat alpha) {
    return static_cast<std::uint8_t>(std::lround(sample * 255 * alpha + below * (1 - alpha)));
}

void paint(const ContextKind& kind, std::uint8_t* pixel, const Color& color) {
    if (kind.bytesPerPixel == 1) {
        // Equal for the grays that a gray gradient has.
        const CGFloat gray = (color[0] + color[1] + color[2]) / 3;
        pixel[0] = over(pixel[0], gray, color[3]);
        return;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        pixel[kind.places[i]] = over(pixel[kind.places[i]], color[i], color[3]);
    }
    pixel[kind.places[3]] = over(pixel[kind.places[3]], 1, color[3]);
}

// The middle of a pixel in the context's user space.
CGPoint userPoint(const CGContextStandIn* context, std::size_t x, std::size_t row) {
    const CGFloat across = (static_cast<CGFloat>(x) + 0.5) / context->scale_;
    const CGFloat down = (static_cast<CGFloat>(row) + 0.5) / context->scale_;
    const CGFloat height = static_cast<CGFloat>(context->layout_->height) / context->scale_;
    return {across - context->translation_.x,
            (context->isFlipped_ ? down : height - down) - context->translation_.y};
}

void fill(CGContextStandIn* context, const CGGradientStandIn* gradient, CGPoint start, CGPoint end,
          CGGradientDrawingOptions options) {
    const ContextKind& kind = *kindOf(context->layout_->model, context->layout_->bitmapInfo);
    const CGFloat dx = end.x - start.x;
    const CGFloat dy = end.y - start.y;
    const CGFloat squared = dx * dx + dy * dy;
    if (!(squared > 0)) {
        return;
    }
    for (std::size_t row = 0; row < context->layout_->height; ++row) {
        std::uint8_t* const line = context->memory_->data() + row * context->layout_->bytesPerRow;
        for (std::size_t x = 0; x < context->layout_->width; ++x) {
            const CGPoint point = userPoint(context, x, row);
            const CGFloat t = ((point.x - start.x) * dx + (point.y - start.y) * dy) / squared;
            if ((t < 0 && (options & kBeforeStart) == 0) || (t > 1 && (options & kAfterEnd) == 0)) {
                continue;
            }
            paint(kind, line + x * kind.bytesPerPixel,
                  colorAt(*gradient->stops_, std::clamp(t, 0.0, 1.0)));
        }
    }
}

}  // namespace

CGContextRef createFlippedContext(CGSize size, bool opaque, CGFloat scale) {
    const CGFloat width = std::ceil(size.width * scale);
    const CGFloat height = std::ceil(size.height * scale);
    constexpr auto kLimit = static_cast<CGFloat>(kLargestSide);
    if (!(width > 0) || !(height > 0) || width > kLimit || height > kLimit) {
        return nullptr;
    }
    const ContextKind& kind = *kindOf(kCGColorSpaceModelRGB, kLittle32 | (opaque ? 6 : 2));
    const auto pixelsWide = static_cast<std::size_t>(width);
    CGContextStandIn* const context =
        newContext(kind, pixelsWide, static_cast<std::size_t>(height), paddedRow(pixelsWide, kind));
    context->scale_ = scale;
    context->isFlipped_ = YES;
    return (CGContextRef)context;
}

CGPoint translationOf(CGContextRef context) {
    return objectOf<CGContextStandIn>(context)->translation_;
}

Bytes memoryOf(CGContextRef context) {
    return *objectOf<CGContextStandIn>(context)->memory_;
}

std::size_t bytesPerRowOf(CGContextRef context) {
    return objectOf<CGContextStandIn>(context)->layout_->bytesPerRow;
}

CGFloat scaleOf(CGContextRef context) {
    return objectOf<CGContextStandIn>(context)->scale_;
}

}  // namespace velmoranth::standins

using velmoranth::record::messageOf;
using velmoranth::standins::called;
using velmoranth::standins::calledOn;
using velmoranth::standins::objectOf;

@implementation CGGradientStandIn

- (void)dealloc {
    delete stops_;
    [super dealloc];
}

@end

@implementation CGContextStandIn

- (void)dealloc {
    delete layout_;
    delete memory_;
    [super dealloc];
}

@end

CGGradientRef CGGradientCreateWithColorComponents(CGColorSpaceRef space, const CGFloat* components,
                                                  const CGFloat* locations, size_t count) {
    const std::size_t colors = CGColorSpaceGetModel(space) == kCGColorSpaceModelMonochrome ? 1 : 3;
    const auto noted =
        called(messageOf("CoreGraphics", "gradientCreateWithColorComponents"), space,
               velmoranth::standins::wordsOfNumbers(components, count * (colors + 1)),
               velmoranth::standins::wordsOfNumbers(locations, count));
    if (space == nullptr || count == 0) {
        return noted.answered(static_cast<CGGradientRef>(nullptr));
    }
    auto* const gradient = [[CGGradientStandIn alloc] init];
    gradient->stops_ = new std::vector<std::vector<CGFloat>>;
    const CGFloat last = count == 1 ? 1 : static_cast<CGFloat>(count - 1);
    for (std::size_t i = 0; i < count; ++i) {
        const CGFloat* const stop = components + i * (colors + 1);
        const CGFloat location =
            locations == nullptr ? static_cast<CGFloat>(i) / last : locations[i];
        // Behind those at the same place.
        const auto place = std::find_if(gradient->stops_->begin(), gradient->stops_->end(),
                                        [=](const auto& other) { return other[4] > location; });
        gradient->stops_->insert(place, {stop[0], stop[colors == 1 ? 0 : 1],
                                         stop[colors == 1 ? 0 : 2], stop[colors], location});
    }
    return noted.answered((CGGradientRef)gradient);
}

CGGradientRef CGGradientRetain(CGGradientRef gradient) {
    return (CGGradientRef)[objectOf<CGGradientStandIn>(gradient) retain];
}

void CGGradientRelease(CGGradientRef gradient) {
    [objectOf<CGGradientStandIn>(gradient) release];
}

CGContextRef CGContextRetain(CGContextRef context) {
    return (CGContextRef)[objectOf<CGContextStandIn>(context) retain];
}

void CGContextRelease(CGContextRef context) {
    [objectOf<CGContextStandIn>(context) release];
}

void CGContextTranslateCTM(CGContextRef context, CGFloat x, CGFloat y) {
    calledOn(context, messageOf("GraphicsContext", "translateCTM"), x, y);
    if (auto* const object = objectOf<CGContextStandIn>(context)) {
        object->translation_.x += x;
        object->translation_.y += y;
    }
}

void CGContextDrawLinearGradient(CGContextRef context, CGGradientRef gradient, CGPoint start,
                                 CGPoint end, CGGradientDrawingOptions options) {
    calledOn(context, messageOf("GraphicsContext", "drawLinearGradient"), start, end, options);
    auto* const object = objectOf<CGContextStandIn>(context);
    const auto* const colors = objectOf<CGGradientStandIn>(gradient);
    if (object != nil && colors != nil) {
        velmoranth::standins::fill(object, colors, start, end, options);
    }
}

CGContextRef CGBitmapContextCreate(void* data, size_t width, size_t height, size_t bitsPerComponent,
                                   size_t bytesPerRow, CGColorSpaceRef space,
                                   CGBitmapInfo bitmapInfo) {
    const auto noted =
        called(messageOf("CoreGraphics", "bitmapContextCreate"), width, height, bitsPerComponent,
               bytesPerRow, space, bitmapInfo, velmoranth::standins::wordsIfSet(data));
    const auto* const kind = velmoranth::standins::kindOf(CGColorSpaceGetModel(space), bitmapInfo);
    // Memory of the caller's is not something the library draws into.
    if (data != nullptr || kind == nullptr || bitsPerComponent != 8 || width == 0 || height == 0 ||
        width > velmoranth::standins::kLargestSide || height > velmoranth::standins::kLargestSide ||
        (bytesPerRow != 0 && bytesPerRow < width * kind->bytesPerPixel)) {
        return noted.answered(static_cast<CGContextRef>(nullptr));
    }
    return noted.answered((CGContextRef)velmoranth::standins::newContext(
        *kind, width, height,
        bytesPerRow == 0 ? velmoranth::standins::paddedRow(width, *kind) : bytesPerRow));
}

CGImageRef CGBitmapContextCreateImage(CGContextRef context) {
    calledOn(context, messageOf("GraphicsContext", "createImage"));
    const auto* const object = objectOf<CGContextStandIn>(context);
    return object == nil ? nullptr
                         : velmoranth::standins::createImage(*object->layout_, *object->memory_);
}
