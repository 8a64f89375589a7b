// Reads compiled asset catalogs ("Assets.car"): which names a catalog has, which renditions each
// name has and for what, and their pixels, files and colours. A library of its own: nothing here
// knows of themes or of a device.
//
// A catalog maps its file and decodes what it is asked for, one rendition at a time; it keeps no
// decoded pixels. A damaged rendition harms no other: it is listed with its problem. A Catalog is
// immutable once opened, and may be used by several threads at a time.
#pragma once

#include "desktop/result/result.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::catalog {

using desktop::Problem;
using desktop::Result;

using Bytes = std::span<const std::uint8_t>;

// What one slot of a rendition's key says. The numbers are the format's.
enum class Attribute : std::uint16_t {
    look = 0,
    element = 1,
    part = 2,
    size = 3,
    direction = 4,
    placeholder = 5,
    value = 6,
    appearance = 7,
    dimension1 = 8,
    dimension2 = 9,  // index of an icon size within its set
    state = 10,
    layer = 11,
    scale = 12,
    localization = 13,
    presentationState = 14,
    idiom = 15,
    subtype = 16,
    identifier = 17,  // joins a name and its renditions; 0 for none
    previousValue = 18,
    previousState = 19,
    horizontalSizeClass = 20,
    verticalSizeClass = 21,
    memoryClass = 22,
    graphicsClass = 23,
    displayGamut = 24,
    deploymentTarget = 25,
    glyphWeight = 26,
    glyphSize = 27,
};

// A four-character code written forwards: fourCharacterCode("ARGB").
[[nodiscard]] constexpr std::uint32_t fourCharacterCode(const char (&text)[5]) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(text[0])) << 24U |
           static_cast<std::uint32_t>(static_cast<unsigned char>(text[1])) << 16U |
           static_cast<std::uint32_t>(static_cast<unsigned char>(text[2])) << 8U |
           static_cast<std::uint32_t>(static_cast<unsigned char>(text[3]));
}

// How a bitmap is stored. The numbers are the format's; others occur and are kept as they are.
enum class Compression : std::uint32_t {
    uncompressed = 0,
    rle = 1,
    zip = 2,
    lzvn = 3,
    lzfse = 4,
    jpegLzfse = 5,
    blurred = 6,
    astc = 7,
    paletteImage = 8,
    hevc = 9,
    deepmap = 10,
    deepmap2 = 11,
    dxtc = 12,
};

// What a rendition holds, told by its layout, pixel format and payload.
enum class Kind {
    bitmap,      // pixels of its own
    link,        // a part of a packed atlas, shown as a picture of its own
    atlas,       // a packed atlas: bitmap that has no name
    vector,      // a PDF or SVG file
    imageFile,   // a JPEG, HEIF or WebP file that is the picture
    data,        // a file that is no picture
    color,       // a named colour
    iconSizes,   // the table of an app icon's sizes
    other,       // gradients, effects, stacks, textures: nothing that is a picture or a file
    unreadable,  // its record is damaged; Rendition::problem says how
};

struct Rectangle {  // pixels
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

// Size of an image for alignment, and the insets around it. Pixels.
struct Metrics {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    friend bool operator==(const Metrics&, const Metrics&) = default;
};

// How a picture is meant to be laid over what is behind it.
struct Compositing {
    std::uint32_t blendMode = 0;  // as CoreGraphics numbers them; 0 is normal
    float opacity = 1;            // as stored, 0 to 1 where the catalog is sound

