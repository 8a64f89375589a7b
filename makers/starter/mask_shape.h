// The shape of the starter's icons, which its mask cuts and its other pictures keep to. Private to
// the folder.
#pragma once

namespace velmoranth::makers {

// Corner radius as a share of the icon's side: rounder than the platform's own.
inline constexpr double kCornerShare = 0.32;

}  // namespace velmoranth::makers
