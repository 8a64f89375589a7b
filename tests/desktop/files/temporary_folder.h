// A folder of its own for a test, removed with all it holds when the test ends.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace velmoranth::desktop {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = std::filesystem::temp_directory_path() / "velmoranth-XXXXXX";
        path_ = ::mkdtemp(name.data());
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::string& path() const { return path_; }

    // Paths below are relative to the folder.
    [[nodiscard]] std::string operator/(const std::string& name) const {
        return path_ + "/" + name;
    }

    void folder(const std::string& name) const {
        std::filesystem::create_directories(*this / name);
    }

    void file(const std::string& name, const std::string& contents = "") const {
        std::ofstream(*this / name, std::ios::binary) << contents;
    }

    void link(const std::string& name, const std::string& target) const {
        std::filesystem::create_symlink(target, *this / name);
    }

    // The whole file; a file that cannot be read gives "<none>".
    [[nodiscard]] std::string contents(const std::string& name) const {
        std::ifstream stream(*this / name, std::ios::binary);
        if (!stream) {
            return "<none>";
        }
        std::ostringstream text;
        text << stream.rdbuf();
        return text.str();
    }

    // lstat's mode bits without the kind; 0 when there is no such item.
    [[nodiscard]] unsigned mode(const std::string& name) const {
        struct stat status{};
        return ::lstat((*this / name).c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
    }

    // How many items the folder `name` holds.
    [[nodiscard]] std::ptrdiff_t count(const std::string& name) const {
        return std::distance(std::filesystem::directory_iterator(*this / name),
                             std::filesystem::directory_iterator());
    }

  private:
    std::string path_;
};

}  // namespace velmoranth::desktop
