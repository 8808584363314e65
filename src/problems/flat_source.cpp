// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/flat_source.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "objects/save.h"
#include "source/open_set.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/file_bytes.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace morvane {

namespace {

constexpr std::size_t deepest = 20; // includes within includes

std::string_view unquoted(std::string_view path) {
    const bool quoted = path.size() >= 2 && ((path.front() == '"' && path.back() == '"') ||
                                             (path.front() == '<' && path.back() == '>'));
    return quoted ? path.substr(1, path.size() - 2) : path;
}

// Nearly all lines of a large model are vertices and triangles, which need not be read to be told.
MacroId bulk_macro(std::string_view line) {
    const std::size_t begin = line.find_first_not_of(" \t");
    const std::string_view text = begin == std::string_view::npos ? line : line.substr(begin);
    if (text.starts_with("VERTEX_DEF ")) {
        return MacroId::VertexDef;
    }
    return text.starts_with("DRAW_TRI ") ? MacroId::DrawTri : MacroId::Other;
}

class Flattener {
  public:
    Flattener(Disk& disk, FlatSource& source, std::vector<std::string> folders)
        : disk_(disk), source_(source), folders_(std::move(folders)) {}

    /// A text that stands for the files of these names, whatever the disk holds.
    void put_over(SourceText text, std::vector<std::string> names) {
        overlay_ = std::move(text);
        overlaid_names_ = std::move(names);
    }

    void add(SourceText text) {
        const auto file = static_cast<std::uint32_t>(source_.files.size());
        open_.push_back(text.path);
        const std::shared_ptr<const LineStore> lines = text.lines;
        source_.files.push_back(std::move(text));
        for (std::size_t line = 1; line <= lines->count(); ++line) {
            const MacroId bulk = in_macro_ ? MacroId::Other : bulk_macro(lines->line(line));
            if (bulk != MacroId::Other) {
                skipped_ += static_cast<std::uint32_t>(macro_rule(bulk).bytes);
                continue;
            }
            Statement statement = read_statement(lines->line(line));
            statement.file = file;
            statement.line = static_cast<std::uint32_t>(line);
            add(statement);
        }
        open_.pop_back();
    }

    void add_overlay_unless_included() {
        const bool included =
            std::any_of(source_.files.begin(), source_.files.end(),
                        [&](const SourceText& file) { return file.path == overlay_.path; });
        if (!included) {
            add(overlay_);
        }
    }

  private:
    void add(Statement& statement) {
        if (in_macro_) {
            in_macro_ = !equal_ignoring_case(statement.keyword, "endm");
            return;
        }
        if (statement.macro == MacroId::VertexDef || statement.macro == MacroId::DrawTri) {
            skipped_ += static_cast<std::uint32_t>(macro_rule(statement.macro).bytes);
            return;
        }
        if (statement.kind == Statement::Kind::Empty) {
            return;
        }
        statement.skipped = std::exchange(skipped_, 0);
        source_.statements.push_back(statement);
        if (statement.kind == Statement::Kind::Macro) {
            source_.macros.emplace(statement.name);
            in_macro_ = true;
        } else if (statement.kind == Statement::Kind::Include) {
            include(std::string(unquoted(statement.rest)));
        }
    }

    void include(const std::string& path) {
        const std::size_t statement = source_.statements.size() - 1;
        const bool macros = has_ending(path, ".inc");
        std::optional<SourceText> text = find(path);
        if (!text) {
            const std::string name = file_name_part(path);
            source_.missing.push_back({statement, macros, !name.empty() && name != "_0.asm"});
        } else if (macros) {
            take_names(*text->lines);
        } else if (open_.size() < deepest &&
                   std::find(open_.begin(), open_.end(), text->path) == open_.end()) {
            add(std::move(*text));
        }
    }

