#include "desktop/files/file_manager.h"

#include "desktop/files/file_errors.h"
#include "tests/support/temporary_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

namespace velmoranth::desktop::file_manager_test {
namespace {

using tests::TemporaryFolder;

platform::Data bytes(const std::string& text) {
    return platform::Data(text.begin(), text.end());
}

// "root" is the device, "outside" a folder that nothing may touch.
struct Host : TemporaryFolder {
    Host() {
        ::umask(022);
        folder("root/var/mobile");
        folder("outside");
        link("root/User", "/var/mobile");
    }
};

class DesktopFileManagerTest : public testing::Test {
  protected:
    // "code text" of a failure, or "done".
    static std::string line(const platform::Failure& failure) {
        if (!failure) {
            return "done";
        }
        EXPECT_EQ(failure->domain, "NSCocoaErrorDomain");
        return std::to_string(failure->code) + " " + failure->localizedDescription;
    }

    DesktopFileManager with(FileCalls calls) const {
        return DesktopFileManager(root(), std::move(calls));
    }

    std::shared_ptr<DeviceRoot> root() const { return DeviceRoot::open(host_ / "root").value(); }

    Host host_;
    DesktopFileManager files_{root()};
};

TEST_F(DesktopFileManagerTest, ExistenceFollowsLinks) {
    host_.file("root/var/mobile/file");
    host_.link("root/dangling", "/nowhere");
    host_.link("root/out", host_ / "outside");
    EXPECT_TRUE(files_.fileExistsAtPath("/User/file"));
    EXPECT_TRUE(files_.fileExistsAtPath("/User"));
    for (const char* const path : {"/dangling", "/out", "/none", "", "/User/file/"}) {
        EXPECT_FALSE(files_.fileExistsAtPath(path)) << path;
        EXPECT_FALSE(files_.fileExistsAtPathIsDirectory(path).exists) << path;
    }
    EXPECT_TRUE(files_.fileExistsAtPathIsDirectory("/User").isDirectory);
    EXPECT_TRUE(files_.fileExistsAtPathIsDirectory("/User/file").exists);
    EXPECT_FALSE(files_.fileExistsAtPathIsDirectory("/User/file").isDirectory);
}

TEST_F(DesktopFileManagerTest, SetsPermissionsThroughLinks) {
    host_.file("root/var/mobile/file");
    host_.link("root/link", "/User/file");
    EXPECT_EQ(line(files_.setPosixPermissionsOfItemAtPath(0777, "/link")), "done");
    EXPECT_EQ(host_.mode("root/var/mobile/file"), 0777U);
    EXPECT_EQ(line(files_.setPosixPermissionsOfItemAtPath(0700, "/User")), "done");
    EXPECT_EQ(host_.mode("root/var/mobile"), 0700U);
    EXPECT_EQ(line(files_.setPosixPermissionsOfItemAtPath(0777, "/User/none")),
              "4 The file “none” doesn’t exist.");
    EXPECT_EQ(line(files_.setPosixPermissionsOfItemAtPath(0777, "/link/deeper")),
              "512 The file “deeper” couldn’t be saved in the folder “link”.");
}

TEST_F(DesktopFileManagerTest, PermissionsOfAFileOutsideStay) {
    host_.file("outside/file");
    ASSERT_EQ(::chmod((host_ / "outside/file").c_str(), 0600), 0);
    host_.link("root/link", host_ / "outside/file");
    EXPECT_EQ(line(files_.setPosixPermissionsOfItemAtPath(0777, "/link")),
              "4 The file “link” doesn’t exist.");
    EXPECT_EQ(host_.mode("outside/file"), 0600U);
}

TEST_F(DesktopFileManagerTest, CopiesAFileWithModeTimesAndAttributes) {
    host_.file("root/a", "contents");
    const std::string path = host_ / "root/a";
    ASSERT_EQ(::chmod(path.c_str(), 0754), 0);
    const bool hasAttributes = ::setxattr(path.c_str(), "user.note", "n", 1, 0) == 0;
    const timespec times[] = {{1'000'000'000, 5}, {1'234'567'890, 123'456'789}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), static_cast<const timespec*>(times), 0), 0);
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/a", "/User/b")), "done");
    EXPECT_EQ(host_.contents("root/var/mobile/b"), "contents");
    EXPECT_EQ(host_.mode("root/var/mobile/b"), 0754U);
    struct stat status{};
    ASSERT_EQ(::stat((host_ / "root/var/mobile/b").c_str(), &status), 0);
    EXPECT_EQ(status.st_mtim.tv_sec, 1'234'567'890);
    EXPECT_EQ(status.st_mtim.tv_nsec, 123'456'789);
    if (hasAttributes) {
        char value = 0;
        EXPECT_EQ(::getxattr((host_ / "root/var/mobile/b").c_str(), "user.note", &value, 1), 1);
        EXPECT_EQ(value, 'n');
    }
    EXPECT_EQ(host_.contents("root/a"), "contents");
}

TEST_F(DesktopFileManagerTest, CopiesAFolderWithAllItHolds) {
    host_.folder("root/theme/.hidden/deep");
    host_.file("root/theme/.hidden/deep/file", "deep");
    host_.file("root/theme/icon", "icon");
    host_.file("outside/secret", "secret");
    host_.link("root/theme/link", "icon");
    host_.link("root/theme/escape", host_ / "outside");
    ASSERT_EQ(::chmod((host_ / "root/theme/.hidden").c_str(), 0555), 0);
    const timespec times[] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (host_ / "root/theme").c_str(),
                          static_cast<const timespec*>(times), 0),
              0);
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/theme", "/User/copy/")), "done");
    EXPECT_EQ(host_.contents("root/var/mobile/copy/.hidden/deep/file"), "deep");
    EXPECT_EQ(host_.mode("root/var/mobile/copy/.hidden"), 0555U);
    EXPECT_EQ(std::filesystem::read_symlink(host_ / "root/var/mobile/copy/link"), "icon");
    EXPECT_EQ(std::filesystem::read_symlink(host_ / "root/var/mobile/copy/escape"),
              host_ / "outside");
    struct stat status{};
    ASSERT_EQ(::stat((host_ / "root/var/mobile/copy").c_str(), &status), 0);
    EXPECT_EQ(status.st_mtim.tv_sec, 1'100'000'000);
}

