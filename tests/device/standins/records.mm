#import "device/standins/records.h"

#import "device/standins/record_words.h"
#include "record/operations.h"
#include "record/words.h"
#import <Foundation/NSFileAttributes.h>
#include <objc/runtime.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::standins {
namespace {

using record::EntryKind;
using record::messageOf;
using record::words;

// The method of that name in the place of the class's own, which it calls.
template <class Function>
struct Method;

template <class R, class... Args>
struct Method<R (*)(id, SEL, Args...)> {
    using Function = R (*)(id, SEL, Args...);
    Function own = nullptr;

    void replace(const char* message, Function function) {
        // "-[Class selector]"
        const std::string_view text = message;
        const std::size_t blank = text.find(' ');
        const std::string cls(text.substr(2, blank - 2));
        const std::string selector(text.substr(blank + 1, text.size() - blank - 2));
        const Class found = objc_getClass(cls.c_str());
        const SEL name = sel_registerName(selector.c_str());
        const auto method = text.starts_with('+') ? class_getClassMethod(found, name)
                                                  : class_getInstanceMethod(found, name);
        // By way of no type at all, as IMP is the type of no method.
        own = reinterpret_cast<Function>(reinterpret_cast<void*>(method_setImplementation(
            method, reinterpret_cast<IMP>(reinterpret_cast<void*>(function)))));
    }

