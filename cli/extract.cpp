// velmoranth extract
#include "cli/catalog_input.h"
#include "cli/catalog_listing.h"
#include "cli/choice.h"
#include "cli/commands.h"
#include "cli/extract_options.h"
#include "cli/extraction.h"
#include "cli/extraction_folder.h"
#include "cli/extraction_plan.h"
#include "cli/late_progress.h"
#include "cli/messages.h"
#include "cli/near_path.h"
#include "cli/output_file.h"
#include "cli/rendition_attributes.h"
#include "desktop/catalog/catalog.h"
#include "desktop/files/cleanup.h"

#include "makers/conversion/pictures.h"
#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using catalog::Catalog;

namespace {

using Listing = std::vector<ListedRendition>;

// The appearances that the catalog has something for, as --appearance takes them.
std::vector<std::string> appearancesOf(const Catalog& catalog) {
    std::vector<std::string> words;
    for (const catalog::Rendition& rendition : catalog.renditions()) {
        std::string word = appearanceWord(catalog, rendition);
        if (std::ranges::find(words, word) == words.end()) {
            words.push_back(std::move(word));
        }
    }
    std::ranges::sort(words);
    return words;
}

// "--name and --idiom as they are given".
std::string givenFilters(const Selection& selection) {
    std::vector<std::string_view> given;
    for (const auto& [option, isGiven] :
         {std::pair("--name", !selection.names.empty()),
          std::pair("--scale", !selection.scales.empty()),
          std::pair("--idiom", !selection.idioms.empty()),
          std::pair("--appearance", !selection.appearances.empty())}) {
        if (isGiven) {
            given.emplace_back(option);
        }
    }
    const std::string last(given.back());
    given.pop_back();
    return given.empty() ? last + " as it is given"
                         : fmt::format("{} and {} as they are given", fmt::join(given, ", "), last);
}

ExitCode nothingToShow(const ExtractOptions& options, const CatalogInput& input,
                       const Catalog& catalog) {
    const std::string file = shown(input.file);
    const Selection& selection = options.selection;
    if (selection.takesAll()) {
        return fail(ExitCode::nothingFound,
                    file + (options.layout == FileLayout::system
                                ? ": a phone extracts no pictures of this catalog"
                                : ": there are no pictures in this catalog"));
    }
    const std::vector<std::string> appearances = appearancesOf(catalog);
    for (const std::string& wanted : selection.appearances) {
        if (std::ranges::find(appearances, wanted) == appearances.end()) {
            return fail(
                ExitCode::nothingFound,
                appearances.size() == 1
                    ? fmt::format("{}: nothing is for the appearance {}; --appearance takes "
                                  "{} alone for this catalog, or leave it out",
                                  file, inQuotes(wanted), appearances.front())
                    : file + ": " + notAmong("--appearance", appearances, wanted));
        }
    }
    Selection others = selection;
    others.names.clear();
    if (!others.takesAll()) {
        return fail(ExitCode::nothingFound, file + ": nothing fits " + givenFilters(selection) +
                                                "; --list alone shows what there is");
    }
    std::string patterns;
    for (const std::string& pattern : selection.names) {
        patterns += (patterns.empty() ? "" : " or ") + inQuotes(pattern);
    }
    return fail(ExitCode::nothingFound, file + ": nothing has a name that fits " + patterns +
                                            "; without --name, --list shows the names");
}

desktop::Result<std::vector<PlannedPicture>> plan(const ExtractOptions& options,
                                                  const Catalog& catalog) {
    LateProgress progress;
    return planExtraction(catalog, {.selection = options.selection,
                                    .layout = options.layout,
                                    .needsAllSizes = options.lists && options.isJson,
                                    .jobs = options.jobs,
                                    .progress = [&](std::size_t done, std::size_t all) {
                                        progress.show(done, all, "size");
                                    }});
}

std::string asJson(const ExtractOptions& options, const CatalogInput& input, const Catalog& catalog,
                   const Listing& listing, const std::optional<std::string>& output) {
    return listingAsJson(catalog, listing,
                         {.catalog = input.bytes ? options.input : input.file, .output = output});
}

ExitCode list(const ExtractOptions& options, const CatalogInput& input, const Catalog& catalog) {
    const auto pictures = plan(options, catalog);
    if (!pictures) {
        return fail(ExitCode::badInput, pictures.error());
    }
    const auto listing = listCatalog(catalog, options.selection, *pictures, options.layout);
    if (!listing) {
        return fail(ExitCode::badInput, listing.error());
    }
    print(options.isJson ? asJson(options, input, catalog, *listing, {})
                         : listingAsTable(catalog, *listing));
    return listing->empty() && !options.selection.takesAll()
               ? nothingToShow(options, input, catalog)
               : ExitCode::done;
}

void reportLost(const std::vector<LostPicture>& lost) {
    for (const LostPicture& picture : lost) {
        const catalog::Facet* const facet = picture.picture.facet;
        warn((facet == nullptr ? "a picture without a name" : inQuotes(facet->name)) +
             ", rendition " + inQuotes(picture.picture.rendition->name) + ": " + picture.why);
    }
}

std::string summary(const Extraction& extraction, std::size_t planned, const std::string& folder) {
    const std::string pictures = extraction.stopped ? fmt::format("{} of {}", extraction.pictures,
                                                                  counted(planned, "picture"))
                                                    : counted(extraction.pictures, "picture");
    const std::size_t files = extraction.files.size();
    std::string text =
        fmt::format("Extracted {} ({}) into {}", pictures, counted(files, "file"), shown(folder));
    if (!extraction.lost.empty()) {
        text += fmt::format("; {} could not be extracted", extraction.lost.size());
    }
    text += "\n";
    if (files < extraction.pictures) {
        text += fmt::format(
            "{} gave way to a later one of the same file name, as on a phone; "
            "without --system-names each has a file\n",
            counted(extraction.pictures - files, "picture"));
    }
    return text;
}

ExitCode extract(const ExtractOptions& options, const CatalogInput& input, const Catalog& catalog) {
    const auto pictures = plan(options, catalog);
    if (!pictures) {
        return fail(ExitCode::badInput, pictures.error());
    }
    if (pictures->empty()) {
        return nothingToShow(options, input, catalog);
    }
    // What is not extracted is listed as well.
    auto listing = options.isJson
                       ? listCatalog(catalog, options.selection, *pictures, options.layout)
                       : Listing{};
    if (!listing) {
        return fail(ExitCode::badInput, listing.error());
    }
    const auto folder = ExtractionFolder::create(options.output, input.below);
    if (!folder) {
        return fail(ExitCode::badInput, folder.error());
    }
    LateProgress progress;
    const Extraction extraction = extractPictures(
        catalog, *pictures, **folder,
        {.layout = options.layout, .jobs = options.jobs, .progress = [&](std::size_t done) {
             progress.show(done, pictures->size(), "picture");
         }});
    progress.clear();
    reportLost(extraction.lost);
    if (options.isJson) {
        addExtraction(*listing, extraction, (*folder)->path());
        print(asJson(options, input, catalog, *listing, (*folder)->path()));
    } else {
        print(summary(extraction, pictures->size(), (*folder)->path()));
    }
    if (extraction.stopped) {
        return fail(ExitCode::badInput, *extraction.stopped);
    }
    return extraction.lost.empty() ? ExitCode::done : ExitCode::nothingFound;
}

// The one picture that is asked for, to standard output.
ExitCode extractToOutput(const ExtractOptions& options, const CatalogInput& input,
                         const Catalog& catalog) {
    const auto pictures = plan(options, catalog);
    if (!pictures) {
        return fail(ExitCode::badInput, pictures.error());
    }
    if (pictures->empty()) {
        return nothingToShow(options, input, catalog);
    }
    if (pictures->size() > 1) {
        return fail(ExitCode::wrongUsage,
                    fmt::format("standard output takes one picture, and {} are asked for; --name, "
                                "--scale, --idiom and --appearance say which, --list shows them",
                                pictures->size()));
    }
    const auto temporary = desktop::makeTemporaryFolder();
    auto folder = temporary ? ExtractionFolder::create((*temporary)->path(), "")
                            : tl::unexpected(temporary.error());
    if (!folder) {
        return fail(ExitCode::badInput, folder.error());
    }
    const Extraction extraction =
        extractPictures(catalog, *pictures, **folder, {.layout = FileLayout::flat});
    reportLost(extraction.lost);
    if (extraction.stopped) {
        return fail(ExitCode::badInput, *extraction.stopped);
    }
    if (extraction.files.empty()) {
        return ExitCode::nothingFound;
    }
    const auto bytes =
        makers::readWhole(pathBelow((*folder)->path(), extraction.files.begin()->first));
    const auto written = bytes ? writeOutputFile(*bytes, options.output, "picture")
                               : desktop::Result<void>(tl::unexpected(bytes.error()));
    return written ? ExitCode::done : fail(ExitCode::badInput, written.error());
}

ExitCode runExtract(const Arguments& arguments) {
    const auto options = readExtractOptions(arguments);
    if (!options) {
        return fail(ExitCode::wrongUsage, options.error());
    }
    const auto input = findCatalog(options->input, options->layout);
    if (!input) {
        return fail(ExitCode::badInput, withNearPath(input.error(), {&options->input, 1}));
    }
    if (!input->note.empty()) {
        note(input->note);
    }
    const auto catalog = input->open();
    if (!catalog) {
        return fail(ExitCode::badInput, catalog.error());
    }
    for (const std::string& warning : catalog->warnings()) {
        warn(shown(input->file) + ": " + warning);
    }
    desktop::cleanUpOnSignals();
    const auto answer = options->lists ? list : options->output == "-" ? extractToOutput : extract;
    return answer(*options, *input, *catalog);
}

std::string fileHelp() {
    return "files:\n"
           "  OUTPUT-DIR/Maps.app/NAME-WIDTH-HEIGHT-@SCALEx.png, in pixels; -@1x is left out. Of "
           "a .car\n"
           "  file, and of standard input: OUTPUT-DIR/NAME-...\n"
           "  Of pictures with the same file name the last has it, and each of the others ends in "
           "what\n"
           "  tells it apart: ~pad, ~phone-dark, -p3, -2gb, -subtype568; ~universal, -anysubtype "
           "and so\n"
           "  on for what is made for all. Small and capital letters do not count as different.\n"
           "  A / in a name makes a folder. What a name holds beyond that and no file can be "
           "called,\n"
           "  is spelled %XX, a byte in hexadecimal: control characters, broken letters, \"..\" as "
           "a\n"
           "  folder; so is a % that could be mistaken for this. A name that is too long is cut, "
           "and\n"
           "  goes on with %~ and its place in the catalog.\n"
           "  A picture that is stored for several systems is written once, from its oldest copy, "
           "which\n"
           "  is the exact one, or else from the oldest that can be decoded. What is in the way of "
           "one\n"
           "  file costs that one alone.\n"
           "  --system-names: as a phone names and leaves them, OUTPUT-DIR/FOLDER/Assets.car/NAME-"
           "... of\n"
           "  a .car file in FOLDER. Every copy is written, and the last of a name stays; names "
           "with a /\n"
           "  and names without a picture for phones are left out.\n\n"
           "exit codes:\n"
           "  0 all is extracted, 1 some could not be extracted or nothing fits, 2 wrong usage, 3 "
           "no\n"
           "  catalog or nowhere to write, 130 interrupted: the files that are there are whole\n";
}

}  // namespace

