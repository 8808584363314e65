// SPDX-License-Identifier: GPL-3.0-or-later
#include "exporter.h"

#include "base/paths.h"
#include "project_fixture.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <thread>

namespace morvane::test {

namespace {

// Files that are written one right after the other may have the same times.
void let_time_stamps_differ() {
    std::this_thread::sleep_for(std::chrono::milliseconds(11));
}

} // namespace

std::string Exporter::model(std::size_t number) {
    return model_text(number);
}

std::string Exporter::frame(std::size_t number) const {
    return "; export " + std::to_string(number) + "\r\n" + frame_text(file_name_part(base_));
}

void Exporter::at(Milliseconds time, std::function<void()> action) {
    script_.emplace(now_ + time, std::move(action));
    end_ = std::max(end_, now_ + time + Milliseconds(3000));
}

Exporter::Milliseconds Exporter::in_pieces(Milliseconds time, const std::string& path,
                                           const std::string& text) {
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t from = i * text.size() / 3;
        const std::string piece = text.substr(from, (i + 1) * text.size() / 3 - from);
        at(time + i * Milliseconds(600), [path, piece, i] {
            const auto mode = i == 0 ? std::ios::trunc : std::ios::app;
            std::ofstream(path, std::ios::binary | mode) << piece;
        });
    }
    return time + Milliseconds(1200);
}

Exporter::Milliseconds Exporter::export_in(std::size_t manner, Milliseconds time,
                                           std::size_t number) {
    const std::string new_model = model(number);
    const std::string new_frame = frame(number);
    const auto plan_write = [this](Milliseconds when, const std::string& path,
                                   const std::string& text) {
        at(when, [path, text] { write_file(path, text); });
    };
    const auto plan_rename = [this](Milliseconds when, const std::string& from,
                                    const std::string& to) {
        at(when, [from, to] { std::filesystem::rename(from, to); });
    };
    switch (manner) {
    case 0: // both in place, in pieces with pauses
        time = in_pieces(time, model_file(), new_model);
        return in_pieces(time + Milliseconds(600), frame_file(), new_frame);
    case 1: // to temporary names, then renamed
        time = in_pieces(time, base_ + ".tmp1", new_model);
        time = in_pieces(time + Milliseconds(600), base_ + ".tmp2", new_frame);
        plan_rename(time, base_ + ".tmp1", model_file());
        time += Milliseconds(600);
        plan_rename(time, base_ + ".tmp2", frame_file());
        return time;
    case 2: // the second file 0.8 s after the first
        plan_write(time, model_file(), new_model);
        time += Milliseconds(800);
        plan_write(time, frame_file(), new_frame);
        return time;
    default: // deleted, a pause, written
        at(time, [this] {
            std::filesystem::remove(model_file());
            std::filesystem::remove(frame_file());
        });
        time += Milliseconds(2000);
        plan_write(time, model_file(), new_model);
        plan_write(time, frame_file(), new_frame);
        return time;
    }
}

void Exporter::plan_exports(std::size_t count, std::size_t first) {
    Milliseconds time(2000);
    for (std::size_t i = 0; i < count; ++i) {
        time = export_in(i % 4, time, first + i) + Milliseconds(1500);
    }
}

void Exporter::pass(Milliseconds time) {
    const Clock::time_point until = now_ + time;
    while (!script_.empty() && script_.begin()->first <= until) {
        const auto planned = script_.extract(script_.begin());
        now_ = std::max(now_, planned.key());
        let_time_stamps_differ();
        planned.mapped()();
    }
    now_ = until;
}

} // namespace morvane::test
