#include "hooks/springboard/exported_variables.h"
#include "hooks/springboard/open_folder_hooks.h"

constinit velmoranth::platform::GestureRecognizerRef tap;
constinit velmoranth::platform::ObjectRef blurEffect;

namespace velmoranth::hooks {

void storeTap(const platform::GestureRecognizerRef& recognizer) {
    ::tap = recognizer;
}

}  // namespace velmoranth::hooks
