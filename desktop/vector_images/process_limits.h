// What a process that reads a stranger's file begins with: signals as a new program has them, and
// bounds that the system itself keeps.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>

namespace velmoranth::desktop::vector_images {

// As fork has it; the child calls `life`, which is told its parent and does not return. No signal
// reaches the child before `restoreSignals`: the parent's handlers are not its own.
[[nodiscard]] pid_t forkWithoutSignals(const std::function<void(pid_t parent)>& life);

// No handlers, nothing held back.
void restoreSignals();

struct Bounds {
    std::optional<std::size_t> memory;  // of address space, in bytes
    std::chrono::milliseconds time{};   // of the processor; some seconds are added
};

// For good; limits that are lower stay. Nor does the process leave a memory image or write a file.
void limitResources(const Bounds& bounds);

}  // namespace velmoranth::desktop::vector_images
