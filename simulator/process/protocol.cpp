#include "simulator/process/protocol.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <limits>

namespace velmoranth::simulator {
namespace {

struct Header {
    std::uint32_t kind;
    std::uint32_t length;
};

// More than any picture; what claims to be longer is no message of ours.
constexpr std::size_t kMaxPayload = std::size_t{256} * 1024 * 1024;
// What is read at once. Room for a length is no memory before it is filled, so a false one costs
// none by itself.
constexpr std::size_t kReadStep = std::size_t{1024} * 1024;

// Waits until the descriptor can be read (POLLIN) or written (POLLOUT). False when it is too late.
bool await(int descriptor, short events, const std::optional<Clock::time_point>& deadline) {
    while (true) {
        int timeout = -1;
        if (deadline) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count();
            timeout = static_cast<int>(
                std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
        }
        pollfd entry{.fd = descriptor, .events = events, .revents = 0};
        const int ready = poll(&entry, 1, timeout);
        if (ready > 0) {
            return true;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

// Takes that many bytes off the front of the parts.
void takeOff(std::span<iovec>& parts, std::size_t count) {
    while (!parts.empty() && count >= parts.front().iov_len) {
        count -= parts.front().iov_len;
        parts = parts.subspan(1);
    }
    if (count > 0) {
        parts.front().iov_base = static_cast<std::uint8_t*>(parts.front().iov_base) + count;
        parts.front().iov_len -= count;
    }
}

bool sendAll(int descriptor, std::span<iovec> parts,
             const std::optional<Clock::time_point>& deadline) {
    const int flags = MSG_NOSIGNAL | (deadline ? MSG_DONTWAIT : 0);
    takeOff(parts, 0);
    while (!parts.empty()) {
        msghdr message{};
        message.msg_iov = parts.data();
        message.msg_iovlen = std::min<std::size_t>(parts.size(), IOV_MAX);
        const ssize_t sent = sendmsg(descriptor, &message, flags);
        if (sent >= 0) {
            takeOff(parts, static_cast<std::size_t>(sent));
        } else if (errno == EAGAIN ? !await(descriptor, POLLOUT, deadline) : errno != EINTR) {
            return false;
        }
    }
    return true;
}

// `closed` at an end before the first byte and within it alike.
Received receiveAll(int descriptor, std::span<char> bytes,
                    const std::optional<Clock::time_point>& deadline) {
    while (!bytes.empty()) {
        if (!await(descriptor, POLLIN, deadline)) {
            return Received::late;
        }
        const ssize_t count = recv(descriptor, bytes.data(), bytes.size(), 0);
        if (count > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return Received::closed;
        }
    }
    return Received::message;
}

// A payload that is as long as it says is held once and never moved.
template <class Bytes>
Received receivePayload(int descriptor, Bytes& bytes, std::size_t length,
                        const std::optional<Clock::time_point>& deadline) {
    bytes.reserve(length);
    while (bytes.size() < length) {
        const std::size_t before = bytes.size();
        const std::size_t step = std::min(kReadStep, length - before);
        bytes.resize(before + step);
        const std::span<char> rest(reinterpret_cast<char*>(bytes.data()) + before, step);
        if (const Received received = receiveAll(descriptor, rest, deadline);
            received != Received::message) {
            return received;
        }
    }
    return Received::message;
}

std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

bool sendMessage(int descriptor, MessageKind kind,
                 std::span<const std::span<const std::uint8_t>> parts,
                 std::optional<Clock::time_point> deadline) {
    Header header{.kind = static_cast<std::uint32_t>(kind), .length = 0};
    std::vector<iovec> all{{.iov_base = &header, .iov_len = sizeof header}};
    all.reserve(parts.size() + 1);
    std::size_t length = 0;
    for (const auto& part : parts) {
        length += part.size();
        // Nothing is written there.
        all.push_back({.iov_base = const_cast<std::uint8_t*>(part.data()), .iov_len = part.size()});
    }
    if (length > kMaxPayload) {
        return false;
    }
    header.length = static_cast<std::uint32_t>(length);
    return sendAll(descriptor, all, deadline);
}

bool sendMessage(int descriptor, MessageKind kind, std::string_view payload,
                 std::optional<Clock::time_point> deadline) {
    const std::array parts{bytesOf(payload)};
    return sendMessage(descriptor, kind, parts, deadline);
}

bool waitForMessage(int descriptor, Clock::time_point deadline) {
    return await(descriptor, POLLIN, deadline);
}

std::string filesToBytes(const record::Record& record) {
    std::string bytes;
    for (const record::Entry& entry : record) {
        const std::string one = record::toBytes(entry);
        const auto length = static_cast<std::uint32_t>(one.size());
        std::array<char, sizeof length> start{};
        std::memcpy(start.data(), &length, sizeof length);
        bytes.append(start.data(), start.size());
        bytes += one;
    }
    return bytes;
}

std::optional<record::Record> filesFromBytes(std::string_view bytes) {
    record::Record record;
    while (!bytes.empty()) {
        std::uint32_t length = 0;
        if (bytes.size() < sizeof length) {
            return std::nullopt;
        }
        std::memcpy(&length, bytes.data(), sizeof length);
        bytes.remove_prefix(sizeof length);
        auto entry = record::fromBytes(bytes.substr(0, length));
        if (length > bytes.size() || !entry) {
            return std::nullopt;
        }
        bytes.remove_prefix(length);
        record.push_back(std::move(*entry));
    }
    return record;
}

Received receiveMessage(int descriptor, Message& message,
                        std::optional<Clock::time_point> deadline) {
    std::array<char, sizeof(Header)> start{};
    if (const Received received = receiveAll(descriptor, start, deadline);
        received != Received::message) {
        return received;
    }
    Header header{};
    std::memcpy(&header, start.data(), sizeof header);
    if (header.kind < static_cast<std::uint32_t>(MessageKind::request) ||
        header.kind > static_cast<std::uint32_t>(MessageKind::problem) ||
        header.length > kMaxPayload) {
        return Received::malformed;
    }
    message.kind = static_cast<MessageKind>(header.kind);
    message.payload.clear();
    message.pixels.clear();
    return message.kind == MessageKind::pixels
               ? receivePayload(descriptor, message.pixels, header.length, deadline)
               : receivePayload(descriptor, message.payload, header.length, deadline);
}

}  // namespace velmoranth::simulator
