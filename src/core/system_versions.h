// The values of kCFCoreFoundationVersionNumber that tell the systems apart.
#pragma once

namespace velmoranth::core {

// iOS 12 and nothing later: at most this value (that of 12.5).
inline constexpr double kNewestiOS12 = 1575.23;
// iOS 13 and later: at least this value (that of 13.0). A value between the two is neither.
inline constexpr double kOldestiOS13 = 1665.15;

}  // namespace velmoranth::core
