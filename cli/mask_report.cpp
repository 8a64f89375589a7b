#include "cli/mask_report.h"

#include "cli/added_theme.h"
#include "cli/messages.h"
#include "desktop/image_io/image_io.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <string_view>
#include <system_error>

namespace velmoranth::cli {

using desktop::Result;
using simulator::Question;

namespace {

constexpr std::string_view kOpaqueApp = "com.example.opaque";

// Gives the theme an icon that is white all over.
bool addOpaqueIcon(const AddedTheme& theme) {
    constexpr std::size_t kSide = 180;
    const std::vector<std::uint8_t> pixels(kSide * kSide * 4, 255);
    const auto png = desktop::encodePng(pixels, kSide, kSide, kSide * 4);
    const std::filesystem::path folder = theme.folder() / "IconBundles";
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    std::ofstream file(folder / (std::string(kOpaqueApp) + "-large.png"), std::ios::binary);
    file.write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
    return static_cast<bool>(file.flush());
}

// Whether the file has more than 8 bits a channel.
bool isDeep(const Investigation& investigation, const AskedFile& file) {
    constexpr std::size_t kMostBytes = std::size_t{64} << 20;
    const auto bytes = investigation.device.root->readFile(file.path, kMostBytes);
    const auto image = bytes ? desktop::decodeImage(*bytes)
                             : Result<desktop::DecodedImage>(tl::unexpected(desktop::Problem()));
    return image && image->layout.bitsPerComponent > 8;
}

}  // namespace

std::string judgeMask(const Investigation& investigation, const std::vector<Effect>& effects) {
    const auto known = std::ranges::find(effects, "mask", &Effect::name);
    if (known == effects.end()) {
        return {};
    }
    // Behind the others, so that nothing of theirs changes.
    const AddedTheme theme(investigation);
    if (!addOpaqueIcon(theme)) {
        return {};
    }
    const Question question{"icon", std::string(kOpaqueApp), ""};
    const auto answerWith = [&](bool withMask) {
        platform::Dictionary settings = investigation.settings;
        settings.insert_or_assign("enableOverlay", platform::PropertyList(false));
        if (!withMask) {
            settings.insert_or_assign("enableIconMask", platform::PropertyList(false));
        }
        return theme.useBehind(settings)
                   ? askOnce(investigation, question)
                   : Result<simulator::Answer>(tl::unexpected(desktop::Problem()));
    };
    const auto masked = answerWith(true);
    const auto plain = answerWith(false);
    if (!masked || !plain || !isVisible(plain->picture)) {
        return {};
    }
    const std::vector<AskedFile> files = askedFiles(masked->record);
    const auto mask = std::ranges::find(files, known->file.path, &AskedFile::path);
    if (mask == files.end() || !isRead(*mask)) {
        return {};  // it is switched off
    }
    const std::string name = shown(known->file.theme + "/" + known->file.name);
    // One with 16 bits a channel is no mask on iOS 13, and hides all of an icon before.
    if (!masked->picture || (!isVisible(masked->picture) && isDeep(investigation, *mask))) {
        return name +
               " hides everything: nothing comes of an icon that is cut out by it; write it with 8 "
               "bits a channel";
    }
    if (!isVisible(masked->picture)) {
        return name + " hides everything: where it is light the icon is hidden";
    }
    if (masked->picture->pixels == plain->picture->pixels) {
        return name + " hides nothing: it is dark all over, and its transparency does not count";
    }
    return {};
}

}  // namespace velmoranth::cli
