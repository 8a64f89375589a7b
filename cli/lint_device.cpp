#include "cli/lint_device.h"

#include "cli/device_layout.h"
#include "cli/preferences.h"
#include "cli/question_batches.h"
#include "desktop/files/cleanup.h"
#include "desktop/files/create_device_root.h"
#include "desktop/files/descriptor.h"
#include "desktop/files/file_calls.h"
#include "desktop/files/file_tree.h"
#include "desktop/image_io/image_io.h"
#include "simulator/screens/question_rows.h"

#include "makers/conversion/names.h"
#include "makers/conversion/pictures.h"
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <set>
#include <span>
#include <string_view>
#include <system_error>
#include <thread>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;
using makers::AskedRequest;
using makers::FileAsked;
using makers::FileState;
using record::Entry;
using record::EntryKind;
using simulator::Question;

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kThemesFolder = "/Library/Themes/";
constexpr const char* kProbeTheme = "probe";

// Parts that are switched off on a fresh device are looked for as well; masks and overlays are
// asked for by themselves, and are not drawn with every icon.
platform::Dictionary settingsOfLint() {
    return {{"enableIconMask", platform::PropertyList(false)},
            {"enableOverlay", platform::PropertyList(false)},
            {"enableShadow", platform::PropertyList(true)},
            {"removeDock", platform::PropertyList(true)}};
}

platform::Data opaquePicture(std::size_t side) {
    const platform::Data pixels(side * side * 4, 0xFF);
    return desktop::encodePng(pixels, side, side, side * 4);
}

// Lays files out in a folder of this machine, those of one content as links to one file.
class Files {
  public:
    explicit Files(std::string folder) : folder_(std::move(folder)) {}

    Result<void> write(const std::string& name, std::span<const std::uint8_t> bytes) {
        const std::string path = pathOf(name);
        const desktop::Descriptor file(
            ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
        const int error = file.isOpen() ? desktop::writeWhole(desktop::FileCalls(), file.get(),
                                                              bytes.data(), bytes.size())
                                        : errno;
        return error == 0 ? Result<void>() : tl::unexpected(desktop::problemOfErrno(error, path));
    }

    Result<void> writeSame(const std::string& name, const platform::Data& bytes) {
        // No file system lets a file have any number of links.
        constexpr std::size_t kMostLinks = 30000;
        auto& [first, count] = same_[bytes];
        if (count == 0 || count == kMostLinks) {
            first = name;
            count = 1;
            return write(name, bytes);
        }
        ++count;
        const std::string path = pathOf(name);
        if (::link((folder_ + first).c_str(), path.c_str()) != 0) {
            return tl::unexpected(desktop::problemOfErrno(errno, path));
        }
        return {};
    }

    // The device has the theme under another name.
    Result<void> writeLink(const std::string& name, const makers::FoundTheme& theme) {
        std::error_code error;
        std::string end = fs::read_symlink(theme.folder + "/" + name, error);
        if (!error) {
            const std::string place = std::string(kThemesFolder) + theme.name + "/";
            if (end.starts_with(place)) {
                end = std::string(kThemesFolder) + kLintedTheme + "/" + end.substr(place.size());
            }
            fs::create_symlink(end, pathOf(name), error);
        }
        // What is no link, or leads nowhere that can be said, is missing on the device too.
        return {};
    }

  private:
    // With its folders made.
    std::string pathOf(const std::string& name) {
        const std::string path = folder_ + name;
        if (const std::string below = fs::path(path).parent_path(); made_.insert(below).second) {
            std::error_code error;
            fs::create_directories(below, error);
        }
        return path;
    }

    std::string folder_;
    std::set<std::string> made_;
    std::map<platform::Data, std::pair<std::string, std::size_t>> same_;
};

// Those whose contents decide what else is asked for or seen.
bool isTaken(const std::string& name) {
    return name == "Info.plist" || makers::pictureName(name).base == "AppIconMask";
}

Result<void> layOutIn(const std::string& folder, const makers::FoundTheme& theme,
                      const makers::JudgedPictures& pictures) {
    Files files(folder + "/");
    const platform::Data pixel = opaquePicture(1);
    const platform::Data nothing;
    for (const makers::ThemeFile& file : theme.files) {
        if (::access((theme.folder + "/" + file.name).c_str(), R_OK) != 0) {
            continue;  // a device does not open it either
        }
        Result<void> written;
        const auto picture = pictures.find(file.name);
        if (isTaken(file.name)) {
            const auto bytes = makers::readWhole(theme.folder + "/" + file.name);
            written = files.write(file.name, bytes ? *bytes : nothing);
        } else {
            const bool isPicture = picture != pictures.end() && picture->second.facts.isPicture();
            written = files.writeSame(file.name, isPicture ? pixel : nothing);
        }
        if (!written) {
            // Where it was to be laid out means nothing to the user.
            written.error().path = theme.folder + "/" + file.name;
            return written;
        }
    }
    for (const makers::LeftOut& link : theme.leftOut) {
        if (auto written = files.writeLink(link.name, theme); !written) {
            return written;
        }
    }
    return {};
}

struct DeviceRow {
    const char* model;
    int system;
    const char* name;
    bool isSideways = false;
};

// Those that differ most come first.
constexpr std::array<DeviceRow, 7> kDevices{{{"phone", 13, "phones"},
                                             {"pad", 13, "pads"},
                                             {"phone-667", 13, "smaller phones"},
                                             {"phone", 12, "phones with iOS 12"},
                                             {"pad", 12, "pads with iOS 12"},
                                             {"phone-667", 12, "smaller phones with iOS 12"},
                                             {"pad", 13, "pads held sideways", true}}};

// Requests that are worth a second process to share them with.
bool areMany(std::size_t requests) {
    return requests > 2 * kMostQuestionsTogether && std::thread::hardware_concurrency() > 1;
}

FileState stateOf(EntryKind kind) {
    return kind == EntryKind::found        ? FileState::found
           : kind == EntryKind::unreadable ? FileState::unreadable
                                           : FileState::missing;
}

// The files of the theme that a record is about.
std::vector<FileAsked> filesOf(const record::Record& record) {
    static const std::string kFolder = std::string(kThemesFolder) + kLintedTheme + "/";
    std::vector<FileAsked> files;
    for (const Entry& entry : record) {
        if (!entry.subject.starts_with(kFolder)) {
            continue;
        }
        const std::size_t begin = entry.subject.find_first_not_of('/', kFolder.size());
        if (begin == std::string::npos) {
            continue;
        }
        FileAsked file{.name = entry.subject.substr(begin),
                       .state = stateOf(entry.kind),
                       .isBeside = !entry.arguments.empty()};
        const auto known = std::ranges::find(files, file.name, &FileAsked::name);
        if (known == files.end()) {
            files.push_back(std::move(file));
        } else if (file.isOpened()) {
            *known = std::move(file);  // it was looked for, then read
        }
    }
    return files;
}

}  // namespace

