#include "device/emulator/without_keys.h"

#include <cstdint>
#include <string>

namespace velmoranth::emulator {
namespace {

constexpr std::uint32_t kRegister = 0x3e0;
constexpr std::uint32_t kNothing = 0xd503201f;
constexpr std::uint32_t kJump = 0xd61f0000;
constexpr std::uint32_t kCall = 0xd63f0000;

// pacia, autda, xpaci ... and those with a zero in place of a modifier.
bool signsOrAuthenticates(std::uint32_t word) {
    return (word & 0xffff0000U) == 0xdac10000U;
}

bool jumps(std::uint32_t word) {  // braa, brab, braaz, brabz
    return (word & 0xfffff800U) == 0xd71f0800U || (word & 0xfffff81fU) == 0xd61f081fU;
}

bool calls(std::uint32_t word) {  // blraa, blrab, blraaz, blrabz
    return (word & 0xfffff800U) == 0xd73f0800U || (word & 0xfffff81fU) == 0xd63f081fU;
}

bool loads(std::uint32_t word) {  // ldraa, ldrab
    return (word & 0xff200400U) == 0xf8200400U;
}

}  // namespace

void switchKeysOff(const Image& image) {
    const Section* const text = image.section("__text");
    for (std::uint64_t offset = 0; text != nullptr && offset + 4 <= text->size; offset += 4) {
        auto& word = image.at<std::uint32_t>(text->address + offset);
        if (signsOrAuthenticates(word)) {
            word = kNothing;
        } else if (jumps(word)) {
            word = kJump | (word & kRegister);
        } else if (calls(word)) {
            word = kCall | (word & kRegister);
        } else if (loads(word)) {
            throw LoadError("an instruction that loads and authenticates, at " +
                            std::to_string(text->address + offset));
        }
    }
}

}  // namespace velmoranth::emulator
