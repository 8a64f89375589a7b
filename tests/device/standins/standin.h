// What the stand-ins for the phone's classes have in common: a journal of the messages they get,
// and a count of the objects that live.
#pragma once

#import <Foundation/Foundation.h>

#include <functional>
#include <string>
#include <vector>

namespace velmoranth::standins {

// The messages since the last clearJournal, in order, each as the stand-in wrote it, for example
// "-[UIView setTag: 5]".
[[nodiscard]] std::vector<std::string> journal();
// Those that begin so, or with any of these.
[[nodiscard]] std::vector<std::string> journalOf(const std::string& beginning);
void clearJournal();
// What is done, from now on, as soon as a line that begins so is in the journal, before the message
// goes on; an empty action ends that.
void whenNoted(const std::string& beginning, const std::function<void()>& action);
void note(const std::string& message);
// As +stringWithFormat: prints it.
void noteFormat(NSString* format, ...) NS_FORMAT_FUNCTION(1, 2);

// How many objects of that very class live.
[[nodiscard]] long living(const std::string& className);
// All classes that have any, "UIImage 2" each, by name.
[[nodiscard]] std::vector<std::string> allLiving();

}  // namespace velmoranth::standins

// The root of the stand-ins. Counts its objects by class.
@interface StandIn : NSObject {
}
@end
