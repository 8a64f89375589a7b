// The tags by which effects and view replacements mark the views that they add.
#pragma once

namespace velmoranth::imaging {

inline constexpr int ThemedIconTag = 546;    // an icon view after its shadow treatment
inline constexpr int IconShadowTag = 478;    // the shadow view behind an icon
inline constexpr int IconOverlayTag = 547;   // looked for, set on nothing
inline constexpr int FolderImageTag = 2322;  // the folder image view; looked for by nothing
inline constexpr int FolderRemovalTag =
    2232;  // looked for by removeFolderfrom:, which so never finds the folder image
inline constexpr int ReflectionTag = 777;  // looked for, set on nothing

}  // namespace velmoranth::imaging
