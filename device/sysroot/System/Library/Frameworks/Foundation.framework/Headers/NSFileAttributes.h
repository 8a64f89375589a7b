// NSFileManager, where it changes what a file has beside its contents.
#pragma once

#import <Foundation/Foundation.h>

@interface NSFileManager (NSFileAttributes)
- (BOOL)setAttributes:(NSDictionary*)attributes ofItemAtPath:(NSString*)path error:(NSError**)error;
@end
