// The other end of the launcher: one simulated process that does what its launcher asks.

#include "desktop/imaging/bitmap_image.h"
#include "simulator/process/launcher.h"
#include "simulator/process/process.h"
#include "simulator/process/protocol.h"
#include "simulator/process/unsent_record.h"
#include "simulator/screens/questions.h"

#include <malloc.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace velmoranth::simulator {
namespace {

constexpr int kSocket = kSimulatedProcessDescriptor;
constexpr int kExitWrongUse = 2;

// Set before the process serves, by its only writer.
const SimulatedProcess* running = nullptr;

// The engine's own state and the platform's services are taken down by nobody: the process ends as
// one on the device does.
[[noreturn]] void end(int status) {
    if (running != nullptr) {
        running->leaveDevice();
    }
    std::fflush(nullptr);
    _exit(status);
}

// Every message of the process goes through here, since log lines may come from any thread. A
// launcher that is gone ends the process.
class Launcher {
  public:
    void send(MessageKind kind, std::string_view payload = {}) {
        const std::scoped_lock lock(mutex_);
        sendNoted();
        sendNow(kind, payload);
    }

    void send(MessageKind kind, std::span<const std::span<const std::uint8_t>> parts) {
        const std::scoped_lock lock(mutex_);
        sendNoted();
        if (!sendMessage(kSocket, kind, parts)) {
            end(0);
        }
    }

    // Where notes lie until they are sent: with the next message, or when they are many.
    void keepNotesIn(UnsentRecord unsent) { unsent_ = std::move(unsent); }

    void note(const std::string& note) {
        const std::scoped_lock lock(mutex_);
        if (unsent_->add(note)) {
            return;
        }
        sendNoted();
        if (!unsent_->add(note)) {
            sendNow(MessageKind::recorded, unsent_->alone(note));
        }
    }

    // Log lines stay here from now on.
    void keepQuiet() { isQuiet_ = true; }

    void log(const std::string& line) {
        if (!isQuiet_) {
            send(MessageKind::log, line);
        }
    }

    [[noreturn]] void fail(const desktop::Problem& problem) {
        send(MessageKind::problem, toJson(problem));
        end(1);
    }

  private:
    void sendNow(MessageKind kind, std::string_view payload) {
        if (!sendMessage(kSocket, kind, payload)) {
            end(0);
        }
    }

    void sendNoted() {
        if (unsent_ && !unsent_->isEmpty()) {
            sendNow(MessageKind::recorded, unsent_->bytes());
            unsent_->clear();
        }
    }

    std::mutex mutex_;
    std::optional<UnsentRecord> unsent_;
    bool isQuiet_ = false;
};

class RecordToLauncher final : public record::RecordListener {
  public:
    explicit RecordToLauncher(Launcher& launcher) : launcher_(launcher) {}

    void added(const record::Entry& entry) override {
        if (keepsFiles_) {
            keep(entry);
            return;
        }
        launcher_.note(noteOf(entry));
    }

    void answered(std::size_t place, const std::string& answer) override {
        if (!keepsFiles_) {
            launcher_.note(noteOf(place, answer));
        }
    }

    // From now on entries about files are kept, and no others.
    void keepFiles() { keepsFiles_ = true; }

    // Those since the last time.
    [[nodiscard]] record::Record takeFiles() { return std::exchange(files_, {}); }

  private:
    void keep(const record::Entry& entry) {
        if (entry.kind == record::EntryKind::found || entry.kind == record::EntryKind::missing ||
            entry.kind == record::EntryKind::unreadable) {
            files_.push_back(entry);
        }
    }

