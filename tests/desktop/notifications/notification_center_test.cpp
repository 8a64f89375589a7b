#include "desktop/notifications/notification_center.h"

#include "desktop/files/create_device_root.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace velmoranth::desktop::notification_center_test {
namespace {

using platform::SuspensionBehavior;
using Heard = std::vector<std::string>;

constexpr char kPrefs[] = "com.example.prefs";
constexpr char kTheme[] = "com.example.theme";
constexpr int kPatience = 20'000;  // milliseconds; only a failing test waits so long

// An observer that notes the names it is called with.
void note(platform::DarwinNotificationCenter& /*center*/, void* observer, const std::string& name,
          const void* object, const platform::Dictionary* userInfo) {
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(userInfo, nullptr);
    static_cast<Heard*>(observer)->push_back(name);
}

bool isReadable(int descriptor, int milliseconds) {
    pollfd item{descriptor, POLLIN, 0};
    return ::poll(&item, 1, milliseconds) == 1;
}

class DesktopNotificationCenterTest : public testing::Test {
  protected:
    DesktopNotificationCenterTest() {
        std::string name = std::filesystem::temp_directory_path() / "velmoranth-XXXXXX";
        folder_ = ::mkdtemp(name.data());
        root_ = createDeviceRoot(folder_ + "/device").value();
        center_ = DesktopNotificationCenter::open(*root_).value();
    }

    ~DesktopNotificationCenterTest() override {
        center_.reset();
        std::filesystem::remove_all(folder_);
    }

    void observe(const std::string& name) {
        center_->addObserver(&heard_, note, name, nullptr, SuspensionBehavior::coalesce);
    }

    std::string sockets() const { return folder_ + "/device/private/var/run/notifications"; }

    std::ptrdiff_t countSockets() const {
        return std::distance(std::filesystem::directory_iterator(sockets()),
                             std::filesystem::directory_iterator());
    }

