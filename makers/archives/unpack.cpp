#include "makers/archives/unpack.h"

#include "desktop/files/descriptor.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/file_tree.h"

#include "makers/archives/archive_file.h"
#include "makers/archives/byte_source.h"
#include "makers/archives/whole_archive.h"
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;

namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;
constexpr std::string_view kPackageMark = "!<arch>\n";

// In lower case, the longer before what it ends in.
constexpr std::array<std::string_view, 14> kEndings{
    ".tar.gz", ".tar.bz2", ".tar.xz", ".tar.lzma", ".tar.zst", ".tar.zstd", ".tgz",
    ".tbz2",   ".txz",     ".tlz",    ".tzst",     ".tar",     ".zip",      ".deb"};

std::size_t endingLength(const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    for (const std::string_view ending : kEndings) {
        if (name.size() > ending.size() &&
            ::strcasecmp(name.c_str() + (name.size() - ending.size()), ending.data()) == 0) {
            return ending.size();
        }
    }
    return 0;
}

tl::unexpected<Problem> refuse(std::string message) {
    return tl::unexpected(Problem{std::move(message)});
}

// The parts of an entry's name, "." and empty ones left out. A problem for one that leads outside.
Result<std::vector<std::string>> partsOf(const std::string& name, const ArchiveLimits& limits) {
    if (name.empty()) {
        return refuse("an entry has no name");
    }
    if (name.front() == '/') {
        return refuse("it has an absolute name, " + name);
    }
    if (name.size() > limits.pathBytes) {
        return refuse("a name in it is longer than " + std::to_string(limits.pathBytes) +
                      " bytes, " + name);
    }
    std::vector<std::string> parts;
    for (std::size_t start = 0; start < name.size();) {
        const std::size_t end = std::min(name.find('/', start), name.size());
        std::string part = name.substr(start, end - start);
        if (part == "..") {
            return refuse("it has a name with \"..\", " + name);
        }
        if (!part.empty() && part != ".") {
            parts.push_back(std::move(part));
        }
        start = end + 1;
    }
    return parts;
}

// What is made of the entries, below one folder.
class Unpacking {
  public:
    Unpacking(const std::string& folder, const ArchiveLimits& limits, std::uint64_t packedBytes)
        : folder_(folder), limits_(limits), packedBytes_(packedBytes) {}

    Result<void> add(ArchiveFile& archive, const ArchiveEntry& entry) {
        if (entry.isEncrypted) {
            return refuse("it is encrypted; unpack it with its password and give the folder");
        }
        if (entry.kind == EntryKind::link || entry.kind == EntryKind::other) {
            return refuse((entry.kind == EntryKind::link
                               ? std::string("it has a link, which could lead anywhere, ")
                               : std::string("it has what is neither file nor folder, ")) +
                          entry.name);
        }
        const auto parts = partsOf(entry.name, limits_);
        if (!parts) {
            return tl::unexpected(parts.error());
        }
        std::string path = folder_;
        for (std::size_t i = 0; i < parts->size(); ++i) {
            path += "/" + (*parts)[i];
            const bool isFile = entry.kind == EntryKind::file && i + 1 == parts->size();
            if (auto made =
                    isFile ? makeFile(archive, path, entry.name) : makeFolder(path, entry.name);
                !made) {
                return made;
            }
        }
        if (parts->empty() && entry.kind == EntryKind::file) {
            return refuse("it has a file without a name");
        }
        return {};
    }

    // Of what is read, but not kept.
    Result<void> countBytes(std::uint64_t bytes) {
        unpacked_.bytes += bytes;
        if (unpacked_.bytes > limits_.bytes) {
            return refuse("it unpacks to more than " + std::to_string(limits_.bytes) + " bytes");
        }
        if (unpacked_.bytes > limits_.freeBytes && unpacked_.bytes / limits_.ratio > packedBytes_) {
            return refuse("it unpacks to more than " + std::to_string(limits_.ratio) +
                          " times its size");
        }
        return {};
    }

