// The stack of image contexts, and UIFont.
#include "device/standins/images.h"

#include <atomic>
#include <mutex>
#include <set>
#include <vector>

namespace velmoranth::standins {
namespace {

std::atomic<double> contextScale{2};

// The newest last; NULL for one of an impossible size.
std::vector<CGContextRef>& contexts() {
    static thread_local std::vector<CGContextRef> stack;
    return stack;
}

struct FontNames {
    std::mutex mutex;
    std::set<std::string> names;
};

FontNames& fontNames() {
    static auto* const instance = new FontNames;
    return *instance;
}

}  // namespace

void addFont(const std::string& name) {
    const std::scoped_lock lock(fontNames().mutex);
    fontNames().names.insert(name);
}

void setContextScale(double scale) {
    contextScale = scale;
}

std::size_t openImageContexts() {
    return contexts().size();
}

}  // namespace velmoranth::standins

using velmoranth::standins::contexts;
using velmoranth::standins::note;
using velmoranth::standins::noteFormat;

void UIGraphicsBeginImageContextWithOptions(CGSize size, BOOL opaque, CGFloat scale) {
    noteFormat(@"UIGraphicsBeginImageContextWithOptions({%g, %g}, %s, %g)", size.width, size.height,
               opaque ? "YES" : "NO", scale);
    contexts().push_back(velmoranth::standins::createFlippedContext(
        size, opaque != NO, scale == 0 ? velmoranth::standins::contextScale.load() : scale));
}

CGContextRef UIGraphicsGetCurrentContext() {
    note("UIGraphicsGetCurrentContext()");
    return contexts().empty() ? nullptr : contexts().back();
}

UIImage* UIGraphicsGetImageFromCurrentImageContext() {
    note("UIGraphicsGetImageFromCurrentImageContext()");
    const CGContextRef context = contexts().empty() ? nullptr : contexts().back();
    if (context == nullptr) {
        return nil;
    }
    const CGImageRef bitmap = CGBitmapContextCreateImage(context);
    UIImage* const image = [[UIImage alloc] initWithCGImage:bitmap
                                                      scale:velmoranth::standins::scaleOf(context)
                                                orientation:0];
    CGImageRelease(bitmap);
    return [image autorelease];
}

void UIGraphicsEndImageContext() {
    note("UIGraphicsEndImageContext()");
    if (!contexts().empty()) {
        CGContextRelease(contexts().back());
        contexts().pop_back();
    }
}

@implementation UIFont

+ (UIFont*)fontWithName:(NSString*)name size:(CGFloat)size {
    noteFormat(@"+[UIFont fontWithName: %@ size: %g]", name, size);
    velmoranth::standins::FontNames& known = velmoranth::standins::fontNames();
    const std::scoped_lock lock(known.mutex);
    if (name == nil || !known.names.contains([name UTF8String])) {
        return nil;
    }
    UIFont* const font = [[[self alloc] init] autorelease];
    font->name_ = [name copy];
    font->size_ = size > 0 ? size : velmoranth::standins::kSystemFontSize;
    return font;
}

- (void)dealloc {
    [name_ release];
    [super dealloc];
}

- (NSString*)fontName {
    return name_;
}

- (CGFloat)pointSize {
    return size_;
}

@end
