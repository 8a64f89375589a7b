// An archive as the library reads it, entry by entry: of a file, of bytes in memory, or of an entry
// of another one.
#pragma once

#include "desktop/result/result.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace velmoranth::makers {

// container: an ar file, which packages are. contents: zip and tar. `tar` alone is what a package
// has for members.
enum class Formats { container, contents, tar };

enum class EntryKind { file, folder, link, other };

struct ArchiveEntry {
    std::string name;  // any bytes
    EntryKind kind = EntryKind::file;
    bool isEncrypted = false;
};

class ArchiveFile {
  public:
    // Nothing is read yet but what tells the format. A problem has no path: whoever asks knows
    // which archive it is.
    [[nodiscard]] static desktop::Result<ArchiveFile> openFile(const std::string& path,
                                                               Formats formats);
    [[nodiscard]] static desktop::Result<ArchiveFile> openBytes(std::span<const std::uint8_t> bytes,
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

  private:
    struct State;

    explicit ArchiveFile(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

}  // namespace velmoranth::makers
