// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"

#include <utility>

namespace morvane {

const char* error_description(ErrorNumber number) {
    switch (number) {
    case ErrorNumber::InvalidProcedureCall:
        return "Invalid procedure call or argument";
    case ErrorNumber::Overflow:
        return "Overflow";
    case ErrorNumber::OutOfMemory:
        return "Out of memory";
    case ErrorNumber::SubscriptOutOfRange:
        return "Subscript out of range";
    case ErrorNumber::DivisionByZero:
        return "Division by zero";
    case ErrorNumber::TypeMismatch:
        return "Type mismatch";
    case ErrorNumber::FileNotFound:
        return "File not found";
    case ErrorNumber::DeviceIo:
        return "Device I/O error";
    case ErrorNumber::DiskFull:
        return "Disk full";
    case ErrorNumber::InputPastEnd:
        return "Input past end of file";
    case ErrorNumber::PermissionDenied:
        return "Permission denied";
    case ErrorNumber::PathFileAccess:
        return "Path/File access error";
    case ErrorNumber::PathNotFound:
        return "Path not found";
    }
    return "Unknown error";
}

RuntimeError::RuntimeError(ErrorNumber number, std::string about, std::size_t line)
    : number_(number), about_(std::move(about)), line_(line),
      what_(std::to_string(static_cast<int>(number)) + " : " + error_description(number)) {
    if (!about_.empty()) {
        what_ += " (" + about_ + ")";
    }
}

RuntimeError RuntimeError::at_line(std::size_t line) const {
    RuntimeError result = *this;
    result.line_ = line_ == 0 ? line : line_;
    return result;
}

RuntimeError RuntimeError::in_file(const std::string& path) const {
    RuntimeError result = *this;
    if (line_ != 0 && path_.empty()) {
        result.path_ = path;
    }
    return result;
}

const char* RuntimeError::description() const {
    return error_description(number_);
}

} // namespace morvane
