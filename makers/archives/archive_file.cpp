#include "makers/archives/archive_file.h"

#include <archive.h>
#include <archive_entry.h>
#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale() is POSIX's
#include <sys/types.h>

#include <cerrno>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;

namespace {

constexpr std::size_t kBlock = std::size_t{64} * 1024;

// The library turns names that say they are UTF-8 into the locale's letters, and loses some in the
// plain one; in this one they stay as they are.
class Utf8Names {
  public:
    Utf8Names() : locale_(::newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{})) {
        if (locale_ != locale_t{}) {
            before_ = ::uselocale(locale_);
        }
    }

    ~Utf8Names() {
        if (locale_ != locale_t{}) {
            ::uselocale(before_);
            ::freelocale(locale_);
        }
    }

    Utf8Names(const Utf8Names&) = delete;
    Utf8Names& operator=(const Utf8Names&) = delete;

  private:
    locale_t locale_;
    locale_t before_{};
};

struct Freed {
    void operator()(archive* reader) const { archive_read_free(reader); }
};

EntryKind kindOf(archive_entry* entry) {
    if (archive_entry_hardlink(entry) != nullptr || archive_entry_symlink(entry) != nullptr) {
        return EntryKind::link;
    }
    switch (archive_entry_filetype(entry)) {
        case AE_IFREG:
            return EntryKind::file;
        case AE_IFDIR:
            return EntryKind::folder;
        case AE_IFLNK:
            return EntryKind::link;
        default:
            return EntryKind::other;
    }
}

std::string nameOf(archive_entry* entry) {
    const char* name = archive_entry_pathname(entry);
    if (name == nullptr) {
        name = archive_entry_pathname_utf8(entry);
    }
    return name == nullptr ? std::string() : std::string(name);
}

}  // namespace

struct ArchiveFile::State {
    std::unique_ptr<archive, Freed> reader{archive_read_new()};
    ArchiveFile* outer = nullptr;     // where this one is an entry
    std::vector<std::uint8_t> block;  // of the outer one's data
    std::string outerProblem;         // what stopped the outer one

    void allow(Formats formats) const {
        if (formats == Formats::container) {
            archive_read_support_format_ar(reader.get());
            archive_read_support_filter_none(reader.get());
            return;
        }
        archive_read_support_format_tar(reader.get());
        archive_read_support_filter_none(reader.get());
        archive_read_support_filter_gzip(reader.get());
        archive_read_support_filter_bzip2(reader.get());
        archive_read_support_filter_xz(reader.get());
        archive_read_support_filter_lzma(reader.get());
        archive_read_support_filter_zstd(reader.get());
        if (formats == Formats::contents) {
            archive_read_support_format_zip(reader.get());
        }
    }

    [[nodiscard]] tl::unexpected<Problem> problem() const {
        if (!outerProblem.empty()) {
            return tl::unexpected(Problem{outerProblem});
        }
        const char* const said = archive_error_string(reader.get());
        return tl::unexpected(
            Problem{"it is damaged or cut short" +
                    (said == nullptr ? std::string() : " (" + std::string(said) + ")")});
    }

    static la_ssize_t readOuter(archive* reader, void* data, const void** bytes) {
        auto* const state = static_cast<State*>(data);
        const auto count = state->outer->read(state->block);
        if (!count) {
            state->outerProblem = count.error().message;
            archive_set_error(reader, EIO, "%s", state->outerProblem.c_str());
            return -1;
        }
        *bytes = state->block.data();
        return static_cast<la_ssize_t>(*count);
    }
};

ArchiveFile::ArchiveFile(std::unique_ptr<State> state) : state_(std::move(state)) {}

ArchiveFile::ArchiveFile(ArchiveFile&& other) noexcept = default;
ArchiveFile& ArchiveFile::operator=(ArchiveFile&& other) noexcept = default;
ArchiveFile::~ArchiveFile() = default;

Result<ArchiveFile> ArchiveFile::openFile(const std::string& path, Formats formats) {
    auto state = std::make_unique<State>();
    state->allow(formats);
    if (archive_read_open_filename(state->reader.get(), path.c_str(), kBlock) != ARCHIVE_OK) {
        return state->problem();
    }
    return ArchiveFile(std::move(state));
}

Result<ArchiveFile> ArchiveFile::openBytes(std::span<const std::uint8_t> bytes, Formats formats) {
    auto state = std::make_unique<State>();
    state->allow(formats);
    if (archive_read_open_memory(state->reader.get(), bytes.data(), bytes.size()) != ARCHIVE_OK) {
        return state->problem();
    }
    return ArchiveFile(std::move(state));
}

Result<ArchiveFile> ArchiveFile::openEntry(ArchiveFile& outer) {
    auto state = std::make_unique<State>();
    state->allow(Formats::tar);
    state->outer = &outer;
    state->block.resize(kBlock);
    if (archive_read_open(state->reader.get(), state.get(), nullptr, State::readOuter, nullptr) !=
        ARCHIVE_OK) {
        return state->problem();
    }
    return ArchiveFile(std::move(state));
}

Result<std::optional<ArchiveEntry>> ArchiveFile::next() {
    const Utf8Names names;
    archive_entry* entry = nullptr;
    const int code = archive_read_next_header(state_->reader.get(), &entry);
    if (code == ARCHIVE_EOF) {
        return std::optional<ArchiveEntry>();
    }
    // A warning is about a name, which is handed on as it stands, or a field that is of no use
    // here.
    if (code != ARCHIVE_OK && code != ARCHIVE_WARN) {
        return state_->problem();
    }
    return std::optional(
        ArchiveEntry{nameOf(entry), kindOf(entry), archive_entry_is_encrypted(entry) != 0});
}

Result<std::size_t> ArchiveFile::read(std::span<std::uint8_t> bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const la_ssize_t count =
            archive_read_data(state_->reader.get(), bytes.data() + done, bytes.size() - done);
        if (count < 0) {
            return state_->problem();
        }
        if (count == 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    return done;
}

}  // namespace velmoranth::makers
