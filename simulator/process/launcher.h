// Starts a screen of a simulated device in a process of its own and brings back what it shows. The
// process is this very program, started again with a hidden first argument; so a program that uses
// the launcher begins its main with
//     if (isSimulatedProcess(argc, argv)) { return simulatedProcessMain(argc, argv); }
// and links with its symbols exported (ENABLE_EXPORTS), since the engine's library takes the
// platform from the program that loads it.
//
// Whatever happens in that process (a crash, a hang, a message that is no message) comes back as
// one Problem. Nothing of a process outlives the object or the call that started it.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "platform/core_graphics.h"
#include "simulator/device.h"
#include "simulator/home_screen/installed_apps.h"
#include "simulator/picture.h"
#include "simulator/screen_kinds.h"
#include "simulator/screens/question_rows.h"

#include "record/entry.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace velmoranth::simulator {

class ChildProcess;

struct ScreenRequest {
    DeviceConfiguration device;
    // The device's file system; its folders must exist.
    desktop::DeviceFiles deviceFiles;
    // Off: the stock screen, nothing replaced.
    bool loadEngine = true;
    // The engine's shared library; empty looks for VelMoranth.so where this program is, then in
    // ../../lib/velmoranth beside it.
    std::string enginePath = {};
    int page = 1;  // of a screen that has pages, from 1; past the last one shows the last
    ScreenKind screen = ScreenKind::home;
    // The identifier of the folder or the icon of that screen, which turns to the page where it
    // lies. "" takes one of the page asked for: its first folder, an app in its middle.
    std::string item = {};
    int folderPage = 1;  // of the folder, as `page`
    // Where log lines go as they come, besides into the result: "" nowhere, "-" this program's
    // standard error, otherwise a file of this machine, which is appended to.
    std::string logDestination = {};
    // For starting, and again for each picture asked for.
    std::chrono::milliseconds timeLimit{30000};
    // Whether the process takes down what it does (record/).
    bool isRecorded = false;
    // A picture of this machine behind the home screen; "" for the drawn wallpaper.
    std::string wallpaperFile = {};
    // What the home screen shows, and the screen of icons; none for what a fresh device has.
    std::vector<NamedApp> apps = {};
    // The process shows no screen: it is one of this kind, and answers questions.
    std::optional<ProcessKind> withoutScreen = {};
};

struct RenderedScreen {
    Picture picture;
    std::vector<ShownIcon> icons;  // the page's row by row, then the dock's
    int page = 1;
    int pageCount = 1;
    std::optional<ShownFolder> folder;  // when one is open or on its way
    // Every line the process has logged since the previous picture, in order.
    std::vector<std::string> log;
    std::size_t peakMemoryBytes = 0;  // of the process so far (its largest resident set)
    // What the process has done since the previous picture; empty unless it is recorded.
    record::Record record;
};

// What came back for a question.
struct Answer {
    std::optional<Picture> picture;  // nothing for nil, and for an image without pixels
    record::Record record;           // of this question alone; empty unless it is recorded
};

// What a person does at the screen, and what time does.
struct OpenFolderAction {
    std::string folder;  // identifier; as ScreenRequest::item

    friend bool operator==(const OpenFolderAction&, const OpenFolderAction&) = default;
};

struct TurnFolderPageAction {
    int page = 1;

    friend bool operator==(const TurnFolderPageAction&, const TurnFolderPageAction&) = default;
};

struct PressIconAction {
    std::string icon;  // identifier; as ScreenRequest::item

    friend bool operator==(const PressIconAction&, const PressIconAction&) = default;
};

struct TapAction {
    platform::Point point;  // of the screen

    friend bool operator==(const TapAction&, const TapAction&) = default;
};

// Moves what is animated; the time of a screen stands still otherwise.
struct AdvanceAction {
    double seconds = 0;

    friend bool operator==(const AdvanceAction&, const AdvanceAction&) = default;
};

using ScreenAction =
    std::variant<OpenFolderAction, TurnFolderPageAction, PressIconAction, TapAction, AdvanceAction>;

// One screen, drawn by a process that then ends.
[[nodiscard]] desktop::Result<RenderedScreen> renderScreen(const ScreenRequest& request);

// A screen that stays: it hears the device's notifications and can be drawn again.
class RunningScreen {
  public:
    [[nodiscard]] static desktop::Result<std::unique_ptr<RunningScreen>> start(
        const ScreenRequest& request);

    // Ends the process as stop() does.
    ~RunningScreen();
    RunningScreen(const RunningScreen&) = delete;
    RunningScreen& operator=(const RunningScreen&) = delete;

    // Lays out and draws as things are now.
    [[nodiscard]] desktop::Result<RenderedScreen> render();

    // Waits until a notification has been delivered since the last picture (at once when one has),
    // then draws. A problem when none came in time, or when the screen is to start again; it goes
    // on and may be asked again.
    [[nodiscard]] desktop::Result<RenderedScreen> nextPicture(std::chrono::milliseconds timeout);

    // Shows another page from the next picture on. False when the process is gone.
    bool showPage(int page);

    // Does that now; the next picture shows it. A problem when there is no such folder or icon, or
    // none is open; the screen goes on.
    [[nodiscard]] desktop::Result<void> act(const ScreenAction& action);

    // Sends the message behind the question. A problem when the system has no such message; the
    // process goes on.
    [[nodiscard]] desktop::Result<Answer> ask(const Question& question);

    // Sends the messages behind the questions, in order, in a copy of the process that ends with
    // the last of them: whatever they leave behind is gone with it, so that no later call finds
    // anything kept. What each has asked of files, the entries of found, missing and unreadable
    // ones alone; nothing for a message that the system does not have, or in a process that is not
    // recorded. A problem when the copy does not come to its end.
    [[nodiscard]] desktop::Result<std::vector<record::Record>> askApart(
        const std::vector<Question>& questions);

    // What the process has done since it started, the last picture or the last question; after it
    // has ended too.
    [[nodiscard]] record::Record takeRecord();

    // Asks the process to end, and ends it when it does not. Calling it again does nothing.
    void stop();

    // Whether the device's screens have been told to start again since this one started. It goes
    // on as it is: who follows it starts another in its place.
    [[nodiscard]] bool isToStartAgain() const;

    // The process, 0 when it has ended.
    [[nodiscard]] int processId() const;

  private:
    RunningScreen(std::unique_ptr<ChildProcess> child, std::chrono::milliseconds timeLimit);

    std::unique_ptr<ChildProcess> child_;
    std::chrono::milliseconds timeLimit_;
};

// Tells the running screens of the device to start again. How many were told.
[[nodiscard]] desktop::Result<int> respring(const desktop::DeviceRoot& root);

// Whether this program was started by the launcher.
[[nodiscard]] bool isSimulatedProcess(int argc, char** argv);

// What the program does then; the value is main's.
int simulatedProcessMain(int argc, char** argv);

}  // namespace velmoranth::simulator
