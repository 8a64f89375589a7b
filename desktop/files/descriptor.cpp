#include "desktop/files/descriptor.h"

#include <cctype>
#include <cerrno>
#include <system_error>

namespace velmoranth::desktop {

void Descriptor::reset() {
    if (number_ >= 0) {
        const int saved = errno;
        ::close(std::exchange(number_, -1));
        errno = saved;
    }
}

Problem problemOfErrno(int error, std::string path) {
    std::string message = std::generic_category().message(error);
    if (!message.empty()) {
        message[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(message[0])));
    }
    return Problem{std::move(message), std::move(path)};
}

}  // namespace velmoranth::desktop
