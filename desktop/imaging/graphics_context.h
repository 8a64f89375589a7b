// A bitmap to draw into: what the platform's interface asks for, and what views and stock pictures
// need beyond it (fills, images, clips, transparency layers). Memory is premultiplied B, G, R, A;
// a gray context gives its pictures as gray. A snapshot shares the memory: the next drawing copies.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/pixels.h"
#include "desktop/imaging/shadow.h"
#include "platform/core_graphics.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::desktop {

// From user space to pixels, top row first: x' = scaleX × x + offsetX, y alike. scaleY is negative
// when y goes upwards.
struct UserTransform {
    double scaleX = 1;
    double scaleY = 1;
    double offsetX = 0;
    double offsetY = 0;
};

// A shadow of what is drawn. Points, y downwards on the picture, scaled like what is drawn. Colour
// and opacity count as 0..1, a negative radius as 0, one of more than kMaxShadowDeviation pixels as
// that. A shadow with NaN in it, or an offset of more than a million pixels, is not there.
struct Shadow {
    double opacity = 0;
    double radius = 3;  // the standard deviation of the blur
    platform::Point offset{0, -3};
    platform::Color color{0, 0, 0, 1};
};

class DesktopGraphicsContext final : public platform::GraphicsContext {
    struct Key {};

  public:
    enum class Origin { topLeft, bottomLeft };
    // premultiplied: starts transparent. opaque: starts black, has no alpha. gray: starts black.
    enum class Content { premultiplied, opaque, gray };

    struct Configuration {
        PixelSize size;
        double scale = 1;  // pixels per point
        Origin origin = Origin::topLeft;
        Content content = Content::premultiplied;
        std::size_t bytesPerRow = 0;  // of the snapshots; 0 is tight
    };

    // Nil when the size is 0 or over what a bitmap may need, a given row is shorter than its
    // pixels, or the scale is not positive.
    [[nodiscard]] static std::shared_ptr<DesktopGraphicsContext> create(
        const Configuration& configuration);

    DesktopGraphicsContext(Key key, const Configuration& configuration);

    [[nodiscard]] std::string className() const override { return "__NSCFType"; }

    void translateCTM(double x, double y) override;
    void drawLinearGradient(const platform::GradientRef& gradient, platform::Point start,
                            platform::Point end, std::uint32_t options) override;
    [[nodiscard]] platform::BitmapImageRef createImage() override;

    // Scales the user space about its origin. Not finite numbers do nothing; 0 leaves nothing to
    // draw on.
    void scaleCTM(double x, double y);

    [[nodiscard]] PixelSize size() const { return configuration_.size; }

    [[nodiscard]] double scale() const { return configuration_.scale; }

    [[nodiscard]] const UserTransform& transform() const { return state_.transform; }

    // The transform and the clip. restoreState without a saved one does nothing.
    void saveState();
    void restoreState();

    // Everything drawn until the matching end is drawn at once: times `opacity`, with the shadow of
    // its alpha behind it. They nest; clip and transform are as before after the end. With an
    // `extent` (points) only what lies in it is drawn; it takes memory for the part of it that the
    // clip shows, and for what casts a shadow into the clip from at most kMaxShadowReach pixels
    // around. Without one it takes that of the clip, and nothing outside casts a shadow.
    void beginTransparencyLayer(double opacity, const Shadow& shadow = {},
                                const std::optional<platform::Rect>& extent = std::nullopt);
    void endTransparencyLayer();

    // The shadow that a filled rectangle (points) would cast, without the rectangle: a Gaussian's,
    // whole to the pixel. Negative sizes go the other way; edges farther than ten million pixels
    // count as there. The same shadow again costs no blur.
    void drawShadowOfRect(const platform::Rect& rect, const Shadow& shadow);

    // How many shadows of rectangles were blurred so far.
    [[nodiscard]] std::size_t blurredShadows() const { return shadowTiles_.made(); }

    // Narrows the clip. Points; the radius rounds the corners. Edges between pixels are smooth.
    void clipToRect(const platform::Rect& rect, double cornerRadius = 0);

