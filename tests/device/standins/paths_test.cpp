// The C library's calls on the phone's paths.
#include "device/standins/system.h"
#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <limits.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace velmoranth::standins::paths_test {
namespace {

namespace fs = std::filesystem;

class Paths : public testing::Test {
  protected:
    Paths() {
        ::umask(022);
        std::string name = fs::temp_directory_path() / "pathsXXXXXX";
        root_ = fs::canonical(::mkdtemp(name.data()));
        fs::create_directories(root_ / "var/mobile");
        fs::create_directories(root_ / "Library");
        setPhoneRoot(root_);
    }

    ~Paths() override {
        setPhoneRoot("");
        fs::remove_all(root_);
    }

    void make(const std::string& name) const { std::ofstream(root_ / name) << "text"; }

    [[nodiscard]] bool isThere(const std::string& name) const {
        return fs::exists(fs::symlink_status(root_ / name));
    }

    fs::path root_;
};

TEST_F(Paths, OfThePhoneLeadIntoTheFolder) {
    EXPECT_EQ(placeOf("/Library/Themes/a"), root_ / "Library/Themes/a");
    EXPECT_EQ(placeOf("/User/a"), root_ / "var/mobile/a");
    EXPECT_EQ(placeOf("/User"), root_ / "var/mobile");
    EXPECT_EQ(placeOf("/private/var/mobile/a"), root_ / "var/mobile/a");
    EXPECT_EQ(placeOf("//Library"), root_ / "Library");
}

TEST_F(Paths, OfThisMachineStay) {
    for (const std::string path : {"/tmp/a", "/Userland", "/var/lib", "Library/a", "", "/"}) {
        EXPECT_EQ(placeOf(path), path);
    }
    EXPECT_EQ(placeOf(root_ / "Library"), root_ / "Library");
    setPhoneRoot("");
    EXPECT_EQ(placeOf("/Library"), "/Library");
}

TEST_F(Paths, AreOpened) {
    const int made = ::open("/User/a", O_CREAT | O_WRONLY, 0640);
    ASSERT_GE(made, 0);
    EXPECT_EQ(::write(made, "xy", 2), 2);
    ::close(made);
    struct stat found = {};
    EXPECT_EQ(::stat("/User/a", &found), 0);
    EXPECT_EQ(found.st_size, 2);
    EXPECT_EQ(found.st_mode & 0777U, 0640U & ~0022U);
    EXPECT_EQ(::lstat("/var/mobile/a", &found), 0);
    EXPECT_EQ(::fstatat(AT_FDCWD, "/User/a", &found, 0), 0);
    const int again = ::openat(AT_FDCWD, "/User/a", O_RDONLY);
    EXPECT_GE(again, 0);
    ::close(again);
    FILE* const file = std::fopen("/private/var/mobile/a", "rb");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(std::fgetc(file), 'x');
    std::fclose(file);
    std::ifstream stream("/User/a");
    EXPECT_EQ(stream.get(), 'x');
}

TEST_F(Paths, AreAskedFor) {
    make("Library/a");
    EXPECT_EQ(::access("/Library/a", R_OK), 0);
    EXPECT_EQ(::faccessat(AT_FDCWD, "/Library/a", R_OK, 0), 0);
    EXPECT_EQ(::euidaccess("/Library/a", R_OK), 0);
    EXPECT_EQ(::access("/Library/b", F_OK), -1);
    struct statvfs volume = {};
    EXPECT_EQ(::statvfs("/Library", &volume), 0);
    EXPECT_TRUE(fs::exists("/Library/a"));
    EXPECT_EQ(fs::file_size("/Library/a"), 4U);
}

// As the C library does, though its declaration forbids to ask.
__attribute__((no_sanitize("nonnull-attribute"))) int accessNothing() {
    const char* volatile none = nullptr;
    return ::access(none, F_OK);
}

TEST_F(Paths, AreFaultyWhereThereIsNone) {
    EXPECT_EQ(accessNothing(), -1);
    EXPECT_EQ(errno, EFAULT);
}

TEST_F(Paths, AreChanged) {
    make("Library/a");
    EXPECT_EQ(::chmod("/Library/a", 0600), 0);
    EXPECT_EQ(::rename("/Library/a", "/User/b"), 0);
    EXPECT_TRUE(isThere("var/mobile/b"));
    EXPECT_EQ(::link("/User/b", "/Library/c"), 0);
    EXPECT_EQ(::symlink("c", "/Library/d"), 0);
    char target[8] = {};
    EXPECT_EQ(::readlink("/Library/d", target, sizeof target), 1);
    EXPECT_EQ(target[0], 'c');
    EXPECT_EQ(::unlink("/Library/c"), 0);
    EXPECT_EQ(std::remove("/Library/d"), 0);
    EXPECT_FALSE(isThere("Library/c") || isThere("Library/d"));
    EXPECT_EQ(::utimensat(AT_FDCWD, "/User/b", nullptr, 0), 0);
    EXPECT_EQ(::truncate("/User/b", 1), 0);
    EXPECT_EQ(fs::file_size(root_ / "var/mobile/b"), 1U);
}

TEST_F(Paths, AreFolders) {
    EXPECT_EQ(::mkdir("/Library/f", 0700), 0);
    EXPECT_TRUE(isThere("Library/f"));
    make("Library/f/a");
    DIR* const folder = ::opendir("/Library/f");
    ASSERT_NE(folder, nullptr);
    int count = 0;
    while (::readdir(folder) != nullptr) {
        ++count;
    }
    ::closedir(folder);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(::unlinkat(AT_FDCWD, "/Library/f/a", 0), 0);
    EXPECT_EQ(::rmdir("/Library/f"), 0);
    EXPECT_FALSE(isThere("Library/f"));
}

TEST_F(Paths, AreResolvedAsThePhoneNamesThem) {
    fs::create_directory_symlink("Library", root_ / "Applications");
    make("Library/a");
    char resolved[PATH_MAX];
    ASSERT_NE(::realpath("/Applications/a", resolved), nullptr);
    EXPECT_STREQ(resolved, "/Library/a");
    char* const own = ::realpath("/User/../mobile", nullptr);
    EXPECT_STREQ(own, "/var/mobile");
    std::free(own);
    EXPECT_EQ(::realpath("/Library/none", resolved), nullptr);
}

TEST_F(Paths, AreMadeUp) {
    char file[] = "/Library/fileXXXXXX";
    const int made = ::mkstemp(file);
    ASSERT_GE(made, 0);
    ::close(made);
    EXPECT_TRUE(isThere(file + 1));
    char folder[] = "/Library/folderXXXXXX";
    EXPECT_EQ(::mkdtemp(folder), folder);
    EXPECT_TRUE(isThere(folder + 1));
}

}  // namespace
}  // namespace velmoranth::standins::paths_test
