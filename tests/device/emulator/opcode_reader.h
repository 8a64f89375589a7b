// Reads the tables of opcodes that a library has for its loader.
#pragma once

#include "device/emulator/load_error.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace velmoranth::emulator {

inline constexpr std::uint8_t kOpcodeMask = 0xf0;
inline constexpr std::uint8_t kImmediateMask = 0x0f;

// Reads opcodes and their operands; the end of the bytes within one is an error.
class OpcodeReader {
  public:
    OpcodeReader(std::span<const std::uint8_t> bytes, const char* what)
        : bytes_(bytes), what_(what) {}

    [[nodiscard]] bool atEnd() const { return next_ == bytes_.size(); }

    std::uint8_t byte() {
        if (atEnd()) {
            throw LoadError(std::string(what_) + " end within an entry");
        }
        return bytes_[next_++];
    }

    std::uint64_t uleb() {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            const std::uint8_t part = byte();
            value |= std::uint64_t{part & 0x7fU} << shift;
            if ((part & 0x80U) == 0) {
                return value;
            }
        }
        throw LoadError(std::string(what_) + " have a number of more than 64 bits");
    }

    // Negative numbers are stored with their sign repeated over all 64 bits here.
    std::int64_t sleb() {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            const std::uint8_t part = byte();
            value |= std::uint64_t{part & 0x7fU} << shift;
            if ((part & 0x80U) == 0) {
                const bool negative = (part & 0x40U) != 0 && shift + 7 < 64;
                return static_cast<std::int64_t>(
                    negative ? value | (~std::uint64_t{0} << (shift + 7)) : value);
            }
        }
        throw LoadError(std::string(what_) + " have a number of more than 64 bits");
    }

    std::string text() {
        std::string value;
        while (const std::uint8_t character = byte()) {
            value += static_cast<char>(character);
        }
        return value;
    }

    void jump(std::uint64_t offset) {
        if (offset >= bytes_.size()) {
            throw LoadError(std::string(what_) + " point behind their end");
        }
        next_ = offset;
    }

    [[nodiscard]] std::uint64_t position() const { return next_; }

    [[noreturn]] void refuse(std::uint8_t opcode) const {
        throw LoadError(std::string(what_) + " have an unknown opcode " + std::to_string(opcode));
    }

  private:
    std::span<const std::uint8_t> bytes_;
    const char* what_;
    std::size_t next_ = 0;
};

}  // namespace velmoranth::emulator
