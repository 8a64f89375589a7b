#include "device/emulator/unwind.h"

#include "device/emulator/pac.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <string_view>
#include <vector>

extern "C" void __register_frame(void* records);

namespace velmoranth::emulator {
namespace {

// An entry's encoding.
constexpr std::uint32_t kModeMask = 0x0f000000;
constexpr std::uint32_t kFrameless = 0x02000000;
constexpr std::uint32_t kFrame = 0x04000000;
constexpr std::uint32_t kHasLsda = 0x40000000;
constexpr unsigned kPersonalityShift = 28;
constexpr unsigned kIntegerPairs = 5;  // x19 and x20 to x27 and x28: bits 0 to 4
constexpr unsigned kVectorPairs = 4;   // d8 and d9 to d14 and d15: bits 8 to 11
constexpr std::uint32_t kSavedMask = 0xfff;
constexpr unsigned kStackSizeShift = 12;  // of a frameless function, in units of 16 bytes

// DWARF's numbers for registers and instructions.
constexpr std::uint8_t kX19 = 19;
constexpr std::uint8_t kFramePointer = 29;
constexpr std::uint8_t kLink = 30;
constexpr std::uint8_t kStackPointer = 31;
constexpr std::uint8_t kD8 = 72;
constexpr std::uint8_t kDefineCfa = 0x0c;
constexpr std::uint8_t kOffset = 0x80;
constexpr std::uint8_t kOffsetExtended = 0x05;
constexpr std::uint8_t kSignedReturnAddress =
    0x2d;  // from here on, with the caller's stack pointer

constexpr const pac::Rule& kReturns =
    pac::kRules[static_cast<std::size_t>(pac::Kind::returnAddress)];

struct Function {
    std::uint32_t start = 0;
    std::uint32_t encoding = 0;
};

struct UnwindInfo {
    std::vector<Function> functions;              // in order of their addresses
    std::map<std::uint32_t, std::uint32_t> lsda;  // function -> its table of handlers
    std::vector<std::uint64_t> personalities;     // encodings count them from 1
    std::uint32_t end = 0;                        // of the last function
};

// The section: a header, encodings that are common, personalities, and an index of pages with
// entries, either regular (address, encoding) or compressed into four bytes.
class UnwindInfoReader {
  public:
    UnwindInfoReader(const Image& image, const Section& section)
        : image_(image), start_(section.address) {}

    UnwindInfo read() {
        const std::uint32_t personalities = word(12);
        for (std::uint32_t i = 0; i < word(16); ++i) {
            const auto& slot = image_.at<std::uint64_t>(word(personalities + i * 4));
            info_.personalities.push_back(pac::authentic(pac::Kind::personality, slot, &slot,
                                                         "number " + std::to_string(i + 1)));
        }
        const std::uint32_t index = word(20);
        const std::uint32_t entries = word(24);
        for (std::uint32_t i = 0; i + 1 < entries; ++i) {
            readIndexEntry(index + i * kIndexEntrySize);
        }
        info_.end = entries == 0 ? 0 : word(index + (entries - 1) * kIndexEntrySize);
        return std::move(info_);
    }

  private:
    static constexpr std::uint32_t kIndexEntrySize = 12;
    static constexpr std::uint32_t kRegularPage = 2;

    [[nodiscard]] std::uint32_t word(std::uint32_t offset) const {
        return image_.at<std::uint32_t>(start_ + offset);
    }

    void readIndexEntry(std::uint32_t entry) {
        const std::uint32_t lsdaEnd = word(entry + kIndexEntrySize + 8);
        for (std::uint32_t lsda = word(entry + 8); lsda < lsdaEnd; lsda += 8) {
            info_.lsda[word(lsda)] = word(lsda + 4);
        }
        if (const std::uint32_t page = word(entry + 4); page != 0) {
            readPage(page, word(entry));
        }
    }

    void readPage(std::uint32_t page, std::uint32_t firstFunction) {
        const std::uint32_t entries = page + (word(page + 4) & 0xffffU);
        const std::uint32_t count = word(page + 4) >> 16U;
        for (std::uint32_t i = 0; i < count; ++i) {
            if (word(page) == kRegularPage) {
                info_.functions.push_back({word(entries + i * 8), word(entries + i * 8 + 4)});
            } else {
                const std::uint32_t entry = word(entries + i * 4);
                info_.functions.push_back(
                    {firstFunction + (entry & 0xffffffU), encoding(page, entry >> 24U)});
            }
        }
    }

