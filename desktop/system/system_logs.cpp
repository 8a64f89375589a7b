#include "desktop/system/system_logs.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace velmoranth::desktop {
namespace {

// One write carries the whole line; only what the system left over follows in another.
void writeLine(int descriptor, const std::string& line) {
    const std::string text = line + '\n';
    std::string_view rest = text;
    while (!rest.empty()) {
        const ssize_t written = ::write(descriptor, rest.data(), rest.size());
        if (written < 0 && errno != EINTR) {
            return;
        }
        rest.remove_prefix(static_cast<std::size_t>(written < 0 ? 0 : written));
    }
}

}  // namespace

void LogToMemory::write(const std::string& line) {
    const std::lock_guard lock(mutex_);
    lines_.push_back(line);
}

std::vector<std::string> LogToMemory::lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
}

void LogToMemory::clear() {
    const std::lock_guard lock(mutex_);
    lines_.clear();
}

void LogToDescriptor::write(const std::string& line) {
    writeLine(descriptor_, line);
}

Result<std::unique_ptr<LogToFile>> LogToFile::open(const std::string& hostPath) {
    constexpr unsigned kMode = 0666;
    Descriptor file(
        ::open(hostPath.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, kMode));
    if (!file.isOpen()) {
        return tl::unexpected(problemOfErrno(errno, hostPath));
    }
    return std::unique_ptr<LogToFile>(new LogToFile(std::move(file)));
}

void LogToFile::write(const std::string& line) {
    writeLine(file_.get(), line);
}

}  // namespace velmoranth::desktop
