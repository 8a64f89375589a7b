#include "simulator/process/launcher.h"

#include "desktop/notifications/notification_center.h"
#include "simulator/process/child_process.h"
#include "simulator/process/protocol.h"

#include <memory>
#include <string>
#include <utility>

namespace velmoranth::simulator {

desktop::Result<RenderedScreen> renderScreen(const ScreenRequest& request) {
    auto running = RunningScreen::start(request);
    if (!running) {
        return tl::unexpected(std::move(running.error()));
    }
    return (*running)->render();
}

desktop::Result<std::unique_ptr<RunningScreen>> RunningScreen::start(const ScreenRequest& request) {
    auto child = ChildProcess::start(request);
    if (!child) {
        return tl::unexpected(std::move(child.error()));
    }
    if (auto ready = (*child)->receive(MessageKind::ready, request.timeLimit); !ready) {
        return tl::unexpected(std::move(ready.error()));
    }
    return std::unique_ptr<RunningScreen>(new RunningScreen(std::move(*child), request.timeLimit));
}

RunningScreen::RunningScreen(std::unique_ptr<ChildProcess> child,
                             std::chrono::milliseconds timeLimit)
    : child_(std::move(child)), timeLimit_(timeLimit) {}

RunningScreen::~RunningScreen() = default;

desktop::Result<RenderedScreen> RunningScreen::render() {
    // A notice that came before the picture is in it.
    static_cast<void>(child_->takeNotice());
    child_->send(MessageKind::draw);
    return child_->receiveScreen(timeLimit_);
}

desktop::Result<RenderedScreen> RunningScreen::nextPicture(std::chrono::milliseconds timeout) {
    if (!child_->takeNotice()) {
        if (child_->isToStartAgain()) {
            return tl::unexpected(desktop::Problem{"the screen is to start again"});
        }
        auto notice = child_->receive(MessageKind::notice, timeout, ChildProcess::WhenLate::letBe);
        if (!notice) {
            return tl::unexpected(std::move(notice.error()));
        }
    }
    return render();
}

bool RunningScreen::showPage(int page) {
    return child_->send(MessageKind::showPage, std::to_string(page));
}

desktop::Result<void> RunningScreen::act(const ScreenAction& action) {
    child_->send(MessageKind::act, toJson(action));
    auto answer = child_->receive(MessageKind::acted, timeLimit_);
    if (!answer) {
        return tl::unexpected(std::move(answer.error()));
    }
    if (answer->payload.empty()) {
        return {};
    }
    return tl::unexpected(fromJson<desktop::Problem>(answer->payload)
                              .value_or(desktop::Problem{"the screen did not do that"}));
}

desktop::Result<Answer> RunningScreen::ask(const Question& question) {
    static_cast<void>(child_->takeRecord());
    child_->send(MessageKind::ask, toJson(question));
    return child_->receiveAnswer(timeLimit_);
}

desktop::Result<std::vector<record::Record>> RunningScreen::askApart(
    const std::vector<Question>& questions) {
    child_->send(MessageKind::askApart, toJson(questions));
    std::vector<record::Record> files;
    files.reserve(questions.size());
    while (files.size() < questions.size()) {
        const auto answer = child_->receive(MessageKind::filesAsked, timeLimit_);
        if (!answer) {
            return tl::unexpected(answer.error());
        }
        auto asked = filesFromBytes(answer->payload);
        if (!asked) {
            child_->stop();
            return tl::unexpected(desktop::Problem{"the simulated process sent what is no record"});
        }
        files.push_back(std::move(*asked));
    }
    return files;
}

record::Record RunningScreen::takeRecord() {
    return child_->takeRecord();
}

void RunningScreen::stop() {
    child_->stop();
}

bool RunningScreen::isToStartAgain() const {
    return child_->isToStartAgain();
}

int RunningScreen::processId() const {
    return child_->processId();
}

desktop::Result<int> respring(const desktop::DeviceRoot& root) {
    return desktop::postToProcesses(root, kRespringNotice);
}

bool isSimulatedProcess(int argc, char** argv) {
    return argc > 1 && argv[1] == kSimulatedProcessArgument;
}

}  // namespace velmoranth::simulator
