// NSFileManager, and NSData where it reads and writes files.
#include "device/platform/handle.h"
#include "device/platform/services.h"
#include "device/platform/text.h"
#import <Foundation/Foundation.h>
#import <Foundation/NSFileAttributes.h>

#include <cerrno>
#include <string>

namespace velmoranth::device {
namespace {

// The value of NSPOSIXErrorDomain: it takes no knowing which of the phone's libraries has the name.
NSString* const kPosixErrorDomain = @"NSPOSIXErrorDomain";

// A path ends at a U+0000 for the system, so one with more behind it would lead elsewhere than it
// says. It leads nowhere.
bool isPath(const std::string& path) {
    return path.find('\0') == std::string::npos;
}

// Carries out `operation`, which is handed the place for its error and says whether it succeeded.
template <class Operation>
platform::Failure attempt(bool arePaths, const Operation& operation) {
    @autoreleasepool {
        NSError* error = arePaths ? nil
                                  : [classNamed("NSError") errorWithDomain:kPosixErrorDomain
                                                                      code:EINVAL
                                                                  userInfo:nil];
        const bool succeeded = arePaths && operation(&error);
        return failureOf(succeeded, error);
    }
}

// Bytes that the caller keeps alive for as long as this lives.
class BorrowedData {
  public:
    explicit BorrowedData(const platform::Data& bytes)
        : data_([[NSData alloc] initWithBytesNoCopy:const_cast<std::uint8_t*>(bytes.data())
                                             length:bytes.size()
                                       freeWhenDone:NO]) {}

    BorrowedData(const BorrowedData&) = delete;
    BorrowedData& operator=(const BorrowedData&) = delete;

    ~BorrowedData() { [data_ release]; }

    [[nodiscard]] NSData* get() const { return data_; }

  private:
    NSData* data_;
};

// With pools of its own: an extraction or a dump goes through thousands of files, and nothing that
// is made for one of them has to wait for the caller's.
class FoundationFileManager final : public platform::FileManager {
  public:
    bool fileExistsAtPath(const std::string& path) override {
        @autoreleasepool {
            return isPath(path) && [manager() fileExistsAtPath:stringOf(path)];
        }
    }

    platform::FileExistence fileExistsAtPathIsDirectory(const std::string& path) override {
        @autoreleasepool {
            BOOL isDirectory = NO;
            const bool exists = isPath(path) && [manager() fileExistsAtPath:stringOf(path)
                                                                isDirectory:&isDirectory];
            return {.exists = exists, .isDirectory = exists && isDirectory};
        }
    }

    platform::Failure setPosixPermissionsOfItemAtPath(unsigned mode,
                                                      const std::string& path) override {
        return attempt(isPath(path), [&](NSError** error) {
            NSDictionary* const attributes =
                [NSDictionary dictionaryWithObject:[NSNumber numberWithUnsignedInt:mode]
                                            forKey:NSFilePosixPermissions];
            return [manager() setAttributes:attributes ofItemAtPath:stringOf(path) error:error];
        });
    }

    platform::Failure copyItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override {
        return attempt(isPath(source) && isPath(destination), [&](NSError** error) {
            return [manager() copyItemAtPath:stringOf(source)
                                      toPath:stringOf(destination)
                                       error:error];
        });
    }

    platform::Failure moveItemAtPathToPath(const std::string& source,
                                           const std::string& destination) override {
        return attempt(isPath(source) && isPath(destination), [&](NSError** error) {
            return [manager() moveItemAtPath:stringOf(source)
                                      toPath:stringOf(destination)
                                       error:error];
        });
    }

    platform::Failure removeItemAtPath(const std::string& path) override {
        return attempt(isPath(path), [&](NSError** error) {
            return [manager() removeItemAtPath:stringOf(path) error:error];
        });
    }

    bool createFileAtPathContents(const std::string& path,
                                  const platform::Data& contents) override {
        @autoreleasepool {
            return isPath(path) && [manager() createFileAtPath:stringOf(path)
                                                      contents:BorrowedData(contents).get()
                                                    attributes:nil];
        }
    }

    platform::Failure createDirectoryAtPathWithIntermediateDirectories(
        const std::string& path) override {
        return attempt(isPath(path), [&](NSError** error) {
            return [manager() createDirectoryAtPath:stringOf(path)
                        withIntermediateDirectories:YES
                                         attributes:nil
                                              error:error];
        });
    }

    bool writeToFileAtomically(const platform::Data& contents, const std::string& path) override {
        @autoreleasepool {
            return isPath(path) && [BorrowedData(contents).get() writeToFile:stringOf(path)
                                                                  atomically:YES];
        }
    }

    std::optional<platform::Data> dataWithContentsOfFile(const std::string& path) override {
        if (!isPath(path)) {
            return std::nullopt;
        }
        @autoreleasepool {
            return dataOf([NSData dataWithContentsOfFile:stringOf(path)]);
        }
    }

  private:
    static NSFileManager* manager() { return [NSFileManager defaultManager]; }
};

}  // namespace

platform::FileManager& fileManager() {
    return theOne<FoundationFileManager>();
}

}  // namespace velmoranth::device
