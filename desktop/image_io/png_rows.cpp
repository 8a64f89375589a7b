#include "desktop/image_io/png_rows.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace velmoranth::desktop::image_io {

namespace {

std::uint8_t average(std::uint8_t left, std::uint8_t up) {
    return static_cast<std::uint8_t>((left + up) / 2);
}

// The neighbour nearest to left + up - upLeft; left before up before upLeft.
std::uint8_t paeth(std::uint8_t left, std::uint8_t up, std::uint8_t upLeft) {
    const int toLeft = std::abs(up - upLeft);
    const int toUp = std::abs(left - upLeft);
    const int toUpLeft = std::abs(left + up - 2 * upLeft);
    const std::uint8_t nearer = toUp <= toUpLeft ? up : upLeft;
    return toLeft <= toUp && toLeft <= toUpLeft ? left : nearer;
}

std::uint8_t wrapped(int value) {
    return static_cast<std::uint8_t>(value);
}

void removeFilter(PngFilter filter, std::uint8_t* row, const std::uint8_t* above, std::size_t size,
                  std::size_t pixelBytes) {
    const std::size_t first = std::min(pixelBytes, size);  // bytes without a left neighbour
    switch (filter) {
        case PngFilter::none:
            break;
        case PngFilter::sub:
            for (std::size_t i = first; i < size; ++i) {
                row[i] = wrapped(row[i] + row[i - pixelBytes]);
            }
            break;
        case PngFilter::up:
            for (std::size_t i = 0; i < size; ++i) {
                row[i] = wrapped(row[i] + above[i]);
            }
            break;
        case PngFilter::average:
            for (std::size_t i = 0; i < first; ++i) {
                row[i] = wrapped(row[i] + above[i] / 2);
            }
            for (std::size_t i = first; i < size; ++i) {
                row[i] = wrapped(row[i] + average(row[i - pixelBytes], above[i]));
            }
            break;
        case PngFilter::paeth:
            for (std::size_t i = 0; i < first; ++i) {
                row[i] = wrapped(row[i] + above[i]);
            }
            for (std::size_t i = first; i < size; ++i) {
                row[i] =
                    wrapped(row[i] + paeth(row[i - pixelBytes], above[i], above[i - pixelBytes]));
            }
            break;
    }
}

}  // namespace

bool removeFilters(std::span<std::uint8_t> rows, std::size_t bytesPerRow, std::size_t pixelBytes) {
    const std::vector<std::uint8_t> zeroes(bytesPerRow);
    const std::uint8_t* above = zeroes.data();
    for (; rows.size() > bytesPerRow; rows = rows.subspan(bytesPerRow + 1)) {
        if (rows[0] >= kPngFilterCount) {
            return false;
        }
        std::uint8_t* row = rows.data() + 1;
        removeFilter(static_cast<PngFilter>(rows[0]), row, above, bytesPerRow, pixelBytes);
        above = row;
    }
    return true;
}

void applyFilter(PngFilter filter, std::span<const std::uint8_t> row,
                 std::span<const std::uint8_t> above, std::size_t pixelBytes,
                 std::span<std::uint8_t> target) {
    const std::size_t size = row.size();
    const std::size_t first = std::min(pixelBytes, size);
    switch (filter) {
        case PngFilter::none:
            std::copy(row.begin(), row.end(), target.begin());
            break;
        case PngFilter::sub:
            std::copy_n(row.begin(), first, target.begin());
            for (std::size_t i = first; i < size; ++i) {
                target[i] = wrapped(row[i] - row[i - pixelBytes]);
            }
            break;
        case PngFilter::up:
            for (std::size_t i = 0; i < size; ++i) {
                target[i] = wrapped(row[i] - above[i]);
            }
            break;
        case PngFilter::average:
            for (std::size_t i = 0; i < first; ++i) {
                target[i] = wrapped(row[i] - above[i] / 2);
            }
            for (std::size_t i = first; i < size; ++i) {
                target[i] = wrapped(row[i] - average(row[i - pixelBytes], above[i]));
            }
            break;
        case PngFilter::paeth:
            for (std::size_t i = 0; i < first; ++i) {
                target[i] = wrapped(row[i] - above[i]);
            }
            for (std::size_t i = first; i < size; ++i) {
                target[i] =
                    wrapped(row[i] - paeth(row[i - pixelBytes], above[i], above[i - pixelBytes]));
            }
            break;
    }
}

}  // namespace velmoranth::desktop::image_io