TEST_F(DesktopFileManagerTest, CopiesALinkAsALink) {
    host_.link("root/link", "/User/nothing");
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/link", "/copy")), "done");
    EXPECT_EQ(std::filesystem::read_symlink(host_ / "root/copy"), "/User/nothing");
}

TEST_F(DesktopFileManagerTest, CopyIntoItselfEnds) {
    host_.folder("root/a/b");
    host_.file("root/a/file", "1");
    host_.file("root/a/b/file", "2");
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/a", "/a/b/c")), "done");
    EXPECT_EQ(host_.contents("root/a/b/c/file"), "1");
    EXPECT_EQ(host_.contents("root/a/b/c/b/file"), "2");
    EXPECT_FALSE(std::filesystem::exists(host_ / "root/a/b/c/b/c"));
}

TEST_F(DesktopFileManagerTest, CopyRefusesAnExistingDestination) {
    host_.file("root/a", "new");
    host_.file("root/var/mobile/b", "old");
    host_.link("root/var/mobile/dangling", "nowhere");
    const std::string expected =
        "516 “a” couldn’t be copied to “User” because an item with the same name already exists.";
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/a", "/User/b")), expected);
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/a", "/User/dangling")), expected);
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/a", "/a")),
              "516 “a” couldn’t be copied to “/” because an item with the same name already "
              "exists.");
    EXPECT_EQ(host_.contents("root/var/mobile/b"), "old");
    EXPECT_EQ(host_.contents("root/var/mobile/nowhere"), "<none>");
}

