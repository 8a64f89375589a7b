// velmoranth dump
#include "cli/commands.h"
#include "cli/device_options.h"
#include "cli/dump_catalogs.h"
#include "cli/dump_device.h"
#include "cli/dump_report.h"
#include "cli/file_requests.h"
#include "cli/late_progress.h"
#include "cli/messages.h"
#include "desktop/files/cleanup.h"

#include "makers/conversion/names.h"
#include "makers/conversion/plan.h"
#include "makers/conversion/written_themes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Result;
using makers::Place;
using makers::Skeleton;
using makers::UnlikePictures;
using simulator::DeviceConfiguration;
using simulator::Question;

namespace {

namespace fs = std::filesystem;

constexpr std::array<Option, 8> kDumpOptions{{
    {"--output", "-o", "FOLDER",
     "put the theme into this folder, as Skeleton.theme; made when it is missing"},
    {"--device", "", "NAME",
     "phone, phone-667 (a smaller one) or pad (default phone); of several the first one's picture "
     "stays where they look for the same file",
     Repeat::often},
    {"--ios", "", "12|13", "the system (default 13), or both", Repeat::often},
    {"--from", "", "INPUT",
     "a .car file or the folder of a bundle that has one: its pictures under the names that are "
     "asked for",
     Repeat::often},
    {"--all", "", "",
     "also what shows otherwise than without it: symbols, the badge and, on a pad, the calendar's "
     "icon"},
    {"--raw", "", "", "the tree that the system itself leaves, as VelmoranthImageDump"},
    {"--force", "", "", "replace a folder of that name"},
    {"--json", "", "", "the report as an object for programs"},
}};

struct GivenDevice {
    DumpedDevice shown;
    DeviceConfiguration configuration;
};

struct DumpOptions {
    std::string output;
    std::string name;  // of the folder in it
    std::vector<GivenDevice> devices;
    std::vector<std::string> catalogs;
    UnlikePictures unlike = UnlikePictures::leftOut;
    bool isRaw = false;
    bool replaces = false;
};

Result<std::vector<GivenDevice>> readDevices(const Arguments& arguments) {
    const auto given = [&](std::string_view option, std::string otherwise) {
        const std::vector<std::string>& values = arguments.values(option);
        return values.empty() ? std::vector{std::move(otherwise)} : values;
    };
    std::vector<GivenDevice> devices;
    for (const std::string& system : given("--ios", "13")) {
        if (system != "12" && system != "13") {
            return misuse("--ios takes 12 or 13, not " + inQuotes(system));
        }
        const int major = system == "12" ? 12 : 13;
        for (const std::string& name : given("--device", "phone")) {
            auto configuration = simulator::deviceConfiguration(name, major);
            if (!configuration) {
                return misuse("--device: " + configuration.error().message);
            }
            configuration->date = usualDate();
            devices.push_back({{name, major}, std::move(*configuration)});
        }
    }
    return devices;
}

constexpr std::array<Needed, 1> kDumpNeeded{{{"-o FOLDER is missing", {"--output"}}}};

Result<DumpOptions> readDumpOptions(const Arguments& arguments) {
    DumpOptions options;
    options.isRaw = arguments.has("--raw");
    options.replaces = arguments.has("--force");
    options.output = arguments.value("--output").value_or("");
    options.name = options.isRaw ? "VelmoranthImageDump" : "Skeleton.theme";
    options.catalogs = arguments.values("--from");
    options.unlike = arguments.has("--all") ? UnlikePictures::taken : UnlikePictures::leftOut;
    if (options.output.empty() ||
        std::ranges::find(options.catalogs, "") != options.catalogs.end()) {
        return misuse("FOLDER and INPUT take a name, and this one is empty");
    }
    if (options.isRaw && (arguments.has("--from") || arguments.has("--all"))) {
        return misuse("--raw is what the system leaves, without --from and --all");
    }
    auto devices = readDevices(arguments);
    if (!devices) {
        return tl::unexpected(std::move(devices.error()));
    }
    options.devices = std::move(*devices);
    return options;
}

// With the folders that they lie in, in the order of their names.
Result<std::vector<std::string>> filesOfTree(const std::string& folder) {
    std::vector<std::string> files;
    std::error_code error;
    if (!fs::exists(folder, error)) {
        return files;
    }
    const fs::recursive_directory_iterator end;
    for (fs::recursive_directory_iterator entry(folder, error); !error && entry != end;
         entry.increment(error)) {
        if (entry->is_regular_file(error)) {
            files.push_back(entry->path().lexically_relative(folder));
        }
    }
    if (error) {
        return tl::unexpected(desktop::problemOfErrno(error.value(), folder));
    }
    std::ranges::sort(files);
    return files;
}

Result<void> writeDump(const DumpOptions& options, const makers::Plan& plan,
                       const std::string& folder) {
    auto written = makers::WrittenThemes::create(options.output);
    if (!written) {
        return tl::unexpected(std::move(written.error()));
    }
    LateProgress progress;
    std::size_t count = 0;
    const auto tell = [&] { progress.show(++count, plan.files.size(), "file"); };
    if (auto done = written->write(options.name, folder, plan, tell); !done) {
        return done;
    }
    return written->place(options.replaces);
}

// One run of the command, from the devices to the folder.
class Dumping {
  public:
    Dumping(const DumpOptions& options, const DumpDevice& device,
            const std::vector<DumpCatalog>& catalogs)
        : options_(options), device_(device), catalogs_(catalogs), skeleton_(options.unlike) {}

