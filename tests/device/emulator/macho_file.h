// The parts of an arm64 Mach-O library's file that a loader needs. Every offset and size is checked
// against the file and against the memory that the library will take, so that whoever uses these
// need not look again; what does not fit is a LoadError.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::emulator {

struct Segment {
    std::string name;
    std::uint64_t address = 0;  // as the file has it: the library's first byte is at 0
    std::uint64_t size = 0;
    bool isForData = false;                  // may be written and not run
    std::span<const std::uint8_t> contents;  // at most `size` bytes; zeros follow
};

struct Section {
    std::string name;
    std::uint64_t address = 0;
    std::uint64_t size = 0;
};

class MachOFile {
  public:
    explicit MachOFile(std::vector<std::uint8_t> bytes);

    [[nodiscard]] static MachOFile read(const std::string& path);

    MachOFile(const MachOFile&) = delete;
    MachOFile& operator=(const MachOFile&) = delete;
    // The spans below point to the vector's bytes, which a move takes along.
    MachOFile(MachOFile&&) = default;
    MachOFile& operator=(MachOFile&&) = default;
    ~MachOFile() = default;

    [[nodiscard]] const std::vector<Segment>& segments() const { return segments_; }

    [[nodiscard]] const std::vector<Section>& sections() const { return sections_; }

    // For processors that authenticate pointers, as iOS 12 and 13 have it.
    [[nodiscard]] bool isArm64e() const { return isArm64e_; }

    // The library that an import's ordinal stands for, by its install name; "" for none.
    [[nodiscard]] std::string_view libraryOf(int ordinal) const;

    // How much memory the library takes, in bytes.
    [[nodiscard]] std::uint64_t memorySize() const { return memorySize_; }

    [[nodiscard]] std::span<const std::uint8_t> rebases() const { return rebases_; }

    [[nodiscard]] std::span<const std::uint8_t> bindings() const { return bindings_; }

    [[nodiscard]] std::span<const std::uint8_t> lazyBindings() const { return lazyBindings_; }

    [[nodiscard]] std::span<const std::uint8_t> exports() const { return exports_; }

  private:
    template <class T>
    [[nodiscard]] T at(std::uint64_t offset) const;
    [[nodiscard]] std::span<const std::uint8_t> range(std::uint64_t offset, std::uint64_t size,
                                                      const char* what) const;
    [[nodiscard]] std::string fixedName(std::uint64_t offset) const;

    void readHeader();
    void readCommand(std::uint32_t command, std::uint64_t offset, std::uint64_t size);
    void readSegment(std::uint64_t offset, std::uint64_t size);
    void readLibrary(std::uint64_t offset, std::uint64_t size);
    void readDyldInfo(std::uint64_t offset, std::uint64_t size);

    std::vector<std::uint8_t> bytes_;
    bool isArm64e_ = false;
    std::vector<Segment> segments_;
    std::vector<Section> sections_;
    std::vector<std::string> libraries_;
    std::uint64_t memorySize_ = 0;
    std::span<const std::uint8_t> rebases_;
    std::span<const std::uint8_t> bindings_;
    std::span<const std::uint8_t> lazyBindings_;
    std::span<const std::uint8_t> exports_;
};

}  // namespace velmoranth::emulator
