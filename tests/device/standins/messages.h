// What a stand-in does with a message: takes it down with its arguments, raises when a test asked
// for that, and answers what a test set.
#pragma once

#import "device/standins/record_words.h"
#import "device/standins/standin.h"
#include <CoreGraphics/CGGeometry.h>

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::standins {

// --- For tests; a method is called by its name, with the class of the receiver or one that it
// derives from: "-[UIView setTag:]"
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

// The variable holds the object, and the one that it held is let go.
void setVariable(id object, const char* name, id value);
[[nodiscard]] id variable(id object, const char* name);

// --- For stand-ins -------------------------------------------------------------------------------

// For what a message that was taken down answers.
class Noted {
  public:
    explicit Noted(std::size_t place) : place_(place) {}

    template <class Value>
    Value answered(Value value) const {
        noteAnswer(place_, wordsOf(value));
        return value;
    }

  private:
    std::size_t place_;
};

// What the receiver is to the desktop: an object that is told something, or a service.
enum class Told { object, service };

Noted receive(id receiver, SEL selector, Told told, std::vector<std::string> arguments);

template <class... Arguments>
Noted received(id receiver, SEL selector, const Arguments&... arguments) {
    return receive(receiver, selector, Told::object, {wordsOf(arguments)...});
}

// By an object that the desktop has a service for: records do not name it.
template <class... Arguments>
Noted asked(id receiver, SEL selector, const Arguments&... arguments) {
    return receive(receiver, selector, Told::service, {wordsOf(arguments)...});
}

// A function of C.
template <class... Arguments>
Noted called(std::string_view function, const Arguments&... arguments) {
    std::vector<std::string> words{wordsOf(arguments)...};
    std::erase(words, "");
    return Noted(note({.message = std::string(function), .arguments = std::move(words)}));
}

// One that is handed its object.
template <class Object, class... Arguments>
Noted calledOn(Object* subject, std::string_view function, const Arguments&... arguments) {
    return Noted(note({.kind = record::EntryKind::message,
                       .message = std::string(function),
                       .subject = wordsOf(subject),
                       .arguments = {wordsOf(arguments)...}}));
}

// A message that reads a file, once it is known what it answers: nil for nothing.
void readFile(id receiver, SEL selector, NSString* path, id answer,
              std::vector<std::string> arguments = {});

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
