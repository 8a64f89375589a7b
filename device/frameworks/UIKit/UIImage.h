// UIImage, as far as the library sends to it.
#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGImage.h>
#import <Foundation/Foundation.h>

@class CIImage;

@interface UIImage : NSObject
+ (UIImage*)imageWithContentsOfFile:(NSString*)path;
+ (UIImage*)imageWithCGImage:(CGImageRef)image;
+ (UIImage*)_applicationIconImageForBundleIdentifier:(NSString*)identifier
                                              format:(int)format
                                               scale:(CGFloat)scale;
- (CGSize)size;
- (CGFloat)scale;
- (CGImageRef)CGImage;
- (CIImage*)CIImage;
- (void)drawInRect:(CGRect)rect;
@end

extern "C" NSData* UIImagePNGRepresentation(UIImage* image);
