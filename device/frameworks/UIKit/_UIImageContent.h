// What an image draws.
#pragma once

#import <Foundation/Foundation.h>

@class CUINamedVectorGlyph;

@interface _UIImageContent : NSObject
- (CUINamedVectorGlyph*)vectorGlyph;
@end
