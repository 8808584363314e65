// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/watch_project.h"

#include "base/errors.h"
#include "base/paths.h"
#include "project/make_step.h"
#include "project/project.h"
#include "source/source_set.h"
#include "system/disk.h"
#include "system/file_bytes.h"
#include "system/replace_files.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace morvane {

namespace {

// A single file is followed as a pair of itself.
PairStamps look_at_single(Disk& disk, const std::string& path) {
    try {
        const std::optional<FileStamp> stamp =
            disk.is_file(path) ? std::optional(disk.stamp(path)) : std::nullopt;
        return {stamp, stamp};
    } catch (const RuntimeError&) {
        return {};
    }
}

} // namespace

/// Follows exports and single files, and tells which of them are to be read again.
class WatchedFiles {
  public:
    WatchedFiles(Disk& disk, const WatchOptions& options) : disk_(disk), options_(options) {}

    /// Follows these from now on; what was followed before keeps its state.
    void follow(const std::set<std::string>& exports, const std::set<std::string>& singles) {
        keep(exports_, exports, look_at_pair);
        keep(singles_, singles, look_at_single);
    }

    /// What has changed and is quiet; each is returned once.
    std::vector<std::string> quiet_exports() { return quiet_of(exports_, look_at_pair); }
    std::vector<std::string> quiet_singles() { return quiet_of(singles_, look_at_single); }

    /// Whether an export has changed and is not quiet yet.
    bool is_unsettled(const std::string& base) const {
        const auto watch = exports_.find(base);
        return watch != exports_.end() && watch->second.seen != watch->second.taken;
    }

    /// Whether the files of an export still are those that were quiet.
    bool are_taken(const std::string& base, const PairStamps& now) const {
        const auto watch = exports_.find(base);
        return watch != exports_.end() && watch->second.taken == now;
    }

  private:
    using Watches = std::map<std::string, ExportWatch>;
    using Look = PairStamps (*)(Disk&, const std::string&);

    void keep(Watches& watches, const std::set<std::string>& names, Look look) {
        std::erase_if(watches, [&](const auto& entry) { return !names.contains(entry.first); });
        for (const std::string& name : names) {
            if (!watches.contains(name)) {
                const PairStamps now = look(disk_, name);
                ExportWatch& watch = watches[name] = begin_export_watch(now, options_.now());
                if (is_fresh(now.model) || is_fresh(now.frame)) {
                    watch.taken = {}; // somebody may be writing it
                }
            }
        }
    }

    bool is_fresh(const std::optional<FileStamp>& stamp) const {
        using std::chrono::nanoseconds;
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        return stamp && now - nanoseconds(stamp->modified_ns) < options_.quiet;
    }

    std::vector<std::string> quiet_of(Watches& watches, Look look) {
        std::vector<std::string> names;
        for (auto& [name, watch] : watches) {
            if (is_pair_quiet(watch, look(disk_, name), options_.now(), options_.quiet)) {
                watch.taken = watch.seen;
                names.push_back(name);
            }
        }
        return names;
    }

    Disk& disk_;
    const WatchOptions& options_;
    Watches exports_;
    Watches singles_;
};

namespace {

void say_all(const WatchOptions& options, const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        if (options.said) {
            options.said(text);
        }
    }
}

bool is_worth_telling(const BuildResult& result) {
    return result.how != BuildResult::How::Done ||
           std::any_of(result.steps.begin(), result.steps.end(), [](const StepResult& step) {
               return step.state == StepState::Made || step.state == StepState::Failed;
           });
}

/// One look of either watch: `begin` makes everything and says what to follow, `changed` makes what
/// belongs to exports that are whole again.
template <typename Begin, typename Changed>
void look_at_files(Disk& disk, const WatchOptions& options, WatchedFiles& files, const Begin& begin,
                   const Changed& changed) {
    const bool anew = !files.quiet_singles().empty();
    std::vector<std::string> whole;
    for (const std::string& base : files.quiet_exports()) {
        const std::string problem = export_incompleteness(disk, base);
        if (problem.empty()) {
            whole.push_back(base);
        } else {
            say_all(options, {problem});
        }
    }
    if (anew) {
        begin();
    } else if (!whole.empty()) {
        changed(whole);
    }
}

template <typename Watch>
void run_watch(const WatchOptions& options, Watch& watch) {
    watch.begin();
    while (!options.stopped()) {
        options.pass(options.interval);
        watch.look();
    }
}

} // namespace

class ProjectWatch::State {
  public:
    State(const Services& services, std::string file, BuildSurroundings surroundings,
          BuildOptions build, WatchOptions options)
        : services_(services), file_(std::move(file)), surroundings_(std::move(surroundings)),
          build_(std::move(build)), options_(std::move(options)), files_(services.disk, options_) {
        build_.keep_going = true;
        build_.interrupted = options_.stopped;
        build_.may_read = [this](const std::string& base, const PairStamps& now) {
            return files_.are_taken(base, now);
        };
    }

    void begin() {
        ProjectReading reading = read_project(services_.disk, file_);
        project_ = reading.project.value_or(Project());
        if (!reading.project) {
            steps_.clear();
            files_.follow({}, {file_});
            say_all(options_, reading.errors);
            return;
        }
        follow();
        // The others come when they are quiet.
        std::vector<std::string> names;
        for (const auto& [name, bases] : steps_) {
            if (std::none_of(bases.begin(), bases.end(), [this](const std::string& base) {
                    return files_.is_unsettled(base);
                })) {
                names.push_back(name);
            }
        }
        if (names.size() == steps_.size()) {
            make({});
        } else if (!names.empty()) {
            make(names);
        }
    }

