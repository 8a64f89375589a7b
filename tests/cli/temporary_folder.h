// A folder of its own for a test, removed with all it holds when the test ends. Anybody may enter
// it.
#pragma once

#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkdtemp() is POSIX's

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace velmoranth::cli {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = std::filesystem::temp_directory_path() / "velmoranth-test-XXXXXX";
        path_ = ::mkdtemp(name.data());
        std::filesystem::permissions(path_, std::filesystem::perms(0777));
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::string& path() const { return path_; }

    // Names below are relative to the folder.
    [[nodiscard]] std::string operator/(const std::string& name) const {
        return path_ + "/" + name;
    }

    void folder(const std::string& name) const {
        std::filesystem::create_directories(*this / name);
    }

    void file(const std::string& name, const std::string& contents) const {
        std::filesystem::create_directories(std::filesystem::path(*this / name).parent_path());
        std::ofstream(*this / name, std::ios::binary) << contents;
    }

    [[nodiscard]] std::string contents(const std::string& name) const {
        std::ifstream stream(*this / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    // What a folder in it holds, in order, with blanks between.
    [[nodiscard]] std::string names(const std::string& name) const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(*this / name)) {
            found.push_back(entry.path().filename());
        }
        std::sort(found.begin(), found.end());
        std::string text;
        for (const std::string& item : found) {
            text += (text.empty() ? "" : " ") + item;
        }
        return text;
    }

  private:
    std::string path_;
};

}  // namespace velmoranth::cli
