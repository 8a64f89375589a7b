#include "desktop/image_io/image_io.h"

#include "makers/conversion/image_rules.h"
#include "makers/conversion/names.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace velmoranth::makers {

using desktop::Result;
using platform::Data;

namespace {

// Where a mask is looked for, the second where the first has none.
constexpr std::array<std::string_view, 2> kMaskFolders{"Bundles/com.apple.mobileicons.framework",
                                                       "com.apple.mobileicons.framework"};
constexpr std::string_view kBase = "AppIconMask";
constexpr std::size_t kBitsOfByte = 8;

// Whether the first sample of every pixel, which is what hides, is already what the alpha leaves
// out.
bool hidesByFirstSample(const desktop::DecodedImage& image, const Data& hidden) {
    const platform::BitmapLayout& layout = image.layout;
    if (layout.bitsPerComponent != kBitsOfByte || layout.bitsPerPixel % kBitsOfByte != 0 ||
        layout.alphaInfo != platform::AlphaInfo::last) {
        return false;
    }
    const std::size_t step = layout.bitsPerPixel / kBitsOfByte;
    for (std::size_t y = 0; y < layout.height; ++y) {
        for (std::size_t x = 0; x < layout.width; ++x) {
            if ((*image.samples)[y * layout.bytesPerRow + x * step] !=
                hidden[y * layout.width + x]) {
                return false;
            }
        }
    }
    return true;
}

struct Mask {
    std::string file;
    PictureName name;
    std::size_t area = 0;
    bool cuts = false;  // by its alpha
};

Mask maskOf(Draft& draft, const std::string& file) {
    Mask mask{file, pictureName(file), draft.pictures().facts(file).area()};
    if (draft.pictures().isByNames()) {
        mask.cuts = !mask.name.isPlain();
    } else if (const auto bytes = draft.read(file)) {
        const auto gray = grayMaskOf(*bytes);
        mask.cuts = gray && gray->has_value();
    }
    return mask;
}

std::vector<Mask> masksIn(std::string_view folder, Draft& draft) {
    std::vector<Mask> masks;
    const auto files = draft.rest();
    for (const auto& [file, size] : files) {
        if (folderOf(file) != folder || !isPng(file) || pictureName(file).base != kBase) {
            continue;
        }
        if (const PictureFacts& facts = draft.pictures().facts(file); !facts.isPicture()) {
            draft.leaveOut(file, facts.problem, Repair::noPicture);
        } else {
            masks.push_back(maskOf(draft, file));
        }
    }
    return masks;
}

void makeMasksIn(std::string_view folder, Draft& draft) {
    const std::string plain = inFolder(folder, std::string(kBase) + ".png");
    const std::vector<Mask> masks = masksIn(folder, draft);
    if (masks.empty()) {
        return;
    }
    for (const Mask& mask : masks) {
        if (mask.cuts) {
            MadeFile made = Draft::copied(mask.file, Repair::maskAlpha);
            made.work = Work::mask;
            draft.make(mask.file, std::move(made));
            draft.take(mask.file);
        }
    }
    const auto existing = std::ranges::find(masks, plain, &Mask::file);
    if (existing != masks.end() && !existing->cuts) {
        return;
    }
    const Mask& largest = *std::ranges::max_element(masks, {}, [](const Mask& mask) {
        return std::tuple(mask.area, mask.name.device.empty(), mask.name.scale);
    });
    if (largest.file == plain) {
        return;
    }
    MadeFile made = Draft::copied(largest.file, Repair::maskName);
    made.work = largest.cuts ? Work::mask : Work::copy;
    draft.make(plain, std::move(made));
}

}  // namespace

std::optional<SampleRange> firstSamplesOf(const Data& picture) {
    const auto image = desktop::decodeImage(picture);
    if (!image || image->layout.bitsPerComponent != kBitsOfByte ||
        image->layout.bitsPerPixel % kBitsOfByte != 0) {
        return std::nullopt;
    }
    const platform::BitmapLayout& layout = image->layout;
    const std::size_t step = layout.bitsPerPixel / kBitsOfByte;
    SampleRange range{.least = UINT8_MAX, .greatest = 0};
    for (std::size_t y = 0; y < layout.height; ++y) {
        for (std::size_t x = 0; x < layout.width; ++x) {
            const std::uint8_t sample = (*image->samples)[y * layout.bytesPerRow + x * step];
            range.least = std::min(range.least, sample);
            range.greatest = std::max(range.greatest, sample);
        }
    }
    return range;
}

Result<std::optional<Data>> grayMaskOf(const Data& picture) {
    const auto image = desktop::decodeImage(picture);
    if (!image) {
        return tl::unexpected(image.error());
    }
    const Data pixels = desktop::toPremultipliedBgra(*image);
    Data hidden(pixels.size() / 4);
    for (std::size_t i = 0; i < hidden.size(); ++i) {
        hidden[i] = static_cast<std::uint8_t>(255U - pixels[4 * i + 3]);
    }
    const auto [least, greatest] = std::ranges::minmax_element(hidden);
    if (hidden.empty() || *least == *greatest || hidesByFirstSample(*image, hidden)) {
        return std::optional<Data>();
    }
    return std::optional(desktop::encodeGrayPng(hidden, image->layout.width, image->layout.height));
}

void makeMasks(Draft& draft) {
    for (const std::string_view folder : kMaskFolders) {
        makeMasksIn(folder, draft);
    }
}

bool hasMask(const Draft& draft) {
    return std::ranges::any_of(kMaskFolders, [&](std::string_view folder) {
        return draft.has(inFolder(folder, std::string(kBase) + ".png"));
    });
}

}  // namespace velmoranth::makers
