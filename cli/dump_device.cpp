#include "cli/dump_device.h"

#include "cli/explanation.h"
#include "cli/question_batches.h"
#include "desktop/files/descriptor.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/file_tree.h"

#include "makers/skeleton/unlike_pictures.h"
#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <map>
#include <ranges>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;
using makers::Place;
using simulator::DeviceConfiguration;
using simulator::ProcessKind;
using simulator::Question;
using simulator::RunningScreen;

namespace {

namespace fs = std::filesystem;

constexpr const char* kTheme = "skeleton";
constexpr const char* kDumpFolder = "/private/var/mobile/Library/VelmoranthImageDump";
// For whose icon a widget is asked that has no identifier: any such widget would show it.
constexpr std::string_view kNoIdentifier = "(null)";
constexpr std::string_view kDumpEnding = "@3x.png";

platform::Dictionary settingsOfScreens() {
    return {{"enableImageDump", platform::PropertyList(true)}};
}

// Masks and overlays are asked for by themselves; the dock's picture is looked for where the
// system's own dock is taken away.
platform::Dictionary settingsOfQuestions() {
    return {{"enableIconMask", platform::PropertyList(false)},
            {"enableOverlay", platform::PropertyList(false)},
            {"removeDock", platform::PropertyList(true)}};
}

Result<void> writeInto(const std::string& path, const platform::Data& bytes) {
    std::error_code error;
    fs::create_directories(fs::path(path).parent_path(), error);
    const desktop::Descriptor file(
        error ? -1 : ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    int code = error ? error.value() : 0;
    if (code == 0) {
        code = file.isOpen() ? desktop::writeWhole(desktop::FileCalls(), file.get(), bytes.data(),
                                                   bytes.size())
                             : errno;
    }
    return code == 0 || code == EEXIST ? Result<void>()
                                       : tl::unexpected(desktop::problemOfErrno(code, path));
}

}  // namespace

std::vector<Question> questionsOfDump(std::span<const std::string> files) {
    std::vector<Question> questions;
    for (const std::string& file : files) {
        const std::size_t slash = file.rfind('/');
        std::string_view name =
            std::string_view(file).substr(slash == std::string::npos ? 0 : slash + 1);
        if (slash == std::string::npos || !name.ends_with(kDumpEnding)) {
            continue;
        }
        name.remove_suffix(kDumpEnding.size());
        constexpr std::string_view kBundles = "Bundles/";
        const std::string_view folder = std::string_view(file).substr(0, slash);
        if (folder == "IconBundles") {
            if (name != kNoIdentifier) {
                questions.push_back({"icon", std::string(name), ""});
            }
        } else if (folder == "UIImages") {
            questions.push_back({"image", std::string(name), ""});
        } else if (folder.starts_with(kBundles) && folder != "Bundles/IconBundles") {
            questions.push_back(
                {"image", std::string(name), std::string(folder.substr(kBundles.size()))});
        }
    }
    return questions;
}

Result<DumpDevice> DumpDevice::create() {
    auto device = makeDevice({});
    if (!device) {
        return tl::unexpected(std::move(device.error()));
    }
    const std::string folder = device->root->hostFolder() + "/Library/Themes/" + kTheme;
    std::error_code error;
    fs::create_directory(folder, error);
    if (error) {
        return tl::unexpected(desktop::problemOfErrno(error.value(), folder));
    }
    device->themes = {kTheme};
    return DumpDevice(std::move(*device));
}

std::string DumpDevice::dumpFolder() const {
    return device_.root->hostFolder() + kDumpFolder;
}

Result<void> DumpDevice::showScreens(const DeviceConfiguration& configuration,
                                     const Progress& progress) const {
    if (auto set = setActiveThemes(*device_.root, {}, settingsOfScreens()); !set) {
        return set;
    }
    const auto screens = simulator::screenDefinitions();
    std::size_t done = 0;
    // The first picture of an app stays, and the last screens show every icon as large as it gets.
    for (const simulator::ScreenDefinition& screen : screens | std::views::reverse) {
        progress(done++, screens.size());
        auto running = RunningScreen::start(
            {.device = configuration, .deviceFiles = device_.root->files(), .screen = screen.kind});
        int pages = 1;
        for (int page = 1; running && page <= pages; ++page) {
            if (!(*running)->showPage(page)) {
                return tl::unexpected(Problem{"the process of the screen has ended"});
            }
            const auto picture = (*running)->render();
            if (!picture) {
                return tl::unexpected(picture.error());
            }
            pages = picture->pageCount;
        }
        if (!running) {
            return tl::unexpected(std::move(running.error()));
        }
    }
    return {};
}

Result<void> DumpDevice::lay(const std::map<std::string, makers::SkeletonFile>& files) const {
    const std::string folder = device_.root->hostFolder() + "/Library/Themes/" + kTheme + "/";
    for (const auto& [name, file] : files) {
        if (auto written = writeInto(folder + name, file.bytes); !written) {
            return written;
        }
    }
    return {};
}

Result<std::vector<Place>> DumpDevice::places(const DeviceConfiguration& configuration,
                                              std::span<const Question> questions,
                                              const Progress& progress) const {
    std::vector<Place> places;
    for (const Question& question : questions) {
        const bool isThere =
            configuration.system.major >= simulator::questionRowNamed(question.word)->firstSystem;
        if (isThere && question.word != "sound") {
            places.push_back({.question = question,
                              .names = {},
                              .isServed = false,
                              .unlike = std::string(makers::whyUnlike(question, configuration))});
        }
    }
    if (auto set = setActiveThemes(*device_.root, device_.themes, settingsOfQuestions()); !set) {
        return tl::unexpected(std::move(set.error()));
    }
    if (auto found = findNames(configuration, places); !found) {
        return tl::unexpected(std::move(found.error()));
    }
    std::erase_if(places, [](const Place& place) { return place.names.empty(); });
    if (auto found = findPictures(configuration, places, progress); !found) {
        return tl::unexpected(std::move(found.error()));
    }
    return places;
}

Result<void> DumpDevice::findNames(const DeviceConfiguration& configuration,
                                   std::vector<Place>& places) const {
    const Investigation investigation{device_, configuration, settingsOfQuestions()};
    std::vector<Question> questions;
    questions.reserve(places.size());
    std::ranges::transform(places, std::back_inserter(questions), &Place::question);
    std::map<ProcessKind, Process> processes;
    for (const std::vector<std::size_t>& batch : batchesOf(questions)) {
        std::vector<Question> together;
        together.reserve(batch.size());
        for (const std::size_t i : batch) {
            together.push_back(questions[i]);
        }
        Process& process = processes[simulator::questionRowNamed(together.front().word)->process];
        if (process == nullptr) {
            auto started = startProcess(investigation, together.front(), true);
            if (!started) {
                return tl::unexpected(std::move(started.error()));
            }
            process = std::move(*started);
        }
        const auto records = process->askApart(together);
        if (!records) {
            return tl::unexpected(records.error());
        }
        for (std::size_t i = 0; i < batch.size(); ++i) {
            Place& place = places[batch[i]];
            for (AskedFile& file : triedFiles((*records)[i])) {
                place.isServed = place.isServed || (file.state != record::EntryKind::missing &&
                                                    file.name.ends_with(".png"));
                place.names.push_back(std::move(file.name));
            }
        }
    }
    return {};
}

Result<void> DumpDevice::findPictures(const DeviceConfiguration& configuration,
                                      std::vector<Place>& places, const Progress& progress) const {
    const Investigation investigation{device_, configuration, {}};
    std::map<ProcessKind, Process> processes;
    std::size_t done = 0;
    for (Place& place : places) {
        progress(done++, places.size());
        // The calendar is asked for its size too.
        if (place.isServed && place.question.word != "calendar") {
            continue;
        }
        Process& process = processes[simulator::questionRowNamed(place.question.word)->process];
        if (process == nullptr) {
            auto started = startProcess(investigation, place.question, false);
            if (!started) {
                return tl::unexpected(std::move(started.error()));
            }
            process = std::move(*started);
        }
        auto answer = process->ask(place.question);
        if (!answer) {
            return tl::unexpected(std::move(answer.error()));
        }
        place.picture = std::move(answer->picture);
    }
    return {};
}

}  // namespace velmoranth::cli
