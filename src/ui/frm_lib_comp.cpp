#include "ui/frm_lib_comp.h"

#include "base/paths.h"
#include "base/version.h"
#include "library/create_library.h"
#include "library/design.h"
#include "ui/dialogs.h"
#include "ui/hourglass.h"
#include "ui/qt_text.h"
#include "ui/ui_frm_lib_comp.h"

namespace morvane {

namespace {

QString source_filter() {
    return dialog_filter(QStringLiteral("*.asm|*.asm"));
}

} // namespace

frmLibComp::frmLibComp(Desk& desk, WindowState& state)
    : ToolForm(desk, state), ui_(std::make_unique<Ui::frmLibComp>()),
      reporter_(desk.log, desk.dialogs, this) {
    ui_->setupUi(this);
    ui_->Label21->setText(shown_text(version_caption));
    for (QLineEdit* field : {ui_->libGUID, ui_->libObjName, ui_->libScale, ui_->libObjSize,
                             ui_->libImgPwr, ui_->libObjType}) {
        accept_code_text_only(field);
    }
    connect_controls();
}

frmLibComp::~frmLibComp() = default;

void frmLibComp::connect_controls() {
    connect(ui_->Command1, &QPushButton::clicked, this, &frmLibComp::choose_design);
    connect(ui_->Command2, &QPushButton::clicked, this, &frmLibComp::add);
    connect(ui_->Command3, &QPushButton::clicked, this, &frmLibComp::remove);
    connect(ui_->Command4, &QPushButton::clicked, this, &frmLibComp::modify);
    connect(ui_->Command5, &QPushButton::clicked, this, &frmLibComp::choose_output);
    connect(ui_->Command6, &QPushButton::clicked, this, &frmLibComp::create);
    connect(ui_->libFileList, &QListWidget::itemSelectionChanged, this, &frmLibComp::show_entry);
    connect(ui_->libFileList, &QListWidget::itemClicked, this, &frmLibComp::show_entry);
}

void frmLibComp::choose_design() {
    const QString folder = shown_text(folder_part(path_bytes(ui_->libFileAdd->text())));
    const QString chosen =
        desk_.dialogs.open_file(this, tr("Choose the design"), folder, source_filter());
    if (chosen.isEmpty()) {
        return;
    }
    const Hourglass hourglass;
    const std::string base = design_base(path_bytes(chosen));
    ui_->libFileAdd->setText(shown_text(base));
    if (const auto design = describe_design(services(), base)) {
        ui_->libScale->setText(code_text(design->scale));
        ui_->libObjSize->setText(code_text(design->size));
        ui_->libObjName->setText(shown_text(design->name));
    }
}

void frmLibComp::choose_output() {
    const QString chosen = desk_.dialogs.save_file(this, tr("Choose the output file"),
                                                   ui_->libOutFile->text(), source_filter());
    if (!chosen.isEmpty()) {
        ui_->libOutFile->setText(chosen);
    }
}

LibraryFields frmLibComp::fields() const {
    return {path_bytes(ui_->libFileAdd->text()), code_bytes(ui_->libGUID->text()),
            code_bytes(ui_->libScale->text()),   code_bytes(ui_->libObjSize->text()),
            code_bytes(ui_->libObjName->text()), code_bytes(ui_->libImgPwr->text()),
            code_bytes(ui_->libObjType->text())};
}

std::size_t frmLibComp::selected() const {
    const QModelIndexList rows = ui_->libFileList->selectionModel()->selectedRows();
    return rows.isEmpty() ? list_.lines.size() : static_cast<std::size_t>(rows.front().row());
}

void frmLibComp::add() {
    const Hourglass hourglass;
    if (!add_library_object(services(), list_, fields())) {
        return;
    }
    const LibraryLine& line = list_.lines.back();
    auto* item = new QListWidgetItem(shown_text(line.base), ui_->libFileList);
    item->setData(Qt::UserRole, static_cast<qulonglong>(line.entry));
}

void frmLibComp::modify() {
    modify_library_object(services(), list_, selected(), fields());
}

void frmLibComp::remove() {
    const std::size_t line = selected();
    if (line < list_.lines.size()) {
        remove_library_object(list_, line);
        delete ui_->libFileList->takeItem(static_cast<int>(line));
    }
}

void frmLibComp::show_entry() {
    const std::size_t line = selected();
    if (line >= list_.lines.size() ||
        ui_->libFileList->count() != static_cast<int>(list_.lines.size())) {
        return; // a line is just being taken out
    }
    const LibraryFields entry = fields_of(list_, line);
    ui_->libFileAdd->setText(shown_text(entry.libFileAdd));
    ui_->libGUID->setText(code_text(entry.libGUID));
    ui_->libScale->setText(code_text(entry.libScale));
    ui_->libObjSize->setText(code_text(entry.libObjSize));
    ui_->libObjName->setText(code_text(entry.libObjName));
    ui_->libImgPwr->setText(code_text(entry.libImgPwr));
    ui_->libObjType->setText(code_text(entry.libObjType));
}

void frmLibComp::create() {
    const Hourglass hourglass;
    create_library(services(), list_, path_bytes(ui_->libOutFile->text()));
}

} // namespace morvane