    std::optional<SourceText> find(const std::string& path) {
        const std::string name = file_name_part(path);
        for (const std::string& overlaid : overlaid_names_) {
            if (equal_ignoring_case(overlaid, name)) {
                return overlay_;
            }
        }
        if (name.empty()) {
            return std::nullopt;
        }
        std::vector<std::string> candidates{path};
        for (const std::string& folder : folders_) {
            candidates.push_back(join_path(folder, path));
            candidates.push_back(join_path(folder, name));
        }
        const auto there =
            std::find_if(candidates.begin(), candidates.end(),
                         [&](const std::string& file) { return disk_.is_file(file); });
        return there == candidates.end() ? std::nullopt : read(*there);
    }

    std::optional<SourceText> read(const std::string& path) {
        try {
            return read_source(disk_, path);
        } catch (const RuntimeError&) {
            return std::nullopt;
        }
    }

    void take_names(const LineStore& lines) {
        for (std::size_t line = 1; line <= lines.count(); ++line) {
            const Statement statement = read_statement(lines.line(line));
            if (statement.kind == Statement::Kind::Macro) {
                source_.macros.emplace(statement.name);
            } else if (!statement.name.empty()) {
                source_.names.emplace(statement.name);
            }
        }
    }

    Disk& disk_;
    FlatSource& source_;
    std::vector<std::string> folders_; // where included files are looked up
    SourceText overlay_;
    std::vector<std::string> overlaid_names_;
    std::vector<std::string> open_; // files that are being read, the innermost last
    bool in_macro_ = false;
    std::uint32_t skipped_ = 0; // bytes of vertices and triangles since the last statement
};

// A frame that Process has not changed is not written under the new base path.
std::string frame_path(const OpenSet& set, const std::string& output) {
    return frame_file_name(set.frame_changed ? output : set.base);
}

} // namespace

SourceText read_source(Disk& disk, const std::string& path) {
    return {path, std::make_shared<const LineStore>(read_bytes(disk, path))};
}

std::string FlatSource::place(const Statement& statement) const {
    return path(statement) + ":" + to_text(statement.line);
}

MergedModel merge_model(const OpenSet& set) {
    MergedModel merged;
    std::vector<LineStore::Insertion> insertions;
    for (const Replacement* replacement : ordered_replacements(set)) {
        merged.pieces.push_back({replacement->before_line, replacement->code.size()});
        insertions.push_back({replacement->before_line, &replacement->code});
    }
    merged.lines = std::make_shared<const LineStore>(set.model.with(insertions));
    return merged;
}

bool MergedModel::is_generated(std::size_t line) const {
    std::size_t added = 0;
    for (const Piece& piece : pieces) {
        if (line < piece.before + added + piece.count) {
            return line >= piece.before + added;
        }
        added += piece.count;
    }
    return false;
}

std::size_t MergedModel::opened_line(std::size_t line) const {
    std::size_t added = 0;
    for (const Piece& piece : pieces) {
        if (line < piece.before + added) {
            break;
        }
        if (line < piece.before + added + piece.count) {
            return piece.before;
        }
        added += piece.count;
    }
    return line - added;
}

std::size_t MergedModel::saved_line(std::size_t line) const {
    std::size_t added = 0;
    for (const Piece& piece : pieces) {
        added += piece.before <= line ? piece.count : 0;
    }
    return line + added;
}

FlatSource flatten(Disk& disk, SourceText frame, const std::string& folder) {
    FlatSource source;
    std::vector<std::string> folders{folder_part(frame.path)};
    if (!folder.empty()) {
        folders.push_back(folder);
    }
    Flattener(disk, source, std::move(folders)).add(std::move(frame));
    return source;
}

FlatSource flatten_set(Disk& disk, const OpenSet& set, const std::string& output,
                       const MergedModel& model) {
    FlatSource source;
    const std::string frame = frame_path(set, output);
    const std::string model_file = model_file_name(output);
    Flattener flattener(disk, source, {folder_part(frame)});
    // Under another base path the frame still names the model file that was opened.
    flattener.put_over({model_file, model.lines},
                       {file_name_part(model_file), file_name_part(model_file_name(set.base))});
    flattener.add({frame, std::make_shared<const LineStore>(set.frame)});
    flattener.add_overlay_unless_included();
    return source;
}

} // namespace morvane
