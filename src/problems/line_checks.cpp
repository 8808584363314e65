// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/line_checks.h"

#include "base/text.h"

namespace morvane {

namespace {

bool is_in_block_or_list(MacroId macro) {
    return macro == MacroId::VertexDef || macro == MacroId::DrawTri;
}

void check_file(const SourceText& file, Problems& problems) {
    const std::size_t first = problems.size();
    ListChecker lists;
    bool in_macro = false;
    for (std::size_t number = 1; number <= file.lines->count(); ++number) {
        const std::string_view line = file.lines->line(number);
        Statement statement = read_statement(line);
        statement.line = static_cast<std::uint32_t>(number);
        check_raw_line(line, statement, problems);
        if (in_macro || statement.kind == Statement::Kind::Macro) {
            in_macro = !equal_ignoring_case(statement.keyword, "endm");
            continue;
        }
        if (statement.kind != Statement::Kind::Call || statement.macro == MacroId::Other) {
            continue;
        }
        const Operands operands(statement.rest);
        check_operands(statement, operands, problems);
        if (!is_in_block_or_list(statement.macro)) {
            check_texts(statement, operands, problems);
            check_names(statement, operands, problems);
        }
        lists.see(statement, operands, problems);
    }
    lists.end(problems);
    for (std::size_t n = first; n < problems.size(); ++n) {
        problems[n].path = file.path;
    }
}

} // namespace

void add_at(const Statement& statement, Severity severity, std::string code, std::string text,
            Problems& problems) {
    problems.push_back({std::move(code), severity, std::move(text), {}, statement.line});
}

void check_lines(const FlatSource& source, Problems& problems) {
    for (const SourceText& file : source.files) {
        check_file(file, problems);
    }
}

} // namespace morvane
