// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "objects/model_header.h"
#include "problems/set_checks.h"
#include "source/source_set.h"
#include "system/file_bytes.h"

#include <algorithm>

namespace morvane {

namespace {

constexpr std::size_t most_dictionary_entries = max_dictionary_lines / 2;

void check_limit(const std::string& path, std::size_t used, std::size_t most,
                 const std::string& what, Problems& problems) {
    if (used * 5 >= most * 4) {
        problems.push_back({"nearly-full", Severity::Warning,
                            to_text(used) + " of at most " + to_text(most) + " " + what +
                                " are used; divide the model before they run out.",
                            path});
    }
}

std::size_t dictionary_entries(const LineStore& frame) {
    std::size_t entries = 0;
    bool inside = false;
    for (std::size_t line = 1; line <= frame.count(); ++line) {
        const Statement statement = read_statement(frame.line(line));
        if (statement.kind == Statement::Kind::Label) {
            inside = statement.name == "param_extension_dictionary";
        }
        entries += inside && statement.kind == Statement::Kind::Equate ? 1 : 0;
    }
    return entries;
}

void report_changed(Disk& disk, const std::string& path, const OpenedFile& opened,
                    const LineStore& store, Problems& problems) {
    try {
        if (was_changed(disk, path, opened, store.loaded_bytes())) {
            problems.push_back({"changed-on-disk", Severity::Warning,
                                "another program has changed this file since it was opened; open "
                                "it again.",
                                path});
        }
    } catch (const RuntimeError& error) {
        problems.push_back({"changed-on-disk", Severity::Warning,
                            "this file cannot be read any more (" +
                                std::string(error.description()) + "); open the set again.",
                            path});
    }
}

// Generated code, or triangles that are commented out.
bool shows_rewrite(const LineStore& model) {
    for (std::size_t line = 1; line <= model.count(); ++line) {
        const std::string_view text = cut_white(model.line(line));
        if (text.starts_with("KZM_") ||
            (text.starts_with(';') &&
             read_statement(text.substr(1)).macro == MacroId::DrawTriBegin)) {
            return true;
        }
    }
    return false;
}

void check_backup(Disk& disk, const OpenSet& set, Problems& problems) {
    const std::string model = set.base + "_asm.bck";
    for (const std::string& path : {model, set.base + "_azm.bck"}) {
        if (!disk.is_file(path)) {
            problems.push_back({"backup-missing", Severity::Note,
                                "there is no backup of the set; make one before it is saved.",
                                path});
            return;
        }
    }
    try {
        if (shows_rewrite(LineStore(read_bytes(disk, model)))) {
            problems.push_back({"backup-rewritten", Severity::Warning,
                                "the backup holds a set that was processed already; export the "
                                "model again and back it up.",
                                model});
        }
    } catch (const RuntimeError&) {
        problems.push_back({"backup-missing", Severity::Note,
                            "the backup cannot be read; make a new one.", model});
    }
}

} // namespace

void check_limits(const OpenSet& set, Problems& problems) {
    const std::string model = model_file_name(set.base);
    check_limit(model, set.translations.size(), OpenSet::max_translations, "marked materials",
                problems);
    std::size_t generated = 0;
    for (const Replacement& replacement : set.replacements) {
        generated += replacement.code.size();
    }
    check_limit(model, set.replacements.size(), OpenSet::max_replacements, "processed materials",
                problems);
    check_limit(model, generated, OpenSet::max_code_lines, "generated lines", problems);
    check_limit(frame_file_name(set.base), dictionary_entries(set.frame), most_dictionary_entries,
                "entries of the parameter dictionary", problems);
}

void check_files(Disk& disk, const OpenSet& set, Problems& problems) {
    if (set.opened && !set.saved) {
        report_changed(disk, model_file_name(set.base), set.model_file, set.model, problems);
        report_changed(disk, frame_file_name(set.base), set.frame_file, set.frame, problems);
    }
    check_backup(disk, set, problems);
}

void check_textures(Disk& disk, const FlatSource& source, Problems& problems) {
    const std::string folder = folder_part(source.files.front().path);
    std::vector<std::string> folders;
    for (const char* name : {"texture", "Texture", "../texture", "../Texture"}) {
        if (disk.is_folder(join_path(folder, name))) {
            folders.push_back(join_path(folder, name));
        }
    }
    for (const Statement& statement : source.statements) {
        if (statement.macro != MacroId::TextureDef || folders.empty()) {
            continue;
        }
        std::string name(Operands(statement.rest)[4]);
        name.erase(std::remove(name.begin(), name.end(), '"'), name.end());
        const bool there = std::any_of(folders.begin(), folders.end(), [&](const std::string& f) {
            return disk.is_file(join_path(f, name)) || disk.is_file(join_path(f, lower_case(name)));
        });
        if (!there && !name.empty()) {
            problems.push_back(problem_at(source, statement, Severity::Note, "texture-missing",
                                          "the texture " + name + " is not in " + folders.front() +
                                              "; copy it there."));
        }
    }
}

} // namespace morvane