TEST_F(DesktopFileManagerTest, CopySaysWhatIsMissing) {
    host_.file("root/a");
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/none", "/User/b")),
              "260 The file “none” couldn’t be opened because there is no such file.");
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/no/none", "/a")),
              "260 The file “none” couldn’t be opened because there is no such file.");
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/a", "/no/b")), "4 The file “a” doesn’t exist.");
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/a/x", "/b")),
              "256 The file “x” couldn’t be opened.");
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/a", "/a/b")),
              "512 “a” couldn’t be copied to “a”.");
}

TEST_F(DesktopFileManagerTest, CopyOfAPipeFails) {
    ASSERT_EQ(::mkfifo((host_ / "root/pipe").c_str(), 0600), 0);
    EXPECT_EQ(line(files_.copyItemAtPathToPath("/pipe", "/User/b")),
              "512 “pipe” couldn’t be copied to “User”.");
}

TEST_F(DesktopFileManagerTest, CopyWordsTheSystemsRefusals) {
    host_.file("root/a", "contents");
    const auto failing = [&](int error) {
        FileCalls calls;
        calls.write = [error](int, const void*, std::size_t) -> ssize_t {
            errno = error;
            return -1;
        };
        ::unlink((host_ / "root/var/mobile/b").c_str());
        return line(with(calls).copyItemAtPathToPath("/a", "/User/b"));
    };
    EXPECT_EQ(failing(EACCES),
              "513 “a” couldn’t be copied because you don’t have permission to access “User”.");
    EXPECT_EQ(failing(ENOSPC),
              "640 You can’t save the file “a” because the volume “/” is out of space.");
    EXPECT_EQ(failing(EDQUOT),
              "640 You can’t save the file “a” because the volume “/” is out of space.");
    EXPECT_EQ(failing(EROFS), "642 You can’t save the file “a” because the volume is read only.");
    EXPECT_EQ(failing(ENAMETOOLONG), "514 The operation couldn’t be completed. (Cocoa error 514.)");
    EXPECT_EQ(failing(EIO), "512 “a” couldn’t be copied to “User”.");
}

TEST_F(DesktopFileManagerTest, ShortWritesAreResumed) {
    host_.file("root/a", "contents");
    FileCalls calls;
    calls.write = [](int file, const void* from, std::size_t) { return ::write(file, from, 1); };
    EXPECT_EQ(line(with(calls).copyItemAtPathToPath("/a", "/b")), "done");
    EXPECT_EQ(host_.contents("root/b"), "contents");
}

TEST_F(DesktopFileManagerTest, MovesFilesFoldersAndLinks) {
    host_.file("root/file", "f");
    host_.folder("root/folder");
    host_.file("root/folder/inner", "i");
    host_.link("root/link", "file");
    EXPECT_EQ(line(files_.moveItemAtPathToPath("/link", "/User/link")), "done");
    EXPECT_EQ(line(files_.moveItemAtPathToPath("/file", "/User/moved")), "done");
    EXPECT_EQ(line(files_.moveItemAtPathToPath("/folder", "/User/folder")), "done");
    EXPECT_EQ(host_.contents("root/var/mobile/moved"), "f");
    EXPECT_EQ(host_.contents("root/var/mobile/folder/inner"), "i");
    EXPECT_EQ(std::filesystem::read_symlink(host_ / "root/var/mobile/link"), "file");
    EXPECT_FALSE(std::filesystem::exists(host_ / "root/file"));
    EXPECT_FALSE(std::filesystem::exists(host_ / "root/folder"));
}

