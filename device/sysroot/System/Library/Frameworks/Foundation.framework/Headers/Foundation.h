// Foundation, as far as the library sends to it.
#pragma once

#import <CoreFoundation/CoreFoundation.h>
#include <objc/objc.h>
#include <stdarg.h>

// The root class, its protocols and the basic types.

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
typedef double CGFloat;

#define NS_FORMAT_FUNCTION(text, first) __attribute__((format(__NSString__, text, first)))

typedef struct _NSRange {
    NSUInteger location;
    NSUInteger length;
} NSRange;

static inline NSRange NSMakeRange(NSUInteger location, NSUInteger length) {
    NSRange range = {location, length};
    return range;
}

typedef struct {
    unsigned long state;
    id __unsafe_unretained* itemsPtr;
    unsigned long* mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@class NSString;

@protocol NSObject
- (Class)superclass;
- (Class)class;
- (instancetype)self;
- (BOOL)isKindOfClass:(Class)cls;
- (BOOL)respondsToSelector:(SEL)selector;
- (id)performSelector:(SEL)selector;
- (instancetype)retain;
- (oneway void)release;
- (instancetype)autorelease;
- (NSString*)description;
@end

@protocol NSCopying
@end

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)count;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject> {
    Class isa;
}
+ (void)initialize;
+ (instancetype)alloc;
+ (Class)class;
+ (BOOL)instancesRespondToSelector:(SEL)selector;
- (instancetype)init;
- (void)dealloc;
@end

@interface NSObject (NSKeyValueCoding)
- (id)valueForKey:(NSString*)key;
@end

// Strings, numbers and data.

typedef unsigned short unichar;
typedef NSUInteger NSStringEncoding;

enum : NSStringEncoding { NSASCIIStringEncoding = 1 };

@interface NSString : NSObject <NSCopying>
- (instancetype)initWithCharacters:(const unichar*)characters length:(NSUInteger)length;
- (instancetype)initWithBytes:(const void*)bytes
                       length:(NSUInteger)length
                     encoding:(NSStringEncoding)encoding;
- (NSUInteger)length;
- (void)getCharacters:(unichar*)buffer range:(NSRange)range;
@end

@interface NSNumber : NSObject <NSCopying>
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithUnsignedInt:(unsigned int)value;
- (const char*)objCType;
- (BOOL)boolValue;
- (long long)longLongValue;
- (double)doubleValue;
@end

@interface NSData : NSObject <NSCopying>
+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length;
+ (instancetype)dataWithContentsOfFile:(NSString*)path;
- (instancetype)initWithBytesNoCopy:(void*)bytes
                             length:(NSUInteger)length
                       freeWhenDone:(BOOL)isFreedWhenDone;
- (NSUInteger)length;
- (const void*)bytes;
- (BOOL)writeToFile:(NSString*)path atomically:(BOOL)isAtomic;
@end

// Arrays and dictionaries.

@interface NSArray : NSObject <NSCopying, NSFastEnumeration>
- (NSUInteger)count;
- (id)objectAtIndex:(NSUInteger)index;
@end

@interface NSDictionary : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)dictionaryWithObject:(id)object forKey:(id<NSCopying>)key;
+ (instancetype)dictionaryWithContentsOfFile:(NSString*)path;
- (id)objectForKey:(id)key;
@end

// Errors.

@interface NSError : NSObject <NSCopying>
+ (instancetype)errorWithDomain:(NSString*)domain
                           code:(NSInteger)code
                       userInfo:(NSDictionary*)userInfo;
- (NSString*)domain;
- (NSInteger)code;
- (NSString*)localizedDescription;
@end

// Points in time, calendars and their texts.

@interface NSDate : NSObject <NSCopying>
+ (instancetype)date;
+ (instancetype)dateWithTimeIntervalSinceReferenceDate:(NSTimeInterval)seconds;
- (NSTimeInterval)timeIntervalSinceReferenceDate;
@end

typedef NSUInteger NSCalendarUnit;

enum : NSCalendarUnit { NSCalendarUnitDay = 1UL << 4 };

@interface NSDateComponents : NSObject <NSCopying>
- (NSInteger)day;
@end

@interface NSCalendar : NSObject <NSCopying>
- (id)initWithCalendarIdentifier:(NSString*)identifier;
- (NSDateComponents*)components:(NSCalendarUnit)units fromDate:(NSDate*)date;
@end

@interface NSDateFormatter : NSObject <NSCopying>
- (void)setDateFormat:(NSString*)format;
- (NSString*)stringFromDate:(NSDate*)date;
@end

// Bundles, files and the process.

@interface NSBundle : NSObject
+ (NSBundle*)bundleWithPath:(NSString*)path;
- (NSString*)bundleIdentifier;
- (BOOL)load;
@end

@interface NSURL : NSObject <NSCopying>
+ (NSURL*)fileURLWithPath:(NSString*)path;
@end

@interface NSProcessInfo : NSObject
+ (NSProcessInfo*)processInfo;
@end

@interface NSFileManager : NSObject
+ (NSFileManager*)defaultManager;
- (BOOL)fileExistsAtPath:(NSString*)path;
- (BOOL)fileExistsAtPath:(NSString*)path isDirectory:(BOOL*)isDirectory;
- (BOOL)copyItemAtPath:(NSString*)source toPath:(NSString*)destination error:(NSError**)error;
- (BOOL)moveItemAtPath:(NSString*)source toPath:(NSString*)destination error:(NSError**)error;
- (BOOL)removeItemAtPath:(NSString*)path error:(NSError**)error;
- (BOOL)createFileAtPath:(NSString*)path
                contents:(NSData*)contents
              attributes:(NSDictionary*)attributes;
- (BOOL)createDirectoryAtPath:(NSString*)path
    withIntermediateDirectories:(BOOL)createsIntermediates
                     attributes:(NSDictionary*)attributes
                          error:(NSError**)error;
@end

__BEGIN_DECLS
extern NSString* const NSFilePosixPermissions;
NSString* NSHomeDirectory(void);
void NSLog(NSString* format, ...) NS_FORMAT_FUNCTION(1, 2);
__END_DECLS
