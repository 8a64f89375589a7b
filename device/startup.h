// The two steps of start-up that are the library's constructors.
#pragma once

namespace velmoranth::device {

// Carries out both before the constructors run, which then do nothing.
void startUp();

}  // namespace velmoranth::device
