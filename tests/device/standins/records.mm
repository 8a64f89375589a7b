#import "device/standins/records.h"

#import "device/standins/av_foundation.h"
#import "device/standins/controllers.h"
#import "device/standins/record_methods.h"
#import <Foundation/NSFileAttributes.h>

#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::standins {
namespace {

using record::Entry;
using record::EntryKind;
using record::messageOf;
using record::words;

thread_local int depth = 0;

struct Methods {
    Method<BOOL (*)(id, SEL, NSString*)> fileExists;
    Method<BOOL (*)(id, SEL, NSString*, BOOL*)> fileExistsIsDirectory;
    Method<id (*)(id, SEL, NSString*)> dataWithContents;
    Method<id (*)(id, SEL, NSString*)> dictionaryWithContents;
    Method<id (*)(id, SEL, NSString*)> imageWithContents;
    Method<id (*)(id, SEL, NSString*)> bundleWithPath;
    Method<id (*)(id, SEL, NSString*)> fileUrlWithPath;
    Method<id (*)(id, SEL)> bundleIdentifier;
    Method<BOOL (*)(id, SEL, NSDictionary*, NSString*, NSError**)> setAttributes;
    Method<BOOL (*)(id, SEL, NSString*, NSString*, NSError**)> copy;
    Method<BOOL (*)(id, SEL, NSString*, NSString*, NSError**)> move;
    Method<BOOL (*)(id, SEL, NSString*, NSError**)> remove;
    Method<BOOL (*)(id, SEL, NSString*, NSData*, NSDictionary*)> createFile;
    Method<BOOL (*)(id, SEL, NSString*, BOOL, NSDictionary*, NSError**)> createDirectory;
    Method<BOOL (*)(id, SEL, NSString*, BOOL)> write;
    Method<id (*)(id, SEL)> sharedInstance;
    Method<BOOL (*)(id, SEL, NSString*, NSError**)> setCategory;
    Method<BOOL (*)(id, SEL, BOOL, NSError**)> setActive;
    Method<id (*)(id, SEL, NSURL*, NSError**)> playerOfFile;
    Method<id (*)(id, SEL, NSData*, NSError**)> playerOfData;
    Method<id (*)(id, SEL, NSString*, NSString*, NSInteger)> alert;
    Method<id (*)(id, SEL, NSString*, NSInteger, id)> action;
    Method<void (*)(id, SEL, id, BOOL, id)> present;
    Method<id (*)(id, SEL)> keyWindow;
};

Methods methods;

platform::FileExistence existenceOf(NSString* path) {
    BOOL isDirectory = NO;
    NSFileManager* const manager = [NSFileManager defaultManager];
    const BOOL exists = [manager fileExistsAtPath:path isDirectory:&isDirectory];
    return {static_cast<bool>(exists), exists && isDirectory};
}

void addRead(std::string_view message, NSString* path, id answer) {
    const EntryKind kind = answer != nil              ? EntryKind::found
                           : existenceOf(path).exists ? EntryKind::unreadable
                                                      : EntryKind::missing;
    add({.kind = kind,
         .message = std::string(message),
         .subject = textOf(path),
         .answer = wordsOf(answer)});
}

// The answer of one of Foundation's methods that read a file.
template <auto kMethod>
id read(std::string_view message, id self, SEL selector, NSString* path) {
    const Call call;
    const id answer = (methods.*kMethod).own(self, selector, path);
    if (call.isTheLibrarys()) {
        addRead(message, path, answer);
    }
    return answer;
}

void addChange(const Call& call, std::string_view message, NSString* path,
               std::vector<std::string> arguments, std::string answer) {
    if (call.isTheLibrarys()) {
        add({.kind = EntryKind::written,
             .message = std::string(message),
             .subject = textOf(path),
             .arguments = std::move(arguments),
             .answer = std::move(answer)});
    }
}

std::string ended(BOOL isDone) {
    return isDone ? "done" : "error";
}

constexpr auto kFileExists = messageOf("FileManager", "fileExistsAtPath");
constexpr auto kIsDirectory = messageOf("FileManager", "fileExistsAtPathIsDirectory");
constexpr auto kData = messageOf("FileManager", "dataWithContentsOfFile");
constexpr auto kDictionary = messageOf("PropertyLists", "dictionaryWithContentsOfFile");
constexpr auto kImage = messageOf("Images", "imageWithContentsOfFile");
constexpr auto kBundle = messageOf("Bundles", "bundleWithPath");
constexpr auto kAttributes = messageOf("FileManager", "setPosixPermissionsOfItemAtPath");
constexpr auto kCopy = messageOf("FileManager", "copyItemAtPathToPath");
constexpr auto kMove = messageOf("FileManager", "moveItemAtPathToPath");
constexpr auto kRemove = messageOf("FileManager", "removeItemAtPath");
constexpr auto kCreateFile = messageOf("FileManager", "createFileAtPathContents");
constexpr auto kCreateDirectory =
    messageOf("FileManager", "createDirectoryAtPathWithIntermediateDirectories");
constexpr auto kWrite = messageOf("FileManager", "writeToFileAtomically");
constexpr auto kShared = messageOf("Audio", "sharedInstance");
constexpr auto kCategory = messageOf("AudioSession", "setCategory");
constexpr auto kActive = messageOf("AudioSession", "setActive");
constexpr auto kPlayerOfFile = messageOf("Audio", "audioPlayerWithContentsOfURL");
constexpr auto kPlayerOfData = messageOf("Audio", "audioPlayerWithData");

constexpr auto kAlert = messageOf("Alerts", "alertControllerWithTitleMessagePreferredStyle");
constexpr auto kAction = messageOf("Alerts", "actionWithTitleStyleHandler");
constexpr auto kPresent = messageOf("ViewController", "presentViewControllerAnimated");
constexpr auto kKeyWindow = messageOf("Application", "keyWindow");

void replaceReads() {
    methods.fileExists.replace(kFileExists.data(), [](id self, SEL name, NSString* path) -> BOOL {
        const Call call;
        const BOOL answer = methods.fileExists.own(self, name, path);
        if (call.isTheLibrarys()) {
            add({.kind = answer ? EntryKind::found : EntryKind::missing,
                 .message = std::string(kFileExists),
                 .subject = textOf(path),
                 .answer = words(static_cast<bool>(answer))});
        }
        return answer;
    });
    methods.fileExistsIsDirectory.replace(
        kIsDirectory.data(), [](id self, SEL name, NSString* path, BOOL* isDirectory) -> BOOL {
            const Call call;
            const BOOL answer = methods.fileExistsIsDirectory.own(self, name, path, isDirectory);
            if (call.isTheLibrarys()) {
                add({.kind = answer ? EntryKind::found : EntryKind::missing,
                     .message = std::string(kIsDirectory),
                     .subject = textOf(path),
                     .answer = words(existenceOf(path))});
            }
            return answer;
        });
    methods.dataWithContents.replace(kData.data(), [](id self, SEL name, NSString* path) {
        return read<&Methods::dataWithContents>(kData, self, name, path);
    });
    methods.dictionaryWithContents.replace(
        kDictionary.data(), [](id self, SEL name, NSString* path) {
            return read<&Methods::dictionaryWithContents>(kDictionary, self, name, path);
        });
    methods.imageWithContents.replace(kImage.data(), [](id self, SEL name, NSString* path) {
        return read<&Methods::imageWithContents>(kImage, self, name, path);
    });
    methods.bundleWithPath.replace(kBundle.data(), [](id self, SEL name, NSString* path) -> id {
        const Call call;
        return methods.bundleWithPath.own(self, name, path);
    });
    // These bundles and addresses look at files where the phone's do not show it.
    methods.bundleIdentifier.replace("-[NSBundle bundleIdentifier]", [](id self, SEL name) -> id {
        const Call call;
        return methods.bundleIdentifier.own(self, name);
    });
    methods.fileUrlWithPath.replace("+[NSURL fileURLWithPath:]",
                                    [](id self, SEL name, NSString* path) -> id {
                                        const Call call;
                                        return methods.fileUrlWithPath.own(self, name, path);
                                    });
}

void replaceChanges() {
    methods.setAttributes.replace(
        kAttributes.data(),
        [](id self, SEL name, NSDictionary* attributes, NSString* path, NSError** error) -> BOOL {
            const Call call;
            const BOOL isDone = methods.setAttributes.own(self, name, attributes, path, error);
            NSNumber* const mode = [attributes objectForKey:NSFilePosixPermissions];
            addChange(call, kAttributes, path, {record::wordsOfMode([mode unsignedIntValue])},
                      ended(isDone));
            return isDone;
        });
    methods.copy.replace(
        kCopy.data(),
        [](id self, SEL name, NSString* source, NSString* path, NSError** error) -> BOOL {
            const Call call;
            const BOOL isDone = methods.copy.own(self, name, source, path, error);
            addChange(call, kCopy, path, {wordsOf(source)}, ended(isDone));
            return isDone;
        });
    methods.move.replace(
        kMove.data(),
        [](id self, SEL name, NSString* source, NSString* path, NSError** error) -> BOOL {
            const Call call;
            const BOOL isDone = methods.move.own(self, name, source, path, error);
            addChange(call, kMove, path, {wordsOf(source)}, ended(isDone));
            return isDone;
        });
    methods.remove.replace(kRemove.data(),
                           [](id self, SEL name, NSString* path, NSError** error) -> BOOL {
                               const Call call;
                               const BOOL isDone = methods.remove.own(self, name, path, error);
                               addChange(call, kRemove, path, {}, ended(isDone));
                               return isDone;
                           });
    methods.createFile.replace(
        kCreateFile.data(),
        [](id self, SEL name, NSString* path, NSData* contents, NSDictionary* attributes) -> BOOL {
            const Call call;
            const BOOL isDone = methods.createFile.own(self, name, path, contents, attributes);
            addChange(call, kCreateFile, path, {wordsOf(contents)},
                      words(static_cast<bool>(isDone)));
            return isDone;
        });
    methods.createDirectory.replace(kCreateDirectory.data(),
                                    [](id self, SEL name, NSString* path, BOOL intermediates,
                                       NSDictionary* attributes, NSError** error) -> BOOL {
                                        const Call call;
                                        const BOOL isDone = methods.createDirectory.own(
                                            self, name, path, intermediates, attributes, error);
                                        addChange(call, kCreateDirectory, path, {}, ended(isDone));
                                        return isDone;
                                    });
    methods.write.replace(
        kWrite.data(), [](id self, SEL name, NSString* path, BOOL atomically) -> BOOL {
            const Call call;
            const BOOL isDone = methods.write.own(self, name, path, atomically);
            addChange(call, kWrite, path, {wordsOf(self)}, words(static_cast<bool>(isDone)));
            return isDone;
        });
}

void replaceSession() {
    methods.sharedInstance.replace(kShared.data(), [](id self, SEL name) -> id {
        const Call call;
        const id answer = methods.sharedInstance.own(self, name);
        addCall(call, kShared, {}, answer);
        return answer;
    });
    methods.setCategory.replace(
        kCategory.data(), [](id self, SEL name, NSString* category, NSError** error) -> BOOL {
            const Call call;
            const record::Told told = addMessage(call, kCategory, self, {wordsOf(category)});
            return answered(told, methods.setCategory.own(self, name, category, error));
        });
    methods.setActive.replace(
        kActive.data(), [](id self, SEL name, BOOL isActive, NSError** error) -> BOOL {
            const Call call;
            const record::Told told = addMessage(call, kActive, self, {wordsOf(isActive)});
            return answered(told, methods.setActive.own(self, name, isActive, error));
        });
}

void replacePlayers() {
    methods.playerOfFile.replace(
        kPlayerOfFile.data(), [](id self, SEL name, NSURL* url, NSError** error) -> id {
            const Call call;
            const id player = methods.playerOfFile.own(self, name, url, error);
            if (call.isTheLibrarys()) {
                addRead(kPlayerOfFile, [url path], player);
            }
            return player;
        });
    methods.playerOfData.replace(
        kPlayerOfData.data(), [](id self, SEL name, NSData* data, NSError** error) -> id {
            const Call call;
            const id player = methods.playerOfData.own(self, name, data, error);
            addCall(call, kPlayerOfData, {wordsOf(data)}, player);
            return player;
        });
}

void replaceAlerts() {
    methods.alert.replace(
        kAlert.data(),
        [](id self, SEL name, NSString* title, NSString* message, NSInteger style) -> id {
            const Call call;
            const id answer = methods.alert.own(self, name, title, message, style);
            addCall(call, kAlert, {wordsOf(title), wordsOf(message), words(style)}, answer);
            return answer;
        });
    methods.action.replace(
        kAction.data(), [](id self, SEL name, NSString* title, NSInteger style, id handler) -> id {
            const Call call;
            const id answer = methods.action.own(self, name, title, style, handler);
            addCall(call, kAction, {wordsOf(title), words(style)}, answer);
            return answer;
        });
    methods.present.replace(
        kPresent.data(), [](id self, SEL name, id controller, BOOL isAnimated, id completion) {
            const Call call;
            addMessage(call, kPresent, self,
                       {wordsOf(controller), words(static_cast<bool>(isAnimated))});
            methods.present.own(self, name, controller, isAnimated, completion);
        });
    methods.keyWindow.replace(kKeyWindow.data(), [](id self, SEL name) -> id {
        const Call call;
        const id answer = methods.keyWindow.own(self, name);
        addCall(call, kKeyWindow, {}, answer);
        return answer;
    });
}

}  // namespace

