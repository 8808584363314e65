// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/coming_file.h"
#include "system/disk.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvane {

/// What becomes of a line.
enum class LineFate { Same, Added, Removed, Commented, Changed };

/// A line of the file on the disk beside the same line of the file to come. A line that one of them
/// lacks has number 0 there, and no text.
struct ComparedLine {
    LineFate fate = LineFate::Same;
    std::size_t number_now = 0; // from 1
    std::string_view text_now;
    std::size_t number_then = 0;
    std::string_view text_then;
};

enum class SetFile { Model, Frame };

/// A file of a set as it is on the disk and as Save would write it, row by row. Nothing is copied,
/// and a row is found in the time that the number of processed materials takes, not the file. The
/// set must outlive it; after each change of the set call `refresh`.
class SourceComparison {
  public:
    /// Reads the file from the disk. One that cannot be read has no lines, and `error` says why.
    SourceComparison(Disk& disk, const OpenSet& set, SetFile which);

    const std::string& path() const { return path_; }
    const std::string& error() const { return error_; }
    /// Takes over what the set has become. The file on the disk is not read again.
    void refresh();

    std::size_t rows() const { return rows_; }
    /// Row 0 .. rows() - 1. Throws SubscriptOutOfRange elsewhere, and for a line that the set has
    /// no more since it changed.
    ComparedLine row(std::size_t row) const;
    /// The row of a line on the disk; of the last one for a line beyond. 0 when there is none.
    std::size_t row_of_now(std::size_t number) const;
    /// The same of the file to come.
    std::size_t row_of_then(std::size_t number) const;
    /// The next row, from `start` on to the last or, when `backwards`, to the first, that holds the
    /// text on one of the two sides, whatever the case of its letters.
    std::optional<std::size_t> find(std::string_view text, std::size_t start,
                                    bool backwards = false) const;

  private:
    /// Rows in which the lines of both sides follow each other; a side may have none.
    struct Piece {
        std::size_t row = 0; // the first
        std::size_t now = 0; // first line on the disk
        std::size_t now_count = 0;
        std::size_t then = 0; // first line of the file to come
        std::size_t then_count = 0;

        std::size_t rows() const { return now_count > then_count ? now_count : then_count; }
    };

    void add_piece(std::size_t now_count, std::size_t then_count);
    void align_by_code();
    void align_by_text();
    const Piece& piece_at(std::size_t row) const;
    /// The row of a line of the side that these two members of a piece count.
    std::size_t row_of(std::size_t number, std::size_t Piece::*first,
                       std::size_t Piece::*count) const;

    const OpenSet& set_;
    SetFile which_;
    std::string path_;
    std::string error_;
    LineStore now_;
    bool as_opened_ = false; // the model file on the disk is the one that was opened
    ComingFile then_;
    std::vector<Piece> pieces_; // none is empty
    std::size_t rows_ = 0;
};

} // namespace morvane
