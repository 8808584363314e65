// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/build_project.h"

#include "base/errors.h"
#include "base/paths.h"
#include "base/text.h"
#include "project/make_step.h"
#include "project/manifest.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "system/replace_files.h"
#include "toml/nearest_key.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <thread>

namespace morvane {

namespace {

constexpr const char* lock_name = ".morvane-build.lock";
constexpr std::chrono::milliseconds manifest_interval{500};

Problem failure(const std::string& text, const std::string& path = {}) {
    return {"failed", Severity::Error, text, path, 0, std::nullopt};
}

Problem failure(const RuntimeError& error) {
    return failure(error.description(), error.about());
}

bool holds(Disk& disk, const std::string& path, const std::string& bytes) {
    return disk.is_file(path) && disk.stamp(path).size == bytes.size() &&
           read_bytes(disk, path).view() == bytes;
}

/// One build from the moment when its project is known to be right.
class Build {
  public:
    Build(Disk& disk, const Project& project, const BuildPlan& plan,
          const BuildSurroundings& surroundings, const BuildOptions& options)
        : disk_(disk), project_(project), plan_(plan), surroundings_(surroundings),
          options_(options) {}

    BuildResult run() {
        if (options_.dry_run) {
            return look_only();
        }
        disk_.create_folder(project_.folder);
        if (!lock()) {
            return std::move(result_);
        }
        try {
            build();
        } catch (const RuntimeError&) {
            unlock();
            throw;
        }
        unlock();
        return std::move(result_);
    }

  private:
    /// A step on its way.
    struct Task {
        const PlannedBuildStep* planned = nullptr;
        StepResult result;
        bool finished = false;
        bool postponed = false;
    };

    std::string in_folder(const std::string& name) const {
        return join_path(project_.folder, name);
    }

    bool interrupted() const { return options_.interrupted && options_.interrupted(); }

    BuildResult look_only() {
        if (load_manifest()) {
            choose();
            for (Task& task : tasks_) {
                task.finished = true;
            }
            hand_on_finished();
            settle_result();
        }
        return std::move(result_);
    }

    void build() {
        if (!load_manifest()) {
            return;
        }
        choose();
        forget_what_will_be_made();
        copy_macros();
        hand_on_finished();
        run_threads();
        manifest_.steps.merge(before_); // what was not reached is as it was
        note_leftovers();
        save_manifest();
        settle_result();
    }

    // A program that died leaves the file behind, but not its lock.
    bool lock() {
        try {
            lock_ = disk_.create_temporary(in_folder(lock_name), {});
            return true;
        } catch (const RuntimeError& error) {
            const bool locked = error.code() == ErrorNumber::PermissionDenied &&
                                disk_.is_file(in_folder(lock_name));
            if (!locked) { // the folder cannot be written to
                throw;
            }
            refuse("another build uses the folder " + project_.folder);
            return false;
        }
    }

    void unlock() {
        try {
            disk_.remove(in_folder(lock_name));
        } catch (const RuntimeError&) { // a leftover does no harm
        }
        lock_.reset();
    }

    void refuse(const std::string& problem) {
        result_.how = BuildResult::How::Refused;
        result_.errors.push_back(problem);
        result_.problems.push_back({problem, project_.folder, 0, Severity::Error});
    }

    bool load_manifest() {
        ManifestReading reading = read_manifest(disk_, project_.folder);
        if (!reading.problem.empty()) {
            refuse(reading.problem);
            return false;
        }
        if (reading.damaged) {
            result_.notes.push_back({"the manifest is damaged, so everything is made again",
                                     in_folder(manifest_name), 0, Severity::Note});
        }
        manifest_ = std::move(reading.manifest);
        saved_ = manifest_;
        return true;
    }

    bool is_chosen(const std::string& name) const {
        return options_.names.empty() || std::find(options_.names.begin(), options_.names.end(),
                                                   name) != options_.names.end();
    }

