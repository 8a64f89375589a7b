#include "makers/conversion/calendar_css.h"

#include "makers/conversion/names.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace velmoranth::makers {

using platform::Dictionary;

namespace {

struct NamedColor {
    std::string_view name;
    std::string_view digits;
};

constexpr std::array<NamedColor, 12> kColors{{
    {"white", "FFFFFF"},
    {"black", "000000"},
    {"red", "FF0000"},
    {"green", "008000"},
    {"blue", "0000FF"},
    {"yellow", "FFFF00"},
    {"orange", "FFA500"},
    {"purple", "800080"},
    {"gray", "808080"},
    {"grey", "808080"},
    {"silver", "C0C0C0"},
    {"pink", "FFC0CB"},
}};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlank = " \t\r\n\"'";
    const std::size_t first = text.find_first_not_of(kBlank);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

// Parts between a separator that stands in no brackets.
std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    int depth = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i == text.size() || (depth == 0 && text[i] == separator)) {
            if (const auto part = trimmed(text.substr(start, i - start)); !part.empty()) {
                parts.push_back(part);
            }
            start = i + 1;
        } else if (text[i] == '(') {
            ++depth;
        } else if (text[i] == ')') {
            --depth;
        }
    }
    return parts;
}

// A number with "px", "pt" or nothing behind it.
std::optional<double> length(std::string_view text) {
    text = trimmed(text);
    for (const std::string_view unit : {"px", "pt"}) {
        if (text.ends_with(unit)) {
            text.remove_suffix(unit.size());
        }
    }
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    constexpr double kMost = 10000;
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole && std::abs(value) <= kMost ? std::optional(value) : std::nullopt;
}

std::string twoDigits(double value) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto number = static_cast<unsigned>(std::lround(std::clamp(value, 0.0, 255.0)));
    return {kDigits[number / 16], kDigits[number % 16]};
}

std::optional<CssColor> hexColor(std::string_view digits) {
    if (digits.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos) {
        return {};
    }
    std::string text;
    for (const char digit : digits) {
        const char upper = digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit;
        text.append(digits.size() == 3 ? 2 : 1, upper);
    }
    return text.size() == 6 ? std::optional(CssColor{text}) : std::nullopt;
}

std::optional<CssColor> functionColor(std::string_view text) {
    const std::size_t open = text.find('(');
    const std::string name = lowerCase(trimmed(text.substr(0, open)));
    const auto parts = split(text.substr(open + 1, text.size() - open - 2), ',');
    if ((name != "rgb" && name != "rgba") || parts.size() < 3 || parts.size() > 4) {
        return {};
    }
    CssColor color;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto value = length(parts[i]);
        if (!value) {
            return {};
        }
        if (i < 3) {
            color.digits += twoDigits(*value);
        } else {
            color.alpha = std::clamp(*value, 0.0, 1.0);
        }
    }
    return color;
}

std::string percent(double alpha) {
    return std::to_string(std::lround(alpha * 100)) + " %";
}

class Style {
  public:
    Style(StyledText& text, const Dictionary& otherwise) : text_(text), otherwise_(otherwise) {}

    void apply(std::string_view property, std::string_view value) {
        if (property == "font-size") {
            number("FontSize", property, value);
        } else if (property == "margin-top") {
            margin("TextYoffset", property, value);
        } else if (property == "margin-left") {
            margin("TextXoffset", property, value);
        } else if (property == "font-family") {
            const auto names = split(value, ',');
            names.empty() ? lose(property, value) : set("FontName", std::string(names.front()));
        } else if (property == "color") {
            color("TextColor", property, value);
        } else if (property == "text-shadow") {
            shadow(property, value);
        } else {
            lose(property, value);
        }
    }

  private:
    void set(std::string_view key, platform::PropertyList value) {
        text_.settings.insert_or_assign(std::string(key), std::move(value));
    }

    void lose(std::string_view property, std::string_view value) {
        text_.lost.push_back(std::string(property) + ": " + std::string(value) +
                             " cannot be carried over");
    }

    void number(std::string_view key, std::string_view property, std::string_view value) {
        const auto points = length(value);
        points ? set(key, *points) : lose(property, value);
    }

    // From where the text stands without one.
    void margin(std::string_view key, std::string_view property, std::string_view value) {
        const auto points = length(value);
        const std::string name(key);
        const platform::PropertyList* const place = platform::objectForKey(otherwise_, name);
        points ? set(key, *points + (place == nullptr ? 0 : platform::floatValue(place)))
               : lose(property, value);
    }

    void color(std::string_view key, std::string_view property, std::string_view value) {
        const auto found = cssColor(value);
        if (!found) {
            lose(property, value);
            return;
        }
        set(key, found->digits);
        if (found->alpha < 1) {
            text_.lost.push_back(std::string(property) + ": its alpha, " + percent(found->alpha) +
                                 ", is lost");
        }
    }

    // "X Y BLUR COLOUR", in which the blur may be missing and the colour stand first.
    void shadow(std::string_view property, std::string_view value) {
        static constexpr std::array<std::string_view, 3> kKeys{"ShadowXoffset", "ShadowYoffset",
                                                               "ShadowBlurRadius"};
        if (lowerCase(value) == "none") {
            return;
        }
        const auto shadows = split(value, ',');
        if (shadows.size() > 1) {
            lose(property, shadows[1]);
        }
        std::size_t numbers = 0;
        std::string_view said;
        for (const std::string_view part : split(shadows.empty() ? value : shadows[0], ' ')) {
            const auto points = length(part);
            if (points && numbers < kKeys.size()) {
                set(kKeys.at(numbers++), *points);
            } else {
                said = part;
            }
        }
        said.empty() ? set("ShadowColor", "000000") : color("ShadowColor", property, said);
    }

    StyledText& text_;
    const Dictionary& otherwise_;
};

}  // namespace

std::optional<CssColor> cssColor(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('#')) {
        return hexColor(text.substr(1));
    }
    if (text.ends_with(')') && text.find('(') != std::string_view::npos) {
        return functionColor(text);
    }
    const std::string name = lowerCase(text);
    if (name == "transparent") {
        return CssColor{"000000", 0};
    }
    const auto found = std::ranges::find(kColors, std::string_view(name), &NamedColor::name);
    return found == kColors.end() ? std::nullopt
                                  : std::optional(CssColor{std::string(found->digits)});
}

StyledText styledText(std::string_view css, const Dictionary& otherwise) {
    StyledText text;
    for (const auto& [key, value] : otherwise) {
        if (!key.starts_with("Shadow")) {
            text.settings.emplace(key, value);
        }
    }
    Style style(text, otherwise);
    for (const std::string_view rule : split(css, ';')) {
        const std::size_t colon = rule.find(':');
        const std::string property = lowerCase(trimmed(rule.substr(0, colon)));
        style.apply(property, colon == std::string_view::npos ? std::string_view()
                                                              : trimmed(rule.substr(colon + 1)));
    }
    return text;
}

}  // namespace velmoranth::makers
