#include "cli/extract_options.h"

#include "cli/messages.h"
#include "cli/numbers.h"

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;

namespace {

constexpr int kMostJobs = 256;

constexpr std::array<Option, 4> kOptions{{
    {"--list", "", "", "list every rendition, and write nothing"},
    {"--json", "", "", "with --list: an object for programs, with more than the table shows"},
    {"--name", "", "GLOB",
     "only names that fit: * stands for any letters, / too, ? for one, [a-z] for one of these, "
     "[!a-z] for any other"},
    {"--jobs", "", "N", "how many pictures to work on at a time (default: one a processor)"},
}};

Result<void> readJobs(const Arguments& arguments, ExtractOptions& options) {
    options.jobs = std::clamp(std::thread::hardware_concurrency(), 1U, unsigned{kMostJobs});
    if (const auto text = arguments.value("--jobs")) {
        const auto number = parseInteger(*text, 1, kMostJobs);
        if (!number) {
            return misuse("--jobs takes a number from 1 to " + std::to_string(kMostJobs) +
                          ", not " + inQuotes(*text));
        }
        options.jobs = static_cast<std::size_t>(*number);
    }
    return {};
}

Result<void> readKind(const Arguments& arguments, ExtractOptions& options) {
    const bool lists = arguments.has("--list");
    if (arguments.has("--json") && !lists) {
        return misuse("--json needs --list; velmoranth extract --help");
    }
    if (!lists) {
        return options.output.empty()
                   ? Result<void>(
                         misuse("OUTPUT-DIR is missing (or --list); velmoranth extract --help"))
                   : Result<void>();
    }
    if (!options.output.empty()) {
        return misuse("--list does not go with OUTPUT-DIR: it writes nothing");
    }
    if (arguments.has("--jobs")) {
        return misuse("--list does not go with --jobs: it decodes no pictures");
    }
    options.kind = arguments.has("--json") ? ExtractKind::json : ExtractKind::table;
    return {};
}

}  // namespace

Result<ExtractOptions> readExtractOptions(const Arguments& arguments) {
    const std::vector<std::string>& words = arguments.positionals();
    if (std::find(words.begin(), words.end(), "") != words.end()) {
        return misuse("INPUT and OUTPUT-DIR take a name, and this one is empty");
    }
    ExtractOptions options;
    options.input = words.front();
    options.output = words.size() > 1 ? words[1] : "";
    options.pattern = arguments.value("--name").value_or("*");
    if (options.pattern.empty()) {
        return misuse("--name takes a pattern, and this one is empty");
    }
    for (const auto& read : {readKind(arguments, options), readJobs(arguments, options)}) {
        if (!read) {
            return tl::unexpected(read.error());
        }
    }
    return options;
}

std::span<const Option> extractOptionTable() {
    return kOptions;
}

}  // namespace velmoranth::cli
