// How methods of the phone's classes take down who sends them.
#pragma once

#import "device/standins/record_words.h"
#import "device/standins/records.h"
#include "record/operations.h"
#include "record/recorder.h"
#include <objc/runtime.h>

#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::standins {

// The method of that name in the place of the class's own, which it calls.
template <class Function>
struct Method;

template <class R, class... Args>
struct Method<R (*)(id, SEL, Args...)> {
    using Function = R (*)(id, SEL, Args...);
    Function own = nullptr;

    void replace(const char* message, Function function) {
        // "-[Class selector]"
        const std::string_view text = message;
        const std::size_t blank = text.find(' ');
        const std::string cls(text.substr(2, blank - 2));
        const std::string selector(text.substr(blank + 1, text.size() - blank - 2));
        const Class found = objc_getClass(cls.c_str());
        const SEL name = sel_registerName(selector.c_str());
        const auto method = text.starts_with('+') ? class_getClassMethod(found, name)
                                                  : class_getInstanceMethod(found, name);
        // By way of no type at all, as IMP is the type of no method.
        own = reinterpret_cast<Function>(reinterpret_cast<void*>(method_setImplementation(
            method, reinterpret_cast<IMP>(reinterpret_cast<void*>(function)))));
    }
};

class Call : public Unrecorded {
  public:
    // Nobody else's on the way to an answer.
    [[nodiscard]] bool isTheLibrarys() const { return isOutermost_; }
};

void add(record::Entry entry);
void addCall(const Call& call, std::string_view message, std::vector<std::string> arguments,
             id answer);
record::Told addMessage(const Call& call, std::string_view message, id receiver,
                        std::vector<std::string> arguments = {});
// Passes the answer on.
BOOL answered(const record::Told& told, BOOL answer);

// What views, layers, players and alerts are told, what views are made, drawn and moved.
void recordViews();

}  // namespace velmoranth::standins
