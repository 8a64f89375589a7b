// The wallpaper: dusk over water, in broad soft bands. It stays below the brightness at which white
// labels need a dark shadow, and has nothing small in it, so that icons and labels are what the eye
// finds.
//
// Drawn pixel by pixel, not by cairo: a gradient this long shows bands in 8 bits, so each pixel is
// dithered.
#include "simulator/artwork/artwork.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

namespace velmoranth::simulator {
namespace {

struct Colour {
    float red, green, blue;
};

struct Stop {
    float position;
    Colour colour;
};

constexpr Colour mix(Colour a, Colour b, float share) {
    return {a.red + (b.red - a.red) * share, a.green + (b.green - a.green) * share,
            a.blue + (b.blue - a.blue) * share};
}

constexpr std::array kSky{
    Stop{0.00F, {36, 50, 90}},    Stop{0.28F, {70, 84, 136}},   Stop{0.50F, {134, 110, 150}},
    Stop{0.66F, {184, 132, 144}}, Stop{1.00F, {168, 126, 136}},
};

// A hill line: height of its edge as a share of the picture, two waves, its tint and how much of it
// covers.
struct Hill {
    float base;
    float firstHeight, firstLength, firstStart;
    float secondHeight, secondLength, secondStart;
    Colour tint;
    float cover;
};

constexpr std::array kHills{
    Hill{0.60F, 0.040F, 1.10F, 0.10F, 0.012F, 0.43F, 0.30F, {112, 96, 142}, 0.55F},
    Hill{0.70F, 0.045F, 1.30F, 0.62F, 0.014F, 0.51F, 0.05F, {84, 80, 128}, 0.70F},
    Hill{0.80F, 0.050F, 1.60F, 0.25F, 0.012F, 0.60F, 0.55F, {56, 62, 108}, 0.80F},
    Hill{0.905F, 0.045F, 1.40F, 0.85F, 0.010F, 0.47F, 0.20F, {34, 44, 84}, 0.88F},
};

// Through the stops by a cubic whose slope at a stop is that towards its neighbours, so that none
// shows as a line.
float throughStops(float y, float Colour::* component) {
    std::size_t last = 1;
    while (last + 1 < kSky.size() && y > kSky[last].position) {
        ++last;
    }
    const std::size_t first = last - 1;
    const auto slopeAt = [component](std::size_t stop) {
        const std::size_t before = stop == 0 ? 0 : stop - 1;
        const std::size_t after = std::min(stop + 1, kSky.size() - 1);
        return (kSky[after].colour.*component - kSky[before].colour.*component) /
               (kSky[after].position - kSky[before].position);
    };
    const float span = kSky[last].position - kSky[first].position;
    const float t = (y - kSky[first].position) / span;
    const float rest = 1 - t;
    return (1 + 2 * t) * rest * rest * (kSky[first].colour.*component) +
           t * t * (3 - 2 * t) * (kSky[last].colour.*component) +
           span * t * rest * (rest * slopeAt(first) - t * slopeAt(last));
}

Colour skyAt(float y) {
    return {throughStops(y, &Colour::red), throughStops(y, &Colour::green),
            throughStops(y, &Colour::blue)};
}

float wave(float x, float length, float start) {
    return std::sin((x / length + start) * 6.2831853F);
}

float edgeOf(const Hill& hill, float x) {
    return hill.base + hill.firstHeight * wave(x, hill.firstLength, hill.firstStart) +
           hill.secondHeight * wave(x, hill.secondLength, hill.secondStart);
}

// An ordered pattern of 8 by 8 thresholds in 0..1, each value once.
float threshold(unsigned x, unsigned y) {
    unsigned value = 0;
    for (unsigned bit = 0; bit < 3; ++bit) {
        const unsigned across = (x >> bit) & 1U;
        const unsigned down = (y >> bit) & 1U;
        value |= ((across ^ down) << (5 - 2 * bit)) | (down << (4 - 2 * bit));
    }
    return (static_cast<float>(value) + 0.5F) / 64.0F;
}

std::array<float, 64> thresholdTable() {
    std::array<float, 64> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        table[i] = threshold(i % 8, i / 8);
    }
    return table;
}

// What does not change from row to row, in pixels: made once, so that a pixel costs a few
// multiplications.
struct HillLine {
    const Hill* hill;
    std::vector<float> edge;  // y of the hill's edge in each column
    float top;                // the smallest of them
};

struct Scene {
    std::vector<HillLine> hills;
    std::vector<float>
        glowAcross;  // each column's squared distance from the glow, in squared reaches
    float tall;
};

constexpr Colour kGlow{244, 186, 158};
constexpr float kGlowAcross = 0.66F;  // of the width
constexpr float kGlowDown = 0.62F;    // of the height
constexpr float kGlowReach = 0.5F;    // of the height
constexpr float kGlowStrength = 0.30F;
constexpr float kMistReach = 0.16F;  // of the height
constexpr float kMistStrength = 0.45F;

float squared(float value) {
    return value * value;
}

// Distances across are in shares of the height too, so that the hills keep their slope on every
// screen.
Scene makeScene(std::size_t width, std::size_t height) {
    Scene scene{{}, std::vector<float>(width), static_cast<float>(height)};
    const float glowAt = static_cast<float>(width) * kGlowAcross;
    for (std::size_t x = 0; x < width; ++x) {
        scene.glowAcross[x] = squared((static_cast<float>(x) - glowAt) / (scene.tall * kGlowReach));
    }
    for (const Hill& hill : kHills) {
        HillLine line{&hill, std::vector<float>(width), 0};
        for (std::size_t x = 0; x < width; ++x) {
            line.edge[x] = edgeOf(hill, static_cast<float>(x) / scene.tall) * scene.tall;
        }
        line.top = *std::ranges::min_element(line.edge);
        scene.hills.push_back(std::move(line));
    }
    return scene;
}

void paintSky(std::span<Colour> row, const Scene& scene, float y) {
    const float share = (y + 0.5F) / scene.tall;
    const Colour sky = skyAt(share);
    const float glowDown = squared((share - kGlowDown) / kGlowReach);
    for (std::size_t x = 0; x < row.size(); ++x) {
        const float distance = std::min(1.0F, scene.glowAcross[x] + glowDown);
        row[x] = mix(sky, kGlow, squared(1 - distance) * kGlowStrength);
    }
}

void paintHill(std::span<Colour> row, const HillLine& line, float y, float tall) {
    const float perMist = 1 / (tall * kMistReach);
    for (std::size_t x = 0; x < row.size(); ++x) {
        const float below = y - line.edge[x];
        // One pixel of the edge is shared, which is antialiasing enough for a slope this shallow.
        const float inside = std::clamp(below + 1, 0.0F, 1.0F);
        // Mist: a hill is thinnest at its foot.
        const float mist = std::clamp(below * perMist, 0.0F, 1.0F) * kMistStrength;
        row[x] = mix(row[x], line.hill->tint, inside * line.hill->cover * (1 - mist));
    }
}

void storeRow(std::span<const Colour> row, std::span<const float, 8> thresholds,
              std::uint8_t* out) {
    for (std::size_t x = 0; x < row.size(); ++x) {
        const float lift = thresholds[x % 8];
        out[x * 4] = static_cast<std::uint8_t>(static_cast<int>(row[x].blue + lift));
        out[x * 4 + 1] = static_cast<std::uint8_t>(static_cast<int>(row[x].green + lift));
        out[x * 4 + 2] = static_cast<std::uint8_t>(static_cast<int>(row[x].red + lift));
        out[x * 4 + 3] = 255;
    }
}

}  // namespace

std::vector<std::uint8_t> drawWallpaper(int widthPixels, int heightPixels) {
    if (widthPixels <= 0 || heightPixels <= 0 || widthPixels > kMaximumWallpaperPixels ||
        heightPixels > kMaximumWallpaperPixels) {
        return {};
    }
    const auto width = static_cast<std::size_t>(widthPixels);
    const auto height = static_cast<std::size_t>(heightPixels);
    const Scene scene = makeScene(width, height);
    const std::array<float, 64> thresholds = thresholdTable();
    std::vector<Colour> row(width);
    std::vector<std::uint8_t> bgra(width * height * 4);
    for (std::size_t y = 0; y < height; ++y) {
        const auto down = static_cast<float>(y);
        paintSky(row, scene, down);
        for (const HillLine& line : scene.hills) {
            if (down + 1 > line.top) {
                paintHill(row, line, down, scene.tall);
            }
        }
        storeRow(row, std::span(thresholds).subspan(y % 8 * 8).first<8>(), &bgra[y * width * 4]);
    }
    return bgra;
}

}  // namespace velmoranth::simulator
