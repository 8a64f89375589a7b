#include "cli/lint_check.h"

#include "cli/lint_observed.h"
#include "cli/sound_events.h"
#include "simulator/screens/question_rows.h"

#include "makers/conversion/followed_links.h"
#include "makers/conversion/plan.h"
#include "makers/lint/judged_pictures.h"
#include "makers/lint/requests.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <future>
#include <iterator>
#include <map>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;
using makers::Answers;
using makers::AskedRequest;
using makers::Finding;
using makers::RequestKind;
using simulator::Question;

namespace {

namespace fs = std::filesystem;

// What a device asks for by itself that a theme's file has a fixed name for.
std::vector<AskedRequest> parts() {
    std::vector<AskedRequest> parts;
    const auto add = [&](Question question) {
        parts.push_back(
            {.device = 0, .question = std::move(question), .kind = RequestKind::part, .files = {}});
    };
    for (const simulator::QuestionRow& row : simulator::questionRows()) {
        const std::string word(row.word);
        if (row.argument.empty()) {
            add({word, "", ""});
        } else if (word == "dot") {
            for (const char* const dot : {"current", "other", "search"}) {
                add({word, dot, ""});
            }
        } else if (word == "sound") {
            for (const SoundName& sound : soundNames()) {
                if (sound.source != SoundSource::panel) {
                    add({word,
                         (sound.source == SoundSource::homeScreen ? "event:" : "") +
                             std::to_string(sound.number),
                         ""});
                }
            }
        }
    }
    return parts;
}

// The parts that are pictures of fixed names, of which one may hide another.
bool hasSeveralNames(const Question& question) {
    static constexpr std::array<std::string_view, 8> kWords{"mask",   "overlay", "shadow", "folder",
                                                            "behind", "dock",    "badge",  "dot"};
    return std::ranges::find(kWords, question.word) != kWords.end();
}

class Check {
  public:
    // `theme` has its links followed.
    Check(const makers::FoundTheme& theme, const DeviceOfRun& device, LintDevices& devices)
        : theme_(theme), device_(device), devices_(devices), parts_(parts()) {
        answers_.devices = devices_.devices();
        behind_.devices = devices_.devices();
    }

    // Every device is asked for the parts where they differ; what nothing has opened then is asked
    // for by name, of one device after the other until one opens it.
    Result<void> ask() {
        // Of these nothing depends on what the first device says, so that they need not wait.
        const std::vector<AskedRequest> parts = partsToAsk();
        std::map<std::size_t, std::future<Result<std::vector<AskedRequest>>>> ahead;
        for (std::size_t device = 1; device < LintDevices::kMostDifferent; ++device) {
            ahead[device] = std::async(
                std::launch::async, [this, &parts, device] { return devices_.ask(device, parts); });
        }
        for (std::size_t device = 0; device < answers_.devices.size(); ++device) {
            const std::vector<AskedRequest> requests = requestsOf(device, true);
            if (device >= LintDevices::kMostDifferent && requests.empty() && allIsOpened()) {
                break;
            }
            auto answered =
                ahead.contains(device) ? ahead.at(device).get() : devices_.ask(device, parts);
            if (auto done = add(std::move(answered), answers_); !done) {
                return done;
            }
            if (auto done = add(devices_.ask(device, requests), answers_); !done) {
                return done;
            }
            const std::vector<AskedRequest> unusual = requestsOf(device, false);
            if (auto done = add(devices_.ask(device, unusual), answers_); !done) {
                return done;
            }
        }
        return {};
    }

    // What parts are found when those that were found first are not there.
    Result<void> askBehind() {
        std::set<std::string> found;
        for (const AskedRequest& asked : answers_.all()) {
            const makers::FileAsked* const opened = asked.opened();
            if (asked.kind == RequestKind::part && hasSeveralNames(asked.question) &&
                opened != nullptr) {
                found.insert(opened->name);
            }
        }
        const std::string folder =
            device_.root->hostFolder() + "/Library/Themes/" + kLintedTheme + "/";
        for (const std::string& name : found) {
            std::error_code error;
            fs::remove(folder + name, error);
        }
        std::vector<AskedRequest> several;
        std::ranges::copy_if(parts_, std::back_inserter(several), [](const AskedRequest& part) {
            return hasSeveralNames(part.question);
        });
        for (std::size_t device = 0; !found.empty() && device < LintDevices::kMostDifferent;
             ++device) {
            if (auto done = add(devices_.ask(device, several), behind_); !done) {
                return done;
            }
        }
        return {};
    }

