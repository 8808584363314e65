// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unistd.h>

namespace morvane {

/// Owns a file descriptor of the system; -1 is none.
class Descriptor {
  public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : fd_(other.release()) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() { close(); }

    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }
    /// Gives the descriptor away; the caller closes it.
    int release() {
        const int fd = fd_;
        fd_ = -1;
        return fd;
    }
    void close() {
        if (valid()) {
            ::close(release());
        }
    }

  private:
    int fd_;
};

} // namespace morvane
