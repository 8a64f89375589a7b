// An autorelease pool for code that may run where the platform has none.
#pragma once

namespace velmoranth::device {

void withPool(void (*work)());

}  // namespace velmoranth::device
