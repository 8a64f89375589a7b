#include "tools/image_dump.h"

#include "core/format.h"
#include "core/settings.h"
#include "platform/platform.h"

#include <optional>
#include <string>

namespace velmoranth::tools {

using core::NSLog;
using core::stringWithFormat;
using platform::Data;
using platform::ImageRef;
using platform::NullableString;
using platform::platform;

namespace {

constexpr const char* kRootFolder = "/var/mobile/Library/VelmoranthImageDump";
constexpr const char* kUIImagesFolder = "/var/mobile/Library/VelmoranthImageDump/UIImages";
constexpr const char* kBundlesFolder = "/var/mobile/Library/VelmoranthImageDump/Bundles";
constexpr const char* kIconBundlesFolder = "/var/mobile/Library/VelmoranthImageDump/IconBundles";
constexpr unsigned kFolderMode = 0755;

void makeFolderIfMissing(const std::string& path) {
    if (!platform().fileManager.fileExistsAtPathIsDirectory(path).exists) {
        platform().libSystem.mkdir(path, kFolderMode);
    }
}

bool writeAtomically(const std::optional<Data>& data, const std::string& path) {
    return data && platform().fileManager.writeToFileAtomically(*data, path);
}

// Encodes anew, creates the file first, then writes it.
bool createAndWrite(const ImageRef& image, const std::string& path) {
    const std::optional<Data> data = platform().images.pngRepresentation(image);
    platform().fileManager.createFileAtPathContents(path, data.value_or(Data{}));
    return writeAtomically(data, path);
}

void dumpIntoBundleFolder(const ImageRef& image, const std::string& bundle,
                          const std::string& fileName) {
    makeFolderIfMissing(kBundlesFolder);
    makeFolderIfMissing(
        stringWithFormat("/var/mobile/Library/VelmoranthImageDump/Bundles/%@", bundle));
    const std::string target =
        stringWithFormat("/var/mobile/Library/VelmoranthImageDump/Bundles/%@/%@", bundle, fileName);
    if (platform().fileManager.fileExistsAtPath(target) ||
        writeAtomically(platform().images.pngRepresentation(image), target)) {
        return;
    }
    // The second try goes to a path nested below the target, and its success is what is logged as a
    // failure. Both are the system's own behaviour.
    if (createAndWrite(image, stringWithFormat("%@/%@", target, fileName))) {
        NSLog("VelmoranthImageDump DID NOT SAVE IMAGE: %@  BUNDLE: %@ ", fileName, bundle);
    }
}

void dumpIntoFolder(const ImageRef& image, const std::string& folder, const std::string& target) {
    makeFolderIfMissing(folder);
    if (!platform().fileManager.fileExistsAtPath(target) &&
        !writeAtomically(platform().images.pngRepresentation(image), target)) {
        createAndWrite(image, target);
    }
}

// The test is against a single full stop at the end, not against an extension.
std::string dumpFileName(const NullableString& name) {
    if (name && name->ends_with('.')) {
        return *name;
    }
    return stringWithFormat("%@@3x.png", name);
}

}  // namespace

void ImageDump::VelmoranthImageDumpNamedInBundle(const ImageRef& image, const NullableString& name,
                                                 const NullableString& bundle) {
    if (platform::bitmapOf(image) == nullptr && (image == nullptr || !image->hasCIImage())) {
        NSLog("VelmoranthImageDump imgToDump: %@ HASNODATA:    Imgnamed: %@   inBundle: %@", image,
              name, bundle);
        return;
    }
    core::refreshLookupLogging();
    if (core::lookupLogging()) {
        NSLog("VelmoranthImageDump imgToDump: %@    Imgnamed: %@   inBundle: %@", image, name,
              bundle);
    }
    platform().libSystem.setuid(0);
    platform().libSystem.setgid(0);
    const std::string fileName = dumpFileName(name);
    makeFolderIfMissing(kRootFolder);
    if (bundle) {
        dumpIntoBundleFolder(image, *bundle, fileName);
    } else {
        dumpIntoFolder(
            image, kUIImagesFolder,
            stringWithFormat("/var/mobile/Library/VelmoranthImageDump/UIImages/%@", fileName));
    }
    if (bundle == "IconBundles") {
        dumpIntoFolder(
            image, kIconBundlesFolder,
            stringWithFormat("/var/mobile/Library/VelmoranthImageDump/IconBundles/%@", fileName));
    }
}

NullableString ImageDump::contentTypeForImageData(const Data& data) {
    if (data.empty()) {
        return std::nullopt;
    }
    switch (data.front()) {
        case 0xFF:
            return "image/jpeg";
        case 0x89:
            return "image/png";
        case 0x47:
            return "image/gif";
        case 0x49:
        case 0x4D:
            return "image/tiff";
        default:
            return std::nullopt;
    }
}

}  // namespace velmoranth::tools