    friend bool operator==(const Compositing&, const Compositing&) = default;
};

// A key: an attribute's number and its value. A value that is not listed is 0.
using AttributeValue = std::pair<std::uint16_t, std::uint16_t>;

// Where a link's pixels are.
struct Link {
    Rectangle part;  // of the atlas; origin at its bottom left
    std::uint16_t layout = 0;
    std::vector<AttributeValue> atlasKey;
};

// One picture, file, colour or table. The views are into the catalog's own bytes.
struct Rendition {
    Bytes key;              // as stored
    std::string_view name;  // usually the name of the source file; not unique
    Kind kind = Kind::unreadable;
    std::string problem;  // why its record cannot be read; empty unless `kind` is unreadable
    std::uint32_t flags = 0;
    std::uint32_t width = 0;         // pixels; 0 for vectors, colours and size tables
    std::uint32_t height = 0;        // pixels
    std::uint32_t scalePercent = 0;  // 100, 200, 300; 0 where there is none
    std::uint32_t pixelFormat = 0;   // four-character code, 0 for none
    std::uint32_t colorSpace = 0;    // 1 sRGB, 2 gray, 3 Display P3, 4–6 extended ones
    std::uint16_t layout = 0;
    std::uint32_t rowBytes = 0;     // of the stored rows; 0 where the record does not say
    std::uint32_t orientation = 0;  // EXIF's, 1 to 8; 0 where the record does not say
    std::vector<Rectangle> slices;  // origin at the bottom left
    std::optional<Metrics> metrics;
    std::optional<Compositing> compositing;  // decoded pixels are without it
    std::string_view typeIdentifier;         // the file's type, for data; empty where there is none
    std::optional<Link> link;  // for Kind::link, and for data that another rendition holds
    std::optional<Compression> compression;  // of its own bitmap; nothing for all other kinds
    bool opaque = false;                     // the bitmap's stored alpha does not count
    Bytes payload;                           // as stored

    // Flags of the record.
    [[nodiscard]] bool isVectorBased() const { return (flags & 0x04U) != 0; }

    [[nodiscard]] bool isTemplate() const { return (flags & 0x08U) != 0; }

    // Whether it is a picture that an image name can stand for.
    [[nodiscard]] bool isPicture() const {
        return kind == Kind::bitmap || kind == Kind::link || kind == Kind::vector ||
               kind == Kind::imageFile;
    }
};

// A name, and the attributes that its renditions share.
struct Facet {
    std::string_view name;  // UTF-8 where the catalog is sound; '/' between name spaces
    std::vector<AttributeValue> attributes;
    std::uint16_t identifier = 0;
};

struct Appearance {
    std::string_view name;     // such as "UIAppearanceDark"
    std::uint16_t number = 0;  // as in Attribute::appearance
};

struct Header {
    std::uint32_t coreUIVersion = 0;
    std::uint32_t storageVersion = 0;
    std::uint32_t renditionCount = 0;  // as stored; the true one is that of Catalog::renditions
    std::uint32_t schemaVersion = 0;
    std::uint32_t keySemantics = 0;
    std::string_view coreUIText;
    std::string_view tool;
    // Empty where the catalog has no extended metadata.
    std::string_view platform;           // such as "ios"
    std::string_view deploymentVersion;  // such as "12.0"
};

// Decoded pixels: premultiplied, 8 bits a component, tight rows, top row first.
struct Picture {
    enum class Format { bgra, grayAlpha };

    Format format = Format::bgra;
    std::uint32_t width = 0;   // pixels
    std::uint32_t height = 0;  // pixels
    std::vector<std::uint8_t> pixels;

    [[nodiscard]] static constexpr std::size_t bytesPerPixel(Format format) {
        return format == Format::bgra ? 4 : 2;
    }
};

struct Color {
    std::uint32_t colorSpace = 0;
    std::vector<double> components;  // gray and alpha, or red, green, blue and alpha; straight
};

struct IconSize {
    std::uint32_t width = 0;   // points
    std::uint32_t height = 0;  // points
    std::uint16_t index = 0;   // as in Attribute::dimension2
};

// What a catalog may ask of the machine. Beyond these a rendition is refused before anything of its
// size is allocated.
struct Limits {
    std::size_t maxFileBytes = std::size_t{2} * 1024 * 1024 * 1024;
    std::size_t maxPixels = std::size_t{16384} * 16384;     // of one picture
    std::size_t maxBytes = std::size_t{512} * 1024 * 1024;  // of one decoded picture or file
};

class Catalog {
  public:
    // Maps the file. A file that another process cuts short while it is mapped ends this process,
    // as with every mapping.
    [[nodiscard]] static Result<Catalog> open(const std::string& path, const Limits& limits = {});
    // Reads from memory, which must outlive the catalog. `path` is for problems' texts only.
    [[nodiscard]] static Result<Catalog> fromBytes(Bytes bytes, std::string path = {},
                                                   const Limits& limits = {});

