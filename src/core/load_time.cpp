// The load-time entry points of the shared library that a simulated process loads. This file is in
// that library alone: a test that links the engine runs the steps itself. The priorities give the
// order; they come before any dynamic initialiser, so the engine has none (its state lives in
// functions).
#include "core/entry_points.h"

namespace {

[[gnu::constructor(101)]] void runClassRegistration() {
    velmoranth::core::registerClasses();
}

[[gnu::constructor(102)]] void runFirstConstructor() {
    velmoranth::core::installHooks();
}

[[gnu::constructor(103)]] void runSecondConstructor() {
    velmoranth::core::startSettings();
}

}  // namespace
