// pango shapes and lays out the line, over harfbuzz and a font configuration of our own; cairo
// draws it. cairo's ARGB32 is premultiplied B, G, R, A in memory on this byte order, top row first,
// which is what this folder gives.
#include "desktop/text/text.h"

#include "desktop/imaging/compositing.h"
#include "desktop/imaging/coverage.h"

#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <pango/pangocairo.h>
#include <pango/pangofc-fontmap.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <system_error>
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

constexpr const char* kSystemFamily = "Inter";
// Where distributions install it.
constexpr const char* kDefaultFolders[] = {"/usr/share/fonts/opentype/inter",
                                           "/usr/share/fonts/truetype/inter",
                                           "/usr/share/fonts/inter", "/usr/local/share/fonts"};
// Where every program keeps what it has read of fonts; without one fontconfig complains on stderr.
constexpr const char* kCacheConfiguration =
    "<fontconfig><cachedir prefix=\"xdg\">fontconfig</cachedir></fontconfig>";
constexpr double kMaxFontSize = 2048;  // points

std::vector<std::string>& fontFolders() {
    static std::vector<std::string> folders(std::begin(kDefaultFolders), std::end(kDefaultFolders));
    return folders;
}

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
// place for one. No style asks for italics or for the cut for large sizes.
void addFonts(FcConfig* config, const std::string& folder) {
    std::error_code unreadable;
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder, unreadable)) {
        const std::string name = entry.path().filename();
        const std::string extension = entry.path().extension();
        if ((extension == ".otf" || extension == ".ttf" || extension == ".ttc") &&
            name.find("Italic") == std::string::npos && !name.starts_with("InterDisplay")) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    for (const std::string& file : files) {
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
        for (const std::string& folder : fontFolders()) {
            addFonts(config, folder);
        }
        systemFace = hasFamily(config, kSystemFamily);
        if (!systemFace) {
            FcConfigDestroy(config);
            config = FcInitLoadConfigAndFonts();
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

bool isDrawable(const std::string& text, const TextStyle& style) {
    return !text.empty() && std::isfinite(style.size) && style.size > 0;
}

// One line of valid UTF-8: line ends are blanks, broken bytes U+FFFD.
std::string singleLine(const std::string& text) {
    gchar* const valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
    std::string line(valid);
    g_free(valid);
    std::replace_if(line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return line;
}

Layout layOut(const std::string& text, const TextStyle& style, double maxWidth) {
    const Context context(pango_font_map_create_context(fonts().map));
    const FontOptions options(cairo_font_options_create());
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    pango_cairo_context_set_font_options(context.get(), options.get());
    pango_cairo_context_set_resolution(context.get(), 72);  // a point is a unit
    pango_context_set_round_glyph_positions(context.get(), FALSE);

    Layout layout(pango_layout_new(context.get()));
    const Description description(pango_font_description_new());
    const bool known = style.family != kSystemFamily && !style.family.empty();
    // The family asked for, and the system face where it is missing.
    std::string families = kSystemFamily;
    if (known) {
        families.insert(0, style.family + ",");
    }
    pango_font_description_set_family(description.get(), families.c_str());
    pango_font_description_set_weight(description.get(), static_cast<PangoWeight>(style.weight));
    pango_font_description_set_absolute_size(description.get(),
                                             std::min(style.size, kMaxFontSize) * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), description.get());
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    const std::string line = singleLine(text);
    pango_layout_set_text(layout.get(), line.data(), static_cast<int>(line.size()));
    if (maxWidth > 0 && std::isfinite(maxWidth)) {
        constexpr double kWidest = 1e6;
        pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
        pango_layout_set_width(layout.get(),
                               static_cast<int>(std::min(maxWidth, kWidest) * PANGO_SCALE));
    }
    return layout;
}

platform::Size sizeOf(PangoLayout* layout) {
    PangoRectangle logical{};
    pango_layout_get_extents(layout, nullptr, &logical);
    return {static_cast<double>(logical.width) / PANGO_SCALE,
            static_cast<double>(logical.height) / PANGO_SCALE};
}

void drawShadow(const MutablePixels& target, const std::vector<std::uint8_t>& alpha,
                const TextShadow& shadow, double scale) {
    std::vector<std::uint8_t> coverage = alpha;
    blurCoverage(coverage, target.width, target.height, shadow.radius * scale);
    const auto byteOf = [&shadow](double value) {
        return static_cast<std::uint8_t>(std::lround(
            std::clamp(value, 0.0, 1.0) * std::clamp(shadow.color.alpha, 0.0, 1.0) * 255));
    };
    const std::uint8_t color[4] = {byteOf(shadow.color.blue), byteOf(shadow.color.green),
                                   byteOf(shadow.color.red), byteOf(1)};
    const auto shift = [scale](double points) {
        constexpr double kFar = 1e6;
        const double pixels = points * scale;
        return std::isfinite(pixels) ? std::llround(std::clamp(pixels, -kFar, kFar)) : 0;
    };
    const std::int64_t dx = shift(shadow.offset.x);
    const std::int64_t dy = shift(shadow.offset.y);
    const auto width = static_cast<std::int64_t>(target.width);
    const auto height = static_cast<std::int64_t>(target.height);
    const std::int64_t left = std::clamp<std::int64_t>(dx, 0, width);
    const std::int64_t right = std::clamp<std::int64_t>(width + dx, left, width);
    for (std::int64_t y = std::max<std::int64_t>(dy, 0); y < std::min(height, height + dy); ++y) {
        compositeColorRow(target.row(static_cast<std::size_t>(y)) + left * 4, color,
                          static_cast<std::size_t>(right - left),
                          coverage.data() + static_cast<std::size_t>((y - dy) * width + left - dx));
    }
}

}  // namespace

void setFontFolders(std::vector<std::string> folders) {
    fontFolders() = std::move(folders);
}

bool hasSystemFace() {
    return fonts().systemFace;
}

platform::Size measureText(const std::string& text, const TextStyle& style, double maxWidth) {
    if (!isDrawable(text, style)) {
        return {};
    }
    platform::Size size = sizeOf(layOut(text, style, maxWidth).get());
    if (maxWidth > 0 && std::isfinite(maxWidth)) {
        size.width = std::min(size.width, maxWidth);
    }
    return size;
}

void drawText(const MutablePixels& target, const std::string& text, const TextStyle& style,
              const platform::Rect& box, double scale) {
    if (!isDrawable(text, style) || target.data == nullptr || !(scale > 0) ||
        !(box.size.width > 0)) {
        return;
    }
    const Layout layout = layOut(text, style, box.size.width);
    const platform::Size size = sizeOf(layout.get());
    const double room = box.size.width - size.width;
    const double indent = style.alignment == TextAlignment::left     ? 0
                          : style.alignment == TextAlignment::center ? room / 2
                                                                     : room;
    const auto width = static_cast<int>(target.width);
    const auto height = static_cast<int>(target.height);
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    const Cairo cairo(cairo_create(surface.get()));
    cairo_scale(cairo.get(), scale, scale);
    cairo_move_to(cairo.get(), box.origin.x + indent,
                  box.origin.y + (box.size.height - size.height) / 2);
    cairo_set_source_rgba(cairo.get(), style.color.red, style.color.green, style.color.blue,
                          style.color.alpha);
    pango_cairo_show_layout(cairo.get(), layout.get());
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
