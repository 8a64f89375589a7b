// Errors and exceptions.
#pragma once

#import <Foundation/NSObject.h>

@interface NSError : NSObject <NSCopying>
+ (instancetype)errorWithDomain:(NSString*)domain
                           code:(NSInteger)code
                       userInfo:(NSDictionary*)userInfo;
- (NSString*)domain;
- (NSInteger)code;
- (NSDictionary*)userInfo;
- (NSString*)localizedDescription;
@end

@interface NSException : NSObject <NSCopying>
+ (NSException*)exceptionWithName:(NSString*)name
                           reason:(NSString*)reason
                         userInfo:(NSDictionary*)userInfo;
- (NSString*)name;
- (NSString*)reason;
- (NSDictionary*)userInfo;
- (void)raise;
@end

__BEGIN_DECLS
extern NSString* const NSCocoaErrorDomain;
extern NSString* const NSPOSIXErrorDomain;
extern NSString* const NSLocalizedDescriptionKey;
__END_DECLS
