#include "simulator/artwork/pen.h"

#include <cairo.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace velmoranth::simulator {
namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180;

double component(std::uint32_t rgb, int shift) {
    return ((rgb >> shift) & 0xFF) / 255.0;
}

void addStop(cairo_pattern_t* gradient, double offset, Ink ink) {
    cairo_pattern_add_color_stop_rgba(gradient, offset, component(ink.rgb, 16),
                                      component(ink.rgb, 8), component(ink.rgb, 0), ink.opacity);
}

// Reads the numbers of a path; blanks and commas part them.
class NumberReader {
  public:
    explicit NumberReader(std::string_view text) : text_(text) {}

    char command() {
        skipBlanks();
        return position_ < text_.size() ? text_[position_++] : '\0';
    }

    double number() {
        skipBlanks();
        double value = 0;
        const char* const begin = text_.data() + position_;
        const auto read = std::from_chars(begin, text_.data() + text_.size(), value);
        position_ += static_cast<std::size_t>(read.ptr - begin);
        return value;
    }

    bool atNumber() {
        skipBlanks();
        return text_.substr(position_).find_first_of("0123456789-.") == 0;
    }

  private:
    void skipBlanks() {
        while (position_ < text_.size() && (text_[position_] == ' ' || text_[position_] == ',')) {
            ++position_;
        }
    }

    std::string_view text_;
    std::size_t position_ = 0;
};

}  // namespace

