#include "cli/file_watch.h"

#include <sys/stat.h>

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::cli {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostEntries = 100000;

// The order in which a folder lists its entries does not matter: what is seen of each is mixed by
// itself and added up.
class Sight {
  public:
    // A folder's times and size tell of the names in it, which are looked at by themselves.
    void add(const std::string& path, struct stat status) {
        if (S_ISDIR(status.st_mode)) {
            status.st_size = 0;
            status.st_mtim = {};
            status.st_ctim = {};
        }
        std::uint64_t seen = std::hash<std::string_view>()(path);
        for (const auto part :
             {static_cast<std::uint64_t>(status.st_ino), static_cast<std::uint64_t>(status.st_size),
              static_cast<std::uint64_t>(status.st_mode),
              static_cast<std::uint64_t>(status.st_mtim.tv_sec),
              static_cast<std::uint64_t>(status.st_mtim.tv_nsec),
              static_cast<std::uint64_t>(status.st_ctim.tv_sec),
              static_cast<std::uint64_t>(status.st_ctim.tv_nsec)}) {
            constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
            seen = (seen ^ part) * kOdd;
            seen ^= seen >> 29U;
        }
        sum_ += seen;
    }

    [[nodiscard]] std::uint64_t sum() const { return sum_; }

  private:
    std::uint64_t sum_ = 0;
};

}  // namespace

FileWatch::FileWatch(std::vector<std::string> paths, const std::string& output)
    : paths_(std::move(paths)), output_(output), told_(look()), last_(told_) {}

bool FileWatch::isOutput(const fs::path& path) const {
    std::error_code ignored;
    return path.filename() == output_.filename() && fs::equivalent(path, output_, ignored);
}

bool FileWatch::hasChanged() {
    const std::uint64_t now = look();
    const bool isWhole = std::exchange(last_, now) == now;
    return isWhole && std::exchange(told_, now) != now;
}

std::uint64_t FileWatch::look() const {
    Sight sight;
    std::size_t entries = 0;
    for (const std::string& path : paths_) {
        struct stat status{};
        if (::stat(path.c_str(), &status) == 0) {
            sight.add(path, status);
        }
        std::error_code error;
        for (fs::recursive_directory_iterator entry(path, error), end;
             !error && entry != end && ++entries <= kMostEntries; entry.increment(error)) {
            if (::lstat(entry->path().c_str(), &status) == 0 && !isOutput(entry->path())) {
                sight.add(entry->path(), status);
            }
        }
    }
    return sight.sum();
}

}  // namespace velmoranth::cli