TEST_F(DesktopFileManagerTest, MoveRefusesAnExistingDestination) {
    host_.file("root/a", "new");
    host_.file("root/var/mobile/b", "old");
    host_.link("root/var/mobile/dangling", "nowhere");
    const std::string expected =
        "516 “a” couldn’t be moved to “User” because an item with the same name already exists.";
    EXPECT_EQ(line(files_.moveItemAtPathToPath("/a", "/User/b")), expected);
    EXPECT_EQ(line(files_.moveItemAtPathToPath("/a", "/User/dangling")), expected);
    EXPECT_EQ(line(files_.moveItemAtPathToPath("/User/b", "/User/b")),
              "516 “b” couldn’t be moved to “User” because an item with the same name already "
              "exists.");
    EXPECT_EQ(host_.contents("root/var/mobile/b"), "old");
    EXPECT_EQ(host_.contents("root/a"), "new");
}

TEST_F(DesktopFileManagerTest, MoveSaysWhatIsMissing) {
    host_.file("root/a");
    const auto missing = [](const std::string& name, const std::string& folder) {
        return "4 “" + name + "” couldn’t be moved to “" + folder +
               "” because either the former doesn’t exist, or the folder containing the latter "
               "doesn’t exist.";
    };
    EXPECT_EQ(line(files_.moveItemAtPathToPath("/none", "/User/b")), missing("none", "User"));
    EXPECT_EQ(line(files_.moveItemAtPathToPath("/a", "/no/b")), missing("a", "no"));
    EXPECT_EQ(line(files_.moveItemAtPathToPath("/a", "/a/b")), "512 “a” couldn’t be moved to “a”.");
}

TEST_F(DesktopFileManagerTest, MoveWordsTheSystemsRefusals) {
    host_.file("root/a");
    FileCalls calls;
    calls.renameNoReplace = [](int, const char*, int, const char*) {
        errno = EPERM;
        return -1;
    };
    EXPECT_EQ(line(with(calls).moveItemAtPathToPath("/a", "/User/b")),
              "513 “a” couldn’t be moved because you don’t have permission to access “User”.");
}

// A file that comes between the look and the renaming is not replaced.
TEST_F(DesktopFileManagerTest, MoveDoesNotReplaceWhatCameMeanwhile) {
    host_.file("root/a", "new");
    FileCalls calls;
    calls.renameNoReplace = [&, real = calls.renameNoReplace](int folder, const char* name,
                                                              int newFolder, const char* newName) {
        host_.file("root/b", "other");
        return real(folder, name, newFolder, newName);
    };
    EXPECT_EQ(line(with(calls).moveItemAtPathToPath("/a", "/b")).substr(0, 3), "516");
    EXPECT_EQ(host_.contents("root/b"), "other");
}

class OtherVolume : public DesktopFileManagerTest {
  protected:
    OtherVolume() {
        host_.folder("root/a/deep");
        host_.file("root/a/deep/file", "contents");
        calls_.renameNoReplace = [](int, const char*, int, const char*) {
            errno = EXDEV;
            return -1;
        };
    }

    FileCalls calls_;
};

TEST_F(OtherVolume, MoveCopiesAndRemoves) {
    EXPECT_EQ(line(with(calls_).moveItemAtPathToPath("/a", "/User/b")), "done");
    EXPECT_EQ(host_.contents("root/var/mobile/b/deep/file"), "contents");
    EXPECT_FALSE(std::filesystem::exists(host_ / "root/a"));
}

TEST_F(OtherVolume, FailedCopyIsCleanedUp) {
    calls_.write = [](int, const void*, std::size_t) -> ssize_t {
        errno = ENOSPC;
        return -1;
    };
    EXPECT_EQ(line(with(calls_).moveItemAtPathToPath("/a", "/User/b")),
              "640 You can’t save the file “a” because the volume “/” is out of space.");
    EXPECT_FALSE(std::filesystem::exists(host_ / "root/var/mobile/b"));
    EXPECT_EQ(host_.contents("root/a/deep/file"), "contents");
}

