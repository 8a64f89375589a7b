// The folder of the device in which each process has its socket, and addressing a socket by
// descriptors: an address holds 108 bytes, which a path on this machine may exceed, and a name
// looked up by the kernel could be a link out of the device.
#pragma once

#include "desktop/files/descriptor.h"
#include "desktop/files/device_root.h"

#include <string>
#include <string_view>

namespace velmoranth::desktop {

inline constexpr char kSocketSuffix[] = ".socket";

// Opened for reading; with `create`, made when it is missing. Not open on failure, errno is set.
[[nodiscard]] Descriptor openSocketFolder(const DeviceRoot& root, bool create);

// bind(2) of the socket to `name` in an open folder.
[[nodiscard]] int bindIn(int socket, int folder, const std::string& name);

// connect(2) of the socket to another that is itself open as an item of a folder (with O_PATH).
[[nodiscard]] int connectTo(int socket, int item);

// A local socket that keeps messages apart, not blocking, closed on exec.
[[nodiscard]] Descriptor makeSocket();

// Whether a notification may have that name.
[[nodiscard]] bool isNotificationName(std::string_view name);

}  // namespace velmoranth::desktop
