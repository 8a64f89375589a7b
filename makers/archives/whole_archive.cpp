#include "makers/archives/whole_archive.h"

#include "makers/archives/archive_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;
using namespace std::string_view_literals;

namespace {

constexpr std::string_view kZipFile = "PK\x03\x04";
constexpr std::string_view kZipListed = "PK\x01\x02";
constexpr std::string_view kZipEnd = "PK\x05\x06";
constexpr std::size_t kZipEndSize = 22;
constexpr std::size_t kLongestComment = 0xFFFF;

// What a packed tar begins with. The oldest of the packings begins with nothing of its own.
constexpr std::array kPackedMarks{"\x1F\x8B\x08"sv, "BZh"sv,
                                  "\xFD"
                                  "7zXZ\0"sv,
                                  "\x28\xB5\x2F\xFD"sv};

constexpr std::string_view kTarMark = "ustar";
constexpr std::size_t kTarMarkPlace = 257;

std::string_view textOf(const std::vector<std::uint8_t>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Little-endian, of as many bytes.
std::uint64_t numberAt(std::string_view text, std::size_t at, std::size_t bytes) {
    std::uint64_t number = 0;
    for (std::size_t i = bytes; i > 0; --i) {
        number = (number << 8U) | static_cast<unsigned char>(text[at + i - 1]);
    }
    return number;
}

Result<std::vector<std::uint8_t>> bytesAt(const ByteSource& source, std::uint64_t at,
                                          std::size_t size) {
    std::vector<std::uint8_t> bytes(size);
    const auto count = source.read(at, bytes);
    if (!count) {
        return tl::unexpected(count.error());
    }
    bytes.resize(*count);
    return bytes;
}

// Whether the record, which lies there in the file, is this zip's own: another one may be among the
// files.
Result<bool> leadsToList(const ByteSource& source, std::string_view record, std::uint64_t place) {
    constexpr std::uint64_t kElsewhere = 0xFFFFFFFF;  // in a longer record before this one
    const std::uint64_t entries = numberAt(record, 10, 2);
    const std::uint64_t size = numberAt(record, 12, 4);
    const std::uint64_t list = numberAt(record, 16, 4);
    if (list == kElsewhere || size == kElsewhere) {
        return true;
    }
    if (entries == 0 || list + size > place) {
        return entries == 0;
    }
    const auto bytes = bytesAt(source, list, kZipListed.size());
    return bytes ? Result<bool>(textOf(*bytes) == kZipListed) : tl::unexpected(bytes.error());
}

}  // namespace

bool isZip(std::string_view start) {
    return start.starts_with(kZipFile);
}

Result<bool> hasZipList(const ByteSource& source) {
    const auto most = std::min<std::uint64_t>(source.size, kZipEndSize + kLongestComment);
    const std::uint64_t first = source.size - most;
    const auto tail = bytesAt(source, first, static_cast<std::size_t>(most));
    if (!tail) {
        return tl::unexpected(tail.error());
    }
    const std::string_view text = textOf(*tail);
    for (std::size_t at = text.rfind(kZipEnd); at != std::string_view::npos;
         at = at == 0 ? std::string_view::npos : text.rfind(kZipEnd, at - 1)) {
        if (text.size() - at >= kZipEndSize) {
            auto leads = leadsToList(source, text.substr(at, kZipEndSize), first + at);
            if (!leads || *leads) {
                return leads;
            }
        }
    }
    return false;
}

Problem whyNoArchive(std::string_view start, const ByteSource& source) {
    // Of what is packed as a tar may be it was not enough for a first entry.
    constexpr std::size_t kEnoughForEntry = std::size_t{1} << 20U;
    const bool isPacked = std::ranges::any_of(
        kPackedMarks, [&](std::string_view mark) { return start.starts_with(mark); });
    const bool isStartOfTar = source.size < kStartSize && start.size() > kTarMarkPlace &&
                              start.substr(kTarMarkPlace).starts_with(kTarMark);
    if (isStartOfTar) {
        return {std::string(kCutShort)};
    }
    auto packed = ArchiveFile::open(source, Formats::packed);
    if (!packed) {
        return packed.error();
    }
    if (packed->isPacked()) {
        std::vector<std::uint8_t> bytes(kEnoughForEntry);
        if (const auto entry = packed->next(); !entry) {
            return entry.error();
        }
        if (const auto count = packed->read(bytes); !count) {
            return count.error();
        }
    } else if (isPacked) {
        return {std::string(kCutShort)};
    }
    return {"it is no .deb, .zip or .tar archive; give one of these, or a folder"};
}

}  // namespace velmoranth::makers