TEST_F(DesktopFileManagerTest, CreatesAFile) {
    EXPECT_TRUE(files_.createFileAtPathContents("/User/file", bytes("contents")));
    EXPECT_EQ(host_.contents("root/var/mobile/file"), "contents");
    EXPECT_EQ(host_.mode("root/var/mobile/file"), 0644U);
    EXPECT_TRUE(files_.createFileAtPathContents("/User/empty", {}));
    EXPECT_EQ(host_.contents("root/var/mobile/empty"), "");
    EXPECT_EQ(host_.count("root/var/mobile"), 2);
}

TEST_F(DesktopFileManagerTest, ReplacingKeepsTheMode) {
    host_.file("root/file", "old and longer");
    ASSERT_EQ(::chmod((host_ / "root/file").c_str(), 0751), 0);
    EXPECT_TRUE(files_.writeToFileAtomically(bytes("new"), "/file"));
    EXPECT_EQ(host_.contents("root/file"), "new");
    EXPECT_EQ(host_.mode("root/file"), 0751U);
}

TEST_F(DesktopFileManagerTest, WritingReplacesALinkItself) {
    host_.file("outside/file", "old");
    host_.file("root/target", "old");
    host_.link("root/link", "target");
    host_.link("root/escape", host_ / "outside/file");
    EXPECT_TRUE(files_.writeToFileAtomically(bytes("new"), "/link"));
    EXPECT_TRUE(files_.writeToFileAtomically(bytes("new"), "/escape"));
    EXPECT_FALSE(std::filesystem::is_symlink(host_ / "root/link"));
    EXPECT_EQ(host_.mode("root/link"), 0644U);
    EXPECT_EQ(host_.contents("root/target"), "old");
    EXPECT_EQ(host_.contents("outside/file"), "old");
    EXPECT_EQ(host_.contents("root/escape"), "new");
}

TEST_F(DesktopFileManagerTest, WritingWhereThereIsNoPlaceFails) {
    host_.file("root/file", "old");
    host_.folder("root/folder");
    for (const char* const path :
         {"", "/", "/none/file", "/file/file", "/folder", "/folder/", "/folder/..", "/new/"}) {
        EXPECT_FALSE(files_.writeToFileAtomically(bytes("new"), path)) << path;
    }
    EXPECT_EQ(host_.contents("root/file"), "old");
    EXPECT_EQ(host_.count("root"), 4);
}

TEST_F(DesktopFileManagerTest, FailedWritingLeavesTheOldFileAndNothingElse) {
    host_.file("root/file", "old");
    const auto fail = [](auto&&...) {
        errno = EIO;
        return -1;
    };
    FileCalls noWrite;
    noWrite.write = fail;
    FileCalls noSync;
    noSync.fsync = fail;
    FileCalls noRename;
    noRename.renameat = fail;
    FileCalls noOpen;
    noOpen.openat = fail;
    for (const FileCalls& calls : {noWrite, noSync, noRename, noOpen}) {
        EXPECT_FALSE(with(calls).writeToFileAtomically(bytes("new"), "/file"));
        EXPECT_EQ(host_.contents("root/file"), "old");
        EXPECT_EQ(host_.count("root"), 3);
    }
}

TEST_F(DesktopFileManagerTest, RemovesItems) {
    host_.folder("root/folder/deep");
    host_.file("root/folder/deep/file");
    host_.file("outside/file", "kept");
    host_.link("root/folder/escape", host_ / "outside");
    host_.link("root/link", "/folder");
    EXPECT_EQ(line(files_.removeItemAtPath("/link")), "done");
    EXPECT_TRUE(std::filesystem::exists(host_ / "root/folder/deep/file"));
    EXPECT_EQ(line(files_.removeItemAtPath("/folder")), "done");
    EXPECT_FALSE(std::filesystem::exists(host_ / "root/folder"));
    EXPECT_EQ(host_.contents("outside/file"), "kept");
    EXPECT_EQ(line(files_.removeItemAtPath("/none")), "4 “none” couldn’t be removed.");
    host_.file("root/file");
    EXPECT_EQ(line(files_.removeItemAtPath("/file/x")), "512 “x” couldn’t be removed.");
}