    // An index below the number of common encodings is one of those; others are the page's own.
    [[nodiscard]] std::uint32_t encoding(std::uint32_t page, std::uint32_t index) const {
        const std::uint32_t common = word(8);
        return index < common ? word(word(4) + index * 4)
                              : word(page + (word(page + 8) & 0xffffU) + (index - common) * 4);
    }

    const Image& image_;
    std::uint64_t start_;
    UnwindInfo info_;
};

// Writes DWARF's records: what functions have in common (CIE), and each function (FDE).
class FrameWriter {
  public:
    FrameWriter(const Image& image, const UnwindInfo& info) : image_(image), info_(info) {}

    std::vector<std::uint8_t> write() {
        for (std::size_t i = 0; i < info_.functions.size(); ++i) {
            const Function& function = info_.functions[i];
            const std::uint32_t end =
                i + 1 < info_.functions.size() ? info_.functions[i + 1].start : info_.end;
            const std::uint32_t mode = function.encoding & kModeMask;
            if (mode == kFrameless && (function.encoding & kSavedMask) != 0) {
                throw LoadError("a function without a frame that saves registers");
            }
            // A function without an entry is a leaf, which nothing passes through. Those of the
            // mode for DWARF have records in the library.
            if (mode == kFrame || mode == kFrameless) {
                writeFunction(function, end);
            }
        }
        if (const Section* const section = image_.section("__eh_frame")) {
            copyRecords(*section);
        }
        number(std::uint32_t{0});
        return std::move(bytes_);
    }

  private:
    void byte(unsigned value) { bytes_.push_back(static_cast<std::uint8_t>(value)); }

    template <class T>
    void number(T value) {
        const auto* const raw = reinterpret_cast<const std::uint8_t*>(&value);
        bytes_.insert(bytes_.end(), raw, raw + sizeof value);
    }

    void uleb(std::uint32_t value) {
        for (; value >= 0x80; value >>= 7U) {
            byte((value & 0x7fU) | 0x80U);
        }
        byte(value);
    }

    // A record begins with its length, of all that follows.
    std::size_t open() {
        number(std::uint32_t{0});
        return bytes_.size();
    }

    void close(std::size_t start) {
        while ((bytes_.size() - start) % 8 != 4) {
            byte(0);  // no operation
        }
        const auto length = static_cast<std::uint32_t>(bytes_.size() - start);
        std::memcpy(&bytes_[start - sizeof length], &length, sizeof length);
    }

    std::size_t commonRecord(std::uint64_t personality) {
        const auto [entry, isNew] = commonRecords_.try_emplace(personality, bytes_.size());
        if (isNew) {
            const std::size_t start = open();
            number(std::uint32_t{0});
            byte(1);  // version
            for (const char letter : std::string_view(personality != 0 ? "zPLR" : "zR")) {
                byte(static_cast<unsigned char>(letter));
            }
            if (pac::isArm64e() && kReturns.key == pac::Key::ib) {
                byte('B');  // return addresses are signed with that key
            }
            byte(0);
            byte(1);     // code is counted in bytes
            byte(0x78);  // data in units of -8 bytes
            uleb(kLink);
            if (personality != 0) {  // absolute pointers: the routine, tables, functions
                uleb(11);
                byte(0);
                number(personality);
                byte(0);
            } else {
                uleb(1);
            }
            byte(0);
            close(start);
        }
        return entry->second;
    }

