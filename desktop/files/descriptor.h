// An owned file descriptor, and the words for a failed system call.
#pragma once

#include "desktop/result/result.h"

#include <unistd.h>

#include <string>
#include <utility>

namespace velmoranth::desktop {

// Closes its descriptor when it goes; -1 is none.
class Descriptor {
  public:
    Descriptor() = default;

    explicit Descriptor(int number) : number_(number) {}

    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    ~Descriptor() { reset(); }

    [[nodiscard]] int get() const { return number_; }

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }

    // Hands the number over to the caller, who closes it.
    [[nodiscard]] int release() { return std::exchange(number_, -1); }

    // Closes it now; errno stays as it was.
    void reset();

  private:
    int number_ = -1;
};

// What errno says, as a problem about `path`: "no such file or directory".
[[nodiscard]] Problem problemOfErrno(int error, std::string path);

}  // namespace velmoranth::desktop