    // Source-over. Points. Empty and not finite rectangles draw nothing.
    void fillRect(const platform::Rect& rect, const platform::Color& color,
                  double cornerRadius = 0);
    // The image stretched over `rect`, its top at the rectangle's smaller y. Bytes are copied when
    // pixels meet pixels; shrinking averages areas, enlarging is bicubic.
    void drawImage(const platform::BitmapImageRef& image, const platform::Rect& rect,
                   double opacity = 1);
    void drawPixels(const PixelView& source, const platform::Rect& rect, double opacity = 1);

    // What has been drawn, without layers that are open. Valid until the next call that draws, or
    // ends the context.
    [[nodiscard]] PixelView pixels();
    // For drawing code that fills the memory itself; clip and transform do not apply.
    [[nodiscard]] MutablePixels mutablePixels();

  private:
    // Coverage of the pixels of a clip, tight rows; null means all of it.
    using ClipMask = std::shared_ptr<const std::vector<std::uint8_t>>;

    struct State {
        UserTransform transform;
        PixelRect clip;
        ClipMask clipMask;
    };

    // Memory that is drawn on: the pixels of `area` as the whole picture counts them.
    struct Surface {
        PixelRect area;
        std::size_t bytesPerRow = 0;
        // Null until the first drawing; a picture that covers everything is then copied once.
        std::shared_ptr<platform::Data> memory;
        bool shared = false;

        [[nodiscard]] std::uint8_t* at(std::int64_t x, std::int64_t y) const {
            return memory->data() + static_cast<std::size_t>(y - area.top) * bytesPerRow +
                   static_cast<std::size_t>(x - area.left) * 4;
        }
    };

    // A transparency layer that is open: what was there before it.
    struct Layer {
        Surface below;
        double opacity = 1;
        Shadow shadow;
        std::size_t savedStates = 0;
        State state;
    };

    struct DeviceRect {
        double left = 0;
        double top = 0;
        double right = 0;
        double bottom = 0;
        bool flippedX = false;
        bool flippedY = false;
    };

    [[nodiscard]] bool toDevice(const platform::Rect& rect, DeviceRect& device) const;
    [[nodiscard]] PixelRect visible(const DeviceRect& device) const;
    // Whether the shape covers whole pixels only; how much of each of the shown ones, otherwise.
    [[nodiscard]] static bool isSharp(const DeviceRect& device, double cornerRadius);
    [[nodiscard]] std::vector<std::uint8_t> shapeCoverage(const DeviceRect& device,
                                                          double cornerRadius,
                                                          const PixelRect& shown) const;
    [[nodiscard]] const std::uint8_t* clipRow(std::int64_t x, std::int64_t y) const;
    // Makes the memory ours alone, zeroed or black when there was none.
    void makeWritable();
    static void makeWritable(Surface& surface, bool black);

    [[nodiscard]] bool startsBlack() const {
        return configuration_.content != Content::premultiplied;
    }

    [[nodiscard]] Surface& base() { return layers_.empty() ? surface_ : layers_.front().below; }

    // Draws it when its stretched form is at hand; whether it has.
    bool drawStretched(const DesktopBitmapImage& image, const platform::Rect& rect, double opacity);
    [[nodiscard]] bool startsAs(const PixelRect& shown, std::uint8_t opacity) const;
    void blit(const PixelView& source, const DeviceRect& device, std::uint8_t opacity);
    void resample(const PixelView& source, const DeviceRect& device, std::uint8_t opacity);
    // The shadow in pixels under the transform; nothing when it cannot be seen.
    [[nodiscard]] std::optional<DeviceShadow> toDevice(const Shadow& shadow) const;
    [[nodiscard]] PixelRect layerArea(const Shadow& shadow,
                                      const std::optional<platform::Rect>& extent) const;
    // These two draw what the clip shows of `content` and its shadow.
    void compositeSurface(const Surface& content, std::uint8_t opacity, Surface& target) const;
    void castShadow(const Surface& content, const DeviceShadow& shadow, Surface& target) const;
    // Coverage of the tile's pixels, in the shadow's colour.
    void drawTile(const ShadowTile& tile, const DeviceShadow& shadow, Surface& target) const;

    Configuration configuration_;
    Surface surface_;
    ShadowTiles shadowTiles_;
    State state_;
    std::vector<State> saved_;
    std::vector<Layer> layers_;
};

}  // namespace velmoranth::desktop
