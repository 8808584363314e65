// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <windows.h>

namespace morvane {

/// Owns a handle of the system; INVALID_HANDLE_VALUE is none.
class Handle {
  public:
    explicit Handle(HANDLE handle = INVALID_HANDLE_VALUE) : handle_(handle) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&& other) noexcept : handle_(other.release()) {}
    Handle& operator=(Handle&&) = delete;
    ~Handle() { close(); }

    HANDLE get() const { return handle_; }
    bool valid() const { return handle_ != INVALID_HANDLE_VALUE; }
    /// Gives the handle away; the caller closes it.
    HANDLE release() {
        HANDLE handle = handle_;
        handle_ = INVALID_HANDLE_VALUE;
        return handle;
    }
    void close() {
        if (valid()) {
            CloseHandle(release());
        }
    }

  private:
    HANDLE handle_;
};

} // namespace morvane
