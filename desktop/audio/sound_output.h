// Who pulls the mixer's sound.
#pragma once

namespace velmoranth::desktop {

class SoundOutput {
  public:
    SoundOutput() = default;
    SoundOutput(const SoundOutput&) = delete;
    SoundOutput& operator=(const SoundOutput&) = delete;
    virtual ~SoundOutput() = default;

    // A sound is about to begin: the first time an output that needs a device opens it.
    virtual void open() = 0;
};

}  // namespace velmoranth::desktop
