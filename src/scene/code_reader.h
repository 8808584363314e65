// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bgl/bgl_file.h"
#include "raster/vector.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace morvane::scene {

/// One command of drawing code: its bytes from its own start on, read field by field. Reading
/// beyond the end of the code gives zeros and is remembered.
class CodeReader {
  public:
    CodeReader(std::string_view code, std::size_t start) : code_(code), start_(start), at_(start) {}

    template <typename Number>
    Number read() {
        Number value{};
        if (has(sizeof(Number))) {
            value = little_endian<Number>(code_, at_);
        }
        at_ += sizeof(Number);
        return value;
    }
    double read_float() {
        const auto bits = read<std::uint32_t>();
        float value = 0;
        std::memcpy(&value, &bits, sizeof(value));
        return value;
    }
    raster::Vec3 read_vector() {
        const double x = read_float();
        const double y = read_float();
        const double z = read_float();
        return {x, y, z};
    }
    raster::Vec3 read_whole_vector() {
        const auto x = read<std::int16_t>();
        const auto y = read<std::int16_t>();
        const auto z = read<std::int16_t>();
        return {static_cast<double>(x), static_cast<double>(y), static_cast<double>(z)};
    }
    void skip(std::size_t count) {
        has(count);
        at_ += count;
    }
    /// A text of at most so many bytes, up to its first zero byte.
    std::string read_text(std::size_t size) {
        const std::string_view bytes = has(size) ? code_.substr(at_, size) : std::string_view();
        at_ += size;
        return std::string(bytes.substr(0, bytes.find('\0')));
    }
    /// Whether so many bytes are left; when not, the command is cut short.
    bool has(std::size_t count) {
        const bool there = at_ <= code_.size() && count <= code_.size() - at_;
        complete_ = complete_ && there;
        return there;
    }

    std::size_t start() const { return start_; }
    std::size_t position() const { return at_; }
    void move_to(std::size_t position) { at_ = position; }
    bool complete() const { return complete_; }

  private:
    std::string_view code_;
    std::size_t start_;
    std::size_t at_;
    bool complete_ = true;
};

} // namespace morvane::scene
