#import "device/standins/system.h"

#import "device/standins/messages.h"
#include "record/operations.h"
#include "record/words.h"
#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>
#import <Foundation/NSOperatingSystemVersion.h>
#include <dispatch/dispatch.h>
#include <objc/runtime.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <string_view>

double kCFCoreFoundationVersionNumber = 1674.102;

@interface NSLocale (PhoneLocale)
+ (id)localeOfTheTest;
@end

namespace velmoranth::standins {
namespace {

struct Observer {
    const void* observer;
    CFNotificationCallback callback;
    std::string name;
    const void* object;
};

struct System {
    std::mutex mutex;
    std::vector<std::string> log;
    NSOperatingSystemVersion version = {13, 3, 0};
    NSLocale* locale = nil;
    std::string machine = "iPhone12,3";
    std::string home = "/var/mobile";
    std::vector<Observer> observers;
};

// Never destroyed: the library may still log after main.
System& systemState() {
    static auto* const instance = new System;
    return *instance;
}

// GNUstep says with its own place in its sources where the phone is silent.
bool isOfGnustep(const std::string& line) {
    return line.starts_with("File NS") && line.find(".m: ") != std::string::npos;
}

NSString* native(const std::string& text) {
    return [NSString stringWithUTF8String:text.c_str()];
}

std::string nameIn(CFStringRef text) {
    return [static_cast<NSString*>(static_cast<const void*>(text)) UTF8String];
}

}  // namespace

std::vector<std::string> logLines() {
    const std::scoped_lock lock(systemState().mutex);
    return systemState().log;
}

void clearLog() {
    const std::scoped_lock lock(systemState().mutex);
    systemState().log.clear();
}

void setSystemVersion(int major, int minor, int patch, double coreFoundationVersionNumber) {
    const std::scoped_lock lock(systemState().mutex);
    systemState().version = {major, minor, patch};
    kCFCoreFoundationVersionNumber = coreFoundationVersionNumber;
}

void setLocale(const std::string& identifier) {
    NSLocale* locale = [[NSLocale alloc] initWithLocaleIdentifier:native(identifier)];
    {
        const std::scoped_lock lock(systemState().mutex);
        std::swap(systemState().locale, locale);
    }
    [locale release];
    const IMP given = method_getImplementation(
        class_getClassMethod([NSLocale class], @selector(localeOfTheTest)));
    for (const SEL selector : { @selector(currentLocale), @selector(autoupdatingCurrentLocale) }) {
        if (const Method method = class_getClassMethod([NSLocale class], selector)) {
            method_setImplementation(method, given);
        }
    }
}

void setMachine(const std::string& name) {
    const std::scoped_lock lock(systemState().mutex);
    systemState().machine = name;
}

void setHomeDirectory(const std::string& path) {
    const std::scoped_lock lock(systemState().mutex);
    systemState().home = path;
}

void postDarwinNotification(const std::string& name) {
    @autoreleasepool {
        CFNotificationCenterPostNotification(
            CFNotificationCenterGetDarwinNotifyCenter(),
            static_cast<CFStringRef>(static_cast<const void*>(native(name))), nullptr, nullptr, 1);
    }
}

}  // namespace velmoranth::standins

using velmoranth::record::messageOf;
using velmoranth::standins::called;
using velmoranth::standins::systemState;

extern "C" {

void NSLogv(NSString* format, va_list arguments) {
    NSString* const text = [[NSString alloc] initWithFormat:format arguments:arguments];
    const char* const bytes = [text UTF8String];
    const std::string line = bytes == nullptr ? "" : bytes;
    if (!velmoranth::standins::isOfGnustep(line)) {
        const std::scoped_lock lock(systemState().mutex);
        systemState().log.push_back(line);
        velmoranth::standins::note(
            {.kind = velmoranth::record::EntryKind::log, .message = {}, .subject = line});
    }
    [text release];
}

void NSLog(NSString* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    NSLogv(format, arguments);
    va_end(arguments);
}

NSString* NSHomeDirectory(void) {
    const std::scoped_lock lock(systemState().mutex);
    return velmoranth::standins::native(systemState().home);
}

int setuid(uid_t user) noexcept {
    return called(messageOf("LibSystem", "setuid"), user).answered(0);
}

int setgid(gid_t group) noexcept {
    return called(messageOf("LibSystem", "setgid"), group).answered(0);
}

int uname(struct utsname* names) noexcept {
    const long result = syscall(SYS_uname, names);
    const std::scoped_lock lock(systemState().mutex);
    std::snprintf(names->machine, sizeof names->machine, "%s", systemState().machine.c_str());
    return static_cast<int>(result);
}

CFNotificationCenterRef CFNotificationCenterGetDarwinNotifyCenter(void) {
    return static_cast<CFNotificationCenterRef>(static_cast<void*>(&systemState()));
}

void CFNotificationCenterAddObserver(CFNotificationCenterRef /*center*/, const void* observer,
                                     CFNotificationCallback callback, CFStringRef name,
                                     const void* object,
                                     CFNotificationSuspensionBehavior suspensionBehavior) {
    const std::string text = velmoranth::standins::nameIn(name);
    using velmoranth::standins::wordsOfPointer;
    called(messageOf("DarwinNotificationCenter", "addObserver"), wordsOfPointer(observer),
           velmoranth::standins::Words{velmoranth::record::words(text)}, wordsOfPointer(object),
           static_cast<long>(suspensionBehavior));
    const std::scoped_lock lock(systemState().mutex);
    systemState().observers.push_back({observer, callback, text, object});
}

void CFNotificationCenterRemoveObserver(CFNotificationCenterRef /*center*/, const void* observer,
                                        CFStringRef name, const void* /*object*/) {
    const std::string text = velmoranth::standins::nameIn(name);
    const std::scoped_lock lock(systemState().mutex);
    std::erase_if(systemState().observers, [&](const auto& other) {
        return other.observer == observer && other.name == text;
    });
}

void CFNotificationCenterPostNotification(CFNotificationCenterRef center, CFStringRef name,
                                          const void* /*object*/, CFDictionaryRef /*userInfo*/,
                                          unsigned char /*deliverImmediately*/) {
    const std::string text = velmoranth::standins::nameIn(name);
    std::vector<velmoranth::standins::Observer> observers;
    {
        const std::scoped_lock lock(systemState().mutex);
        observers = systemState().observers;
    }
    // The centre carries neither object nor userInfo.
    for (const velmoranth::standins::Observer& each : observers) {
        if (each.name == text) {
            const velmoranth::standins::Observer observer = each;  // the block's own
            dispatch_async(dispatch_get_main_queue(), ^{
              NSString* const posted = velmoranth::standins::native(observer.name);
              observer.callback(center, const_cast<void*>(observer.observer),
                                static_cast<CFStringRef>(static_cast<const void*>(posted)), nullptr,
                                nullptr);
            });
        }
    }
}

}  // extern "C"

