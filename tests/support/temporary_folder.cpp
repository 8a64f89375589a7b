#include "tests/support/temporary_folder.h"

#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): mkdtemp() is POSIX's
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace velmoranth::tests {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    ::umask(022);
    std::string name = fs::temp_directory_path() / "velmoranth-test-XXXXXX";
    path_ = ::mkdtemp(name.data());
    fs::permissions(path_, fs::perms(0777));
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void TemporaryFolder::folder(const std::string& name) const {
    fs::create_directories(*this / name);
}

void TemporaryFolder::file(const std::string& name, const std::string& contents) const {
    fs::create_directories(fs::path(*this / name).parent_path());
    std::ofstream(*this / name, std::ios::binary) << contents;
}

void TemporaryFolder::link(const std::string& name, const std::string& target) const {
    fs::create_symlink(target, *this / name);
}

std::string TemporaryFolder::contents(const std::string& name) const {
    std::ifstream stream(*this / name, std::ios::binary);
    if (!stream) {
        return "<none>";
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

unsigned TemporaryFolder::mode(const std::string& name) const {
    struct stat status{};
    return ::lstat((*this / name).c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
}

std::ptrdiff_t TemporaryFolder::count(const std::string& name) const {
    return std::distance(fs::directory_iterator(*this / name), fs::directory_iterator());
}

std::string TemporaryFolder::names(const std::string& name) const {
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator(*this / name)) {
        found.push_back(entry.path().filename());
    }
    std::sort(found.begin(), found.end());
    std::string text;
    for (const std::string& item : found) {
        text += (text.empty() ? "" : " ") + item;
    }
    return text;
}

TemporaryFolder::Tree TemporaryFolder::tree(const std::string& name, Times times) const {
    Tree items;
    const auto add = [&](const fs::directory_entry& entry) {
        const std::string path = entry.path().lexically_relative(path_);
        std::string item = std::to_string(mode(path)) + " ";
        if (entry.is_symlink()) {
            item += "-> " + fs::read_symlink(entry.path()).string();
        } else if (times == Times::kept) {
            item += std::to_string(entry.last_write_time().time_since_epoch().count());
        }
        if (entry.is_regular_file() && !entry.is_symlink()) {
            item += " " + contents(path);
        }
        items[path] = item;
    };
    add(fs::directory_entry(*this / name));
    for (const auto& entry : fs::recursive_directory_iterator(*this / name)) {
        add(entry);
    }
    return items;
}

}  // namespace velmoranth::tests
