// The stack of image contexts, and UIFont.
#include "device/standins/images.h"
#include "device/standins/messages.h"
#include "record/operations.h"

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

using velmoranth::record::messageOf;
using velmoranth::standins::called;
using velmoranth::standins::contexts;
using velmoranth::standins::received;

void UIGraphicsBeginImageContextWithOptions(CGSize size, BOOL opaque, CGFloat scale) {
    called(messageOf("ImageContexts", "beginImageContextWithOptions"), size, opaque, scale);
    contexts().push_back(velmoranth::standins::createFlippedContext(
        size, opaque != NO, scale == 0 ? velmoranth::standins::contextScale.load() : scale));
}

CGContextRef UIGraphicsGetCurrentContext() {
    const auto noted = called(messageOf("ImageContexts", "getCurrentContext"));
    return noted.answered(contexts().empty() ? nullptr : contexts().back());
}

UIImage* UIGraphicsGetImageFromCurrentImageContext() {
    const auto noted = called(messageOf("ImageContexts", "getImageFromCurrentImageContext"));
    const CGContextRef context = contexts().empty() ? nullptr : contexts().back();
    if (context == nullptr) {
        return noted.answered(static_cast<UIImage*>(nil));
    }
    const velmoranth::standins::Unrecorded making;
    const CGImageRef bitmap = CGBitmapContextCreateImage(context);
    UIImage* const image = [[UIImage alloc] initWithCGImage:bitmap
                                                      scale:velmoranth::standins::scaleOf(context)
                                                orientation:0];
    CGImageRelease(bitmap);
    return noted.answered([image autorelease]);
}

void UIGraphicsEndImageContext() {
    called(messageOf("ImageContexts", "endImageContext"));
    if (!contexts().empty()) {
        CGContextRelease(contexts().back());
        contexts().pop_back();
    }
}

@implementation UIFont

+ (UIFont*)fontWithName:(NSString*)name size:(CGFloat)size {
    const auto noted = received(self, _cmd, name, size);
    velmoranth::standins::FontNames& known = velmoranth::standins::fontNames();
    const std::scoped_lock lock(known.mutex);
    if (name == nil || !known.names.contains([name UTF8String])) {
        return noted.answered(static_cast<UIFont*>(nil));
    }
    UIFont* const font = [[[self alloc] init] autorelease];
    font->name_ = [name copy];
    font->size_ = size > 0 ? size : velmoranth::standins::kSystemFontSize;
    return noted.answered(font);
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
