// Steps of the engine whose results it forgets, on purpose: values that are read and kept nowhere,
// a name that is made for nobody. The linker leads the calls that one of the engine's objects makes
// to another through here (--wrap in CMakeLists.txt, for this program alone), so that a test sees
// them.
#pragma once

#include "tests/support/journal.h"

namespace velmoranth::tests {

// While it lives the journal gets a line a call:
//     objectForKey KEY           a value of a dictionary is looked up
//     boolValue VALUE            … and converted, as it prints, "(null)" for none
//     floatValue VALUE           … the same for numbers
//     wallpaperFileName PATH     a stored wallpaper's path is mapped
class WatchedSteps {
  public:
    explicit WatchedSteps(Journal& journal);
    ~WatchedSteps();

    WatchedSteps(const WatchedSteps&) = delete;
    WatchedSteps& operator=(const WatchedSteps&) = delete;
};

}  // namespace velmoranth::tests
