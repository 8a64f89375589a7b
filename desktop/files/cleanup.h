// What has to go when the process ends, however it ends: temporary folders and half-written files
// are removed and processes that this one started are ended, also on SIGINT, SIGTERM and SIGHUP.
#pragma once

#include "desktop/result/result.h"

#include <signal.h>

#include <functional>
#include <memory>
#include <string>

namespace velmoranth::desktop {

// Begins to watch for the signals, in a thread of its own; call it before other threads are
// started. After cleaning up the process ends by the signal itself, so that a shell sees it. Where
// no thread can be started the signals end the process as they are, without cleaning up. A write to
// a reader that has gone, or beyond the largest file allowed, fails from here on and is no signal.
void cleanUpOnSignals();

// Holds those signals back until it goes, for what has to be whole; while several are there, until
// the last goes. A file that may not grow so
// large is an error like others from then on.
class SignalsHeld {
  public:
    SignalsHeld();
    ~SignalsHeld();
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

  private:
    sigset_t before_{};
};

// Something to remove, a file or a folder with all it holds; removed when this object goes or a
// signal comes. Links are removed, never followed.
class RemovedAtEnd {
  public:
    explicit RemovedAtEnd(std::string path);
    ~RemovedAtEnd();
    RemovedAtEnd(const RemovedAtEnd&) = delete;
    RemovedAtEnd& operator=(const RemovedAtEnd&) = delete;

    // Leaves it where it is.
    void keep();

    [[nodiscard]] const std::string& path() const { return path_; }

  private:
    std::string path_;
};

// Something to do when a signal has come, once the processes that this one started have ended: in a
// process of its own, before the rest is removed. Nothing is done when this object goes.
class DoneOnSignal {
  public:
    explicit DoneOnSignal(std::function<void()> work);
    ~DoneOnSignal();
    DoneOnSignal(const DoneOnSignal&) = delete;
    DoneOnSignal& operator=(const DoneOnSignal&) = delete;

  private:
    std::function<void()> work_;
};

// A folder that was made for what is to come into it; removed when this object goes or a signal
// comes, if nothing is in it then.
class RemovedIfEmpty {
  public:
    explicit RemovedIfEmpty(std::string folder);
    ~RemovedIfEmpty();
    RemovedIfEmpty(const RemovedIfEmpty&) = delete;
    RemovedIfEmpty& operator=(const RemovedIfEmpty&) = delete;

  private:
    std::string folder_;
};

// A new folder that the user alone may enter, where temporary ones are kept.
[[nodiscard]] Result<std::unique_ptr<RemovedAtEnd>> makeTemporaryFolder();

// The same in this folder, "" is the one that the process is in, under a name that nobody looks
// for.
[[nodiscard]] Result<std::unique_ptr<RemovedAtEnd>> makeTemporaryFolderIn(const std::string& place);

}  // namespace velmoranth::desktop
