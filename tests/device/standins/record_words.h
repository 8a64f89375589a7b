// What the phone's objects and values are called in records: the desktop's words.
#pragma once

#import "device/standins/standin.h"
#include <CoreGraphics/CGGeometry.h>
#include <objc/runtime.h>

#include <string>
#include <vector>

struct CGColor;
struct CGColorSpace;
struct CGContext;
struct CGDataProvider;
struct CGGradient;
struct CGImage;
struct CGPath;

namespace velmoranth::standins {

// SBIconImageInfo as the phone passes it.
struct IconImageInfo {
    CGFloat width;
    CGFloat height;
    CGFloat scale;
    CGFloat continuousCornerRadius;
};

// For tests: how records call the object from now on, one of several that are alike.
void nameObject(id object, const std::string& name);

// What is in words already.
struct Words {
    std::string text;
};

// "" for nil.
[[nodiscard]] std::string textIn(NSString* text);

// An object with a name by that, a text in quotes, an image by its size, a view by its tag too, a
// layer by its view, an icon and a bundle by its identifier.
[[nodiscard]] std::string wordsOf(id object);
[[nodiscard]] std::string wordsOf(NSString* text);
[[nodiscard]] std::string wordsOf(const struct CGColor* color);
// By the number that the desktop has for it.
[[nodiscard]] std::string wordsOf(struct CGColorSpace* space);
[[nodiscard]] std::string wordsOf(struct CGContext* context);
[[nodiscard]] std::string wordsOf(struct CGDataProvider* provider);
[[nodiscard]] std::string wordsOf(struct CGGradient* gradient);
[[nodiscard]] std::string wordsOf(struct CGImage* image);
[[nodiscard]] std::string wordsOf(const struct CGPath* path);
[[nodiscard]] std::string wordsOf(BOOL flag);
[[nodiscard]] std::string wordsOf(int number);
[[nodiscard]] std::string wordsOf(unsigned int number);
[[nodiscard]] std::string wordsOf(long number);
[[nodiscard]] std::string wordsOf(long long number);
[[nodiscard]] std::string wordsOf(unsigned long number);
[[nodiscard]] std::string wordsOf(unsigned long long number);
[[nodiscard]] std::string wordsOf(float number);
[[nodiscard]] std::string wordsOf(double number);
[[nodiscard]] std::string wordsOf(CGPoint point);
[[nodiscard]] std::string wordsOf(CGSize size);
[[nodiscard]] std::string wordsOf(CGRect rect);
[[nodiscard]] std::string wordsOf(const IconImageInfo& info);
[[nodiscard]] std::string wordsOf(SEL selector);
[[nodiscard]] std::string wordsOf(const Words& words);

// "set" or "nil".
[[nodiscard]] Words wordsOfPointer(const void* pointer);

// "set", and nothing at all for null: of what the library passes null for, and the desktop has not.
[[nodiscard]] Words wordsIfSet(const void* pointer);

// What is told with all its digits, where the desktop's words have six: "(0.1, 16777217.25)".
[[nodiscard]] Words exactly(CGPoint point);
[[nodiscard]] Words exactly(CGSize size);
[[nodiscard]] Words exactly(const struct CGColor& color);

}  // namespace velmoranth::standins
