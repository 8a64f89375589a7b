#include "makers/archives/archive_file.h"

#include <archive.h>
#include <archive_entry.h>
#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale() is POSIX's
#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;

namespace {

constexpr std::size_t kTarBlock = 512;
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
    const ByteSource* source = nullptr;  // or this one is an entry
    std::uint64_t position = 0;          // in the source
    ArchiveFile* outer = nullptr;        // of which this one is an entry
    bool isAtEnd = false;                // all of it was read, and more was asked for
    std::vector<std::uint8_t> block = std::vector<std::uint8_t>(kBlock);
    std::string sourceProblem;  // what stopped the source or the outer one
    bool hasEntry = false;
    bool lacksEndMark = false;

    void allow(Formats formats) const {
        if (formats == Formats::container) {
            archive_read_support_format_ar(reader.get());
            archive_read_support_filter_none(reader.get());
            return;
        }
        archive_read_support_filter_none(reader.get());
        archive_read_support_filter_gzip(reader.get());
        archive_read_support_filter_bzip2(reader.get());
        archive_read_support_filter_xz(reader.get());
        archive_read_support_filter_lzma(reader.get());
        archive_read_support_filter_zstd(reader.get());
        if (formats == Formats::packed) {
            archive_read_support_format_raw(reader.get());
            return;
        }
        archive_read_support_format_tar(reader.get());
        if (formats == Formats::contents) {
            archive_read_support_format_zip(reader.get());
        }
    }

    // The library says in many ways, and at times not at all, that there should be more: what
    // tells is that it wanted to read on where nothing is left.
    [[nodiscard]] tl::unexpected<Problem> problem() const {
        if (!sourceProblem.empty()) {
            return tl::unexpected(Problem{sourceProblem});
        }
        if (isAtEnd) {
            return tl::unexpected(Problem{std::string(kCutShort)});
        }
        const char* const said = archive_error_string(reader.get());
        return tl::unexpected(Problem{
            "it is damaged" + (said == nullptr ? std::string() : " (" + std::string(said) + ")") +
            "; get it again"});
    }

    static la_ssize_t readBlock(archive* reader, void* data, const void** bytes) {
        auto* const state = static_cast<State*>(data);
        const auto count = state->outer != nullptr
                               ? state->outer->read(state->block)
                               : state->source->read(state->position, state->block);
        if (!count) {
            state->sourceProblem = count.error().message;
            archive_set_error(reader, EIO, "%s", state->sourceProblem.c_str());
            return -1;
        }
        state->position += *count;
        state->isAtEnd = *count == 0;
        *bytes = state->block.data();
        return static_cast<la_ssize_t>(*count);
    }

    static la_int64_t skip(archive* /*reader*/, void* data, la_int64_t count) {
        auto* const state = static_cast<State*>(data);
        const std::uint64_t left =
            state->source->size - std::min(state->source->size, state->position);
        const std::uint64_t skipped = std::min(left, static_cast<std::uint64_t>(count));
        state->position += skipped;
        return static_cast<la_int64_t>(skipped);
    }

    static la_int64_t seek(archive* /*reader*/, void* data, la_int64_t offset, int whence) {
        auto* const state = static_cast<State*>(data);
        const auto size = static_cast<la_int64_t>(state->source->size);
        const la_int64_t from = whence == SEEK_SET   ? 0
                                : whence == SEEK_CUR ? static_cast<la_int64_t>(state->position)
                                                     : size;
        if (offset < -from || offset > size - from) {
            return ARCHIVE_FATAL;
        }
        state->position = static_cast<std::uint64_t>(from + offset);
        state->isAtEnd = false;
        return from + offset;
    }

    [[nodiscard]] bool isTar() const {
        return (archive_format(reader.get()) & ARCHIVE_FORMAT_BASE_MASK) == ARCHIVE_FORMAT_TAR;
    }

    // How much of the mark that ends a tar was read where a header was looked for, at the end.
    [[nodiscard]] la_int64_t sinceEntry() const {
        return archive_filter_bytes(reader.get(), 0) - archive_read_header_position(reader.get());
    }

    // Whether a tar ends behind an entry with less than a block, which every tar program passes
    // over.
    [[nodiscard]] bool isCutInBlock() const {
        // The library tells no header's place once it has failed.
        const auto start = static_cast<std::uint64_t>(archive_filter_bytes(reader.get(), 0));
        return isAtEnd && source != nullptr && isTar() && hasEntry &&
               archive_filter_code(reader.get(), 0) == ARCHIVE_FILTER_NONE &&
               source->size < start + kTarBlock;
    }

    [[nodiscard]] bool open() {
        archive_read_set_callback_data(reader.get(), this);
        archive_read_set_read_callback(reader.get(), readBlock);
        if (source != nullptr) {
            archive_read_set_skip_callback(reader.get(), skip);
            archive_read_set_seek_callback(reader.get(), seek);
        }
        return archive_read_open1(reader.get()) == ARCHIVE_OK;
    }
};

ArchiveFile::ArchiveFile(std::unique_ptr<State> state) : state_(std::move(state)) {}

ArchiveFile::ArchiveFile(ArchiveFile&& other) noexcept = default;
ArchiveFile& ArchiveFile::operator=(ArchiveFile&& other) noexcept = default;
ArchiveFile::~ArchiveFile() = default;

Result<ArchiveFile> ArchiveFile::open(const ByteSource& source, Formats formats) {
    auto state = std::make_unique<State>();
    state->allow(formats);
    state->source = &source;
    if (!state->open()) {
        return state->problem();
    }
    return ArchiveFile(std::move(state));
}

Result<ArchiveFile> ArchiveFile::openEntry(ArchiveFile& outer) {
    auto state = std::make_unique<State>();
    state->allow(Formats::tar);
    state->outer = &outer;
    if (!state->open()) {
        return state->problem();
    }
    return ArchiveFile(std::move(state));
}

Result<std::optional<ArchiveEntry>> ArchiveFile::next() {
    const Utf8Names names;
    archive_entry* entry = nullptr;
    const int code = archive_read_next_header(state_->reader.get(), &entry);
    if (code == ARCHIVE_EOF) {
        state_->lacksEndMark = state_->isTar() && state_->sinceEntry() == 0;
        return std::optional<ArchiveEntry>();
    }
    // A warning is about a name, which is handed on as it stands, or a field that is of no use
    // here.
    if (code != ARCHIVE_OK && code != ARCHIVE_WARN) {
        state_->lacksEndMark = state_->isCutInBlock();
        return state_->lacksEndMark ? Result<std::optional<ArchiveEntry>>(std::nullopt)
                                    : state_->problem();
    }
    state_->hasEntry = true;
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

bool ArchiveFile::lacksEndMark() const {
    return state_->lacksEndMark;
}

bool ArchiveFile::isPacked() const {
    return archive_filter_code(state_->reader.get(), 0) != ARCHIVE_FILTER_NONE;
}

}  // namespace velmoranth::makers
