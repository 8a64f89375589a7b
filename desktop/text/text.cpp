// pango shapes and lays out the line, over harfbuzz and a font configuration of our own; cairo
// draws it. cairo's ARGB32 is premultiplied B, G, R, A in memory on this byte order, top row first,
// which is what this folder gives.
#include "desktop/text/text.h"

#include "desktop/imaging/compositing.h"
#include "desktop/imaging/coverage.h"
#include "desktop/text/font_files.h"

#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <pango/pangocairo.h>
#include <pango/pangofc-fontmap.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <mutex>
#include <utility>

namespace velmoranth::desktop {

namespace {

template <auto Release>
struct Deleter {
    template <class T>
    void operator()(T* object) const {
        Release(object);
    }
};

using Surface = std::unique_ptr<cairo_surface_t, Deleter<cairo_surface_destroy>>;
using Cairo = std::unique_ptr<cairo_t, Deleter<cairo_destroy>>;
using FontOptions = std::unique_ptr<cairo_font_options_t, Deleter<cairo_font_options_destroy>>;
using Description = std::unique_ptr<PangoFontDescription, Deleter<pango_font_description_free>>;
using Context = std::unique_ptr<PangoContext, Deleter<g_object_unref>>;
using Layout = std::unique_ptr<PangoLayout, Deleter<g_object_unref>>;

// The system face in a TextStyle.
constexpr const char* kSystemFamily = "Inter";
// Where every program keeps what it has read of fonts; without one fontconfig complains on stderr.
constexpr const char* kCacheConfiguration =
    "<fontconfig><cachedir prefix=\"xdg\">fontconfig</cachedir></fontconfig>";
constexpr std::size_t kLongestText = std::size_t{16} * 1024;
// Glyphs larger than this, pixels, are filled as outlines, which costs what is seen of them; kept
// pictures of them would cost what there is.
constexpr double kLargestKeptGlyph = 512;
// Text that begins farther away, pixels, is not seen.
constexpr double kFar = 1e6;

bool hasFamily(FcConfig* config, const char* family) {
    FcPattern* const pattern = FcPatternCreate();
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
    FcObjectSet* const objects = FcObjectSetCreate();
    FcObjectSetAdd(objects, FC_FAMILY);
    FcFontSet* const found = FcFontList(config, pattern, objects);
    const bool any = found != nullptr && found->nfont > 0;
    if (found != nullptr) {
        FcFontSetDestroy(found);
    }
    FcObjectSetDestroy(objects);
    FcPatternDestroy(pattern);
    return any;
}

// File by file: fontconfig would keep a cache for a whole folder, and this configuration has no
// place for one.
void addFonts(FcConfig* config) {
    for (const std::string& file : fontFiles()) {
        FcConfigAppFontAddFile(config, reinterpret_cast<const FcChar8*>(file.c_str()));
    }
}

// The fonts of this process, set up on first use and kept.
struct Fonts {
    PangoFontMap* map = nullptr;
    bool systemFace = false;

    Fonts() {
        FcConfig* config = FcConfigCreate();
        FcConfigParseAndLoadFromMemory(
            config, reinterpret_cast<const FcChar8*>(kCacheConfiguration), FcFalse);
        addFonts(config);
        systemFace = hasFamily(config, systemFamily().c_str());
        if (!systemFace) {
            FcConfigDestroy(config);
            config = FcInitLoadConfigAndFonts();
            addFonts(config);
        }
        map = pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT);
        pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(map), config);
        FcConfigDestroy(config);
    }
};

Fonts& fonts() {
    static Fonts instance;
    return instance;
}

// Held by whoever lays text out or draws it: a font map, and what is made of it, is for one thread
// at a time.
std::mutex& pangoMutex() {
    static auto& instance = *new std::mutex;  // other threads may be at work when the process ends
    return instance;
}

bool isDrawable(const std::string& text, const TextStyle& style) {
    return !text.empty() && std::isfinite(style.size) && style.size > 0;
}

