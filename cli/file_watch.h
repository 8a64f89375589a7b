// Noticing that files of a theme are saved, by looking at them again: whatever way they are saved,
// on every file system.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::cli {

class FileWatch {
  public:
    // Files, and folders with all in and below them, but for the file `output`, which the one who
    // watches writes. Links are not followed, but for the paths themselves. As many entries are
    // looked at as a theme may have.
    FileWatch(std::vector<std::string> paths, const std::string& output);

    // Whether something has been made, changed, renamed or removed since the last time that this
    // said so. Not before two looks in a row see the same: what is being saved is left to be whole.
    [[nodiscard]] bool hasChanged();

  private:
    [[nodiscard]] std::uint64_t look() const;
    [[nodiscard]] bool isOutput(const std::filesystem::path& path) const;

    std::vector<std::string> paths_;
    std::filesystem::path output_;
    std::uint64_t told_;
    std::uint64_t last_;
};

}  // namespace velmoranth::cli
