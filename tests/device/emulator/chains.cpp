#include "device/emulator/chains.h"

#include "device/emulator/opcode_reader.h"

#include <cstring>
#include <set>
#include <string>
#include <utility>

namespace velmoranth::emulator {
namespace {

constexpr std::uint64_t kPage = 0x1000;
constexpr std::uint64_t kWord = 8;

std::uint64_t bitsOf(std::uint64_t value, unsigned lowest, unsigned count) {
    return value >> lowest & ((std::uint64_t{1} << count) - 1);
}

// A number of 43 bits with a sign, and the topmost 8 bits of the pointer.
std::uint64_t unsignedTarget(std::uint64_t raw) {
    constexpr unsigned kBits = 43;
    const std::uint64_t low = bitsOf(raw, 0, kBits);
    const std::uint64_t extended =
        low | (bitsOf(raw, kBits - 1, 1) != 0 ? ~std::uint64_t{0} << kBits : 0);
    return (extended & ((std::uint64_t{1} << 56U) - 1)) | bitsOf(raw, kBits, 8) << 56U;
}

class ChainDecoder {
  public:
    explicit ChainDecoder(const MachOFile& file) : file_(file), reader_(file.bindings(), "chains") {
        if (!file.rebases().empty() || !file.lazyBindings().empty()) {
            throw LoadError("fix-ups of other processors beside chains");
        }
    }

    std::vector<ChainedPointer> decode() {
        while (!reader_.atEnd()) {
            const std::uint8_t opcode = reader_.byte();
            if (opcode == 0x00) {
                break;
            }
            decode(opcode);
        }
        if (!announced_ || imports_.size() > *announced_) {
            throw LoadError("more imports than are announced");
        }
        return std::move(pointers_);
    }

  private:
    void decode(std::uint8_t opcode) {
        const std::uint8_t immediate = opcode & kImmediateMask;
        switch (opcode & kOpcodeMask) {
            case 0x10:
                current_.ordinal = immediate;
                return;
            case 0x20:
                current_.ordinal = static_cast<int>(reader_.uleb());
                return;
            case 0x30:  // a special library, as a negative number of four bits
                current_.ordinal = immediate == 0 ? 0 : immediate - 16;
                return;
            case 0x40:
                current_.name = reader_.text();
                return;
            case 0x50:
                kind_ = immediate;
                return;
            case 0x60:
                current_.addend = reader_.sleb();
                return;
            case 0x70:
                start_ = {immediate, reader_.uleb()};
                return;
            case 0x90:
                addImport();
                return;
            case 0xd0:
                if (immediate == 0) {
                    announced_ = reader_.uleb();
                    return;
                }
                if (immediate == 1) {
                    readChain();
                    return;
                }
                [[fallthrough]];
            default:
                reader_.refuse(opcode);
        }
    }

    void addImport() {
        constexpr std::uint8_t kPointer = 1;
        if (current_.name.empty() || kind_ != kPointer) {
            throw LoadError("an import that lacks its name or its kind");
        }
        imports_.push_back(current_);
    }

    void readChain() {
        if (!start_ || start_->first >= file_.segments().size()) {
            throw LoadError("a chain that begins in no segment");
        }
        const Segment& segment = file_.segments()[start_->first];
        std::uint64_t offset = start_->second;
        const std::uint64_t page = offset / kPage;
        if (!segment.isForData) {
            throw LoadError("a chain in " + segment.name + ", which is not for data");
        }
        if (!pages_.insert({start_->first, page}).second) {
            throw LoadError("two chains in a page of " + segment.name);
        }
        for (std::uint64_t distance = 1; distance != 0; offset += distance * kWord) {
            if (offset / kPage != page || offset % kWord != 0 ||
                offset + kWord > segment.contents.size()) {
                throw LoadError("a chain that leaves its page in " + segment.name);
            }
            std::uint64_t raw = 0;
            std::memcpy(&raw, &segment.contents[offset], sizeof raw);
            add(segment.address + offset, raw);
            distance = bitsOf(raw, 51, 11);
        }
    }

    void add(std::uint64_t address, std::uint64_t raw) {
        ChainedPointer pointer;
        pointer.address = address;
        if (bitsOf(raw, 63, 1) != 0) {
            pointer.signing =
                Signing{static_cast<std::uint8_t>(bitsOf(raw, 49, 2)), bitsOf(raw, 48, 1) != 0,
                        static_cast<std::uint16_t>(bitsOf(raw, 32, 16))};
        }
        pointer.isImport = bitsOf(raw, 62, 1) != 0;
        if (pointer.isImport) {
            const std::uint64_t index = bitsOf(raw, 0, 16);
            if (index >= imports_.size()) {
                throw LoadError("a pointer to an import that there is not: " +
                                std::to_string(index));
            }
            pointer.import = imports_[index];
        } else {
            pointer.target = pointer.signing ? bitsOf(raw, 0, 32) : unsignedTarget(raw);
        }
        pointers_.push_back(std::move(pointer));
    }

    const MachOFile& file_;
    OpcodeReader reader_;
    Binding current_;
    std::uint8_t kind_ = 0;
    std::optional<std::uint64_t> announced_;
    std::optional<std::pair<std::uint8_t, std::uint64_t>> start_;  // segment, offset
    std::set<std::pair<std::uint8_t, std::uint64_t>> pages_;
    std::vector<Binding> imports_;
    std::vector<ChainedPointer> pointers_;
};

}  // namespace

std::vector<ChainedPointer> chainedPointersOf(const MachOFile& file) {
    return ChainDecoder(file).decode();
}

}  // namespace velmoranth::emulator
