#include "desktop/plist/number_text.h"
#include "desktop/plist/property_lists.h"
#include "desktop/plist/text_encoding.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <variant>

namespace velmoranth::desktop {
namespace {

using platform::PropertyList;

constexpr std::string_view kStart =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
constexpr std::string_view kReplacementText = "\uFFFD";
constexpr std::string_view kEnd = "</plist>\n";

class XmlWriter {
  public:
    std::string write(const PropertyList& value) {
        text_ = kStart;
        append(value);
        text_ += kEnd;
        return std::move(text_);
    }

  private:
    void append(const PropertyList& value) {
        text_.append(depth_, '\t');
        std::visit([this](const auto& held) { appendHeld(held); }, value.value());
    }

    void appendHeld(bool value) { text_ += value ? "<true/>\n" : "<false/>\n"; }

    void appendHeld(std::int64_t value) { element("integer", std::to_string(value)); }

    void appendHeld(double value) { element("real", textOfReal(value)); }

    void appendHeld(const std::string& value) { element("string", value); }

    void appendHeld(platform::Date value) { element("date", textOfDate(value)); }

    // On lines of its own, indented as the element, 76 characters a line less the indent's columns
    // (a tab counts 8).
    void appendHeld(const platform::Data& value) {
        const std::string indent(depth_, '\t');
        const std::string base64 = base64OfData(value);
        const std::size_t width = 76 - 8 * std::min<std::size_t>(depth_, 8);
        text_ += "<data>\n";
        for (std::size_t i = 0; i < base64.size(); i += width / 4 * 4) {
            text_.append(indent).append(base64, i, width / 4 * 4).append("\n");
        }
        text_.append(indent).append("</data>\n");
    }

    void appendHeld(const PropertyList::Array& items) {
        container("array", items.empty(), [&] {
            for (const PropertyList& item : items) {
                append(item);
            }
        });
    }

    void appendHeld(const PropertyList::Dictionary& entries) {
        container("dict", entries.empty(), [&] {
            for (const auto& [key, value] : entries) {
                text_.append(depth_, '\t');
                element("key", key);
                append(value);
            }
        });
    }

    template <class Contents>
    void container(const char* name, bool isEmpty, const Contents& contents) {
        text_.append("<").append(name);
        if (isEmpty) {
            text_ += "/>\n";
            return;
        }
        text_ += ">\n";
        ++depth_;
        contents();
        --depth_;
        text_.append(depth_, '\t').append("</").append(name).append(">\n");
    }

    void element(const char* name, std::string_view contents) {
        text_.append("<").append(name).append(">");
        while (!contents.empty()) {
            const std::size_t valid = firstInvalidUtf8(contents).value_or(contents.size());
            appendEscaped(contents.substr(0, valid));
            contents.remove_prefix(valid);
            if (!contents.empty()) {
                text_ += kReplacementText;
                contents.remove_prefix(1);
            }
        }
        text_.append("</").append(name).append(">\n");
    }

    // Control characters and the two that are no characters stay out: no XML file may hold them.
    void appendEscaped(std::string_view contents) {
        for (std::size_t i = 0; i < contents.size(); ++i) {
            const char c = contents[i];
            if (c == '&') {
                text_ += "&amp;";
            } else if (c == '<') {
                text_ += "&lt;";
            } else if (c == '>') {
                text_ += "&gt;";
            } else if (c == '\r') {
                text_ += "&#13;";  // a bare one would be read as a line end
            } else if (const auto rest = contents.substr(i);
                       rest.starts_with("\uFFFE") || rest.starts_with("\uFFFF")) {
                i += 2;
            } else if (static_cast<unsigned char>(c) >= ' ' || c == '\t' || c == '\n') {
                text_ += c;
            }
        }
    }

    std::string text_;
    std::size_t depth_ = 0;
};

}  // namespace

platform::Data writeXmlPropertyList(const PropertyList& value) {
    const std::string text = XmlWriter().write(value);
    return platform::Data(text.begin(), text.end());
}

}  // namespace velmoranth::desktop