Command extractCommand() {
    return {
        .name = "extract",
        .summary = "Write the pictures of an asset catalog as PNG files.",
        .positionalNames = "INPUT [OUTPUT-DIR]",
        .description =
            "INPUT is a .car file, or the folder of an app, framework or bundle with an "
            "Assets.car, or a .car file\nof its own name, in it, in its Resources or its "
            "Contents/Resources; - is a .car file on standard\ninput. OUTPUT-DIR is made when "
            "it is missing; files there are replaced, and nothing is written\noutside it; - is "
            "standard output, for one picture.",
        .options = extractOptionTable(),
        .examples = {"velmoranth extract Maps.app pictures",
                     "velmoranth extract UIKit/Assets.car pictures --name 'UI*Button*'",
                     "velmoranth extract Maps.app pictures --idiom phone --scale 3 --flat",
                     "velmoranth extract Maps.app - --name Pin --scale 3 --idiom phone > pin.png",
                     "velmoranth extract Maps.app --list",
                     "velmoranth extract Maps.app --list --json | jq -r '.renditions[].name'"},
        .leastPositionals = 1,
        .mostPositionals = 2,
        .run = runExtract,
        .moreHelp = fileHelp,
        .apart = extractOptionsApart()};
}

}  // namespace velmoranth::cli
