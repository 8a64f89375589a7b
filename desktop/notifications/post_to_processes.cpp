#include "desktop/notifications/notification_center.h"
#include "desktop/notifications/socket_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace velmoranth::desktop {
namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

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
    Descriptor folder = openSocketFolder(root, false);
    if (!folder.isOpen()) {
        return 0;  // no process has ever listened here
    }
    const std::unique_ptr<DIR, CloseFolder> stream(::fdopendir(folder.get()));
    if (stream == nullptr) {
        return tl::unexpected(problemOfErrno(errno, root.hostFolder()));
    }
    const int number = folder.release();  // the stream closes it
    int told = 0;
    while (const dirent* const entry = ::readdir(stream.get())) {
        const std::string file = static_cast<const char*>(entry->d_name);
        if (file.starts_with('.') || !file.ends_with(kSocketSuffix)) {
            continue;
        }
        // Opened itself, so that a link in its place leads nowhere.
        const Descriptor item(::openat(number, file.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat status{};
        if (!item.isOpen() || ::fstat(item.get(), &status) != 0 || !S_ISSOCK(status.st_mode)) {
            continue;
        }
        switch (tell(item.get(), name)) {
            case Outcome::told:
                ++told;
                break;
            case Outcome::gone:
                ::unlinkat(number, file.c_str(), 0);
                break;
            case Outcome::refused:
                break;
        }
    }
    return told;
}

}  // namespace velmoranth::desktop