    void writeFunction(const Function& function, std::uint32_t end) {
        const std::uint32_t routine = (function.encoding >> kPersonalityShift) & 3U;
        if (routine > info_.personalities.size()) {
            throw LoadError("a personality routine that the library does not have");
        }
        const std::uint64_t personality = routine == 0 ? 0 : info_.personalities[routine - 1];
        const std::size_t common = commonRecord(personality);
        const std::size_t start = open();
        number(static_cast<std::uint32_t>(start - common));
        number(image_.base() + function.start);
        number(std::uint64_t{end - function.start});
        if (personality != 0) {
            uleb(8);
            number(lsdaOf(function));
        } else {
            uleb(0);
        }
        if ((function.encoding & kModeMask) == kFrame) {
            writeFrame(function.encoding);
        } else {
            byte(kDefineCfa);
            uleb(kStackPointer);
            uleb(((function.encoding >> kStackSizeShift) & 0xfffU) * 16);
        }
        close(start);
    }

    // The library's own records, for what has no compact form. They become part of these: the
    // unwinder takes for granted that records that are registered apart do not lie between others.
    void copyRecords(const Section& section) {
        std::uint64_t next = section.address;
        while (next < section.address + section.size) {
            const std::uint64_t start = next;
            const auto length = image_.at<std::uint32_t>(start);
            if (length == 0) {
                return;
            }
            next = start + sizeof length + length;
            if (image_.at<std::uint32_t>(start + 4) == 0) {
                checkCommonRecord(start);
            } else {
                copyRecord(start + 8, next);
            }
        }
    }

    // Its place, then: version, "zR", units, return address, and that places are relative.
    void checkCommonRecord(std::uint64_t start) const {
        constexpr std::uint8_t kKnown[] = {1, 'z', 'R', 0, 1, 0x78, kLink, 1, 0x10};
        for (std::size_t i = 0; i < sizeof kKnown; ++i) {
            if (image_.at<std::uint8_t>(start + 8 + i) != kKnown[i]) {
                throw LoadError("frame records of an unknown form");
            }
        }
    }

    // Where the function is from there on, its size, nothing more, and instructions.
    void copyRecord(std::uint64_t place, std::uint64_t end) {
        constexpr std::uint64_t kInstructions = 17;
        const std::size_t common = commonRecord(0);
        const std::size_t start = open();
        number(static_cast<std::uint32_t>(start - common));
        number(image_.base() + place + image_.at<std::uint64_t>(place));
        number(image_.at<std::uint64_t>(place + 8));
        uleb(0);
        byte(kDefineCfa);
        uleb(kStackPointer);
        uleb(0);
        for (std::uint64_t i = place + kInstructions; i < end; ++i) {
            byte(image_.at<std::uint8_t>(i));
        }
        close(start);
    }

    [[nodiscard]] std::uint64_t lsdaOf(const Function& function) const {
        const auto entry = info_.lsda.find(function.start);
        const bool has = (function.encoding & kHasLsda) != 0 && entry != info_.lsda.end();
        return has ? image_.base() + entry->second : 0;
    }

    // x29 and x30 lie below the caller's stack, and below them the pairs of saved registers.
    void writeFrame(std::uint32_t encoding) {
        if (pac::isArm64e()) {
            byte(kSignedReturnAddress);
        }
        byte(kDefineCfa);
        uleb(kFramePointer);
        uleb(16);
        byte(kOffset | kFramePointer);
        uleb(2);
        byte(kOffset | kLink);
        uleb(1);
        std::uint32_t slot = 3;
        for (unsigned i = 0; i < 2 * kIntegerPairs; ++i) {
            if ((encoding & (1U << (i / 2))) != 0) {
                byte(kOffset | (kX19 + i));
                uleb(slot++);
            }
        }
        for (unsigned i = 0; i < 2 * kVectorPairs; ++i) {
            if ((encoding & (0x100U << (i / 2))) != 0) {
                byte(kOffsetExtended);
                uleb(kD8 + i);
                uleb(slot++);
            }
        }
    }

    const Image& image_;
    const UnwindInfo& info_;
    std::vector<std::uint8_t> bytes_;
    std::map<std::uint64_t, std::size_t> commonRecords_;  // by personality routine
};

}  // namespace

void registerFrames(const Image& image) {
    const Section* const section = image.section("__unwind_info");
    if (section == nullptr) {
        return;
    }
    const UnwindInfo info = UnwindInfoReader(image, *section).read();
    // The unwinder keeps reading them.
    auto* const records = new std::vector<std::uint8_t>(FrameWriter(image, info).write());
    __register_frame(records->data());
}

}  // namespace velmoranth::emulator
