#include "desktop/files/device_root.h"

#include "tests/support/temporary_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <string>
#include <vector>

namespace velmoranth::desktop::device_root_test {
namespace {

using tests::TemporaryFolder;

std::string text(const platform::Data& bytes) {
    return std::string(bytes.begin(), bytes.end());
}

// Every behaviour is asked of both ways of resolving a path.
class DeviceRootTest : public testing::TestWithParam<PathResolution> {
  protected:
    DeviceRootTest() {
        host_.folder("root/folder/inner");
        host_.file("root/folder/file", "inside");
        host_.file("root/top", "top");
        host_.file("secret", "outside");
        root_ = DeviceRoot::open(host_ / "root", GetParam()).value();
        if (GetParam() == PathResolution::automatic && !root_->resolvesInKernel()) {
            skipped_ = true;
        }
    }

    void SetUp() override {
        if (skipped_) {
            GTEST_SKIP() << "the kernel refuses openat2 here";
        }
    }

    // What a path holds, or the name of errno.
    std::string read(const std::string& path, int flags = 0) const {
        const Descriptor file(root_->openFile(path, O_RDONLY | flags));
        if (!file.isOpen()) {
            return ::strerrorname_np(errno);
        }
        std::string buffer(64, '\0');
        const ssize_t length = ::read(file.get(), buffer.data(), buffer.size());
        return length < 0 ? ::strerrorname_np(errno)
                          : buffer.substr(0, static_cast<std::size_t>(length));
    }