    // A file or folder that is made, or a member that is passed over.
    Result<void> countEntry() { return count(entries_); }

    // Whatever is read, made or not: the same folder may be named without end.
    Result<void> countHeader() { return count(headers_); }

    UnpackedArchive& unpacked() { return unpacked_; }

  private:
    Result<void> count(std::size_t& counter) const {
        if (++counter > limits_.entries) {
            return refuse("it has more than " + std::to_string(limits_.entries) +
                          " files and folders");
        }
        return {};
    }

    Result<void> makeFolder(const std::string& path, const std::string& name) {
        if (::mkdir(path.c_str(), 0777) == 0) {
            return countEntry();  // also one that no entry names
        }
        struct stat status{};
        if (errno == EEXIST && ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
            return {};
        }
        if (errno == EEXIST) {
            return refuse("a file stands where it has a folder, " + name);
        }
        return cannotWrite(errno, name);
    }

    Result<void> makeFile(ArchiveFile& archive, const std::string& path, const std::string& name) {
        if (auto counted = countEntry(); !counted) {
            return counted;
        }
        const desktop::Descriptor file(
            ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
        if (!file.isOpen()) {
            return errno == EEXIST ? refuse("it has two entries of one name, " + name)
                                   : cannotWrite(errno, name);
        }
        ++unpacked_.files;
        piece_.resize(kPiece);
        for (;;) {
            const auto size = archive.read(piece_);
            if (!size) {
                return tl::unexpected(size.error());
            }
            if (auto counted = countBytes(*size); !counted) {
                return counted;
            }
            if (const int error =
                    desktop::writeWhole(desktop::FileCalls(), file.get(), piece_.data(), *size)) {
                return cannotWrite(error, name);
            }
            if (*size < piece_.size()) {
                return {};
            }
        }
    }

    static tl::unexpected<Problem> cannotWrite(int error, const std::string& name) {
        return refuse("it cannot be unpacked: " + desktop::problemOfErrno(error, "").message +
                      ", " + name);
    }

    const std::string& folder_;
    const ArchiveLimits& limits_;
    std::uint64_t packedBytes_;
    std::size_t entries_ = 0;
    std::size_t headers_ = 0;
    std::vector<std::uint8_t> piece_;
    UnpackedArchive unpacked_;
};

Result<void> unpackEntries(ArchiveFile& archive, Unpacking& unpacking) {
    for (;;) {
        const auto entry = archive.next();
        if (!entry) {
            return tl::unexpected(entry.error());
        }
        if (!*entry) {
            unpacking.unpacked().lacksEndMark = archive.lacksEndMark();
            return {};
        }
        if (auto counted = unpacking.countHeader(); !counted) {
            return counted;
        }
        if (auto added = unpacking.add(archive, **entry); !added) {
            return added;
        }
    }
}

// The last part of a member's name, without the slash that some writers leave.
std::string memberName(std::string name) {
    while (name.ends_with('/')) {
        name.pop_back();
    }
    return name;
}

// Whether it is the member, packed or not: "data.tar", "data.tar.xz".
bool isMember(const std::string& name, const std::string& member) {
    return name == member || name.starts_with(member + ".");
}

tl::unexpected<Problem> noPackage(const std::string& why) {
    return refuse("it is no package: " + why + "; have it packed again");
}

tl::unexpected<Problem> missing(const std::string& member) {
    return refuse("it is no package: the member " + member +
                  " is missing; it may be cut short, get it again");
}

// The current member says which format the package is of.
Result<void> checkFormat(ArchiveFile& archive) {
    constexpr std::string_view kFormat = "2.";  // what comes behind is a format's smaller change
    std::array<std::uint8_t, 16> bytes{};
    const auto count = archive.read(bytes);
    if (!count) {
        return tl::unexpected(count.error());
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), *count);
    if (!text.starts_with(kFormat)) {
        return refuse("it is a package of the format " +
                      std::string(text.substr(0, text.find('\n'))) +
                      ", and 2.0 is what can be read; have it packed again");
    }
    return {};
}

