// velmoranth device init
#include "cli/commands.h"
#include "cli/device_layout.h"
#include "cli/messages.h"
#include "desktop/files/create_device_root.h"

#include <pthread.h>
#include <signal.h>

#include <array>

namespace velmoranth::cli {
namespace {

// A device is there whole or not at all: signals that would end the command wait until this goes,
// and a file that may not grow is an error like others.
class Uninterrupted {
  public:
    Uninterrupted() {
        struct sigaction ignore{};
        ignore.sa_handler = SIG_IGN;
        sigaction(SIGXFSZ, &ignore, nullptr);
        sigset_t held;
        sigemptyset(&held);
        for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
            sigaddset(&held, number);
        }
        pthread_sigmask(SIG_BLOCK, &held, &before_);
    }

    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;

    ~Uninterrupted() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  private:
    sigset_t before_{};
};

ExitCode runDeviceInit(const Arguments& arguments) {
    const std::string& folder = arguments.positionals().front();
    const auto files = findInstalledFiles();
    if (!files) {
        return fail(ExitCode::badInput, files.error());
    }
    const auto root = [&] {
        const Uninterrupted whole;
        return desktop::createDeviceRoot(folder, *files);
    }();
    if (!root) {
        return fail(ExitCode::badInput, root.error());
    }
    print(shown(folder) + ": a fresh device\n");
    return ExitCode::done;
}

constexpr std::array<std::string_view, 3> kExamples{
    "velmoranth device init mydevice",
    "cp -r MyTheme.theme mydevice/Library/Themes/",
    "velmoranth preview --root mydevice --follow",
};

}  // namespace

Command deviceInitCommand() {
    return {.name = "device init",
            .summary = "Lay out the file system of a fresh device in a folder, for --root.",
            .positionalNames = "DIR",
            .description =
                "DIR is made when it is missing and must be empty otherwise. The device gets "
                "the factory preferences, the\ncalendar's settings and the settings "
                "panel's sounds.",
            .options = {},
            .examples = kExamples,
            .leastPositionals = 1,
            .mostPositionals = 1,
            .run = runDeviceInit};
}

}  // namespace velmoranth::cli
