#include "desktop/notifications/socket_folder.h"

#include "desktop/notifications/notification_center.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>

namespace velmoranth::desktop {
namespace {

constexpr const char* kFolders[] = {
    "/private",
    "/private/var",
    "/private/var/run",
    "/private/var/run/notifications",
};

sockaddr_un addressAt(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    // Longest: a descriptor's place and a name of ours, well below the address's size.
    path.copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
    return address;
}

}  // namespace

Descriptor openSocketFolder(const DeviceRoot& root, bool create) {
    constexpr unsigned kMode = 0755;
    for (const char* const path : kFolders) {
        if (create) {
            // Whatever fails here shows in opening the last one.
            static_cast<void>(root.makeFolder(path, kMode));
        }
    }
    return Descriptor(root.openFile(*std::rbegin(kFolders), O_RDONLY | O_DIRECTORY));
}

int bindIn(int socket, int folder, const std::string& name) {
    const sockaddr_un address = addressAt("/proc/self/fd/" + std::to_string(folder) + "/" + name);
    return ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

int connectTo(int socket, int item) {
    const sockaddr_un address = addressAt("/proc/self/fd/" + std::to_string(item));
    return ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

Descriptor makeSocket() {
    return Descriptor(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

bool isNotificationName(std::string_view name) {
    constexpr unsigned char kDelete = 0x7F;
    return !name.empty() && name.size() <= kMaxNotificationNameBytes &&
           std::none_of(name.begin(), name.end(), [](char c) {
               const auto byte = static_cast<unsigned char>(c);
               return byte < ' ' || byte == kDelete;
           });
}

}  // namespace velmoranth::desktop
