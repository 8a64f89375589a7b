// XML property lists over expat: hardened, kept up, and it knows the line and column of every
// event. The rules of what is accepted stand here; they are the platform's, which a general plist
// library does not keep (it reads "1.5x" as 1.5, a key without a value as nothing, and so on).
#include "desktop/plist/number_text.h"
#include "desktop/plist/property_lists.h"
#include "desktop/plist/readers.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::desktop {
namespace {

using platform::PropertyList;

enum class Tag { plist, dict, array, key, string, integer, real, date, data, yes, no };

struct TagName {
    std::string_view name;
    Tag tag;
};

constexpr TagName kTags[] = {
    {"key", Tag::key},   {"string", Tag::string}, {"true", Tag::yes},        {"false", Tag::no},
    {"dict", Tag::dict}, {"array", Tag::array},   {"integer", Tag::integer}, {"real", Tag::real},
    {"date", Tag::date}, {"data", Tag::data},     {"plist", Tag::plist},
};

const TagName* findTag(std::string_view name) {
    const auto* const found = std::find_if(std::begin(kTags), std::end(kTags),
                                           [&](const TagName& tag) { return tag.name == name; });
    return found == std::end(kTags) ? nullptr : found;
}

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

constexpr std::size_t kShown = 40;  // of a text in a message

// An open <plist>, <dict> or <array>.
struct Container {
    Tag tag;
    PropertyList::Dictionary entries;
    PropertyList::Array items;
    std::optional<std::string> key;  // waits for its value
    bool hasRoot = false;            // of <plist>
};

class XmlReader {
  public:
    // `start` is where the document begins in the text, `encoding` null for the declared one.
    XmlReader(std::string_view text, std::size_t start, const char* encoding)
        : text_(text), start_(start), parser_(XML_ParserCreate(encoding), &XML_ParserFree) {}

    Result<PropertyList> read() {
        if (parser_ == nullptr) {
            return tl::unexpected(Problem{"no memory for reading XML"});
        }
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(
            parser_.get(),
            [](void* reader, const char* name, const char**) {
                static_cast<XmlReader*>(reader)->open(name);
            },
            [](void* reader, const char*) { static_cast<XmlReader*>(reader)->close(); });
        XML_SetCharacterDataHandler(parser_.get(), [](void* reader, const char* text, int length) {
            static_cast<XmlReader*>(reader)->characters({text, static_cast<std::size_t>(length)});
        });
        // A handler for what has none keeps entities of the document's own from being expanded;
        // the platform knows only the five of XML.
        XML_SetDefaultHandler(parser_.get(), [](void* reader, const char* text, int length) {
            static_cast<XmlReader*>(reader)->other({text, static_cast<std::size_t>(length)});
        });
        const XML_Status status = XML_Parse(parser_.get(), text_.data() + start_,
                                            static_cast<int>(text_.size() - start_), XML_TRUE);
        if (problem_) {
            return tl::unexpected(std::move(*problem_));
        }
        if (root_) {
            return std::move(*root_);
        }
        const std::string message = status == XML_STATUS_ERROR
                                        ? XML_ErrorString(XML_GetErrorCode(parser_.get()))
                                        : "no property list";
        fail(message);
        return tl::unexpected(std::move(*problem_));
    }

  private:
    // The first failure is the one that is told.
    void fail(const std::string& message) {
        if (problem_) {
            return;
        }
        const XML_Index position = XML_GetCurrentByteIndex(parser_.get());
        problem_ = problemAt(
            text_, start_ + static_cast<std::size_t>(std::max<XML_Index>(position, 0)), message);
        XML_StopParser(parser_.get(), XML_FALSE);
    }

    [[nodiscard]] bool isDone() const { return problem_ || root_; }

    void open(std::string_view name) {
        if (isDone()) {
            return;
        }
        const TagName* const tag = findTag(name);
        if (leaf_) {
            return fail("<" + std::string(name) + "> inside a value");
        }
        if (tag == nullptr) {
            return fail("unknown element <" + std::string(name) + ">");
        }
        if (!mayStart(tag->tag)) {
            return;
        }
        switch (tag->tag) {
            case Tag::plist:
            case Tag::dict:
            case Tag::array:
                if (containers_.size() > static_cast<std::size_t>(kMaxPropertyListDepth)) {
                    return fail("containers are nested too deeply");
                }
                containers_.push_back({tag->tag, {}, {}, {}, false});
                break;
            default:
                if (tag->tag == Tag::data && isEmptyElement()) {
                    return fail("an empty <data/>");
                }
                leaf_ = tag->tag;
                leafText_.clear();
        }
    }