    // What it does by itself is not taken down.
    R quietly(id self, SEL name, Args... arguments) const {
        const Unrecorded asking;
        return own(self, name, arguments...);
    }
};

struct Methods {
    Method<BOOL (*)(id, SEL, NSString*)> fileExists;
    Method<BOOL (*)(id, SEL, NSString*, BOOL*)> fileExistsIsDirectory;
    Method<id (*)(id, SEL, NSString*)> dataWithContents;
    Method<id (*)(id, SEL, NSString*)> dictionaryWithContents;
    Method<id (*)(id, SEL, NSString*)> fileUrlWithPath;
    Method<id (*)(id, SEL, NSString*)> bundleWithPath;
    Method<BOOL (*)(id, SEL)> loadBundle;
    Method<id (*)(id, SEL)> bundleIdentifier;
    Method<BOOL (*)(id, SEL, NSDictionary*, NSString*, NSError**)> setAttributes;
    Method<BOOL (*)(id, SEL, NSString*, NSString*, NSError**)> copy;
    Method<BOOL (*)(id, SEL, NSString*, NSString*, NSError**)> move;
    Method<BOOL (*)(id, SEL, NSString*, NSError**)> remove;
    Method<BOOL (*)(id, SEL, NSString*, NSData*, NSDictionary*)> createFile;
    Method<BOOL (*)(id, SEL, NSString*, BOOL, NSDictionary*, NSError**)> createDirectory;
    Method<BOOL (*)(id, SEL, NSString*, BOOL)> write;
};

Methods methods;

constexpr auto kFileExists = messageOf("FileManager", "fileExistsAtPath");
constexpr auto kIsDirectory = messageOf("FileManager", "fileExistsAtPathIsDirectory");
constexpr auto kData = messageOf("FileManager", "dataWithContentsOfFile");
constexpr auto kDictionary = messageOf("PropertyLists", "dictionaryWithContentsOfFile");
constexpr auto kBundle = messageOf("Bundles", "bundleWithPath");
constexpr auto kLoad = messageOf("Bundles", "load");
constexpr auto kAttributes = messageOf("FileManager", "setPosixPermissionsOfItemAtPath");
constexpr auto kCopy = messageOf("FileManager", "copyItemAtPathToPath");
constexpr auto kMove = messageOf("FileManager", "moveItemAtPathToPath");
constexpr auto kRemove = messageOf("FileManager", "removeItemAtPath");
constexpr auto kCreateFile = messageOf("FileManager", "createFileAtPathContents");
constexpr auto kCreateDirectory =
    messageOf("FileManager", "createDirectoryAtPathWithIntermediateDirectories");
constexpr auto kWrite = messageOf("FileManager", "writeToFileAtomically");

platform::FileExistence existenceOf(NSString* path) {
    BOOL isDirectory = NO;
    const BOOL exists = methods.fileExistsIsDirectory.quietly(
        [NSFileManager defaultManager], @selector(fileExistsAtPath:isDirectory:), path,
        &isDirectory);
    return {static_cast<bool>(exists), exists && isDirectory};
}

// The answer of one of Foundation's methods that read a file.
template <auto kMethod>
id read(std::string_view message, id self, SEL selector, NSString* path) {
    const id answer = (methods.*kMethod).quietly(self, selector, path);
    note({.kind = answer != nil              ? EntryKind::found
                  : existenceOf(path).exists ? EntryKind::unreadable
                                             : EntryKind::missing,
          .message = std::string(message),
          .subject = textIn(path),
          .answer = wordsOf(answer)});
    return answer;
}

void noteExistence(std::string_view message, NSString* path, BOOL exists, std::string answer) {
    note({.kind = exists ? EntryKind::found : EntryKind::missing,
          .message = std::string(message),
          .subject = textIn(path),
          .answer = std::move(answer)});
}

void noteChange(std::string_view message, NSString* path, std::vector<std::string> arguments,
                std::string answer) {
    note({.kind = EntryKind::written,
          .message = std::string(message),
          .subject = textIn(path),
          .arguments = std::move(arguments),
          .answer = std::move(answer)});
}

void noteCall(std::string_view message, id argument, std::string answer) {
    note({.message = std::string(message),
          .arguments = {wordsOf(argument)},
          .answer = std::move(answer)});
}

std::string ended(BOOL isDone) {
    return isDone ? "done" : "error";
}

void replaceReads() {
    methods.fileExists.replace(kFileExists.data(), [](id self, SEL name, NSString* path) -> BOOL {
        const BOOL answer = methods.fileExists.quietly(self, name, path);
        noteExistence(kFileExists, path, answer, wordsOf(answer));
        return answer;
    });
    methods.fileExistsIsDirectory.replace(
        kIsDirectory.data(), [](id self, SEL name, NSString* path, BOOL* isDirectory) -> BOOL {
            BOOL isFolder = NO;
            const BOOL answer = methods.fileExistsIsDirectory.quietly(self, name, path, &isFolder);
            if (isDirectory != nullptr) {
                *isDirectory = isFolder;
            }
            noteExistence(
                kIsDirectory, path, answer,
                words(platform::FileExistence{static_cast<bool>(answer), answer && isFolder}));
            return answer;
        });
    methods.dataWithContents.replace(kData.data(), [](id self, SEL name, NSString* path) {
        return read<&Methods::dataWithContents>(kData, self, name, path);
    });
    methods.dictionaryWithContents.replace(
        kDictionary.data(), [](id self, SEL name, NSString* path) {
            return read<&Methods::dictionaryWithContents>(kDictionary, self, name, path);
        });
    // These addresses look at files where the phone's do not show it.
    methods.fileUrlWithPath.replace("+[NSURL fileURLWithPath:]",
                                    [](id self, SEL name, NSString* path) -> id {
                                        return methods.fileUrlWithPath.quietly(self, name, path);
                                    });
}

void replaceBundles() {
    methods.bundleWithPath.replace(kBundle.data(), [](id self, SEL name, NSString* path) -> id {
        const id bundle = methods.bundleWithPath.quietly(self, name, path);
        noteCall(kBundle, path, wordsOf(bundle));
        return bundle;
    });
    methods.loadBundle.replace(kLoad.data(), [](id self, SEL name) -> BOOL {
        const BOOL answer = methods.loadBundle.quietly(self, name);
        noteCall(kLoad, self, wordsOf(answer));
        return answer;
    });
    // Looks at a file where the phone's does not show it.
    methods.bundleIdentifier.replace("-[NSBundle bundleIdentifier]", [](id self, SEL name) -> id {
        return methods.bundleIdentifier.quietly(self, name);
    });
}

void replaceChanges() {
    methods.setAttributes.replace(
        kAttributes.data(),
        [](id self, SEL name, NSDictionary* attributes, NSString* path, NSError** error) -> BOOL {
            const BOOL isDone = methods.setAttributes.quietly(self, name, attributes, path, error);
            NSNumber* const mode = [attributes objectForKey:NSFilePosixPermissions];
            noteChange(kAttributes, path, {record::wordsOfMode([mode unsignedIntValue])},
                       ended(isDone));
            return isDone;
        });
    methods.copy.replace(
        kCopy.data(),
        [](id self, SEL name, NSString* source, NSString* path, NSError** error) -> BOOL {
            const BOOL isDone = methods.copy.quietly(self, name, source, path, error);
            noteChange(kCopy, path, {wordsOf(source)}, ended(isDone));
            return isDone;
        });
    methods.move.replace(
        kMove.data(),
        [](id self, SEL name, NSString* source, NSString* path, NSError** error) -> BOOL {
            const BOOL isDone = methods.move.quietly(self, name, source, path, error);
            noteChange(kMove, path, {wordsOf(source)}, ended(isDone));
            return isDone;
        });
    methods.remove.replace(kRemove.data(),
                           [](id self, SEL name, NSString* path, NSError** error) -> BOOL {
                               const BOOL isDone = methods.remove.quietly(self, name, path, error);
                               noteChange(kRemove, path, {}, ended(isDone));
                               return isDone;
                           });
    methods.createFile.replace(
        kCreateFile.data(),
        [](id self, SEL name, NSString* path, NSData* contents, NSDictionary* attributes) -> BOOL {
            const BOOL isDone = methods.createFile.quietly(self, name, path, contents, attributes);
            noteChange(kCreateFile, path, {wordsOf(static_cast<id>(contents))}, wordsOf(isDone));
            return isDone;
        });
    methods.createDirectory.replace(kCreateDirectory.data(),
                                    [](id self, SEL name, NSString* path, BOOL intermediates,
                                       NSDictionary* attributes, NSError** error) -> BOOL {
                                        const BOOL isDone = methods.createDirectory.quietly(
                                            self, name, path, intermediates, attributes, error);
                                        noteChange(kCreateDirectory, path, {}, ended(isDone));
                                        return isDone;
                                    });
    methods.write.replace(
        kWrite.data(), [](id self, SEL name, NSString* path, BOOL atomically) -> BOOL {
            const BOOL isDone = methods.write.quietly(self, name, path, atomically);
            noteChange(kWrite, path, {wordsOf(self)}, wordsOf(isDone));
            return isDone;
        });
}

}  // namespace

void startRecording() {
    if (!filesAreRecorded()) {
        replaceReads();
        replaceBundles();
        replaceChanges();
        recordFiles();
    }
    clearJournal();
}

}  // namespace velmoranth::standins
