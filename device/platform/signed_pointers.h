// What the compiler leaves to the source on processors that authenticate pointers (A12 and later).
// On others all of it is nothing: what goes in comes out.
#pragma once

#include <objc/runtime.h>

#if __has_feature(ptrauth_calls)
#include <ptrauth.h>
#endif

namespace velmoranth::device {

#if __has_feature(ptrauth_calls)

// Whether the library is the one for those processors.
inline constexpr bool kPointersAreSigned = true;

// A block that is handed to the phone. The compiler leaves the function of a block on the stack
// unsigned; those that lie in the library's data are signed there. A block that was copied before
// is not for here.
template <class Block>
[[nodiscard]] [[gnu::always_inline]] inline Block signedBlock(Block block) {
    struct Layout {
        void* isa;
        int flags;
        int reserved;
        void* function;
    };

    constexpr int kIsGlobal = 1 << 28;
    auto* const layout = reinterpret_cast<Layout*>(reinterpret_cast<void*>(block));
    if ((layout->flags & kIsGlobal) == 0) {
        layout->function = ptrauth_sign_unauthenticated(
            layout->function, ptrauth_key_function_pointer, &layout->function);
    }
    return block;
}

// A function that was handed out by code that may or may not have signed it: as one that may be
// called. Nothing for nothing.
[[nodiscard]] inline IMP signedAgain(IMP function) {
    if (function == nullptr) {
        return nullptr;
    }
    return ptrauth_sign_unauthenticated(ptrauth_strip(function, ptrauth_key_function_pointer),
                                        ptrauth_key_function_pointer, 0);
}

#else

inline constexpr bool kPointersAreSigned = false;

template <class Block>
[[nodiscard]] Block signedBlock(Block block) {
    return block;
}

[[nodiscard]] inline IMP signedAgain(IMP function) {
    return function;
}

#endif

}  // namespace velmoranth::device
