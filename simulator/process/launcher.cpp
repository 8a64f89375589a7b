#include "simulator/process/launcher.h"

#include "simulator/process/child_process.h"
#include "simulator/process/protocol.h"

#include <memory>
#include <string>
#include <utility>

namespace velmoranth::simulator {

struct RunningScreen::State {
    std::unique_ptr<ChildProcess> child;
    std::chrono::milliseconds timeLimit;
};

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
    return std::unique_ptr<RunningScreen>(
        new RunningScreen(std::make_unique<State>(State{std::move(*child), request.timeLimit})));
}

RunningScreen::RunningScreen(std::unique_ptr<State> state) : state_(std::move(state)) {}

RunningScreen::~RunningScreen() = default;

desktop::Result<RenderedScreen> RunningScreen::render() {
    // A notice that came before the picture is in it.
    static_cast<void>(state_->child->takeNotice());
    state_->child->send(MessageKind::draw);
    return state_->child->receiveScreen(state_->timeLimit);
}

desktop::Result<RenderedScreen> RunningScreen::nextPicture(std::chrono::milliseconds timeout) {
    if (!state_->child->takeNotice()) {
        auto notice =
            state_->child->receive(MessageKind::notice, timeout, ChildProcess::WhenLate::letBe);
        if (!notice) {
            return tl::unexpected(std::move(notice.error()));
        }
    }
    return render();
}

bool RunningScreen::showPage(int page) {
    return state_->child->send(MessageKind::showPage, std::to_string(page));
}

desktop::Result<void> RunningScreen::act(const ScreenAction& action) {
    state_->child->send(MessageKind::act, toJson(action));
    auto answer = state_->child->receive(MessageKind::acted, state_->timeLimit);
    if (!answer) {
        return tl::unexpected(std::move(answer.error()));
    }
    if (answer->payload.empty()) {
        return {};
    }
    return tl::unexpected(fromJson<desktop::Problem>(answer->payload)
                              .value_or(desktop::Problem{"the screen did not do that"}));
}

void RunningScreen::stop() {
    state_->child->stop();
}

int RunningScreen::processId() const {
    return state_->child->processId();
}

bool isSimulatedProcess(int argc, char** argv) {
    return argc > 1 && argv[1] == kSimulatedProcessArgument;
}

}  // namespace velmoranth::simulator
