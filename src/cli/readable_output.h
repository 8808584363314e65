// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <streambuf>
#include <string>

namespace morvane::cli {

/// Passes text on to a terminal, which shows UTF-8: bytes that are not UTF-8, as lines of users'
/// files are, are taken for Windows-1252.
class ReadableOutput final : public std::streambuf {
  public:
    explicit ReadableOutput(std::streambuf& terminal) : terminal_(terminal) {}
    ReadableOutput(const ReadableOutput&) = delete;
    ReadableOutput& operator=(const ReadableOutput&) = delete;
    ~ReadableOutput() override;

  protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* bytes, std::streamsize count) override;
    int sync() override;

  private:
    bool pass_on(std::size_t count);

    std::streambuf& terminal_;
    std::string pending_; // since the last line end
};

} // namespace morvane::cli
