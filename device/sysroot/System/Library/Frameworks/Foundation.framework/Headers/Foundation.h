// Foundation, as far as the library sends to it.
#pragma once

#import <Foundation/NSBundle.h>
#import <Foundation/NSCollections.h>
#import <Foundation/NSDate.h>
#import <Foundation/NSError.h>
#import <Foundation/NSFileManager.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>
#import <Foundation/NSValue.h>
