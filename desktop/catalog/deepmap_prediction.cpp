#include "desktop/catalog/deepmap_prediction.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

namespace velmoranth::catalog {

namespace {

// The format's own arithmetic: 16 bits that wrap around, divisions that truncate towards zero.
using Value = std::int16_t;

constexpr Value wrapped(int value) {
    return static_cast<Value>(value);
}

// What is left of each value is stored as its magnitude above a sign bit.
void readResiduals(const std::uint8_t* high, const std::uint8_t* low, Value* row,
                   std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto stored = static_cast<std::uint16_t>(low[i] | high[i] << 8);
        const auto magnitude = static_cast<std::uint16_t>(stored >> 1);
        const auto sign = static_cast<std::uint16_t>(0 - (stored & 1));
        row[i] = static_cast<Value>(static_cast<std::uint16_t>((magnitude ^ sign) - sign));
    }
}

// Adds to each value of a row what was foretold for it. `above` is the row above, zero at the top.
// The values of a pixel lie side by side, Step of them.
using Predict = void (*)(const Value* above, Value* row, std::size_t width);

void predictNothing(const Value* /*above*/, Value* /*row*/, std::size_t /*width*/) {}

template <std::size_t Step>
void predictLeft(const Value* /*above*/, Value* row, std::size_t width) {
    for (std::size_t i = Step; i < width * Step; ++i) {
        row[i] = wrapped(row[i] + row[i - Step]);
    }
}

template <std::size_t Step>
void predictAbove(const Value* above, Value* row, std::size_t width) {
    for (std::size_t i = 0; i < width * Step; ++i) {
        row[i] = wrapped(row[i] + above[i]);
    }
}

// The pixel on the left or the one above, whichever changed less seen from the one above left; the
// first value of a pixel decides for all.
template <std::size_t Step>
void predictNearest(const Value* above, Value* row, std::size_t width) {
    predictAbove<Step>(above, row, 1);
    for (std::size_t i = Step; i < width * Step; i += Step) {
        const Value corner = above[i - Step];
        const int fromAbove = std::abs(int{wrapped(above[i] - corner)});
        const int fromLeft = std::abs(int{wrapped(row[i - Step] - corner)});
        const Value* const nearest = fromAbove <= fromLeft ? row + i - Step : above + i;
        for (std::size_t j = 0; j < Step; ++j) {
            row[i + j] = wrapped(row[i + j] + nearest[j]);
        }
    }
}

template <std::size_t Step>
void predictMean(const Value* above, Value* row, std::size_t width) {
    predictAbove<Step>(above, row, 1);
    for (std::size_t i = Step; i < width * Step; ++i) {
        row[i] = wrapped(row[i] + wrapped(row[i - Step] + above[i] + 1) / 2);
    }
}

// By the number that a row has for its predictor.
template <std::size_t Step>
constexpr std::array<Predict, 5> kPredictors{
    predictNothing, predictNearest<Step>, predictLeft<Step>, predictAbove<Step>, predictMean<Step>,
};

constexpr std::uint32_t toByte(int value) {
    return static_cast<std::uint32_t>(std::clamp(value, 0, 255));
}

// From decoded values to a picture's pixels.
using WriteRow = void (*)(const Value* row, const std::uint8_t* alpha, std::uint8_t* pixels,
                          std::size_t width);

void writeGray(const Value* row, const std::uint8_t* alpha, std::uint8_t* pixels,
               std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        const auto pixel =
            static_cast<std::uint16_t>(toByte(row[x]) | std::uint32_t{alpha[x]} << 8U);
        std::memcpy(pixels + 2 * x, &pixel, sizeof pixel);
    }
}

// Factor makes up for halved differences of colour.
template <int Factor>
void writeColor(const Value* row, const std::uint8_t* alpha, std::uint8_t* pixels,
                std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        const Value orange = wrapped(row[3 * x + 1] * Factor);
        const Value green = wrapped(row[3 * x + 2] * Factor);
        const Value base = wrapped(row[3 * x] - green / 2);
        const Value red = wrapped(base - orange / 2);
        const std::uint32_t pixel = toByte(wrapped(red + orange)) |
                                    toByte(wrapped(base + green)) << 8U | toByte(red) << 16U |
                                    std::uint32_t{alpha[x]} << 24U;
        std::memcpy(pixels + 4 * x, &pixel, sizeof pixel);
    }
}

struct Steps {
    std::array<Predict, 5> predictors;
    WriteRow write;
};

constexpr Steps kGray{kPredictors<1>, writeGray};
constexpr Steps kColor{kPredictors<3>, writeColor<1>};
constexpr Steps kHalvedColor{kPredictors<3>, writeColor<2>};

const Steps& stepsFor(const PlanesShape& shape) {
    if (shape.components == 1) {
        return kGray;
    }
    return shape.halvedChroma ? kHalvedColor : kColor;
}

}  // namespace

bool decodePlanes(Bytes planes, const PlanesShape& shape, std::span<std::uint8_t> pixels,
                  std::size_t stride) {
    const Steps& steps = stepsFor(shape);
    const std::size_t count = shape.width * shape.components;
    const Bytes predictors = planes.subspan(shape.alphaSize(), shape.rows);
    const Bytes high = planes.subspan(shape.alphaSize() + shape.rows, shape.valuesSize());
    const Bytes low = planes.subspan(shape.alphaSize() + shape.rows + shape.valuesSize());
    const std::vector<std::uint8_t> opaque(shape.hasAlpha ? 0 : shape.width, 255);
    std::vector<Value> rows(2 * count);
    Value* above = rows.data();
    Value* row = rows.data() + count;
    for (std::size_t y = 0; y < shape.rows; ++y) {
        if (predictors[y] >= steps.predictors.size()) {
            return false;
        }
        readResiduals(high.data() + y * count, low.data() + y * count, row, count);
        steps.predictors[predictors[y]](above, row, shape.width);
        const std::uint8_t* const alpha =
            shape.hasAlpha ? planes.data() + y * shape.width : opaque.data();
        steps.write(row, alpha, pixels.data() + y * stride, shape.width);
        std::swap(above, row);
    }
    return true;
}

}  // namespace velmoranth::catalog
