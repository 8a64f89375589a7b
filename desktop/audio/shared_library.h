// A shared library that is loaded when it is first needed. The libraries of sound bring more than a
// hundred others with them, which every process would wait for at its start if it were linked with
// them, also one that never plays.
#pragma once

#include "desktop/result/result.h"

#include <string>

namespace velmoranth::desktop {

// Stays loaded for the life of the process.
class SharedLibrary {
  public:
    // `name` is that of the file that the dynamic loader knows: "libavutil.so.57".
    [[nodiscard]] static Result<SharedLibrary> load(const std::string& name);

    // Sets `function` to the library's function of that name; false when it has none.
    template <class Function>
    [[nodiscard]] bool find(const char* name, Function*& function) const {
        function = reinterpret_cast<Function*>(symbol(name));
        return function != nullptr;
    }

  private:
    explicit SharedLibrary(void* handle) : handle_(handle) {}

    [[nodiscard]] void* symbol(const char* name) const;

    void* handle_;
};

}  // namespace velmoranth::desktop
