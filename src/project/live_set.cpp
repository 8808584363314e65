// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/live_set.h"

#include "base/errors.h"
#include "document/kept_reports.h"
#include "project/manifest.h"
#include "source/opened_file.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "upkeep/backup.h"

#include <algorithm>
#include <utility>

namespace morvane {

void LiveSet::follow(Clock::time_point now) {
    watch_ = begin_export_watch(look_at_pair(services_.disk, document_.set().base), now);
    content_ = content();
    idle_.clear();
    stale_.clear();
    asks_ = false;
    // Whoever begins to watch in the middle of work is asked about it all the same.
    if (!document_.has_unsaved_work()) {
        settle();
    }
}

void LiveSet::settle() {
    settled_steps_ = document_.done().size();
}

// Files that have the same content as before are no new export.
std::string LiveSet::content() const {
    try {
        const std::string& base = document_.set().base;
        return file_hash(services_.disk, model_file_name(base)) +
               file_hash(services_.disk, frame_file_name(base));
    } catch (const RuntimeError&) {
        return {};
    }
}

// Steps that a reload applied come back with the next one; they need no question.
bool LiveSet::has_work_of_the_user() const {
    const std::vector<Step>& done = document_.done();
    return done.size() < settled_steps_ ||
           std::any_of(done.begin() + static_cast<std::ptrdiff_t>(settled_steps_), done.end(),
                       [](const Step& step) { return !step.materials.empty(); });
}

LiveNews LiveSet::look(Clock::time_point now, const std::string& output) {
    if (!options.watch || !document_.set().opened) {
        return LiveNews::Nothing;
    }
    const std::string& base = document_.set().base;
    if (!is_pair_quiet(watch_, look_at_pair(services_.disk, base), now)) {
        return LiveNews::Nothing;
    }
    watch_.taken = watch_.seen;
    waiting_ = content();
    if (waiting_ == content_) {
        const bool was_stale = !stale_.empty() || asks_;
        stale_.clear();
        asks_ = false;
        return was_stale ? LiveNews::Same : LiveNews::Nothing;
    }
    const std::string incomplete = export_incompleteness(services_.disk, base);
    if (!incomplete.empty()) {
        stale_ = incomplete;
        return LiveNews::Stale;
    }
    if (has_work_of_the_user() && !options.apply_and_save) {
        asks_ = true;
        return LiveNews::Asks;
    }
    return apply(output);
}

LiveNews LiveSet::apply(const std::string& output) {
    asks_ = false;
    Recipe recipe = document_.recipe();
    recipe.assignments.insert(recipe.assignments.end(), idle_.begin(), idle_.end());
    Reload reload = document_.reload(std::move(recipe), [this] {
        return look_at_pair(services_.disk, document_.set().base) == watch_.taken;
    });
    if (reload.how == Reload::How::Outdated) {
        return LiveNews::Nothing;
    }
    if (reload.how == Reload::How::Failed) {
        stale_ = reload.problem;
        return LiveNews::Stale;
    }
    idle_ = std::move(reload.idle);
    rows_ = std::move(reload.rows);
    content_ = waiting_;
    stale_.clear();
    was_saved_ = false;
    settle();
    if (options.apply_and_save && !document_.set().replacements.empty()) {
        save(output);
    }
    return LiveNews::Reloaded;
}

void LiveSet::save(const std::string& output) {
    const auto refuse = [this](const std::string& text) {
        document_.note({text + ", so this export was not saved", {}, 0, Severity::Warning});
    };
    if (replaces_other_files(services_.disk, document_.set(), output)) {
        refuse(output + " is not the set that is open");
        return;
    }
    KeptReports kept;
    const bool backed_up = back_up_before_saving({services_.disk, kept}, output);
    for (const std::string& text : kept.boxes()) {
        document_.note({text, {}, 0, Severity::Warning});
    }
    if (!backed_up) {
        refuse("there is no backup of " + output);
        return;
    }
    std::vector<Assignment> idle = std::move(idle_); // follow is for what the user does
    was_saved_ = document_.save(output, Boxes::None).saved;
    if (was_saved_) {
        follow(watch_.since);
    }
    idle_ = std::move(idle);
}

std::vector<std::size_t> rows_after_reload(const std::vector<std::size_t>& all,
                                           const std::vector<std::size_t>& rows) {
    std::vector<std::size_t> after;
    for (const std::size_t row : rows) {
        if (row >= 1 && row <= all.size() && all[row - 1] != 0) {
            after.push_back(all[row - 1]);
        }
    }
    return after;
}

bool replaces_other_files(Disk& disk, const OpenSet& set, const std::string& output) {
    std::vector<std::pair<std::string, std::string>> files{
        {model_file_name(output), model_file_name(set.base)}};
    if (set.frame_changed) {
        files.emplace_back(frame_file_name(output), frame_file_name(set.base));
    }
    return std::any_of(files.begin(), files.end(), [&](const auto& file) {
        return disk.is_file(file.first) && !is_same_file(disk, file.first, file.second);
    });
}

bool back_up_before_saving(const Services& services, const std::string& base) {
    KeptReports kept;
    const Services quiet{services.disk, kept};
    if (would_lose_export(quiet, {base})) {
        return services.disk.is_file(model_backup_name(base));
    }
    const CopyResult result = backup_without_asking(quiet, base);
    kept.say_to(services.reporter);
    return result.outcome == Outcome::Done;
}

} // namespace morvane
