#include "ui/dialogs/library_compiler.h"

#include "base/paths.h"
#include "base/version.h"
#include "library/create_library.h"
#include "library/design.h"
#include "ui/dialogs/dialogs.h"
#include "ui/dialogs/ui_library_compiler.h"
#include "ui/hourglass.h"
#include "ui/qt_text.h"
#include "ui/set_up.h"

namespace morvane {

namespace {

QString source_filter() {
    return dialog_filter(QStringLiteral("*.asm|*.asm"));
}

} // namespace

struct LibraryCompiler::Controls : SetUp<Ui::LibraryCompiler> {
    using SetUp::SetUp;

    QLineEdit& design = *libFileAdd;
    QLineEdit& identifier = *libGUID;
    QLineEdit& name = *libObjName;
    QLineEdit& scale = *libScale;
    QLineEdit& size = *libObjSize;
    QLineEdit& image_power = *libImgPwr;
    QLineEdit& type = *libObjType;
    QListWidget& list = *libFileList;
    QLineEdit& output = *libOutFile;
    QPushButton& choose_design = *Command1;
    QPushButton& add = *Command2;
    QPushButton& remove = *Command3;
    QPushButton& modify = *Command4;
    QPushButton& choose_output = *Command5;
    QPushButton& create = *Command6;
    QLabel& version = *Label21;
};

LibraryCompiler::LibraryCompiler(Desk& desk, WindowState& state)
    : ToolForm(desk, state), ui_(std::make_unique<Controls>(this)) {
    ui_->version.setText(shown_text(version_caption));
    for (QLineEdit* field :
         {&ui_->identifier, &ui_->name, &ui_->scale, &ui_->size, &ui_->image_power, &ui_->type}) {
        accept_code_text_only(field);
    }
    connect_controls();
}

LibraryCompiler::~LibraryCompiler() = default;

void LibraryCompiler::connect_controls() {
    const auto on_click = [this](QPushButton& button, void (LibraryCompiler::*command)()) {
        connect(&button, &QPushButton::clicked, this,
                [this, command] { run([this, command] { (this->*command)(); }); });
    };
    on_click(ui_->choose_design, &LibraryCompiler::choose_design);
    on_click(ui_->add, &LibraryCompiler::add);
    on_click(ui_->remove, &LibraryCompiler::remove);
    on_click(ui_->modify, &LibraryCompiler::modify);
    on_click(ui_->choose_output, &LibraryCompiler::choose_output);
    on_click(ui_->create, &LibraryCompiler::create);
    connect(&ui_->list, &QListWidget::itemSelectionChanged, this, &LibraryCompiler::show_entry);
    connect(&ui_->list, &QListWidget::itemClicked, this, &LibraryCompiler::show_entry);
    show_reports_below();
}

void LibraryCompiler::choose_design() {
    const QString folder = shown_text(folder_part(path_bytes(ui_->design.text())));
    const QString chosen =
        desk_.dialogs.open_file(this, tr("Choose the design"), folder, source_filter());
    if (chosen.isEmpty()) {
        return;
    }
    const Hourglass hourglass;
    const std::string base = design_base(path_bytes(chosen));
    ui_->design.setText(shown_text(base));
    if (const auto design = describe_design(services(), base)) {
        ui_->scale.setText(code_text(design->scale));
        ui_->size.setText(code_text(design->size));
        ui_->name.setText(shown_text(design->name));
    }
}

void LibraryCompiler::choose_output() {
    const QString chosen = desk_.dialogs.save_file(this, tr("Choose the output file"),
                                                   ui_->output.text(), source_filter());
    if (!chosen.isEmpty()) {
        ui_->output.setText(chosen);
    }
}

LibraryFields LibraryCompiler::fields() const {
    return {path_bytes(ui_->design.text()), code_bytes(ui_->identifier.text()),
            code_bytes(ui_->scale.text()),  code_bytes(ui_->size.text()),
            code_bytes(ui_->name.text()),   code_bytes(ui_->image_power.text()),
            code_bytes(ui_->type.text())};
}

std::size_t LibraryCompiler::selected() const {
    const QModelIndexList rows = ui_->list.selectionModel()->selectedRows();
    return rows.isEmpty() ? list_.lines.size() : static_cast<std::size_t>(rows.front().row());
}

void LibraryCompiler::add() {
    const Hourglass hourglass;
    if (!add_library_object(services(), list_, fields())) {
        return;
    }
    const LibraryLine& line = list_.lines.back();
    auto* item = new QListWidgetItem(shown_text(line.base), &ui_->list);
    item->setData(Qt::UserRole, static_cast<qulonglong>(line.entry));
}

void LibraryCompiler::modify() {
    modify_library_object(services(), list_, selected(), fields());
}

void LibraryCompiler::remove() {
    const std::size_t line = selected();
    if (line < list_.lines.size()) {
        remove_library_object(list_, line);
        delete ui_->list.takeItem(static_cast<int>(line));
    }
}

void LibraryCompiler::show_entry() {
    const std::size_t line = selected();
    if (line >= list_.lines.size() || ui_->list.count() != static_cast<int>(list_.lines.size())) {
        return; // a line is just being taken out
    }
    const LibraryFields entry = fields_of(list_, line);
    ui_->design.setText(shown_text(entry.libFileAdd));
    ui_->identifier.setText(code_text(entry.libGUID));
    ui_->scale.setText(code_text(entry.libScale));
    ui_->size.setText(code_text(entry.libObjSize));
    ui_->name.setText(code_text(entry.libObjName));
    ui_->image_power.setText(code_text(entry.libImgPwr));
    ui_->type.setText(code_text(entry.libObjType));
}

void LibraryCompiler::create() {
    const Hourglass hourglass;
    create_library(services(), list_, path_bytes(ui_->output.text()));
}

} // namespace morvane
