#include "tests/support/catalog/bitmap_writer.h"
#include "tests/support/catalog/lzfse_writer.h"

#include <cstdlib>
#include <map>

namespace velmoranth::tests {

namespace {

constexpr std::size_t kTileSide = 256;

bool isFirst(const DeepmapOptions& options) {
    return options.version == DeepmapVersion::first;
}

// One component of every pixel as what the predictions start from.
struct Component {
    std::size_t width = 0;
    std::vector<int> values;

    [[nodiscard]] int at(std::size_t x, std::size_t y) const { return values[y * width + x]; }
};

// Gray, or brightness and the two differences of colour.
std::vector<Component> componentsOf(const StoredPixels& stored, const DeepmapOptions& options) {
    const bool color = stored.bytesPerPixel > 2;
    std::vector<Component> components(color ? 3 : 1,
                                      Component{.width = stored.width, .values = {}});
    const int divisor = options.chromaScale == 0 ? 1 : 2;
    for (std::size_t i = 0; i < stored.width * stored.rows; ++i) {
        const std::uint8_t* const pixel = stored.bytes.data() + i * stored.bytesPerPixel;
        if (!color) {
            components[0].values.push_back(pixel[0]);
            continue;
        }
        const int orange = pixel[0] - pixel[2];
        const int base = pixel[2] + orange / 2;
        const int green = pixel[1] - base;
        components[0].values.push_back(base + green / 2);
        components[1].values.push_back(orange / divisor);
        components[2].values.push_back(green / divisor);
    }
    return components;
}

int foretold(const std::vector<Component>& components, std::size_t component, std::size_t x,
             std::size_t y, unsigned predictor) {
    const Component& values = components[component];
    const int left = x > 0 ? values.at(x - 1, y) : 0;
    const int above = y > 0 ? values.at(x, y - 1) : 0;
    switch (predictor) {
        case 1: {
            if (x == 0) {
                return above;
            }
            const Component& first = components[0];
            const int corner = y > 0 ? first.at(x - 1, y - 1) : 0;
            const int aboveOfFirst = y > 0 ? first.at(x, y - 1) : 0;
            return std::abs(aboveOfFirst - corner) <= std::abs(first.at(x - 1, y) - corner) ? left
                                                                                            : above;
        }
        case 2:
            return left;
        case 3:
            return above;
        case 4:
            return x == 0 ? above : (left + above + 1) / 2;
        default:
            return 0;
    }
}

ByteVector planes(const StoredPixels& stored, const DeepmapOptions& options) {
    ByteWriter alphas;
    ByteWriter predictors;
    ByteWriter high;
    ByteWriter low;
    const std::vector<Component> components = componentsOf(stored, options);
    for (std::size_t y = 0; y < stored.rows; ++y) {
        const std::uint8_t predictor = options.predictors[y % options.predictors.size()];
        predictors.u8(predictor);
        for (std::size_t x = 0; x < stored.width; ++x) {
            alphas.u8(stored.pixel(x, y).back());
            for (std::size_t i = 0; i < components.size(); ++i) {
                const int rest = components[i].at(x, y) - foretold(components, i, x, y, predictor);
                const unsigned value =
                    static_cast<unsigned>(std::abs(rest)) << 1U | (rest < 0 ? 1U : 0U);
                high.u8(value >> 8U);
                low.u8(value & 0xFFU);
            }
        }
    }
    ByteWriter writer;
    if (stored.bytesPerPixel % 2 == 0) {
        writer.bytes(alphas.take());
    }
    writer.bytes(predictors.take()).bytes(high.take()).bytes(low.take());
    const std::size_t multiple = isFirst(options) ? 8 : 16;
    return writer.zeros((multiple - writer.size() % multiple) % multiple).take();
}

class Segments {
  public:
    explicit Segments(SegmentCompression compression) : compression_(compression) {}

    void add(const ByteVector& bytes) {
        const bool asLzvn = compression_ == SegmentCompression::lzvn ||
                            (compression_ == SegmentCompression::alternating && count_ % 2 == 1);
        const ByteVector segment = asLzvn ? lzvn(bytes) : lzfse(bytes);
        writer_.u32(segment.size()).bytes(segment);
        ++count_;
    }

    [[nodiscard]] ByteVector take() { return writer_.take(); }

  private:
    SegmentCompression compression_;
    std::size_t count_ = 0;
    ByteWriter writer_;
};

// What segments hold, in their order: tiles in the first version, bands in the second.
std::vector<StoredPixels> partsOf(const StoredPixels& stored, std::size_t partWidth,
                                  std::size_t partRows) {
    std::vector<StoredPixels> parts;
    for (std::size_t y = 0; y < stored.rows; y += partRows) {
        for (std::size_t x = 0; x < stored.width; x += partWidth) {
            parts.push_back(stored.part(x, y, std::min(partWidth, stored.width - x),
                                        std::min(partRows, stored.rows - y)));
        }
    }
    return parts;
}

// The palette, and segments of indexes with or without a plane of alpha before them.
ByteVector indexedBody(const StoredPixels& stored, const DeepmapOptions& options) {
    const bool alphaApart = isFirst(options) || options.paletteType != 4;
    std::map<ByteVector, std::size_t> known;
    ByteWriter colors;
    Segments segments(options.compression);
    const std::size_t side = isFirst(options) ? kTileSide : std::max(stored.width, stored.rows);
    for (const StoredPixels& part : partsOf(stored, side, side)) {
        ByteWriter alphas;
        ByteWriter indexes;
        for (std::size_t i = 0; i < part.width * part.rows; ++i) {
            const auto pixel = part.pixel(i % part.width, i / part.width);
            ByteVector color(pixel.begin(), pixel.end());
            // Alpha that is apart leaves junk in the palette.
            color[3] = alphaApart ? 0x5A : color[3];
            const auto [entry, isNew] = known.try_emplace(color, known.size());
            if (isNew) {
                colors.bytes(color);
            }
            alphas.u8(pixel[3]);
            indexes.u8(entry->second);
        }
        ByteWriter all;
        if (alphaApart) {
            all.bytes(alphas.take());
        }
        segments.add(all.bytes(indexes.take()).take());
    }
    ByteWriter writer;
    writer.u16(known.size()).u16(isFirst(options) ? 0 : options.paletteType);
    return writer.bytes(colors.take()).bytes(segments.take()).take();
}

ByteVector body(const StoredPixels& stored, const DeepmapOptions& options) {
    if (options.method == 1) {
        return stored.bytes;
    }
    if (options.method == 4) {
        return indexedBody(stored, options);
    }
    Segments segments(options.compression);
    const std::size_t width = isFirst(options) ? kTileSide : stored.width;
    const std::size_t rows = isFirst(options) ? kTileSide : options.segmentRows;
    for (const StoredPixels& part : partsOf(stored, width, rows)) {
        segments.add(options.method == 2 ? planes(part, options) : part.bytes);
    }
    return segments.take();
}

}  // namespace

ByteVector deepmap(const StoredPixels& stored, const DeepmapOptions& options) {
    ByteWriter inner;
    inner.text(isFirst(options) ? "dmap" : "dmp2").u8(options.method).u8(options.chromaScale);
    inner.u8(10).u8(options.pixelCode);
    if (!isFirst(options)) {
        inner.u16(stored.width).u16(options.segmentRows);
    }
    inner.bytes(body(stored, options));
    ByteWriter writer;
    writer.u32(isFirst(options) ? 5 : 1).u32(options.pixelCode).u64(inner.size());
    return writer.bytes(inner.take()).take();
}

}  // namespace velmoranth::tests
