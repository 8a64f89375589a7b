#include "desktop/files/replacement.h"

#include "tests/support/temporary_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::desktop::replacement_test {
namespace {

const std::vector<std::uint8_t> kBytes{'n', 'e', 'w'};

Descriptor openFolder(const tests::TemporaryFolder& folder) {
    return Descriptor(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// Says of so many names that others have them, and notes all.
FileCalls takenNames(int count, std::vector<std::string>& names) {
    FileCalls calls;
    calls.openat = [&names, count, openat = calls.openat](int folder, const char* name, int flags,
                                                          unsigned mode) {
        names.emplace_back(name);
        if (names.size() > static_cast<std::size_t>(count)) {
            return openat(folder, name, flags, mode);
        }
        errno = EEXIST;
        return -1;
    };
    return calls;
}

TEST(Replacement, AnotherNameIsTriedForEachThatIsTaken) {
    const tests::TemporaryFolder folder;
    std::vector<std::string> names;
    const FileCalls calls = takenNames(9, names);
    EXPECT_EQ(replaceFile(calls, openFolder(folder), "file", kBytes), 0);
    EXPECT_EQ(folder.contents("file"), "new");
    EXPECT_EQ(folder.names("."), "file");
    EXPECT_EQ(names.size(), 10U);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), 10U);
}

TEST(Replacement, TenTakenNamesAreTooMany) {
    const tests::TemporaryFolder folder;
    folder.file("file", "old");
    std::vector<std::string> names;
    const FileCalls calls = takenNames(10, names);
    EXPECT_EQ(replaceFile(calls, openFolder(folder), "file", kBytes), EEXIST);
    EXPECT_EQ(folder.contents("file"), "old");
    EXPECT_EQ(names.size(), 10U);
}

// Processes of different containers may have one number.
TEST(Replacement, NamesOfTheSameProcessDifferBeyondItsNumber) {
    const tests::TemporaryFolder folder;
    std::vector<std::string> names;
    const FileCalls calls = takenNames(0, names);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(replaceFile(calls, openFolder(folder), "file", kBytes), 0);
    }
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), 20U);
}

}  // namespace
}  // namespace velmoranth::desktop::replacement_test
