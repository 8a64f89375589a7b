// A process of a simulated device: the platform record of this process over a device root, the
// classes that such a process has, the engine when wanted, and a screen. One a process; it lives
// until the process ends.
#pragma once

#include "desktop/result/result.h"
#include "simulator/home_screen/home_screen.h"
#include "simulator/process/launcher.h"
#include "simulator/screen.h"
#include "simulator/screen_context.h"

#include "record/recorder.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace velmoranth::simulator {

class SimulatedProcess {
  public:
    // Where log lines go, one call a line; may be called from any thread.
    using LogLine = std::function<void(const std::string& line)>;

    // Sets the platform record, registers the classes, loads the engine and builds the screen.
    // Fails when the device's folder or the engine's library cannot be used.
    // A listener hears of what the process does, from before the engine is there; null for none.
    [[nodiscard]] static desktop::Result<std::unique_ptr<SimulatedProcess>> start(
        const ScreenRequest& request, LogLine logLine, record::RecordListener* listener = nullptr);

    ~SimulatedProcess();
    SimulatedProcess(const SimulatedProcess&) = delete;
    SimulatedProcess& operator=(const SimulatedProcess&) = delete;

    // Only where there is one.
    [[nodiscard]] Screen& screen();
    [[nodiscard]] bool hasScreen() const;
    // The screen when it is the home screen, with an open folder or a pressed icon or without; null
    // for another.
    [[nodiscard]] HomeScreen* homeScreen();
    [[nodiscard]] desktop::Runtime& runtime();
    [[nodiscard]] const ScreenContext& context() const;

    // Takes the process off the device, before it ends without taking its objects down.
    void leaveDevice() const;

    // Becomes readable when notifications wait; -1 when there is none to come.
    [[nodiscard]] int notificationDescriptor() const;
    // Runs the callbacks of the notifications that wait. Whether there were any.
    bool deliverNotifications();
    // Whether one of them told the screen to start again since the last call of this.
    [[nodiscard]] bool takeRespring();

  private:
    struct State;
    explicit SimulatedProcess(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

// The largest memory that this process has had resident so far, in bytes; 0 when the machine does
// not say.
[[nodiscard]] std::size_t peakMemoryBytes();

}  // namespace velmoranth::simulator
