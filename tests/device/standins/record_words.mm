#import "device/standins/record_words.h"

#import "device/standins/core_graphics.h"
#import "device/standins/core_ui.h"
#import "device/standins/images.h"
#import "device/standins/springboard.h"
#include "record/words.h"

#include <map>
#include <mutex>

namespace velmoranth::standins {
namespace {

using record::words;

struct Names {
    std::mutex mutex;
    std::map<const void*, std::string> names;
};

Names& givenNames() {
    static auto* const instance = new Names;
    return *instance;
}

// "" for an object without one.
std::string nameOf(id object) {
    const std::scoped_lock lock(givenNames().mutex);
    const auto name = givenNames().names.find(object);
    return name == givenNames().names.end() ? std::string() : name->second;
}

std::string classOf(id object) {
    return class_getName(object_getClass(object));
}

// One that is known by a text.
std::string namedBy(id object, id name) {
    return classOf(object) + " " +
           ([name isKindOfClass:[NSString class]] ? textIn(name) : std::string(record::kNil));
}

// Of what CoreFoundation has no class for.
std::string wordsOfType(const void* object) {
    return object == nullptr ? record::kNil : "__NSCFType";
}

std::string wordsOfView(UIView* view) {
    const std::string name = classOf(view);
    return view->_tag == 0 ? name : name + " #" + std::to_string(view->_tag);
}

std::string wordsOfBundle(NSBundle* bundle) {
    const Unrecorded asking;
    return namedBy(bundle, [bundle bundleIdentifier]);
}

}  // namespace

void nameObject(id object, const std::string& name) {
    const std::scoped_lock lock(givenNames().mutex);
    givenNames().names[object] = name;
}

std::string textIn(NSString* text) {
    const char* const bytes = [text UTF8String];
    return bytes == nullptr ? "" : bytes;
}

std::string wordsOf(id object) {
    if (object == nil) {
        return record::kNil;
    }
    if (std::string name = nameOf(object); !name.empty()) {
        return name;
    }
    if ([object isKindOfClass:[NSString class]]) {
        return words(textIn(object));
    }
    if ([object isKindOfClass:[UIImage class]]) {
        UIImage* const image = object;
        return wordsOf([image size]) + " @" + words([image scale]) + "x";
    }
    // A layer is known by its view.
    if ([object isKindOfClass:[CALayer class]] && static_cast<CALayer*>(object)->_view != nil) {
        return wordsOf(static_cast<id>(static_cast<CALayer*>(object)->_view));
    }
    if ([object isKindOfClass:[UIView class]]) {
        return wordsOfView(object);
    }
    if ([object isKindOfClass:[UIColor class]]) {
        return wordsOf([static_cast<UIColor*>(object) CGColor]);
    }
    if ([object isKindOfClass:[SBIcon class]]) {
        return namedBy(object, variable(object, "_leafIdentifier"));
    }
    if ([object isKindOfClass:[CUINamedImage class]] ||
        [object isKindOfClass:[CUINamedVectorGlyph class]]) {
        return namedBy(object, [object name]);
    }
    if ([object isKindOfClass:[NSBundle class]]) {
        return wordsOfBundle(object);
    }
    if ([object isKindOfClass:[NSData class]]) {
        return std::to_string([object length]) + " bytes";
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        return "dictionary of " + std::to_string([object count]);
    }
    return classOf(object);
}

std::string wordsOf(NSString* text) {
    return wordsOf(static_cast<id>(text));
}

std::string wordsOf(const struct CGColor* color) {
    return color == nullptr
               ? record::kNil
               : words(platform::Color{color->red, color->green, color->blue, color->alpha});
}

std::string wordsOf(struct CGColorSpace* space) {
    if (space == nullptr) {
        return record::kNil;
    }
    const CGColorSpaceModel model = CGColorSpaceGetModel(space);
    return words(model == kCGColorSpaceModelMonochrome ? platform::ColorSpace::deviceGray
                 : model == kCGColorSpaceModelIndexed  ? platform::ColorSpace::indexed
                                                       : platform::ColorSpace::deviceRGB);
}

std::string wordsOf(struct CGContext* context) {
    return wordsOfType(context);
}

std::string wordsOf(struct CGDataProvider* provider) {
    return wordsOfType(provider);
}

std::string wordsOf(struct CGGradient* gradient) {
    return wordsOfType(gradient);
}

std::string wordsOf(struct CGImage* image) {
    return image == nullptr ? record::kNil
                            : words(CGImageGetWidth(image)) + "×" + words(CGImageGetHeight(image)) +
                                  (CGImageIsMask(image) ? " mask" : " pixels");
}

std::string wordsOf(const struct CGPath* path) {
    return path == nullptr ? record::kNil : wordsOf(path->rect);
}

std::string wordsOf(BOOL flag) {
    return words(static_cast<bool>(flag));
}

std::string wordsOf(int number) {
    return words(number);
}

std::string wordsOf(unsigned int number) {
    return words(number);
}

std::string wordsOf(long number) {
    return words(number);
}

std::string wordsOf(long long number) {
    return words(number);
}

std::string wordsOf(unsigned long number) {
    return words(number);
}

std::string wordsOf(unsigned long long number) {
    return words(number);
}

std::string wordsOf(float number) {
    return words(number);
}

std::string wordsOf(double number) {
    return words(number);
}

std::string wordsOf(CGPoint point) {
    return words(platform::Point{point.x, point.y});
}

std::string wordsOf(CGSize size) {
    return words(platform::Size{size.width, size.height});
}

std::string wordsOf(CGRect rect) {
    return words(
        platform::Rect{{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}});
}

std::string wordsOf(const IconImageInfo& info) {
    return words(platform::SBIconImageInfo{
        {info.width, info.height}, info.scale, info.continuousCornerRadius});
}

std::string wordsOf(SEL selector) {
    return selector == nullptr ? record::kNil : sel_getName(selector);
}

std::string wordsOf(const Words& words) {
    return words.text;
}

Words wordsOfPointer(const void* pointer) {
    return {record::wordsOfPointer(pointer)};
}

Words wordsIfSet(const void* pointer) {
    return {pointer == nullptr ? "" : record::wordsOfPointer(pointer)};
}

Words exactly(CGPoint point) {
    return {"(" + words(point.x) + ", " + words(point.y) + ")"};
}

Words exactly(CGSize size) {
    return {words(size.width) + "×" + words(size.height)};
}

Words exactly(const struct CGColor& color) {
    return {"(" + words(color.red) + ", " + words(color.green) + ", " + words(color.blue) + ", " +
            words(color.alpha) + ")"};
}

}  // namespace velmoranth::standins
