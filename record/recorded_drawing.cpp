#include "record/recorded_drawing.h"

#include "record/recorded_calls.h"

namespace velmoranth::record {

platform::BitmapImageRef RecordedCoreGraphics::imageMaskCreate(
    std::size_t width, std::size_t height, std::size_t bitsPerComponent, std::size_t bitsPerPixel,
    std::size_t bytesPerRow, const platform::DataProviderRef& provider, bool shouldInterpolate) {
    return recorded(messageOf("CoreGraphics", "imageMaskCreate"),
                    {words(width), words(height), words(bitsPerComponent), words(bitsPerPixel),
                     words(bytesPerRow), words(provider), words(shouldInterpolate)},
                    [&] {
                        return real_.imageMaskCreate(width, height, bitsPerComponent, bitsPerPixel,
                                                     bytesPerRow, provider, shouldInterpolate);
                    });
}

platform::BitmapImageRef RecordedCoreGraphics::imageCreateWithMask(
    const platform::BitmapImageRef& image, const platform::BitmapImageRef& mask) {
    return recorded(messageOf("CoreGraphics", "imageCreateWithMask"), {words(image), words(mask)},
                    [&] { return real_.imageCreateWithMask(image, mask); });
}

platform::GraphicsContextRef RecordedCoreGraphics::bitmapContextCreate(
    std::int64_t width, std::int64_t height, std::size_t bitsPerComponent, std::size_t bytesPerRow,
    platform::ColorSpace space, std::uint32_t bitmapInfo) {
    return recorded(messageOf("CoreGraphics", "bitmapContextCreate"),
                    {words(width), words(height), words(bitsPerComponent), words(bytesPerRow),
                     words(space), words(bitmapInfo)},
                    [&] {
                        return real_.bitmapContextCreate(width, height, bitsPerComponent,
                                                         bytesPerRow, space, bitmapInfo);
                    });
}

platform::GradientRef RecordedCoreGraphics::gradientCreateWithColorComponents(
    platform::ColorSpace space, const std::vector<double>& components,
    const std::optional<std::vector<double>>& locations) {
    return recorded(
        messageOf("CoreGraphics", "gradientCreateWithColorComponents"),
        {words(space), words(components), words(locations)},
        [&] { return real_.gradientCreateWithColorComponents(space, components, locations); });
}

void RecordedImageContexts::beginImageContextWithOptions(platform::Size size, bool opaque,
                                                         double scale) {
    recorded(messageOf("ImageContexts", "beginImageContextWithOptions"),
             {words(size), words(opaque), words(scale)},
             [&] { real_.beginImageContextWithOptions(size, opaque, scale); });
}

platform::GraphicsContextRef RecordedImageContexts::getCurrentContext() {
    return recorded(messageOf("ImageContexts", "getCurrentContext"), {},
                    [&] { return real_.getCurrentContext(); });
}

platform::ImageRef RecordedImageContexts::getImageFromCurrentImageContext() {
    return recorded(messageOf("ImageContexts", "getImageFromCurrentImageContext"), {},
                    [&] { return real_.getImageFromCurrentImageContext(); });
}

void RecordedImageContexts::endImageContext() {
    recorded(messageOf("ImageContexts", "endImageContext"), {}, [&] { real_.endImageContext(); });
}

platform::FontRef RecordedFonts::fontWithNameSize(const platform::NullableString& name,
                                                  double size) {
    return recorded(messageOf("Fonts", "fontWithNameSize"), {words(name), words(size)},
                    [&] { return real_.fontWithNameSize(name, size); });
}

platform::ViewRef RecordedViews::viewWithFrame(const platform::Rect& frame) {
    return recorded(messageOf("Views", "viewWithFrame"), {words(frame)},
                    [&] { return real_.viewWithFrame(frame); });
}

platform::LabelRef RecordedViews::labelWithFrame(const platform::Rect& frame) {
    return recorded(messageOf("Views", "labelWithFrame"), {words(frame)},
                    [&] { return real_.labelWithFrame(frame); });
}

platform::ImageViewRef RecordedViews::imageView() {
    return recorded(messageOf("Views", "imageView"), {}, [&] { return real_.imageView(); });
}

platform::ImageViewRef RecordedViews::imageViewWithImage(const platform::ImageRef& image) {
    return recorded(messageOf("Views", "imageViewWithImage"), {words(image)},
                    [&] { return real_.imageViewWithImage(image); });
}

platform::ImageViewRef RecordedViews::imageViewWithFrame(const platform::Rect& frame) {
    return recorded(messageOf("Views", "imageViewWithFrame"), {words(frame)},
                    [&] { return real_.imageViewWithFrame(frame); });
}

platform::GestureRecognizerRef RecordedViews::tapGestureRecognizer(
    platform::Object& target, const platform::Selector& action) {
    return recorded(messageOf("Views", "tapGestureRecognizer"), {words(target), action},
                    [&] { return real_.tapGestureRecognizer(target, action); });
}

void RecordedViews::animateWithDurationAnimationsCompletion(
    double duration, const std::function<void()>& animations,
    const std::function<void(bool finished)>& completion) {
    constexpr auto kMessage = messageOf("Views", "animateWithDurationAnimationsCompletion");
    recorded(kMessage, {words(duration), wordsOfBlock(animations), wordsOfBlock(completion)}, [&] {
        real_.animateWithDurationAnimationsCompletion(duration,
                                                      recordedCallback<>(kMessage, animations),
                                                      recordedCallback<bool>(kMessage, completion));
    });
}

void RecordedViews::
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double duration, double delay, double damping, double initialVelocity, unsigned options,
        const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) {
    constexpr auto kMessage = messageOf(
        "Views",
        "animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsComple"
        "tion");
    recorded(
        kMessage,
        {words(duration), words(delay), words(damping), words(initialVelocity), words(options),
         wordsOfBlock(animations), wordsOfBlock(completion)},
        [&] {
            real_
                .animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
                    duration, delay, damping, initialVelocity, options,
                    recordedCallback<>(kMessage, animations),
                    recordedCallback<bool>(kMessage, completion));
        });
}

}  // namespace velmoranth::record
