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

}  // namespace

Result<int> postToProcesses(const DeviceRoot& root, const std::string& name) {
    if (!isNotificationName(name)) {
        return tl::unexpected(Problem{"a notification's name has 1 to " +
                                      std::to_string(kMaxNotificationNameBytes) +
                                      " bytes and no control characters"});
    }
    const Descriptor folder = openSocketFolder(root, false);
    if (!folder.isOpen()) {
        return 0;  // no process has ever listened here
    }
    std::vector<std::string> files;
    if (const int error = namesIn(folder.get(), files)) {
        return tl::unexpected(problemOfErrno(error, root.hostFolder()));
    }
    int told = 0;
    for (const std::string& file : files) {
        if (file.starts_with('.') || !file.ends_with(kSocketSuffix)) {
            continue;
        }
        // Opened itself, so that a link in its place leads nowhere.
        const Descriptor item(
            ::openat(folder.get(), file.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat status{};
        if (!item.isOpen() || ::fstat(item.get(), &status) != 0 || !S_ISSOCK(status.st_mode)) {
            continue;
        }
        switch (tell(item.get(), name)) {
            case Outcome::told:
                ++told;
                break;
            case Outcome::gone:
                ::unlinkat(folder.get(), file.c_str(), 0);
                break;
            case Outcome::refused:
                break;
        }
    }
    return told;
}

}  // namespace velmoranth::desktop
