// Strings.
#pragma once

#import <Foundation/NSObject.h>

typedef unsigned short unichar;
typedef NSUInteger NSStringEncoding;

enum : NSStringEncoding {
    NSASCIIStringEncoding = 1,
    NSUTF8StringEncoding = 4,
    NSISOLatin1StringEncoding = 5,
    NSUnicodeStringEncoding = 10,
    NSUTF16StringEncoding = NSUnicodeStringEncoding
};

@interface NSString : NSObject <NSCopying>
+ (instancetype)string;
+ (instancetype)stringWithString:(NSString*)string;
+ (instancetype)stringWithCharacters:(const unichar*)characters length:(NSUInteger)length;
+ (instancetype)stringWithUTF8String:(const char*)text;
+ (instancetype)stringWithFormat:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
- (instancetype)initWithCharacters:(const unichar*)characters length:(NSUInteger)length;
- (instancetype)initWithBytes:(const void*)bytes
                       length:(NSUInteger)length
                     encoding:(NSStringEncoding)encoding;
- (instancetype)initWithUTF8String:(const char*)text;
- (instancetype)initWithFormat:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
- (instancetype)initWithFormat:(NSString*)format
                     arguments:(va_list)arguments NS_FORMAT_FUNCTION(1, 0);
- (NSUInteger)length;
- (unichar)characterAtIndex:(NSUInteger)index;
- (void)getCharacters:(unichar*)buffer range:(NSRange)range;
- (const char*)UTF8String;
- (BOOL)isEqualToString:(NSString*)other;
- (BOOL)hasPrefix:(NSString*)text;
- (BOOL)hasSuffix:(NSString*)text;
- (NSString*)lastPathComponent;
- (NSString*)pathExtension;
- (NSString*)stringByAppendingString:(NSString*)text;
- (NSString*)stringByAppendingPathComponent:(NSString*)text;
- (NSString*)stringByDeletingLastPathComponent;
- (BOOL)boolValue;
- (double)doubleValue;
- (float)floatValue;
- (int)intValue;
- (NSInteger)integerValue;
@end

@interface NSMutableString : NSString
- (void)appendString:(NSString*)text;
@end
