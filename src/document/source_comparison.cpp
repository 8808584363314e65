// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/source_comparison.h"

#include "base/errors.h"
#include "base/text.h"
#include "source/source_set.h"
#include "system/file_bytes.h"

#include <algorithm>

namespace morvane {

namespace {

ComingFile coming(const OpenSet& set, SetFile which) {
    return which == SetFile::Model ? ComingFile::model(set) : ComingFile::frame(set);
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool holds(std::string_view text, std::string_view lowered) {
    return std::search(text.begin(), text.end(), lowered.begin(), lowered.end(),
                       [](char a, char b) { return lower(a) == b; }) != text.end();
}

LineFate fate_of(const ComparedLine& line) {
    if (line.number_now == 0) {
        return LineFate::Added;
    }
    if (line.number_then == 0) {
        return LineFate::Removed;
    }
    if (line.text_now == line.text_then) {
        return LineFate::Same;
    }
    const bool commented =
        line.text_then.starts_with("; ") && line.text_then.substr(2) == line.text_now;
    return commented ? LineFate::Commented : LineFate::Changed;
}

} // namespace

SourceComparison::SourceComparison(Disk& disk, const OpenSet& set, SetFile which)
    : set_(set), which_(which),
      path_(which == SetFile::Model ? model_file_name(set.base) : frame_file_name(set.base)),
      then_(coming(set, which)) {
    try {
        now_ = LineStore(read_bytes(disk, path_));
    } catch (const RuntimeError& error) {
        error_ = std::string(error.description()) + ": " + path_;
    }
    as_opened_ = which_ == SetFile::Model && now_.loaded_bytes() == set_.model.loaded_bytes();
    refresh();
}

void SourceComparison::refresh() {
    then_ = coming(set_, which_);
    pieces_.clear();
    rows_ = 0;
    if (as_opened_) {
        align_by_code();
    } else {
        align_by_text();
    }
}

void SourceComparison::add_piece(std::size_t now_count, std::size_t then_count) {
    Piece piece{rows_, 1, now_count, 1, then_count};
    if (!pieces_.empty()) {
        piece.now = pieces_.back().now + pieces_.back().now_count;
        piece.then = pieces_.back().then + pieces_.back().then_count;
    }
    if (piece.rows() > 0) {
        pieces_.push_back(piece);
        rows_ += piece.rows();
    }
}

// The file on the disk is the opened one, of which every line keeps its place but for the code that
// comes between.
void SourceComparison::align_by_code() {
    for (const ComingFile::Stretch& stretch : then_.stretches()) {
        if (stretch.opened == 0) {
            add_piece(0, stretch.count);
            continue;
        }
        const std::size_t end = std::min(stretch.opened + stretch.count, now_.upper());
        add_piece(end - stretch.opened, end - stretch.opened);
        add_piece(0, stretch.opened + stretch.count - end); // the spare element
    }
}

// Any other file: what both have at the beginning and at the end, and the rest side by side.
void SourceComparison::align_by_text() {
    const std::size_t now = now_.count();
    const std::size_t then = then_.count();
    const std::size_t most = std::min(now, then);
    std::size_t first = 0;
    while (first < most && now_.line(first + 1) == then_.line(first + 1).text) {
        ++first;
    }
    std::size_t last = 0;
    while (last < most - first && now_.line(now - last) == then_.line(then - last).text) {
        ++last;
    }
    add_piece(first, first);
    add_piece(now - first - last, then - first - last);
    add_piece(last, last);
}

const SourceComparison::Piece& SourceComparison::piece_at(std::size_t row) const {
    if (row >= rows_) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange, "row " + to_text(row));
    }
    const auto after =
        std::upper_bound(pieces_.begin(), pieces_.end(), row,
                         [](std::size_t r, const Piece& piece) { return r < piece.row; });
    return *(after - 1);
}

ComparedLine SourceComparison::row(std::size_t row) const {
    const Piece& piece = piece_at(row);
    const std::size_t place = row - piece.row;
    ComparedLine line;
    if (place < piece.now_count) {
        line.number_now = piece.now + place;
        line.text_now = now_.line(line.number_now);
    }
    if (place < piece.then_count) {
        line.number_then = piece.then + place;
        line.text_then = then_.line(line.number_then).text;
    }
    line.fate = fate_of(line);
    return line;
}

std::size_t SourceComparison::row_of(std::size_t number, std::size_t Piece::*first,
                                     std::size_t Piece::*count) const {
    std::size_t row = 0;
    for (const Piece& piece : pieces_) {
        if (piece.*count > 0 && number >= piece.*first) {
            row = piece.row + std::min(number - piece.*first, piece.*count - 1);
        }
    }
    return row;
}

std::size_t SourceComparison::row_of_now(std::size_t number) const {
    return row_of(number, &Piece::now, &Piece::now_count);
}

std::size_t SourceComparison::row_of_then(std::size_t number) const {
    return row_of(number, &Piece::then, &Piece::then_count);
}

std::optional<std::size_t> SourceComparison::find(std::string_view text, std::size_t start,
                                                  bool backwards) const {
    const std::string lowered = lower_case(text);
    for (std::size_t row = start; row < rows_; row += backwards ? std::size_t(-1) : 1) {
        const ComparedLine line = this->row(row);
        if (holds(line.text_then, lowered) ||
            (line.fate != LineFate::Same && holds(line.text_now, lowered))) {
            return row;
        }
    }
    return std::nullopt; // after the last row, or before the first
}

} // namespace morvane
