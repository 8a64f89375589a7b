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
