// The Darwin notification centre: callbacks by name, run on the main loop of the process, for posts
// to all processes that use the same device root. Each centre listens on a socket of its own in the
// device's folder /private/var/run/notifications.
#pragma once

#include "desktop/files/descriptor.h"
#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "platform/core_foundation.h"

#include <sys/types.h>

#include <cstddef>
#include <memory>
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
    // Without a root: hears nobody.
    DesktopNotificationCenter() = default;

    ~DesktopNotificationCenter() override;

    // Takes the process's socket off the device: nobody can reach it from now on. For a process
    // that ends without taking its objects down; any thread may.
    void leave() const;

    // Every registration counts, repeated ones too. No process of a device is ever suspended.
    void addObserver(void* observer, platform::NotificationCallback callback,
                     const std::string& name, const void* object,
                     platform::SuspensionBehavior suspensionBehavior) override;

    // Readable (to poll and its like) when deliverPending() has something to do. Stays the
    // centre's.
    [[nodiscard]] int descriptor() const { return poll_.get(); }

    // Runs the callbacks of what was posted since the last call, on the calling thread, which is to
    // be the main one: names in the order of their first post, observers in the order of their
    // registration. Repeated posts of a name between two calls count as one. Never waits. Returns
    // how many callbacks ran.
    int deliverPending();

  private:
    struct Observer {
        void* observer;
        platform::NotificationCallback callback;
        std::string name;
    };

    Result<void> listenIn(const DeviceRoot& root);
    [[nodiscard]] bool watch(int descriptor) const;
    // The names that processes have sent, each once.
    [[nodiscard]] std::vector<std::string> receive();
    void acceptConnections();

    Descriptor folder_;
    std::string socketName_;
    pid_t process_ = 0;
    Descriptor listener_;
    Descriptor poll_;
    std::vector<Descriptor> connections_;  // accepted, their names not there yet
    std::vector<Observer> observers_;
};

// Posts to every running process of the device root, this one's centres included; how many were
// told. Sockets that processes have left behind are removed. Fails on a name that is refused.
[[nodiscard]] Result<int> postToProcesses(const DeviceRoot& root, const std::string& name);

// Takes the sockets off the device that ended processes have left behind.
void removeDeadSockets(const DeviceRoot& root);

}  // namespace velmoranth::desktop