    Result<void> showScreens() {
        LateProgress progress;
        std::size_t before = 0;
        for (const GivenDevice& given : options_.devices) {
            auto seen =
                device_.showScreens(given.configuration, [&](std::size_t done, std::size_t all) {
                    progress.show(before + done, all * options_.devices.size(), "screen");
                });
            if (!seen) {
                return seen;
            }
            before += simulator::screenDefinitions().size();
        }
        return {};
    }

    Result<std::vector<std::string>> takeTree() {
        auto files = filesOfTree(device_.dumpFolder());
        if (!files) {
            return files;
        }
        makers::Plan plan;
        for (const std::string& file : *files) {
            plan.files[file] = {.source = file};
        }
        if (auto written = writeDump(options_, plan, device_.dumpFolder()); !written) {
            return tl::unexpected(std::move(written.error()));
        }
        return files;
    }

    Result<void> makeSkeleton() {
        const auto dumped = filesOfTree(device_.dumpFolder());
        if (!dumped) {
            return tl::unexpected(dumped.error());
        }
        const std::vector<Question> questions = allQuestions(*dumped);
        for (const GivenDevice& given : options_.devices) {
            LateProgress progress;
            auto places = device_.places(
                given.configuration, questions,
                [&](std::size_t done, std::size_t all) { progress.show(done, all, "place"); });
            if (!places) {
                return tl::unexpected(std::move(places.error()));
            }
            for (Place& place : *places) {
                for (const DumpCatalog& catalog : catalogs_) {
                    catalog.answer(place, given.configuration);
                }
            }
            if (auto added = skeleton_.add(*places, given.configuration.screen.scale); !added) {
                return added;
            }
            if (auto laid = device_.lay(skeleton_.files()); !laid) {
                return laid;
            }
        }
        makers::Plan plan;
        for (const auto& [name, file] : skeleton_.files()) {
            plan.files[name] = {.source = name, .work = makers::Work::write, .bytes = file.bytes};
        }
        return writeDump(options_, plan, "");
    }

    // A line for each catalog that has given nothing.
    void noteUselessCatalogs() const {
        for (const DumpCatalog& catalog : catalogs_) {
            const bool isUsed = std::ranges::any_of(skeleton_.files(), [&](const auto& file) {
                return file.second.from == catalog.input();
            });
            if (!isUsed) {
                note(shown(catalog.input()) +
                     ": nothing of it is in the theme: " + catalog.whyNothing());
            }
        }
    }

