#include "device/emulator/macho_file.h"

#include "device/emulator/load_error.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <utility>

namespace velmoranth::emulator {
namespace {

constexpr std::uint32_t kMagic64 = 0xfeedfacf;
constexpr std::uint32_t kCpuArm64 = 0x0100000c;
constexpr std::uint32_t kAnyArm64 = 0;
constexpr std::uint32_t kArm64e = 2;  // with capabilities in its upper bits since iOS 14
constexpr std::uint32_t kDynamicLibrary = 6;
constexpr std::uint64_t kHeaderSize = 32;
constexpr std::uint64_t kSegmentCommandSize = 72;
constexpr std::uint64_t kSectionSize = 80;
constexpr std::uint64_t kNameSize = 16;
constexpr std::uint64_t kMostMemory = 256U << 20U;

enum Command : std::uint32_t {
    kLoadDylib = 0x0c,
    kSegment64 = 0x19,
    kLoadWeakDylib = 0x80000018,
    kReexportDylib = 0x8000001f,
    kDyldInfo = 0x22,
    kDyldInfoOnly = 0x80000022,
    kChainedFixups = 0x80000034,
};

}  // namespace

MachOFile MachOFile::read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw LoadError("cannot open the file");
    }
    return MachOFile({std::istreambuf_iterator<char>(in), {}});
}

MachOFile::MachOFile(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {
    readHeader();
    const auto commands = at<std::uint32_t>(16);
    const std::uint64_t end = kHeaderSize + at<std::uint32_t>(20);
    std::uint64_t offset = kHeaderSize;
    for (std::uint32_t command = 0; command < commands; ++command) {
        const auto size = at<std::uint32_t>(offset + 4);
        if (size < 8 || offset + size > end) {
            throw LoadError("load command " + std::to_string(command) + " has no proper size");
        }
        readCommand(at<std::uint32_t>(offset), offset, size);
        offset += size;
    }
    if (segments_.empty()) {
        throw LoadError("no segment");
    }
}

void MachOFile::readHeader() {
    if (bytes_.size() < kHeaderSize || at<std::uint32_t>(0) != kMagic64 ||
        at<std::uint32_t>(4) != kCpuArm64 || at<std::uint32_t>(12) != kDynamicLibrary) {
        throw LoadError("no dynamic library for arm64");
    }
    const auto subtype = at<std::uint32_t>(8);
    if (subtype != kAnyArm64 && subtype != kArm64e) {
        throw LoadError("for a processor " + std::to_string(subtype) +
                        ", which iOS 12 does not know");
    }
    isArm64e_ = subtype == kArm64e;
}

template <class T>
T MachOFile::at(std::uint64_t offset) const {
    T value;
    std::memcpy(&value, range(offset, sizeof value, "load commands").data(), sizeof value);
    return value;
}

std::span<const std::uint8_t> MachOFile::range(std::uint64_t offset, std::uint64_t size,
                                               const char* what) const {
    if (offset > bytes_.size() || size > bytes_.size() - offset) {
        throw LoadError(std::string("the file ends before its ") + what);
    }
    return std::span(bytes_).subspan(offset, size);
}

std::string MachOFile::fixedName(std::uint64_t offset) const {
    const auto name = range(offset, kNameSize, "load commands");
    return {name.begin(), std::find(name.begin(), name.end(), 0)};
}

std::string_view MachOFile::libraryOf(int ordinal) const {
    const auto index = static_cast<std::size_t>(ordinal) - 1;
    return ordinal > 0 && index < libraries_.size() ? libraries_[index] : std::string_view();
}

void MachOFile::readCommand(std::uint32_t command, std::uint64_t offset, std::uint64_t size) {
    switch (command) {
        case kSegment64:
            return readSegment(offset, size);
        case kLoadDylib:
        case kLoadWeakDylib:
        case kReexportDylib:
            return readLibrary(offset, size);
        case kDyldInfo:
        case kDyldInfoOnly:
            return readDyldInfo(offset, size);
        case kChainedFixups:
            throw LoadError("chained fixups, which the system loader of iOS 12 does not know");
        default:
            return;
    }
}

void MachOFile::readSegment(std::uint64_t offset, std::uint64_t size) {
    Segment segment;
    segment.name = fixedName(offset + 8);
    segment.address = at<std::uint64_t>(offset + 24);
    segment.size = at<std::uint64_t>(offset + 32);
    constexpr std::uint32_t kWrite = 2;
    constexpr std::uint32_t kExecute = 4;
    segment.isForData = (at<std::uint32_t>(offset + 60) & (kWrite | kExecute)) == kWrite;
    segment.contents = range(at<std::uint64_t>(offset + 40), at<std::uint64_t>(offset + 48),
                             ("segment " + segment.name).c_str());
    if (segment.address > kMostMemory || segment.size > kMostMemory ||
        segment.contents.size() > segment.size) {
        throw LoadError("segment " + segment.name + " has no proper size");
    }
    const auto sections = at<std::uint32_t>(offset + 64);
    if (kSegmentCommandSize + sections * kSectionSize > size) {
        throw LoadError("segment " + segment.name + " has no room for its sections");
    }
    for (std::uint32_t index = 0; index < sections; ++index) {
        const std::uint64_t start = offset + kSegmentCommandSize + index * kSectionSize;
        Section section{fixedName(start), at<std::uint64_t>(start + 32),
                        at<std::uint64_t>(start + 40)};
        if (section.address < segment.address || section.size > segment.size ||
            section.address - segment.address > segment.size - section.size) {
            throw LoadError("section " + section.name + " leaves its segment");
        }
        sections_.push_back(std::move(section));
    }
    memorySize_ = std::max(memorySize_, segment.address + segment.size);
    segments_.push_back(std::move(segment));
}

void MachOFile::readLibrary(std::uint64_t offset, std::uint64_t size) {
    const auto start = at<std::uint32_t>(offset + 8);
    if (start >= size) {
        throw LoadError("a library's name leaves its load command");
    }
    const auto name = range(offset + start, size - start, "load commands");
    libraries_.emplace_back(name.begin(), std::find(name.begin(), name.end(), 0));
}

void MachOFile::readDyldInfo(std::uint64_t offset, std::uint64_t size) {
    constexpr std::uint64_t kDyldInfoSize = 48;
    if (size < kDyldInfoSize) {
        throw LoadError("the table of fixups has no proper size");
    }
    const auto table = [&](std::uint64_t place, const char* what) {
        return range(at<std::uint32_t>(offset + place), at<std::uint32_t>(offset + place + 4),
                     what);
    };
    rebases_ = table(8, "rebases");
    bindings_ = table(16, "bindings");
    // Weak definitions would have to be one in the whole process. The library exports too little
    // to have any.
    if (!table(24, "weak bindings").empty()) {
        throw LoadError("weak bindings");
    }
    lazyBindings_ = table(32, "lazy bindings");
    exports_ = table(40, "exports");
}

}  // namespace velmoranth::emulator