    std::string reason_for(const PlannedBuildStep& planned) {
        const auto record = manifest_.steps.find(planned.step.name);
        if (record == manifest_.steps.end()) {
            return "new";
        }
        const std::string reason =
            reason_to_make(disk_, project_, planned, surroundings_, record->second);
        if (reason.empty() && !plan_.macros.empty() &&
            !disk_.is_file(in_folder(file_name_part(plan_.macros)))) {
            return "output missing";
        }
        return reason.empty() && options_.force ? "forced" : reason;
    }

    void choose() {
        for (const PlannedBuildStep& planned : plan_.steps) {
            if (!is_chosen(planned.step.name)) {
                continue;
            }
            Task task;
            task.planned = &planned;
            task.result.name = planned.step.name;
            task.result.kind = planned.step.kind;
            for (const std::string& name : planned.outputs) {
                task.result.outputs.push_back(in_folder(name));
            }
            task.result.reason = reason_for(planned);
            if (task.result.reason.empty()) {
                task.result.state = StepState::UpToDate;
                task.finished = true;
            }
            tasks_.push_back(std::move(task));
        }
    }

    // From here on until it is made, a step counts as not made; but its files count as ours.
    void forget_what_will_be_made() {
        known_ = manifest_.files;
        for (const Task& task : tasks_) {
            if (!task.finished) {
                // Kept when it is not reached, so that the reason stays the same next time.
                before_.insert(manifest_.steps.extract(task.planned->step.name));
            }
        }
        if (!before_.empty()) {
            save_manifest();
        }
    }

    void copy_macros() {
        const bool all_finished = std::all_of(tasks_.begin(), tasks_.end(),
                                              [](const Task& task) { return task.finished; });
        if (plan_.macros.empty() || all_finished) {
            return;
        }
        try {
            const std::string name = file_name_part(plan_.macros);
            const std::string bytes(read_bytes(disk_, plan_.macros).view());
            if (!holds(disk_, in_folder(name), bytes)) {
                require_ours(name);
                claim({name});
                replace_file(disk_, in_folder(name), [&](TextWriter& out) { out.write(bytes); });
            }
            manifest_.files.insert(name);
        } catch (const RuntimeError& error) {
            macros_problem_ = failure(error);
        }
    }

    void require_ours(const std::string& name) const {
        if (!known_.contains(name) && disk_.is_file(in_folder(name))) {
            throw RuntimeError(ErrorNumber::PermissionDenied,
                               in_folder(name) + " was not made by a build; move it away");
        }
    }

    // Says before files are written that they are ours, in case that the program dies on the way.
    void claim(const std::vector<std::string>& names) {
        const std::lock_guard guard(mutex_);
        bool added = false;
        for (const std::string& name : names) {
            added = manifest_.files.insert(name).second || added;
        }
        if (added) {
            save_manifest();
        }
    }

    void save_manifest() {
        if (manifest_ != saved_ || !disk_.is_file(in_folder(manifest_name))) {
            write_manifest(disk_, project_.folder, manifest_);
            saved_ = manifest_;
            saved_at_ = std::chrono::steady_clock::now();
        }
    }

    void run_threads() {
        const std::size_t count = std::min(std::max<std::size_t>(options_.jobs, 1), tasks_.size());
        std::vector<std::thread> threads;
        for (std::size_t i = 1; i < count; ++i) {
            threads.emplace_back([this] { make_tasks(); });
        }
        make_tasks();
        for (std::thread& thread : threads) {
            thread.join();
        }
        hand_on_finished();
    }

    Task* next_task() {
        const std::lock_guard guard(mutex_);
        if (interrupted() || (failed_ && !options_.keep_going)) {
            return nullptr;
        }
        while (next_ < tasks_.size() && tasks_[next_].finished) {
            ++next_;
        }
        return next_ < tasks_.size() ? &tasks_[next_++] : nullptr;
    }

