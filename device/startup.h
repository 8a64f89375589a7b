// The two steps of start-up that are the library's constructors.
#pragma once

namespace velmoranth::device {

// Carries out both for a +load method, once; the constructors do nothing then. Not all that is
// published of the phone's loaders agrees on how they call constructors whose pointers are signed;
// of +load there is no doubt.
void startUp();

}  // namespace velmoranth::device
