#include "device/emulator/chains.h"

#include "device/emulator/macho_builder.h"
#include <gtest/gtest.h>

#include <cstring>

namespace velmoranth::emulator::chains_test {
namespace {

using Bytes = MachOBuilder::Bytes;

constexpr std::uint64_t kSigned = std::uint64_t{1} << 63U;
constexpr std::uint64_t kImport = std::uint64_t{1} << 62U;

constexpr std::uint64_t after(std::uint64_t words) {
    return words << 51U;
}

// A library with these pointers in its segment, and a chain that begins at 8.
struct Chained {
    Bytes table = {0xd0, 0x02,                            // two imports at most
                   0x11, 0x40, '_',  'a', 0, 0x51, 0x90,  // of library 1
                   0x60, 0x78, 0x90,                      // the same, and 8 bytes before it
                   0x70, 0x08, 0xd1, 0x00};
    std::vector<std::pair<std::uint64_t, std::uint64_t>> pointers =
        {};  // offset, what stands there
    std::uint32_t protection = 3;
    Bytes rebases = {};

    [[nodiscard]] MachOFile file() const {
        MachOBuilder builder;
        builder.bindings = table;
        builder.rebases = rebases;
        builder.protection = protection;
        builder.contents.resize(0x1000);
        for (const auto& [offset, value] : pointers) {
            std::memcpy(&builder.contents[offset], &value, sizeof value);
        }
        return builder.file();
    }

    [[nodiscard]] std::vector<ChainedPointer> read() const { return chainedPointersOf(file()); }

    [[nodiscard]] std::string error() const {
        return errorOf([this] { static_cast<void>(read()); });
    }
};

TEST(Chains, LeadFromPointerToPointer) {
    const Chained chained = {
        .pointers = {{0x08, after(2) | 0x100}, {0x18, after(0x1fc) | 0x200}, {0xff8, 0x300}}};
    const auto pointers = chained.read();
    ASSERT_EQ(pointers.size(), 3U);
    EXPECT_EQ(pointers[0], (ChainedPointer{.address = 0x08, .target = 0x100}));
    EXPECT_EQ(pointers[1], (ChainedPointer{.address = 0x18, .target = 0x200}));
    EXPECT_EQ(pointers[2], (ChainedPointer{.address = 0xff8, .target = 0x300}));
}

TEST(Chains, SayHowAPointerIsSigned) {
    const auto signingOf = [](std::uint64_t bits) {
        return Chained{.pointers = {{0x08, kSigned | bits | 0x100}}}.read().at(0).signing;
    };
    EXPECT_EQ(signingOf(0), (Signing{0, false, 0}));
    EXPECT_EQ(signingOf(std::uint64_t{1} << 49U), (Signing{1, false, 0}));
    EXPECT_EQ(signingOf(std::uint64_t{3} << 49U), (Signing{3, false, 0}));
    EXPECT_EQ(signingOf(std::uint64_t{1} << 48U), (Signing{0, true, 0}));
    EXPECT_EQ(signingOf(std::uint64_t{51857} << 32U), (Signing{0, false, 51857}));
    EXPECT_EQ((Chained{.pointers = {{0x08, 0x100}}}.read().at(0).signing), std::nullopt);
}

TEST(Chains, KeepTheTopmostBitsOfWhatIsNotSigned) {
    const auto targetOf = [](std::uint64_t raw) {
        return Chained{.pointers = {{0x08, raw}}}.read().at(0).target;
    };
    EXPECT_EQ(targetOf(std::uint64_t{0x80} << 43U | 0x100), std::uint64_t{0x80} << 56U | 0x100);
    EXPECT_EQ(targetOf(kSigned | 0xfffffff8), 0xfffffff8U);
    EXPECT_EQ(targetOf((std::uint64_t{1} << 43U) - 8), (std::uint64_t{1} << 56U) - 8);
}

TEST(Chains, LeadToImportsWithAndWithoutASignature) {
    const auto pointers =
        Chained{.pointers = {{0x08, after(1) | kImport}, {0x10, kSigned | kImport | 1}}}.read();
    ASSERT_EQ(pointers.size(), 2U);
    EXPECT_EQ(pointers[0],
              (ChainedPointer{.address = 0x08, .isImport = true, .import = {0, "_a", 1, 0}}));
    EXPECT_EQ(
        pointers[1],
        (ChainedPointer{
            .address = 0x10, .isImport = true, .import = {0, "_a", 1, -8}, .signing = Signing{}}));
    EXPECT_EQ((Chained{.pointers = {{0x08, kImport | 2}}}.error()),
              "a pointer to an import that there is not: 2");
}

TEST(Chains, StayInTheirPage) {
    EXPECT_EQ((Chained{.pointers = {{0x08, after(0x1ff)}}}.error()),
              "a chain that leaves its page in __DATA");
    Chained beyond;
    beyond.table = {0xd0, 0x00, 0x70, 0x80, 0x20, 0xd1};
    EXPECT_EQ(beyond.error(), "a chain that leaves its page in __DATA");
    beyond.table = {0xd0, 0x00, 0x70, 0x04, 0xd1};
    EXPECT_EQ(beyond.error(), "a chain that leaves its page in __DATA");
}

TEST(Chains, AreOneAPageAndLieInData) {
    Chained twice = {.pointers = {{0x08, 0x100}, {0x10, 0x100}}};
    twice.table = {0xd0, 0x00, 0x70, 0x08, 0xd1, 0x70, 0x10, 0xd1};
    EXPECT_EQ(twice.error(), "two chains in a page of __DATA");
    for (const std::uint32_t protection : {1U, 5U, 7U}) {
        EXPECT_EQ((Chained{.pointers = {{0x08, 0x100}}, .protection = protection}.error()),
                  "a chain in __DATA, which is not for data");
    }
    twice.table = {0xd0, 0x00, 0x71, 0x08, 0xd1};
    EXPECT_EQ(twice.error(), "a chain that begins in no segment");
    twice.table = {0xd0, 0x00, 0xd1};
    EXPECT_EQ(twice.error(), "a chain that begins in no segment");
}

TEST(Chains, AreWhatLoadersRead) {
    Chained chained = {.pointers = {{0x08, 0x100}}};
    chained.rebases = {0x11, 0x00};
    EXPECT_EQ(chained.error(), "fix-ups of other processors beside chains");
    chained.rebases.clear();
    chained.table = {0xd0, 0x00, 0x11, 0x40, '_', 'a', 0, 0x51, 0x90};
    EXPECT_EQ(chained.error(), "more imports than are announced");
    chained.table = {0x11, 0x40, '_', 'a', 0, 0x51};
    EXPECT_EQ(chained.error(), "more imports than are announced");
    chained.table = {0xd0, 0x01, 0x11, 0x51, 0x90};
    EXPECT_EQ(chained.error(), "an import that lacks its name or its kind");
    chained.table = {0xd0, 0x01, 0x11, 0x40, '_', 'a', 0, 0x90};
    EXPECT_EQ(chained.error(), "an import that lacks its name or its kind");
    for (const int opcode : {0x80, 0xa0, 0xb1, 0xc0, 0xd2, 0xe0}) {
        chained.table = {static_cast<std::uint8_t>(opcode)};
        EXPECT_EQ(chained.error(), "chains have an unknown opcode " + std::to_string(opcode));
    }
}

}  // namespace
}  // namespace velmoranth::emulator::chains_test