// One line of valid UTF-8: line ends are blanks, broken bytes U+FFFD.
std::string singleLine(const std::string& text) {
    std::size_t length = std::min(text.size(), kLongestText);
    while (length < text.size() && length > 0 && (text[length] & 0xC0) == 0x80) {
        --length;  // not in the middle of a character
    }
    gchar* const valid = g_utf8_make_valid(text.data(), static_cast<gssize>(length));
    std::string line(valid);
    g_free(valid);
    std::replace_if(line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return line;
}

// A colour's component, 0 to 1; NaN is 0.
double unit(double value) {
    return value > 0 ? std::min(value, 1.0) : 0;
}

Description describe(const TextStyle& style) {
    Description description(pango_font_description_new());
    // The family asked for, the system face where it is missing, and what has other letters.
    std::string families = systemFamily() + "," + fallbackFamilies();
    if (style.family != kSystemFamily && !style.family.empty()) {
        families.insert(0, style.family + ",");
    }
    pango_font_description_set_family(description.get(), families.c_str());
    pango_font_description_set_weight(description.get(), static_cast<PangoWeight>(style.weight));
    pango_font_description_set_style(description.get(),
                                     style.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    pango_font_description_set_absolute_size(description.get(),
                                             std::min(style.size, kLargestTextSize) * PANGO_SCALE);
    return description;
}

Context makeContext() {
    Context context(pango_font_map_create_context(fonts().map));
    const FontOptions options(cairo_font_options_create());
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    pango_cairo_context_set_font_options(context.get(), options.get());
    pango_cairo_context_set_resolution(context.get(), 72);  // a point is a unit
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    return context;
}

// A text that is laid out. Points.
struct Line {
    Layout layout;
    double width = 0;
    double ascent = 0;   // of the style's own face
    double descent = 0;  // downwards
    bool fromRightToLeft = false;

    [[nodiscard]] PangoLayoutLine* shaped() const {
        return pango_layout_get_line_readonly(layout.get(), 0);
    }
};

double points(int units) {
    return static_cast<double>(units) / PANGO_SCALE;
}

void measureFace(PangoContext* context, const PangoFontDescription* description, Line& line) {
    PangoFont* const font = pango_font_map_load_font(fonts().map, context, description);
    if (font == nullptr) {
        return;
    }
    PangoFontMetrics* const metrics = pango_font_get_metrics(font, nullptr);
    line.ascent = points(pango_font_metrics_get_ascent(metrics));
    line.descent = points(pango_font_metrics_get_descent(metrics));
    pango_font_metrics_unref(metrics);
    g_object_unref(font);
}

// pango adds the room that is left over to an ellipsis, so that every line that has one is as wide
// as its box, and none can be aligned in it. This takes the room away again.
void closeEllipsis(PangoLayout* layout) {
    // A line from get_line may be changed: its extents are computed again.
    PangoLayoutLine* const line = pango_layout_get_line(layout, 0);
    for (const GSList* run = line->runs; run != nullptr; run = run->next) {
        const auto* const item = static_cast<const PangoLayoutRun*>(run->data);
        if ((item->item->analysis.flags & PANGO_ANALYSIS_FLAG_IS_ELLIPSIS) == 0) {
            continue;
        }
        for (int i = 0; i < item->glyphs->num_glyphs; ++i) {
            PangoGlyphInfo& info = item->glyphs->glyphs[i];
            PangoRectangle logical{};
            pango_font_get_glyph_extents(item->item->analysis.font, info.glyph, nullptr, &logical);
            info.geometry.width = logical.width;
        }
    }
}

Line layOut(const std::string& text, const TextStyle& style, double maxWidth) {
    const Context context = makeContext();
    const Description description = describe(style);
    Line line{.layout = Layout(pango_layout_new(context.get()))};
    PangoLayout* const layout = line.layout.get();
    pango_layout_set_font_description(layout, description.get());
    pango_layout_set_single_paragraph_mode(layout, TRUE);
    const std::string single = singleLine(text);
    pango_layout_set_text(layout, single.data(), static_cast<int>(single.size()));
    if (maxWidth > 0 && std::isfinite(maxWidth)) {
        constexpr double kWidest = 1e6;
        pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
        pango_layout_set_width(layout, static_cast<int>(std::min(maxWidth, kWidest) * PANGO_SCALE));
    }
    closeEllipsis(layout);
    PangoRectangle logical{};
    pango_layout_line_get_extents(line.shaped(), nullptr, &logical);
    line.width = points(logical.width);
    line.fromRightToLeft =
        pango_layout_line_get_resolved_direction(line.shaped()) == PANGO_DIRECTION_RTL;
    measureFace(context.get(), description.get(), line);
    return line;
}

platform::Rect place(const Line& line, TextAlignment alignment, const platform::Rect& box) {
    if (alignment == TextAlignment::natural || alignment == TextAlignment::justified) {
        alignment = line.fromRightToLeft ? TextAlignment::right : TextAlignment::left;
    }
    const double share = alignment == TextAlignment::left     ? 0
                         : alignment == TextAlignment::center ? 0.5
                                                              : 1;
    const double height = line.ascent + line.descent;
    return {{box.origin.x + share * (box.size.width - line.width),
             box.origin.y + (box.size.height - height) / 2},
            {line.width, height}};
}

void drawShadow(const MutablePixels& target, const std::vector<std::uint8_t>& alpha,
                const TextShadow& shadow, double scale) {
    std::vector<std::uint8_t> coverage = alpha;
    blurCoverage(coverage, target.width, target.height, shadow.radius * scale);
    const auto byteOf = [&shadow](double value) {
        return static_cast<std::uint8_t>(std::lround(unit(value) * unit(shadow.color.alpha) * 255));
    };
    const std::uint8_t color[4] = {byteOf(shadow.color.blue), byteOf(shadow.color.green),
                                   byteOf(shadow.color.red), byteOf(1)};
    const auto shift = [scale](double points) {
        const double pixels = points * scale;
        return std::isfinite(pixels) ? std::llround(std::clamp(pixels, -kFar, kFar)) : 0;
    };
    const std::int64_t dx = shift(shadow.offset.x);
    const std::int64_t dy = shift(shadow.offset.y);
    const auto width = static_cast<std::int64_t>(target.width);
    const auto height = static_cast<std::int64_t>(target.height);
    const std::int64_t left = std::clamp<std::int64_t>(dx, 0, width);
    const std::int64_t right = std::clamp<std::int64_t>(width + dx, left, width);
    if (left == right) {
        return;
    }
    for (std::int64_t y = std::max<std::int64_t>(dy, 0); y < std::min(height, height + dy); ++y) {
        compositeColorRow(target.row(static_cast<std::size_t>(y)) + left * 4, color,
                          static_cast<std::size_t>(right - left),
                          coverage.data() + static_cast<std::size_t>((y - dy) * width + left - dx));
    }
}

}  // namespace

bool hasSystemFace() {
    const std::scoped_lock lock(pangoMutex());
    return fonts().systemFace;
}

bool hasGlyphs(const std::string& text, const TextStyle& style) {
    const std::scoped_lock lock(pangoMutex());
    return !isDrawable(text, style) ||
           pango_layout_get_unknown_glyphs_count(layOut(text, style, 0).layout.get()) == 0;
}

platform::Size measureText(const std::string& text, const TextStyle& style, double maxWidth) {
    if (!isDrawable(text, style)) {
        return {};
    }
    const std::scoped_lock lock(pangoMutex());
    const Line line = layOut(text, style, maxWidth);
    const bool capped = maxWidth > 0 && std::isfinite(maxWidth);
    return {capped ? std::min(line.width, maxWidth) : line.width, line.ascent + line.descent};
}

platform::Rect placeText(const std::string& text, const TextStyle& style,
                         const platform::Rect& box) {
    if (!isDrawable(text, style) || !(box.size.width > 0)) {
        return {box.origin, {}};
    }
    const std::scoped_lock lock(pangoMutex());
    return place(layOut(text, style, box.size.width), style.alignment, box);
}

void drawText(const MutablePixels& target, const std::string& text, const TextStyle& style,
              const platform::Rect& box, double scale) {
    if (!isDrawable(text, style) || target.data == nullptr || !(scale > 0) ||
        !(box.size.width > 0)) {
        return;
    }
    const std::scoped_lock lock(pangoMutex());
    const Line line = layOut(text, style, box.size.width);
    const platform::Rect placed = place(line, style.alignment, box);
    const double start = placed.origin.x;
    const double baseline = placed.origin.y + line.ascent;
    if (!(std::abs(start * scale) < kFar && std::abs(baseline * scale) < kFar)) {
        return;
    }
    const auto width = static_cast<int>(target.width);
    const auto height = static_cast<int>(target.height);
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    const Cairo cairo(cairo_create(surface.get()));
    cairo_scale(cairo.get(), scale, scale);
    cairo_move_to(cairo.get(), start, baseline);
    cairo_set_source_rgba(cairo.get(), unit(style.color.red), unit(style.color.green),
                          unit(style.color.blue), unit(style.color.alpha));
    if (std::min(style.size, kLargestTextSize) * scale > kLargestKeptGlyph) {
        pango_cairo_layout_line_path(cairo.get(), line.shaped());
        cairo_fill(cairo.get());
    } else {
        pango_cairo_show_layout_line(cairo.get(), line.shaped());
    }
    cairo_surface_flush(surface.get());
    const std::uint8_t* const drawn = cairo_image_surface_get_data(surface.get());
    if (drawn == nullptr) {
        return;
    }
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
    if (style.shadow) {
        std::vector<std::uint8_t> alpha(target.width * target.height);
        for (std::size_t y = 0; y < target.height; ++y) {
            for (std::size_t x = 0; x < target.width; ++x) {
                alpha[y * target.width + x] = drawn[y * stride + x * 4 + 3];
            }
        }
        drawShadow(target, alpha, *style.shadow, scale);
    }
    for (std::size_t y = 0; y < target.height; ++y) {
        compositeRow(target.row(y), drawn + y * stride, target.width);
    }
}

}  // namespace velmoranth::desktop
