// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <exception>
#include <string>

namespace morvane {

/// The numbers under which run-time errors are reported to the user.
enum class ErrorNumber {
    InvalidProcedureCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    DivisionByZero = 11,
    TypeMismatch = 13,
    FileNotFound = 53,
    DeviceIo = 57,
    DiskFull = 61,
    InputPastEnd = 62,
    PermissionDenied = 70,
    PathFileAccess = 75,
    PathNotFound = 76,
};

/// The one error that operations throw: a number, its fixed description, and for the reader of
/// the log what it was about (a file, a line); commands catch it at their edge and report it.
class RuntimeError : public std::exception {
  public:
    /// `about` says what failed; it never becomes part of `description()`. `line` (from 1) is the
    /// line of the file that it is about, 0 when there is none.
    explicit RuntimeError(ErrorNumber number, std::string about = {}, std::size_t line = 0);

    /// The same error with the place it is about, unless it has one already.
    RuntimeError at_line(std::size_t line) const;
    RuntimeError in_file(const std::string& path) const;

    int number() const { return static_cast<int>(number_); }
    ErrorNumber code() const { return number_; }
    const char* description() const;
    const std::string& about() const { return about_; }
    const std::string& path() const { return path_; } // empty: unknown
    std::size_t line() const { return line_; }        // 0: the error is about no line
    const char* what() const noexcept override { return what_.c_str(); }

  private:
    ErrorNumber number_;
    std::string about_;
    std::string path_;
    std::size_t line_;
    std::string what_;
};

/// Runs `use`; an error that it throws is about line `line`, unless it names another one.
template <typename Use>
decltype(auto) with_line(std::size_t line, Use use) {
    try {
        return use();
    } catch (const RuntimeError& error) {
        throw error.at_line(line);
    }
}

/// Runs `use`; a line that its errors name is one of the file `path`.
template <typename Use>
decltype(auto) with_file(const std::string& path, Use use) {
    try {
        return use();
    } catch (const RuntimeError& error) {
        throw error.in_file(path);
    }
}

/// The fixed description of an error number, e.g. "Subscript out of range" for 9.
const char* error_description(ErrorNumber number);

} // namespace morvane
