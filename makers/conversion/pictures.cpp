#include "makers/conversion/pictures.h"

#include "desktop/files/descriptor.h"
#include "desktop/image_io/image_io.h"
#include "desktop/imaging/resampling.h"

#include "makers/conversion/names.h"
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <thread>
#include <utility>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;
using platform::Data;

namespace {

constexpr std::size_t kMostFileBytes = std::size_t{256} * 1024 * 1024;
constexpr std::size_t kSideByName = 60;

PictureFacts factsOf(const std::string& path) {
    const auto bytes = readWhole(path);
    if (!bytes) {
        return {.problem = "it cannot be read: " + bytes.error().message, .isUnreadable = true};
    }
    if (bytes->empty()) {
        return {.problem = "the file is empty"};
    }
    const auto facts = desktop::examineImage(*bytes);
    if (!facts) {
        return {.problem = facts.error().message};
    }
    return {.width = facts->width, .height = facts->height};
}

Data reduced(const Data& pixels, std::size_t width, std::size_t height, std::size_t newWidth,
             std::size_t newHeight) {
    const auto axis = [](std::size_t from, std::size_t to) {
        return desktop::Axis{.end = static_cast<double>(to),
                             .sourceSize = from,
                             .last = static_cast<std::int64_t>(to)};
    };
    desktop::Resampler resampler({pixels.data(), width, height, width * 4}, axis(width, newWidth),
                                 axis(height, newHeight));
    Data result;
    result.reserve(newWidth * newHeight * 4);
    for (std::size_t y = 0; y < newHeight; ++y) {
        const std::uint8_t* const row = resampler.row(y);
        result.insert(result.end(), row, row + newWidth * 4);
    }
    return result;
}

}  // namespace

void Pictures::load(const std::vector<std::string>& names) {
    if (isByNames()) {
        return;
    }
    std::vector<PictureFacts*> places;
    places.reserve(names.size());
    std::vector<std::string> unknown;
    for (const std::string& name : names) {
        if (const auto [place, isNew] = facts_.try_emplace(sourceOf(name)); isNew) {
            places.push_back(&place->second);
            unknown.push_back(place->first);
        }
    }
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t i = next++; i < unknown.size(); i = next++) {
            *places[i] = factsOf(folder_ + "/" + unknown[i]);
        }
    };
    std::vector<std::jthread> others;
    const std::size_t count =
        std::min<std::size_t>(std::thread::hardware_concurrency(), unknown.size());
    for (std::size_t i = 1; i < count; ++i) {
        others.emplace_back(work);
    }
    work();
}

const PictureFacts& Pictures::facts(const std::string& name) {
    const auto [found, isNew] = facts_.try_emplace(sourceOf(name));
    if (isNew && isByNames()) {
        const std::size_t side = kSideByName * static_cast<std::size_t>(pictureName(name).scale);
        found->second = {.width = side, .height = side};
    } else if (isNew) {
        found->second = factsOf(folder_ + "/" + found->first);
    }
    return found->second;
}

const std::string& Pictures::sourceOf(const std::string& name) const {
    const auto found = sources_.find(name);
    return found == sources_.end() ? name : found->second;
}

Result<Data> readWhole(const std::string& path) {
    const desktop::Descriptor file(
        ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW | O_NONBLOCK));
    struct stat status{};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        return tl::unexpected(desktop::problemOfErrno(errno, path));
    }
    if (!S_ISREG(status.st_mode)) {
        return tl::unexpected(Problem{"it is no file", path});
    }
    if (static_cast<std::uint64_t>(status.st_size) > kMostFileBytes) {
        return tl::unexpected(Problem{
            "it is larger than " + std::to_string(kMostFileBytes / (1024 * 1024)) + " MiB", path});
    }
    Data bytes(static_cast<std::size_t>(status.st_size));
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = ::read(file.get(), bytes.data() + done, bytes.size() - done);
        if (count < 0) {
            return tl::unexpected(desktop::problemOfErrno(errno, path));
        }
        if (count == 0) {
            bytes.resize(done);  // it has become shorter meanwhile
        }
        done += static_cast<std::size_t>(count);
    }
    return bytes;
}

Result<Data> shrunk(const Data& picture) {
    const auto image = desktop::decodeImage(picture);
    if (!image) {
        return tl::unexpected(image.error());
    }
    const std::size_t width = image->layout.width;
    const std::size_t height = image->layout.height;
    const std::size_t longer = std::max(width, height);
    const auto scaled = [longer](std::size_t side) {
        return std::max<std::size_t>(1, (side * kLongestSide + longer / 2) / longer);
    };
    const Data pixels = desktop::toPremultipliedBgra(*image);
    const Data small = reduced(pixels, width, height, scaled(width), scaled(height));
    return desktop::encodePng(small, scaled(width), scaled(height), scaled(width) * 4,
                              desktop::PngEffort::balanced);
}

}  // namespace velmoranth::makers
