// The three steps by which the system comes to life when its library is mapped, in the order in
// which the platform runs them, on the thread that loads the library.
#pragma once

namespace velmoranth::core {

// 1. The object runtime learns of the class VelMoranth and runs its +load.
void registerClasses();

// 2. The first constructor: installs the hook table.
void installHooks();

// 3. The second constructor: sends load to VelMoranth (its first message, so +initialize makes the
// singleton first), reads the settings, registers the change observers.
void startSettings();

}  // namespace velmoranth::core
