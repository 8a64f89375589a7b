// Old-style text, following the platform's published reader in what is accepted: a missing final
// semicolon fails, a comma may trail, every scalar is a string, and text that begins with a string
// and goes on is a dictionary without its braces.
#include "desktop/plist/property_lists.h"
#include "desktop/plist/readers.h"
#include "desktop/plist/text_encoding.h"

#include <string>
#include <utility>

namespace velmoranth::desktop {
namespace {

using platform::PropertyList;

// 0x80 to 0xFF of the NeXTSTEP character set (unicode.org, NEXTSTEP.TXT), for octal escapes.
constexpr char16_t kNextStep[] = {
    0x00A0, 0x00C0, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C7, 0x00C8, 0x00C9, 0x00CA, 0x00CB,
    0x00CC, 0x00CD, 0x00CE, 0x00CF, 0x00D0, 0x00D1, 0x00D2, 0x00D3, 0x00D4, 0x00D5, 0x00D6, 0x00D9,
    0x00DA, 0x00DB, 0x00DC, 0x00DD, 0x00DE, 0x00B5, 0x00D7, 0x00F7, 0x00A9, 0x00A1, 0x00A2, 0x00A3,
    0x2044, 0x00A5, 0x0192, 0x00A7, 0x00A4, 0x2019, 0x201C, 0x00AB, 0x2039, 0x203A, 0xFB01, 0xFB02,
    0x00AE, 0x2013, 0x2020, 0x2021, 0x00B7, 0x00A6, 0x00B6, 0x2022, 0x201A, 0x201E, 0x201D, 0x00BB,
    0x2026, 0x2030, 0x00AC, 0x00BF, 0x00B9, 0x02CB, 0x00B4, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9,
    0x00A8, 0x00B2, 0x02DA, 0x00B8, 0x00B3, 0x02DD, 0x02DB, 0x02C7, 0x2014, 0x00B1, 0x00BC, 0x00BD,
    0x00BE, 0x00E0, 0x00E1, 0x00E2, 0x00E3, 0x00E4, 0x00E5, 0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB,
    0x00EC, 0x00C6, 0x00ED, 0x00AA, 0x00EE, 0x00EF, 0x00F0, 0x00F1, 0x0141, 0x00D8, 0x0152, 0x00BA,
    0x00F2, 0x00F3, 0x00F4, 0x00F5, 0x00F6, 0x00E6, 0x00F9, 0x00FA, 0x00FB, 0x0131, 0x00FC, 0x00FD,
    0x0142, 0x00F8, 0x0153, 0x00DF, 0x00FE, 0x00FF, 0xFFFD, 0xFFFD,
};

constexpr std::string_view kLineSeparator = "\u2028";
constexpr std::string_view kParagraphSeparator = "\u2029";

bool isBare(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '$' || c == '/' || c == ':' || c == '.' || c == '-';
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

class OldStyleReader {
  public:
    explicit OldStyleReader(std::string_view text) : text_(text) {}

    Result<PropertyList> read() {
        if (!skipSpace()) {
            return PropertyList(PropertyList::Dictionary());
        }
        std::optional<PropertyList> root = object(0);
        if (root && skipSpace()) {
            if (root->as<std::string>() == nullptr) {
                fail("unexpected text after the root object");
            } else {
                // The first string was a key: a dictionary without braces. What follows its last
                // entry does not count.
                position_ = 0;
                problem_.reset();
                root = entries(0);
            }
        }
        if (problem_) {
            return tl::unexpected(std::move(*problem_));
        }
        return std::move(*root);
    }

  private:
    [[nodiscard]] bool atEnd() const { return position_ >= text_.size(); }

    [[nodiscard]] char next() const { return text_[position_]; }

    [[nodiscard]] bool isNext(std::string_view token) const {
        return text_.substr(position_).starts_with(token);
    }

    // The first failure is the one that is told.
    std::nullopt_t fail(const char* message) {
        if (!problem_) {
            problem_ = problemAt(text_, position_, message);
        }
        return std::nullopt;
    }

    // Goes to the next token over white space and comments. False at the end of the text.
    bool skipSpace() {
        while (!atEnd()) {
            const char c = next();
            if ((c >= '\t' && c <= '\r') || c == ' ') {
                ++position_;
            } else if (isNext(kLineSeparator) || isNext(kParagraphSeparator)) {
                position_ += kLineSeparator.size();
            } else if (isNext("//")) {
                skipLine();
            } else if (isNext("/*")) {
                const std::size_t end = text_.find("*/", position_ + 2);
                position_ = end == std::string_view::npos ? text_.size() : end + 2;
            } else {
                return true;
            }
        }
        return false;
    }

    void skipLine() {
        while (!atEnd() && next() != '\n' && next() != '\r' && !isNext(kLineSeparator) &&
               !isNext(kParagraphSeparator)) {
            ++position_;
        }
    }

    // Whether an object can start here; containers, data and strings start with these alone.
    [[nodiscard]] bool startsString() const {
        return next() == '"' || next() == '\'' || isBare(next());
    }

    std::optional<PropertyList> object(int depth) {
        if (!skipSpace()) {
            return fail("a value is missing at the end");
        }
        if (depth > kMaxOldStyleDepth) {
            return fail("containers are nested too deeply");
        }
        switch (next()) {
            case '{':
                return dictionary(depth);
            case '(':
                return array(depth);
            case '<':
                return data();
            default:
                break;
        }
        if (!startsString()) {
            return fail("unexpected character where a value belongs");
        }
        return string();
    }

    std::optional<PropertyList> string() {
        std::optional<std::string> value = stringValue();
        if (!value) {
            return std::nullopt;
        }
        return PropertyList(std::move(*value));
    }

    std::optional<std::string> stringValue() {
        if (next() == '"' || next() == '\'') {
            return quoted();
        }
        const std::size_t start = position_;
        while (!atEnd() && isBare(next())) {
            ++position_;
        }
        return std::string(text_.substr(start, position_ - start));
    }

    std::optional<std::string> quoted() {
        const std::size_t start = position_;
        const char quote = text_[position_++];
        std::string value;
        Utf16Joiner joiner(value);
        while (!atEnd() && next() != quote) {
            if (next() == '\\') {
                ++position_;
                escape(joiner, value);
            } else {
                joiner.flush();
                value.push_back(text_[position_++]);
            }
        }
        joiner.flush();
        if (atEnd()) {
            position_ = start;
            return fail("the quoted string does not end");
        }
        ++position_;
        return value;
    }

    // What stands behind a backslash.
    void escape(Utf16Joiner& joiner, std::string& value) {
        if (atEnd()) {
            return;  // the string does not end either
        }
        const char c = next();
        if (c >= '0' && c <= '7') {
            const unsigned code = digits(3, 8) & 0xFFU;
            joiner.append(code < 0x80 ? static_cast<char16_t>(code) : kNextStep[code - 0x80]);
            return;
        }
        ++position_;
        if (c == 'U') {
            joiner.append(static_cast<char16_t>(digits(4, 16)));
            return;
        }
        constexpr std::string_view kLetters = "abfnrtv";
        constexpr std::string_view kMeanings = "\a\b\f\n\r\t\v";
        const std::size_t index = kLetters.find(c);
        joiner.flush();
        value.push_back(index == std::string_view::npos ? c : kMeanings[index]);
    }

    unsigned digits(int count, int base) {
        unsigned code = 0;
        for (; count > 0 && !atEnd(); --count) {
            const int digit = hexDigit(next());
            if (digit < 0 || digit >= base) {
                break;
            }
            code = code * static_cast<unsigned>(base) + static_cast<unsigned>(digit);
            ++position_;
        }
        return code;
    }

    std::optional<PropertyList> dictionary(int depth) {
        const std::size_t start = position_++;
        std::optional<PropertyList> value = entries(depth);
        if (!value) {
            return std::nullopt;
        }
        if (!skipSpace()) {
            position_ = start;
            return fail("the dictionary has no closing brace");
        }
        if (next() != '}') {
            return fail("unexpected character where a key or a closing brace belongs");
        }
        ++position_;
        return value;
    }

    // Keys and values up to what is no key.
    std::optional<PropertyList> entries(int depth) {
        PropertyList::Dictionary result;
        while (skipSpace() && startsString()) {
            const std::optional<std::string> key = stringValue();
            if (!key) {
                return std::nullopt;
            }
            std::optional<PropertyList> value;
            if (!skipSpace()) {
                return fail("a semicolon is missing");
            }
            if (next() == ';') {
                value = PropertyList(*key);
            } else if (next() == '=') {
                ++position_;
                value = object(depth + 1);
                if (!value) {
                    return std::nullopt;
                }
            } else {
                return fail("a key is followed by neither '=' nor ';'");
            }
            result.insert_or_assign(*key, std::move(*value));
            if (!skipSpace() || next() != ';') {
                return fail("a semicolon is missing");
            }
            ++position_;
        }
        return PropertyList(std::move(result));
    }

    std::optional<PropertyList> array(int depth) {
        const std::size_t start = position_++;
        PropertyList::Array result;
        while (skipSpace() && next() != ')') {
            std::optional<PropertyList> value = object(depth + 1);
            if (!value) {
                return std::nullopt;
            }
            result.push_back(std::move(*value));
            if (skipSpace() && next() == ',') {
                ++position_;
            } else {
                break;
            }
        }
        if (!skipSpace()) {
            position_ = start;
            return fail("the array has no closing parenthesis");
        }
        if (next() != ')') {
            return fail("unexpected character where a comma or a closing parenthesis belongs");
        }
        ++position_;
        return PropertyList(std::move(result));
    }

    std::optional<PropertyList> data() {
        const std::size_t start = position_++;
        platform::Data bytes;
        while (!atEnd() && next() != '>') {
            const int high = hexDigit(next());
            if (high < 0) {
                if (next() != ' ' && (next() < '\t' || next() > '\r')) {
                    return fail("unexpected character in data");
                }
                ++position_;
                continue;
            }
            const int low = position_ + 1 < text_.size() ? hexDigit(text_[position_ + 1]) : -1;
            if (low < 0) {
                return fail("data with half a byte");
            }
            bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
            position_ += 2;
        }
        if (atEnd()) {
            position_ = start;
            return fail("the data does not end");
        }
        ++position_;
        return PropertyList(std::move(bytes));
    }

    std::string_view text_;
    std::size_t position_ = 0;
    std::optional<Problem> problem_;
};

}  // namespace

Result<PropertyList> parseOldStylePropertyList(std::string_view text) {
    if (const auto invalid = firstInvalidUtf8(text)) {
        return tl::unexpected(problemAt(text, *invalid, "the text is not UTF-8"));
    }
    return OldStyleReader(text).read();
}

}  // namespace velmoranth::desktop