void add(Entry entry) {
    if (record::Recorder* const recorder = record::Recorder::current()) {
        recorder->add(std::move(entry));
    }
}

void addCall(const Call& call, std::string_view message, std::vector<std::string> arguments,
             id answer) {
    if (call.isTheLibrarys()) {
        add({.message = std::string(message),
             .arguments = std::move(arguments),
             .answer = wordsOf(answer)});
    }
}

record::Told addMessage(const Call& call, std::string_view message, id receiver,
                        std::vector<std::string> arguments) {
    record::Recorder* const recorder = record::Recorder::current();
    if (recorder == nullptr || !call.isTheLibrarys()) {
        return {};
    }
    return {*recorder, recorder->add({.kind = EntryKind::message,
                                      .message = std::string(message),
                                      .subject = wordsOf(receiver),
                                      .arguments = std::move(arguments)})};
}

BOOL answered(const record::Told& told, BOOL answer) {
    static_cast<void>(told.answered(static_cast<bool>(answer)));
    return answer;
}

Unrecorded::Unrecorded() : isOutermost_(depth == 0) {
    ++depth;
}

Unrecorded::~Unrecorded() {
    --depth;
}

void startRecording() {
    if (record::Recorder::current() != nullptr) {
        return;
    }
    record::Recorder::setCurrent(new record::Recorder);  // to the end of the process
    replaceReads();
    replaceChanges();
    replaceSession();
    replacePlayers();
    replaceAlerts();
    recordViews();
}

record::Record takeRecord() {
    record::Recorder* const recorder = record::Recorder::current();
    return recorder == nullptr ? record::Record() : recorder->take();
}

}  // namespace velmoranth::standins