@implementation NSProcessInfo (NSOperatingSystemVersion)

- (NSOperatingSystemVersion)operatingSystemVersion {
    const std::scoped_lock lock(systemState().mutex);
    return systemState().version;
}

- (BOOL)isOperatingSystemAtLeastVersion:(NSOperatingSystemVersion)version {
    const auto noted = velmoranth::standins::asked(self, _cmd, version.majorVersion,
                                                   version.minorVersion, version.patchVersion);
    const NSOperatingSystemVersion running = [self operatingSystemVersion];
    const std::array<NSInteger, 3> have = {running.majorVersion, running.minorVersion,
                                           running.patchVersion};
    const std::array<NSInteger, 3> wanted = {version.majorVersion, version.minorVersion,
                                             version.patchVersion};
    return noted.answered(static_cast<BOOL>(have >= wanted));
}

@end

@implementation NSLocale (PhoneLocale)

+ (id)localeOfTheTest {
    const std::scoped_lock lock(systemState().mutex);
    return [[systemState().locale retain] autorelease];
}

@end

// That a category takes a method's place is what it is for here.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSObject (PhoneKeyValueCoding)

// GNUstep words it otherwise.
- (id)valueForUndefinedKey:(NSString*)key {
    NSString* const reason =
        [NSString stringWithFormat:@"[%@ valueForUndefinedKey:]: this class is not key value "
                                   @"coding-compliant for the key %@.",
                                   self, key];
    [[NSException exceptionWithName:NSUndefinedKeyException reason:reason userInfo:nil] raise];
    return nil;
}

@end

@implementation NSError (PhoneDescription)

// GNUstep gives the localized description alone.
- (NSString*)description {
    NSMutableArray* const details = [NSMutableArray array];
    NSDictionary* const userInfo = [self userInfo];
    for (id key in [[userInfo allKeys] sortedArrayUsingSelector:@selector(compare:)]) {
        // The key has another value there.
        NSString* const name =
            [key isEqual:NSLocalizedDescriptionKey] ? @"NSLocalizedDescription" : key;
        [details addObject:[NSString stringWithFormat:@"%@=%@", name, [userInfo objectForKey:key]]];
    }
    NSString* const rest =
        [details count] == 0 ? @""
                             : [NSString stringWithFormat:@" UserInfo={%@}",
                                                          [details componentsJoinedByString:@", "]];
    return [NSString stringWithFormat:@"Error Domain=%@ Code=%ld \"%@\"%@", [self domain],
                                      static_cast<long>([self code]), [self localizedDescription],
                                      rest];
}

@end

@implementation NSBundle (PhoneLayout)

// The phone's bundles hold their Info.plist beside their other files, where GNUstep does not look.
- (NSString*)bundleIdentifier {
    NSString* const path = [[self bundlePath] stringByAppendingPathComponent:@"Info.plist"];
    return [[NSDictionary dictionaryWithContentsOfFile:path] objectForKey:@"CFBundleIdentifier"];
}

@end

@implementation NSDictionary (PhonePropertyLists)

// GNUstep takes files for text; the phone's property lists have a binary form as well.
+ (id)dictionaryWithContentsOfFile:(NSString*)path {
    NSData* const data = [NSData dataWithContentsOfFile:path];
    constexpr std::string_view kBinary = "bplist";
    if ([data length] < kBinary.size() ||
        std::memcmp([data bytes], kBinary.data(), kBinary.size()) != 0) {
        return [[[self alloc] initWithContentsOfFile:path] autorelease];
    }
    @try {
        const id list = [NSPropertyListSerialization propertyListWithData:data
                                                                  options:NSPropertyListImmutable
                                                                   format:nullptr
                                                                    error:nullptr];
        return [list isKindOfClass:[NSDictionary class]] ? list : nil;
    } @catch (NSException*) {
        return nil;  // GNUstep raises where the phone reports an error
    }
}

@end
