// What a method's type encoding says of the values that the two calling conventions treat
// differently: numbers smaller than an int. On the phone the caller widens arguments and the callee
// results, and each may rely on the other; here neither does.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace velmoranth::emulator {

// The order is known to dispatch.S.
enum class SmallType : std::uint8_t {
    none = 0,
    boolean = 1,  // also the platform's BOOL where it is an unsigned char
    signedChar = 2,
    unsignedChar = 3,
    signedShort = 4,
    unsignedShort = 5,
};

struct SmallArgument {
    unsigned generalRegister = 0;
    SmallType type = SmallType::none;

    friend bool operator==(const SmallArgument&, const SmallArgument&) = default;
};

struct Signature {
    SmallType result = SmallType::none;
    std::vector<SmallArgument> smallArguments;
    // Where such an argument lies on the stack the conventions differ in its very place.
    bool isSmallArgumentOnStack = false;
};

// Receiver and selector are among the arguments of an encoding.
[[nodiscard]] Signature signatureOf(std::string_view encoding);

}  // namespace velmoranth::emulator
