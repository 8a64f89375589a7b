// UIImage, UIImageAsset and _UIImageContent.
#include "device/standins/images.h"

#include "device/standins/messages.h"
#include "record/operations.h"

#include <array>
#include <cstring>
#include <optional>

namespace velmoranth::standins {
namespace {

constexpr std::array<std::uint8_t, 8> kSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::size_t kHeaderEnd = 33;  // the signature and IHDR, its checksum included
constexpr std::uint32_t kLargestSide = 16384;

struct PngHeader {
    std::uint32_t width;
    std::uint32_t height;
};

std::uint32_t bigEndian(const std::uint8_t* bytes) {
    return std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U |
           std::uint32_t{bytes[2]} << 8U | bytes[3];
}

std::optional<PngHeader> headerOf(NSData* file) {
    const auto* const bytes = static_cast<const std::uint8_t*>([file bytes]);
    if ([file length] < kHeaderEnd ||
        std::memcmp(bytes, kSignature.data(), kSignature.size()) != 0 ||
        std::memcmp(bytes + 12, "IHDR", 4) != 0) {
        return std::nullopt;
    }
    const PngHeader header{bigEndian(bytes + 16), bigEndian(bytes + 20)};
    const bool isSound = header.width != 0 && header.height != 0 && header.width <= kLargestSide &&
                         header.height <= kLargestSide;
    return isSound ? std::optional(header) : std::nullopt;
}

CGFloat scaleOfPath(NSString* path) {
    NSString* const stem = [path stringByDeletingPathExtension];
    if ([stem hasSuffix:@"@3x"]) {
        return 3;
    }
    return [stem hasSuffix:@"@2x"] ? 2 : 1;
}

CGImageRef createBlank(std::size_t width, std::size_t height) {
    return createImage({.width = width, .height = height, .bytesPerRow = width * 4},
                       Bytes(width * height * 4));
}

void append(Bytes& bytes, std::uint32_t number) {
    for (unsigned shift = 32; shift > 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(number >> (shift - 8)));
    }
}

void appendChunk(Bytes& bytes, const char* type, const Bytes& contents) {
    append(bytes, static_cast<std::uint32_t>(contents.size()));
    bytes.insert(bytes.end(), type, type + 4);
    bytes.insert(bytes.end(), contents.begin(), contents.end());
    append(bytes, 0);
}

// A file of PNG's chunks whose header is true. Samples stand in it as they are, and checksums are
// 0: equal bitmaps give equal bytes, and imageWithContentsOfFile: can read them.
Bytes encode(CGImageRef image) {
    Bytes bytes(kSignature.begin(), kSignature.end());
    Bytes header;
    append(header, static_cast<std::uint32_t>(CGImageGetWidth(image)));
    append(header, static_cast<std::uint32_t>(CGImageGetHeight(image)));
    header.insert(header.end(), {8, 6, 0, 0, 0});
    appendChunk(bytes, "IHDR", header);
    appendChunk(bytes, "IDAT", bytesOf(image));
    appendChunk(bytes, "IEND", {});
    return bytes;
}

// The image as such a file; nil when it has no bitmap.
NSData* dataOf(UIImage* image) {
    if (image == nil) {
        return nil;
    }
    if (image->file_ != nil) {
        return [[image->file_ retain] autorelease];
    }
    if (image->bitmap_ == nullptr) {
        return nil;
    }
    const Bytes bytes = encode(image->bitmap_);
    return [NSData dataWithBytes:bytes.data() length:bytes.size()];
}

}  // namespace

UIImage* imageOfPixels(std::size_t width, std::size_t height, double scale) {
    const CGImageRef bitmap = createBlank(width, height);
    UIImage* const image = [[UIImage alloc] initWithCGImage:bitmap scale:scale orientation:0];
    CGImageRelease(bitmap);
    return [image autorelease];
}

std::string pathOf(id image) {
    if (![image isKindOfClass:[UIImage class]]) {
        return {};
    }
    NSString* const path = static_cast<UIImage*>(image)->path_;
    return path == nil ? std::string() : std::string([path UTF8String]);
}

void answerWith(const std::string& selector, id image) {
    setAnswer("+[UIImage " + selector + "]", image);
}

}  // namespace velmoranth::standins

using velmoranth::standins::answer;
using velmoranth::standins::answerSet;
using velmoranth::standins::asked;
using velmoranth::standins::received;

@implementation UIImage

+ (UIImage*)imageWithContentsOfFile:(NSString*)path {
    UIImage* image = nil;
    {
        const velmoranth::standins::Unrecorded reading;
        image = [[[self alloc] initWithContentsOfFile:path] autorelease];
    }
    velmoranth::standins::readFile(self, _cmd, path, image);
    return image;
}

+ (UIImage*)imageWithCGImage:(CGImageRef)image {
    const auto noted = received(self, _cmd, image);
    return noted.answered([[[self alloc] initWithCGImage:image scale:1 orientation:0] autorelease]);
}

