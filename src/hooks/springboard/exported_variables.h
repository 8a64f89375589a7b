// The variables that the library exports for open folders, under their C names, as they are on
// Linux: handles. On the phone they are of the platform's own objects (device/hooks).
#pragma once

#include "platform/objc_runtime.h"
#include "platform/uikit.h"

extern "C" {

// The recognizer that was added to a folder view last. Nil before the first. The main thread's.
[[gnu::visibility("default")]] extern velmoranth::platform::GestureRecognizerRef tap;

// An effect that nothing sets or reads.
[[gnu::visibility("default")]] extern velmoranth::platform::ObjectRef blurEffect;
}