    // Before askBehind(), which takes files away.
    Result<std::vector<Finding>> observe(const makers::Plan& plan) {
        std::vector<Finding> findings = soundFindings(theme_, answers_);
        for (auto observed : {maskFindings(devices_, answers_, theme_, plan),
                              calendarFindingsOf(devices_, device_, answers_),
                              sharedNameFindings(devices_, theme_, answers_)}) {
            if (!observed) {
                return observed;
            }
            std::ranges::move(*observed, std::back_inserter(findings));
        }
        return findings;
    }

    [[nodiscard]] const Answers& answers() const { return answers_; }

    [[nodiscard]] const Answers& behind() const { return behind_; }

  private:
    static Result<void> add(Result<std::vector<AskedRequest>> asked, Answers& answers) {
        if (!asked) {
            return tl::unexpected(std::move(asked.error()));
        }
        for (AskedRequest& one : *asked) {
            answers.add(std::move(one));
        }
        return {};
    }

    [[nodiscard]] bool allIsOpened() const {
        return std::ranges::all_of(theme_.files, [&](const makers::ThemeFile& file) {
            return makers::isClutter(file.name) || answers_.isOpened(file.name);
        });
    }

    // The knob is asked for in another process, which is not worth starting without a file for it.
    [[nodiscard]] std::vector<AskedRequest> partsToAsk() const {
        const bool hasKnob = std::ranges::any_of(theme_.files, [](const makers::ThemeFile& file) {
            return file.name.starts_with("UIImages/UISwitchKnob");
        });
        std::vector<AskedRequest> some;
        std::ranges::copy_if(parts_, std::back_inserter(some), [&](const AskedRequest& part) {
            return hasKnob || part.question.word != "knob";
        });
        return some;
    }

    // By name, for files that no such request has opened yet.
    [[nodiscard]] std::vector<AskedRequest> requestsOf(std::size_t device, bool usual) const {
        std::vector<AskedRequest> requests;
        std::set<std::pair<std::string, std::string>> known;
        const auto addFor = [&](const std::string& file) {
            const bool isDone = usual ? answers_.isUsual(file) : answers_.isOpened(file);
            if (isDone || makers::isClutter(file)) {
                return;
            }
            for (makers::FileRequest& request : makers::requestsOf(file)) {
                const Question& question = request.question;
                if (request.isUsual == usual &&
                    known.emplace(question.word + question.bundle, question.argument).second) {
                    requests.push_back({.device = device,
                                        .question = std::move(request.question),
                                        .kind = usual ? RequestKind::usual : RequestKind::unusual,
                                        .files = {}});
                }
            }
        };
        for (const makers::ThemeFile& file : theme_.files) {
            addFor(file.name);
        }
        for (const makers::LeftOut& link : theme_.leftOut) {
            addFor(link.name);
        }
        return requests;
    }

    const makers::FoundTheme& theme_;
    const DeviceOfRun& device_;
    LintDevices& devices_;
    std::vector<AskedRequest> parts_;
    Answers answers_;
    Answers behind_;
};

}  // namespace

Result<std::vector<Finding>> checkTheme(const makers::FoundTheme& theme,
                                        const platform::Dictionary& calendar,
                                        LateProgress& progress) {
    const auto device = makeLintDevice();
    if (!device) {
        return tl::unexpected(device.error());
    }
    LintDevices devices(*device);
    // Beside the decoding, after which one thread has the device's work to wait for.
    std::future<void> started =
        std::async(std::launch::async, [&] { devices.startFirst(theme.files.size()); });
    const makers::JudgedPictures judged = makers::judgePictures(
        theme,
        [&progress](std::size_t done, std::size_t all) { progress.show(done, all, "picture"); });
    makers::Pictures pictures(theme.folder);
    for (const auto& [name, picture] : judged) {
        pictures.know(name, picture.facts);
    }
    const makers::SplitTheme split = makers::splitTheme(theme);
    const makers::Plan plan = makers::planTheme(split.own, pictures, calendar);
    const makers::FollowedTheme followed = makers::followLinks(theme);
    if (auto laid = layOut(*device, theme, judged); !laid) {
        return tl::unexpected(std::move(laid.error()));
    }
    started.get();
    progress.show("asking devices about " + theme.name);
    Check check(followed.theme, *device, devices);
    if (auto asked = check.ask(); !asked) {
        return tl::unexpected(std::move(asked.error()));
    }
    auto findings = check.observe(plan);
    if (!findings) {
        return findings;
    }
    if (auto asked = check.askBehind(); !asked) {
        return tl::unexpected(std::move(asked.error()));
    }
    std::ranges::move(makers::findingsIn({.theme = followed.theme,
                                          .links = followed.links,
                                          .nested = split.nested,
                                          .pictures = judged,
                                          .plan = plan,
                                          .answers = check.answers(),
                                          .answersBehind = check.behind()}),
                      std::back_inserter(*findings));
    makers::markConverted(*findings, plan);
    makers::sortFindings(*findings);
    return findings;
}

}  // namespace velmoranth::cli
