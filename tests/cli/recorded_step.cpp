#include "tests/cli/recorded_step.h"

#include "device/equality/desktop_side.h"
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <utility>

namespace velmoranth::cli {
namespace {

RecordedStep carryOut(const equality::Scenario& scenario, std::size_t place, equality::Given given,
                      const std::function<void(const std::string& root)>& furnish) {
    ::umask(022);
    equality::DesktopSide side(scenario);
    equality::layPhone(scenario, side.root());
    furnish(side.root());
    for (std::size_t i = 0; i < place; ++i) {
        static_cast<void>(equality::changeFiles(scenario.steps[i], side.root()));
    }
    side.startRecording();
    side.load();
    static_cast<void>(side.takeRecord());
    equality::Step step = scenario.steps[place];
    step.given = given;
    std::string result = side.send(step);
    return {side.takeRecord(), std::move(result)};
}

void sendText(int end, const std::string& text) {
    const auto size = static_cast<std::uint32_t>(text.size());
    std::string bytes(reinterpret_cast<const char*>(&size), sizeof size);
    bytes += text;
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = ::write(end, bytes.data() + sent, bytes.size() - sent);
        if (count <= 0) {
            ::_exit(1);
        }
        sent += static_cast<std::size_t>(count);
    }
}

std::optional<std::string> takeText(std::string_view& bytes) {
    std::uint32_t size = 0;
    if (bytes.size() < sizeof size) {
        return std::nullopt;
    }
    bytes.copy(reinterpret_cast<char*>(&size), sizeof size);
    bytes.remove_prefix(sizeof size);
    if (bytes.size() < size) {
        return std::nullopt;
    }
    std::string text(bytes.substr(0, size));
    bytes.remove_prefix(size);
    return text;
}

}  // namespace

std::optional<RecordedStep> recordStep(
    const equality::Scenario& scenario, std::size_t step, equality::Given given,
    const std::function<void(const std::string& root)>& furnish) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        return std::nullopt;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        const RecordedStep done = carryOut(scenario, step, given, furnish);
        sendText(ends[1], done.result);
        for (const record::Entry& entry : done.record) {
            sendText(ends[1], record::toBytes(entry));
        }
        ::_exit(0);
    }
    ::close(ends[1]);
    std::string bytes;
    std::array<char, 65536> buffer{};
    for (ssize_t count = 0; (count = ::read(ends[0], buffer.data(), buffer.size())) > 0;) {
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    ::close(ends[0]);
    int status = -1;
    ::waitpid(child, &status, 0);
    std::string_view rest = bytes;
    const auto result = takeText(rest);
    if (status != 0 || !result) {
        return std::nullopt;
    }
    RecordedStep done{.record = {}, .result = *result};
    while (const auto text = takeText(rest)) {
        auto entry = record::fromBytes(*text);
        if (!entry) {
            return std::nullopt;
        }
        done.record.push_back(std::move(*entry));
    }
    return done;
}

}  // namespace velmoranth::cli
