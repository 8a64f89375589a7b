// What the phone's objects and values are called in records: the desktop's words.
#pragma once

#import "device/standins/layers.h"
#import <Foundation/Foundation.h>

#include <string>

namespace velmoranth::standins {

// "" for nil.
[[nodiscard]] std::string textOf(NSString* text);

[[nodiscard]] std::string wordsOf(NSString* text);
[[nodiscard]] std::string wordsOf(struct CGColor* color);
[[nodiscard]] std::string wordsOf(struct CGContext* context);
[[nodiscard]] std::string wordsOf(const struct CGPath* path);
// By its class, an image by its size, a view by its tag too and a layer by its view.
[[nodiscard]] std::string wordsOf(id object);
[[nodiscard]] std::string wordsOf(BOOL flag);
[[nodiscard]] std::string wordsOf(NSInteger number);
[[nodiscard]] std::string wordsOf(CGFloat number);
[[nodiscard]] std::string wordsOf(float number);
[[nodiscard]] std::string wordsOf(CGRect rect);
[[nodiscard]] std::string wordsOf(CGSize size);
// "set" or "nil".
[[nodiscard]] std::string wordsOfBlock(id block);

}  // namespace velmoranth::standins
