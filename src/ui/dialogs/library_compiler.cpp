// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/dialogs/library_compiler.h"

#include "base/paths.h"
#include "base/version.h"
#include "library/create_library.h"
#include "library/design.h"
#include "library/library_list_file.h"
#include "system/replace_files.h"
#include "ui/dialogs/dialogs.h"
#include "ui/dialogs/ui_library_compiler.h"
#include "ui/hourglass.h"
#include "ui/qt_text.h"
#include "ui/set_up.h"
#include "ui/widgets/file_drop.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

QString list_filter() {
    return dialog_filter(QStringLiteral("List of objects|*.toml"));
}

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
    on_click(*ui_->openList, &LibraryCompiler::open_list);
    on_click(*ui_->newIdentifier, &LibraryCompiler::new_identifier);
    connect(ui_->saveList, &QPushButton::clicked, this, [this] { run([this] { save_list(); }); });
    show_reports_below();
    accept_drops();
}

void LibraryCompiler::accept_drops() {
    const auto are_designs = [](const QStringList& paths) {
        return std::all_of(paths.begin(), paths.end(),
                           [](const QString& path) { return !base_of_file(path).isEmpty(); });
    };
    accept_dropped_file(ui_->output, [](const QString& path) { return path; });
    new FileDrop(
        ui_->design,
        [are_designs](const QStringList& paths) { return paths.size() == 1 && are_designs(paths); },
        [this](const QStringList& paths) { run([&] { show_design(paths.front()); }); });
    new FileDrop(*this, are_designs,
                 [this](const QStringList& paths) { run([&] { add_designs(paths); }); });
}

void LibraryCompiler::choose_design() {
    const QString folder = shown_text(folder_part(path_bytes(ui_->design.text())));
    const QStringList chosen =
        desk_.dialogs.open_files(this, tr("Choose the design"), folder, source_filter());
    if (chosen.size() > 1) {
        add_designs(chosen);
    } else if (!chosen.isEmpty()) {
        show_design(chosen.front());
    }
}

void LibraryCompiler::show_design(const QString& file) {
    const Hourglass hourglass;
    const std::string base = design_base(path_bytes(file));
    ui_->design.setText(shown_text(base));
    if (const auto design = describe_design(services(), base)) {
        ui_->scale.setText(code_text(design->scale));
        ui_->size.setText(code_text(design->size));
        ui_->name.setText(shown_text(design->name));
    }
}

// Each gets an identifier of its own; image power and type are those of the fields.
void LibraryCompiler::add_designs(const QStringList& files) {
    for (const QString& file : files) {
        show_design(file);
        new_identifier();
        add();
    }
}

void LibraryCompiler::new_identifier() {
    ui_->identifier.setText(code_text(identifier_text(random_guid(), false)));
}

void LibraryCompiler::choose_output() {
    QString chosen = desk_.dialogs.save_file(this, tr("Choose the output file"), ui_->output.text(),
                                             source_filter());
    if (!chosen.isEmpty()) {
        if (QFileInfo(chosen).suffix().isEmpty()) {
            chosen += QStringLiteral(".asm");
        }
        ui_->output.setText(chosen);
    }
}

void LibraryCompiler::open_list() {
    if (!may_lose_list()) {
        return;
    }
    const QString chosen = desk_.dialogs.open_file(
        this, tr("Open a list of objects"), shown_text(folder_part(path_bytes(ui_->output.text()))),
        list_filter());
    if (chosen.isEmpty()) {
        return;
    }
    const Hourglass hourglass;
    LibraryListReading reading = read_library_list(services(), path_bytes(chosen));
    if (!reading.list) {
        std::string text;
        for (const std::string& error : reading.errors) {
            text += (text.empty() ? "" : "\n") + error;
        }
        reporter_.message_box(text, Icon::Critical);
        return;
    }
    list_ = std::move(*reading.list);
    changed_ = false;
    show_lines();
}

bool LibraryCompiler::save_list() {
    const QString chosen = desk_.dialogs.save_file(this, tr("Save the list of objects"),
                                                   tr("objects.toml"), list_filter());
    if (chosen.isEmpty()) {
        return false;
    }
    const std::string path = path_bytes(
        QFileInfo(chosen).suffix().isEmpty() ? chosen + QStringLiteral(".toml") : chosen);
    const std::string text = library_list_text(list_, folder_part(path));
    replace_file(desk_.disk, path, [&](TextWriter& out) { out.write(text); });
    reporter_.note({"the list was saved as " + path});
    changed_ = false;
    return true;
}

bool LibraryCompiler::may_lose_list() {
    if (!changed_) {
        return true;
    }
    switch (desk_.dialogs.ask_unsaved(
        this, tr("The list of the library compiler has not been saved. Save it now?"), true)) {
    case Unsaved::Save:
        return save_list();
    case Unsaved::Discard:
        return true;
    case Unsaved::Cancel:
        break;
    }
    return false;
}

bool LibraryCompiler::may_end() {
    bool may = false;
    run([&] { may = may_lose_list(); });
    return may;
}

void LibraryCompiler::show_lines() {
    ui_->list.clear();
    for (const LibraryLine& line : list_.lines) {
        auto* item = new QListWidgetItem(shown_text(line.base), &ui_->list);
        item->setData(Qt::UserRole, static_cast<qulonglong>(line.entry));
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
    changed_ = true;
    const LibraryLine& line = list_.lines.back();
    auto* item = new QListWidgetItem(shown_text(line.base), &ui_->list);
    item->setData(Qt::UserRole, static_cast<qulonglong>(line.entry));
}

void LibraryCompiler::modify() {
    changed_ = modify_library_object(services(), list_, selected(), fields()) || changed_;
}

void LibraryCompiler::remove() {
    const std::size_t line = selected();
    if (line < list_.lines.size()) {
        remove_library_object(list_, line);
        changed_ = true;
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
    if (create_library(services(), list_, path_bytes(ui_->output.text()))) {
        changed_ = false;
    }
}

} // namespace morvane
