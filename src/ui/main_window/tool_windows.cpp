// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main_window/tool_windows.h"

#include "ui/dialogs/label_rename.h"
#include "ui/dialogs/library_compiler.h"
#include "ui/dialogs/model_modifier.h"
#include "ui/dialogs/source_window.h"
#include "ui/dialogs/text_viewer.h"
#include "ui/library_browser/library_browser.h"
#include "ui/project_window/project_window.h"

namespace morvane {

namespace {

template <typename Form>
bool close(const std::unique_ptr<Form>& form) {
    return !form || (form->may_end() && form->close());
}

} // namespace

ToolWindows::ToolWindows(Desk& desk, WindowState& state) : desk_(desk), state_(state) {}

ToolWindows::~ToolWindows() = default;

void ToolWindows::show_model_modifier() {
    if (!model_modifier_) {
        model_modifier_ = std::make_unique<ModelModifier>(desk_, state_);
    }
    model_modifier_->bring_up();
}

LibraryBrowser& ToolWindows::show_library_browser() {
    if (!library_browser_) {
        library_browser_ = std::make_unique<LibraryBrowser>(desk_, state_);
        on_library_browser(*library_browser_);
    }
    library_browser_->bring_up();
    return *library_browser_;
}

void ToolWindows::show_label_rename(const std::function<QString()>& input_file) {
    if (!label_rename_) {
        label_rename_ = std::make_unique<LabelRename>(desk_, state_, input_file);
    }
    label_rename_->bring_up();
}

void ToolWindows::show_library_compiler() {
    if (!library_compiler_) {
        library_compiler_ = std::make_unique<LibraryCompiler>(desk_, state_);
    }
    library_compiler_->bring_up();
}

ProjectWindow& ToolWindows::show_project() {
    if (!project_) {
        project_ = std::make_unique<ProjectWindow>(desk_, state_);
    }
    project_->bring_up();
    return *project_;
}

ResultsViewer& ToolWindows::viewer() {
    if (desk_.viewer != nullptr) {
        return *desk_.viewer;
    }
    return own_viewer();
}

void ToolWindows::show_text(const std::string& path, std::size_t line) {
    own_viewer().show_file(path);
    own_viewer().go_to(line);
}

SourceWindow& ToolWindows::source_window(DocumentModel& document) {
    if (!source_window_) {
        source_window_ = std::make_unique<SourceWindow>(desk_, state_, document);
    }
    return *source_window_;
}

TextViewer& ToolWindows::own_viewer() {
    if (!viewer_) {
        viewer_ = std::make_unique<TextViewer>(desk_, state_);
    }
    return *viewer_;
}

bool ToolWindows::close_all() {
    return close(model_modifier_) && close(library_browser_) && close(label_rename_) &&
           close(library_compiler_) && close(project_) && close(viewer_) && close(source_window_);
}

} // namespace morvane
