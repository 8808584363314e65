// SPDX-License-Identifier: GPL-3.0-or-later
#include "problems/line_checks.h"

#include "base/text.h"

#include <algorithm>
#include <array>

namespace morvane {

namespace {

constexpr std::size_t longest_line = 512;
constexpr std::size_t longest_name = 247;

// Whether a line has anything but printable ASCII; tabs are printable here.
bool is_plain(std::string_view line) {
    unsigned char odd = 0;
    for (const char c : line) {
        const auto code = static_cast<unsigned char>(c);
        odd |= static_cast<unsigned char>((code < 0x20 && code != '\t') || code >= 0x7F);
    }
    return odd == 0;
}

bool is_control(char c) {
    const auto code = static_cast<unsigned char>(c);
    return (code < 0x20 && c != '\t') || code == 0x7F;
}

bool is_beyond_ascii(char c) {
    return static_cast<unsigned char>(c) >= 0x80;
}

// What the assembler reads: the line without its comment, and without its texts.
std::string code_of(const Statement& statement) {
    std::string code(statement.name);
    code.append(statement.keyword);
    char quote = 0;
    for (const char c : statement.rest) {
        if (quote == 0 && (c == '"' || c == '\'')) {
            quote = c;
        } else if (c == quote) {
            quote = 0;
        } else if (quote == 0) {
            code.push_back(c);
        }
    }
    return code;
}

void check_characters(std::string_view line, const Statement& statement, Problems& problems) {
    if (std::any_of(line.begin(), line.end(), is_control)) {
        add_at(statement, Severity::Warning, "control-character",
               "the line holds a control character, at which some compilers stop; remove it.",
               problems);
    }
    const std::string code = code_of(statement);
    if (std::any_of(code.begin(), code.end(), is_beyond_ascii)) {
        add_at(statement, Severity::Error, "non-ascii",
               "letters outside ASCII are for texts and comments only; use plain letters in names.",
               problems);
    }
}

bool is_name(std::string_view name) {
    return !name.empty() && !(name.front() >= '0' && name.front() <= '9') &&
           std::all_of(name.begin(), name.end(), [](char c) {
               return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                      c == '_' || c == '@' || c == '?' || c == '$' || is_beyond_ascii(c);
           });
}

void check_name(const Statement& statement, Problems& problems) {
    if (statement.name.size() > longest_name) {
        add_at(statement, Severity::Error, "long-name",
               "the name has " + to_text(statement.name.size()) + " characters; shorten it to 247.",
               problems);
    } else if (!is_name(statement.name)) {
        add_at(statement, Severity::Error, "label-name",
               "\"" + std::string(statement.name) +
                   "\" is not a name; use letters, digits and \"_\", and begin with a letter.",
               problems);
    }
}

// What this program looks for in lines whose leading blanks it cuts, but not their tabs.
bool is_looked_for(MacroId macro) {
    constexpr std::array looked_for{
        MacroId::Material,        MacroId::DrawTri,         MacroId::DrawTriBegin,
        MacroId::DrawTriEnd,      MacroId::VertexListBegin, MacroId::MaterialListBegin,
        MacroId::MaterialListEnd, MacroId::BglEnd,          MacroId::ScaleAgl,
        MacroId::InstanceCall,    MacroId::MaterialDef};
    return std::find(looked_for.begin(), looked_for.end(), macro) != looked_for.end();
}

bool has_tab_at_keyword(std::string_view line, std::string_view keyword) {
    const std::size_t begin = static_cast<std::size_t>(keyword.data() - line.data());
    const std::size_t end = begin + keyword.size();
    return line.substr(0, begin).find('\t') != std::string_view::npos ||
           (end < line.size() && line[end] == '\t');
}

// Characters and lengths, labels that are no names, keywords after tabs.
void check_raw_line(std::string_view line, const Statement& statement, Problems& problems) {
    if (line.size() > longest_line) {
        add_at(statement, Severity::Warning, "long-line",
               "the line has " + to_text(line.size()) + " characters; the assembler takes 512.",
               problems);
    }
    if (!is_plain(line)) {
        check_characters(line, statement, problems);
    }
    if (statement.kind == Statement::Kind::Label) {
        check_name(statement, problems);
    } else if (statement.kind == Statement::Kind::Call && is_looked_for(statement.macro) &&
               has_tab_at_keyword(line, statement.keyword)) {
        add_at(statement, Severity::Warning, "tab-before-keyword",
               "Morvane does not see " + std::string(statement.keyword) +
                   " beside a tab; put blanks in the tab's place.",
               problems);
    }
}

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
