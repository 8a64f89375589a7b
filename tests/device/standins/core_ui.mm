#include "device/standins/core_ui.h"

#include "device/standins/messages.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace velmoranth::standins {
namespace {

constexpr NSInteger kFileReadNoSuchFile = 260;

// Used by one thread at a time.
std::map<std::string, CatalogFile>& catalogFiles() {
    static auto* const files = new std::map<std::string, CatalogFile>;
    return *files;
}

const CatalogFile* fileOf(const std::string& path) {
    const auto file = catalogFiles().find(path);
    return file == catalogFiles().end() ? nullptr : &file->second;
}

void forget(const CatalogFile& file) {
    for (const CatalogEntry& entry : file.entries) {
        [entry.object release];
    }
}

// Whether the file opens; reports the error that goes with it.
bool opens(const std::string& path, NSError** error) {
    const CatalogFile* const file = fileOf(path);
    NSError* const reported =
        file == nullptr ? [NSError errorWithDomain:@"NSCocoaErrorDomain"
                                              code:kFileReadNoSuchFile
                                          userInfo:@{NSLocalizedDescriptionKey : @"No such file."}]
                        : file->error;
    if (error != nullptr && reported != nil) {
        *error = reported;
    }
    return file != nullptr && file->opens;
}

std::string pathIn(NSBundle* bundle, NSString* name) {
    NSString* const file = [name stringByAppendingString:@".car"];
    NSString* const path = [[bundle bundlePath] stringByAppendingPathComponent:file];
    return path == nil ? std::string() : std::string([path UTF8String]);
}

std::vector<CatalogEntry> entriesOf(const CUICatalog* catalog) {
    const CatalogFile* const file = catalog->path_ == nullptr ? nullptr : fileOf(*catalog->path_);
    return file == nullptr ? std::vector<CatalogEntry>() : file->entries;
}

// The first rendition for that kind of device or for all; of the scale, if it has it.
id find(const CUICatalog* catalog, NSString* name, CGFloat scale, NSInteger idiom) {
    id found = nil;
    for (const CatalogEntry& entry : entriesOf(catalog)) {
        if (entry.name != [name UTF8String] ||
            (entry.deviceIdiom != 0 && entry.deviceIdiom != idiom)) {
            continue;
        }
        if (scale == 0 || entry.scale == scale) {
            return entry.object;
        }
        found = found == nil ? entry.object : found;
    }
    return found;
}

}  // namespace

void addCatalogFile(const std::string& path, const CatalogFile& file) {
    for (const CatalogEntry& entry : file.entries) {
        [entry.object retain];
    }
    if (const CatalogFile* const old = fileOf(path)) {
        forget(*old);
    }
    catalogFiles()[path] = file;
}

void forgetCatalogFiles() {
    for (const auto& [path, file] : catalogFiles()) {
        forget(file);
    }
    catalogFiles().clear();
}

}  // namespace velmoranth::standins

using velmoranth::standins::answerSet;
using velmoranth::standins::received;

@implementation CUICatalog

- (id)initWithPath:(const std::string&)path bundle:(NSBundle*)bundle error:(NSError**)error {
    self = [super init];
    if (self != nil && !velmoranth::standins::opens(path, error)) {
        [self release];
        return nil;
    }
    _bundle = [bundle retain];
    path_ = new std::string(path);
    return self;
}

- (id)initWithBundle:(NSBundle*)bundle {
    self = [super init];
    if (self != nil) {
        _bundle = [bundle retain];
    }
    return self;
}

+ (CUICatalog*)defaultUICatalogForBundle:(NSBundle*)bundle {
    const auto noted = received(self, _cmd, bundle);
    CUICatalog* const catalog =
        [[self alloc] initWithPath:velmoranth::standins::pathIn(bundle, @"Assets")
                            bundle:bundle
                             error:nullptr];
    return noted.answered([catalog autorelease]);
}

- (id)initWithURL:(NSURL*)url error:(NSError**)error {
    NSString* const path = [url isFileURL] ? [url path] : nil;
    const auto noted = received(self, _cmd, path, velmoranth::standins::wordsIfSet(error));
    return noted.answered([self initWithPath:velmoranth::standins::textIn(path)
                                      bundle:nil
                                       error:error]);
}

- (id)initWithName:(NSString*)name fromBundle:(NSBundle*)bundle error:(NSError**)error {
    const auto noted = received(self, _cmd, name, bundle, velmoranth::standins::wordsIfSet(error));
    return noted.answered([self initWithPath:velmoranth::standins::pathIn(bundle, name)
                                      bundle:bundle
                                       error:error]);
}

- (void)dealloc {
    [_bundle release];
    delete path_;
    [names_ release];
    [images_ release];
    [super dealloc];
}

