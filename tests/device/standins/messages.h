// What a stand-in does with a message: notes it with its arguments, raises when a test asked for
// that, and answers what a test set.
#pragma once

#import "device/standins/standin.h"
#include <CoreGraphics/CGGeometry.h>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::standins {

// SBIconImageInfo as the phone passes it.
struct IconImageInfo {
    CGFloat width;
    CGFloat height;
    CGFloat scale;
    CGFloat continuousCornerRadius;
};

// --- For tests; a method is called by its name in the journal, without arguments and with the
// class of the receiver or one that it derives from: "-[UIView setTag:]"
// ---------------------------

// Nil is an answer too; an initialiser gives it in place of its receiver. Held until it is replaced
// or the method answers as usual.
void setAnswer(const std::string& method, id object);
void setAnswer(const std::string& method, double number);

// A literal 0 is the number.
inline void setAnswer(const std::string& method, int number) {
    setAnswer(method, static_cast<double>(number));
}

void setAnswer(const std::string& method, CGRect rect);
void clearAnswer(const std::string& method);
// One after the other, the last for ever.
void setAnswers(const std::string& method, std::initializer_list<id> objects);
void setAnswers(const std::string& method, std::initializer_list<double> numbers);

// Every call raises an exception of that name, after it is noted.
void raiseFrom(const std::string& method, const std::string& exceptionName);
// That very object is thrown, and from that call on, the next one being the first.
void raiseFrom(const std::string& method, id exception, int call = 1);
void raiseNoMore(const std::string& method);

// How the journal calls the object; "<UIView>" for one without a name.
void nameObject(id object, const std::string& name);

// The variable holds the object, and the one that it held is let go.
void setVariable(id object, const char* name, id value);
[[nodiscard]] id variable(id object, const char* name);

// --- For stand-ins -------------------------------------------------------------------------------

// For an argument that is no object and no number.
struct Shown {
    std::string text;
};

[[nodiscard]] std::string shown(id object);
[[nodiscard]] std::string shown(BOOL flag);
[[nodiscard]] std::string shown(int number);
[[nodiscard]] std::string shown(long number);
[[nodiscard]] std::string shown(long long number);
[[nodiscard]] std::string shown(unsigned long number);
[[nodiscard]] std::string shown(unsigned long long number);
[[nodiscard]] std::string shown(float number);
[[nodiscard]] std::string shown(double number);
[[nodiscard]] std::string shown(CGPoint point);
[[nodiscard]] std::string shown(CGSize size);
[[nodiscard]] std::string shown(CGRect rect);
[[nodiscard]] std::string shown(const IconImageInfo& info);
[[nodiscard]] std::string shown(SEL selector);
[[nodiscard]] std::string shown(const Shown& argument);

// "null" or "set".
[[nodiscard]] Shown shownPointer(const void* pointer);

void receive(id receiver, SEL selector, const std::vector<std::string>& arguments);

template <class... Arguments>
void received(id receiver, SEL selector, const Arguments&... arguments) {
    receive(receiver, selector, {shown(arguments)...});
}

[[nodiscard]] std::optional<id> answerSet(id receiver, SEL selector);
[[nodiscard]] id answer(id receiver, SEL selector);  // nil unless set
[[nodiscard]] double numberAnswer(id receiver, SEL selector, double otherwise = 0);
[[nodiscard]] CGRect rectAnswer(id receiver, SEL selector);

// A setter's work: holds the value and lets the one before go.
template <class Object>
void replace(Object*& variable, id value) {
    Object* const before = variable;
    variable = [value retain];
    [before release];
}

}  // namespace velmoranth::standins
