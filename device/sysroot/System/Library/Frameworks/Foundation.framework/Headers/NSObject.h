// The root class, its protocols and Foundation's basic types.
#pragma once

#import <CoreFoundation/CoreFoundation.h>
#include <objc/objc.h>
#include <stdarg.h>

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
typedef double CGFloat;
typedef struct _NSZone NSZone;

#define NSIntegerMax __LONG_MAX__
#define NSIntegerMin (-__LONG_MAX__ - 1L)
#define NSUIntegerMax (__LONG_MAX__ * 2UL + 1UL)
#define NSNotFound NSIntegerMax

#define NS_ENUM(type, name) \
    enum name : type;       \
    typedef enum name name; \
    enum name : type
#define NS_OPTIONS(type, name) NS_ENUM(type, name)
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

@class NSArray, NSDictionary, NSException, NSString;
@class NSCoder, NSInvocation, NSMethodSignature;

@protocol NSObject
- (BOOL)isEqual:(id)object;
- (NSUInteger)hash;
- (Class)superclass;
- (Class)class;
- (instancetype)self;
- (id)performSelector:(SEL)selector;
- (id)performSelector:(SEL)selector withObject:(id)object;
- (BOOL)isKindOfClass:(Class)cls;
- (BOOL)isMemberOfClass:(Class)cls;
- (BOOL)conformsToProtocol:(Protocol*)protocol;
- (BOOL)respondsToSelector:(SEL)selector;
- (instancetype)retain;
- (oneway void)release;
- (instancetype)autorelease;
- (NSUInteger)retainCount;
- (NSString*)description;
@end

@protocol NSCopying
- (id)copyWithZone:(NSZone*)zone;
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
+ (void)load;
+ (void)initialize;
+ (instancetype)new;
+ (instancetype)allocWithZone:(NSZone*)zone;
+ (instancetype)alloc;
+ (Class)class;
+ (Class)superclass;
+ (BOOL)instancesRespondToSelector:(SEL)selector;
+ (NSString*)description;
- (instancetype)init;
- (void)dealloc;
- (id)copy;
- (id)mutableCopy;
@end

@interface NSObject (NSKeyValueCoding)
- (id)valueForKey:(NSString*)key;
- (void)setValue:(id)value forKey:(NSString*)key;
- (id)valueForKeyPath:(NSString*)keyPath;
- (id)valueForUndefinedKey:(NSString*)key;
@end

@interface NSAutoreleasePool : NSObject
- (void)drain;
@end

__BEGIN_DECLS
NSString* NSStringFromClass(Class cls);
Class NSClassFromString(NSString* name);
NSString* NSStringFromSelector(SEL selector);
SEL NSSelectorFromString(NSString* name);
void NSLog(NSString* format, ...) NS_FORMAT_FUNCTION(1, 2);
__END_DECLS
