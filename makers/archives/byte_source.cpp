#include "makers/archives/byte_source.h"

#include "desktop/files/descriptor.h"

#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace velmoranth::makers {

using desktop::Result;

Result<ByteSource> sourceOfFile(int file) {
    struct stat status{};
    if (::fstat(file, &status) != 0) {
        return tl::unexpected(desktop::problemOfErrno(errno, {}));
    }
    return ByteSource{
        static_cast<std::uint64_t>(status.st_size),
        [file](std::uint64_t at, std::span<std::uint8_t> bytes) -> Result<std::size_t> {
            std::size_t done = 0;
            while (done < bytes.size()) {
                const ssize_t count = ::pread(file, bytes.data() + done, bytes.size() - done,
                                              static_cast<off_t>(at + done));
                if (count < 0 && errno == EINTR) {
                    continue;
                }
                if (count < 0) {
                    return tl::unexpected(desktop::problemOfErrno(errno, {}));
                }
                if (count == 0) {
                    break;
                }
                done += static_cast<std::size_t>(count);
            }
            return done;
        }};
}

ByteSource sourceOfBytes(std::span<const std::uint8_t> bytes) {
    return {bytes.size(),
            [bytes](std::uint64_t at, std::span<std::uint8_t> into) -> Result<std::size_t> {
                const std::size_t start = std::min<std::uint64_t>(at, bytes.size());
                const std::size_t count = std::min(into.size(), bytes.size() - start);
                std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(start), count,
                            into.begin());
                return count;
            }};
}

}  // namespace velmoranth::makers
