// Whether the address sanitizer is built in: it takes address space as it likes, and ends the
// process where there is none left, so that tests which limit memory tell nothing under it.
#pragma once

namespace velmoranth::tests {

#if defined(__SANITIZE_ADDRESS__)
#define VELMORANTH_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VELMORANTH_ADDRESS_SANITIZER 1
#endif
#endif

#if defined(VELMORANTH_ADDRESS_SANITIZER)
inline constexpr bool kAddressSanitizer = true;
#else
inline constexpr bool kAddressSanitizer = false;
#endif

}  // namespace velmoranth::tests
