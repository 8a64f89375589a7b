#include "desktop/catalog/catalog.h"

#include "desktop/catalog/bitmap.h"
#include "desktop/catalog/failure.h"
#include "desktop/catalog/index.h"
#include "desktop/catalog/mapped_file.h"
#include "desktop/catalog/payloads.h"
#include "desktop/catalog/tables.h"

#include <functional>
#include <new>
#include <stdexcept>

namespace velmoranth::catalog {

namespace {

constexpr int kMaxLinks = 8;  // of a chain; known catalogs have one

// Carries out `work`; memory that cannot be had is a problem like any other.
template <class Work>
auto withinMemory(Work work) -> decltype(work()) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return failure("there is not enough memory");
    } catch (const std::length_error&) {
        return failure("there is not enough memory");
    }
}

bool isWithin(Bytes part, Bytes whole) {
    return !part.empty() && !std::less<>()(part.data(), whole.data()) &&
           std::less<>()(part.data(), whole.data() + whole.size());
}

}  // namespace

struct Catalog::Contents {
    std::optional<MappedFile> mapping;
    Bytes bytes;
    std::string path;
    Limits limits;
    Tables tables;
    Index index;

    static Result<Catalog> read(std::optional<MappedFile> mapping, Bytes bytes, std::string path,
                                const Limits& limits) {
        Result<Tables> tables = readTables(bytes);
        if (!tables) {
            tables.error().path = std::move(path);
            return tl::unexpected(std::move(tables.error()));
        }
        auto contents = std::make_unique<Contents>();
        contents->mapping = std::move(mapping);
        contents->bytes = bytes;
        contents->path = std::move(path);
        contents->limits = limits;
        contents->tables = std::move(*tables);
        contents->index = Index(contents->tables);
        return Catalog(std::move(contents));
    }

    const Rendition* target(const Link& link) const {
        const auto key = tables.keyFormat.key(link.atlasKey);
        const auto place = key ? index.rendition(tables, *key) : std::nullopt;
        return place ? &tables.renditions[*place] : nullptr;
    }

    // The rendition at the end of the links; a problem when they lead nowhere.
    Result<const Rendition*> endOfLinks(const Rendition& rendition) const {
        const Rendition* end = &rendition;
        for (int links = 0; end->link; ++links) {
            if (links == kMaxLinks) {
                return failure("the link leads to another link, and so on");
            }
            end = target(*end->link);
            if (end == nullptr) {
                return failure("the link leads to no rendition of the catalog");
            }
        }
        return end;
    }

    Result<Picture> decodeOwnPixels(const Rendition& rendition) const {
        if (!rendition.compression) {
            return failure("the rendition has no pixels: it is of the kind \"" +
                           std::string(kindName(rendition.kind)) + "\"");
        }
        const BitmapShape shape{.width = rendition.width,
                                .height = rendition.height,
                                .pixelFormat = rendition.pixelFormat,
                                .colorSpace = rendition.colorSpace,
                                .rowBytes = rendition.rowBytes};
        return decodeBitmap(rendition.payload, shape, limits);
    }

    // Of a picture of what the rendition's links lead to, the part that they show.
    Result<Picture> shownPart(const Rendition& rendition, Picture picture) const {
        std::vector<const Link*> links;
        for (const Rendition* at = &rendition; at->link; at = target(*at->link)) {
            links.push_back(&*at->link);
        }
        Result<Picture> shown = std::move(picture);
        for (auto link = links.rbegin(); link != links.rend() && shown; ++link) {
            shown = part(*shown, **link);
        }
        if (!shown) {
            shown.error().path = path;
        }
        return shown;
    }

    // Carries out `read` on what the rendition's links lead to; a problem is given file and offset.
    template <class Read>
    auto reading(const Rendition& rendition, Read read) const -> decltype(read(rendition)) {
        return withinMemory([&]() -> decltype(read(rendition)) {
            const Result<const Rendition*> end = endOfLinks(rendition);
            if (!end) {
                return tl::unexpected(Problem{.message = end.error().message, .path = path});
            }
            if ((*end)->kind == Kind::unreadable) {
                return tl::unexpected(located({.message = (*end)->problem}, **end));
            }
            auto result = read(**end);
            if (!result) {
                return tl::unexpected(located(std::move(result.error()), **end));
            }
            return result;
        });
    }

    // With the path, and the offset from the start of the file instead of that of the payload.
    Problem located(Problem problem, const Rendition& rendition) const {
        problem.path = path;
        if (isWithin(rendition.payload, bytes)) {
            problem.offset = problem.offset.value_or(0) +
                             static_cast<std::uint64_t>(rendition.payload.data() - bytes.data());
        }
        return problem;
    }
};

Catalog::Catalog(std::unique_ptr<Contents> contents) : contents_(std::move(contents)) {}

Catalog::Catalog(Catalog&&) noexcept = default;
Catalog& Catalog::operator=(Catalog&&) noexcept = default;
Catalog::~Catalog() = default;

