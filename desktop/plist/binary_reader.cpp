// Binary property lists. A file's objects may refer to one another in any way, so a small file can
// stand for an endless or enormous value; what it expands to is counted while it is read. The
// library at hand bounds neither, nor does it say what is wrong.
#include "desktop/plist/property_lists.h"
#include "desktop/plist/readers.h"
#include "desktop/plist/text_encoding.h"

#include <algorithm>
#include <bit>
#include <string>
#include <utility>

namespace velmoranth::desktop {
namespace {

using platform::PropertyList;

constexpr std::size_t kHeaderBytes = 8;
constexpr std::size_t kTrailerBytes = 32;
constexpr std::size_t kMaxValues = 1'000'000;
constexpr std::size_t kMaxPayloadBytes = std::size_t{64} * 1024 * 1024;
constexpr char kUidKey[] = "CF$UID";  // how XML property lists write an archiver's reference

class BinaryReader {
  public:
    explicit BinaryReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    Result<PropertyList> read() {
        std::optional<PropertyList> root;
        if (readTrailer()) {
            root = object(top_, 0);
        }
        if (!root) {
            return tl::unexpected(std::move(problem_));
        }
        return std::move(*root);
    }

  private:
    std::nullopt_t fail(std::string message, std::uint64_t offset) {
        problem_ = Problem{std::move(message), {}, offset};
        return std::nullopt;
    }

    // `size` bytes, most significant first; the caller has checked that they are there. Of more
    // than eight the last eight count.
    [[nodiscard]] std::uint64_t number(std::uint64_t offset, std::uint64_t size) const {
        std::uint64_t value = 0;
        for (std::uint64_t i = 0; i < size; ++i) {
            value = value << 8U | bytes_[offset + i];
        }
        return value;
    }

    // The trailer: six bytes that do not count here, the size of an offset, the size of a
    // reference, then the number of objects, the root and the place of the table of offsets.
    bool readTrailer() {
        if (bytes_.size() < kHeaderBytes + 1 + kTrailerBytes) {
            fail("the binary property list is truncated", bytes_.size());
            return false;
        }
        const std::uint64_t trailer = bytes_.size() - kTrailerBytes;
        offsetSize_ = bytes_[trailer + 6];
        referenceSize_ = bytes_[trailer + 7];
        count_ = number(trailer + 8, 8);
        top_ = number(trailer + 16, 8);
        table_ = number(trailer + 24, 8);
        const bool isSane = offsetSize_ >= 1 && referenceSize_ >= 1 && count_ >= 1 &&
                            top_ < count_ && table_ > kHeaderBytes && table_ < trailer &&
                            (trailer - table_) % offsetSize_ == 0 &&
                            (trailer - table_) / offsetSize_ == count_;
        if (!isSane) {
            fail("the binary property list's trailer is damaged", trailer);
        }
        return isSane;
    }

    // Whether `count` items of `size` bytes stand at `offset`, before the table.
    [[nodiscard]] bool fits(std::uint64_t offset, std::uint64_t count, std::uint64_t size) const {
        return offset <= table_ && count <= (table_ - offset) / size;
    }

    std::nullopt_t failOfExpansion(std::uint64_t offset) {
        return fail("the property list expands to more than is read", offset);
    }

    std::optional<PropertyList> object(std::uint64_t index, int depth) {
        if (depth > kMaxPropertyListDepth) {
            return fail("containers are nested too deeply, or in themselves", 0);
        }
        const std::uint64_t entry = table_ + index * offsetSize_;
        const std::uint64_t offset = number(entry, offsetSize_);
        if (offset < kHeaderBytes || offset >= table_) {
            return fail("an object's offset is outside the file", entry);
        }
        if (++values_ > kMaxValues) {
            return failOfExpansion(offset);
        }
        const std::uint8_t marker = bytes_[offset];
        const unsigned low = marker & 0x0FU;
        switch (marker >> 4U) {
            case 0x0:
                return single(marker, offset);
            case 0x1:
                return integer(low, offset);
            case 0x2:
            case 0x3:
                return real(marker, offset);
            case 0x8:
                return uid(low, offset);
            default:
                return sized(marker, offset, depth);
        }
    }