    Catalog(Catalog&&) noexcept;
    Catalog& operator=(Catalog&&) noexcept;
    ~Catalog();

    [[nodiscard]] const Header& header() const;
    // The attribute of each slot of a key, with the catalog's own corrections applied.
    [[nodiscard]] const std::vector<std::uint16_t>& keyFormat() const;
    // In the catalog's order: ascending bytes of the name.
    [[nodiscard]] const std::vector<Facet>& facets() const;
    // In the catalog's order: ascending bytes of the key.
    [[nodiscard]] const std::vector<Rendition>& renditions() const;
    [[nodiscard]] const std::vector<Appearance>& appearances() const;
    // What is wrong with tables that a reader can do without, and with single entries that were
    // left out: one clause each.
    [[nodiscard]] const std::vector<std::string>& warnings() const;

    // The value in the rendition's key, 0 when the key format has no such attribute.
    [[nodiscard]] std::uint16_t attribute(const Rendition& rendition, Attribute attribute) const;
    // The facet of that name, null if there is none. Owned by the catalog.
    [[nodiscard]] const Facet* facet(std::string_view name) const;
    // The facet that the rendition belongs to, null if it has none. Owned by the catalog.
    [[nodiscard]] const Facet* facetOf(const Rendition& rendition) const;
    // Indices into renditions(), ascending.
    [[nodiscard]] std::vector<std::size_t> renditionsOf(const Facet& facet) const;

    // The pixels of a bitmap, an atlas or a link. A problem for all other kinds, for the
    // compressions that nobody has described, and for damaged data.
    [[nodiscard]] Result<Picture> decode(const Rendition& rendition) const;
    // The file of a vector, an image file or data, decompressed. Stacks have one too, an empty one.
    [[nodiscard]] Result<std::vector<std::uint8_t>> file(const Rendition& rendition) const;
    [[nodiscard]] Result<Color> color(const Rendition& rendition) const;
    [[nodiscard]] Result<std::vector<IconSize>> iconSizes(const Rendition& rendition) const;

    // The rendition that a link leads to: the atlas whose pixels it shows a part of, or the data.
    // Null when the catalog has none; the rendition itself when it is no link. The target may be a
    // link in turn, which decode() and file() follow. Owned by the catalog.
    [[nodiscard]] const Rendition* source(const Rendition& rendition) const;
    // The part of an atlas' decoded picture that a link shows. A problem when it lies outside.
    [[nodiscard]] static Result<Picture> part(const Picture& atlas, const Link& link);

  private:
    struct Contents;
    explicit Catalog(std::unique_ptr<Contents> contents);

    std::unique_ptr<Contents> contents_;
};

// Premultiplied R, G, B, A from a picture of either format, `width * 4` bytes a row.
[[nodiscard]] std::vector<std::uint8_t> toRgba(const Picture& picture);
// The same as B, G, R, A.
[[nodiscard]] std::vector<std::uint8_t> toBgra(const Picture& picture);

// "LZFSE", "deepmap2" and so on; "compression 77" for a number without a name.
[[nodiscard]] std::string compressionName(Compression compression);
// "bitmap", "link" and so on.
[[nodiscard]] std::string_view kindName(Kind kind);
// "universal", "phone" and so on; the number for one without a name.
[[nodiscard]] std::string idiomName(std::uint16_t idiom);
// The code as text: "ARGB", "GA8"; its trailing blanks left out, bytes that do not print as '?'.
[[nodiscard]] std::string pixelFormatName(std::uint32_t pixelFormat);

}  // namespace velmoranth::catalog
