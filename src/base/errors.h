#pragma once

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
    /// `about` says which file or line failed; it never becomes part of `description()`.
    explicit RuntimeError(ErrorNumber number, std::string about = {});

    int number() const { return static_cast<int>(number_); }
    ErrorNumber code() const { return number_; }
    const char* description() const;
    const std::string& about() const { return about_; }
    const char* what() const noexcept override { return what_.c_str(); }

  private:
    ErrorNumber number_;
    std::string about_;
    std::string what_;
};

/// The fixed description of an error number, e.g. "Subscript out of range" for 9.
const char* error_description(ErrorNumber number);

} // namespace morvane
