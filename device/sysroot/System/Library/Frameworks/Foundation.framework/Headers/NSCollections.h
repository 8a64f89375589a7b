// Arrays, dictionaries and sets.
#pragma once

#import <Foundation/NSObject.h>

@interface NSEnumerator : NSObject <NSFastEnumeration>
- (id)nextObject;
@end

@interface NSArray : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)array;
+ (instancetype)arrayWithObject:(id)object;
+ (instancetype)arrayWithObjects:(const id[])objects count:(NSUInteger)count;
+ (instancetype)arrayWithObjects:(id)first, ... __attribute__((sentinel(0, 1)));
- (instancetype)initWithObjects:(const id[])objects count:(NSUInteger)count;
- (NSUInteger)count;
- (id)objectAtIndex:(NSUInteger)index;
- (id)firstObject;
- (id)lastObject;
- (BOOL)containsObject:(id)object;
- (NSUInteger)indexOfObjectIdenticalTo:(id)object;
- (BOOL)isEqualToArray:(NSArray*)other;
@end

@interface NSMutableArray : NSArray
+ (instancetype)arrayWithCapacity:(NSUInteger)count;
- (void)addObject:(id)object;
- (void)insertObject:(id)object atIndex:(NSUInteger)index;
- (void)removeObjectAtIndex:(NSUInteger)index;
- (void)removeLastObject;
- (void)removeAllObjects;
@end

@interface NSDictionary : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)dictionary;
+ (instancetype)dictionaryWithObject:(id)object forKey:(id<NSCopying>)key;
+ (instancetype)dictionaryWithObjects:(const id[])objects
                              forKeys:(const id<NSCopying>[])keys
                                count:(NSUInteger)count;
+ (instancetype)dictionaryWithObjectsAndKeys:(id)first, ... __attribute__((sentinel(0, 1)));
+ (instancetype)dictionaryWithContentsOfFile:(NSString*)path;
- (NSUInteger)count;
- (id)objectForKey:(id)key;
- (NSArray*)allKeys;
- (NSEnumerator*)keyEnumerator;
- (BOOL)isEqualToDictionary:(NSDictionary*)other;
@end

@interface NSMutableDictionary : NSDictionary
+ (instancetype)dictionaryWithCapacity:(NSUInteger)count;
- (void)setObject:(id)object forKey:(id<NSCopying>)key;
- (void)removeObjectForKey:(id)key;
@end

@interface NSSet : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)set;
+ (instancetype)setWithObject:(id)object;
- (NSUInteger)count;
- (id)anyObject;
- (BOOL)containsObject:(id)object;
@end
