// CoreUI for tests: catalogs that tests fill, with images and glyphs.
#pragma once

#include "device/standins/core_graphics.h"
#include "device/standins/standin.h"

#include <optional>
#include <string>
#include <vector>

@class UIImage;

@interface CUICatalog : StandIn {
    // As on the phone, where the library reads it by its name.
    NSBundle* _bundle;

  @public
    std::string* path_;
    id names_;
    id images_;
}

- (id)initWithBundle:(NSBundle*)bundle;
+ (CUICatalog*)defaultUICatalogForBundle:(NSBundle*)bundle;
- (id)initWithURL:(NSURL*)url error:(NSError**)error;
- (id)initWithName:(NSString*)name fromBundle:(NSBundle*)bundle error:(NSError**)error;
- (NSArray*)allImageNames;
- (id)imageWithName:(NSString*)name scaleFactor:(CGFloat)scaleFactor;
- (id)imageWithName:(NSString*)name
        scaleFactor:(CGFloat)scaleFactor
        deviceIdiom:(NSInteger)deviceIdiom;
- (NSArray*)imagesWithName:(NSString*)name;

// What allImageNames and imagesWithName: answer from now on, whatever it is.
- (void)setAllImageNames:(id)names;
- (void)setImagesWithName:(id)images;
@end

@interface CUINamedVectorGlyph : StandIn {
    // As on the phone, where the library reads it by its name.
    CUICatalog* _catalog;
    id name_;
    CGImageRef image_;
    id drawn_;
}

// The glyph's image, and what it draws for an asset.
- (id)initWithName:(id)name
           catalog:(CUICatalog*)catalog
             image:(CGImageRef)image
             drawn:(UIImage*)drawn;
- (NSString*)name;
- (CGImageRef)image;
- (UIImage*)UIImageWithAsset:(id)asset
               configuration:(id)configuration
         flippedHorizontally:(BOOL)flipped;
@end

@interface CUINamedImage : StandIn {
    id name_;
    CGFloat scale_;
    CGImageRef image_;
    CGSize pdf_;
    id drawn_;
}

- (id)initWithName:(id)name scale:(CGFloat)scale;
- (NSString*)name;
- (CGFloat)scale;
- (CGImageRef)image;
// With a reference for the caller; NULL but for a PDF.
- (CGImageRef)createImageFromPDFRenditionWithScale:(CGFloat)scale;
- (UIImage*)UIImageWithAsset:(id)asset
               configuration:(id)configuration
         flippedHorizontally:(BOOL)flipped
         optionalVectorImage:(id)vectorImage;

- (void)setImage:(CGImageRef)image;
// Makes it a PDF of that size in points.
- (void)setPDFSize:(CGSize)size;
// What it draws for an asset.
- (void)setDrawn:(UIImage*)drawn;
@end

namespace velmoranth::standins {

// One image of a catalog. Objects are held while their file is known.
struct CatalogEntry {
    std::string name;
    id object = nil;
    double scale = 1;
    long deviceIdiom = 0;
};

struct CatalogFile {
    std::vector<CatalogEntry> entries;
    bool opens = true;
    NSError* error = nil;  // reported, whether it opens or not; not held
};

// What opening a file of that path gives; every other is missing: nil, and error 260.
void addCatalogFile(const std::string& path, const CatalogFile& file);
void forgetCatalogFiles();

}  // namespace velmoranth::standins
