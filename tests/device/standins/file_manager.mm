// NSFileManager's changes to files with the phone's errors, which GNUstep words and numbers
// otherwise.
#import <Foundation/Foundation.h>
#import <Foundation/NSFileAttributes.h>
#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

namespace {

enum class Change { copy, move, remove, write };

enum Code {
    kNoSuchFile = 4,
    kReadUnknown = 256,
    kReadNoPermission = 257,
    kReadNoSuchFile = 260,
    kWriteUnknown = 512,
    kWriteNoPermission = 513,
    kWriteInvalidName = 514,
    kWriteFileExists = 516,
    kWriteOutOfSpace = 640,
    kWriteReadOnly = 642,
};

Code writeCode(int error) {
    switch (error) {
        case ENOENT:
            return kNoSuchFile;
        case EPERM:
        case EACCES:
        case ENOTEMPTY:
            return kWriteNoPermission;
        case ENAMETOOLONG:
            return kWriteInvalidName;
        case EEXIST:
            return kWriteFileExists;
        case ENOSPC:
        case EDQUOT:
            return kWriteOutOfSpace;
        case EROFS:
            return kWriteReadOnly;
        default:
            return kWriteUnknown;
    }
}

// %1$@ is the item's name, %2$@ that of the folder that it was to stand in.
struct Words {
    Change change;
    Code code;
    const char* text;
};

constexpr Words kWords[] = {
    {Change::copy, kReadNoSuchFile,
     "The file “%1$@” couldn’t be opened because there is no such file."},
    {Change::copy, kReadNoPermission,
     "The file “%1$@” couldn’t be opened because you don’t have permission to view it."},
    {Change::copy, kReadUnknown, "The file “%1$@” couldn’t be opened."},
    {Change::copy, kNoSuchFile, "The file “%1$@” doesn’t exist."},
    {Change::copy, kWriteFileExists,
     "“%1$@” couldn’t be copied to “%2$@” because an item with the same name already exists."},
    {Change::copy, kWriteNoPermission,
     "“%1$@” couldn’t be copied because you don’t have permission to access “%2$@”."},
    {Change::move, kNoSuchFile,
     "“%1$@” couldn’t be moved to “%2$@” because either the former doesn’t exist, or the folder "
     "containing the latter doesn’t exist."},
    {Change::move, kWriteFileExists,
     "“%1$@” couldn’t be moved to “%2$@” because an item with the same name already exists."},
    {Change::move, kWriteNoPermission,
     "“%1$@” couldn’t be moved because you don’t have permission to access “%2$@”."},
    {Change::remove, kNoSuchFile, "“%1$@” couldn’t be removed."},
    {Change::remove, kWriteUnknown, "“%1$@” couldn’t be removed."},
    {Change::remove, kWriteNoPermission,
     "“%1$@” couldn’t be removed because you don’t have permission to access it."},
    {Change::write, kNoSuchFile, "The file “%1$@” doesn’t exist."},
    {Change::write, kWriteFileExists,
     "The file “%1$@” couldn’t be saved in the folder “%2$@” because a file with the same name "
     "already exists."},
    {Change::write, kWriteNoPermission,
     "You don’t have permission to save the file “%1$@” in the folder “%2$@”."},
    {Change::write, kWriteUnknown, "The file “%1$@” couldn’t be saved in the folder “%2$@”."},
};

NSString* wordsFor(Change change, Code code, NSString* path, NSString* destination) {
    NSString* const place = [destination length] == 0 ? path : destination;
    NSString* const folder = [[place stringByDeletingLastPathComponent] lastPathComponent];
    for (const Words& words : kWords) {
        if (words.change == change && words.code == code) {
            NSString* const name = [path lastPathComponent];
            NSString* text = [NSString stringWithUTF8String:words.text];
            text = [text stringByReplacingOccurrencesOfString:@"%1$@" withString:name];
            return [text stringByReplacingOccurrencesOfString:@"%2$@" withString:folder];
        }
    }
    return
        [NSString stringWithFormat:@"The operation couldn’t be completed. (Cocoa error %d.)", code];
}

BOOL report(NSError** error, Change change, Code code, NSString* path, NSString* destination) {
    if (error != nullptr) {
        NSDictionary* const details =
            [NSDictionary dictionaryWithObject:wordsFor(change, code, path, destination)
                                        forKey:NSLocalizedDescriptionKey];
        *error = [NSError errorWithDomain:NSCocoaErrorDomain code:code userInfo:details];
    }
    return NO;
}

BOOL report(NSError** error, Change change, int number, NSString* path) {
    return report(error, change, writeCode(number), path, path);
}

std::string place(NSString* path) {
    const char* const text = [path UTF8String];
    return text == nullptr ? "" : text;
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    DIR* const entries = opendir(folder.c_str());
    while (const dirent* const entry = entries == nullptr ? nullptr : readdir(entries)) {
        const std::string name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    if (entries != nullptr) {
        closedir(entries);
    }
    return names;
}

// What these give: 0, or the number of the error that stopped them.

int copyContents(const std::string& source, const std::string& destination, mode_t mode) {
    FILE* const from = fopen(source.c_str(), "rb");
    if (from == nullptr) {
        return errno;
    }
    int error = 0;
    FILE* const to = fopen(destination.c_str(), "wbx");
    if (to == nullptr) {
        error = errno;
    } else {
        char buffer[4096];
        size_t count = 0;
        while ((count = fread(buffer, 1, sizeof buffer, from)) > 0) {
            error = fwrite(buffer, 1, count, to) == count ? error : errno;
        }
        error = fclose(to) == 0 ? error : errno;
        chmod(destination.c_str(), mode);
    }
    fclose(from);
    return error;
}

int copyLink(const std::string& source, const std::string& destination) {
    char target[4096];
    const ssize_t length = readlink(source.c_str(), target, sizeof target);
    return length >= 0 && symlink(std::string(target, static_cast<size_t>(length)).c_str(),
                                  destination.c_str()) == 0
               ? 0
               : errno;
}

int copyItem(const std::string& source, const std::string& destination) {
    struct stat found = {};
    if (lstat(source.c_str(), &found) != 0) {
        return errno;
    }
    if (S_ISLNK(found.st_mode)) {
        return copyLink(source, destination);
    }
    if (!S_ISDIR(found.st_mode)) {
        return copyContents(source, destination, found.st_mode & 07777U);
    }
    const std::vector<std::string> names = namesIn(source);
    int error = mkdir(destination.c_str(), 0700) == 0 ? 0 : errno;
    for (const std::string& name : names) {
        error = error != 0 ? error : copyItem(source + "/" + name, destination + "/" + name);
    }
    if (error == 0) {
        chmod(destination.c_str(), found.st_mode & 07777U);
    }
    return error;
}

int removeItem(const std::string& path) {
    struct stat found = {};
    if (lstat(path.c_str(), &found) != 0) {
        return errno;
    }
    if (!S_ISDIR(found.st_mode)) {
        return unlink(path.c_str()) == 0 ? 0 : errno;
    }
    int error = 0;
    for (const std::string& name : namesIn(path)) {
        error = error != 0 ? error : removeItem(path + "/" + name);
    }
    return error != 0 || rmdir(path.c_str()) == 0 ? error : errno;
}

bool exists(NSString* path) {
    struct stat found = {};
    return lstat(place(path).c_str(), &found) == 0;
}

bool isFolder(NSString* path) {
    struct stat found = {};
    return stat(place(path).c_str(), &found) == 0 && S_ISDIR(found.st_mode);
}

Code readCode(int error) {
    return error == ENOENT                     ? kReadNoSuchFile
           : error == EACCES || error == EPERM ? kReadNoPermission
                                               : kReadUnknown;
}

}  // namespace

// That a category takes a method's place is what it is for here.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSFileManager (PhoneErrors)

- (BOOL)copyItemAtPath:(NSString*)source toPath:(NSString*)destination error:(NSError**)error {
    struct stat found = {};
    if (lstat(place(source).c_str(), &found) != 0) {
        return report(error, Change::copy, readCode(errno), source, source);
    }
    if (exists(destination)) {
        return report(error, Change::copy, kWriteFileExists, source, destination);
    }
    const int number = copyItem(place(source), place(destination));
    return number == 0 ? YES : report(error, Change::copy, writeCode(number), source, destination);
}

- (BOOL)moveItemAtPath:(NSString*)source toPath:(NSString*)destination error:(NSError**)error {
    int number = exists(destination) ? EEXIST : 0;
    if (!exists(source)) {
        number = ENOENT;
    }
    if (number == 0 && rename(place(source).c_str(), place(destination).c_str()) != 0) {
        number = errno;
    }
    return number == 0 ? YES : report(error, Change::move, writeCode(number), source, destination);
}

- (BOOL)removeItemAtPath:(NSString*)path error:(NSError**)error {
    const int number = removeItem(place(path));
    return number == 0 ? YES : report(error, Change::remove, number, path);
}

- (BOOL)createDirectoryAtPath:(NSString*)path
    withIntermediateDirectories:(BOOL)createsIntermediates
                     attributes:(NSDictionary*)attributes
                          error:(NSError**)error {
    if (isFolder(path)) {
        return createsIntermediates ? YES : report(error, Change::write, EEXIST, path);
    }
    if (exists(path)) {
        return report(error, Change::write, EEXIST, path);
    }
    NSString* const parent = [path stringByDeletingLastPathComponent];
    if (createsIntermediates && [parent length] > 0 && !isFolder(parent)) {
        if (exists(parent)) {
            return report(error, Change::write, ENOTDIR, parent);
        }
        if (![self createDirectoryAtPath:parent
                withIntermediateDirectories:YES
                                 attributes:attributes
                                      error:error]) {
            return NO;
        }
    }
    return mkdir(place(path).c_str(), 0777) == 0 ? YES : report(error, Change::write, errno, path);
}

- (BOOL)setAttributes:(NSDictionary*)attributes
         ofItemAtPath:(NSString*)path
                error:(NSError**)error {
    NSNumber* const mode = [attributes objectForKey:NSFilePosixPermissions];
    if (mode != nil && chmod(place(path).c_str(), [mode unsignedIntValue]) != 0) {
        return report(error, Change::write, errno, path);
    }
    return exists(path) ? YES : report(error, Change::write, ENOENT, path);
}

- (BOOL)createFileAtPath:(NSString*)path
                contents:(NSData*)contents
              attributes:(NSDictionary*)attributes {
    static_cast<void>(attributes);
    return [contents == nil ? [NSData data] : contents writeToFile:path atomically:YES];
}

@end
