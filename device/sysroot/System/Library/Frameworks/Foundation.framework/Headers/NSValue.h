// Numbers, data and the null object.
#pragma once

#import <Foundation/NSObject.h>

@interface NSValue : NSObject <NSCopying>
+ (NSValue*)valueWithPointer:(const void*)pointer;
- (void*)pointerValue;
- (const char*)objCType;
@end

@interface NSNumber : NSValue
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithUnsignedInt:(unsigned int)value;
+ (NSNumber*)numberWithInteger:(NSInteger)value;
+ (NSNumber*)numberWithUnsignedInteger:(NSUInteger)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithUnsignedLongLong:(unsigned long long)value;
+ (NSNumber*)numberWithFloat:(float)value;
+ (NSNumber*)numberWithDouble:(double)value;
- (BOOL)boolValue;
- (int)intValue;
- (unsigned int)unsignedIntValue;
- (NSInteger)integerValue;
- (NSUInteger)unsignedIntegerValue;
- (long long)longLongValue;
- (unsigned long long)unsignedLongLongValue;
- (float)floatValue;
- (double)doubleValue;
@end

@interface NSData : NSObject <NSCopying>
+ (instancetype)data;
+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length;
+ (instancetype)dataWithContentsOfFile:(NSString*)path;
- (instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)length;
- (instancetype)initWithBytesNoCopy:(void*)bytes
                             length:(NSUInteger)length
                       freeWhenDone:(BOOL)isFreedWhenDone;
- (NSUInteger)length;
- (const void*)bytes;
- (BOOL)writeToFile:(NSString*)path atomically:(BOOL)isAtomic;
@end

@interface NSMutableData : NSData
- (void*)mutableBytes;
- (void)appendBytes:(const void*)bytes length:(NSUInteger)length;
@end

@interface NSNull : NSObject <NSCopying>
+ (NSNull*)null;
@end
