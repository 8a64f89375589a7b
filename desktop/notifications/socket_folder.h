// The folder of the device in which each process has its socket, and addressing a socket by
// descriptors: an address holds 108 bytes, which a path on this machine may exceed, and a name
// looked up by the kernel could be a link out of the device.
#pragma once

#include "desktop/files/descriptor.h"
#include "desktop/files/device_root.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <string>

namespace velmoranth::desktop {

inline constexpr char kSocketSuffix[] = ".socket";

// Opened for reading; with `create`, made when it is missing. Not open on failure, errno is set.
[[nodiscard]] Descriptor openSocketFolder(const DeviceRoot& root, bool create);

// The address of `name` in an open folder.
[[nodiscard]] sockaddr_un addressIn(int folder, const std::string& name);

// The address of an item that is itself open (with O_PATH).
[[nodiscard]] sockaddr_un addressOf(int item);

// A local socket that keeps messages apart, not blocking, closed on exec.
[[nodiscard]] Descriptor makeSocket();

// Whether a notification may have that name.
[[nodiscard]] bool isNotificationName(std::string_view name);

}  // namespace velmoranth::desktop
