#include "device/emulator/fixups.h"

#include "device/emulator/opcode_reader.h"

namespace velmoranth::emulator {
namespace {

constexpr std::uint64_t kPointerSize = 8;

// Where the next pointer is written.
class Place {
  public:
    Place(const MachOFile& file, const char* what) : file_(file), what_(what) {}

    void set(std::uint8_t segment, std::uint64_t offset) {
        if (segment >= file_.segments().size()) {
            throw LoadError(std::string(what_) + " name a segment that there is not");
        }
        address_ = file_.segments()[segment].address + offset;
    }

    // Distances may be negative, as numbers that overflow.
    void skip(std::uint64_t distance) { address_ += distance; }

    // Goes on by a pointer.
    std::uint64_t take() {
        const std::uint64_t address = address_;
        for (const Segment& segment : file_.segments()) {
            if (address >= segment.address && segment.size >= kPointerSize &&
                address - segment.address <= segment.size - kPointerSize) {
                // A table that writes the same places again and again would take for ever.
                if (++taken_ > file_.memorySize()) {
                    throw LoadError(std::string(what_) + " are more than the library has places");
                }
                address_ += kPointerSize;
                return address;
            }
        }
        throw LoadError(std::string(what_) + " leave the library's memory");
    }

  private:
    const MachOFile& file_;
    const char* what_;
    std::uint64_t address_ = 0;
    std::uint64_t taken_ = 0;
};

class RebaseDecoder {
  public:
    explicit RebaseDecoder(const MachOFile& file)
        : reader_(file.rebases(), "rebases"), place_(file, "rebases") {}

    std::vector<std::uint64_t> decode() {
        while (!reader_.atEnd()) {
            const std::uint8_t opcode = reader_.byte();
            const std::uint8_t immediate = opcode & kImmediateMask;
            switch (opcode & kOpcodeMask) {
                case 0x00:
                    return std::move(addresses_);
                case 0x10:  // the kind: a pointer
                    break;
                case 0x20:
                    place_.set(immediate, reader_.uleb());
                    break;
                case 0x30:
                    place_.skip(reader_.uleb());
                    break;
                case 0x40:
                    place_.skip(immediate * kPointerSize);
                    break;
                case 0x50:
                    run(immediate, 0);
                    break;
                case 0x60:
                    run(reader_.uleb(), 0);
                    break;
                case 0x70:
                    run(1, reader_.uleb());
                    break;
                case 0x80: {
                    const std::uint64_t count = reader_.uleb();
                    run(count, reader_.uleb());
                    break;
                }
                default:
                    reader_.refuse(opcode);
            }
        }
        return std::move(addresses_);
    }

  private:
    void run(std::uint64_t count, std::uint64_t skip) {
        for (; count != 0; --count) {
            addresses_.push_back(place_.take());
            place_.skip(skip);
        }
    }

    OpcodeReader reader_;
    Place place_;
    std::vector<std::uint64_t> addresses_;
};

// In the lazy table every entry ends with a zero; in the other one that is the end.
enum class ZeroEnds { entry, table };

class BindingDecoder {
  public:
    BindingDecoder(const MachOFile& file, std::span<const std::uint8_t> opcodes, ZeroEnds zeroEnds)
        : reader_(opcodes, "bindings"), place_(file, "bindings"), zeroEnds_(zeroEnds) {}

    void decode(std::vector<Binding>& bindings) {
        while (!reader_.atEnd()) {
            const std::uint8_t opcode = reader_.byte();
            const std::uint8_t immediate = opcode & kImmediateMask;
            switch (opcode & kOpcodeMask) {
                case 0x00:
                    if (zeroEnds_ == ZeroEnds::table) {
                        return;
                    }
                    break;
                case 0x10:
                    current_.ordinal = immediate;
                    break;
                case 0x20:
                    current_.ordinal = static_cast<int>(reader_.uleb());
                    break;
                case 0x30:  // a special library, as a negative number of four bits
                    current_.ordinal = immediate == 0 ? 0 : immediate - 16;
                    break;
                case 0x40:
                    current_.name = reader_.text();
                    break;
                case 0x50:  // the kind: a pointer
                    break;
                case 0x60:
                    current_.addend = reader_.sleb();
                    break;
                case 0x70:
                    place_.set(immediate, reader_.uleb());
                    break;
                case 0x80:
                    place_.skip(reader_.uleb());
                    break;
                case 0x90:
                    run(bindings, 1, 0);
                    break;
                case 0xa0:
                    run(bindings, 1, reader_.uleb());
                    break;
                case 0xb0:
                    run(bindings, 1, immediate * kPointerSize);
                    break;
                case 0xc0: {
                    const std::uint64_t count = reader_.uleb();
                    run(bindings, count, reader_.uleb());
                    break;
                }
                default:
                    reader_.refuse(opcode);
            }
        }
    }

  private:
    void run(std::vector<Binding>& bindings, std::uint64_t count, std::uint64_t skip) {
        for (; count != 0; --count) {
            current_.address = place_.take();
            bindings.push_back(current_);
            place_.skip(skip);
        }
    }

    OpcodeReader reader_;
    Place place_;
    ZeroEnds zeroEnds_;
    Binding current_;
};

}  // namespace

std::vector<std::uint64_t> rebasesOf(const MachOFile& file) {
    return RebaseDecoder(file).decode();
}

std::vector<Binding> bindingsOf(const MachOFile& file) {
    std::vector<Binding> bindings;
    BindingDecoder(file, file.bindings(), ZeroEnds::table).decode(bindings);
    BindingDecoder(file, file.lazyBindings(), ZeroEnds::entry).decode(bindings);
    return bindings;
}

// A node of the tree is: the size of what it ends a name with, that (flags and an address), the
// number of its edges, and each edge's text and node.
std::uint64_t exportOf(const MachOFile& file, const std::string& name) {
    OpcodeReader reader(file.exports(), "exports");
    std::string_view rest = name;
    // Each step goes on in the name by a character at least.
    while (!reader.atEnd()) {
        const std::uint64_t terminalSize = reader.uleb();
        if (rest.empty()) {
            if (terminalSize == 0) {
                return 0;
            }
            reader.uleb();
            return reader.uleb();
        }
        reader.jump(reader.position() + terminalSize);
        const std::uint8_t edges = reader.byte();
        bool found = false;
        for (std::uint8_t edge = 0; edge < edges && !found; ++edge) {
            const std::string text = reader.text();
            const std::uint64_t node = reader.uleb();
            if (!text.empty() && rest.starts_with(text)) {
                rest.remove_prefix(text.size());
                reader.jump(node);
                found = true;
            }
        }
        if (!found) {
            return 0;
        }
    }
    return 0;
}

}  // namespace velmoranth::emulator
