// The pictures that interface screens are made of where no theme has one: interface glyphs, the
// toolkit's own named images, settings tiles, weather conditions, the switch's parts, the mark of
// success, and the two live icons (calendar and clock).
//
// Results are as `artwork.h` has them: premultiplied BGRA, top row first, points times scale to the
// nearest pixel. Sizes are in points. A size or a scale that is not a positive number, a side
// beyond kMaximumFurniturePixels, and a name that is in no list here give a picture without
// pixels. Names are compared exactly. All functions are pure and may be called from any thread.
#pragma once

#include "simulator/artwork/artwork.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace velmoranth::simulator {

/// An interface glyph in a square of `pointSize` points, in one colour (0xRRGGBB) on nothing. The
/// glyph is centred and fills the square up to a margin of about a tenth.
FurniturePicture drawGlyph(std::string_view name, double pointSize, double scale,
                           std::uint32_t rgb);
std::span<const std::string_view> glyphNames();

/// An image that the toolkit asks for by name, in its own size and colour: tint blue in bars, gray
/// in tables and fields.
FurniturePicture drawToolkitImage(std::string_view name, double scale);
std::span<const std::string_view> toolkitImageNames();

/// Side in points of a settings row's icon.
inline constexpr double kSettingsIconSide = 29;

/// The tile of a settings row: coloured, in the icon shape, with its glyph in white.
FurniturePicture drawSettingsIcon(std::string_view key, double scale);
std::span<const std::string_view> settingsIconNames();

/// What a weather picture lies on, numbered as the platform's styles are.
enum class WeatherStyle : std::int64_t {
    onColor = 0,  ///< white clouds, for a sky
    onWhite = 1,  ///< dark clouds, for a plain list
};

/// The sign of a weather condition in a square. A style that is none of the two counts as onColor.
FurniturePicture drawWeatherCondition(std::string_view name, double sidePoints, double scale,
                                      std::int64_t style);
std::span<const std::string_view> weatherConditionNames();

/// A switch in points: its track, its knob and the gap between the two.
inline constexpr double kSwitchWidth = 51;
inline constexpr double kSwitchHeight = 31;
inline constexpr double kSwitchKnobSide = 28;
inline constexpr double kSwitchKnobInset = 1.5;

/// How far in points the knob's picture reaches beyond the knob on every side, for the shadow.
inline constexpr double kSwitchKnobShadowReach = 11;

/// The knob, round and white, in the middle of a square that is larger by the shadow's reach on
/// every side. The picture goes, at its own size, where its middle is the knob's middle.
FurniturePicture drawSwitchKnob(double scale);

/// The track without the knob. Up to system 12 a switch that is off is a ring around white, from 13
/// on a gray plate; the green of one that is on differs as well.
FurniturePicture drawSwitchTrack(bool isOn, int systemMajor, double scale);

/// A check mark on a dark plate that lets a little through, in a square of `side` points.
FurniturePicture drawSuccessPlate(double side, double scale);

/// The calendar icon without text: opaque, square, not masked.
FurniturePicture drawCalendarBase(double side, double scale);

/// The clock icon without hands, which the platform asks for as "ClockIconBackgroundSquare":
/// opaque, square, not masked; the pixels of `drawClockFace(pixels)`.
FurniturePicture drawClockBackground(double side, double scale);

/// The hands alone, on nothing: what lies over the clock's background.
FurniturePicture drawClockHands(double side, double scale, int hour, int minute, int second);

/// The clock icon with its hands at a time of day; hours and minutes past their circle go on
/// around it.
FurniturePicture drawClockFace(double side, double scale, int hour, int minute, int second);

}  // namespace velmoranth::simulator
