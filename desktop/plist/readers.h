// The readers of the single forms, behind parsePropertyList.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace velmoranth::desktop {

// A file that starts with "bplist0". Objects that the file refers to several times are copied, up
// to a million values and 64 MiB of text and data in all.
[[nodiscard]] Result<platform::PropertyList> parseBinaryPropertyList(
    std::span<const std::uint8_t> bytes);

// As the XML declaration says (UTF-8 when it says nothing), or UTF-8 whatever it says.
enum class XmlEncoding { declared, utf8 };

// An XML file's text without a byte-order mark. What stands behind the root element does not count.
[[nodiscard]] Result<platform::PropertyList> parseXmlPropertyList(
    std::string_view text, XmlEncoding encoding = XmlEncoding::declared);

// Old-style text in UTF-8.
[[nodiscard]] Result<platform::PropertyList> parseOldStylePropertyList(std::string_view text);

// A problem at a place of a text: "message (line 3, column 5)", columns in bytes.
[[nodiscard]] Problem problemAt(std::string_view text, std::size_t position,
                                const std::string& message);

}  // namespace velmoranth::desktop
