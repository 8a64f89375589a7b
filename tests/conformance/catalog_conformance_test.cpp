// Real catalogs, where they are: what a catalog lists is to agree with the census in the README
// beside it, its pictures and files with the sums in NAME.decoded.tsv, and its pictures with the
// files that they were made from.
#include "desktop/catalog/catalog.h"
#include "desktop/image_io/image_io.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>
#include <nettle/sha2.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::catalog::catalog_conformance_test {
namespace {

namespace fs = std::filesystem;

using Row = std::vector<std::string>;

// The attributes of keys as the README files name them.
const std::map<std::string, Attribute> kAttributeNames{
    {"scale", Attribute::scale},
    {"idiom", Attribute::idiom},
    {"subtype", Attribute::subtype},
    {"identifier", Attribute::identifier},
    {"dim2", Attribute::dimension2},
    {"hsize", Attribute::horizontalSizeClass},
    {"vsize", Attribute::verticalSizeClass},
    {"memory", Attribute::memoryClass},
    {"graphics", Attribute::graphicsClass},
    {"target", Attribute::deploymentTarget},
};

fs::path samples() {
    return tests::samples("car");
}

std::vector<fs::path> catalogFiles() {
    std::vector<fs::path> found;
    std::error_code none;
    for (const auto& folder : fs::directory_iterator(samples(), none)) {
        for (const auto& file : fs::directory_iterator(folder.path(), none)) {
            if (file.path().extension() == ".car") {
                found.push_back(file.path());
            }
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string contentsOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> linesOf(const fs::path& path) {
    std::istringstream text(contentsOf(path));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string hexadecimal(Bytes bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 0xFU];
    }
    return text;
}

std::string sha256(Bytes bytes) {
    sha256_ctx context;
    sha256_init(&context);
    sha256_update(&context, bytes.size(), bytes.data());
    std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest{};
    sha256_digest(&context, digest.size(), digest.data());
    return hexadecimal(digest);
}

// The cells of a line, without the blanks around them.
Row cells(const std::string& line, char between) {
    Row row;
    std::istringstream text(line);
    for (std::string cell; std::getline(text, cell, between);) {
        const std::size_t first = cell.find_first_not_of(' ');
        row.push_back(first == std::string::npos
                          ? ""
                          : cell.substr(first, cell.find_last_not_of(' ') - first + 1));
    }
    return row;
}

// The table's rows under a header line, up to the next line that is no row.
std::vector<Row> tableUnder(const std::vector<std::string>& lines, std::size_t header) {
    std::vector<Row> rows;
    for (std::size_t i = header + 2; i < lines.size() && lines[i].starts_with("| "); ++i) {
        Row row = cells(lines[i], '|');
        row.erase(row.begin());
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string fourCharacters(Bytes payload) {
    return {payload.begin(),
            payload.begin() + std::min<std::ptrdiff_t>(4, payload.end() - payload.begin())};
}

// Of payloads that are neither bitmap nor file, the census has the mark, written forwards.
std::string markOf(Bytes payload) {
    std::string mark = fourCharacters(payload);
    std::reverse(mark.begin(), mark.end());
    return mark;
}

std::string formatOf(const Rendition& rendition) {
    const std::string name = pixelFormatName(rendition.pixelFormat);
    return name.empty() ? "-" : name;
}

// The method of a deepmap, which stands in the header of its first band.
std::string methodOf(const Rendition& rendition) {
    const std::string payload(rendition.payload.begin(), rendition.payload.end());
    const std::size_t header = std::min(payload.find("dmap"), payload.find("dmp2"));
    return header == std::string::npos || header + 4 >= payload.size()
               ? ""
               : " method " + std::to_string(payload[header + 4]);
}

// As the census has it: "compression 4 LZFSE", "link", "RAWD", "COLR".
std::string payloadInCensus(const Rendition& rendition) {
    if (rendition.kind == Kind::link) {
        return "link";
    }
    if (!rendition.compression) {
        return markOf(rendition.payload);
    }
    const bool isMap = *rendition.compression == Compression::deepmap ||
                       *rendition.compression == Compression::deepmap2;
    std::string name = compressionName(*rendition.compression);
    if (*rendition.compression == Compression::deepmap) {
        name += "-lzfse";
    }
    return "compression " + std::to_string(static_cast<std::uint32_t>(*rendition.compression)) +
           " " + name + (isMap ? methodOf(rendition) : "");
}

std::vector<Row> censusOf(const Catalog& catalog) {
    std::map<Row, int> counts;
    for (const Rendition& rendition : catalog.renditions()) {
        ++counts[{std::to_string(rendition.layout), formatOf(rendition),
                  payloadInCensus(rendition)}];
    }
    std::vector<Row> rows;
    for (const auto& [kind, count] : counts) {
        rows.push_back({std::to_string(count), kind[0], kind[1], kind[2]});
    }
    return rows;
}

std::string storedKeyFormat(const Catalog& catalog) {
    std::string text;
    for (const std::uint16_t attribute : catalog.keyFormat()) {
        text += (text.empty() ? "[" : ", ") + std::to_string(attribute);
    }
    return text + "]";
}

// As in the census's second line. Where a catalog corrects its key format, the census has the
// format before; the placeholder stands for the deployment target in all samples.
std::string summaryOf(const Catalog& catalog, bool corrected) {
    const Header& header = catalog.header();
    const std::string text(header.coreUIText);
    const std::string version = std::to_string(header.coreUIVersion);
    std::string format = storedKeyFormat(catalog);
    if (corrected) {
        const std::size_t target = format.find(", 25,");
        EXPECT_NE(target, std::string::npos);
        format.replace(target, 5, ", 5,");
    }
    const std::string metadata = header.platform.empty()
                                     ? "no EXTENDED_METADATA"
                                     : "deployment " + std::string(header.platform) + " " +
                                           std::string(header.deploymentVersion);
    return "CoreUI " + version + ", storage version " + std::to_string(header.storageVersion) +
           ", " + metadata + "; " + std::to_string(catalog.facets().size()) + " facets, " +
           std::to_string(catalog.renditions().size()) + " renditions; key format " + format +
           (corrected ? "; has KEYFORMATWORKAROUND" : "");
}

// The census of one catalog in the README.
struct Census {
    std::string summary;
    std::vector<Row> rows;
};

Census censusInReadme(const fs::path& car) {
    const std::vector<std::string> lines = linesOf(car.parent_path() / "README.md");
    Census census;
    auto line = std::find(lines.begin(), lines.end(), "## " + car.filename().string());
    for (; line != lines.end(); ++line) {
        if (line->starts_with("CoreUI ")) {
            census.summary = *line;
        }
        if (line->starts_with("| count")) {
            census.rows = tableUnder(lines, static_cast<std::size_t>(line - lines.begin()));
            break;
        }
    }
    std::sort(census.rows.begin(), census.rows.end());
    return census;
}

class Sample {
  public:
    explicit Sample(const fs::path& path) : path_(path), catalog_(Catalog::open(path.string())) {}

    [[nodiscard]] const fs::path& path() const { return path_; }

    [[nodiscard]] const Result<Catalog>& opened() const { return catalog_; }

    [[nodiscard]] const Catalog& catalog() const { return *catalog_; }

    [[nodiscard]] std::vector<Row> expectedRenditions() const {
        fs::path list = path_;
        list.replace_extension(".decoded.tsv");
        std::vector<Row> rows;
        for (const std::string& line : linesOf(list)) {
            if (!line.starts_with("#")) {
                rows.push_back(cells(line, '\t'));
            }
        }
        return rows;
    }

    // The last two columns of the list: what the payload is, and its sum.
    [[nodiscard]] std::array<std::string, 2> payloadAndSum(const Rendition& rendition) const {
        const Rendition* source = catalog_->source(rendition);
        if (source != nullptr && source->compression) {
            const auto picture = catalog_->decode(rendition);
            const auto number = static_cast<std::uint32_t>(*source->compression);
            return {
                "compression " + std::to_string(number) + (source == &rendition ? "" : " via link"),
                picture ? "rgba:" + sha256(toRgba(*picture)) : toLine(picture.error())};
        }
        const std::string mark = markOf(rendition.payload);
        if (mark != "RAWD") {
            return {mark, "-"};
        }
        const auto file = catalog_->file(rendition);
        if (!file) {
            return {mark, toLine(file.error())};
        }
        return {mark + " " + std::to_string(file->size()) + " bytes", "file:" + sha256(*file)};
    }

    // The rendition of a row of the README's table of source pictures.
    [[nodiscard]] const Rendition* find(const std::string& name, const std::string& key) const {
        std::map<Attribute, std::uint16_t> wanted;
        for (const auto& [text, attribute] : kAttributeNames) {
            wanted[attribute] = 0;
        }
        for (const std::string& value : cells(key, ' ')) {
            const std::size_t equals = value.find('=');
            wanted[kAttributeNames.at(value.substr(0, equals))] =
                static_cast<std::uint16_t>(std::stoul(value.substr(equals + 1)));
        }
        for (const Rendition& rendition : catalog_->renditions()) {
            const bool fits = std::all_of(wanted.begin(), wanted.end(), [&](const auto& value) {
                return catalog_->attribute(rendition, value.first) == value.second;
            });
            if (fits && rendition.name == name && rendition.isPicture()) {
                return &rendition;
            }
        }
        return nullptr;
    }

  private:
    fs::path path_;
    Result<Catalog> catalog_;
};

void expectOfEachSample(const std::function<void(const Sample&)>& check) {
    const std::vector<fs::path> files = catalogFiles();
    if (files.empty()) {
        GTEST_SKIP() << "no samples here; name their folder in VELMORANTH_SAMPLES";
    }
    for (const fs::path& file : files) {
        SCOPED_TRACE(file.string());
        const Sample sample(file);
        ASSERT_TRUE(sample.opened()) << toLine(sample.opened().error());
        check(sample);
    }
}

void expectTheCensus(const Sample& sample) {
    const Catalog& catalog = sample.catalog();
    const Census census = censusInReadme(sample.path());
    std::vector<Row> rows = censusOf(catalog);
    std::sort(rows.begin(), rows.end());
    EXPECT_EQ(rows, census.rows);
    const bool corrected = census.summary.ends_with("KEYFORMATWORKAROUND");
    EXPECT_EQ(summaryOf(catalog, corrected), census.summary);
    EXPECT_TRUE(catalog.warnings().empty());
    EXPECT_EQ(catalog.header().renditionCount, catalog.renditions().size());
}

TEST(CatalogConformance, AgreesWithTheCensus) {
    expectOfEachSample(expectTheCensus);
}

void expectTheSums(const Sample& sample) {
    const Catalog& catalog = sample.catalog();
    const std::vector<Row> expected = sample.expectedRenditions();
    ASSERT_EQ(catalog.renditions().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const Rendition& rendition = catalog.renditions()[i];
        const Facet* facet = catalog.facetOf(rendition);
        const auto [payload, sum] = sample.payloadAndSum(rendition);
        const Row actual{hexadecimal(rendition.key),
                         facet != nullptr ? std::string(facet->name) : "-",
                         std::string(rendition.name),
                         std::to_string(rendition.layout),
                         formatOf(rendition),
                         std::to_string(rendition.width),
                         std::to_string(rendition.height),
                         std::to_string(rendition.scalePercent),
                         payload,
                         sum};
        EXPECT_EQ(actual, expected[i]);
    }
}

TEST(CatalogConformance, AgreesWithTheSums) {
    expectOfEachSample(expectTheSums);
}

// The largest difference of two pictures' bytes; nothing when their sizes differ.
std::optional<int> largestDifference(Bytes one, Bytes other) {
    if (one.size() != other.size()) {
        return std::nullopt;
    }
    int largest = 0;
    for (std::size_t i = 0; i < one.size(); ++i) {
        largest = std::max(largest, std::abs(one[i] - other[i]));
    }
    return largest;
}

// The table of source pictures stands beside some of the catalogs only.
void expectTheSourcePictures(const Sample& sample) {
    const fs::path folder = sample.path().parent_path();
    const std::vector<std::string> lines = linesOf(folder / "README.md");
    const auto header = std::find_if(lines.begin(), lines.end(), [](const std::string& line) {
        return line.starts_with("| file | rendition name");
    });
    if (header == lines.end()) {
        return;
    }
    std::size_t compared = 0;
    for (const Row& row : tableUnder(lines, static_cast<std::size_t>(header - lines.begin()))) {
        if (row.at(0) != sample.path().filename()) {
            continue;
        }
        const Rendition* rendition = sample.find(row.at(1), row.at(2));
        ASSERT_NE(rendition, nullptr) << row.at(1) << " " << row.at(2);
        const auto picture = sample.catalog().decode(*rendition);
        ASSERT_TRUE(picture) << toLine(picture.error());
        const std::string png = contentsOf(folder / "ground-truth" / row.at(5));
        const auto source = desktop::decodeImage(std::vector<std::uint8_t>(png.begin(), png.end()));
        ASSERT_TRUE(source) << row.at(5) << ": " << source.error().message;
        EXPECT_EQ(std::to_string(picture->width) + "x" + std::to_string(picture->height),
                  row.at(3));
        EXPECT_EQ(largestDifference(toBgra(*picture), desktop::toPremultipliedBgra(*source)),
                  std::stoi(row.at(6)))
            << row.at(1) << " " << row.at(2);
        ++compared;
    }
    EXPECT_GT(compared, 0U);
}

TEST(CatalogConformance, ShowsThePicturesItWasMadeFrom) {
    expectOfEachSample(expectTheSourcePictures);
}

}  // namespace
}  // namespace velmoranth::catalog::catalog_conformance_test
