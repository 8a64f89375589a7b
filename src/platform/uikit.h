// UIKit: images, image contexts, fonts, views, labels, layers, gestures, animations, view
// controllers and alerts, feedback, the device and its screen.
#pragma once

#include "platform/core_graphics.h"
#include "platform/core_ui.h"
#include "platform/foundation.h"
#include "platform/objc_runtime.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::platform {

// --- Values
// -------------------------------------------------------------------------------------------

// NSTextAlignment, with the platform's values. `natural` follows the direction of the text.
enum class TextAlignment { left = 0, center = 1, right = 2, justified = 3, natural = 4 };

// UIViewAnimationOptions, with the platform's value.
inline constexpr unsigned kViewAnimationOptionCurveEaseIn = 1U << 16U;

// UIAlertControllerStyle and UIAlertActionStyle, with the platform's values.
enum class AlertControllerStyle { actionSheet = 0, alert = 1 };
enum class AlertActionStyle { normal = 0, cancel = 1, destructive = 2 };

// --- Handles
// ------------------------------------------------------------------------------------------

// UIImage. Never changes.
class Image : public Object {
  public:
    // Points: the bitmap's pixels divided by the scale.
    [[nodiscard]] virtual Size size() const = 0;
    // Pixels per point.
    [[nodiscard]] virtual double scale() const = 0;
    // The bitmap behind the image (CGImage), nil when it has none.
    [[nodiscard]] virtual BitmapImageRef bitmap() const = 0;
    // Whether the image is backed by a CIImage.
    [[nodiscard]] virtual bool hasCIImage() const = 0;
};

using ImageRef = std::shared_ptr<Image>;

// Messages to an image that may be nil: the size of nil is 0 × 0, its bitmap is nil.
[[nodiscard]] Size sizeOf(const ImageRef& image);
[[nodiscard]] BitmapImageRef bitmapOf(const ImageRef& image);

// UIFont: a face at a size. Never changes.
class Font : public Object {};

using FontRef = std::shared_ptr<Font>;

// CALayer of a view.
class Layer : public Object {
  public:
    // Points; the origin is that of the view's own coordinates.
    [[nodiscard]] virtual Rect bounds() const = 0;
    // renderInContext: draws the layer and its sublayers in the layer's own coordinates; its
    // position is not used. Nil draws nothing.
    virtual void renderInContext(const GraphicsContextRef& context) = 0;
    // 0 to 1. The view's alpha is the same property.
    virtual void setOpacity(float opacity) = 0;
    virtual void setMasksToBounds(bool masks) = 0;
    // The shadow of the layer: black, opacity 0, offset (0, -3), radius 3 until set. Its radius is
    // that of the blur, points; the offset goes right and down, points.
    virtual void setShadowColor(const Color& color) = 0;
    virtual void setShadowOpacity(float opacity) = 0;
    virtual void setShadowOffset(Size offset) = 0;
    virtual void setShadowRadius(double radius) = 0;
    // setShadowPath: with the CGPath of +[UIBezierPath bezierPathWithRect:]: the shape that casts
    // the shadow on the screen, in the layer's coordinates, in place of what the layer draws.
    virtual void setShadowPathRect(const Rect& rect) = 0;
};

using LayerRef = std::shared_ptr<Layer>;

// UIGestureRecognizer. Does not hold its target.
class GestureRecognizer : public Object {};

using GestureRecognizerRef = std::shared_ptr<GestureRecognizer>;

class View;
using ViewRef = std::shared_ptr<View>;

// UIView. A view holds its subviews; a subview does not hold its superview.
class View : public Object {
  public:
    [[nodiscard]] virtual int tag() const = 0;
    virtual void setTag(int tag) = 0;
    // Points, in the superview's coordinates.
    [[nodiscard]] virtual Rect frame() const = 0;
    virtual void setFrame(const Rect& frame) = 0;
    // Points, in the view's own coordinates; origin (0, 0).
    [[nodiscard]] virtual Rect bounds() const = 0;
    // Back to front.
    [[nodiscard]] virtual std::vector<ViewRef> subviews() const = 0;
    // Adds in front of the others; a view that has a superview leaves that one first. Nil does
    // nothing.
    virtual void addSubview(const ViewRef& view) = 0;
    // insertSubview:atIndex: the same, at that place from the back; past the end is in front.
    virtual void insertSubviewAtIndex(const ViewRef& view, std::size_t index) = 0;
    // Leaves the superview; without one does nothing.
    virtual void removeFromSuperview() = 0;
    // The receiver or the first of its descendants, depth first and back to front, that has the
    // tag.
    [[nodiscard]] virtual ViewRef viewWithTag(int tag) = 0;
    virtual void setBackgroundColor(const Color& color) = 0;
    virtual void setClipsToBounds(bool clips) = 0;
    // 0 to 1; what lies outside is brought to the nearer end.
    virtual void setAlpha(double alpha) = 0;
    virtual void setHidden(bool hidden) = 0;
    // The view holds the recognizer.
    virtual void addGestureRecognizer(const GestureRecognizerRef& recognizer) = 0;
    [[nodiscard]] virtual LayerRef layer() = 0;
};

