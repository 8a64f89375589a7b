// Weather conditions: one row a condition, put together from sun, moon, cloud and what falls from
// it. In hundredths of the picture's side.
#include "simulator/artwork/blank_picture.h"
#include "simulator/artwork/toolkit_artwork.h"

#include <array>

namespace velmoranth::simulator {
namespace {

// What a condition is drawn with.
struct Sky {
    Ink cloud;
    Ink backCloud;
    Ink sun;
    Ink moon;
    Ink rain;
    Ink snow;
};

constexpr Sky kOnColor{.cloud = {0xFFFFFF},
                       .backCloud = {0xD3DFEA},
                       .sun = {0xFFD84A},
                       .moon = {0xFBF1CC},
                       .rain = {0x9FDCFF},
                       .snow = {0xFFFFFF}};
constexpr Sky kOnWhite{.cloud = {0x66707C},
                       .backCloud = {0xA6AEB8},
                       .sun = {0xF2A516},
                       .moon = {0x6A6FA8},
                       .rain = {0x2E8BD6},
                       .snow = {0x7FA5C6}};

struct Place {
    double x, y, size;
};

// Its middle at (50, 50), 80 wide.
Pen& cloudOutline(Pen& pen) {
    return pen.path(
        "M29 74 C18 74 10 66.5 10 57 C10 48.5 16.5 41.6 25 40.8 C28.5 31 38 25 48.5 25 "
        "C61.5 25 72 33.5 74.4 44.6 C83.5 45.4 90 51.4 90 59.4 C90 67.6 83.6 74 75 74 Z");
}

// What follows is drawn about the place, at its size, until the next `restore`.
void goTo(Pen& pen, Place place) {
    pen.save();
    pen.shift(place.x - 50, place.y - 50);
    pen.grow(place.size, 50, 50);
}

void cloud(Pen& pen, Place place, Ink ink) {
    goTo(pen, place);
    cloudOutline(pen).fill(ink);
    pen.restore();
}

// A cloud, and what is behind it and keeps a gap around it.
template <typename Draw>
void cloudBefore(Pen& pen, Place place, Ink ink, const Draw& drawBehind) {
    constexpr double kGap = 1.13;
    pen.save();
    pen.shift(place.x - 50, place.y - 50);
    pen.grow(place.size * kGap, 50, 50);
    cloudOutline(pen).clipAway();
    pen.grow(1 / (place.size * kGap), 50, 50);
    pen.shift(50 - place.x, 50 - place.y);
    drawBehind();
    pen.restore();
    cloud(pen, place, ink);
}

// Of its eight rays, counted clockwise from the top, only some where a cloud would leave stubs.
void sun(Pen& pen, Place place, Ink ink, int firstRay = 0, int rays = 8) {
    goTo(pen, place);
    pen.circle(50, 50, 20).fill(ink);
    for (int ray = firstRay; ray < firstRay + rays; ++ray) {
        pen.save();
        pen.turn(ray * 45.0, 50, 50);
        pen.line(50, 11, 50, 20).stroke(ink, 6.5);
        pen.restore();
    }
    pen.restore();
}

void moon(Pen& pen, Place place, Ink ink) {
    goTo(pen, place);
    pen.path("M43 17 C22 23 11 48 23 67 C36 88 66 88 80 66 C56 72 34 50 43 17 Z")
        .fillRounded(ink, 4);
    pen.restore();
}

constexpr Place kLowCloud{50, 58, 1};
constexpr Place kRainCloud{50, 40, 0.95};

void clearDay(Pen& pen, const Sky& sky) {
    sun(pen, {50, 50, 1.1}, sky.sun);
}

void clearNight(Pen& pen, const Sky& sky) {
    moon(pen, {52, 50, 1}, sky.moon);
    pen.star(70, 30, 4, 9, 3).fill(sky.moon);
    pen.star(84, 48, 4, 5.5, 2).fill(sky.moon);
}

void mostlySunny(Pen& pen, const Sky& sky) {
    cloudBefore(pen, {72, 73, 0.53}, sky.cloud, [&] { sun(pen, {44, 44, 0.96}, sky.sun, 4, 7); });
}

void partlyCloudyDay(Pen& pen, const Sky& sky) {
    cloudBefore(pen, kLowCloud, sky.cloud, [&] { sun(pen, {63, 36, 0.82}, sky.sun, -1, 4); });
}

void partlyCloudyNight(Pen& pen, const Sky& sky) {
    cloudBefore(pen, kLowCloud, sky.cloud, [&] { moon(pen, {70, 33, 0.66}, sky.moon); });
}

void cloudy(Pen& pen, const Sky& sky) {
    cloudBefore(pen, {44, 58, 0.9}, sky.cloud, [&] { cloud(pen, {66, 40, 0.68}, sky.backCloud); });
}

void rain(Pen& pen, const Sky& sky) {
    cloud(pen, kRainCloud, sky.cloud);
    for (const double x : {31.0, 46.0, 61.0, 76.0}) {
        pen.line(x, 72, x - 8, 91).stroke(sky.rain, 5.5);
    }
}

void showers(Pen& pen, const Sky& sky) {
    cloudBefore(pen, {46, 46, 0.85}, sky.cloud, [&] { sun(pen, {68, 30, 0.68}, sky.sun, -1, 5); });
    for (const double x : {34.0, 50.0, 66.0}) {
        pen.line(x, 75, x - 6, 89).stroke(sky.rain, 5.5);
    }
}

void thunderstorm(Pen& pen, const Sky& sky) {
    pen.save();
    pen.path("M55 44 L34 73 H49 L42 96 L70 62 H54 L63 44 Z").clipAway();
    cloud(pen, kRainCloud, sky.cloud);
    pen.restore();
    pen.path("M54.5 50 L40 70 H52.5 L47 88 L64.5 65 H51 L58.5 50 Z").fillRounded(sky.sun, 2);
    pen.line(30, 73, 23, 88).line(76, 73, 69, 88).stroke(sky.rain, 5);
}

void snow(Pen& pen, const Sky& sky) {
    cloud(pen, kRainCloud, sky.cloud);
    for (const auto& at :
         {std::array{27.0, 78.0}, std::array{50.0, 86.0}, std::array{73.0, 78.0}}) {
        pen.turnRound(3, 60, at[0], at[1], [&](int) {
            pen.line(at[0], at[1] - 8.5, at[0], at[1] + 8.5).stroke(sky.snow, 3.6);
        });
    }
}

void fog(Pen& pen, const Sky& sky) {
    cloud(pen, {50, 36, 0.85}, sky.cloud);
    pen.line(18, 72, 66, 72).line(76, 72, 82, 72).stroke(sky.backCloud, 5.5);
    pen.line(26, 84, 34, 84).line(44, 84, 84, 84).stroke(sky.backCloud, 5.5);
}

void wind(Pen& pen, const Sky& sky) {
    pen.path("M10 41 H60 C79 41 79 15 61 15 C52.5 15 48 21 48.5 27.5").stroke(sky.cloud, 6.5);
    pen.path("M20 56 H74 C94 56 94 83 75 83 C67 83 62 78 62 71").stroke(sky.cloud, 6.5);
    pen.path("M10 71 H46").stroke(sky.backCloud, 6.5);
}

struct Condition {
    std::string_view name;
    void (*draw)(Pen& pen, const Sky& sky);
};

constexpr std::array kConditions{
    Condition{"clear-day", clearDay},
    Condition{"clear-night", clearNight},
    Condition{"mostly-sunny", mostlySunny},
    Condition{"partly-cloudy-day", partlyCloudyDay},
    Condition{"partly-cloudy-night", partlyCloudyNight},
    Condition{"cloudy", cloudy},
    Condition{"rain", rain},
    Condition{"showers", showers},
    Condition{"thunderstorm", thunderstorm},
    Condition{"snow", snow},
    Condition{"fog", fog},
    Condition{"wind", wind},
};

constexpr auto kConditionNames = namesOf(kConditions);

}  // namespace

FurniturePicture drawWeatherCondition(std::string_view name, double sidePoints, double scale,
                                      std::int64_t style) {
    const Condition* condition = rowNamed(kConditions, name);
    if (condition == nullptr) {
        return {};
    }
    const Sky& sky =
        style == static_cast<std::int64_t>(WeatherStyle::onWhite) ? kOnWhite : kOnColor;
    return drawnPicture(sidePoints, sidePoints, scale, 100, 100,
                        [&](Pen& pen) { condition->draw(pen, sky); });
}

std::span<const std::string_view> weatherConditionNames() {
    return kConditionNames;
}

}  // namespace velmoranth::simulator