    Launcher& launcher_;
    bool keepsFiles_ = false;
    record::Record files_;
};

void sendPixels(Launcher& launcher, const desktop::PixelView& pixels) {
    std::vector<std::span<const std::uint8_t>> rows;
    if (pixels.bytesPerRow == pixels.width * 4) {
        rows.emplace_back(pixels.data, pixels.height * pixels.bytesPerRow);
        launcher.send(MessageKind::pixels, rows);
        return;
    }
    rows.reserve(pixels.height);
    for (std::size_t y = 0; y < pixels.height; ++y) {
        rows.emplace_back(pixels.row(y), pixels.width * 4);
    }
    launcher.send(MessageKind::pixels, rows);
}

void sendAnswer(Launcher& launcher, SimulatedProcess& process, const Question& question) {
    const auto image = ask(question, process.context());
    if (!image) {
        launcher.send(MessageKind::answer, toJson(image.error()));
        return;
    }
    const auto bitmap = desktop::DesktopBitmapImage::of(platform::bitmapOf(*image));
    const desktop::PixelView pixels = bitmap == nullptr ? desktop::PixelView{} : bitmap->pixels();
    if (pixels.empty()) {
        launcher.send(MessageKind::answer, toJson(ScreenHeader{}));
        return;
    }
    launcher.send(MessageKind::answer,
                  toJson(ScreenHeader{
                      .width = pixels.width, .height = pixels.height, .scale = (*image)->scale()}));
    sendPixels(launcher, pixels);
}

// In a copy of this process, which has one thread, and sends what this one has noted before. What
// goes wrong in it ends this one as well.
void answerApart(Launcher& launcher, SimulatedProcess& process, RecordToLauncher& listener,
                 const std::vector<Question>& questions) {
    const pid_t copy = fork();
    if (copy < 0) {
        launcher.fail({"the process cannot be copied"});
    }
    if (copy == 0) {
        launcher.keepQuiet();
        listener.keepFiles();
        for (const Question& question : questions) {
            static_cast<void>(ask(question, process.context()));
            launcher.send(MessageKind::filesAsked, filesToBytes(listener.takeFiles()));
        }
        end(0);
    }
    int status = 0;
    while (waitpid(copy, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        launcher.fail({"a copy of the process ended early"});
    }
}

void sendScreen(Launcher& launcher, SimulatedProcess& process, double scale) {
    if (!process.hasScreen()) {
        launcher.fail({"the process has no screen"});
    }
    Screen& screen = process.screen();
    screen.layoutViews();
    const auto drawn = screen.draw();
    const desktop::PixelView pixels = drawn == nullptr ? desktop::PixelView{} : drawn->pixels();
    if (pixels.empty()) {
        launcher.fail({"the screen is too large to draw"});
    }
    const ScreenHeader header{.width = pixels.width,
                              .height = pixels.height,
                              .scale = scale,
                              .icons = screen.shownIcons(),
                              .folder = screen.shownFolder(),
                              .page = screen.page(),
                              .pageCount = screen.pageCount(),
                              .peakMemoryBytes = peakMemoryBytes()};
    launcher.send(MessageKind::screen, toJson(header));
    sendPixels(launcher, pixels);
}

// What is done at any screen, and what at the home screen alone.
struct Performer {
    desktop::Result<void> operator()(const OpenFolderAction& action) const {
        return home == nullptr ? noHomeScreen() : home->openFolder(action.folder, Animated::yes);
    }

    desktop::Result<void> operator()(const TurnFolderPageAction& action) const {
        const auto folder = home == nullptr ? nullptr : home->folder();
        if (folder == nullptr) {
            return tl::unexpected(desktop::Problem{"no folder is open"});
        }
        folder->view()->showPage(action.page);
        return {};
    }

    desktop::Result<void> operator()(const PressIconAction& action) const {
        return home == nullptr ? noHomeScreen() : home->pressIcon(action.icon);
    }

    desktop::Result<void> operator()(const TapAction& action) const {
        screen.tap(action.point);
        return {};
    }

    desktop::Result<void> operator()(const AdvanceAction& action) const {
        screen.advance(action.seconds);
        return {};
    }

    static desktop::Result<void> noHomeScreen() {
        return tl::unexpected(desktop::Problem{"this screen has no icons and folders"});
    }

    Screen& screen;
    HomeScreen* home;
};

// Views are laid out before a finger reaches them, as they are on the device.
desktop::Result<void> perform(const ScreenAction& action, SimulatedProcess& process) {
    if (!process.hasScreen()) {
        return Performer::noHomeScreen();
    }
    process.screen().layoutViews();
    return std::visit(Performer{process.screen(), process.homeScreen()}, action);
}

// Waits until the launcher has said something; notifications are delivered meanwhile.
void waitForLauncher(Launcher& launcher, SimulatedProcess& process) {
    while (true) {
        std::array entries{
            pollfd{.fd = kSocket, .events = POLLIN, .revents = 0},
            pollfd{.fd = process.notificationDescriptor(), .events = POLLIN, .revents = 0}};
        if (poll(entries.data(), entries.size(), -1) < 0 && errno != EINTR) {
            end(1);
        }
        if (entries[1].revents != 0 && process.deliverNotifications()) {
            launcher.send(process.takeRespring() ? MessageKind::respring : MessageKind::notice);
        }
        if (entries[0].revents != 0) {
            return;
        }
    }
}

[[noreturn]] void serve(Launcher& launcher, SimulatedProcess& process, RecordToLauncher& listener,
                        double scale) {
    while (true) {
        waitForLauncher(launcher, process);
        Message message;
        if (receiveMessage(kSocket, message) != Received::message) {
            end(0);
        }
        if (message.kind == MessageKind::draw) {
            sendScreen(launcher, process, scale);
        } else if (message.kind == MessageKind::ask) {
            sendAnswer(launcher, process, fromJson<Question>(message.payload).value_or(Question()));
        } else if (message.kind == MessageKind::askApart) {
            answerApart(
                launcher, process, listener,
                fromJson<std::vector<Question>>(message.payload).value_or(std::vector<Question>()));
        } else if (message.kind == MessageKind::showPage && process.hasScreen()) {
            int page = 1;
            std::from_chars(message.payload.data(), message.payload.data() + message.payload.size(),
                            page);
            process.screen().showPage(page);
        } else if (message.kind == MessageKind::act) {
            const std::optional<ScreenAction> action = fromJson<ScreenAction>(message.payload);
            const desktop::Result<void> done =
                action ? perform(*action, process)
                       : tl::unexpected(desktop::Problem{"the action cannot be read"});
            launcher.send(MessageKind::acted, done ? std::string() : toJson(done.error()));
        } else if (message.kind == MessageKind::stop) {
            end(0);
        }
    }
}

// Pictures of a megabyte come and go; what the system gives and takes back each time costs several
// times their drawing.
void keepFreedMemory() {
    constexpr int kLargestOnHeap = 32 * 1024 * 1024;
    constexpr int kMostKept = 64 * 1024 * 1024;
    mallopt(M_MMAP_THRESHOLD, kLargestOnHeap);
    mallopt(M_TRIM_THRESHOLD, kMostKept);
}

bool hasSocket() {
    int type = 0;
    socklen_t size = sizeof type;
    return getsockopt(kSocket, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_STREAM;
}

}  // namespace

int simulatedProcessMain(int argc, char** argv) {
    static_cast<void>(argc);
    static_cast<void>(argv);
    Message message;
    if (!hasSocket() || receiveMessage(kSocket, message) != Received::message ||
        message.kind != MessageKind::request) {
        std::fputs("a simulated process is started by its launcher only\n", stderr);
        return kExitWrongUse;
    }
    keepFreedMemory();
    Launcher launcher;
    const std::optional<ScreenRequest> request = fromJson<ScreenRequest>(message.payload);
    if (!request) {
        launcher.fail({"the request for a simulated process cannot be read"});
    }
    if (request->isRecorded) {
        auto unsent = UnsentRecord::open(kUnsentRecordDescriptor);
        if (!unsent) {
            launcher.fail(unsent.error());
        }
        launcher.keepNotesIn(std::move(*unsent));
    }
    RecordToLauncher listener(launcher);
    auto process = SimulatedProcess::start(
        *request, [&launcher](const std::string& line) { launcher.log(line); },
        request->isRecorded ? &listener : nullptr);
    if (!process) {
        launcher.fail(process.error());
    }
    running = process->get();
    launcher.send(MessageKind::ready);
    serve(launcher, **process, listener, request->device.screen.scale);
}

}  // namespace velmoranth::simulator
