// A folder of its own for a test, removed with all it holds when the test ends. Anybody may enter
// it, and what is made in it from now on has the usual modes, whatever the umask was. Names are
// relative to it.
#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace velmoranth::tests {

class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }

    [[nodiscard]] std::string operator/(const std::string& name) const {
        return path_ + "/" + name;
    }

    void folder(const std::string& name) const;
    // Folders on the way are made.
    void file(const std::string& name, const std::string& contents = "") const;
    void link(const std::string& name, const std::string& target) const;

    // The whole file; a file that cannot be read gives "<none>".
    [[nodiscard]] std::string contents(const std::string& name) const;
    // lstat's mode bits without the kind; 0 when there is no such item.
    [[nodiscard]] unsigned mode(const std::string& name) const;
    // How many items the folder `name` holds.
    [[nodiscard]] std::ptrdiff_t count(const std::string& name) const;
    // What the folder `name` holds, in order, with blanks between.
    [[nodiscard]] std::string names(const std::string& name) const;

    // Every item in the folder `name`, that folder included, by its path: mode, time of change if
    // asked for (but of a link where it leads), and contents.
    using Tree = std::map<std::string, std::string>;
    enum class Times { kept, mayDiffer };
    [[nodiscard]] Tree tree(const std::string& name, Times times = Times::kept) const;

  private:
    std::string path_;
};

}  // namespace velmoranth::tests