    // Whether the element may stand where it begins; says so when it may not.
    bool mayStart(Tag tag) {
        const char* wrong = nullptr;
        if (containers_.empty()) {
            wrong = tag == Tag::key ? "<key> outside a dictionary" : nullptr;
        } else if (tag == Tag::plist) {
            wrong = "<plist> inside the property list";
        } else if (const Container& here = containers_.back(); here.tag == Tag::dict) {
            if (tag == Tag::key && here.key) {
                wrong = "a key without a value";
            } else if (tag != Tag::key && !here.key) {
                wrong = "a value where a key belongs";
            }
        } else if (tag == Tag::key) {
            wrong = "<key> outside a dictionary";
        } else if (here.tag == Tag::plist && here.hasRoot) {
            wrong = "a second root element";
        }
        if (wrong != nullptr) {
            fail(wrong);
        }
        return wrong == nullptr;
    }

    // Whether the element that begins is written <like-this/>.
    [[nodiscard]] bool isEmptyElement() const {
        int offset = 0;
        int size = 0;
        const char* const input = XML_GetInputContext(parser_.get(), &offset, &size);
        const int last = offset + XML_GetCurrentByteCount(parser_.get()) - 2;
        return input != nullptr && last >= 0 && last < size && input[last] == '/';
    }

    void characters(std::string_view text) {
        if (isDone()) {
            return;
        }
        if (leaf_) {
            leafText_ += text;
        } else if (!std::all_of(text.begin(), text.end(), isSpace)) {
            fail("unexpected text between elements");
        }
    }

    void other(std::string_view text) {
        if (!isDone() && text.starts_with('&') && (leaf_ || !containers_.empty())) {
            fail("unknown entity " + std::string(text.substr(0, kShown)));
        }
    }

    void close() {
        if (isDone()) {
            return;
        }
        if (leaf_) {
            closeLeaf(*std::exchange(leaf_, std::nullopt));
            return;
        }
        Container closed = std::move(containers_.back());
        containers_.pop_back();
        switch (closed.tag) {
            case Tag::plist:
                if (!plistRoot_) {
                    return fail("an empty <plist>");
                }
                return finish(std::move(*plistRoot_));
            case Tag::dict:
                if (closed.key) {
                    return fail("a key without a value");
                }
                return add(PropertyList(std::move(closed.entries)));
            default:
                return add(PropertyList(std::move(closed.items)));
        }
    }

    void closeLeaf(Tag tag) {
        if (tag == Tag::key) {
            containers_.back().key = std::move(leafText_);
            return;
        }
        std::optional<PropertyList> value = leafValue(tag);
        if (!value) {
            return fail("no value of this kind: \"" + leafText_.substr(0, kShown) + "\"");
        }
        add(std::move(*value));
    }

    [[nodiscard]] std::optional<PropertyList> leafValue(Tag tag) {
        const auto boxed = [](auto&& value) -> std::optional<PropertyList> {
            if (!value) {
                return std::nullopt;
            }
            return PropertyList(std::move(*value));
        };
        switch (tag) {
            case Tag::string:
                return PropertyList(std::move(leafText_));
            case Tag::integer:
                return boxed(integerOfText(leafText_));
            case Tag::real:
                return boxed(realOfText(leafText_));
            case Tag::date:
                return boxed(dateOfText(leafText_));
            case Tag::data:
                return PropertyList(dataOfBase64(leafText_));
            default:
                if (!leafText_.empty()) {
                    return std::nullopt;
                }
                return PropertyList(tag == Tag::yes);
        }
    }

    void add(PropertyList value) {
        if (containers_.empty()) {
            return finish(std::move(value));
        }
        Container& here = containers_.back();
        switch (here.tag) {
            case Tag::plist:
                here.hasRoot = true;
                plistRoot_ = std::move(value);
                break;
            case Tag::dict:
                here.entries.insert_or_assign(*std::exchange(here.key, std::nullopt),
                                              std::move(value));
                break;
            default:
                here.items.push_back(std::move(value));
        }
    }

    // What stands behind the root element does not count, so it is not read.
    void finish(PropertyList value) {
        root_ = std::move(value);
        XML_StopParser(parser_.get(), XML_FALSE);
    }

    std::string_view text_;
    std::size_t start_;
    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser_;
    std::vector<Container> containers_;
    std::optional<Tag> leaf_;
    std::string leafText_;
    std::optional<PropertyList> plistRoot_;
    std::optional<PropertyList> root_;
    std::optional<Problem> problem_;
};

}  // namespace

Result<PropertyList> parseXmlPropertyList(std::string_view text, XmlEncoding encoding) {
    // The platform passes over white space before the XML declaration; XML itself has none there.
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos) {
        return tl::unexpected(Problem{"no property list"});
    }
    return XmlReader(text, start, encoding == XmlEncoding::utf8 ? "UTF-8" : nullptr).read();
}

}  // namespace velmoranth::desktop
