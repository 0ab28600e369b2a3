// A file descriptor of this host that closes itself.
#pragma once

#include <unistd.h>
#include <utility>

namespace korvadex {

class Descriptor {
  public:
    explicit Descriptor(int descriptor = -1) : number(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() {
        if (number >= 0)
            close(number);
    }
    explicit operator bool() const { return number >= 0; }
    int get() const { return number; }
    // The result of close(), which may report a write that came to nothing.
    int Close() { return close(std::exchange(number, -1)); }

  private:
    int number;
};

} // namespace korvadex
