// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library_browser/library_browser.h"

#include "base/errors.h"
#include "base/reporter.h"
#include "system/disk.h"
#include "ui/dialogs/dialogs.h"
#include "ui/library_browser/controls.h"
#include "ui/library_browser/shelf.h"
#include "ui/qt_text.h"
#include "ui/widgets/file_drop.h"
#include "ui/window_state.h"
#include "upkeep/settings.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QKeySequence>

namespace morvane {

LibraryBrowser::LibraryBrowser(Desk& desk, WindowState& state)
    : ToolForm(desk, state,
               [this](std::string_view what, std::size_t done, std::size_t total) {
                   return show_progress(what, done, total);
               }),
      ui_(std::make_unique<Controls>(this)),
      inspector_({desk.disk, reporter_}, desk.program_folder, desk.programs, desk.helpers) {
    ui_->busyBar->hide();
    ui_->splitter->setStretchFactor(1, 1);
    prepare_files();
    prepare_report();
    prepare_objects();
    connect_buttons();
    show_reports_below();
    restore_parts();
}

LibraryBrowser::~LibraryBrowser() = default;

void LibraryBrowser::restore_parts() {
    state_.restore(*ui_->splitter);
    state_.restore(*ui_->fileSplitter);
    state_.restore(shelf_->splitter());
    state_.restore(ui_->auto_clear);
    state_.restore(ui_->show_header);
}

void LibraryBrowser::keep_parts() {
    state_.keep(*ui_->splitter);
    state_.keep(*ui_->fileSplitter);
    state_.keep(shelf_->splitter());
    state_.keep(ui_->auto_clear);
    state_.keep(ui_->show_header);
}

void LibraryBrowser::prepare_report() {
    ui_->report.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    inspector_.box.on_text = [this](std::string_view text) { append_report(text); };
    inspector_.box.on_clear = [this] {
        pending_report_.clear();
        ui_->report.clear();
    };
}

void LibraryBrowser::prepare_objects() {
    shown_objects_.setSourceModel(&objects_);
    ui_->objectTable->setModel(&shown_objects_);
    ui_->objectTable->verticalHeader()->hide();
    ui_->objectTable->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    ui_->objectTable->horizontalHeader()->setStretchLastSection(true);
    ui_->objectTable->horizontalHeader()->setHighlightSections(false);
    ui_->objectTable->sortByColumn(ObjectModel::Name, Qt::AscendingOrder);
    ui_->objectTable->installEventFilter(this);
    shelf_ = new Shelf(objects_, desk_.disk, this);
    ui_->tabs->addTab(shelf_, tr("Shelf"));
    inspector_.unpacking.unpacked = [this](const std::string& path, const std::string& unpacked) {
        keep_unpacked(path, unpacked);
    };
    connect(this, &LibraryBrowser::library_unpacked, shelf_, &Shelf::keep_unpacked);
    connect(shelf_, &Shelf::object_chosen, this, &LibraryBrowser::object_chosen);
    connect(ui_->objectFilter, &QLineEdit::textChanged, &shown_objects_, &ObjectFilter::set_text);
    connect(ui_->objectTable, &QTableView::doubleClicked, this, &LibraryBrowser::copy_identifier);
    connect(ui_->copyIdentifier, &QPushButton::clicked, this, &LibraryBrowser::copy_identifier);
}

void LibraryBrowser::connect_buttons() {
    const auto on_click = [this](QPushButton& button, void (LibraryBrowser::*command)()) {
        connect(&button, &QPushButton::clicked, this,
                [this, command] { run([this, command] { (this->*command)(); }); });
    };
    on_click(ui_->analyse, &LibraryBrowser::analyse);
    on_click(ui_->browse, &LibraryBrowser::browse);
    on_click(ui_->search, &LibraryBrowser::search);
    on_click(ui_->make_universal, &LibraryBrowser::make_file_universal);
    on_click(ui_->revert, &LibraryBrowser::revert_file);
    connect(&ui_->clear, &QPushButton::clicked, this, [this] { inspector_.box.clear(); });
    connect(ui_->stopButton, &QPushButton::clicked, this, [this] { stop_wanted_ = true; });
    connect(&ui_->file_name, &QLineEdit::returnPressed, this,
            [this] { select_file(ui_->file_name.text()); });
    const auto one_file = [](const QStringList& paths) { return paths.size() == 1; };
    const auto show_file = [this](const QStringList& paths) { select_file(paths.front()); };
    new FileDrop(ui_->file_name, one_file, show_file);
    new FileDrop(*this, one_file, show_file);
}

void LibraryBrowser::browse() {
    const QString chosen = desk_.dialogs.open_file(this, tr("Choose a BGL file"), folder(),
                                                   dialog_filter(QStringLiteral("BGL file|*.bgl")));
    if (!chosen.isEmpty()) {
        select_file(chosen);
    }
}

// One key is enough: Enter or Copy on an object.
bool LibraryBrowser::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui_->objectTable && event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter ||
            key.matches(QKeySequence::Copy)) {
            copy_identifier();
            return true;
        }
    }
    return ToolForm::eventFilter(watched, event);
}

void LibraryBrowser::copy_identifier() {
    const QModelIndex current = ui_->objectTable->currentIndex();
    if (!current.isValid()) {
        return;
    }
    const QString identifier = current.siblingAtColumn(ObjectModel::Identifier).data().toString();
    QGuiApplication::clipboard()->setText(identifier);
    Q_EMIT identifier_copied(identifier);
}

// Text is put into the box when the window repaints, since every single insertion has its price.
void LibraryBrowser::append_report(std::string_view text) {
    pending_report_ += shown_text(text);
    repaint_now_and_then();
}

void LibraryBrowser::activated() {
    if (const auto kept = read_library_folder(desk_.disk, desk_.program_folder)) {
        show_folder(shown_text(*kept));
    }
    remembers_ = true;
}

bool LibraryBrowser::may_close() {
    stop_wanted_ = searching_;
    return !searching_;
}

// Kept at once, since the folder is read anew whenever the user comes back to this window.
void LibraryBrowser::remember_folder() {
    try {
        write_library_folder(desk_.disk, desk_.program_folder, path_bytes(folder()));
        kept_folder_ = folder();
    } catch (const RuntimeError& error) {
        remembers_ = false; // said once
        report_error(reporter_, error, "Error : ", " :");
    }
}

void LibraryBrowser::leaving() {
    remember_folder();
    keep_parts();
}

} // namespace morvane