TEST_F(DesktopFileManagerTest, FoldersAreMadeWithThoseAboveThem) {
    EXPECT_EQ(line(files_.createDirectoryAtPathWithIntermediateDirectories("/User/a/b//c/")),
              "done");
    EXPECT_TRUE(std::filesystem::is_directory(host_ / "root/var/mobile/a/b/c"));
    // Again, and relative.
    EXPECT_EQ(line(files_.createDirectoryAtPathWithIntermediateDirectories("/User/a/b/c")), "done");
    EXPECT_EQ(line(files_.createDirectoryAtPathWithIntermediateDirectories("d/e")), "done");
    EXPECT_TRUE(std::filesystem::is_directory(host_ / "root/d/e"));
    EXPECT_EQ(line(files_.createDirectoryAtPathWithIntermediateDirectories("/")), "done");
}

TEST_F(DesktopFileManagerTest, FolderIsNotMadeOverOrBelowAFile) {
    host_.file("root/var/mobile/file");
    EXPECT_EQ(
        line(files_.createDirectoryAtPathWithIntermediateDirectories("/User/file")).substr(0, 3),
        "516");
    // The file that is in the way is named, wherever it stands.
    for (const char* const path : {"/User/file/a", "/User/file/a/b"}) {
        EXPECT_EQ(line(files_.createDirectoryAtPathWithIntermediateDirectories(path)),
                  "512 The file “file” couldn’t be saved in the folder “User”.");
    }
    EXPECT_TRUE(std::filesystem::is_regular_file(host_ / "root/var/mobile/file"));
}

TEST_F(DesktopFileManagerTest, FoldersAreNotMadeOutsideTheRoot) {
    host_.link("root/out", host_ / "outside");
    EXPECT_NE(line(files_.createDirectoryAtPathWithIntermediateDirectories("/out/a")), "done");
    EXPECT_EQ(line(files_.createDirectoryAtPathWithIntermediateDirectories("/../../outside/b")),
              "done");
    EXPECT_TRUE(std::filesystem::is_empty(host_ / "outside"));
    EXPECT_TRUE(std::filesystem::is_directory(host_ / "root/outside/b"));
}

TEST(FileErrors, WordsReadingAndSaving) {
    EXPECT_EQ(fileError(FileOperation::read, EACCES, "/a/b").localizedDescription,
              "The file “b” couldn’t be opened because you don’t have permission to view it.");
    EXPECT_EQ(fileError(FileOperation::read, EACCES, "/a/b").code, 257);
    EXPECT_EQ(fileError(FileOperation::read, EFBIG, "/a/b").code, 263);
    EXPECT_EQ(fileError(FileOperation::read, ENAMETOOLONG, "/a/b").code, 258);
    EXPECT_EQ(fileError(FileOperation::write, EEXIST, "/a/b").localizedDescription,
              "The file “b” couldn’t be saved in the folder “a” because a file with the same name "
              "already exists.");
    EXPECT_EQ(fileError(FileOperation::write, EPERM, "/a/b").localizedDescription,
              "You don’t have permission to save the file “b” in the folder “a”.");
    EXPECT_EQ(fileError(FileOperation::remove, EACCES, "/a/b").localizedDescription,
              "“b” couldn’t be removed because you don’t have permission to access it.");
}

TEST(FileErrors, NamesThatLookLikePlaceholdersStay) {
    EXPECT_EQ(fileError(FileOperation::copy, EEXIST, "/{F}", "/{X}/y").localizedDescription,
              "“{F}” couldn’t be copied to “{X}” because an item with the same name already "
              "exists.");
}

}  // namespace
}  // namespace velmoranth::desktop::file_manager_test
