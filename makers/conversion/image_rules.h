// Interface images: masks, effects, folders, badges, docks, dots, the icons of the settings.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"

#include "makers/conversion/plan.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace velmoranth::makers {

// A picture of a fixed name, without scale, device and ending.
struct FixedPicture {
    std::string_view folder;
    std::string_view base;
};

// Those that makeImages() looks for.
[[nodiscard]] std::span<const FixedPicture> fixedPictures();

// Whether it is one that icons of the settings are brought in, besides where they are looked for.
[[nodiscard]] bool isSettingsFolder(std::string_view folder);

// Every mask of icons whose alpha cuts becomes a gray one that hides the same, and the one without
// a scale is there.
void makeMasks(Draft& draft);

// Whether icons are cut, once makeMasks() has gone over the theme.
[[nodiscard]] bool hasMask(const Draft& draft);

// The names that are looked for, of the largest picture where only others are there.
void makeImages(Draft& draft);

struct SampleRange {
    std::uint8_t least;
    std::uint8_t greatest;
};

// Of the samples by which a mask hides: the first one of each pixel. Nothing for no picture, and
// for one of more or less than 8 bits a channel.
[[nodiscard]] std::optional<SampleRange> firstSamplesOf(const platform::Data& picture);

// The gray mask that hides what the picture's alpha leaves out: white hides, black shows. Nothing
// for a picture that is one already, or whose alpha cuts nothing. A problem for no picture.
[[nodiscard]] desktop::Result<std::optional<platform::Data>> grayMaskOf(
    const platform::Data& picture);

}  // namespace velmoranth::makers