- (NSArray*)allImageNames {
    received(self, _cmd);
    if (names_ != nil) {
        return names_;
    }
    NSMutableArray* const names = [NSMutableArray array];
    for (const auto& entry : velmoranth::standins::entriesOf(self)) {
        NSString* const name = [NSString stringWithUTF8String:entry.name.c_str()];
        if (![names containsObject:name]) {
            [names addObject:name];
        }
    }
    return names;
}

- (id)imageWithName:(NSString*)name scaleFactor:(CGFloat)scaleFactor {
    received(self, _cmd, name, scaleFactor);
    return velmoranth::standins::find(self, name, scaleFactor, 0);
}

- (id)imageWithName:(NSString*)name
        scaleFactor:(CGFloat)scaleFactor
        deviceIdiom:(NSInteger)deviceIdiom {
    received(self, _cmd, name, scaleFactor, deviceIdiom);
    return velmoranth::standins::find(self, name, scaleFactor, deviceIdiom);
}

- (NSArray*)imagesWithName:(NSString*)name {
    received(self, _cmd, name);
    if (images_ != nil) {
        return images_;
    }
    NSMutableArray* const images = [NSMutableArray array];
    for (const auto& entry : velmoranth::standins::entriesOf(self)) {
        if (entry.name == [name UTF8String]) {
            [images addObject:entry.object];
        }
    }
    return images;
}

- (void)setAllImageNames:(id)names {
    [names_ autorelease];
    names_ = [names retain];
}

- (void)setImagesWithName:(id)images {
    [images_ autorelease];
    images_ = [images retain];
}

@end

@implementation CUINamedVectorGlyph

- (id)initWithName:(id)name
           catalog:(CUICatalog*)catalog
             image:(CGImageRef)image
             drawn:(UIImage*)drawn {
    self = [super init];
    if (self != nil) {
        name_ = [name retain];
        _catalog = [catalog retain];
        image_ = CGImageRetain(image);
        drawn_ = [static_cast<id>(drawn) retain];
    }
    return self;
}

- (void)dealloc {
    [name_ release];
    [_catalog release];
    CGImageRelease(image_);
    [drawn_ release];
    [super dealloc];
}

- (NSString*)name {
    return name_;
}

- (CGImageRef)image {
    received(self, _cmd);
    const auto set = answerSet(self, _cmd);
    return set ? (CGImageRef)*set : image_;
}

- (UIImage*)UIImageWithAsset:(id)asset
               configuration:(id)configuration
         flippedHorizontally:(BOOL)flipped {
    received(self, _cmd, asset, configuration, flipped);
    return answerSet(self, _cmd).value_or(drawn_);
}

@end

@implementation CUINamedImage

- (id)initWithName:(id)name scale:(CGFloat)scale {
    self = [super init];
    if (self != nil) {
        name_ = [name retain];
        scale_ = scale;
    }
    return self;
}

- (void)dealloc {
    [name_ release];
    CGImageRelease(image_);
    [drawn_ release];
    [super dealloc];
}

// What is asked for is the pool's as well.
- (NSString*)name {
    return [[name_ retain] autorelease];
}

- (CGFloat)scale {
    return scale_;
}

- (CGImageRef)image {
    received(self, _cmd);
    return (CGImageRef)[[(id)image_ retain] autorelease];
}

- (CGImageRef)createImageFromPDFRenditionWithScale:(CGFloat)scale {
    received(self, _cmd, scale);
    const CGFloat width = std::ceil(pdf_.width * scale);
    const CGFloat height = std::ceil(pdf_.height * scale);
    if (!(width > 0) || !(height > 0)) {
        return nullptr;
    }
    // What it drew from is the pool's.
    static_cast<void>([[[CUINamedImage alloc] init] autorelease]);
    const auto wide = static_cast<std::size_t>(width);
    const auto high = static_cast<std::size_t>(height);
    return velmoranth::standins::createImage(
        {.width = wide, .height = high, .bytesPerRow = wide * 4},
        velmoranth::standins::Bytes(wide * high * 4));
}

- (UIImage*)UIImageWithAsset:(id)asset
               configuration:(id)configuration
         flippedHorizontally:(BOOL)flipped
         optionalVectorImage:(id)vectorImage {
    received(self, _cmd, asset, configuration, flipped, vectorImage);
    return answerSet(self, _cmd).value_or(drawn_);
}

- (void)setImage:(CGImageRef)image {
    CGImageRetain(image);
    CGImageRelease(image_);
    image_ = image;
}

- (void)setPDFSize:(CGSize)size {
    pdf_ = size;
}

- (void)setDrawn:(UIImage*)drawn {
    [drawn_ autorelease];
    drawn_ = [static_cast<id>(drawn) retain];
}

@end
