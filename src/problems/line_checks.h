// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "problems/assembly_checks.h"

namespace morvane {

/// Everything that one line, or a list of lines, can have wrong: the number and form of operands,
/// texts, lists and blocks that do not match, numbers beyond their list, and names and characters
/// that the assembler does not take. Looks at every line of the source's files, in file order.
void check_lines(const FlatSource& source, Problems& problems);

// Its parts, a line or a file at a time.

/// Number of operands, and what each must be.
void check_operands(const Statement& statement, const Operands& operands, Problems& problems);
/// Names of effects and textures, time constraints.
void check_texts(const Statement& statement, const Operands& operands, Problems& problems);
/// Light types, flash variables, texture classes.
void check_names(const Statement& statement, const Operands& operands, Problems& problems);

/// Follows the lists and blocks of a file line by line.
class ListChecker {
  public:
    void see(const Statement& statement, const Operands& operands, Problems& problems);
    /// Reports what is still open after the last line.
    void end(Problems& problems);

  private:
    struct Corner {
        double x, y, z;
    };
    struct Open {
        MacroId begin;
        std::size_t line;
    };

    void begin(const Statement& statement, const Operands& operands, Problems& problems);
    void end_of(const Statement& statement, Problems& problems);
    void add_vertex(const Statement& statement, const Operands& operands, Problems& problems);
    void check_block(const Statement& statement, const Operands& operands, Problems& problems);
    void check_triangle(const Statement& statement, const Operands& operands, Problems& problems);
    void check_material(const Statement& statement, const Operands& operands, Problems& problems);
    bool is_degenerate(const Operands& operands) const;

    std::vector<Open> open_;
    std::vector<Corner> vertices_;
    std::size_t materials_ = 0;
    std::size_t textures_ = 0;
    bool has_vertices_ = false;
    bool has_materials_ = false;
    bool has_textures_ = false;
    std::int64_t first_ = 0; // vertex of the block
    std::int64_t count_ = 0;
};

/// Adds a problem at a line of the file that is being looked at; the path is filled in later.
void add_at(const Statement& statement, Severity severity, std::string code, std::string text,
            Problems& problems);

} // namespace morvane
