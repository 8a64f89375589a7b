// Property lists written in the tests.
#pragma once

#include "desktop/plist/property_lists.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <variant>

namespace velmoranth::desktop {

inline Result<platform::PropertyList> parse(const std::string& text) {
    return parsePropertyList(platform::Data(text.begin(), text.end()));
}

// "kind value" of a scalar, "container" of the others.
inline std::string show(const platform::PropertyList& value) {
    struct Shown {
        std::string operator()(bool held) const { return "bool " + std::to_string(held); }

        std::string operator()(std::int64_t held) const {
            return "integer " + std::to_string(held);
        }

        std::string operator()(double held) const { return "real " + std::to_string(held); }

        std::string operator()(const std::string& held) const { return "string " + held; }

        std::string operator()(platform::Date held) const {
            return "date " +
                   std::to_string(static_cast<std::int64_t>(held.secondsSinceReferenceDate));
        }

        std::string operator()(const platform::Data& held) const {
            std::string text = "data ";
            for (const std::uint8_t byte : held) {
                constexpr char kDigits[] = "0123456789abcdef";
                text += {kDigits[byte >> 4U], kDigits[byte & 15U]};
            }
            return text;
        }

        std::string operator()(const platform::PropertyList::Array&) const { return "container"; }

        std::string operator()(const platform::PropertyList::Dictionary&) const {
            return "container";
        }
    };

    return std::visit(Shown(), value.value());
}

// UTF-8 text with characters of at most three bytes, as UTF-16.
inline std::string utf16(const std::string& text, bool bigEndian, bool marked) {
    std::string result;
    const auto put = [&](unsigned unit) {
        const char high = static_cast<char>(unit >> 8U);
        const char low = static_cast<char>(unit & 0xFFU);
        result += bigEndian ? std::string{high, low} : std::string{low, high};
    };
    if (marked) {
        put(0xFEFF);
    }
    for (std::size_t i = 0; i < text.size();) {
        const auto byte = [&](std::size_t k) { return static_cast<std::uint8_t>(text[i + k]); };
        if (byte(0) < 0x80) {
            put(byte(0));
            i += 1;
        } else if (byte(0) < 0xE0) {
            put((byte(0) & 0x1FU) << 6U | (byte(1) & 0x3FU));
            i += 2;
        } else {
            put((byte(0) & 0x0FU) << 12U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU));
            i += 3;
        }
    }
    return result;
}

}  // namespace velmoranth::desktop
