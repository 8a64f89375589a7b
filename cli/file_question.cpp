#include "cli/file_question.h"

#include "cli/messages.h"
#include "cli/nearest.h"
#include "cli/sound_events.h"
#include "simulator/process/launcher.h"
#include "simulator/screens/question_rows.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;
using simulator::Question;
using simulator::RunningScreen;

namespace {

namespace fs = std::filesystem;

// A name as a request may have it: whole, and without what a file adds to it.
std::set<std::string> namesMeant(const std::string& file) {
    static constexpr std::array<std::string_view, 6> kEndings{"@2x",   "@3x",    "~iphone",
                                                              "~ipad", "-large", "-small"};
    std::set<std::string> names{file};
    std::string text = file.substr(0, file.rfind('.'));
    names.insert(text);
    for (bool changed = true; changed;) {
        changed = false;
        for (const std::string_view ending : kEndings) {
            if (text.size() > ending.size() && text.ends_with(ending)) {
                text.resize(text.size() - ending.size());
                names.insert(text);
                names.insert(text + fs::path(file).extension().string());
                changed = true;
            }
        }
    }
    return names;
}

// Every request that a file of that name could be meant for.
std::vector<Question> questionsFor(const std::string& name) {
    const fs::path path(name);
    const std::set<std::string> names = namesMeant(path.filename().string());
    // Folders are named for bundles.
    std::set<std::string> bundles{""};
    for (const fs::path& part : path.parent_path()) {
        bundles.insert(part.string());
    }
    std::vector<Question> questions;
    for (const simulator::QuestionRow& row : simulator::questionRows()) {
        const std::string word(row.word);
        if (row.argument.empty()) {
            questions.push_back({word, "", ""});
        } else if (word == "dot") {
            for (const char* const dot : {"current", "other", "search"}) {
                questions.push_back({word, dot, ""});
            }
        } else if (word == "sound") {
            for (const SoundName& sound : soundNames()) {
                if (sound.source != SoundSource::panel) {
                    questions.push_back({word,
                                         (sound.source == SoundSource::homeScreen ? "event:" : "") +
                                             std::to_string(sound.number),
                                         ""});
                }
            }
        } else {
            for (const std::string& meant : names) {
                questions.push_back({word, meant, ""});
                if (word == "image") {
                    for (const std::string& bundle : bundles) {
                        questions.push_back({word, meant, bundle});
                    }
                }
            }
        }
    }
    return questions;
}

struct Asked {
    std::vector<Opening> openings;
    std::string problem;
    std::set<std::string> names;  // in the theme, that were looked for
};

// All of these in a process each of one device; what a process keeps does not matter, as a file
// that it opens is noted the first time.
Result<void> askDevice(const Investigation& investigation, const std::string& device, int system,
                       const std::vector<Question>& questions, const FileExplanation& file,
                       Asked& asked) {
    auto configuration = simulator::deviceConfiguration(device, system);
    if (!configuration) {
        return tl::unexpected(std::move(configuration.error()));
    }
    std::map<simulator::ProcessKind, std::unique_ptr<RunningScreen>> processes;
    for (const Question& question : questions) {
        const simulator::QuestionRow& row = *simulator::questionRowNamed(question.word);
        if (system < row.firstSystem) {
            continue;
        }
        std::unique_ptr<RunningScreen>& process = processes[row.process];
        if (process == nullptr) {
            simulator::ScreenRequest request;
            request.device = *configuration;
            request.deviceFiles = investigation.device.root->files();
            request.isRecorded = true;
            request.withoutScreen = row.process;
            auto started = RunningScreen::start(request);
            if (!started) {
                return tl::unexpected(std::move(started.error()));
            }
            process = std::move(*started);
        }
        const auto answer = process->ask(question);
        if (!answer) {
            return tl::unexpected(answer.error());
        }
        for (const AskedFile& one : askedFiles(answer->record)) {
            if (one.theme != file.theme) {
                continue;
            }
            asked.names.insert(one.name);
            if (one.name == file.name && one.state != record::EntryKind::missing) {
                asked.openings.push_back({question, device, system});
                if (one.state == record::EntryKind::unreadable) {
                    asked.problem = one.reason;
                }
            }
        }
    }
    return {};
}

bool isFile(const desktop::DeviceRoot& root, const std::string& path) {
    const desktop::Descriptor item(root.openFile(path, O_PATH | O_NOFOLLOW));
    struct stat status{};
    return item.isOpen() && ::fstat(item.get(), &status) == 0 && S_ISREG(status.st_mode);
}

// The theme and the name in it that a path means.
Result<FileExplanation> fileMeant(const Investigation& investigation, const std::string& path) {
    std::string plain = fs::path(path).lexically_normal().generic_string();
    for (const std::string& theme : investigation.device.themes) {
        std::vector<std::string> names{plain};
        for (std::size_t at = plain.find(theme + "/"); at != std::string::npos;
             at = plain.find(theme + "/", at + 1)) {
            if (at == 0 || plain[at - 1] == '/') {
                names.push_back(plain.substr(at + theme.size() + 1));
            }
        }
        for (const std::string& name : names) {
            if (!name.starts_with('/') && !name.starts_with("..") &&
                isFile(*investigation.device.root, fs::path("/Library/Themes") / theme / name)) {
                return FileExplanation{
                    .theme = theme, .name = name, .openings = {}, .problem = {}, .wanted = {}};
            }
        }
    }
    return tl::unexpected(
        Problem{"no theme has this file; give its path in the theme's folder", path});
}

std::string requestOf(const Opening& opening) {
    return opening.question.word +
           (opening.question.argument.empty() ? "" : " " + shown(opening.question.argument)) +
           (opening.question.bundle.empty() ? "" : " of " + shown(opening.question.bundle));
}

}  // namespace

