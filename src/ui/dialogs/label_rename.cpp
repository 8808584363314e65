// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/label_rename.h"

#include "base/paths.h"
#include "source/source_set.h"
#include "ui/dialogs/dialogs.h"
#include "ui/dialogs/ui_label_rename.h"
#include "ui/hourglass.h"
#include "ui/qt_text.h"
#include "ui/set_up.h"
#include "ui/widgets/file_drop.h"
#include "upkeep/rename_labels.h"

#include <utility>

namespace morvane {

struct LabelRename::Controls : SetUp<Ui::LabelRename> {
    using SetUp::SetUp;

    QLineEdit& file = *InputFile;
    QPushButton& browse = *Command8;
    QLineEdit& suffix = *lblAdition;
    QPushButton& append = *lblOpen;
};

LabelRename::LabelRename(Desk& desk, WindowState& state, std::function<QString()> input_file)
    : ToolForm(desk, state), ui_(std::make_unique<Controls>(this)),
      input_file_(std::move(input_file)) {
    accept_code_text_only(&ui_->suffix);
    connect(&ui_->browse, &QPushButton::clicked, this, [this] { run([this] { browse(); }); });
    connect(&ui_->append, &QPushButton::clicked, this, [this] { run([this] { rename(); }); });
    connect(&ui_->suffix, &QLineEdit::returnPressed, this, [this] { run([this] { rename(); }); });
    show_reports_below();
    const auto any_file = [](const QString& path) { return path; };
    accept_dropped_file(ui_->file, any_file);
    new FileDrop(
        *this, [](const QStringList& paths) { return paths.size() == 1; },
        [this](const QStringList& paths) { ui_->file.setText(paths.front()); });
}

LabelRename::~LabelRename() = default;

void LabelRename::activated() {
    ui_->file.setText(shown_text(model_file_name(path_bytes(input_file_()))));
}

void LabelRename::browse() {
    const Hourglass hourglass;
    const QString folder = shown_text(folder_part(path_bytes(ui_->file.text())));
    const QString chosen = desk_.dialogs.open_file(this, tr("Choose the file"), folder,
                                                   dialog_filter(shown_text(source_file_filter)));
    if (!chosen.isEmpty()) {
        ui_->file.setText(chosen);
    }
}

void LabelRename::rename() {
    const Hourglass hourglass;
    rename_labels({desk_.disk, reporter_}, path_bytes(ui_->file.text()),
                  path_bytes(ui_->suffix.text()));
}

} // namespace morvane
