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
void readResiduals(const std::uint8_t* high, const std::uint8_t* low, Value* rests,
                   std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto stored = static_cast<std::uint16_t>(low[i] | high[i] << 8);
        const auto magnitude = static_cast<std::uint16_t>(stored >> 1);
        const auto sign = static_cast<std::uint16_t>(0 - (stored & 1));
        rests[i] = static_cast<Value>(static_cast<std::uint16_t>((magnitude ^ sign) - sign));
    }
}

// Adds what was foretold to what is left of each value of a row. `above` is the row above, zero at
// the top. What is left has the components of a pixel side by side, Step of them; rows have all of
// a component and then the next, which is what the processor's vectors want.
using Predict = void (*)(const Value* rests, const Value* above, Value* row, std::size_t width);

template <std::size_t Step>
void predictNothing(const Value* rests, const Value* /*above*/, Value* row, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        for (std::size_t i = 0; i < Step; ++i) {
            row[i * width + x] = rests[x * Step + i];
        }
    }
}

template <std::size_t Step>
void predictLeft(const Value* rests, const Value* /*above*/, Value* row, std::size_t width) {
    std::array<Value, Step> left{};
    for (std::size_t x = 0; x < width; ++x) {
        for (std::size_t i = 0; i < Step; ++i) {
            left[i] = wrapped(left[i] + rests[x * Step + i]);
            row[i * width + x] = left[i];
        }
    }
}

template <std::size_t Step>
void predictAbove(const Value* rests, const Value* above, Value* row, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        for (std::size_t i = 0; i < Step; ++i) {
            row[i * width + x] = wrapped(above[i * width + x] + rests[x * Step + i]);
        }
    }
}

// The first pixel, where there is none on its left, from the one above.
template <std::size_t Step>
std::array<Value, Step> firstFromAbove(const Value* rests, const Value* above, Value* row,
                                       std::size_t width) {
    std::array<Value, Step> first{};
    for (std::size_t i = 0; i < Step; ++i) {
        first[i] = wrapped(above[i * width] + rests[i]);
        row[i * width] = first[i];
    }
    return first;
}

// The pixel on the left or the one above, whichever changed less seen from the one above left; the
// first component decides for all.
template <std::size_t Step>
void predictNearest(const Value* rests, const Value* above, Value* row, std::size_t width) {
    std::array<Value, Step> left = firstFromAbove<Step>(rests, above, row, width);
    for (std::size_t x = 1; x < width; ++x) {
        const Value corner = above[x - 1];
        const int fromAbove = std::abs(int{wrapped(above[x] - corner)});
        const int fromLeft = std::abs(int{wrapped(left[0] - corner)});
        const bool isLeft = fromAbove <= fromLeft;
        for (std::size_t i = 0; i < Step; ++i) {
            const Value nearest = isLeft ? left[i] : above[i * width + x];
            left[i] = wrapped(nearest + rests[x * Step + i]);
            row[i * width + x] = left[i];
        }
    }
}

template <std::size_t Step>
void predictMean(const Value* rests, const Value* above, Value* row, std::size_t width) {
    std::array<Value, Step> left = firstFromAbove<Step>(rests, above, row, width);
    for (std::size_t x = 1; x < width; ++x) {
        for (std::size_t i = 0; i < Step; ++i) {
            const Value sum = wrapped(left[i] + above[i * width + x] + 1);
            left[i] = wrapped(sum / 2 + rests[x * Step + i]);
            row[i * width + x] = left[i];
        }
    }
}

// By the number that a row has for its predictor.
template <std::size_t Step>
constexpr std::array<Predict, 5> kPredictors{
    predictNothing<Step>, predictNearest<Step>, predictLeft<Step>,
    predictAbove<Step>,   predictMean<Step>,
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
        const Value orange = wrapped(row[width + x] * Factor);
        const Value green = wrapped(row[2 * width + x] * Factor);
        const Value base = wrapped(row[x] - green / 2);
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
    std::vector<Value> values(3 * count);
    Value* const rests = values.data();
    Value* above = rests + count;
    Value* row = above + count;
    for (std::size_t y = 0; y < shape.rows; ++y) {
        if (predictors[y] >= steps.predictors.size()) {
            return false;
        }
        readResiduals(high.data() + y * count, low.data() + y * count, rests, count);
        steps.predictors[predictors[y]](rests, above, row, shape.width);
        const std::uint8_t* const alpha =
            shape.hasAlpha ? planes.data() + y * shape.width : opaque.data();
        steps.write(row, alpha, pixels.data() + y * stride, shape.width);
        std::swap(above, row);
    }
    return true;
}

}  // namespace velmoranth::catalog
