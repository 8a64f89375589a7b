#include "makers/conversion/plist_repair.h"

#include "desktop/plist/property_lists.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace velmoranth::makers {

using desktop::Result;
using platform::Data;

namespace {

constexpr std::string_view kEnd = "</plist>";
constexpr std::string_view kBlank = " \t\r\n";

// What stands behind the end of the list.
std::string withoutTail(const std::string& text) {
    const std::size_t end = text.find(kEnd);
    if (end == std::string::npos ||
        text.find_first_not_of(kBlank, end + kEnd.size()) == std::string::npos) {
        return text;
    }
    return text.substr(0, end + kEnd.size()) + "\n";
}

std::string withPlainQuotes(std::string text) {
    struct Quote {
        std::string_view curly;
        std::string_view plain;
    };

    static constexpr std::array<Quote, 5> kQuotes{{{"\xE2\x80\x9C", "\""},
                                                   {"\xE2\x80\x9D", "\""},
                                                   {"\xE2\x80\x9E", "\""},
                                                   {"\xE2\x80\x98", "'"},
                                                   {"\xE2\x80\x99", "'"}}};
    for (const Quote& quote : kQuotes) {
        for (std::size_t at = text.find(quote.curly); at != std::string::npos;
             at = text.find(quote.curly, at)) {
            text.replace(at, quote.curly.size(), quote.plain);
        }
    }
    return text;
}

// Commas before a closing bracket, quoted texts left alone.
std::string withoutLastCommas(const std::string& text) {
    std::string result;
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isQuoted && text[i] == '\\' && i + 1 < text.size()) {
            result += text[i++];
        } else if (text[i] == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && text[i] == ',') {
            const std::size_t next = text.find_first_not_of(kBlank, i + 1);
            if (next != std::string::npos &&
                (text[next] == ')' || text[next] == '}' || text[next] == ']')) {
                continue;
            }
        }
        result += text[i];
    }
    return result;
}

std::optional<platform::PropertyList> parsed(const std::string& text) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    auto value = desktop::parsePropertyList({bytes, text.size()});
    return value ? std::optional(std::move(*value)) : std::nullopt;
}

}  // namespace

Result<ReadList> readRepaired(const Data& bytes) {
    const std::string text(bytes.begin(), bytes.end());
    auto value = desktop::parsePropertyList(bytes);
    if (value) {
        const bool hasTail = !text.starts_with("bplist") && withoutTail(text) != text;
        return ReadList{std::move(*value),
                        hasTail ? "what stood behind the end of the list was taken away" : ""};
    }

    struct Attempt {
        std::string text;
        const char* what;
    };

    const std::string quoted = withPlainQuotes(text);
    for (const Attempt& repair :
         {Attempt{withoutTail(text), "what stood behind the end of the list was taken away"},
          Attempt{quoted, "curly quotation marks were made straight"},
          Attempt{withoutLastCommas(text), "commas behind last values were taken away"},
          Attempt{withoutLastCommas(withoutTail(quoted)),
                  "curly quotation marks were made straight, and what was too much taken away"}}) {
        if (repair.text == text) {
            continue;
        }
        if (auto repaired = parsed(repair.text)) {
            return ReadList{std::move(*repaired), repair.what};
        }
    }
    return tl::unexpected(std::move(value.error()));
}

}  // namespace velmoranth::makers
