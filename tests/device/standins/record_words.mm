#import "device/standins/record_words.h"

#import "device/standins/images.h"
#import "device/standins/views.h"
#include "record/words.h"
#include <objc/runtime.h>

namespace velmoranth::standins {

using record::words;

std::string textOf(NSString* text) {
    const char* const bytes = [text UTF8String];
    return bytes == nullptr ? "" : bytes;
}

std::string wordsOf(NSString* text) {
    return text == nil ? record::kNil : words(textOf(text));
}

std::string wordsOf(struct CGColor* color) {
    return color == nullptr
               ? record::kNil
               : words(platform::Color{color->red, color->green, color->blue, color->alpha});
}

// Of what CoreFoundation has no class for.
std::string wordsOf(struct CGContext* context) {
    return context == nullptr ? record::kNil : "__NSCFType";
}

std::string wordsOf(id object) {
    if (object == nil) {
        return record::kNil;
    }
    if ([object isKindOfClass:[UIImage class]]) {
        UIImage* const image = object;
        const CGSize size = [image size];
        return words(platform::Size{size.width, size.height}) + " @" + words([image scale]) + "x";
    }
    // A layer is known by its view.
    if ([object isKindOfClass:[CALayer class]] && static_cast<CALayer*>(object)->_view != nil) {
        return wordsOf(static_cast<id>(static_cast<CALayer*>(object)->_view));
    }
    if ([object isKindOfClass:[UIView class]]) {
        const NSInteger tag = static_cast<UIView*>(object)->_tag;
        const std::string name = class_getName(object_getClass(object));
        return tag == 0 ? name : name + " #" + std::to_string(tag);
    }
    if ([object isKindOfClass:[UIColor class]]) {
        return wordsOf([static_cast<UIColor*>(object) CGColor]);
    }
    if ([object isKindOfClass:[NSData class]]) {
        return std::to_string([object length]) + " bytes";
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        return "dictionary of " + std::to_string([object count]);
    }
    return class_getName(object_getClass(object));
}

std::string wordsOf(BOOL flag) {
    return words(static_cast<bool>(flag));
}

std::string wordsOf(NSInteger number) {
    return words(number);
}

std::string wordsOf(CGFloat number) {
    return words(number);
}

std::string wordsOf(float number) {
    return words(number);
}

std::string wordsOf(CGRect rect) {
    return words(
        platform::Rect{{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}});
}

std::string wordsOf(CGSize size) {
    return words(platform::Size{size.width, size.height});
}

std::string wordsOf(const struct CGPath* path) {
    return path == nullptr ? record::kNil : wordsOf(path->rect);
}

std::string wordsOfBlock(id block) {
    return block == nil ? record::kNil : "set";
}

}  // namespace velmoranth::standins
