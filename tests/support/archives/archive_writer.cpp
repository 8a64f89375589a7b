#include "tests/support/archives/archive_writer.h"

#include <archive.h>
#include <archive_entry.h>
#include <sys/types.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string_view>

namespace velmoranth::tests {
namespace {

la_ssize_t append(archive* /*writer*/, void* text, const void* bytes, std::size_t size) {
    static_cast<std::string*>(text)->append(static_cast<const char*>(bytes), size);
    return static_cast<la_ssize_t>(size);
}

void setKind(archive_entry* entry, const PackedEntry& packed) {
    constexpr int kFileMode = 0644;
    archive_entry_set_perm(entry, kFileMode);
    switch (packed.kind) {
        case PackedKind::file:
            archive_entry_set_filetype(entry, AE_IFREG);
            archive_entry_set_size(entry, static_cast<la_int64_t>(packed.contents.size()));
            break;
        case PackedKind::folder:
            archive_entry_set_filetype(entry, AE_IFDIR);
            break;
        case PackedKind::symbolicLink:
            archive_entry_set_filetype(entry, AE_IFLNK);
            archive_entry_set_symlink(entry, packed.contents.c_str());
            break;
        case PackedKind::hardLink:
            archive_entry_set_filetype(entry, AE_IFREG);
            archive_entry_set_hardlink(entry, packed.contents.c_str());
            break;
        case PackedKind::device:
            archive_entry_set_filetype(entry, AE_IFCHR);
            break;
        case PackedKind::pipe:
            archive_entry_set_filetype(entry, AE_IFIFO);
            break;
    }
}

std::string written(archive* writer, const std::vector<PackedEntry>& entries) {
    std::string bytes;
    archive_write_set_bytes_per_block(writer, 0);
    archive_write_open(writer, &bytes, nullptr, append, nullptr);
    for (const PackedEntry& packed : entries) {
        const std::unique_ptr<archive_entry, decltype(&archive_entry_free)> entry(
            archive_entry_new(), archive_entry_free);
        archive_entry_set_pathname(entry.get(), packed.name.c_str());
        setKind(entry.get(), packed);
        archive_write_header(writer, entry.get());
        if (packed.kind == PackedKind::file) {
            archive_write_data(writer, packed.contents.data(), packed.contents.size());
        }
    }
    archive_write_free(writer);
    return bytes;
}

std::string_view endingOf(Packing packing) {
    constexpr std::array<std::string_view, 6> kEndings{"", ".gz", ".bz2", ".xz", ".lzma", ".zst"};
    return kEndings.at(static_cast<std::size_t>(packing));
}

void setPacking(archive* writer, Packing packing) {
    switch (packing) {
        case Packing::none:
            archive_write_add_filter_none(writer);
            break;
        case Packing::gzip:
            archive_write_add_filter_gzip(writer);
            break;
        case Packing::bzip2:
            archive_write_add_filter_bzip2(writer);
            break;
        case Packing::xz:
            archive_write_add_filter_xz(writer);
            break;
        case Packing::lzma:
            archive_write_add_filter_lzma(writer);
            break;
        case Packing::zstd:
            archive_write_add_filter_zstd(writer);
            break;
    }
}

}  // namespace

std::string tarOf(const std::vector<PackedEntry>& entries, Packing packing) {
    archive* const writer = archive_write_new();
    archive_write_set_format_gnutar(writer);
    setPacking(writer, packing);
    return written(writer, entries);
}

std::string packedOf(const std::string& bytes, Packing packing) {
    archive* const writer = archive_write_new();
    archive_write_set_format_raw(writer);
    setPacking(writer, packing);
    return written(writer, {{"bytes", bytes}});
}

std::string zipOf(const std::vector<PackedEntry>& entries) {
    archive* const writer = archive_write_new();
    archive_write_set_format_zip(writer);
    return written(writer, entries);
}

std::string arOf(const std::vector<PackedEntry>& members) {
    std::string bytes = "!<arch>\n";
    for (const PackedEntry& member : members) {
        std::array<char, 61> header{};
        std::snprintf(header.data(), header.size(), "%-16s%-12d%-6d%-6d%-8s%-10zu`\n",
                      member.name.c_str(), 0, 0, 0, "100644", member.contents.size());
        bytes += header.data() + member.contents + (member.contents.size() % 2 == 0 ? "" : "\n");
    }
    return bytes;
}

std::string packageOf(const std::vector<PackedEntry>& entries, Packing packing) {
    const std::string control = "Package: theme\nVersion: 1\nArchitecture: all\n";
    return arOf({{"debian-binary", "2.0\n"},
                 {"control.tar.gz", tarOf({{"./control", control}}, Packing::gzip)},
                 {"data.tar" + std::string(endingOf(packing)), tarOf(entries, packing)}});
}

}  // namespace velmoranth::tests
