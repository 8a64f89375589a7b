#include "desktop/catalog/catalog.h"

#include <array>

namespace velmoranth::catalog {

namespace {

constexpr std::array<std::string_view, 13> kCompressionNames{
    "uncompressed", "RLE",  "ZIP",     "LZVN",     "LZFSE", "JPEG with LZFSE", "blurred", "ASTC",
    "palette-img",  "HEVC", "deepmap", "deepmap2", "DXTC",
};

constexpr std::array<std::string_view, 10> kKindNames{
    "bitmap", "link",  "atlas",      "vector", "image file",
    "data",   "color", "icon sizes", "other",  "unreadable",
};

constexpr std::array<std::string_view, 7> kIdiomNames{
    "universal", "phone", "pad", "tv", "car", "watch", "marketing",
};

}  // namespace

std::string compressionName(Compression compression) {
    const auto number = static_cast<std::uint32_t>(compression);
    return number < kCompressionNames.size() ? std::string(kCompressionNames.at(number))
                                             : "compression " + std::to_string(number);
}

std::string_view kindName(Kind kind) {
    return kKindNames.at(static_cast<std::size_t>(kind));
}

std::string idiomName(std::uint16_t idiom) {
    return idiom < kIdiomNames.size() ? std::string(kIdiomNames.at(idiom)) : std::to_string(idiom);
}

std::string pixelFormatName(std::uint32_t pixelFormat) {
    std::string name;
    if (pixelFormat == 0) {
        return name;
    }
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        const auto byte = static_cast<unsigned char>(pixelFormat >> shift & 0xFFU);
        name += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '?';
    }
    name.erase(name.find_last_not_of(' ') + 1);
    return name;
}

}  // namespace velmoranth::catalog
