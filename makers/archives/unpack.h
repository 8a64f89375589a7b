// Packages and archives of themes: what they hold, laid out in a folder. Input is hostile: names
// are checked before anything is made, and counts and sizes are capped while it is read.
#pragma once

#include "desktop/result/result.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace velmoranth::makers {

// package: a .deb, of which its data is unpacked. pack: a .zip, or a tar, packed by gzip, bzip2,
// xz, lzma, zstd or nothing.
enum class ArchiveKind { package, pack };

struct ArchiveLimits {
    std::size_t entries = 100000;                                 // files and folders
    std::uint64_t bytes = std::uint64_t{2} * 1024 * 1024 * 1024;  // of the files, unpacked
    // How many times its own size an archive may unpack to, once that is more than `freeBytes`.
    std::uint64_t ratio = 1000;
    std::uint64_t freeBytes = std::uint64_t{64} * 1024 * 1024;
    std::size_t pathBytes = 1024;  // of a name with its folders
};

// What was unpacked.
struct UnpackedArchive {
    ArchiveKind kind = ArchiveKind::pack;
    std::size_t files = 0;
    std::uint64_t bytes = 0;
    // A tar, or the one in a package, goes on to its last byte without the zeroes that end one: it
    // was cut between two entries or in a header, or written by a program that leaves them away.
    bool lacksEndMark = false;
};

// What a user is to be told of an archive that lacks its end mark.
inline constexpr std::string_view kLacksEndMark =
    "it ends without the mark that ends a tar, so files may be missing; if any are, get it again";

// The name without its folders and an archive's ending (".deb", ".zip", ".tar", ".tar.xz", ".tgz"
// and so on, in any case): "dist/Mine.tar.gz" is "Mine".
[[nodiscard]] std::string nameWithoutEnding(const std::string& path);

// Unpacks the archive `path`, which is told by its content, into `folder`, which exists and is
// empty. Names may be of any bytes. Refused, with one line that names the archive and where it is
// about one the entry: what is no archive, is encrypted, damaged or cut short; a package without
// its members or of another format than 2; absolute names, "..", links, devices and all else that
// is neither file nor folder; two files of one name; more than the limits. What was unpacked until
// then stays in the folder.
[[nodiscard]] desktop::Result<UnpackedArchive> unpackArchive(const std::string& path,
                                                             const std::string& folder,
                                                             const ArchiveLimits& limits = {});

// The same of an archive in memory; `name` is for the problem.
[[nodiscard]] desktop::Result<UnpackedArchive> unpackArchive(std::span<const std::uint8_t> bytes,
                                                             const std::string& name,
                                                             const std::string& folder,
                                                             const ArchiveLimits& limits = {});

}  // namespace velmoranth::makers
