#include "desktop/files/file_tree.h"
#include "desktop/notifications/notification_center.h"
#include "desktop/notifications/socket_folder.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

namespace velmoranth::desktop {
namespace {

enum class Outcome { told, gone, refused };

Outcome tell(int item, const std::string& name) {
    const Descriptor connection = makeSocket();
    if (connectTo(connection.get(), item) != 0) {
        return errno == ECONNREFUSED ? Outcome::gone : Outcome::refused;
    }
    const ssize_t sent = ::send(connection.get(), name.data(), name.size(), MSG_NOSIGNAL);
    return sent == static_cast<ssize_t>(name.size()) ? Outcome::told : Outcome::refused;
}

// Calls with the folder, each socket's name in it and the socket itself, opened as an item. Fails
// when the folder cannot be listed; one that is not there has none.
template <class Call>
Result<void> forEachSocket(const DeviceRoot& root, const Call& call) {
    const Descriptor folder = openSocketFolder(root, false);
    if (!folder.isOpen()) {
        return {};  // no process has ever listened here
    }
    std::vector<std::string> files;
    if (const int error = namesIn(folder.get(), files)) {
        return tl::unexpected(problemOfErrno(error, root.hostFolder()));
    }
    for (const std::string& file : files) {
        if (file.starts_with('.') || !file.ends_with(kSocketSuffix)) {
            continue;
        }
        // Opened itself, so that a link in its place leads nowhere.
        const Descriptor item(
            ::openat(folder.get(), file.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat status{};
        if (item.isOpen() && ::fstat(item.get(), &status) == 0 && S_ISSOCK(status.st_mode)) {
            call(folder.get(), file, item.get());
        }
    }
    return {};
}

}  // namespace

void removeDeadSockets(const DeviceRoot& root) {
    static_cast<void>(forEachSocket(root, [](int folder, const std::string& file, int item) {
        const Descriptor connection = makeSocket();
        if (connectTo(connection.get(), item) != 0 && errno == ECONNREFUSED) {
            ::unlinkat(folder, file.c_str(), 0);
        }
    }));
}

Result<int> postToProcesses(const DeviceRoot& root, const std::string& name) {
    if (!isNotificationName(name)) {
        return tl::unexpected(Problem{"a notification's name has 1 to " +
                                      std::to_string(kMaxNotificationNameBytes) +
                                      " bytes and no control characters"});
    }
    int told = 0;
    const auto listed = forEachSocket(root, [&](int folder, const std::string& file, int item) {
        switch (tell(item, name)) {
            case Outcome::told:
                ++told;
                break;
            case Outcome::gone:
                ::unlinkat(folder, file.c_str(), 0);
                break;
            case Outcome::refused:
                break;
        }
    });
    if (!listed) {
        return tl::unexpected(listed.error());
    }
    return told;
}

}  // namespace velmoranth::desktop
