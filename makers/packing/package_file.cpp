#include "makers/packing/package_file.h"

#include "desktop/files/cleanup.h"
#include "desktop/files/descriptor.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <map>
#include <memory>
#include <string_view>
#include <utility>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;

namespace {

constexpr std::size_t kBlock = std::size_t{64} * 1024;
constexpr mode_t kFileMode = 0644;
constexpr mode_t kFolderMode = 0755;  // and of what is run

struct WriterFreed {
    void operator()(archive* writer) const { archive_write_free(writer); }
};

struct EntryFreed {
    void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

// Whoever asks for the package knows its path.
tl::unexpected<Problem> cannotPack(int error) {
    Problem problem = desktop::problemOfErrno(error, "");
    problem.message = "the package cannot be written: " + problem.message;
    return tl::unexpected(std::move(problem));
}

// An archive that is being written to a file.
class Writer {
  public:
    Writer(std::string path, std::int64_t time) : path_(std::move(path)), time_(time) {}

    // Names longer than a hundred bytes are written as every installer reads them.
    Result<void> openTar() {
        archive_write_set_format_gnutar(writer_.get());
        archive_write_add_filter_gzip(writer_.get());
        // No moment of this machine in the stream.
        archive_write_set_filter_option(writer_.get(), "gzip", "timestamp", nullptr);
        archive_write_set_filter_option(writer_.get(), "gzip", "compression-level", "9");
        return open();
    }

    Result<void> openContainer() {
        archive_write_set_format_ar_bsd(writer_.get());
        return open();
    }

    Result<void> folder(const std::string& name) { return begin(name, AE_IFDIR, kFolderMode, 0); }

    Result<void> text(const std::string& name, const std::string& contents, mode_t mode) {
        if (auto begun = begin(name, AE_IFREG, mode, contents.size()); !begun) {
            return begun;
        }
        return add(contents.data(), contents.size());
    }

    Result<void> file(const std::string& name, const std::string& source, std::uint64_t size) {
        const desktop::Descriptor from(::open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
        if (!from.isOpen()) {
            return tl::unexpected(desktop::problemOfErrno(errno, source));
        }
        if (auto begun = begin(name, AE_IFREG, kFileMode, size); !begun) {
            return begun;
        }
        std::array<char, kBlock> block{};
        std::uint64_t done = 0;
        while (true) {
            const ssize_t count = ::read(from.get(), block.data(), block.size());
            if (count < 0 && errno != EINTR) {
                return tl::unexpected(desktop::problemOfErrno(errno, source));
            }
            if (count == 0) {
                break;
            }
            done += count < 0 ? 0 : static_cast<std::uint64_t>(count);
            if (done > size) {
                break;
            }
            if (count > 0) {
                if (auto added = add(block.data(), static_cast<std::size_t>(count)); !added) {
                    return added;
                }
            }
        }
        return done == size
                   ? Result<void>()
                   : tl::unexpected(Problem{"the file was changed while it was packed", source});
    }

    Result<void> close() {
        return archive_write_close(writer_.get()) == ARCHIVE_OK ? Result<void>() : problem();
    }

  private:
    Result<void> open() {
        archive_write_set_bytes_in_last_block(writer_.get(), 1);
        return archive_write_open_filename(writer_.get(), path_.c_str()) == ARCHIVE_OK
                   ? Result<void>()
                   : problem();
    }

    Result<void> begin(const std::string& name, unsigned type, mode_t mode, std::uint64_t size) {
        const std::unique_ptr<archive_entry, EntryFreed> entry(archive_entry_new());
        archive_entry_set_pathname(entry.get(), name.c_str());
        archive_entry_set_filetype(entry.get(), type);
        archive_entry_set_perm(entry.get(), mode);
        archive_entry_set_size(entry.get(), static_cast<la_int64_t>(size));
        archive_entry_set_mtime(entry.get(), time_, 0);
        archive_entry_set_uid(entry.get(), 0);
        archive_entry_set_gid(entry.get(), 0);
        archive_entry_set_uname(entry.get(), "root");
        archive_entry_set_gname(entry.get(), "root");
        return archive_write_header(writer_.get(), entry.get()) == ARCHIVE_OK ? Result<void>()
                                                                              : problem();
    }

    Result<void> add(const char* bytes, std::size_t count) {
        while (count > 0) {
            const la_ssize_t written = archive_write_data(writer_.get(), bytes, count);
            if (written <= 0) {
                return problem();
            }
            bytes += written;
            count -= static_cast<std::size_t>(written);
        }
        return {};
    }

    tl::unexpected<Problem> problem() {
        const int error = archive_errno(writer_.get());
        return cannotPack(error > 0 ? error : EIO);
    }

    std::string path_;
    std::int64_t time_;
    std::unique_ptr<archive, WriterFreed> writer_{archive_write_new()};
};

// The files by their names, and nullptr for each folder on the way.
std::map<std::string, const PackagedFile*> contentsOf(const std::vector<PackagedFile>& files) {
    std::map<std::string, const PackagedFile*> contents{{"./", nullptr}};
    for (const PackagedFile& file : files) {
        const std::string name = "./" + file.name;
        for (std::size_t slash = name.find('/'); slash != std::string::npos;
             slash = name.find('/', slash + 1)) {
            contents.try_emplace(name.substr(0, slash + 1), nullptr);
        }
        contents[name] = &file;
    }
    return contents;
}

Result<void> writeData(const Package& package, const std::string& path,
                       const std::function<void(std::size_t files)>& progress) {
    Writer data(path, package.time);
    if (auto opened = data.openTar(); !opened) {
        return opened;
    }
    std::size_t done = 0;
    for (const auto& [name, file] : contentsOf(package.files)) {
        auto written =
            file == nullptr ? data.folder(name) : data.file(name, file->source, file->size);
        if (!written) {
            return written;
        }
        if (file != nullptr) {
            progress(++done);
        }
    }
    return data.close();
}

Result<void> writeControl(const Package& package, const std::string& path) {
    Writer control(path, package.time);
    auto written = control.openTar();
    written = written ? control.folder("./") : written;
    written = written ? control.text("./control", package.control, kFileMode) : written;
    if (written && !package.script.empty()) {
        written = control.text("./postinst", package.script, kFolderMode);
    }
    return written ? control.close() : written;
}

Result<void> addMember(Writer& package, const std::string& name, const std::string& path) {
    struct stat status{};
    if (::stat(path.c_str(), &status) != 0) {
        return cannotPack(errno);
    }
    return package.file(name, path, static_cast<std::uint64_t>(status.st_size));
}

}  // namespace

Result<void> writePackage(const Package& package, const std::string& path,
                          const std::function<void(std::size_t files)>& progress) {
    const desktop::RemovedAtEnd data(path + ".data");
    const desktop::RemovedAtEnd control(path + ".control");
    auto written = writeData(package, data.path(), progress);
    written = written ? writeControl(package, control.path()) : written;
    Writer container(path, package.time);
    written = written ? container.openContainer() : written;
    written = written ? container.text("debian-binary", "2.0\n", kFileMode) : written;
    written = written ? addMember(container, "control.tar.gz", control.path()) : written;
    written = written ? addMember(container, "data.tar.gz", data.path()) : written;
    return written ? container.close() : written;
}

}  // namespace velmoranth::makers
