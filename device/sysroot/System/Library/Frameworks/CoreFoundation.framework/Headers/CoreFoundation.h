// CoreFoundation's references, its version number and its notification centres.
#pragma once

#include <stdint.h>
#include <sys/cdefs.h>

typedef long CFIndex;
typedef const void* CFTypeRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFNotificationCenter* CFNotificationCenterRef;

typedef void (*CFNotificationCallback)(CFNotificationCenterRef center, void* observer,
                                       CFStringRef name, const void* object,
                                       CFDictionaryRef userInfo);

typedef enum CFNotificationSuspensionBehavior : CFIndex {
    CFNotificationSuspensionBehaviorDrop = 1,
    CFNotificationSuspensionBehaviorCoalesce = 2,
    CFNotificationSuspensionBehaviorHold = 3,
    CFNotificationSuspensionBehaviorDeliverImmediately = 4
} CFNotificationSuspensionBehavior;

__BEGIN_DECLS
extern double kCFCoreFoundationVersionNumber;

CFTypeRef CFRetain(CFTypeRef);
void CFRelease(CFTypeRef);

CFNotificationCenterRef CFNotificationCenterGetDarwinNotifyCenter(void);
void CFNotificationCenterAddObserver(CFNotificationCenterRef, const void* observer,
                                     CFNotificationCallback, CFStringRef name, const void* object,
                                     CFNotificationSuspensionBehavior);
void CFNotificationCenterRemoveObserver(CFNotificationCenterRef, const void* observer,
                                        CFStringRef name, const void* object);
void CFNotificationCenterPostNotification(CFNotificationCenterRef, CFStringRef name,
                                          const void* object, CFDictionaryRef userInfo,
                                          unsigned char deliverImmediately);
__END_DECLS
