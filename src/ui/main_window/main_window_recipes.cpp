// SPDX-License-Identifier: GPL-3.0-or-later

// The main window's commands on recipes.

#include "base/errors.h"
#include "base/reporter.h"
#include "document/recipe_text.h"
#include "system/replace_files.h"
#include "ui/dialogs/dialogs.h"
#include "ui/hourglass.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/main_window.h"
#include "ui/qt_text.h"

namespace morvane {

namespace {

QString recipe_filter() {
    return dialog_filter(QStringLiteral("Recipe|*.toml"));
}

} // namespace

void MainWindow::choose_recipe() {
    if (!set().opened) {
        desk_.dialogs.show_box(this, tr("Open a source set first."), Icon::Exclamation, {});
        return;
    }
    const QString path =
        desk_.dialogs.open_file(this, tr("Apply recipe"), output_folder(), recipe_filter());
    if (!path.isEmpty()) {
        apply_recipe_file(path);
    }
}

void MainWindow::apply_recipe_file(const QString& path) {
    const Hourglass hourglass;
    const std::string first_effect = effects_.empty() ? std::string() : effects_.front();
    const RecipeReading reading = read_recipe(desk_.disk, path_bytes(path), first_effect);
    if (!reading.recipe) {
        show_errors(reading.errors);
        return;
    }
    const RecipePlan plan = plan_recipe(set(), *reading.recipe);
    if (!plan.errors.empty()) {
        show_errors(plan.errors);
        for (const Note& hint : plan.hints) {
            reporter_.note(hint);
        }
        return;
    }
    document_.document().apply(*reading.recipe, plan);
    note_late_work();
}

void MainWindow::save_recipe_file() {
    const Recipe recipe = document_.document().recipe();
    if (recipe.assignments.empty() && recipe.allow.empty()) {
        desk_.dialogs.show_box(this,
                               tr("Process a material first: a recipe says what was made of each."),
                               Icon::Exclamation, {});
        return;
    }
    const QString proposal = ui_->input_base.text() + QStringLiteral(".toml");
    const QString path =
        desk_.dialogs.save_file(this, tr("Save recipe"), proposal, recipe_filter());
    if (path.isEmpty()) {
        return;
    }
    const RecipeText text = recipe_text(desk_.disk, path_bytes(path), set(), recipe,
                                        document_.document().made_materials(),
                                        effects_.empty() ? std::string() : effects_.front());
    if (!text.errors.empty()) {
        show_errors(text.errors);
        return;
    }
    for (const Note& problem : text.problems) {
        reporter_.note(problem);
    }
    try {
        replace_file(desk_.disk, path_bytes(path), [&](TextWriter& out) { out.write(text.text); });
        reporter_.note({"the recipe was saved as " + path_bytes(path)});
    } catch (const RuntimeError& error) {
        report_error(reporter_, error, "ERROR : ", ": ", Icon::Critical);
    }
}

void MainWindow::show_errors(const std::vector<std::string>& errors) {
    std::string text;
    for (const std::string& error : errors) {
        text += (text.empty() ? "" : "\n") + error;
    }
    reporter_.message_box(text, Icon::Critical);
}

} // namespace morvane
