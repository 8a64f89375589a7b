#include "desktop/files/file_errors.h"

#include "platform/strings.h"

#include <cerrno>
#include <span>
#include <string_view>

namespace velmoranth::desktop {
namespace {

// NSCocoaErrorDomain's codes (FoundationErrors.h).
constexpr int kNoSuchFile = 4;
constexpr int kReadUnknown = 256;
constexpr int kReadNoPermission = 257;
constexpr int kReadInvalidFileName = 258;
constexpr int kReadNoSuchFile = 260;
constexpr int kReadTooLarge = 263;
constexpr int kWriteUnknown = 512;
constexpr int kWriteNoPermission = 513;
constexpr int kWriteInvalidFileName = 514;
constexpr int kWriteFileExists = 516;
constexpr int kWriteOutOfSpace = 640;
constexpr int kWriteVolumeReadOnly = 642;

int readCode(int error) {
    switch (error) {
        case ENOENT:
            return kReadNoSuchFile;
        case EPERM:
        case EACCES:
            return kReadNoPermission;
        case ENAMETOOLONG:
            return kReadInvalidFileName;
        case EFBIG:
            return kReadTooLarge;
        default:
            return kReadUnknown;
    }
}

int writeCode(int error) {
    switch (error) {
        case ENOENT:
            return kNoSuchFile;
        case EPERM:
        case EACCES:
            return kWriteNoPermission;
        case ENAMETOOLONG:
            return kWriteInvalidFileName;
        case EEXIST:
            return kWriteFileExists;
        case ENOSPC:
        case EDQUOT:
            return kWriteOutOfSpace;
        case EROFS:
            return kWriteVolumeReadOnly;
        default:
            return kWriteUnknown;
    }
}

// {X} is the item's name, {F} the name of the folder it was to stand in.
struct Wording {
    FileOperation operation;
    int code;
    std::string_view text;
};

constexpr Wording kWordings[] = {
    {FileOperation::read, kReadNoSuchFile,
     "The file “{X}” couldn’t be opened because there is no such file."},
    {FileOperation::read, kReadNoPermission,
     "The file “{X}” couldn’t be opened because you don’t have permission to view it."},
    {FileOperation::read, kReadUnknown, "The file “{X}” couldn’t be opened."},
    {FileOperation::write, kNoSuchFile, "The file “{X}” doesn’t exist."},
    {FileOperation::write, kWriteFileExists,
     "The file “{X}” couldn’t be saved in the folder “{F}” because a file with the same name "
     "already exists."},
    {FileOperation::write, kWriteNoPermission,
     "You don’t have permission to save the file “{X}” in the folder “{F}”."},
    {FileOperation::write, kWriteUnknown, "The file “{X}” couldn’t be saved in the folder “{F}”."},
    {FileOperation::copy, kNoSuchFile, "The file “{X}” doesn’t exist."},
    {FileOperation::copy, kWriteFileExists,
     "“{X}” couldn’t be copied to “{F}” because an item with the same name already exists."},
    {FileOperation::copy, kWriteNoPermission,
     "“{X}” couldn’t be copied because you don’t have permission to access “{F}”."},
    {FileOperation::copy, kWriteUnknown, "“{X}” couldn’t be copied to “{F}”."},
    {FileOperation::move, kNoSuchFile,
     "“{X}” couldn’t be moved to “{F}” because either the former doesn’t exist, or the folder "
     "containing the latter doesn’t exist."},
    {FileOperation::move, kWriteFileExists,
     "“{X}” couldn’t be moved to “{F}” because an item with the same name already exists."},
    {FileOperation::move, kWriteNoPermission,
     "“{X}” couldn’t be moved because you don’t have permission to access “{F}”."},
    {FileOperation::move, kWriteUnknown, "“{X}” couldn’t be moved to “{F}”."},
    {FileOperation::remove, kNoSuchFile, "“{X}” couldn’t be removed."},
    {FileOperation::remove, kWriteNoPermission,
     "“{X}” couldn’t be removed because you don’t have permission to access it."},
    {FileOperation::remove, kWriteUnknown, "“{X}” couldn’t be removed."},
};

// These read alike whatever was tried. The system volume's name is "/".
constexpr Wording kVolumeWordings[] = {
    {FileOperation::write, kWriteOutOfSpace,
     "You can’t save the file “{X}” because the volume “/” is out of space."},
    {FileOperation::write, kWriteVolumeReadOnly,
     "You can’t save the file “{X}” because the volume is read only."},
};

std::string filled(std::string_view text, const std::string& name, const std::string& folder) {
    std::string result;
    while (!text.empty()) {
        const std::size_t brace = text.find('{');
        result += text.substr(0, brace);
        if (brace == std::string_view::npos) {
            break;
        }
        result += text[brace + 1] == 'X' ? name : folder;
        text.remove_prefix(brace + 3);
    }
    return result;
}

const Wording* wordingOf(FileOperation operation, int code) {
    for (const Wording& wording : kVolumeWordings) {
        if (wording.code == code) {
            return &wording;
        }
    }
    for (const Wording& wording : kWordings) {
        if (wording.operation == operation && wording.code == code) {
            return &wording;
        }
    }
    return nullptr;
}

}  // namespace

platform::Error fileError(FileOperation operation, int error, const std::string& path,
                          const std::string& destination) {
    platform::Error result;
    result.code = operation == FileOperation::read ? readCode(error) : writeCode(error);
    const Wording* const wording = wordingOf(operation, result.code);
    if (wording == nullptr) {
        result.localizedDescription = "The operation couldn’t be completed. (Cocoa error " +
                                      std::to_string(result.code) + ".)";
        return result;
    }
    const std::string folder = platform::lastPathComponent(
        platform::stringByDeletingLastPathComponent(destination.empty() ? path : destination));
    result.localizedDescription = filled(wording->text, platform::lastPathComponent(path), folder);
    return result;
}

}  // namespace velmoranth::desktop
