// The platform's exceptions, for tests that they pass through the library as they came.
#pragma once

#import <Foundation/Foundation.h>

#include <functional>
#include <string>
#include <vector>

namespace velmoranth::device {

using Strings = std::vector<std::string>;

// The name of the exception that the operation raised; "" when it raised none.
[[nodiscard]] inline std::string raisedBy(const std::function<void()>& operation) {
    @try {
        operation();
    } @catch (NSException* exception) {
        return [[exception name] UTF8String];
    }
    return "";
}

// A method of the stand-ins, and an operation that sends it.
struct Operation {
    const char* method;
    std::function<void()> run;
};

}  // namespace velmoranth::device
