#include "ui/tool_windows.h"

#include "ui/frm_label_rename.h"
#include "ui/frm_lib_comp.h"
#include "ui/frm_model.h"
#include "ui/lib_view.h"
#include "ui/text_viewer.h"

namespace morvane {

namespace {

template <typename Form>
bool close(const std::unique_ptr<Form>& form) {
    return !form || form->close();
}

} // namespace

ToolWindows::ToolWindows(Desk& desk, WindowState& state) : desk_(desk), state_(state) {}

ToolWindows::~ToolWindows() = default;

void ToolWindows::show_model() {
    if (!model_) {
        model_ = std::make_unique<frmModel>(desk_, state_);
    }
    model_->bring_up();
}

LibView& ToolWindows::show_library() {
    if (!library_) {
        library_ = std::make_unique<LibView>(desk_, state_);
    }
    library_->bring_up();
    return *library_;
}

void ToolWindows::show_labels(const std::function<QString()>& input_file) {
    if (!labels_) {
        labels_ = std::make_unique<frmLabelRename>(desk_, state_, input_file);
    }
    labels_->bring_up();
}

void ToolWindows::show_compiler() {
    if (!compiler_) {
        compiler_ = std::make_unique<frmLibComp>(desk_, state_);
    }
    compiler_->bring_up();
}

ResultsViewer& ToolWindows::viewer() {
    if (desk_.viewer != nullptr) {
        return *desk_.viewer;
    }
    if (!viewer_) {
        viewer_ = std::make_unique<TextViewer>(desk_, state_);
    }
    return *viewer_;
}

bool ToolWindows::close_all() {
    return close(model_) && close(library_) && close(labels_) && close(compiler_) && close(viewer_);
}

} // namespace morvane