Result<DeviceOfRun> makeLintDevice() {
    const auto installed = findInstalledFiles();
    if (!installed) {
        return tl::unexpected(installed.error());
    }
    auto folder = desktop::makeTemporaryFolder();
    if (!folder) {
        return tl::unexpected(std::move(folder.error()));
    }
    DeviceOfRun device{.folder = std::move(*folder)};
    const auto root = desktop::createDeviceRoot(device.folder->path(), *installed);
    if (!root) {
        return tl::unexpected(root.error());
    }
    device.root = *root;
    const std::string themes = device.folder->path() + std::string(kThemesFolder);
    std::error_code error;
    fs::create_directory(themes + kLintedTheme, error);
    if (error) {
        return tl::unexpected(Problem{error.message(), themes + kLintedTheme});
    }
    constexpr std::size_t kSide = 60;
    const std::string probe = "IconBundles/" + std::string(kProbeApp) + "-large.png";
    if (auto done = Files(themes + kProbeTheme + "/").write(probe, opaquePicture(kSide)); !done) {
        return tl::unexpected(std::move(done.error()));
    }
    device.themes = {kLintedTheme, kProbeTheme};
    if (auto set = setActiveThemes(*device.root, device.themes, settingsOfLint()); !set) {
        return tl::unexpected(std::move(set.error()));
    }
    return device;
}

Result<void> layOut(const DeviceOfRun& device, const makers::FoundTheme& theme,
                    const makers::JudgedPictures& pictures) {
    return layOutIn(device.folder->path() + std::string(kThemesFolder) + kLintedTheme, theme,
                    pictures);
}

