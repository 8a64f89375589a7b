#include "device/emulator/macho_builder.h"
#include <gtest/gtest.h>

#include <utility>

namespace velmoranth::emulator::macho_file_test {
namespace {

TEST(MachOFile, HasSegmentsSectionsAndLibraries) {
    const MachOFile file = MachOBuilder().file();
    ASSERT_EQ(file.segments().size(), 1U);
    EXPECT_EQ(file.segments()[0].name, "__DATA");
    EXPECT_EQ(file.memorySize(), 0x1000U);
    ASSERT_EQ(file.sections().size(), 1U);
    EXPECT_EQ(file.sections()[0].name, "__objc_selrefs");
    EXPECT_EQ(file.sections()[0].address, 0x100U);
    EXPECT_EQ(file.libraryOf(1), "/usr/lib/libobjc.A.dylib");
    EXPECT_EQ(file.libraryOf(0), "");
    EXPECT_EQ(file.libraryOf(2), "");
    EXPECT_EQ(file.libraryOf(-2), "");
}

TEST(MachOFile, RefusesAFileThatEndsAnywhere) {
    MachOBuilder builder;
    builder.rebases = {0x11, 0x20, 0x00, 0x51, 0x00};
    const MachOBuilder::Bytes whole = builder.bytes();
    ASSERT_EQ(errorOf([&] { MachOFile{whole}; }), "");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_NE(errorOf([&] {
                      MachOFile{MachOBuilder::Bytes(whole.begin(),
                                                    whole.begin() + static_cast<long>(size))};
                  }),
                  "")
            << size;
    }
}

TEST(MachOFile, NamesWhatIsCutOff) {
    MachOBuilder builder;
    builder.rebases = {0x00};
    MachOBuilder::Bytes bytes = builder.bytes();
    bytes.pop_back();
    EXPECT_EQ(errorOf([&] { MachOFile{bytes}; }), "the file ends before its rebases");
    bytes.resize(20);
    EXPECT_EQ(errorOf([&] { MachOFile{bytes}; }), "no dynamic library for arm64");
}

TEST(MachOFile, RefusesWhatLeavesItsPlace) {
    MachOBuilder section;
    section.sectionAddress = 0xfc1;
    EXPECT_EQ(errorOf([&] { static_cast<void>(section.file()); }),
              "section __objc_selrefs leaves its segment");
    MachOBuilder segment;
    segment.segmentFileSize = ~std::uint64_t{0};
    EXPECT_EQ(errorOf([&] { static_cast<void>(segment.file()); }),
              "the file ends before its segment __DATA");
}

TEST(MachOFile, RefusesAnotherKindOfFile) {
    MachOBuilder::Bytes bytes = MachOBuilder().bytes();
    bytes[12] = 2;  // a program
    EXPECT_EQ(errorOf([&] { MachOFile{bytes}; }), "no dynamic library for arm64");
}

TEST(MachOFile, IsForOneOfTwoProcessors) {
    const auto errorFor = [](std::uint32_t subtype) {
        return errorOf([&] { static_cast<void>(MachOBuilder{.subtype = subtype}.file()); });
    };
    EXPECT_FALSE(MachOBuilder{.subtype = 0}.file().isArm64e());
    EXPECT_TRUE(MachOBuilder{.subtype = 2}.file().isArm64e());
    EXPECT_EQ(errorFor(1), "for a processor 1, which iOS 12 does not know");
    EXPECT_EQ(errorFor(0x80000002), "for a processor 2147483650, which iOS 12 does not know");
}

TEST(MachOFile, KnowsWhatIsForData) {
    const auto isForData = [](std::uint32_t protection) {
        return MachOBuilder{.protection = protection}.file().segments().at(0).isForData;
    };
    EXPECT_TRUE(isForData(3));
    EXPECT_FALSE(isForData(1));
    EXPECT_FALSE(isForData(5));
    EXPECT_FALSE(isForData(7));
}

}  // namespace
}  // namespace velmoranth::emulator::macho_file_test
