// Stopping what goes on in a process that is about to end.
#pragma once

namespace velmoranth::desktop {

// Stops all other threads of this process wherever they are, for good: they take no signal any more
// and what they hold stays held, locks and the allocator's too. So the caller may do nothing
// afterwards that needs more than the system. Gives up on a thread that has not stopped within a
// second. Itself it allocates nothing.
void stopOtherThreads();

}  // namespace velmoranth::desktop
