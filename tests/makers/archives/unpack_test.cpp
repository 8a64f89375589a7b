// What is unpacked of archives, and what is refused.
#include "makers/archives/unpack.h"

#include "tests/support/archives/archive_writer.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::makers::unpack_test {
namespace {

using tests::arOf;
using tests::packageOf;
using tests::PackedEntry;
using tests::PackedKind;
using tests::Packing;
using tests::tarOf;
using tests::zipOf;

// The zip with that flag on each of its entries.
std::string withFlag(std::string zip, unsigned flag) {
    for (const auto& [mark, place] : {std::pair("PK\x03\x04", 6U), std::pair("PK\x01\x02", 8U)}) {
        for (std::size_t at = zip.find(mark); at != std::string::npos;
             at = zip.find(mark, at + 1)) {
            zip[at + place] =
                static_cast<char>(static_cast<unsigned char>(zip[at + place]) | (flag & 0xFFU));
            zip[at + place + 1] =
                static_cast<char>(static_cast<unsigned char>(zip[at + place + 1]) | (flag >> 8U));
        }
    }
    return zip;
}

class Unpack : public testing::Test {
  protected:
    // Of the file "a" with these bytes, into "out".
    desktop::Result<UnpackedArchive> unpack(const std::string& bytes,
                                            const ArchiveLimits& limits = {}) const {
        std::filesystem::remove_all(folder / "out");
        folder.folder("out");
        folder.file("a", bytes);
        return unpackArchive(folder / "a", folder / "out", limits);
    }

    // The same in memory says the same. Nothing stands beside "out" afterwards.
    void expectRefused(const std::string& bytes, const std::string& message,
                       const ArchiveLimits& limits = {}) const {
        const auto unpacked = unpack(bytes, limits);
        ASSERT_FALSE(unpacked) << message;
        EXPECT_EQ(toLine(unpacked.error()), (folder / "a") + ": " + message);
        EXPECT_EQ(folder.names("."), "a out");
        std::filesystem::remove_all(folder / "out");
        folder.folder("out");
        const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
        const auto again = unpackArchive({data, bytes.size()}, "mem", folder / "out", limits);
        ASSERT_FALSE(again);
        EXPECT_EQ(toLine(again.error()), "mem: " + message);
    }

