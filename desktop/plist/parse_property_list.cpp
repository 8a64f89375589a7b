#include "desktop/plist/property_lists.h"
#include "desktop/plist/readers.h"
#include "desktop/plist/text_encoding.h"

#include "record/recorder.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace velmoranth::desktop {
namespace {

using Bytes = std::span<const std::uint8_t>;

bool startsWith(Bytes bytes, std::string_view prefix) {
    return bytes.size() >= prefix.size() &&
           std::equal(prefix.begin(), prefix.end(), bytes.begin(),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

std::string_view asText(Bytes bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// UTF-16 and UTF-32 made UTF-8, without the mark; nothing when the bytes are neither. A zero byte
// at the start tells UTF-16 without a mark.
std::optional<std::string> fromWideText(Bytes bytes) {
    using std::string_view_literals::operator""sv;
    if (startsWith(bytes, "\xFF\xFE\0\0"sv)) {
        return utf32ToUtf8(bytes.subspan(4), ByteOrder::littleEndian);
    }
    if (startsWith(bytes, "\0\0\xFE\xFF"sv)) {
        return utf32ToUtf8(bytes.subspan(4), ByteOrder::bigEndian);
    }
    if (startsWith(bytes, "\xFF\xFE")) {
        return utf16ToUtf8(bytes.subspan(2), ByteOrder::littleEndian);
    }
    if (startsWith(bytes, "\xFE\xFF")) {
        return utf16ToUtf8(bytes.subspan(2), ByteOrder::bigEndian);
    }
    if (bytes.size() >= 2 && (bytes[0] == 0 || bytes[1] == 0)) {
        return utf16ToUtf8(bytes, bytes[0] == 0 ? ByteOrder::bigEndian : ByteOrder::littleEndian);
    }
    return {};
}

// Whether the text begins as a document or an element does.
bool looksLikeXml(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos || text[start] != '<' || start + 1 == text.size()) {
        return false;
    }
    const char c = text[start + 1];
    return c == '?' || c == '!' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// `forXml` may differ from `text` by a byte-order mark, which old-style text may not have.
Result<platform::PropertyList> parseText(std::string_view text, std::string_view forXml,
                                         XmlEncoding encoding) {
    if (!looksLikeXml(forXml)) {
        return parseOldStylePropertyList(text);
    }
    Result<platform::PropertyList> xml = parseXmlPropertyList(forXml, encoding);
    if (xml) {
        return xml;
    }
    // Old-style data may start alike.
    Result<platform::PropertyList> oldStyle = parseOldStylePropertyList(text);
    return oldStyle ? std::move(oldStyle) : std::move(xml);
}

}  // namespace

Problem problemAt(std::string_view text, std::size_t position, const std::string& message) {
    position = std::min(position, text.size());
    const std::string_view before = text.substr(0, position);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t lineStart = before.rfind('\n');
    const std::size_t column =
        position - (lineStart == std::string_view::npos ? 0 : lineStart + 1) + 1;
    return Problem{message + " (line " + std::to_string(line) + ", column " +
                   std::to_string(column) + ")"};
}

Result<platform::PropertyList> parsePropertyList(Bytes bytes) {
    if (bytes.empty()) {
        return tl::unexpected(Problem{"the file is empty"});
    }
    if (bytes.size() > kMaxPropertyListBytes) {
        return tl::unexpected(Problem{"the property list is larger than " +
                                      std::to_string(kMaxPropertyListBytes) + " bytes"});
    }
    if (startsWith(bytes, "bplist0")) {
        return parseBinaryPropertyList(bytes);
    }
    if (const auto text = fromWideText(bytes)) {
        return parseText(*text, *text, XmlEncoding::utf8);
    }
    const bool marked = startsWith(bytes, "\xEF\xBB\xBF");
    return parseText(asText(bytes), asText(bytes).substr(marked ? 3 : 0),
                     marked ? XmlEncoding::utf8 : XmlEncoding::declared);
}

Result<platform::PropertyList> readPropertyList(const DeviceRoot& root,
                                                const std::string& devicePath) {
    Result<platform::Data> bytes = root.readFile(devicePath, kMaxPropertyListBytes);
    if (!bytes) {
        return tl::unexpected(std::move(bytes.error()));
    }
    Result<platform::PropertyList> value = parsePropertyList(*bytes);
    if (!value) {
        value.error().path = devicePath;
    }
    return value;
}

DesktopPropertyLists::DesktopPropertyLists(std::shared_ptr<const DeviceRoot> root)
    : root_(std::move(root)) {}

std::optional<platform::Dictionary> DesktopPropertyLists::dictionaryWithContentsOfFile(
    const std::string& path) {
    const Result<platform::PropertyList> value = readPropertyList(*root_, path);
    if (!value) {
        record::noteTried(path, value.error().message);
        return {};
    }
    const platform::Dictionary* const dictionary = value->as<platform::Dictionary>();
    record::noteTried(path, dictionary == nullptr ? "its root is no dictionary" : "");
    return dictionary == nullptr ? std::nullopt : std::optional(*dictionary);
}

std::optional<platform::PrintableDictionary>
DesktopPropertyLists::printableDictionaryWithContentsOfFile(const std::string& path) {
    std::optional<platform::Dictionary> values = dictionaryWithContentsOfFile(path);
    if (!values) {
        return {};
    }
    return platform::PrintableDictionary{.values = std::move(*values)};
}

}  // namespace velmoranth::desktop