// UIImageView: draws its image stretched over its bounds.
class ImageView : public View {
  public:
    [[nodiscard]] virtual ImageRef image() const = 0;
    // Nil shows nothing. The frame stays.
    virtual void setImage(const ImageRef& image) = 0;
};

using ImageViewRef = std::shared_ptr<ImageView>;

// UILabel: one line of text in the middle of the height of its bounds. A line that is too wide ends
// in "…".
class Label : public View {
  public:
    // Nil is the font that a new label has: the system's regular face at 17 points.
    virtual void setFont(const FontRef& font) = 0;
    virtual void setTextAlignment(TextAlignment alignment) = 0;
    // Nil shows nothing.
    virtual void setText(const NullableString& text) = 0;
    // Black until set.
    virtual void setTextColor(const Color& color) = 0;
    // Of the text; it has none until a colour is set. The shadow is not blurred.
    virtual void setShadowColor(const Color& color) = 0;
    // Right and down, points; (0, -1), which is above, until set.
    virtual void setShadowOffset(Size offset) = 0;
};

using LabelRef = std::shared_ptr<Label>;

// UIViewController.
class ViewController : public Object {
  public:
    // Nil for one without a view.
    [[nodiscard]] virtual ViewRef view() = 0;
    // presentViewController:animated:completion: with no completion. Nil does nothing.
    virtual void presentViewControllerAnimated(const std::shared_ptr<ViewController>& controller,
                                               bool animated) = 0;
};

using ViewControllerRef = std::shared_ptr<ViewController>;

// UIWindow.
class Window : public View {
  public:
    // Nil when it has none.
    [[nodiscard]] virtual ViewControllerRef rootViewController() const = 0;
};

using WindowRef = std::shared_ptr<Window>;

// UIAlertAction: a button of an alert.
class AlertAction : public Object {};

using AlertActionRef = std::shared_ptr<AlertAction>;

// UIAlertController.
class AlertController : public ViewController {
  public:
    // Behind those that it has. Nil does nothing.
    virtual void addAction(const AlertActionRef& action) = 0;
};

using AlertControllerRef = std::shared_ptr<AlertController>;

// _UIFeedback: what is played, felt or both.
class UIFeedback : public Object {
  public:
    // The system's number of the sound.
    [[nodiscard]] virtual std::uint32_t _effectiveSystemSoundID() = 0;
};

// _UIImageContent: what an image draws. Its glyph is read by the message vectorGlyph.
class UIImageContent : public Object {
  public:
    // Nil when the image is not made from a glyph.
    [[nodiscard]] virtual CUINamedVectorGlyphRef vectorGlyph() const = 0;
};

// UISwitchModernVisualElement: what a switch looks like.
class UISwitchModernVisualElement : public View {};

// --- Services
// -----------------------------------------------------------------------------------------

class Images {
  public:
    Images() = default;
    Images(const Images&) = delete;
    Images& operator=(const Images&) = delete;
    virtual ~Images() = default;

    // +[UIImage imageWithContentsOfFile:] reads and does not cache; nil when the file is missing or
    // no image. By content, not by name; a name ending in "@2x" or "@3x" before its extension sets
    // the scale.
    [[nodiscard]] virtual ImageRef imageWithContentsOfFile(const std::string& path) = 0;
    // +[UIImage imageWithCGImage:] scale 1, upward orientation; nil for nil.
    [[nodiscard]] virtual ImageRef imageWithCGImage(const BitmapImageRef& bitmap) = 0;
    // -[UIImage drawInRect:] into the current image context, over what is there, stretched to
    // `rect` (points). A nil image, an empty rectangle and no current context draw nothing.
    virtual void drawInRect(const ImageRef& image, const Rect& rect) = 0;
    // UIImagePNGRepresentation: the bitmap's pixels; nil for nil or no bitmap.
    [[nodiscard]] virtual std::optional<Data> pngRepresentation(const ImageRef& image) = 0;
    // Sends _applicationIconImageForBundleIdentifier:format:scale: to the class UIImage, as any
    // caller of the platform does: an installed replacement is what answers.
    virtual ImageRef applicationIconImageForBundleIdentifierFormatScale(
        const NullableString& bundleIdentifier, int format, double scale) = 0;
};

// The stack of image contexts of the calling thread.
class ImageContexts {
  public:
    ImageContexts() = default;
    ImageContexts(const ImageContexts&) = delete;
    ImageContexts& operator=(const ImageContexts&) = delete;
    virtual ~ImageContexts() = default;

    // UIGraphicsBeginImageContextWithOptions: `size` in points; scale 0 is the main screen's. A
    // size that is not positive makes no context: the following calls draw nowhere and the image is
    // nil; it is closed by endImageContext all the same.
    virtual void beginImageContextWithOptions(Size size, bool opaque, double scale) = 0;
    // UIGraphicsGetCurrentContext; nil when there is none.
    [[nodiscard]] virtual GraphicsContextRef getCurrentContext() = 0;
    // UIGraphicsGetImageFromCurrentImageContext: a snapshot at the context's scale; nil when there
    // is none.
    [[nodiscard]] virtual ImageRef getImageFromCurrentImageContext() = 0;
    // UIGraphicsEndImageContext.
    virtual void endImageContext() = 0;
};