    tests::TemporaryFolder folder;
};

const std::vector<PackedEntry> kTheme{{"./X.theme", "", PackedKind::folder},
                                      {"./X.theme/IconBundles/a.b-large.png", "picture"},
                                      {"X.theme/\xF0\x9F\x9A\xAB \xFF.png", "odd name"},
                                      {"X.theme/empty", ""}};

TEST_F(Unpack, everyPackingOfATarIsUnpacked) {
    for (const Packing packing : {Packing::none, Packing::gzip, Packing::bzip2, Packing::xz,
                                  Packing::lzma, Packing::zstd}) {
        SCOPED_TRACE(static_cast<int>(packing));
        const auto unpacked = unpack(tarOf(kTheme, packing));
        ASSERT_TRUE(unpacked) << toLine(unpacked.error());
        EXPECT_EQ(unpacked->kind, ArchiveKind::pack);
        EXPECT_EQ(unpacked->files, 3U);
        EXPECT_EQ(unpacked->bytes, 15U);
        EXPECT_EQ(folder.contents("out/X.theme/IconBundles/a.b-large.png"), "picture");
        EXPECT_EQ(folder.contents("out/X.theme/\xF0\x9F\x9A\xAB \xFF.png"), "odd name");
        EXPECT_EQ(folder.contents("out/X.theme/empty"), "");
    }
}

TEST_F(Unpack, everyPackingOfAPackageIsUnpacked) {
    for (const Packing packing :
         {Packing::none, Packing::gzip, Packing::xz, Packing::lzma, Packing::zstd}) {
        SCOPED_TRACE(static_cast<int>(packing));
        const auto unpacked = unpack(packageOf(kTheme, packing));
        ASSERT_TRUE(unpacked) << toLine(unpacked.error());
        EXPECT_EQ(unpacked->kind, ArchiveKind::package);
        EXPECT_EQ(unpacked->files, 3U);
        EXPECT_EQ(folder.names("out"), "X.theme");
        EXPECT_EQ(folder.contents("out/X.theme/IconBundles/a.b-large.png"), "picture");
    }
}

TEST_F(Unpack, aZipIsUnpackedWithItsNamesAsTheyStand) {
    const auto unpacked = unpack(zipOf({{"X.theme/\xF0\x9F\x9A\xAB.png", "emoji"},
                                        {"X.theme/caf\xE9.png", "latin"},
                                        {"X.theme/IconBundles/a.b-large.png", "picture"}}));
    ASSERT_TRUE(unpacked) << toLine(unpacked.error());
    EXPECT_EQ(folder.contents("out/X.theme/\xF0\x9F\x9A\xAB.png"), "emoji");
    EXPECT_EQ(folder.contents("out/X.theme/caf\xE9.png"), "latin");
    EXPECT_EQ(folder.contents("out/X.theme/IconBundles/a.b-large.png"), "picture");
    // One that says its names are UTF-8.
    constexpr unsigned kUtf8 = 0x0800;
    ASSERT_TRUE(unpack(withFlag(zipOf({{"X.theme/\xF0\x9F\x9A\xAB.png", "emoji"}}), kUtf8)));
    EXPECT_EQ(folder.contents("out/X.theme/\xF0\x9F\x9A\xAB.png"), "emoji");
}

TEST_F(Unpack, whatLeadsOutsideIsRefused) {
    for (const auto& make : {+[](const std::vector<PackedEntry>& e) { return tarOf(e); },
                             +[](const std::vector<PackedEntry>& e) { return zipOf(e); },
                             +[](const std::vector<PackedEntry>& e) { return packageOf(e); }}) {
        expectRefused(make({{"X/../../b", "x"}}), "it has a name with \"..\", X/../../b");
        expectRefused(make({{"..", "x"}}), "it has a name with \"..\", ..");
        expectRefused(make({{"/etc/b", "x"}}), "it has an absolute name, /etc/b");
        expectRefused(make({{"X/l", "/etc", PackedKind::symbolicLink}}),
                      "it has a link, which could lead anywhere, X/l");
    }
    expectRefused(tarOf({{"X/l", "X/a", PackedKind::hardLink}}),
                  "it has a link, which could lead anywhere, X/l");
    expectRefused(tarOf({{"X/d", "", PackedKind::device}}),
                  "it has what is neither file nor folder, X/d");
    expectRefused(tarOf({{"X/p", "", PackedKind::pipe}}),
                  "it has what is neither file nor folder, X/p");
    // Names that only look so.
    EXPECT_TRUE(unpack(tarOf({{"X/..b", "x"}, {"X/...", "x"}, {"./.", "", PackedKind::folder}})));
}

TEST_F(Unpack, twoEntriesOfOneNameAreRefused) {
    expectRefused(tarOf({{"X/a", "1"}, {"X/./a", "2"}}), "it has two entries of one name, X/./a");
    expectRefused(tarOf({{"X", "1"}, {"X/a", "2"}}), "a file stands where it has a folder, X/a");
    expectRefused(tarOf({{"X/a", "1"}, {"X", "2"}}), "it has two entries of one name, X");
}

TEST_F(Unpack, bombsAreRefusedAtTheirLimit) {
    const std::string zeroes(10000, '\0');
    const ArchiveLimits small{.entries = 3, .bytes = 20000, .ratio = 1000, .freeBytes = 100000};
    EXPECT_TRUE(unpack(tarOf({{"a", zeroes}, {"b", zeroes}, {"c", ""}}), small));
    expectRefused(tarOf({{"a", zeroes}, {"b", zeroes}, {"c", "1"}}),
                  "it unpacks to more than 20000 bytes", small);
    expectRefused(tarOf({{"a", ""}, {"b", ""}, {"c", ""}, {"d", ""}}),
                  "it has more than 3 files and folders", small);
    expectRefused(tarOf({{"a/b/c/d", ""}}), "it has more than 3 files and folders", small);
    // The same folder again and again.
    expectRefused(tarOf({{"a/", ""}, {"a/", ""}, {"a/", ""}, {"a/", ""}}),
                  "it has more than 3 files and folders", small);
    const ArchiveLimits flat{.ratio = 5, .freeBytes = 5000};
    expectRefused(zipOf({{"a", zeroes}}), "it unpacks to more than 5 times its size", flat);
    expectRefused(packageOf({{"a", zeroes}}), "it unpacks to more than 5 times its size", flat);
    // Below what is free, and without packing.
    EXPECT_TRUE(unpack(tarOf({{"a", zeroes.substr(5000)}}, Packing::gzip), flat));
    EXPECT_TRUE(unpack(tarOf({{"a", zeroes}}), flat));
    const std::string longName = std::string(1000, 'x') + "/" + std::string(30, 'x');
    expectRefused(tarOf({{longName, ""}}), "a name in it is longer than 1024 bytes, " + longName);
}

TEST_F(Unpack, theLimitsOfEveryArchiveAreTheseNumbers) {
    const ArchiveLimits limits;
    EXPECT_EQ(limits.entries, 100000U);
    EXPECT_EQ(limits.bytes, 2147483648U);
}

TEST_F(Unpack, anEncryptedZipIsRefused) {
    const std::string zip = withFlag(zipOf({{"X/a", "secret"}}), 0x0001);
    expectRefused(zip, "it is encrypted; unpack it with its password and give the folder");
}

TEST_F(Unpack, whatIsCutShortIsRefusedWhereverItIsCut) {
    std::string noise;
    for (unsigned i = 0, value = 1; i < 3000; ++i) {
        value = value * 1103515245U + 12345U;
        noise += static_cast<char>(value >> 16U);
    }
    for (const std::string& whole :
         {tarOf({{"a", noise}}, Packing::gzip), tarOf({{"a", noise}}, Packing::xz),
          tarOf({{"a", noise}}, Packing::zstd), zipOf({{"a", noise}}),
          packageOf({{"a", noise}}, Packing::xz), packageOf({{"a", noise}}, Packing::none)}) {
        ASSERT_TRUE(unpack(whole));
        for (const std::size_t size : {whole.size() / 4, whole.size() / 2, whole.size() * 3 / 4}) {
            const auto unpacked = unpack(whole.substr(0, size));
            ASSERT_FALSE(unpacked) << size << " of " << whole.size();
            const std::string line = toLine(unpacked.error());
            EXPECT_TRUE(line.starts_with((folder / "a") + ": it is")) << line;
            EXPECT_EQ(line.find('\n'), std::string::npos) << line;
        }
    }
    // A tar ends with blocks of zeroes, which say that it is whole.
    const std::string tar = tarOf({{"a", "1"}, {"b", "2"}});
    EXPECT_FALSE(unpack(tar.substr(0, 1100)));
}

TEST_F(Unpack, aPackageWithoutItsMembersIsRefused) {
    const std::string data = tarOf({{"./a", "1"}});
    expectRefused(arOf({{"debian-binary", "2.0\n"}, {"control.tar", tarOf({{"control", ""}})}}),
                  "it is no package: the member data.tar is missing");
    expectRefused(arOf({{"data.tar", data}}),
                  "it is no package: it does not begin with a member debian-binary");
    expectRefused(arOf({{"debian-binary", "2.0\n"}, {"data.tar", data}, {"data.tar.gz", data}}),
                  "it is no package: it has two members data.tar");
    expectRefused(arOf({}), "it is no package: the member data.tar is missing");
    EXPECT_TRUE(unpack(arOf({{"debian-binary", "2.0\n"}, {"data.tar/", data}})));
}

TEST_F(Unpack, whatIsNoArchiveIsRefused) {
    expectRefused("", "it is empty");
    for (const std::string text : {"text", "\x89PNG\r\n\x1a\n", "PK"}) {
        const auto unpacked = unpack(text);
        ASSERT_FALSE(unpacked);
        EXPECT_EQ(toLine(unpacked.error()),
                  (folder / "a") + ": it is no .deb, .zip or .tar archive");
    }
    const auto missing = unpackArchive(folder / "none", folder / "out");
    ASSERT_FALSE(missing);
    EXPECT_EQ(toLine(missing.error()), (folder / "none") + ": no such file or directory");
}

TEST_F(Unpack, aNameTellsAnArchiveByItsEnding) {
    for (const char* const name : {"a.deb", "d/a.ZIP", "a.tar", "a.tar.gz", "a.Tar.XZ", "a.tgz",
                                   "a.tar.zst", "a.tar.lzma", "a.tar.bz2"}) {
        EXPECT_EQ(nameWithoutEnding(name), "a") << name;
    }
    for (const char* const name : {"a", "deb", ".deb", "a.gz", "a.theme"}) {
        EXPECT_EQ(nameWithoutEnding(name), name);
    }
    EXPECT_EQ(nameWithoutEnding("a.zip/b"), "b");
    EXPECT_EQ(nameWithoutEnding("d/My Theme.theme"), "My Theme.theme");
}

}  // namespace
}  // namespace velmoranth::makers::unpack_test
