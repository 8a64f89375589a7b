#include "cli/extract_options.h"

#include "cli/numbers.h"
#include "cli/rendition_attributes.h"

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;

namespace {

constexpr int kMostJobs = 256;

constexpr int kMostScale = 100;

constexpr std::array<Option, 9> kExtractOptions{{
    {"--list", "", "", "list every rendition, and write nothing"},
    {"--json", "", "",
     "an object for programs: what is in the catalog, with more than the table shows, and where "
     "each picture is"},
    {"--name", "", "GLOB",
     "only names that fit: * stands for any letters, / too, ? for one, [a-z] for one of these, "
     "[!a-z] for any other; of several one has to fit",
     Repeat::often},
    {"--scale", "", "N", "only pictures of this scale, or of one of several", Repeat::often},
    {"--idiom", "", "IDIOM",
     "only renditions for this kind of device: universal, phone, pad, tv, car, watch, marketing; "
     "or for one of several",
     Repeat::often},
    {"--appearance", "", "NAME",
     "only renditions for this appearance: any, dark, or another that --list shows; or for one of "
     "several",
     Repeat::often},
    {"--flat", "", "", "put all files into OUTPUT-DIR itself, without folders"},
    {"--system-names", "", "",
     "write what the phone's own extraction leaves: its folders, and of pictures with one file "
     "name the last alone"},
    {"--jobs", "", "N", "how many pictures to work on at a time (default: one a processor)"},
}};

constexpr std::array<Apart, 2> kExtractApart{
    {{"--list", "--jobs", "it writes no pictures"},
     {"--flat", "--system-names", "the system has folders of its own"}}};

Result<Selection> readSelection(const Arguments& arguments) {
    Selection selection;
    selection.names = arguments.values("--name");
    if (std::ranges::find(selection.names, "") != selection.names.end()) {
        return misuse("--name takes a pattern, and this one is empty");
    }
    for (const std::string& text : arguments.values("--scale")) {
        const auto scale = parseInteger(text, 1, kMostScale);
        if (!scale) {
            return misuse("--scale takes a number from 1 to " + std::to_string(kMostScale) +
                          ", not " + inQuotes(text));
        }
        selection.scales.push_back(*scale);
    }
    for (const std::string& name : arguments.values("--idiom")) {
        const auto number = idiomNumber(name);
        if (!number) {
            return tl::unexpected(number.error());
        }
        selection.idioms.push_back(*number);
    }
    for (const std::string& name : arguments.values("--appearance")) {
        selection.appearances.push_back(appearanceWord(name));
        if (selection.appearances.back().empty()) {
            return misuse("--appearance takes a name such as dark, not " + inQuotes(name));
        }
    }
    return selection;
}

}  // namespace

Result<ExtractOptions> readExtractOptions(const Arguments& arguments) {
    const std::vector<std::string>& words = arguments.positionals();
    const std::string output = words.size() > 1 ? words[1] : "";
    const bool lists = arguments.has("--list");
    const bool isFlat = arguments.has("--flat");
    const bool isSystems = arguments.has("--system-names");

    struct Fault {
        bool isThere;
        const char* message;
    };

    for (const Fault& fault : {
             Fault{std::ranges::find(words, "") != words.end(),
                   "INPUT and OUTPUT-DIR take a name, and this one is empty"},
             Fault{!lists && output.empty(),
                   "OUTPUT-DIR is missing (or --list); velmoranth extract --help"},
             Fault{lists && !output.empty(),
                   "--list does not go with OUTPUT-DIR: it writes nothing"},
             Fault{output == "-" && arguments.has("--json"),
                   "--json does not go with -: standard output has the picture"},
             Fault{output == "-" && isSystems,
                   "--system-names does not go with -: a picture on standard output has no name"},
         }) {
        if (fault.isThere) {
            return misuse(fault.message);
        }
    }
    auto selection = readSelection(arguments);
    if (!selection) {
        return tl::unexpected(std::move(selection.error()));
    }
    const unsigned processors = std::thread::hardware_concurrency();
    const auto jobs = arguments.number(
        "--jobs", kMostJobs, static_cast<int>(std::clamp(processors, 1U, unsigned{kMostJobs})));
    if (!jobs) {
        return tl::unexpected(jobs.error());
    }
    return ExtractOptions{.input = words.front(),
                          .output = output,
                          .lists = lists,
                          .isJson = arguments.has("--json"),
                          .selection = std::move(*selection),
                          .layout = isSystems ? FileLayout::system
                                    : isFlat  ? FileLayout::flat
                                              : FileLayout::apart,
                          .jobs = static_cast<std::size_t>(*jobs)};
}

std::span<const Option> extractOptionTable() {
    return kExtractOptions;
}

std::span<const Apart> extractOptionsApart() {
    return kExtractApart;
}

}  // namespace velmoranth::cli
