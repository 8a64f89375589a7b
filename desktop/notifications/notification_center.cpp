#include "desktop/notifications/notification_center.h"

#include "desktop/notifications/socket_folder.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <utility>

namespace velmoranth::desktop {
namespace {

constexpr std::size_t kMaxConnections = 256;  // accepted and silent; the rest wait in the kernel
constexpr int kMaxRounds = 32;                // of taking that many

// A name that no other socket has had, so that a stale one's never comes back to life.
std::string makeSocketName() {
    std::uint64_t random = 0;
    static_cast<void>(::getrandom(&random, sizeof random, 0));
    std::array<char, 64> name{};
    const int length = std::snprintf(name.data(), name.size(), "%d-%016llx%s", ::getpid(),
                                     static_cast<unsigned long long>(random), kSocketSuffix);
    return {name.data(), static_cast<std::size_t>(length)};
}

}  // namespace

Result<std::unique_ptr<DesktopNotificationCenter>> DesktopNotificationCenter::open(
    const DeviceRoot& root) {
    std::unique_ptr<DesktopNotificationCenter> center(new DesktopNotificationCenter);
    if (Result<void> listening = center->listenIn(root); !listening) {
        return tl::unexpected(std::move(listening.error()));
    }
    return center;
}

Result<void> DesktopNotificationCenter::listenIn(const DeviceRoot& root) {
    const auto failed = [&] {
        return tl::unexpected(
            Problem{"notifications cannot be received: " + problemOfErrno(errno, "").message,
                    root.hostFolder()});
    };
    poll_ = Descriptor(::epoll_create1(EPOLL_CLOEXEC));
    folder_ = openSocketFolder(root, true);
    listener_ = makeSocket();
    removeDeadSockets(root);
    if (!poll_.isOpen() || !folder_.isOpen() || !listener_.isOpen()) {
        return failed();
    }
    // Bound under a name that nobody looks at and renamed once it listens: a poster takes a socket
    // that refuses for one left behind.
    const std::string name = makeSocketName();
    const std::string hidden = "." + name + ".new";
    if (bindIn(listener_.get(), folder_.get(), hidden) != 0) {
        return failed();
    }
    if (::listen(listener_.get(), SOMAXCONN) != 0 ||
        ::renameat(folder_.get(), hidden.c_str(), folder_.get(), name.c_str()) != 0) {
        const auto failure = failed();
        ::unlinkat(folder_.get(), hidden.c_str(), 0);
        return failure;
    }
    socketName_ = name;
    process_ = ::getpid();
    if (!watch(listener_.get())) {
        return failed();
    }
    return {};
}

DesktopNotificationCenter::~DesktopNotificationCenter() {
    leave();
}

void DesktopNotificationCenter::leave() const {
    // A forked child's copy is not the socket's owner.
    if (!socketName_.empty() && process_ == ::getpid()) {
        ::unlinkat(folder_.get(), socketName_.c_str(), 0);
    }
}

bool DesktopNotificationCenter::watch(int descriptor) const {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = descriptor;
    return ::epoll_ctl(poll_.get(), EPOLL_CTL_ADD, descriptor, &event) == 0;
}

void DesktopNotificationCenter::addObserver(void* observer, platform::NotificationCallback callback,
                                            const std::string& name, const void* /*object*/,
                                            platform::SuspensionBehavior /*behavior*/) {
    if (callback != nullptr) {
        observers_.push_back({observer, callback, name});
    }
}

int DesktopNotificationCenter::deliverPending() {
    // Before the first one runs: a callback may add observers.
    std::vector<Observer> due;
    for (const std::string& name : receive()) {
        std::ranges::copy_if(observers_, std::back_inserter(due),
                             [&](const Observer& observer) { return observer.name == name; });
    }
    for (const Observer& observer : due) {
        observer.callback(*this, observer.observer, observer.name, nullptr, nullptr);
    }
    return static_cast<int>(due.size());
}

void DesktopNotificationCenter::acceptConnections() {
    while (connections_.size() < kMaxConnections) {
        Descriptor connection(
            ::accept4(listener_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (!connection.isOpen()) {
            return;
        }
        connections_.push_back(std::move(connection));
    }
}

std::vector<std::string> DesktopNotificationCenter::receive() {
    std::vector<std::string> names;
    std::vector<Descriptor> silent;
    // Bounded, so that one who never stops sending does not stop the main loop.
    for (int round = 0; round < kMaxRounds; ++round) {
        acceptConnections();
        if (connections_.empty()) {
            break;
        }
        for (Descriptor& connection : std::exchange(connections_, {})) {
            // One byte more than a name may have shows one that is too long.
            std::array<char, kMaxNotificationNameBytes + 1> buffer{};
            const ssize_t length =
                ::recv(connection.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
            if (length < 0 && (errno == EAGAIN || errno == EINTR)) {
                silent.push_back(std::move(connection));
                continue;
            }
            const std::string name(buffer.data(),
                                   static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
            // Names that nobody listens to are not kept: what others send is not bounded.
            if (std::ranges::find(observers_, name, &Observer::name) != observers_.end() &&
                std::ranges::find(names, name) == names.end()) {
                names.push_back(name);
            }
        }
        if (silent.size() >= kMaxConnections) {
            break;
        }
    }
    // A poster connects and sends at once; one that has not is looked at again when it does. Were
    // there ever too many, the oldest would go.
    if (silent.size() >= kMaxConnections) {
        silent.erase(silent.begin(), silent.begin() + kMaxConnections / 2);
    }
    for (const Descriptor& connection : silent) {
        static_cast<void>(watch(connection.get()));  // fails harmlessly when it already is
    }
    connections_ = std::move(silent);
    return names;
}

}  // namespace velmoranth::desktop
