// The Darwin notification centre: callbacks by name, run on the main loop of the process, for posts
// of the process itself and of every other process that uses the same device root. Each centre
// listens on a socket of its own in the device's folder /private/var/run/notifications.
#pragma once

#include "desktop/files/descriptor.h"
#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "platform/core_foundation.h"

#include <sys/types.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::desktop {

// Names are 1 to 255 bytes without control characters; others are refused.
inline constexpr std::size_t kMaxNotificationNameBytes = 255;

class DesktopNotificationCenter final : public platform::DarwinNotificationCenter {
  public:
    // Opens the process's socket in the root, making the folder when it is missing.
    [[nodiscard]] static Result<std::unique_ptr<DesktopNotificationCenter>> open(
        const DeviceRoot& root);
    // Without a root: hears the posts of its own process alone.
    DesktopNotificationCenter() = default;

    ~DesktopNotificationCenter() override;

    // Every registration counts, repeated ones too.
    void addObserver(void* observer, platform::NotificationCallback callback,
                     const std::string& name, const void* object,
                     platform::SuspensionBehavior suspensionBehavior) override;

    // Posts within the process, from any thread. The callbacks run in the next deliverPending().
    // False for a name that is refused.
    bool post(const std::string& name);

    // Readable (to poll and its like) when deliverPending() has something to do. Stays the
    // centre's.
    [[nodiscard]] int descriptor() const { return poll_.get(); }

    // Runs the callbacks of what was posted since the last call, on the calling thread, which is to
    // be the main one: names in the order of their first post, observers in the order of their
    // registration. Repeated posts of a name between two calls count as one. Never waits. Returns
    // how many callbacks ran.
    int deliverPending();

    // While the process is suspended, posts are dropped, kept once a name, kept each, or delivered
    // all the same, as each observer's behaviour says; what was kept is delivered by the next
    // deliverPending() after resuming.
    void setSuspended(bool suspended);

  private:
    struct Observer {
        void* observer;
        platform::NotificationCallback callback;
        std::string name;
        const void* object;
        platform::SuspensionBehavior suspensionBehavior;
    };

    Result<void> listenIn(const DeviceRoot& root);
    [[nodiscard]] bool watch(int descriptor) const;
    // Takes what other processes have sent.
    void receive();
    void acceptConnections();
    // Appends the name unless it is already pending; the mutex is held.
    void addPending(const std::string& name);
    void wake() const;
    // The callbacks to run now; keeps or drops the others. The mutex is held.
    std::vector<Observer> takeDue();
    // Whether a post for this observer is due now, else it is kept or dropped.
    [[nodiscard]] bool isDue(const Observer& observer);

    Descriptor folder_;
    std::string socketName_;
    pid_t process_ = 0;
    Descriptor listener_;
    Descriptor event_;
    Descriptor poll_;
    std::vector<Descriptor> connections_;  // accepted, their names not there yet

    std::mutex mutex_;  // guards what follows
    std::vector<Observer> observers_;
    std::vector<std::string> pending_;
    std::vector<Observer> kept_;
    bool isSuspended_ = false;
};

// Posts to every running process of the device root, this one's centres included; how many were
// told. Sockets that processes have left behind are removed. Fails on a name that is refused.
[[nodiscard]] Result<int> postToProcesses(const DeviceRoot& root, const std::string& name);

}  // namespace velmoranth::desktop