LintDevices::LintDevices(const DeviceOfRun& device) : device_(device) {
    for (const DeviceRow& row : kDevices) {
        auto configuration = simulator::deviceConfiguration(row.model, row.system);
        if (row.isSideways) {
            static_cast<void>(simulator::turnToLandscape(*configuration));
        }
        names_.push_back({row.name, configuration->kind == simulator::DeviceKind::pad});
        configurations_.push_back(std::move(*configuration));
    }
    processes_.resize(configurations_.size());
}

Investigation LintDevices::investigation(std::size_t device) const {
    return {.device = device_,
            .configuration = configurations_.at(device),
            .settings = settingsOfLint()};
}

Result<simulator::RunningScreen*> LintDevices::processFor(std::size_t device, std::size_t worker,
                                                          const Question& question) {
    auto& process =
        processes_.at(device).at(worker)[simulator::questionRowNamed(question.word)->process];
    if (process == nullptr) {
        auto started = startProcess(investigation(device), question, true);
        if (!started) {
            return tl::unexpected(std::move(started.error()));
        }
        process = std::move(*started);
    }
    return process.get();
}

void LintDevices::startFirst(std::size_t files) {
    for (std::size_t device = 0; device < kMostDifferent; ++device) {
        static_cast<void>(processFor(device, 0, {"icon", "", ""}));
    }
    if (areMany(files)) {
        static_cast<void>(processFor(0, 1, {"icon", "", ""}));
    }
}

Result<std::vector<AskedRequest>> LintDevices::askBatch(std::size_t device, std::size_t worker,
                                                        const std::vector<AskedRequest>& requests,
                                                        const std::vector<std::size_t>& batch) {
    std::vector<Question> questions;
    questions.reserve(batch.size());
    for (const std::size_t i : batch) {
        questions.push_back(requests[i].question);
    }
    auto asked = askTogether(device, questions, worker);
    for (std::size_t i = 0; asked && i < batch.size(); ++i) {
        (*asked)[i].kind = requests[batch[i]].kind;
    }
    return asked;
}

Result<std::vector<AskedRequest>> LintDevices::askTogether(std::size_t device,
                                                           const std::vector<Question>& questions,
                                                           std::size_t worker) {
    const auto process = processFor(device, worker, questions.front());
    if (!process) {
        return tl::unexpected(process.error());
    }
    const auto records = (*process)->askApart(questions);
    if (!records) {
        return tl::unexpected(records.error());
    }
    std::vector<AskedRequest> asked;
    asked.reserve(questions.size());
    for (std::size_t i = 0; i < questions.size(); ++i) {
        asked.push_back({.device = device,
                         .question = questions[i],
                         .kind = makers::RequestKind::part,
                         .files = filesOf((*records)[i])});
    }
    return asked;
}

Result<std::vector<AskedRequest>> LintDevices::ask(std::size_t device,
                                                   const std::vector<AskedRequest>& requests) {
    std::vector<Question> questions;
    questions.reserve(requests.size());
    for (const AskedRequest& request : requests) {
        questions.push_back(request.question);
    }
    const std::vector<std::vector<std::size_t>> batches = batchesOf(questions);
    std::vector<Result<std::vector<AskedRequest>>> answered(batches.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&](std::size_t worker) {
        for (std::size_t i = next++; i < batches.size(); i = next++) {
            answered[i] = askBatch(device, worker, requests, batches[i]);
        }
    };
    if (areMany(requests.size())) {
        const std::jthread other(work, 1);
        work(0);
    } else {
        work(0);
    }
    std::vector<AskedRequest> answers;
    answers.reserve(requests.size());
    for (Result<std::vector<AskedRequest>>& batch : answered) {
        if (!batch) {
            return batch;
        }
        std::ranges::move(*batch, std::back_inserter(answers));
    }
    return answers;
}

Result<simulator::Answer> LintDevices::askWith(std::size_t device, const Question& question,
                                               const platform::Dictionary& settings) {
    platform::Dictionary all = settings;
    all.merge(settingsOfLint());
    const desktop::DeviceRoot& root = *device_.root;
    if (auto set = setActiveThemes(root, device_.themes, all); !set) {
        return tl::unexpected(std::move(set.error()));
    }
    const auto process = startProcess(investigation(device), question, true);
    auto answer = process ? (*process)->ask(question)
                          : Result<simulator::Answer>(tl::unexpected(process.error()));
    static_cast<void>(setActiveThemes(root, device_.themes, settingsOfLint()));
    return answer;
}

}  // namespace velmoranth::cli