    void make_tasks() {
        while (Task* task = next_task()) {
            StepRecord record;
            try {
                record.made = make_task(*task, record);
            } catch (const RuntimeError& error) {
                task->result.problems.push_back(failure(error));
            }
            if (!record.made) {
                record = {};
            }
            finish(*task, std::move(record));
        }
    }

    // False when the step failed or was postponed.
    bool make_task(Task& task, StepRecord& record) {
        const PlannedBuildStep& planned = *task.planned;
        if (macros_problem_ && planned.step.kind != StepKind::Library) {
            task.result.problems.push_back(*macros_problem_);
            return false;
        }
        StepSources made = make_sources(disk_, project_, plan_, planned, options_.may_read);
        task.postponed = made.postponed;
        task.result.problems = std::move(made.problems);
        if (!made.ok) {
            return false;
        }
        write(planned, made.sources);
        if (!planned.product.empty() && !compile(task)) {
            return false;
        }
        record.settings = planned.settings;
        record.compiler = planned.compiler;
        record.version = surroundings_.version;
        record.inputs = std::move(made.inputs);
        for (const std::string& name : planned.outputs) {
            record.outputs.push_back(record_file(disk_, in_folder(name)));
            record.outputs.back().path = name;
        }
        return true;
    }

    // Without a manifest our own files look like the user's. Sources that hold what would be
    // written are no loss, and then the product beside them is ours too.
    void require_all_ours(const PlannedBuildStep& planned, const MadeSources& sources) const {
        bool found_again = false;
        for (const auto& [name, bytes] : sources) {
            if (known_.contains(name)) {
                continue;
            }
            found_again = holds(disk_, in_folder(name), bytes);
            if (!found_again) {
                require_ours(name);
            }
        }
        if (!planned.product.empty() && !found_again) {
            require_ours(planned.product);
        }
    }

    void write(const PlannedBuildStep& planned, const MadeSources& sources) {
        require_all_ours(planned, sources);
        claim(planned.outputs);
        std::vector<FileReplacement> files;
        for (const auto& [name, bytes] : sources) {
            files.push_back(
                {in_folder(name), [&bytes = bytes](TextWriter& out) { out.write(bytes); }});
        }
        replace_files(disk_, files);
    }

    std::vector<std::string> compiler_words(const PlannedBuildStep& planned) const {
        std::vector<std::string> words = project_.compiler;
        words.emplace_back(planned.step.compile == CompileAs::Bgl ? "/bgl" : "/mdl");
        words.push_back(stem_of(planned.product) + ".asm");
        return words;
    }

    bool compile(Task& task) {
        const PlannedBuildStep& planned = *task.planned;
        const std::string product = in_folder(planned.product);
        const auto stamp = [&] {
            return disk_.is_file(product) ? std::optional(disk_.stamp(product)) : std::nullopt;
        };
        const std::optional<FileStamp> before = stamp();
        const CompilerEnd end = options_.compile
                                    ? options_.compile(compiler_words(planned), project_.folder)
                                    : CompilerEnd{false, "there is no way to run a compiler", {}};
        task.result.compiler_output = end.output;
        const std::optional<FileStamp> after = stamp();
        if (!end.ok) {
            task.result.problems.push_back(
                failure(end.problem, in_folder(stem_of(product) + ".asm")));
            if (after && after != before) {
                disk_.remove(product); // perhaps a part of one
            }
            return false;
        }
        if (!after || after == before) {
            task.result.problems.push_back(
                failure("the compiler ended without an error but did not write it", product));
            return false;
        }
        return true;
    }