Result<Catalog> Catalog::open(const std::string& path, const Limits& limits) {
    return withinMemory([&]() -> Result<Catalog> {
        Result<MappedFile> file = MappedFile::open(path, limits.maxFileBytes);
        if (!file) {
            return tl::unexpected(std::move(file.error()));
        }
        const Bytes bytes = file->bytes();
        return Contents::read(std::move(*file), bytes, path, limits);
    });
}

Result<Catalog> Catalog::fromBytes(Bytes bytes, std::string path, const Limits& limits) {
    return withinMemory([&]() -> Result<Catalog> {
        if (bytes.size() > limits.maxFileBytes) {
            return tl::unexpected(Problem{.message = "the file has more than " +
                                                     std::to_string(limits.maxFileBytes) +
                                                     " bytes, the limit",
                                          .path = std::move(path)});
        }
        return Contents::read(std::nullopt, bytes, std::move(path), limits);
    });
}

const Header& Catalog::header() const {
    return contents_->tables.header;
}

const std::vector<std::uint16_t>& Catalog::keyFormat() const {
    return contents_->tables.keyFormat.attributes();
}

const std::vector<Facet>& Catalog::facets() const {
    return contents_->tables.facets;
}

const std::vector<Rendition>& Catalog::renditions() const {
    return contents_->tables.renditions;
}

const std::vector<Appearance>& Catalog::appearances() const {
    return contents_->tables.appearances;
}

const std::vector<std::string>& Catalog::warnings() const {
    return contents_->tables.warnings;
}

std::uint16_t Catalog::attribute(const Rendition& rendition, Attribute attribute) const {
    return contents_->tables.keyFormat.value(rendition.key, static_cast<std::uint16_t>(attribute));
}

const Facet* Catalog::facet(std::string_view name) const {
    const auto place = contents_->index.facet(contents_->tables, name);
    return place ? &facets()[*place] : nullptr;
}

const Facet* Catalog::facetOf(const Rendition& rendition) const {
    const std::uint16_t identifier = attribute(rendition, Attribute::identifier);
    const auto place = identifier != 0 ? contents_->index.facet(identifier) : std::nullopt;
    return place ? &facets()[*place] : nullptr;
}

std::vector<std::size_t> Catalog::renditionsOf(const Facet& facet) const {
    return facet.identifier != 0 ? contents_->index.renditions(facet.identifier)
                                 : std::vector<std::size_t>();
}

const Rendition* Catalog::source(const Rendition& rendition) const {
    return rendition.link ? contents_->target(*rendition.link) : &rendition;
}

Result<Picture> Catalog::decode(const Rendition& rendition) const {
    const auto pixels = [&](const Rendition& of) { return contents_->decodeOwnPixels(of); };
    Result<Picture> picture = contents_->reading(rendition, pixels);
    if (!picture || !rendition.link) {
        return picture;
    }
    return withinMemory([&] { return contents_->shownPart(rendition, std::move(*picture)); });
}

Result<std::vector<std::uint8_t>> Catalog::file(const Rendition& rendition) const {
    return contents_->reading(
        rendition, [&](const Rendition& of) { return readRawFile(of.payload, contents_->limits); });
}

Result<Color> Catalog::color(const Rendition& rendition) const {
    return contents_->reading(rendition, [](const Rendition& of) { return readColor(of.payload); });
}

Result<std::vector<IconSize>> Catalog::iconSizes(const Rendition& rendition) const {
    return contents_->reading(rendition,
                              [](const Rendition& of) { return readIconSizes(of.payload); });
}

Result<Picture> Catalog::part(const Picture& atlas, const Link& link) {
    const Rectangle& wanted = link.part;
    if (wanted.width == 0 || wanted.height == 0 ||
        std::uint64_t{wanted.x} + wanted.width > atlas.width ||
        std::uint64_t{wanted.y} + wanted.height > atlas.height) {
        return failure("the link shows a part that lies outside its atlas");
    }
    return withinMemory([&]() -> Result<Picture> {
        const std::size_t pixel = Picture::bytesPerPixel(atlas.format);
        const std::size_t atlasRow = atlas.width * pixel;
        const std::size_t row = wanted.width * pixel;
        // The part's place is counted from the bottom, rows are stored from the top.
        const std::size_t top = atlas.height - wanted.y - wanted.height;
        Picture picture{
            .format = atlas.format, .width = wanted.width, .height = wanted.height, .pixels = {}};
        picture.pixels.reserve(row * wanted.height);
        for (std::size_t y = top; y < top + wanted.height; ++y) {
            const auto start =
                atlas.pixels.begin() + static_cast<std::ptrdiff_t>(y * atlasRow + wanted.x * pixel);
            picture.pixels.insert(picture.pixels.end(), start,
                                  start + static_cast<std::ptrdiff_t>(row));
        }
        return picture;
    });
}

}  // namespace velmoranth::catalog
