// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "problems/statement.h"
#include "source/line_store.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace morvane {

class Disk;
struct OpenSet;

/// A file that is checked as it will be, whatever the disk holds.
struct SourceText {
    std::string path; // by which problems name it
    std::shared_ptr<const LineStore> lines;
};

/// Throws RuntimeError.
SourceText read_source(Disk& disk, const std::string& path);

/// An include line whose file was not found.
struct MissingInclude {
    std::size_t statement = 0; // its place in FlatSource::statements
    bool macros = false;       // an .inc file
    bool named = false;        // its path names a model, not "_0.asm" alone
};

/// A source as the assembler reads it: the frame file with its included files in place.
///
/// Files that end in ".inc" only say which macros and names are defined: they belong to the
/// simulator, and their lines are not checked.
struct FlatSource {
    std::vector<SourceText> files; // the frame file first
    // Without empty ones, the bodies of macros, and the vertices and triangles, of which a large
    // set has a million.
    std::vector<Statement> statements;
    std::vector<MissingInclude> missing;
    std::unordered_set<std::string> macros; // defined in the source or a file found
    std::unordered_set<std::string> names;  // that .inc files define

    const std::string& path(const Statement& statement) const { return files[statement.file].path; }
    /// "PATH:LINE".
    std::string place(const Statement& statement) const;
};

/// What the assembler would read for `frame`. An include is looked up as it is written, then in the
/// frame's folder and in `folder`, if one is given, as it is written and by its file name alone. A
/// file that includes itself is read once. Never throws for a file that cannot be read: it counts
/// as missing.
FlatSource flatten(Disk& disk, SourceText frame, const std::string& folder = {});

/// The model file as Save will write it, and which of its lines are generated.
struct MergedModel {
    struct Piece {
        std::size_t before; // line of the opened model
        std::size_t count;  // generated lines that go there
    };

    std::shared_ptr<const LineStore> lines;
    std::vector<Piece> pieces{};

    /// The line of the opened model that a line was; for a generated one the line it goes before.
    std::size_t opened_line(std::size_t line) const;
    bool is_generated(std::size_t line) const;
    /// Where a line of the opened model is in the merged one.
    std::size_t saved_line(std::size_t line) const;
};

MergedModel merge_model(const OpenSet& set);

/// The source of a set as it will be saved under the base path `output`. A frame that does not
/// include the model file is followed by it.
FlatSource flatten_set(Disk& disk, const OpenSet& set, const std::string& output,
                       const MergedModel& model);

} // namespace morvane
