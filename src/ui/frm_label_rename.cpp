#include "ui/frm_label_rename.h"

#include "base/paths.h"
#include "source/chosen_file.h"
#include "source/source_set.h"
#include "ui/dialogs.h"
#include "ui/hourglass.h"
#include "ui/qt_text.h"
#include "ui/ui_frm_label_rename.h"
#include "upkeep/rename_labels.h"

#include <utility>

namespace morvane {

frmLabelRename::frmLabelRename(Desk& desk, WindowState& state, std::function<QString()> input_file)
    : ToolForm(desk, state), ui_(std::make_unique<Ui::frmLabelRename>()),
      reporter_(desk.log, desk.dialogs, this), input_file_(std::move(input_file)) {
    ui_->setupUi(this);
    accept_code_text_only(ui_->lblAdition);
    connect(ui_->Command8, &QPushButton::clicked, this, &frmLabelRename::browse);
    connect(ui_->lblOpen, &QPushButton::clicked, this, &frmLabelRename::rename);
    connect(ui_->lblAdition, &QLineEdit::returnPressed, this, &frmLabelRename::rename);
}

frmLabelRename::~frmLabelRename() = default;

void frmLabelRename::activated() {
    ui_->InputFile->setText(shown_text(model_file_name(path_bytes(input_file_()))));
}

void frmLabelRename::browse() {
    const Hourglass hourglass;
    const QString folder = shown_text(folder_part(path_bytes(ui_->InputFile->text())));
    const QString chosen = desk_.dialogs.open_file(this, tr("Choose the file"), folder,
                                                   dialog_filter(shown_text(source_file_filter)));
    if (!chosen.isEmpty()) {
        ui_->InputFile->setText(chosen);
    }
}

void frmLabelRename::rename() {
    const Hourglass hourglass;
    rename_labels({desk_.disk, reporter_}, path_bytes(ui_->InputFile->text()),
                  code_bytes(ui_->lblAdition->text()));
}

} // namespace morvane
