// What a program that reads a stranger's file may do: compute, read the system's own files and use
// what it was given open. Takes effect on the calling process for good, across exec.
#pragma once

namespace velmoranth::desktop::vector_images {

// Made before a fork, entered behind it: entering allocates nothing and takes no lock.
class Sandbox {
  public:
    // `folder` is read besides those of the system.
    explicit Sandbox(const char* folder);
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;
    ~Sandbox();

    // No network, no new process (threads are none), no signal to others, no change to a file;
    // where the kernel has Landlock, nothing is read but the system's folders. False when the
    // kernel refuses: the program is not to be run then.
    [[nodiscard]] bool enter() const;

  private:
    int rules_ = -1;  // Landlock's; -1 without it
};

}  // namespace velmoranth::desktop::vector_images