Result<FileExplanation> explainFile(const Investigation& investigation, const std::string& path) {
    auto file = fileMeant(investigation, path);
    if (!file) {
        return file;
    }
    const std::vector<Question> questions = questionsFor(file->name);
    Asked asked;
    ProgressLine progress;
    for (const int system : {12, 13}) {
        for (const char* const device : {"phone", "phone-667", "pad"}) {
            progress.show(fmt::format("{} with iOS {}", device, system));
            if (auto done = askDevice(investigation, device, system, questions, *file, asked);
                !done) {
                return tl::unexpected(std::move(done.error()));
            }
        }
    }
    file->openings = std::move(asked.openings);
    file->problem = std::move(asked.problem);
    if (file->openings.empty()) {
        constexpr std::size_t kMostNames = 3;
        file->wanted.assign(asked.names.begin(), asked.names.end());
        std::ranges::stable_sort(file->wanted, {}, [&](const std::string& name) {
            return editDistance(name, file->name);
        });
        file->wanted.resize(std::min(file->wanted.size(), kMostNames));
    }
    return file;
}

std::string textOf(const FileExplanation& explanation) {
    const std::string name = shown(explanation.theme + "/" + explanation.name);
    std::string text;
    // A request once, with the devices that send it.
    std::vector<std::pair<std::string, std::string>> requests;
    for (const Opening& opening : explanation.openings) {
        const std::string request = requestOf(opening);
        const std::string device = fmt::format("{} iOS {}", opening.device, opening.system);
        const auto known =
            std::ranges::find(requests, request, &std::pair<std::string, std::string>::first);
        if (known == requests.end()) {
            requests.emplace_back(request, device);
        } else if (known->second.find(device) == std::string::npos) {
            known->second += ", " + device;
        }
    }
    for (const auto& [request, devices] : requests) {
        text += fmt::format("{:<10} {} ({})\n", text.empty() ? "opened by" : "", request, devices);
    }
    if (requests.empty()) {
        return fmt::format(
            "{} is opened by no request{}.\n", name,
            explanation.wanted.empty()
                ? ""
                : "; the nearest name that one looks for is " + shown(explanation.wanted.front()));
    }
    return text + (explanation.problem.empty()
                       ? fmt::format("{} is opened by {}.\n", name, requests.front().first)
                       : fmt::format("{} is opened and gives nothing: {}.\n", name,
                                     shown(explanation.problem)));
}

std::string jsonOf(const FileExplanation& explanation) {
    using Json = nlohmann::ordered_json;
    Json json{{"version", 1},
              {"theme", explanation.theme},
              {"file", explanation.name},
              {"openedBy", Json::array()},
              {"problem", explanation.problem},
              {"wanted", explanation.wanted}};
    for (const Opening& opening : explanation.openings) {
        json["openedBy"].push_back({{"request", opening.question.word},
                                    {"argument", opening.question.argument},
                                    {"bundle", opening.question.bundle},
                                    {"device", opening.device},
                                    {"ios", opening.system}});
    }
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace velmoranth::cli