    void look() {
        look_at_files(
            services_.disk, options_, files_, [this] { begin(); },
            [this](const std::vector<std::string>& exports) { make(names_of(exports)); });
    }

  private:
    void follow() {
        const BuildPlan plan = plan_build(services_, project_, surroundings_);
        std::set<std::string> exports;
        std::set<std::string> singles{file_};
        singles.insert(plan.files.begin(), plan.files.end());
        steps_.clear();
        for (const PlannedBuildStep& planned : plan.steps) {
            exports.insert(planned.exports.begin(), planned.exports.end());
            steps_.emplace_back(planned.step.name, planned.exports);
            for (const StepInput& input : planned.inputs) {
                if (input.role != "export") {
                    singles.insert(input.path);
                }
            }
        }
        files_.follow(exports, singles);
    }

    std::vector<std::string> names_of(const std::vector<std::string>& exports) const {
        std::vector<std::string> names;
        for (const auto& [name, bases] : steps_) {
            if (std::find_first_of(bases.begin(), bases.end(), exports.begin(), exports.end()) !=
                bases.end()) {
                names.push_back(name);
            }
        }
        return names;
    }

    void make(const std::vector<std::string>& names) {
        build_.names = names;
        const BuildResult result = build_project(services_, project_, surroundings_, build_);
        say_all(options_, result.errors);
        if (options_.built && is_worth_telling(result)) {
            options_.built(result);
        }
    }

    Services services_;
    std::string file_;
    BuildSurroundings surroundings_;
    BuildOptions build_;
    WatchOptions options_;
    WatchedFiles files_;
    Project project_;
    std::vector<std::pair<std::string, std::vector<std::string>>> steps_; // names, base paths
};

namespace {

/// A watch on one set.
class SetWatch {
  public:
    SetWatch(const Services& services, const std::string& base, const std::string& recipe,
             const std::string& output, const BuildSurroundings& surroundings,
             const WatchOptions& options)
        : services_(services), base_(base), recipe_path_(recipe), output_(output),
          surroundings_(surroundings), options_(options), files_(services.disk, options) {}

    void begin() {
        RecipeReading reading =
            read_recipe(services_.disk, recipe_path_, surroundings_.default_effect);
        files_.follow({base_}, {reading.files.begin(), reading.files.end()});
        read_ = std::move(reading.recipe);
        say_all(options_, reading.errors);
        if (!files_.is_unsettled(base_)) {
            make("recipe changed");
        }
    }

    void look() {
        look_at_files(
            services_.disk, options_, files_, [this] { begin(); },
            [this](const std::vector<std::string>&) { make("exported again"); });
    }

  private:
    void make(const std::string& reason) {
        if (!read_) { // its errors were told
            return;
        }
        StepSources made = make_single_set(services_.disk, base_, *read_, output_,
                                           [this](const std::string& base, const PairStamps& now) {
                                               return files_.are_taken(base, now);
                                           });
        if (made.postponed) { // it is made when it is quiet again
            return;
        }
        StepResult step;
        step.name = file_name_part(base_);
        step.reason = first_ ? "new" : reason;
        step.outputs = {frame_file_name(output_), model_file_name(output_)};
        step.problems = std::move(made.problems);
        step.state = made.ok && write(made.sources, step) ? StepState::Made : StepState::Failed;
        first_ = false;
        BuildResult result;
        result.how =
            step.state == StepState::Made ? BuildResult::How::Done : BuildResult::How::Failed;
        result.steps.push_back(std::move(step));
        if (options_.built) {
            options_.built(result);
        }
    }

    bool write(const MadeSources& sources, StepResult& step) {
        std::vector<FileReplacement> files;
        for (const auto& [path, bytes] : sources) {
            files.push_back({path, [&bytes = bytes](TextWriter& out) { out.write(bytes); }});
        }
        try {
            replace_files(services_.disk, files);
            return true;
        } catch (const RuntimeError& error) {
            step.problems.push_back(
                {"failed", Severity::Error, error.description(), error.about(), 0, std::nullopt});
            return false;
        }
    }

    const Services& services_;
    const std::string& base_;
    const std::string& recipe_path_;
    const std::string& output_;
    const BuildSurroundings& surroundings_;
    const WatchOptions& options_;
    WatchedFiles files_;
    std::optional<Recipe> read_;
    bool first_ = true;
};

} // namespace

ProjectWatch::ProjectWatch(const Services& services, const std::string& project_file,
                           const BuildSurroundings& surroundings, BuildOptions build,
                           WatchOptions options)
    : state_(std::make_unique<State>(services, project_file, surroundings, std::move(build),
                                     std::move(options))) {}

ProjectWatch::~ProjectWatch() = default;

void ProjectWatch::begin() {
    state_->begin();
}

void ProjectWatch::look() {
    state_->look();
}

void watch_project(const Services& services, const std::string& project_file,
                   const BuildSurroundings& surroundings, BuildOptions build,
                   const WatchOptions& options) {
    ProjectWatch watch(services, project_file, surroundings, std::move(build), options);
    run_watch(options, watch);
}

void watch_set(const Services& services, const std::string& base, const std::string& recipe,
               const std::string& output, const BuildSurroundings& surroundings,
               const WatchOptions& options) {
    SetWatch watch(services, base, recipe, output, surroundings, options);
    run_watch(options, watch);
}

} // namespace morvane