Pen::Pen(std::vector<std::uint8_t>& bgra, int widthPixels, int heightPixels, double width,
         double height) {
    // ARGB32 is a native 32-bit word, which lies in memory as B, G, R, A on the machines that we
    // run on.
    cairo_surface_t* surface = cairo_image_surface_create_for_data(
        bgra.data(), CAIRO_FORMAT_ARGB32, widthPixels, heightPixels, widthPixels * 4);
    context_ = cairo_create(surface);
    cairo_surface_destroy(surface);
    cairo_scale(context_, widthPixels / width, heightPixels / height);
    cairo_set_line_cap(context_, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(context_, CAIRO_LINE_JOIN_ROUND);
    cairo_set_antialias(context_, CAIRO_ANTIALIAS_BEST);
    cairo_set_tolerance(context_, 0.05);
}

Pen::~Pen() {
    cairo_surface_flush(cairo_get_target(context_));
    cairo_destroy(context_);
}

Pen& Pen::path(std::string_view commands) {
    NumberReader reader(commands);
    double x = 0;
    double y = 0;
    char command = '\0';
    std::array<double, 6> n{};
    const auto readNumbers = [&](std::size_t count) {
        std::generate_n(n.begin(), count, [&] { return reader.number(); });
        // The last two are where the pen is now.
        if (count > 1) {
            x = n.at(count - 2);
            y = n.at(count - 1);
        }
    };
    while (true) {
        if (!reader.atNumber()) {
            command = reader.command();
        }
        switch (command) {
            case 'M':
                readNumbers(2);
                cairo_move_to(context_, x, y);
                command = 'L';
                break;
            case 'L':
                readNumbers(2);
                cairo_line_to(context_, x, y);
                break;
            case 'H':
                cairo_line_to(context_, x = reader.number(), y);
                break;
            case 'V':
                cairo_line_to(context_, x, y = reader.number());
                break;
            case 'Q': {
                const double startX = x;
                const double startY = y;
                readNumbers(4);
                cairo_curve_to(context_, startX + (n[0] - startX) * 2 / 3,
                               startY + (n[1] - startY) * 2 / 3, x + (n[0] - x) * 2 / 3,
                               y + (n[1] - y) * 2 / 3, x, y);
                break;
            }
            case 'C':
                readNumbers(6);
                cairo_curve_to(context_, n[0], n[1], n[2], n[3], x, y);
                break;
            case 'Z':
                cairo_close_path(context_);
                break;
            default:
                return *this;
        }
        if (command == 'Z' && reader.atNumber()) {
            return *this;
        }
    }
}

Pen& Pen::circle(double x, double y, double radius) {
    return ellipse(x, y, radius, radius);
}

Pen& Pen::ellipse(double x, double y, double radiusX, double radiusY) {
    cairo_save(context_);
    cairo_translate(context_, x, y);
    cairo_scale(context_, radiusX, radiusY);
    cairo_new_sub_path(context_);
    cairo_arc(context_, 0, 0, 1, 0, 2 * std::numbers::pi);
    cairo_close_path(context_);
    cairo_restore(context_);
    return *this;
}

Pen& Pen::arc(double x, double y, double radius, double fromDegrees, double toDegrees) {
    cairo_arc(context_, x, y, radius, fromDegrees * kRadiansPerDegree,
              toDegrees * kRadiansPerDegree);
    return *this;
}

Pen& Pen::roundRect(double x, double y, double width, double height, double radius) {
    cairo_new_sub_path(context_);
    arc(x + width - radius, y + radius, radius, -90, 0);
    arc(x + width - radius, y + height - radius, radius, 0, 90);
    arc(x + radius, y + height - radius, radius, 90, 180);
    arc(x + radius, y + radius, radius, 180, 270);
    cairo_close_path(context_);
    return *this;
}

Pen& Pen::line(double x1, double y1, double x2, double y2) {
    cairo_move_to(context_, x1, y1);
    cairo_line_to(context_, x2, y2);
    return *this;
}

Pen& Pen::star(double x, double y, int points, double radius, double innerRadius) {
    const int corners = innerRadius > 0 ? points * 2 : points;
    cairo_new_sub_path(context_);
    for (int corner = 0; corner < corners; ++corner) {
        const double reach = innerRadius > 0 && corner % 2 == 1 ? innerRadius : radius;
        const double angle = (360.0 * corner / corners - 90) * kRadiansPerDegree;
        cairo_line_to(context_, x + reach * std::cos(angle), y + reach * std::sin(angle));
    }
    cairo_close_path(context_);
    return *this;
}

void Pen::useInk(Ink ink) {
    cairo_set_source_rgba(context_, component(ink.rgb, 16), component(ink.rgb, 8),
                          component(ink.rgb, 0), ink.opacity);
}

void Pen::fill(Ink ink) {
    useInk(ink);
    cairo_fill(context_);
}

void Pen::stroke(Ink ink, double width) {
    useInk(ink);
    cairo_set_line_width(context_, width);
    cairo_stroke(context_);
}

void Pen::fillRounded(Ink ink, double width) {
    useInk(ink);
    cairo_fill_preserve(context_);
    cairo_set_line_width(context_, width);
    cairo_stroke(context_);
}

Pen& Pen::clip() {
    cairo_clip(context_);
    return *this;
}

Pen& Pen::clipAway() {
    // Far beyond the picture, also for a pen that is turned, or grown small.
    roundRect(-1000, -1000, 3000, 3000, 0);
    cairo_set_fill_rule(context_, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_clip(context_);
    cairo_set_fill_rule(context_, CAIRO_FILL_RULE_WINDING);
    return *this;
}

void Pen::fillGradient(Ink top, Ink bottom, double fromY, double toY) {
    cairo_pattern_t* gradient = cairo_pattern_create_linear(0, fromY, 0, toY);
    addStop(gradient, 0, top);
    addStop(gradient, 1, bottom);
    cairo_set_source(context_, gradient);
    cairo_fill(context_);
    cairo_pattern_destroy(gradient);
}

void Pen::glow(double x, double y, double radius, Ink centre) {
    cairo_pattern_t* gradient = cairo_pattern_create_radial(x, y, 0, x, y, radius);
    addStop(gradient, 0, centre);
    addStop(gradient, 0.5, faded(centre, 0.4));
    addStop(gradient, 1, faded(centre, 0));
    cairo_set_source(context_, gradient);
    cairo_paint(context_);
    cairo_pattern_destroy(gradient);
}

void Pen::save() {
    cairo_save(context_);
}

void Pen::restore() {
    cairo_restore(context_);
}

void Pen::turn(double degrees, double aboutX, double aboutY) {
    cairo_translate(context_, aboutX, aboutY);
    cairo_rotate(context_, degrees * kRadiansPerDegree);
    cairo_translate(context_, -aboutX, -aboutY);
}

void Pen::shift(double x, double y) {
    cairo_translate(context_, x, y);
}

void Pen::grow(double factor, double aboutX, double aboutY) {
    cairo_translate(context_, aboutX, aboutY);
    cairo_scale(context_, factor, factor);
    cairo_translate(context_, -aboutX, -aboutY);
}

}  // namespace velmoranth::simulator
