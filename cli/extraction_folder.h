// The folder that extracted pictures go into. Nothing is written outside it: no link below the
// user's own folder is followed. A file is there as a whole or not at all, also when the command is
// interrupted.
#pragma once

#include "desktop/files/descriptor.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/replacement.h"
#include "desktop/result/result.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace velmoranth::cli {

// Why a file could not be written.
struct Unwritten {
    // Whether it is a matter of the disk or the folder, so that other files would fare alike; else
    // something is in the way of this one.
    bool concernsAll = false;
    desktop::Problem problem;
};

template <class T>
using Written = tl::expected<T, Unwritten>;

// A file that is written but not yet in its place; without place() it is gone with this object.
class UnplacedFile {
  public:
    // Puts it in place, instead of a file or a link that is there.
    [[nodiscard]] Written<void> place();

  private:
    friend class ExtractionFolder;

    UnplacedFile(desktop::Replacement replacement, std::string name, std::string path)
        : replacement_(std::move(replacement)), name_(std::move(name)), path_(std::move(path)) {}

    desktop::Replacement replacement_;
    std::string name_;
    std::string path_;  // as the user knows it
};

// The path as it can be opened; the folder itself where `path` is empty.
[[nodiscard]] std::string pathBelow(const std::string& folder, const std::string& path);

class ExtractionFolder {
  public:
    // Makes `output`, which may be or lie behind a link, and the folders of `below` in it.
    [[nodiscard]] static desktop::Result<std::unique_ptr<ExtractionFolder>> create(
        const std::string& output, const std::string& below, desktop::FileCalls calls = {});

    // Writes the bytes into a file beside `path`, which is relative and has no "." or ".." in it;
    // its folders are made. Several threads may write at a time.
    [[nodiscard]] Written<UnplacedFile> write(const std::string& path,
                                              std::span<const std::uint8_t> bytes);

    // As the user knows it.
    [[nodiscard]] const std::string& path() const { return path_; }

  private:
    ExtractionFolder(desktop::Descriptor folder, std::string path, desktop::FileCalls calls);

    desktop::Descriptor folder_;
    std::string path_;
    desktop::FileCalls calls_;
};

}  // namespace velmoranth::cli
