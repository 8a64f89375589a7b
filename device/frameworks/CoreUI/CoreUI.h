// CoreUI's catalogs and what they hold, as far as the library sends to them. The library does not
// link CoreUI: its classes are looked up by name.
#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGImage.h>
#import <Foundation/Foundation.h>

@interface CUINamedVectorGlyph : NSObject
- (NSString*)name;
@end

@interface CUINamedImage : NSObject
- (NSString*)name;
- (CGFloat)scale;
// With a reference for the caller.
- (CGImageRef)createImageFromPDFRenditionWithScale:(CGFloat)scale;
- (CGImageRef)image;
@end

@interface CUICatalog : NSObject
+ (CUICatalog*)defaultUICatalogForBundle:(NSBundle*)bundle;
- (instancetype)initWithURL:(NSURL*)url error:(NSError**)error;
- (instancetype)initWithName:(NSString*)name fromBundle:(NSBundle*)bundle error:(NSError**)error;
- (NSArray*)allImageNames;
- (id)imageWithName:(NSString*)name scaleFactor:(CGFloat)scaleFactor;
- (id)imageWithName:(NSString*)name
        scaleFactor:(CGFloat)scaleFactor
        deviceIdiom:(NSInteger)deviceIdiom;
- (NSArray*)imagesWithName:(NSString*)name;
@end