// UIFont's class methods.
class Fonts {
  public:
    Fonts() = default;
    Fonts(const Fonts&) = delete;
    Fonts& operator=(const Fonts&) = delete;
    virtual ~Fonts() = default;

    // +[UIFont fontWithName:size:] by PostScript, family or full name; nil for a name that the
    // platform does not know and for nil. `size` in points; one that is not positive, or no number,
    // is the system's own.
    [[nodiscard]] virtual FontRef fontWithNameSize(const NullableString& name, double size) = 0;
};

class Views {
  public:
    Views() = default;
    Views(const Views&) = delete;
    Views& operator=(const Views&) = delete;
    virtual ~Views() = default;

    // -[UIView initWithFrame:].
    [[nodiscard]] virtual ViewRef viewWithFrame(const Rect& frame) = 0;
    // -[UILabel initWithFrame:].
    [[nodiscard]] virtual LabelRef labelWithFrame(const Rect& frame) = 0;
    // -[UIImageView init]: empty, frame zero.
    [[nodiscard]] virtual ImageViewRef imageView() = 0;
    // -[UIImageView initWithImage:]: at (0, 0), the image's size; zero for nil.
    [[nodiscard]] virtual ImageViewRef imageViewWithImage(const ImageRef& image) = 0;
    // -[UIImageView initWithFrame:].
    [[nodiscard]] virtual ImageViewRef imageViewWithFrame(const Rect& frame) = 0;
    // -[UITapGestureRecognizer initWithTarget:action:]: a tap sends `action`, a selector without
    // arguments, to the target. A target that is gone is sent nothing.
    [[nodiscard]] virtual GestureRecognizerRef tapGestureRecognizer(Object& target,
                                                                    const Selector& action) = 0;
    // +[UIView animateWithDuration:animations:completion:] in seconds. `animations` runs at once:
    // the properties that it sets have their new values from then on, and the screen shows them on
    // their way there. `completion` runs later, never from inside this call, with whether the
    // animation ran to its end.
    virtual void animateWithDurationAnimationsCompletion(
        double duration, const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) = 0;
    // +[UIView animateWithDuration:delay:usingSpringWithDamping:initialSpringVelocity:options:
    // animations:completion:] as above; times in seconds. Damping 1 does not overshoot, less does;
    // velocity 1 is the whole way in a second. `options` as UIViewAnimationOptions; those for a
    // curve say nothing of a spring.
    virtual void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double duration, double delay, double damping, double initialVelocity, unsigned options,
        const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) = 0;
};

// UIAlertController's and UIAlertAction's class methods.
class Alerts {
  public:
    Alerts() = default;
    Alerts(const Alerts&) = delete;
    Alerts& operator=(const Alerts&) = delete;
    virtual ~Alerts() = default;

    // alertControllerWithTitle:message:preferredStyle:
    [[nodiscard]] virtual AlertControllerRef alertControllerWithTitleMessagePreferredStyle(
        const NullableString& title, const NullableString& message, AlertControllerStyle style) = 0;
    // actionWithTitle:style:handler: `handler` runs when the button is chosen.
    [[nodiscard]] virtual AlertActionRef actionWithTitleStyleHandler(
        const NullableString& title, AlertActionStyle style,
        const std::function<void()>& handler) = 0;
};

// +[UIApplication sharedApplication].
class Application {
  public:
    Application() = default;
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    virtual ~Application() = default;

    // Nil when no window is the key window.
    [[nodiscard]] virtual WindowRef keyWindow() = 0;
};

// UIUserInterfaceIdiom, with the platform's values.
inline constexpr int kUserInterfaceIdiomPhone = 0;
inline constexpr int kUserInterfaceIdiomPad = 1;

// UIDeviceOrientation, with the platform's values: landscape left and right. Every other value is
// no landscape (unknown 0, portrait 1 and 2, face up 5, face down 6).
inline constexpr int kDeviceOrientationLandscapeLeft = 3;
inline constexpr int kDeviceOrientationLandscapeRight = 4;

// +[UIDevice currentDevice].
class Device {
  public:
    Device() = default;
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;
    virtual ~Device() = default;

    // respondsToSelector: for userInterfaceIdiom.
    [[nodiscard]] virtual bool respondsToUserInterfaceIdiom() = 0;
    [[nodiscard]] virtual int userInterfaceIdiom() = 0;
    // UIDeviceOrientation, in the platform's values.
    [[nodiscard]] virtual int orientation() = 0;
};

// +[UIScreen mainScreen].
class Screen {
  public:
    Screen() = default;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    virtual ~Screen() = default;

    // Pixels per point.
    [[nodiscard]] virtual double scale() = 0;
    // Points, as the screen is held now; origin (0, 0).
    [[nodiscard]] virtual Rect bounds() = 0;
};

}  // namespace velmoranth::platform