    void finish(Task& task, StepRecord record) {
        const std::lock_guard guard(mutex_);
        const bool stopped = !record.made && (task.postponed || interrupted());
        task.result.state = record.made ? StepState::Made
                            : stopped   ? StepState::NotReached
                                        : StepState::Failed;
        failed_ = failed_ || task.result.state == StepState::Failed;
        task.finished = true;
        if (!task.postponed) { // else what was known of it comes back in the end
            before_.erase(task.planned->step.name);
            manifest_.steps[task.planned->step.name] = std::move(record);
        }
        try {
            if (std::chrono::steady_clock::now() - saved_at_ > manifest_interval) {
                save_manifest();
            }
        } catch (const RuntimeError& error) {
            task.result.problems.push_back(failure(error));
            task.result.state = StepState::Failed;
            failed_ = true;
        }
        hand_on_finished();
    }

    // Steps are handed on in their order, whichever is finished first.
    void hand_on_finished() {
        while (handed_on_ < tasks_.size() && tasks_[handed_on_].finished) {
            const std::size_t place = ++handed_on_;
            if (options_.finished) {
                options_.finished(tasks_[place - 1].result, place, tasks_.size());
            }
        }
    }

    void note_leftovers() {
        for (auto step = manifest_.steps.begin(); step != manifest_.steps.end();) {
            const bool known = std::any_of(
                plan_.steps.begin(), plan_.steps.end(),
                [&](const PlannedBuildStep& planned) { return planned.step.name == step->first; });
            if (known) {
                ++step;
                continue;
            }
            result_.notes.push_back(
                {"the step \"" + step->first + "\" is no longer in the project; its files stay",
                 project_.folder, 0, Severity::Note});
            step = manifest_.steps.erase(step);
        }
    }

    void settle_result() {
        for (Task& task : tasks_) {
            result_.steps.push_back(std::move(task.result));
        }
        result_.how = interrupted() ? BuildResult::How::Interrupted
                      : failed_     ? BuildResult::How::Failed
                                    : BuildResult::How::Done;
    }

    Disk& disk_;
    const Project& project_;
    const BuildPlan& plan_;
    const BuildSurroundings& surroundings_;
    const BuildOptions& options_;
    BuildResult result_;
    std::unique_ptr<WritableFile> lock_;
    Manifest manifest_;
    Manifest saved_; // as it is on the disk
    std::chrono::steady_clock::time_point saved_at_;
    std::set<std::string> known_; // files that earlier builds made
    std::map<std::string, StepRecord> before_;
    std::optional<Problem> macros_problem_;
    std::vector<Task> tasks_;
    std::size_t next_ = 0;
    std::size_t handed_on_ = 0;
    bool failed_ = false;
    std::mutex mutex_; // of the manifest and of what becomes of tasks
};

BuildResult not_started(std::vector<std::string> errors, std::vector<Note> problems) {
    BuildResult result;
    result.how = BuildResult::How::NotStarted;
    result.errors = std::move(errors);
    result.problems = std::move(problems);
    return result;
}

// What is wrong with the names that were asked for.
std::vector<std::string> unknown_names(const Project& project, const BuildOptions& options) {
    std::vector<std::string_view> names;
    for (const ProjectStep& step : project.steps) {
        names.push_back(step.name);
    }
    std::vector<std::string> errors;
    for (const std::string& name : options.names) {
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            errors.push_back(project.file + ": there is no step \"" + name + "\"" +
                             suggestion(name, names));
        }
    }
    return errors;
}

} // namespace

std::string_view step_state_text(StepState state) {
    switch (state) {
    case StepState::Made:
        return "made";
    case StepState::UpToDate:
        return "up to date";
    case StepState::Failed:
        return "failed";
    case StepState::NotReached:
        break;
    }
    return "not reached";
}

BuildResult build_project(const Services& services, const Project& project,
                          const BuildSurroundings& surroundings, const BuildOptions& options) {
    if (std::vector<std::string> errors = unknown_names(project, options); !errors.empty()) {
        return not_started(std::move(errors), {});
    }
    const BuildPlan plan = plan_build(services, project, surroundings);
    if (!plan.errors.empty()) {
        return not_started(plan.errors, plan.problems);
    }
    return Build(services.disk, project, plan, surroundings, options).run();
}

} // namespace morvane