    // A connection to the centre's socket as any program of this machine could make one.
    int connectRaw() const {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        for (const auto& entry : std::filesystem::directory_iterator(sockets())) {
            entry.path().string().copy(static_cast<char*>(address.sun_path),
                                       sizeof address.sun_path - 1);
        }
        const int connection = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
        EXPECT_EQ(
            ::connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return connection;
    }

    std::string folder_;
    std::shared_ptr<DeviceRoot> root_;
    std::unique_ptr<DesktopNotificationCenter> center_;
    Heard heard_;
};

TEST_F(DesktopNotificationCenterTest, CallbacksRunOnDelivery) {
    observe(kPrefs);
    EXPECT_EQ(postToProcesses(*root_, kPrefs), 1);
    EXPECT_TRUE(heard_.empty());
    EXPECT_EQ(center_->deliverPending(), 1);
    EXPECT_EQ(heard_, Heard{kPrefs});
    EXPECT_EQ(center_->deliverPending(), 0);
    EXPECT_EQ(heard_, Heard{kPrefs});
}

TEST_F(DesktopNotificationCenterTest, DescriptorTellsWhenThereIsWork) {
    observe(kPrefs);
    EXPECT_FALSE(isReadable(center_->descriptor(), 0));
    EXPECT_EQ(postToProcesses(*root_, kPrefs), 1);
    EXPECT_TRUE(isReadable(center_->descriptor(), 0));
    center_->deliverPending();
    EXPECT_FALSE(isReadable(center_->descriptor(), 0));
    EXPECT_EQ(postToProcesses(*root_, kPrefs), 1);
    EXPECT_TRUE(isReadable(center_->descriptor(), 0));
    center_->deliverPending();
    EXPECT_FALSE(isReadable(center_->descriptor(), 0));
    EXPECT_EQ(heard_, (Heard{kPrefs, kPrefs}));
}

TEST_F(DesktopNotificationCenterTest, RepeatsCountOnceAndKeepTheirOrder) {
    observe(kPrefs);
    observe(kTheme);
    for (const char* const name : {kTheme, kPrefs, kTheme, kPrefs}) {
        EXPECT_EQ(postToProcesses(*root_, name), 1);
    }
    center_->deliverPending();
    EXPECT_EQ(heard_, (Heard{kTheme, kPrefs}));
}

// More than any queue of a socket holds, with nobody looking.
TEST_F(DesktopNotificationCenterTest, ManyPostsLoseNoName) {
    observe(kPrefs);
    observe(kTheme);
    for (int i = 0; i < 500; ++i) {
        ASSERT_EQ(postToProcesses(*root_, kPrefs), 1);
    }
    ASSERT_EQ(postToProcesses(*root_, kTheme), 1);
    EXPECT_EQ(center_->deliverPending(), 2);
    EXPECT_EQ(heard_, (Heard{kPrefs, kTheme}));
    EXPECT_FALSE(isReadable(center_->descriptor(), 0));
}

TEST_F(DesktopNotificationCenterTest, EveryRegistrationCounts) {
    observe(kPrefs);
    observe(kPrefs);
    EXPECT_EQ(postToProcesses(*root_, kPrefs), 1);
    EXPECT_EQ(center_->deliverPending(), 2);
}

TEST_F(DesktopNotificationCenterTest, CallbacksMayPostAndRegister) {
    static const DeviceRoot* current = nullptr;
    current = root_.get();
    observe(kTheme);
    center_->addObserver(
        &heard_,
        [](platform::DarwinNotificationCenter& center, void* observer, const std::string& name,
           const void*, const platform::Dictionary*) {
            static_cast<Heard*>(observer)->push_back(name);
            center.addObserver(observer, note, kPrefs, nullptr, SuspensionBehavior::coalesce);
            EXPECT_EQ(postToProcesses(*current, kTheme), 1);
        },
        kPrefs, nullptr, SuspensionBehavior::coalesce);
    EXPECT_EQ(postToProcesses(*root_, kPrefs), 1);
    EXPECT_EQ(center_->deliverPending(), 1);
    EXPECT_TRUE(isReadable(center_->descriptor(), 0));
    EXPECT_EQ(center_->deliverPending(), 1);
    EXPECT_EQ(heard_, (Heard{kPrefs, kTheme}));
}

TEST_F(DesktopNotificationCenterTest, NamesAreChecked) {
    const std::string longest(kMaxNotificationNameBytes, 'n');
    observe(longest);
    for (const std::string& name : {std::string(), longest + "n", std::string("a\nb"),
                                    std::string("a\0b", 3), std::string("\x7F")}) {
        EXPECT_FALSE(postToProcesses(*root_, name).has_value());
    }
    EXPECT_EQ(postToProcesses(*root_, longest), 1);
    EXPECT_EQ(center_->deliverPending(), 1);
}

TEST_F(DesktopNotificationCenterTest, WhatIsNoNotificationIsPassedOver) {
    observe(kPrefs);
    for (const std::string& message :
         {std::string(kMaxNotificationNameBytes + 1, 'n'), std::string(100'000, 'n'),
          std::string("a\nb"), std::string("unheard")}) {
        const int connection = connectRaw();
        EXPECT_EQ(::send(connection, message.data(), message.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(message.size()));
        ::close(connection);
    }
    ::close(connectRaw());
    EXPECT_EQ(center_->deliverPending(), 0);
    EXPECT_FALSE(isReadable(center_->descriptor(), 0));
}

TEST_F(DesktopNotificationCenterTest, SlowSenderIsHeardLaterAndHoldsNothingUp) {
    observe(kPrefs);
    observe(kTheme);
    const int slow = connectRaw();
    EXPECT_EQ(center_->deliverPending(), 0);
    EXPECT_FALSE(isReadable(center_->descriptor(), 0));
    EXPECT_EQ(postToProcesses(*root_, kTheme), 1);
    EXPECT_EQ(center_->deliverPending(), 1);
    EXPECT_EQ(::send(slow, kPrefs, sizeof kPrefs - 1, MSG_NOSIGNAL),
              static_cast<ssize_t>(sizeof kPrefs - 1));
    EXPECT_TRUE(isReadable(center_->descriptor(), 0));
    EXPECT_EQ(center_->deliverPending(), 1);
    EXPECT_EQ(heard_, (Heard{kTheme, kPrefs}));
    ::close(slow);
}

TEST_F(DesktopNotificationCenterTest, OtherDevicesHearNothing) {
    const auto other = createDeviceRoot(folder_ + "/other").value();
    const auto otherCenter = DesktopNotificationCenter::open(*other).value();
    observe(kPrefs);
    EXPECT_EQ(postToProcesses(*other, kPrefs), 1);
    EXPECT_EQ(center_->deliverPending(), 0);
}

TEST_F(DesktopNotificationCenterTest, SocketGoesWithItsCenter) {
    EXPECT_EQ(countSockets(), 1);
    center_.reset();
    EXPECT_EQ(countSockets(), 0);
    EXPECT_EQ(postToProcesses(*root_, kPrefs), 0);
}

TEST_F(DesktopNotificationCenterTest, LongRootsAndMissingFolders) {
    std::string deep = folder_;
    for (int i = 0; i < 10; ++i) {
        deep += "/a-folder-with-a-long-name";
    }
    std::filesystem::create_directories(deep);
    const auto root = DeviceRoot::open(deep).value();
    EXPECT_EQ(postToProcesses(*root, kPrefs), 0);
    const auto center = DesktopNotificationCenter::open(*root).value();
    center->addObserver(&heard_, note, kPrefs, nullptr, SuspensionBehavior::coalesce);
    EXPECT_EQ(postToProcesses(*root, kPrefs), 1);
    EXPECT_EQ(center->deliverPending(), 1);
}

TEST_F(DesktopNotificationCenterTest, OpeningSaysWhatIsWrong) {
    std::filesystem::create_directories(folder_ + "/bad/private/var");
    std::ofstream(folder_ + "/bad/private/var/run") << "a file";
    const auto root = DeviceRoot::open(folder_ + "/bad").value();
    EXPECT_EQ(toLine(DesktopNotificationCenter::open(*root).error()),
              folder_ + "/bad: notifications cannot be received: not a directory");
}

TEST_F(DesktopNotificationCenterTest, LinksAndFilesAmongTheSocketsAreLeftAlone) {
    const auto other = createDeviceRoot(folder_ + "/other").value();
    const auto outside = DesktopNotificationCenter::open(*other).value();
    outside->addObserver(&heard_, note, kPrefs, nullptr, SuspensionBehavior::coalesce);
    const std::string theirs = folder_ + "/other/private/var/run/notifications";
    for (const auto& entry : std::filesystem::directory_iterator(theirs)) {
        std::filesystem::create_symlink(entry.path(), sockets() + "/1-link.socket");
    }
    std::ofstream(sockets() + "/2-file.socket") << "a file";
    EXPECT_EQ(postToProcesses(*root_, kPrefs), 1);
    EXPECT_EQ(outside->deliverPending(), 0);
    EXPECT_EQ(countSockets(), 3);
}

// A second process that listens in the same device.
class OtherProcess {
  public:
    // `run` gets the process's own end of a pipe to the test; its result is the exit status.
    explicit OtherProcess(const std::function<int(int pipe)>& run) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        id_ = ::fork();
        if (id_ == 0) {
            ::_exit(run(ends[1]));
        }
        ::close(ends[1]);
        pipe_ = ends[0];
    }

    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    ~OtherProcess() {
        ::close(pipe_);
        if (!ended_) {
            ::kill(id_, SIGKILL);
            static_cast<void>(wait());
        }
    }

    // The next byte that it sends, '\0' when it ended.
    [[nodiscard]] char next() const {
        char byte = 0;
        return ::read(pipe_, &byte, 1) == 1 ? byte : '\0';
    }

    void kill() const { ::kill(id_, SIGKILL); }

    int wait() {
        int status = 0;
        ::waitpid(id_, &status, 0);
        ended_ = true;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    pid_t id_ = 0;
    int pipe_ = -1;
    bool ended_ = false;
};

// Listens, says "r" when it does, then says "p" or "t" for each callback until it has heard both.
int listenForBoth(const DeviceRoot& root, int pipe) {
    const auto center = DesktopNotificationCenter::open(root);
    if (!center) {
        return 1;
    }
    Heard heard;
    for (const char* const name : {kPrefs, kTheme}) {
        (*center)->addObserver(&heard, note, name, nullptr, SuspensionBehavior::coalesce);
    }
    static_cast<void>(!::write(pipe, "r", 1));
    while (heard.size() < 2) {
        if (!isReadable((*center)->descriptor(), kPatience)) {
            return 2;
        }
        const std::size_t before = heard.size();
        (*center)->deliverPending();
        for (std::size_t i = before; i < heard.size(); ++i) {
            static_cast<void>(!::write(pipe, heard[i] == kPrefs ? "p" : "t", 1));
        }
    }
    return 0;
}

TEST_F(DesktopNotificationCenterTest, ProcessesHearEachOther) {
    observe(kPrefs);
    OtherProcess first([&](int pipe) { return listenForBoth(*root_, pipe); });
    OtherProcess second([&](int pipe) { return listenForBoth(*root_, pipe); });
    ASSERT_EQ(first.next(), 'r');
    ASSERT_EQ(second.next(), 'r');
    EXPECT_EQ(postToProcesses(*root_, kPrefs), 3);
    EXPECT_EQ(first.next(), 'p');
    EXPECT_EQ(second.next(), 'p');
    EXPECT_EQ(center_->deliverPending(), 1);
    EXPECT_EQ(postToProcesses(*root_, kTheme), 3);
    EXPECT_EQ(first.next(), 't');
    EXPECT_EQ(second.next(), 't');
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(second.wait(), 0);
    EXPECT_EQ(countSockets(), 1);
}

TEST_F(DesktopNotificationCenterTest, ForkedCopyLeavesTheSocketAlone) {
    observe(kPrefs);
    OtherProcess other([&](int) {
        center_.reset();
        return 0;
    });
    EXPECT_EQ(other.wait(), 0);
    EXPECT_EQ(postToProcesses(*root_, kPrefs), 1);
    EXPECT_EQ(center_->deliverPending(), 1);
}

TEST_F(DesktopNotificationCenterTest, SocketOfAKilledProcessIsCleanedUp) {
    OtherProcess other([&](int pipe) { return listenForBoth(*root_, pipe); });
    ASSERT_EQ(other.next(), 'r');
    EXPECT_EQ(countSockets(), 2);
    other.kill();
    other.wait();
    EXPECT_EQ(countSockets(), 2);
    EXPECT_EQ(postToProcesses(*root_, kPrefs), 1);
    EXPECT_EQ(countSockets(), 1);
}

}  // namespace
}  // namespace velmoranth::desktop::notification_center_test
