#include "desktop/catalog/bands.h"

#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/failure.h"

namespace velmoranth::catalog {

namespace {

constexpr std::size_t kBandHeaderSize = 20;  // bytes

Result<Band> readBand(ByteReader& reader) {
    const bool marked = reader.expect("KCBC");
    reader.skip(8);
    Band band;
    band.rows = reader.u32();
    band.data = reader.take(reader.u32());
    if (!reader.ok()) {
        return failure("the bitmap ends within a band");
    }
    if (!marked) {
        return failure("a band of the bitmap does not begin as one");
    }
    return band;
}

Result<std::vector<Band>> readBands(ByteReader& reader, std::size_t count, std::uint32_t height) {
    if (count > reader.remaining() / kBandHeaderSize) {
        return failure("the bitmap is too short for its " + std::to_string(count) + " bands");
    }
    std::vector<Band> bands;
    bands.reserve(count);
    std::uint64_t rows = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const Result<Band> band = readBand(reader);
        if (!band) {
            return tl::unexpected(band.error());
        }
        if (band->rows == 0) {
            return failure("a band of the bitmap has no rows");
        }
        rows += band->rows;
        bands.push_back(*band);
    }
    if (rows != height) {
        return failure("the bitmap's bands have " + std::to_string(rows) + " rows, not " +
                       std::to_string(height));
    }
    return bands;
}

}  // namespace

Result<std::vector<Band>> bandsOf(Bytes payload, const BitmapHeader& header, std::uint32_t height) {
    ByteReader reader(payload);
    reader.skip(kBitmapHeaderSize);
    Result<std::vector<Band>> bands;
    if (header.banded) {
        bands = readBands(reader, header.lengthOrBands, height);
    } else {
        bands->push_back(Band{.rows = height, .data = reader.take(header.lengthOrBands)});
    }
    if (bands && !reader.ok()) {
        return failure("the bitmap is shorter than it says");
    }
    if (bands && reader.remaining() > 0) {
        return failure("the bitmap is longer than it says");
    }
    return bands;
}

}  // namespace velmoranth::catalog