class PackageReading {
  public:
    PackageReading(ArchiveFile& archive, Unpacking& unpacking)
        : archive_(archive), unpacking_(unpacking) {}

    Result<void> unpack() {
        for (;;) {
            const auto entry = archive_.next();
            if (!entry) {
                return tl::unexpected(entry.error());
            }
            if (!*entry) {
                break;
            }
            if (auto taken = take(memberName((*entry)->name)); !taken) {
                return taken;
            }
        }
        if (isFirst_) {
            return missing("debian-binary");
        }
        return !hasData_      ? missing("data.tar")
               : !hasControl_ ? missing("control.tar")
                              : Result<void>();
    }

  private:
    Result<void> take(const std::string& name) {
        if (isFirst_) {
            isFirst_ = false;
            return name == "debian-binary"
                       ? checkFormat(archive_)
                       : noPackage("it does not begin with a member debian-binary");
        }
        if (!isMember(name, "data.tar")) {
            hasControl_ = hasControl_ || isMember(name, "control.tar");
            return unpacking_.countEntry();
        }
        if (hasData_) {
            return noPackage("it has two members data.tar");
        }
        hasData_ = true;
        auto data = ArchiveFile::openEntry(archive_);
        return data ? unpackEntries(*data, unpacking_) : tl::unexpected(data.error());
    }

    ArchiveFile& archive_;
    Unpacking& unpacking_;
    bool isFirst_ = true;
    bool hasControl_ = false;
    bool hasData_ = false;
};

Result<void> unpackInto(Unpacking& unpacking, const ByteSource& source) {
    if (source.size == 0) {
        return refuse("it is empty; get it again");
    }
    std::array<std::uint8_t, kStartSize> bytes{};
    const auto count = source.read(0, bytes);
    if (!count) {
        return tl::unexpected(count.error());
    }
    const std::string_view start(reinterpret_cast<const char*>(bytes.data()), *count);
    const bool isPackage = start.starts_with(kPackageMark);
    unpacking.unpacked().kind = isPackage ? ArchiveKind::package : ArchiveKind::pack;
    if (isZip(start)) {
        const auto hasList = hasZipList(source);
        if (!hasList || !*hasList) {
            return hasList ? refuse(std::string(kCutShort)) : tl::unexpected(hasList.error());
        }
    }
    auto archive = ArchiveFile::open(source, isPackage ? Formats::container : Formats::contents);
    if (!archive) {
        return tl::unexpected(whyNoArchive(start, source));
    }
    return isPackage ? PackageReading(*archive, unpacking).unpack()
                     : unpackEntries(*archive, unpacking);
}

Result<UnpackedArchive> unpack(const std::string& name, const ByteSource& source,
                               const std::string& folder, const ArchiveLimits& limits) {
    Unpacking unpacking(folder, limits, source.size);
    if (auto unpacked = unpackInto(unpacking, source); !unpacked) {
        return tl::unexpected(Problem{std::move(unpacked.error().message), name});
    }
    return unpacking.unpacked();
}

}  // namespace

std::string nameWithoutEnding(const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    return name.substr(0, name.size() - endingLength(path));
}

Result<UnpackedArchive> unpackArchive(const std::string& path, const std::string& folder,
                                      const ArchiveLimits& limits) {
    const desktop::Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    if (!file.isOpen()) {
        return tl::unexpected(desktop::problemOfErrno(errno, path));
    }
    const auto source = sourceOfFile(file.get());
    if (!source) {
        return tl::unexpected(Problem{source.error().message, path});
    }
    return unpack(path, *source, folder, limits);
}

Result<UnpackedArchive> unpackArchive(std::span<const std::uint8_t> bytes, const std::string& name,
                                      const std::string& folder, const ArchiveLimits& limits) {
    return unpack(name, sourceOfBytes(bytes), folder, limits);
}

}  // namespace velmoranth::makers
