#include "device/emulator/fixups.h"

#include "device/emulator/macho_builder.h"
#include <gtest/gtest.h>

namespace velmoranth::emulator::fixups_test {
namespace {

using Addresses = std::vector<std::uint64_t>;
using Bytes = MachOBuilder::Bytes;

Addresses rebases(Bytes opcodes) {
    MachOBuilder builder;
    builder.rebases = std::move(opcodes);
    return rebasesOf(builder.file());
}

std::string rebaseError(const Bytes& opcodes) {
    return errorOf([&] { static_cast<void>(rebases(opcodes)); });
}

Bytes withName(Bytes before, const std::string& name, const Bytes& after) {
    before.insert(before.end(), name.begin(), name.end());
    before.push_back(0);
    before.insert(before.end(), after.begin(), after.end());
    return before;
}

TEST(Rebases, AreReadInRunsAndWithGaps) {
    EXPECT_EQ(rebases({0x11, 0x20, 0x80, 0x02, 0x52, 0x00}), (Addresses{0x100, 0x108}));
    // Two with a pointer between; one more after a gap of 16; then a counted run.
    EXPECT_EQ(rebases({0x20, 0x00, 0x80, 0x02, 0x08, 0x41, 0x30, 0x08, 0x60, 0x02, 0x00}),
              (Addresses{0x00, 0x10, 0x30, 0x38}));
}

TEST(Rebases, StayInTheLibrary) {
    EXPECT_EQ(rebases({0x20, 0xf8, 0x1f, 0x51}), Addresses{0xff8});
    EXPECT_EQ(rebaseError({0x20, 0xf9, 0x1f, 0x51}), "rebases leave the library's memory");
    EXPECT_EQ(rebaseError({0x21, 0x00, 0x51}), "rebases name a segment that there is not");
}

TEST(Rebases, EndWithinNoEntry) {
    EXPECT_EQ(rebaseError({0x20}), "rebases end within an entry");
    EXPECT_EQ(rebaseError({0x20, 0x80}), "rebases end within an entry");
    EXPECT_EQ(rebaseError(Bytes(12, 0x80)), "rebases have a number of more than 64 bits");
    EXPECT_EQ(rebaseError({0xf0}), "rebases have an unknown opcode 240");
}

// A run that steps back to where it was would never end.
TEST(Rebases, AreNoMoreThanPlaces) {
    const Bytes opcodes = {0x20, 0x00, 0x80,                    // a run:
                           0xff, 0xff, 0xff, 0xff, 0x7f,        // many times,
                           0xf8, 0xff, 0xff, 0xff, 0xff, 0xff,  // 8 bytes back
                           0xff, 0xff, 0xff, 0x01};
    EXPECT_EQ(rebaseError(opcodes), "rebases are more than the library has places");
}

TEST(Bindings, HaveNameLibraryAndAddend) {
    MachOBuilder builder;
    builder.bindings =
        withName({0x11, 0x40}, "_objc_retain", {0x51, 0x70, 0x10, 0x60, 0x7f, 0x90, 0x00, 0x90});
    EXPECT_EQ(bindingsOf(builder.file()), (std::vector<Binding>{{0x10, "_objc_retain", 1, -1}}));
}

TEST(Bindings, GoOnBehindAZeroWhereTheyAreLazy) {
    MachOBuilder builder;
    const Bytes first = withName({0x70, 0x10, 0x11, 0x40}, "_a", {0x90, 0x00});
    const Bytes second = withName({0x70, 0x18, 0x3e, 0x40}, "_b", {0x90, 0x00});
    builder.lazyBindings = first;
    builder.lazyBindings.insert(builder.lazyBindings.end(), second.begin(), second.end());
    EXPECT_EQ(bindingsOf(builder.file()),
              (std::vector<Binding>{{0x10, "_a", 1, 0}, {0x18, "_b", -2, 0}}));
}

TEST(Bindings, EndWithinNoName) {
    MachOBuilder builder;
    builder.bindings = {0x40, '_', 'a'};
    EXPECT_EQ(errorOf([&] { static_cast<void>(bindingsOf(builder.file())); }),
              "bindings end within an entry");
}

TEST(Exports, AreFoundByTheirWholeName) {
    MachOBuilder builder;
    // "_ta" leads to "p" (at 0x120) and to nothing else.
    builder.exports = {0x00, 0x01, '_',  't',  'a',  0x00, 0x07, 0x00, 0x01,
                       'p',  0x00, 0x0c, 0x03, 0x00, 0xa0, 0x02, 0x00};
    const MachOFile file = builder.file();
    EXPECT_EQ(exportOf(file, "_tap"), 0x120U);
    EXPECT_EQ(exportOf(file, "_ta"), 0U);
    EXPECT_EQ(exportOf(file, "_tape"), 0U);
    EXPECT_EQ(exportOf(file, "_blurEffect"), 0U);
}

}  // namespace
}  // namespace velmoranth::emulator::fixups_test
