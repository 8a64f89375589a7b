// velmoranth extract
#include "cli/catalog_input.h"
#include "cli/catalog_listing.h"
#include "cli/commands.h"
#include "cli/extract_options.h"
#include "cli/extraction.h"
#include "cli/extraction_folder.h"
#include "cli/extraction_plan.h"
#include "cli/messages.h"
#include "desktop/catalog/catalog.h"
#include "desktop/files/cleanup.h"

#include <fmt/core.h>

#include <string>
#include <vector>

namespace velmoranth::cli {

using catalog::Catalog;

namespace {

ExitCode nothingToShow(const ExtractOptions& options, const CatalogInput& input) {
    const std::string file = shown(input.file);
    return fail(ExitCode::nothingFound, options.pattern == "*"
                                            ? file + ": there are no pictures in this catalog"
                                            : file + ": nothing has a name that fits " +
                                                  inQuotes(options.pattern) +
                                                  "; without --name, --list shows the names");
}

ExitCode list(const ExtractOptions& options, const CatalogInput& input, const Catalog& catalog) {
    const auto listing = listCatalog(catalog, options.pattern);
    if (!listing) {
        return fail(ExitCode::badInput, listing.error());
    }
    print(options.kind == ExtractKind::json ? listingAsJson(catalog, *listing, input.file)
                                            : listingAsTable(catalog, *listing));
    return listing->empty() && options.pattern != "*" ? nothingToShow(options, input)
                                                      : ExitCode::done;
}

std::string progressBar(std::size_t done, std::size_t all) {
    constexpr std::size_t kWidth = 30;
    const std::size_t filled = done * kWidth / all;
    return fmt::format("[{}{}] {} of {}", std::string(filled, '#'),
                       std::string(kWidth - filled, '-'), done, counted(all, "picture"));
}

void reportLost(const std::vector<LostPicture>& lost) {
    for (const LostPicture& picture : lost) {
        const catalog::Facet* const facet = picture.picture.facet;
        warn((facet == nullptr ? "a picture without a name" : inQuotes(facet->name)) +
             ", rendition " + inQuotes(picture.picture.rendition->name) + ": " + picture.why);
    }
}

std::string summary(const ExtractOptions& options, const Extraction& extraction,
                    std::size_t planned, const std::string& folder) {
    const std::string pictures = extraction.stopped ? fmt::format("{} of {}", extraction.pictures,
                                                                  counted(planned, "picture"))
                                                    : counted(extraction.pictures, "picture");
    std::string text = fmt::format("Extracted {} ({}) into {}", pictures,
                                   counted(extraction.files, "file"), shown(folder));
    if (!extraction.lost.empty()) {
        text += fmt::format("; {} could not be extracted", extraction.lost.size());
    }
    text += "\n";
    if (extraction.files < extraction.pictures) {
        text += fmt::format(
            "{} gave way to a later one of the same file name; velmoranth extract {} --list shows "
            "which\n",
            counted(extraction.pictures - extraction.files, "picture"), forShell(options.input));
    }
    return text;
}

ExitCode extract(const ExtractOptions& options, const CatalogInput& input, const Catalog& catalog) {
    const auto plan = planExtraction(catalog, options.pattern);
    if (!plan) {
        return fail(ExitCode::badInput, plan.error());
    }
    if (plan->empty()) {
        return nothingToShow(options, input);
    }
    desktop::cleanUpOnSignals();
    const auto folder = ExtractionFolder::create(options.output, input.below);
    if (!folder) {
        return fail(ExitCode::badInput, folder.error());
    }
    Extraction extraction;
    {
        ProgressLine line;
        extraction = extractPictures(catalog, *plan, **folder, options.jobs, [&](std::size_t done) {
            line.show(progressBar(done, plan->size()));
        });
    }
    reportLost(extraction.lost);
    print(summary(options, extraction, plan->size(), (*folder)->path()));
    if (extraction.stopped) {
        return fail(ExitCode::badInput, *extraction.stopped);
    }
    return extraction.lost.empty() ? ExitCode::done : ExitCode::nothingFound;
}

ExitCode runExtract(const Arguments& arguments) {
    const auto options = readExtractOptions(arguments);
    if (!options) {
        return fail(ExitCode::wrongUsage, options.error());
    }
    const auto input = findCatalog(options->input);
    if (!input) {
        return fail(ExitCode::badInput, input.error());
    }
    if (!input->note.empty()) {
        note(input->note);
    }
    const auto catalog = Catalog::open(input->file);
    if (!catalog) {
        return fail(ExitCode::badInput, catalog.error());
    }
    for (const std::string& warning : catalog->warnings()) {
        warn(shown(input->file) + ": " + warning);
    }
    return options->kind == ExtractKind::files ? extract(*options, *input, *catalog)
                                               : list(*options, *input, *catalog);
}

std::string fileHelp() {
    return "files:\n"
           "  OUTPUT-DIR/Maps.app/NAME-WIDTH-HEIGHT-@SCALEx.png, in pixels; -@1x is left out. Of\n"
           "  Maps.app/Assets.car, given as a file: OUTPUT-DIR/Maps.app/Assets.car/NAME-...\n"
           "  A / in a name makes a folder. What a name holds beyond that and no file can be "
           "called,\n"
           "  is spelled %XX, a byte in hexadecimal: control characters, broken letters, \"..\" as "
           "a\n"
           "  folder; so is a % that could be mistaken for this. A name that is too long is cut, "
           "and\n"
           "  goes on with %~ and its place in the catalog.\n"
           "  Of pictures with the same file the last one is kept. A picture that is stored for\n"
           "  several systems is written once, from its oldest copy, which is the exact one, or "
           "else from\n"
           "  the oldest that can be decoded. What is in the way of one file costs that one "
           "alone.\n\n"
           "exit codes:\n"
           "  0 all is extracted, 1 some could not be extracted or nothing fits, 2 wrong usage, 3 "
           "no\n"
           "  catalog or nowhere to write\n";
}

}  // namespace

Command extractCommand() {
    return {.name = "extract",
            .summary = "Write the pictures of an asset catalog as PNG files.",
            .positionalNames = "INPUT [OUTPUT-DIR]",
            .description =
                "INPUT is a .car file, or the folder of an app, framework or bundle with an "
                "Assets.car, or a .car file\nof its own name, in it, in its Resources or its "
                "Contents/Resources. OUTPUT-DIR is made when it is\nmissing; files there are "
                "replaced, and nothing is written outside it.",
            .options = extractOptionTable(),
            .examples = {"velmoranth extract Maps.app pictures",
                         "velmoranth extract UIKit/Assets.car pictures --name 'UI*Button*'",
                         "velmoranth extract Maps.app --list",
                         "velmoranth extract Maps.app --list --json | jq -r '.renditions[].name'"},
            .leastPositionals = 1,
            .mostPositionals = 2,
            .run = runExtract,
            .moreHelp = fileHelp};
}

}  // namespace velmoranth::cli
