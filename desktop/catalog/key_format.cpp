#include "desktop/catalog/key_format.h"

#include "desktop/catalog/byte_reader.h"
#include "desktop/catalog/failure.h"

#include <algorithm>
#include <string>

namespace velmoranth::catalog {

namespace {

constexpr std::uint32_t kMaxSlots = 256;  // there are some thirty attributes

}  // namespace

Result<KeyFormat> KeyFormat::parse(Bytes block) {
    ByteReader reader(block);
    if (!reader.expect("tmfk")) {
        return failure("the key format is damaged");
    }
    reader.skip(4);
    const std::uint32_t count = reader.u32();
    if (!reader.ok() || count > reader.remaining() / 4) {
        return failure("the key format is truncated");
    }
    if (count == 0 || count > kMaxSlots) {
        return failure("the key format has " + std::to_string(count) + " slots");
    }
    std::vector<std::uint16_t> attributes;
    attributes.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t attribute = reader.u32();
        if (attribute > 0xFFFF) {
            return failure("the key format has an attribute " + std::to_string(attribute));
        }
        attributes.push_back(static_cast<std::uint16_t>(attribute));
    }
    return KeyFormat(std::move(attributes));
}

bool KeyFormat::correct(Bytes block) {
    if (block.size() / 4 < attributes_.size()) {
        return false;
    }
    ByteReader reader(block);
    for (std::uint16_t& attribute : attributes_) {
        const std::uint32_t corrected = reader.u32();
        if (corrected != 0 && corrected <= 0xFFFF) {
            attribute = static_cast<std::uint16_t>(corrected);
        }
    }
    return true;
}

std::uint16_t KeyFormat::value(Bytes key, std::uint16_t attribute) const {
    const auto slot = std::ranges::find(attributes_, attribute);
    const auto start = static_cast<std::size_t>(slot - attributes_.begin()) * 2;
    if (slot == attributes_.end() || key.size() < start + 2) {
        return 0;
    }
    return ByteReader(key.subspan(start, 2)).u16();
}

std::optional<std::vector<std::uint8_t>> KeyFormat::key(
    const std::vector<AttributeValue>& values) const {
    std::vector<std::uint8_t> key(keySize());
    for (const auto& [attribute, value] : values) {
        const auto slot = std::ranges::find(attributes_, attribute);
        if (slot == attributes_.end() && value != 0) {
            return std::nullopt;
        }
        if (slot != attributes_.end()) {
            const auto start = static_cast<std::size_t>(slot - attributes_.begin()) * 2;
            key[start] = static_cast<std::uint8_t>(value & 0xFFU);
            key[start + 1] = static_cast<std::uint8_t>(value >> 8U);
        }
    }
    return key;
}

}  // namespace velmoranth::catalog