    std::optional<PropertyList> single(std::uint8_t marker, std::uint64_t offset) {
        constexpr std::uint8_t kFalse = 0x08;
        constexpr std::uint8_t kTrue = 0x09;
        if (marker != kFalse && marker != kTrue) {
            return fail("an object of a kind that no property list has", offset);
        }
        return PropertyList(marker == kTrue);
    }

    std::optional<PropertyList> integer(unsigned power, std::uint64_t offset) {
        const std::uint64_t size = std::uint64_t{1} << power;
        if (power > 4 || !fits(offset + 1, 1, size)) {
            return fail("an integer is damaged", offset);
        }
        const std::uint64_t value = number(offset + 1, size);
        // Only those of 8 bytes are signed; those of 16 hold what lies above them.
        constexpr std::uint64_t kMax = static_cast<std::uint64_t>(INT64_MAX);
        const bool isNegativeWide = size == 16 && (bytes_[offset + 1] & 0x80U) != 0;
        if (size == 16 && !isNegativeWide && (value > kMax || number(offset + 1, 8) != 0)) {
            return PropertyList(std::int64_t{INT64_MAX});
        }
        return PropertyList(static_cast<std::int64_t>(value));
    }

    std::optional<PropertyList> real(std::uint8_t marker, std::uint64_t offset) {
        constexpr std::uint8_t kFloat = 0x22;
        constexpr std::uint8_t kDouble = 0x23;
        constexpr std::uint8_t kDate = 0x33;
        const bool isKnown = marker == kFloat || marker == kDouble || marker == kDate;
        const std::uint64_t size = marker == kFloat ? 4 : 8;
        if (!isKnown || !fits(offset + 1, 1, size)) {
            return fail("a real number or date is damaged", offset);
        }
        const std::uint64_t bits = number(offset + 1, size);
        if (marker == kFloat) {
            return PropertyList(
                static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits))));
        }
        const auto value = std::bit_cast<double>(bits);
        return marker == kDate ? PropertyList(platform::Date{value}) : PropertyList(value);
    }

    std::optional<PropertyList> uid(unsigned low, std::uint64_t offset) {
        const std::uint64_t size = low + 1U;
        if (size > 8 || !fits(offset + 1, 1, size)) {
            return fail("a reference of an archiver is damaged", offset);
        }
        const auto value = static_cast<std::int64_t>(number(offset + 1, size));
        return PropertyList(PropertyList::Dictionary{{kUidKey, PropertyList(value)}});
    }

    // Data, strings and containers: a length in the marker, or in an integer behind it.
    std::optional<PropertyList> sized(std::uint8_t marker, std::uint64_t offset, int depth) {
        std::uint64_t length = marker & 0x0FU;
        std::uint64_t start = offset + 1;
        if (length == 0x0F) {
            const unsigned power = fits(start, 1, 1) ? bytes_[start] & 0x0FU : 0xFFU;
            if (power > 3 || bytes_[start] >> 4U != 0x1 ||
                !fits(start + 1, 1, std::uint64_t{1} << power)) {
                return fail("an object's length is damaged", offset);
            }
            length = number(start + 1, std::uint64_t{1} << power);
            start += 1 + (std::uint64_t{1} << power);
        }

        // Of an item: the bytes or references that it is stored as, and the bytes that it becomes
        // at most.
        struct Kind {
            unsigned marker;
            const char* tooLong;
            std::uint64_t bytes;
            std::uint64_t references;
            std::uint64_t payload;
            std::optional<PropertyList> (BinaryReader::*read)(std::uint64_t, std::uint64_t, int);
        };

        static constexpr Kind kKinds[] = {
            {0x4, "data goes past its end", 1, 0, 1, &BinaryReader::data},
            {0x5, "a string goes past its end", 1, 0, 1, &BinaryReader::ascii},
            {0x6, "a string goes past its end", 2, 0, 3, &BinaryReader::utf16},
            {0xA, "an array goes past its end", 0, 1, 0, &BinaryReader::array},
            {0xD, "a dictionary goes past its end", 0, 2, 0, &BinaryReader::dictionary},
        };
        const auto* const kind = std::ranges::find(kKinds, marker >> 4U, &Kind::marker);
        if (kind == std::end(kKinds)) {
            return fail("an object of a kind that no property list has", offset);
        }
        if (!fits(start, length, kind->bytes + kind->references * referenceSize_)) {
            return fail(kind->tooLong, start);
        }
        payload_ += length * kind->payload;
        return payload_ > kMaxPayloadBytes ? failOfExpansion(start)
                                           : (this->*kind->read)(start, length, depth);
    }

    std::optional<PropertyList> data(std::uint64_t start, std::uint64_t length, int /*depth*/) {
        const auto part = bytes_.subspan(start, length);
        return PropertyList(platform::Data(part.begin(), part.end()));
    }

    std::optional<PropertyList> ascii(std::uint64_t start, std::uint64_t length, int /*depth*/) {
        const auto part = bytes_.subspan(start, length);
        if (std::any_of(part.begin(), part.end(), [](std::uint8_t c) { return c >= 0x80; })) {
            return fail("a string of ASCII holds other characters", start);
        }
        return PropertyList(std::string(part.begin(), part.end()));
    }

    std::optional<PropertyList> utf16(std::uint64_t start, std::uint64_t length, int /*depth*/) {
        return PropertyList(utf16ToUtf8(bytes_.subspan(start, length * 2), ByteOrder::bigEndian));
    }

    std::optional<PropertyList> referred(std::uint64_t place, int depth) {
        const std::uint64_t index = number(place, referenceSize_);
        if (index >= count_) {
            return fail("a reference to an object that is not there", place);
        }
        return object(index, depth + 1);
    }

    std::optional<PropertyList> array(std::uint64_t start, std::uint64_t length, int depth) {
        PropertyList::Array items;
        for (std::uint64_t i = 0; i < length; ++i) {
            std::optional<PropertyList> item = referred(start + i * referenceSize_, depth);
            if (!item) {
                return std::nullopt;
            }
            items.push_back(std::move(*item));
        }
        return PropertyList(std::move(items));
    }

    // The keys' references, then the values'. Of a repeated key the first counts.
    std::optional<PropertyList> dictionary(std::uint64_t start, std::uint64_t length, int depth) {
        PropertyList::Dictionary entries;
        for (std::uint64_t i = 0; i < length; ++i) {
            const std::uint64_t place = start + i * referenceSize_;
            const std::optional<PropertyList> key = referred(place, depth);
            if (!key) {
                return std::nullopt;
            }
            const std::string* const name = key->as<std::string>();
            if (name == nullptr) {
                return fail("a key that is no string", place);
            }
            std::optional<PropertyList> value = referred(place + length * referenceSize_, depth);
            if (!value) {
                return std::nullopt;
            }
            entries.emplace(*name, std::move(*value));
        }
        return PropertyList(std::move(entries));
    }

    std::span<const std::uint8_t> bytes_;
    std::uint64_t offsetSize_ = 0;
    std::uint64_t referenceSize_ = 0;
    std::uint64_t count_ = 0;
    std::uint64_t top_ = 0;
    std::uint64_t table_ = 0;  // the objects end where the table of their offsets begins
    std::size_t values_ = 0;
    std::size_t payload_ = 0;
    Problem problem_;
};

}  // namespace

Result<PropertyList> parseBinaryPropertyList(std::span<const std::uint8_t> bytes) {
    return BinaryReader(bytes).read();
}

}  // namespace velmoranth::desktop
