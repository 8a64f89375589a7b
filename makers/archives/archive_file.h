// An archive as the library reads it, entry by entry: of a file or of bytes in memory, or of an
// entry of another one.
#pragma once

#include "desktop/result/result.h"

#include "makers/archives/byte_source.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmoranth::makers {

// container: an ar file, which packages are. contents: zip and tar. `tar` alone is what a package
// has for members. packed: whatever the packings of a tar hold, as one entry; anything else is one
// as it stands.
enum class Formats { container, contents, tar, packed };

// What is said of what ends too early.
inline constexpr std::string_view kCutShort = "it is cut short; get it again, all of it";

enum class EntryKind { file, folder, link, other };

struct ArchiveEntry {
    std::string name;  // any bytes
    EntryKind kind = EntryKind::file;
    bool isEncrypted = false;
};

class ArchiveFile {
  public:
    // Nothing is read yet but what tells the format. A problem has no path: whoever asks knows
    // which archive it is. The source outlives the archive.
    [[nodiscard]] static desktop::Result<ArchiveFile> open(const ByteSource& source,
                                                           Formats formats);
    // The entry that `outer`, which outlives it, has just come to.
    [[nodiscard]] static desktop::Result<ArchiveFile> openEntry(ArchiveFile& outer);

    ArchiveFile(ArchiveFile&& other) noexcept;
    ArchiveFile& operator=(ArchiveFile&& other) noexcept;
    ArchiveFile(const ArchiveFile&) = delete;
    ArchiveFile& operator=(const ArchiveFile&) = delete;
    ~ArchiveFile();

    // The next entry; nothing at the end.
    [[nodiscard]] desktop::Result<std::optional<ArchiveEntry>> next();

    // Fills from the current entry's data; less than asked for only at its end.
    [[nodiscard]] desktop::Result<std::size_t> read(std::span<std::uint8_t> bytes);

    // After the last entry: whether it is a tar without the block of zeroes that ends one. So is
    // one that was cut between two entries, and what some programs write.
    [[nodiscard]] bool lacksEndMark() const;

    // Whether anything is unpacked on the way: false for what is read as it stands.
    [[nodiscard]] bool isPacked() const;

  private:
    struct State;

    explicit ArchiveFile(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

}  // namespace velmoranth::makers
