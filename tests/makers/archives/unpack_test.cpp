// What is unpacked of archives, and what is refused.
#include "makers/archives/unpack.h"

#include "tests/support/archives/archive_writer.h"
#include "tests/support/temporary_folder.h"

#include "makers/archives/byte_source.h"
#include "makers/archives/whole_archive.h"
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

const std::string kCut = "it is cut short; get it again, all of it";
const std::string kNone = "it is no .deb, .zip or .tar archive; give one of these, or a folder";

// That no packing makes smaller.
std::string noise(std::size_t size) {
    std::string bytes;
    for (unsigned value = 1; bytes.size() < size;) {
        value = value * 1103515245U + 12345U;
        bytes += static_cast<char>(value >> 16U);
    }
    return bytes;
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

    desktop::Result<UnpackedArchive> unpackInMemory(const std::string& bytes) const {
        const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
        folder.folder("out");
        for (const char* const name : {"a", "b", "c"}) {
            std::filesystem::remove(folder / ("out/" + std::string(name)));
        }
        return unpackArchive({data, bytes.size()}, "", folder / "out");
    }

    // The message alone.
    std::string refusal(const std::string& bytes) const {
        const auto unpacked = unpackInMemory(bytes);
        return unpacked ? "" : unpacked.error().message;
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

TEST_F(Unpack, whatIsPackedIsRefusedWhereverItIsCut) {
    struct Row {
        std::string whole;
        std::size_t telling;  // how many bytes tell what it is
    };

    for (const Row& row : {Row{tarOf({{"a", noise(700)}}, Packing::gzip), 3},
                           Row{tarOf({{"a", noise(700)}}, Packing::bzip2), 3},
                           Row{tarOf({{"a", noise(700)}}, Packing::xz), 6},
                           Row{tarOf({{"a", noise(700)}}, Packing::lzma), 14},
                           Row{tarOf({{"a", noise(700)}}, Packing::zstd), 4},
                           Row{zipOf({{"a", noise(300)}, {"b", "1"}, {"c", ""}}), 4}}) {
        ASSERT_TRUE(unpack(row.whole));
        for (std::size_t size = 1; size < row.whole.size(); ++size) {
            EXPECT_EQ(refusal(row.whole.substr(0, size)), size < row.telling ? kNone : kCut)
                << size << " of " << row.whole.size();
        }
    }
    // In blocks of which the first ones are whole.
    const std::string large = noise(300000);
    for (const std::string& whole :
         {tarOf({{"a", large}, {"b", large}}, Packing::gzip),
          tarOf({{"a", large}, {"b", large}}, Packing::xz),
          tarOf({{"a", large}, {"b", large}}, Packing::zstd), zipOf({{"a", large}, {"b", large}}),
          packageOf({{"a", large}, {"b", large}}, Packing::none)}) {
        ASSERT_TRUE(unpack(whole));
        for (const std::size_t size :
             {whole.size() / 4, whole.size() / 2, whole.size() * 3 / 4, whole.size() - 1}) {
            expectRefused(whole.substr(0, size), kCut);
        }
    }
}

TEST_F(Unpack, aTarIsWholeWhereItsEntriesAre) {
    const std::string tar = tarOf({{"a", "1"}, {"b", "2"}});  // two blocks each, and two of zeroes
    ASSERT_EQ(tar.size(), 3072U);
    for (std::size_t size = 1; size <= tar.size(); ++size) {
        SCOPED_TRACE(size);
        const std::string cut = tar.substr(0, size);
        const bool isInEntry = size < 1024 || (size >= 1536 && size < 2048);
        if (isInEntry) {
            EXPECT_EQ(refusal(cut), size < 262 ? kNone : kCut);
            continue;
        }
        const auto unpacked = unpackInMemory(cut);
        ASSERT_TRUE(unpacked) << toLine(unpacked.error());
        EXPECT_EQ(unpacked->files, size < 2048 ? 1U : 2U);
        EXPECT_EQ(unpacked->lacksEndMark, size < 2560);
    }
    const auto packed = unpack(tarOf({{"a", "1"}}, Packing::xz));
    ASSERT_TRUE(packed);
    EXPECT_FALSE(packed->lacksEndMark);
}

TEST_F(Unpack, aPackageIsRefusedWhereverItIsCut) {
    const std::string control = tarOf({{"control", ""}}, Packing::gzip);
    const std::string data = tarOf({{"a", noise(100)}}, Packing::gzip);
    const std::string whole =
        arOf({{"debian-binary", "2.0\n"}, {"control.tar.gz", control}, {"data.tar.gz", data}});
    constexpr std::size_t kHeader = 60;
    const std::size_t format = 8 + kHeader + 4;
    const std::size_t controlEnd = format + kHeader + control.size() + control.size() % 2;
    const std::size_t dataEnd = controlEnd + kHeader + data.size();
    ASSERT_TRUE(unpack(whole));
    const auto missing = [](const std::string& member) {
        return "it is no package: the member " + member +
               " is missing; it may be cut short, get it again";
    };
    for (std::size_t size = 1; size < dataEnd; ++size) {
        SCOPED_TRACE(size);
        const bool isBehindHeader = size >= 8 && size < 8 + kHeader;
        const bool isBehindMember = (size >= format && size < format + kHeader) ||
                                    (size >= controlEnd && size < controlEnd + kHeader);
        EXPECT_EQ(refusal(whole.substr(0, size)), size < 8         ? kNone
                                                  : isBehindHeader ? missing("debian-binary")
                                                  : isBehindMember ? missing("data.tar")
                                                                   : kCut);
    }
    // The package is whole, and what it has for its files is not.
    const std::string tar = tarOf({{"a", "1"}, {"b", "2"}});
    const auto with = [&](std::size_t size) {
        return arOf({{"debian-binary", "2.0\n"},
                     {"control.tar", control},
                     {"data.tar", tar.substr(0, size)}});
    };
    expectRefused(with(1100), kCut);
    const auto unmarked = unpack(with(1024));
    ASSERT_TRUE(unmarked);
    EXPECT_TRUE(unmarked->lacksEndMark);
}

TEST_F(Unpack, aZipIsKnownToBeWholeByTheListOfItsContents) {
    const std::string zip = zipOf({{"a", "1"}, {"b", "2"}});
    // A text of its own behind the record, which says how long it is.
    std::string commented = zip;
    commented[commented.size() - 2] = 4;
    EXPECT_TRUE(unpack(commented + "text"));
    EXPECT_TRUE(unpack(zip + "more than it says"));
    // Another zip among its files is not its own end.
    expectRefused(zip.substr(0, 40) + zip, kCut);
    // Of more than the record can say another one tells, and an empty one has no list.
    const auto hasList = [](const std::string& bytes) {
        const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
        return hasZipList(sourceOfBytes({data, bytes.size()})).value();
    };
    EXPECT_TRUE(hasList(zip));
    EXPECT_TRUE(hasList(std::string(zip).replace(zip.size() - 6, 4, "\xFF\xFF\xFF\xFF")));
    EXPECT_TRUE(hasList(std::string(zip).replace(zip.size() - 10, 4, "\xFF\xFF\xFF\xFF")));
    EXPECT_FALSE(hasList(std::string(zip).replace(zip.size() - 6, 4, "\xFF\xFF\xFF\x7F")));
    EXPECT_FALSE(hasList(std::string(zip).replace(zip.size() - 6, 4, std::string(4, '\0'))));
    EXPECT_TRUE(hasList("PK\x03\x04" + zipOf({})));
    EXPECT_FALSE(hasList("PK\x05\x06"));
}

TEST_F(Unpack, whatIsDamagedIsRefused) {
    std::string gzip = tarOf({{"a", noise(3000)}}, Packing::gzip);
    gzip.replace(100, 400, std::string(400, '\xFF'));
    std::string xz = tarOf({{"a", noise(300000)}}, Packing::xz);
    xz.replace(100000, 400, std::string(400, '\0'));
    std::string zip = zipOf({{"a", std::string(3000, 'a')}});
    zip.replace(60, 4, "\xFF\xFF\xFF\xFF");
    // What the library says of it stands between.
    expectRefused(gzip, "it is damaged (gzip decompression failed); get it again");
    expectRefused(xz, "it is damaged (Lzma library error: Corrupted input data); get it again");
    expectRefused(zip, "it is damaged (ZIP decompression failed (-5)); get it again");
}

TEST_F(Unpack, whatIsNoPackageIsRefused) {
    const std::string data = tarOf({{"./a", "1"}});
    const std::string control = tarOf({{"control", ""}});
    const PackedEntry format{"debian-binary", "2.0\n"};
    const std::string again = "; it may be cut short, get it again";
    expectRefused(arOf({format, {"control.tar", control}}),
                  "it is no package: the member data.tar is missing" + again);
    expectRefused(arOf({format, {"data.tar", data}}),
                  "it is no package: the member control.tar is missing" + again);
    expectRefused(arOf({format, {"control.txt", control}, {"data.tar", data}}),
                  "it is no package: the member control.tar is missing" + again);
    expectRefused(arOf({}), "it is no package: the member debian-binary is missing" + again);
    const std::string anew = "; have it packed again";
    expectRefused(arOf({{"control.tar", control}, {"data.tar", data}}),
                  "it is no package: it does not begin with a member debian-binary" + anew);
    expectRefused(
        arOf({format, {"control.tar", control}, {"data.tar", data}, {"data.tar.gz", data}}),
        "it is no package: it has two members data.tar" + anew);
    for (const std::string version : {"3.0", "1.0", "0.939000", "20", ""}) {
        expectRefused(
            arOf({{"debian-binary", version + "\n"}, {"control.tar", control}, {"data.tar", data}}),
            "it is a package of the format " + version + ", and 2.0 is what can be read" + anew);
    }
    for (const std::string version : {"2.0\n", "2.1\n", "2.0\nand more\n"}) {
        EXPECT_TRUE(unpack(
            arOf({{"debian-binary", version}, {"control.tar/", control}, {"data.tar/", data}})));
    }
}

TEST_F(Unpack, whatIsNoArchiveIsRefused) {
    expectRefused("", "it is empty; get it again");
    for (const std::string text : {"text", "\x89PNG\r\n\x1a\n", "PK", "!<arch"}) {
        expectRefused(text, kNone);
    }
    // Packed as a tar may be, and none.
    expectRefused(packedOf("text", Packing::gzip), kNone);
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