    [[nodiscard]] const Skeleton& skeleton() const { return skeleton_; }

  private:
    // None twice: what the device asks for by itself, what the screens asked for besides, and what
    // the catalogs have.
    [[nodiscard]] std::vector<Question> allQuestions(const std::vector<std::string>& dumped) const {
        std::vector<std::vector<Question>> sources{iconRequests(), deviceRequests(),
                                                   questionsOfDump(dumped)};
        for (const DumpCatalog& catalog : catalogs_) {
            sources.push_back(catalog.questions());
        }
        std::vector<Question> questions;
        std::set<std::tuple<std::string, std::string, std::string>> known;
        for (std::vector<Question>& source : sources) {
            for (Question& question : source) {
                if (known.emplace(question.word, question.argument, question.bundle).second) {
                    questions.push_back(std::move(question));
                }
            }
        }
        return questions;
    }

    const DumpOptions& options_;
    const DumpDevice& device_;
    const std::vector<DumpCatalog>& catalogs_;
    Skeleton skeleton_;
};

Result<void> makeDump(const DumpOptions& options, bool asJson) {
    const std::string path = makers::inFolder(options.output, options.name);
    if (auto checked = makers::checkThemePlace(path, options.replaces); !checked) {
        return checked;
    }
    std::vector<DumpCatalog> catalogs;
    for (const std::string& input : options.catalogs) {
        auto catalog = DumpCatalog::open(input);
        if (!catalog) {
            return tl::unexpected(std::move(catalog.error()));
        }
        catalogs.push_back(std::move(*catalog));
    }
    const auto device = DumpDevice::create();
    if (!device) {
        return tl::unexpected(device.error());
    }
    Dumping dumping(options, *device, catalogs);
    if (auto shown = dumping.showScreens(); !shown) {
        return shown;
    }
    Dump dump{.folder = path, .devices = {}, .replaced = makers::filesReplacedAt(path)};
    std::ranges::transform(options.devices, std::back_inserter(dump.devices), &GivenDevice::shown);
    if (options.isRaw) {
        auto tree = dumping.takeTree();
        if (!tree) {
            return tl::unexpected(std::move(tree.error()));
        }
        dump.raw = std::move(*tree);
    } else if (auto made = dumping.makeSkeleton(); !made) {
        return made;
    } else {
        dump.skeleton = &dumping.skeleton();
        dumping.noteUselessCatalogs();
    }
    print(asJson ? jsonOf(dump) : textOf(dump));
    return {};
}

ExitCode runDump(const Arguments& arguments) {
    const auto options = readDumpOptions(arguments);
    if (!options) {
        return fail(ExitCode::wrongUsage, options.error());
    }
    desktop::cleanUpOnSignals();
    const auto done = makeDump(*options, arguments.has("--json"));
    return done ? ExitCode::done : fail(ExitCode::badInput, done.error());
}

std::string dumpHelp() {
    return "exit codes:\n  0 done, 2 wrong usage, 3 an INPUT that cannot be read, or nowhere to "
           "write, 130 interrupted:\n  nothing is written\n";
}

}  // namespace

Command dumpCommand() {
    return {.name = "dump",
            .summary = "Make a theme of the system's own pictures, to be painted over.",
            .positionalNames = "",
            .description =
                "Shows every screen of a simulated device with the image dump on, and writes what "
                "a theme is asked for:\neach picture under its name, so that the theme shows what "
                "the device shows without it.",
            .options = kDumpOptions,
            .examples = {"velmoranth dump -o themes",
                         "velmoranth dump -o themes --device phone --device pad --from Maps.app",
                         "velmoranth dump -o pictures --raw --ios 12"},
            .leastPositionals = 0,
            .mostPositionals = 0,
            .run = runDump,
            .moreHelp = dumpHelp,
            .needed = kDumpNeeded};
}

}  // namespace velmoranth::cli
