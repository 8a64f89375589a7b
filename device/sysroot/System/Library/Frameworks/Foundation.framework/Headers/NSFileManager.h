// Files by path.
#pragma once

#import <Foundation/NSObject.h>

@class NSData, NSError;

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
__END_DECLS
