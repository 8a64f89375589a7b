#include "cli/extract_options.h"

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;

namespace {

constexpr int kMostJobs = 256;

constexpr std::array<Option, 4> kExtractOptions{{
    {"--list", "", "", "list every rendition, and write nothing"},
    {"--json", "", "", "with --list: an object for programs, with more than the table shows"},
    {"--name", "", "GLOB",
     "only names that fit: * stands for any letters, / too, ? for one, [a-z] for one of these, "
     "[!a-z] for any other"},
    {"--jobs", "", "N", "how many pictures to work on at a time (default: one a processor)"},
}};

}  // namespace

Result<ExtractOptions> readExtractOptions(const Arguments& arguments) {
    const std::vector<std::string>& words = arguments.positionals();
    const std::string output = words.size() > 1 ? words[1] : "";
    const std::string pattern = arguments.value("--name").value_or("*");
    const bool lists = arguments.has("--list");
    const bool isJson = arguments.has("--json");

    struct Fault {
        bool isThere;
        const char* message;
    };

    for (const Fault& fault : {
             Fault{std::ranges::find(words, "") != words.end(),
                   "INPUT and OUTPUT-DIR take a name, and this one is empty"},
             Fault{pattern.empty(), "--name takes a pattern, and this one is empty"},
             Fault{isJson && !lists, "--json needs --list; velmoranth extract --help"},
             Fault{!lists && output.empty(),
                   "OUTPUT-DIR is missing (or --list); velmoranth extract --help"},
             Fault{lists && !output.empty(),
                   "--list does not go with OUTPUT-DIR: it writes nothing"},
             Fault{lists && arguments.has("--jobs"),
                   "--list does not go with --jobs: it decodes no pictures"},
         }) {
        if (fault.isThere) {
            return misuse(fault.message);
        }
    }
    const unsigned processors = std::thread::hardware_concurrency();
    const auto jobs = arguments.number(
        "--jobs", kMostJobs, static_cast<int>(std::clamp(processors, 1U, unsigned{kMostJobs})));
    if (!jobs) {
        return tl::unexpected(jobs.error());
    }
    return ExtractOptions{.input = words.front(),
                          .output = output,
                          .kind = isJson  ? ExtractKind::json
                                  : lists ? ExtractKind::table
                                          : ExtractKind::files,
                          .pattern = pattern,
                          .jobs = static_cast<std::size_t>(*jobs)};
}

std::span<const Option> extractOptionTable() {
    return kExtractOptions;
}

}  // namespace velmoranth::cli
