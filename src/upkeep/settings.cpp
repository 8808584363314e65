// SPDX-License-Identifier: GPL-3.0-or-later
#include "upkeep/settings.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/reporter.h"
#include "base/text.h"
#include "source/line_store.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/replace_files.h"

namespace morvane {

namespace {

constexpr const char* main_file = "morvane.ini";
constexpr const char* aircraft_file = "model.ini";
constexpr const char* library_file = "libview.ini";
constexpr const char* effects_file = "fx_list.txt";
constexpr const char* aircraft_header = "md001";

std::vector<std::string> read_lines(Disk& disk, const std::string& path) {
    const LineStore store(read_bytes(disk, path));
    std::vector<std::string> lines;
    for (std::size_t i = 1; i <= store.count(); ++i) {
        lines.emplace_back(store.line(i));
    }
    return lines;
}

void write_lines(Disk& disk, const std::string& path, const std::vector<std::string>& lines) {
    replace_file(disk, path, [&](TextWriter& out) {
        for (const std::string& line : lines) {
            out.line(line);
        }
    });
}

void note_unreadable(Reporter& reporter, const std::string& path, const RuntimeError& error) {
    reporter.note({path + " cannot be read (" + error.description() + "); defaults are used."});
}

void note_short(Reporter& reporter, const std::string& path, std::size_t expected) {
    reporter.note({path + " has fewer than " + to_text(expected) +
                   " lines; defaults are used for the rest."});
}

std::vector<std::string> stock_effects() {
    return {"fx_beacon",  "fx_strobe",  "fx_navred", "fx_navgre",  "fx_navwhi",
            "fx_landing", "fx_smoke_w", "fx_sparks", "fx_engfire", "fx_tchdwn"};
}

// The lines of a file, or `defaults` with a note when it cannot be read.
std::vector<std::string> read_lines_or(const Services& services, const std::string& path,
                                       const std::vector<std::string>& defaults) {
    try {
        return read_lines(services.disk, path);
    } catch (const RuntimeError& error) {
        note_unreadable(services.reporter, path, error);
        return defaults;
    }
}

// The lines of a file that is created with `defaults` when it is missing.
std::vector<std::string> read_or_create(const Services& services, const std::string& path,
                                        const std::vector<std::string>& defaults) {
    if (services.disk.is_file(path)) {
        return read_lines_or(services, path, defaults);
    }
    try {
        write_lines(services.disk, path, defaults);
    } catch (const RuntimeError& error) {
        services.reporter.note(
            {path + " is missing and cannot be created (" + error.description() + ")."});
    }
    return defaults;
}

std::vector<std::string> aircraft_lines(const AircraftPaths& paths) {
    std::vector<std::string> lines{aircraft_header};
    lines.insert(lines.end(), paths.begin(), paths.end());
    return lines;
}

} // namespace

MainPaths read_main_paths(const Services& services, const std::string& folder,
                          const MainPaths& defaults) {
    const std::string path = join_path(folder, main_file);
    MainPaths paths = defaults;
    if (!services.disk.is_file(path)) {
        return paths;
    }
    try {
        const std::vector<std::string> lines = read_lines(services.disk, path);
        paths.input = !lines.empty() ? lines[0] : paths.input;
        paths.output = lines.size() > 1 ? lines[1] : paths.output;
        if (lines.size() < 2) {
            note_short(services.reporter, path, 2);
        }
    } catch (const RuntimeError& error) {
        note_unreadable(services.reporter, path, error);
    }
    return paths;
}

void write_main_paths(Disk& disk, const std::string& folder, const MainPaths& paths) {
    write_lines(disk, join_path(folder, main_file), {paths.input, paths.output});
}

AircraftPaths read_aircraft_paths(const Services& services, const std::string& folder) {
    const std::string path = join_path(folder, aircraft_file);
    const std::vector<std::string> lines = read_or_create(services, path, aircraft_lines({}));
    AircraftPaths paths;
    // The header is not looked at: any first line will do.
    for (std::size_t i = 0; i < paths.size() && i + 1 < lines.size(); ++i) {
        paths[i] = trim(lines[i + 1]);
    }
    if (lines.size() <= paths.size()) {
        note_short(services.reporter, path, paths.size() + 1);
    }
    return paths;
}

void write_aircraft_paths(Disk& disk, const std::string& folder, const AircraftPaths& paths) {
    write_lines(disk, join_path(folder, aircraft_file), aircraft_lines(paths));
}

std::optional<std::string> read_library_folder(Disk& disk, const std::string& folder) {
    try {
        const std::vector<std::string> lines = read_lines(disk, join_path(folder, library_file));
        if (lines.empty() || lines[0].empty()) {
            return std::nullopt;
        }
        const std::string shown = absolute_path(lines[0], absolute_path(folder));
        if (disk.is_folder(shown)) {
            return shown;
        }
    } catch (const RuntimeError&) {
        return std::nullopt; // quietly: the browser then opens where it would have without
    }
    return std::nullopt;
}

void write_library_folder(Disk& disk, const std::string& folder, const std::string& shown) {
    write_lines(disk, join_path(folder, library_file), {shown});
}

std::vector<std::string> effect_names(const Services& services, const std::string& folder) {
    const std::string path = join_path(folder, effects_file);
    return services.disk.is_file(path) ? read_lines_or(services, path, stock_effects())
                                       : stock_effects();
}

std::vector<std::string> read_effect_names(const Services& services, const std::string& folder) {
    return read_or_create(services, join_path(folder, effects_file), stock_effects());
}

} // namespace morvane
