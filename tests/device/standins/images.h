// UIKit's images, image contexts and fonts for tests. Files are really opened, but only the header
// of a PNG is read: an image has its file's size and bytes, and a bitmap of zeroes.
#pragma once

#include "device/standins/core_graphics.h"
#include "device/standins/standin.h"

#include <cstddef>
#include <string>

@class CUINamedVectorGlyph;

@interface UIImage : StandIn {
  @public
    CGSize pixels_;
    CGFloat scale_;
    CGImageRef bitmap_;
    NSString* path_;
    NSData* file_;
    id coreImage_;
}

+ (UIImage*)imageWithContentsOfFile:(NSString*)path;
+ (UIImage*)imageWithCGImage:(CGImageRef)image;
- (id)initWithCGImage:(CGImageRef)image scale:(CGFloat)scale orientation:(long)orientation;
- (id)initWithContentsOfFile:(NSString*)path;
// Without a bitmap.
- (id)initWithCIImage:(id)image;
- (CGSize)size;
- (CGFloat)scale;
- (CGImageRef)CGImage;
- (id)CIImage;
- (void)drawInRect:(CGRect)rect;

// Those that give images by name; each notes its call and answers nil, or what setAnswer or
// answerWith gave it.
+ (UIImage*)imageNamed:(NSString*)name
              inBundle:(NSBundle*)bundle
     withConfiguration:(id)configuration;
+ (UIImage*)imageNamed:(NSString*)name
                         inBundle:(NSBundle*)bundle
    compatibleWithTraitCollection:(id)traits;
+ (UIImage*)imageNamed:(NSString*)name inBundle:(NSBundle*)bundle;
+ (UIImage*)_imageNamed:(NSString*)name withTrait:(id)trait;
+ (UIImage*)imageWithContentsOfCPBitmapFile:(NSString*)path flags:(int)flags;
+ (UIImage*)kitImageNamed:(NSString*)name;
+ (UIImage*)_kitImageNamed:(NSString*)name withTrait:(id)trait;
+ (UIImage*)systemImageNamed:(NSString*)name;
+ (UIImage*)_applicationIconImageForBundleIdentifier:(NSString*)identifier
                                              format:(int)format
                                               scale:(CGFloat)scale;
@end

@interface UIImageAsset : StandIn {
    // As on the phone, where the library reads it by its name.
    NSBundle* _containingBundle;
}

- (id)initWithBundle:(NSBundle*)bundle;
@end

@interface _UIImageContent : StandIn {
    CUINamedVectorGlyph* glyph_;
    CGImageRef bitmap_;
}

- (id)initWithVectorGlyph:(CUINamedVectorGlyph*)glyph CGImage:(CGImageRef)image;
- (CUINamedVectorGlyph*)vectorGlyph;
- (CGImageRef)CGImage;
@end

@interface UIFont : StandIn {
    NSString* name_;
    CGFloat size_;
}

// Nil but for the names of addFont.
+ (UIFont*)fontWithName:(NSString*)name size:(CGFloat)size;
- (NSString*)fontName;
- (CGFloat)pointSize;
@end

extern "C" {
NSData* UIImagePNGRepresentation(UIImage* image);
void UIGraphicsBeginImageContextWithOptions(CGSize size, BOOL opaque, CGFloat scale);
CGContextRef UIGraphicsGetCurrentContext(void);
UIImage* UIGraphicsGetImageFromCurrentImageContext(void);
void UIGraphicsEndImageContext(void);
}

namespace velmoranth::standins {

// An autoreleased image with a bitmap of so many pixels.
[[nodiscard]] UIImage* imageOfPixels(std::size_t width, std::size_t height, double scale = 1);

// The file that the image was made from; "" for any other.
[[nodiscard]] std::string pathOf(id image);

// What +[UIImage <selector>] answers from now on, nil included, which all answer at first. The
// image is held until another takes its place.
void answerWith(const std::string& selector, id image);

void addFont(const std::string& name);

// The size of a font that is asked for in none.
inline constexpr double kSystemFontSize = 14;

// The screen's, for contexts of scale 0; 2 at first.
void setContextScale(double scale);
// Contexts of this thread that have not been ended, those without memory included.
[[nodiscard]] std::size_t openImageContexts();

}  // namespace velmoranth::standins