- (id)initWithCGImage:(CGImageRef)image scale:(CGFloat)scale orientation:(long)orientation {
    self = [super init];
    if (self == nil || image == nullptr || orientation != 0) {
        [self release];
        return nil;
    }
    bitmap_ = CGImageRetain(image);
    pixels_ = {static_cast<CGFloat>(CGImageGetWidth(image)),
               static_cast<CGFloat>(CGImageGetHeight(image))};
    scale_ = scale;
    return self;
}

- (id)initWithContentsOfFile:(NSString*)path {
    self = [super init];
    NSData* const file = path == nil ? nil : [NSData dataWithContentsOfFile:path];
    const auto header = velmoranth::standins::headerOf(file);
    if (self == nil || !header) {
        [self release];
        return nil;
    }
    path_ = [path copy];
    file_ = [file retain];
    pixels_ = {static_cast<CGFloat>(header->width), static_cast<CGFloat>(header->height)};
    scale_ = velmoranth::standins::scaleOfPath(path);
    return self;
}

- (id)initWithCIImage:(id)image {
    self = [super init];
    if (self != nil) {
        coreImage_ = [image retain];
        scale_ = 1;
    }
    return self;
}

- (void)dealloc {
    CGImageRelease(bitmap_);
    [path_ release];
    [file_ release];
    [coreImage_ release];
    [super dealloc];
}

- (CGSize)size {
    return {pixels_.width / scale_, pixels_.height / scale_};
}

- (CGFloat)scale {
    return scale_;
}

- (CGImageRef)CGImage {
    @synchronized(self) {
        if (bitmap_ == nullptr && file_ != nil) {
            bitmap_ = velmoranth::standins::createBlank(static_cast<std::size_t>(pixels_.width),
                                                        static_cast<std::size_t>(pixels_.height));
        }
        return bitmap_;
    }
}

- (id)CIImage {
    return coreImage_;
}

- (void)drawInRect:(CGRect)rect {
    asked(self, _cmd, static_cast<id>(self), rect);
}

+ (UIImage*)imageNamed:(NSString*)name
              inBundle:(NSBundle*)bundle
     withConfiguration:(id)configuration {
    received(self, _cmd, name, bundle, configuration);
    return answer(self, _cmd);
}

+ (UIImage*)imageNamed:(NSString*)name
                         inBundle:(NSBundle*)bundle
    compatibleWithTraitCollection:(id)traits {
    received(self, _cmd, name, bundle, traits);
    return answer(self, _cmd);
}

+ (UIImage*)imageNamed:(NSString*)name inBundle:(NSBundle*)bundle {
    received(self, _cmd, name, bundle);
    return answer(self, _cmd);
}

+ (UIImage*)_imageNamed:(NSString*)name withTrait:(id)trait {
    received(self, _cmd, name, trait);
    return answer(self, _cmd);
}

+ (UIImage*)imageWithContentsOfCPBitmapFile:(NSString*)path flags:(int)flags {
    received(self, _cmd, path, flags);
    return answer(self, _cmd);
}

+ (UIImage*)kitImageNamed:(NSString*)name {
    received(self, _cmd, name);
    return answer(self, _cmd);
}

+ (UIImage*)_kitImageNamed:(NSString*)name withTrait:(id)trait {
    received(self, _cmd, name, trait);
    return answer(self, _cmd);
}

+ (UIImage*)systemImageNamed:(NSString*)name {
    received(self, _cmd, name);
    return answer(self, _cmd);
}

+ (UIImage*)_applicationIconImageForBundleIdentifier:(NSString*)identifier
                                              format:(int)format
                                               scale:(CGFloat)scale {
    received(self, _cmd, identifier, format, scale);
    return answer(self, _cmd);
}

@end

@implementation UIImageAsset

- (id)initWithBundle:(NSBundle*)bundle {
    self = [super init];
    if (self != nil) {
        _containingBundle = [bundle retain];
    }
    return self;
}

- (void)dealloc {
    [_containingBundle release];
    [super dealloc];
}

@end

@implementation _UIImageContent

- (id)initWithVectorGlyph:(CUINamedVectorGlyph*)glyph CGImage:(CGImageRef)image {
    self = [super init];
    if (self != nil) {
        glyph_ = [static_cast<id>(glyph) retain];
        bitmap_ = CGImageRetain(image);
    }
    return self;
}

- (void)dealloc {
    [static_cast<id>(glyph_) release];
    CGImageRelease(bitmap_);
    [super dealloc];
}

- (CUINamedVectorGlyph*)vectorGlyph {
    received(self, _cmd);
    return answerSet(self, _cmd).value_or(glyph_);
}

- (CGImageRef)CGImage {
    received(self, _cmd);
    const auto set = answerSet(self, _cmd);
    return set ? (CGImageRef)*set : bitmap_;
}

@end

NSData* UIImagePNGRepresentation(UIImage* image) {
    constexpr auto kMessage = velmoranth::record::messageOf("Images", "pngRepresentation");
    const auto noted = velmoranth::standins::called(kMessage, static_cast<id>(image));
    return noted.answered(velmoranth::standins::dataOf(image));
}