    TemporaryFolder host_;
    std::shared_ptr<DeviceRoot> root_;
    bool skipped_ = false;
};

INSTANTIATE_TEST_SUITE_P(DeviceRoot, DeviceRootTest,
                         testing::Values(PathResolution::automatic, PathResolution::walk),
                         [](const auto& instance) {
                             return instance.param == PathResolution::walk ? "Walk" : "Kernel";
                         });

TEST_P(DeviceRootTest, OpensBelowTheRoot) {
    EXPECT_EQ(read("/folder/file"), "inside");
    EXPECT_EQ(read("//folder//./inner/../file"), "inside");
    EXPECT_EQ(read("folder/file"), "inside");
}

TEST_P(DeviceRootTest, DotDotStopsAtTheRoot) {
    EXPECT_EQ(read("/../secret"), "ENOENT");
    EXPECT_EQ(read("/../../../folder/file"), "inside");
    EXPECT_EQ(read("/folder/../../top"), "top");
}

TEST_P(DeviceRootTest, AbsoluteLinkStaysInside) {
    host_.link("root/absolute", "/folder/file");
    host_.link("root/escape", host_ / "secret");
    host_.link("root/folder/up", "/");
    EXPECT_EQ(read("/absolute"), "inside");
    EXPECT_EQ(read("/escape"), "ENOENT");
    EXPECT_EQ(read("/folder/up/top"), "top");
    EXPECT_EQ(read("/folder/up/../top"), "top");
}

TEST_P(DeviceRootTest, RelativeLinkStaysInside) {
    host_.link("root/folder/relative", "../../../../../folder/file");
    host_.link("root/folder/escape", "../../secret");
    host_.link("root/here", "folder");
    EXPECT_EQ(read("/folder/relative"), "inside");
    EXPECT_EQ(read("/folder/escape"), "ENOENT");
    EXPECT_EQ(read("/here/file"), "inside");
    EXPECT_EQ(read("/here/../top"), "top");
}

TEST_P(DeviceRootTest, EndlessLinksAreRefused) {
    host_.link("root/a", "b");
    host_.link("root/b", "a");
    EXPECT_EQ(read("/a"), "ELOOP");
    EXPECT_EQ(read("/a/file"), "ELOOP");
}

TEST_P(DeviceRootTest, FortyLinksAreFollowedAndNoMore) {
    host_.link("root/l1", "top");
    for (int i = 2; i <= 41; ++i) {
        host_.link("root/l" + std::to_string(i), "l" + std::to_string(i - 1));
    }
    EXPECT_EQ(read("/l40"), "top");
    EXPECT_EQ(read("/l41"), "ELOOP");
}

TEST_P(DeviceRootTest, FinalLinkIsLeftAloneOnRequest) {
    host_.link("root/link", "top");
    host_.link("root/dir", "folder");
    EXPECT_EQ(read("/link", O_NOFOLLOW), "ELOOP");
    EXPECT_EQ(read("/dir", O_NOFOLLOW | O_DIRECTORY), "ENOTDIR");
    const Descriptor link(root_->openFile("/link", O_PATH | O_NOFOLLOW));
    struct stat status{};
    ASSERT_EQ(::fstat(link.get(), &status), 0);
    EXPECT_TRUE(S_ISLNK(status.st_mode));
    const Descriptor folder(root_->openFile("/dir/", O_PATH | O_NOFOLLOW));
    ASSERT_EQ(::fstat(folder.get(), &status), 0);
    EXPECT_TRUE(S_ISDIR(status.st_mode));
}

TEST_P(DeviceRootTest, FailuresAreTheKernels) {
    host_.link("root/dangling", "nowhere");
    host_.link("root/slashed", "top/");
    EXPECT_EQ(read(""), "ENOENT");
    EXPECT_EQ(read("/none"), "ENOENT");
    EXPECT_EQ(read("/none/file"), "ENOENT");
    EXPECT_EQ(read("/top/file"), "ENOTDIR");
    EXPECT_EQ(read("/top/"), "ENOTDIR");
    EXPECT_EQ(read("/top/."), "ENOTDIR");
    EXPECT_EQ(read("/top/.."), "ENOTDIR");
    EXPECT_EQ(read("/top", O_DIRECTORY), "ENOTDIR");
    EXPECT_EQ(read("/dangling"), "ENOENT");
    EXPECT_EQ(read("/slashed"), "ENOTDIR");
    EXPECT_EQ(read("/folder"), "EISDIR");
    EXPECT_EQ(read("/" + std::string(256, 'n')), "ENAMETOOLONG");
    EXPECT_EQ(read("/" + std::string(PATH_MAX, '/')), "ENAMETOOLONG");
    EXPECT_EQ(read(std::string("/top\0x", 6)), "EINVAL");
}

TEST_P(DeviceRootTest, CreatesInsideThroughLinks) {
    host_.link("root/new", "/folder/made");
    host_.link("root/escape", "../made");
    constexpr int kCreate = O_WRONLY | O_CREAT;
    const Descriptor first(root_->openFile("/new", kCreate, 0640));
    EXPECT_TRUE(first.isOpen());
    EXPECT_EQ(host_.mode("root/folder/made"), 0640U);
    const Descriptor second(root_->openFile("/escape", kCreate, 0600));
    EXPECT_TRUE(second.isOpen());
    EXPECT_EQ(host_.mode("root/made"), 0600U);
    EXPECT_EQ(host_.mode("made"), 0U);
}

TEST_P(DeviceRootTest, CreatingRefusesWhatOpenRefuses) {
    host_.link("root/link", "/nowhere");
    const auto create = [&](const std::string& path, int flags) -> std::string {
        const Descriptor file(root_->openFile(path, O_WRONLY | O_CREAT | flags, 0600));
        return file.isOpen() ? "opened" : ::strerrorname_np(errno);
    };
    EXPECT_EQ(create("/top", O_EXCL), "EEXIST");
    EXPECT_EQ(create("/link", O_EXCL), "EEXIST");
    EXPECT_EQ(create("/new/", 0), "EISDIR");
    EXPECT_EQ(create("/folder", 0), "EISDIR");
    EXPECT_EQ(create("/", 0), "EISDIR");
    EXPECT_EQ(create("/folder/..", O_EXCL), "EEXIST");
    EXPECT_EQ(create("/link", O_NOFOLLOW), "ELOOP");
    EXPECT_EQ(create("/top", 0), "opened");
}

TEST_P(DeviceRootTest, DescriptorsCloseOnExec) {
    for (const char* path : {"/top", "/folder", "/"}) {
        const Descriptor file(root_->openFile(path, O_RDONLY));
        EXPECT_NE(::fcntl(file.get(), F_GETFD) & FD_CLOEXEC, 0) << path;
    }
}

TEST_P(DeviceRootTest, ParentOfAPathIsLookedUpInside) {
    host_.link("root/here", "/folder");
    const FolderEntry entry = root_->openParent("/here/new//");
    EXPECT_EQ(entry.name, "new");
    struct stat status{};
    EXPECT_EQ(::fstatat(entry.folder.get(), "file", &status, 0), 0);
    EXPECT_EQ(root_->openParent("/").name, ".");
    EXPECT_EQ(root_->openParent("/folder/..").name, ".");
    EXPECT_EQ(root_->openParent("name").name, "name");
    EXPECT_TRUE(root_->openParent("name").folder.isOpen());
    EXPECT_FALSE(root_->openParent("").folder.isOpen());
    EXPECT_FALSE(root_->openParent("/top/name").folder.isOpen());
    EXPECT_EQ(errno, ENOTDIR);
    // ".." for a name would leave a descriptor of the root itself.
    const FolderEntry up = root_->openParent("/..");
    ASSERT_TRUE(up.folder.isOpen());
    EXPECT_EQ(::fstatat(up.folder.get(), (up.name + "/top").c_str(), &status, 0), 0);
}

TEST_P(DeviceRootTest, ReadsAWholeFile) {
    const std::string large(300'000, 'x');
    host_.file("root/large", large);
    EXPECT_EQ(text(root_->readFile("/large", large.size()).value()), large);
    EXPECT_EQ(text(root_->readFile("/top", 3).value()), "top");
    host_.file("root/empty");
    EXPECT_TRUE(root_->readFile("/empty", 0).value().empty());
}

TEST_P(DeviceRootTest, ReadingSaysWhatIsWrong) {
    ASSERT_EQ(::mkfifo((host_ / "root/pipe").c_str(), 0600), 0);
    const auto problem = [&](const std::string& path) {
        return toLine(root_->readFile(path, 2).error());
    };
    EXPECT_EQ(problem("/none"), "/none: no such file or directory");
    EXPECT_EQ(problem("/folder"), "/folder: not a regular file");
    EXPECT_EQ(problem("/pipe"), "/pipe: not a regular file");
    EXPECT_EQ(problem("/top"), "/top: the file is larger than 2 bytes");
}

TEST(DeviceRoot, NeedsAFolder) {
    const TemporaryFolder host;
    host.file("file");
    EXPECT_EQ(DeviceRoot::open(host / "none").error().message, "no such file or directory");
    EXPECT_EQ(DeviceRoot::open(host / "file").error().message, "not a directory");
    EXPECT_EQ(DeviceRoot::open(host / "file").error().path, host / "file");
}

}  // namespace
}  // namespace velmoranth::desktop::device_root_test
