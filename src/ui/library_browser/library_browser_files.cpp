// SPDX-License-Identifier: GPL-3.0-or-later

// The library browser's lists of drives, folders and files.

#include "base/paths.h"
#include "ui/library_browser/controls.h"
#include "ui/library_browser/library_browser.h"
#include "ui/qt_text.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>

namespace morvane {

void LibraryBrowser::prepare_files() {
    folders_ = new QFileSystemModel(this);
    folders_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    folders_->setRootPath(QString());
    ui_->folders.setModel(folders_);
    for (int column = 1; column < folders_->columnCount(); ++column) {
        ui_->folders.hideColumn(column);
    }
    files_ = new QFileSystemModel(this);
    files_->setFilter(QDir::Files);
    files_->setNameFilterDisables(false);
    ui_->files.setModel(files_);
    show_all_files(false);
    for (const QFileInfo& drive : QDir::drives()) {
        ui_->drives.addItem(QDir::toNativeSeparators(drive.absoluteFilePath()));
    }
    // Folders are listed behind the scenes, and sorted later: the chosen one moves meanwhile.
    const auto follow = [this] { ui_->folders.scrollTo(ui_->folders.currentIndex()); };
    connect(folders_, &QFileSystemModel::directoryLoaded, this, follow);
    connect(folders_, &QFileSystemModel::layoutChanged, this, follow);
    connect(folders_, &QFileSystemModel::rowsInserted, this, follow, Qt::QueuedConnection);
    connect(&ui_->drives, &QComboBox::textActivated, this, &LibraryBrowser::show_folder);
    connect(ui_->folders.selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index) { show_files_of(folders_->filePath(index)); });
    connect(ui_->files.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &LibraryBrowser::show_selected_file);
    connect(&ui_->files, &QListView::activated, this, [this] { run([this] { analyse(); }); });
    connect(&ui_->all_files, &QCheckBox::toggled, this, &LibraryBrowser::show_all_files);
    show_folder(QDir::homePath());
}

void LibraryBrowser::show_folder(const QString& folder) {
    const QModelIndex index = folders_->index(folder);
    ui_->folders.setCurrentIndex(index);
    ui_->folders.expand(index);
    ui_->folders.scrollTo(index);
}

void LibraryBrowser::show_files_of(const QString& folder) {
    ui_->files.setRootIndex(files_->setRootPath(folder));
    ui_->folderPath->setText(QDir::toNativeSeparators(folder));
    ui_->folderPath->setToolTip(ui_->folderPath->text());
    if (remembers_ && ui_->folderPath->text() != kept_folder_) {
        remember_folder();
    }
    ui_->files.clearSelection();
    ui_->files.setCurrentIndex({});
    show_selected_file();
}

void LibraryBrowser::show_all_files(bool all) {
    files_->setNameFilters(all ? QStringList()
                               : QStringList{QStringLiteral("*.bgl"), QStringLiteral("*.bck")});
}

void LibraryBrowser::select_file(const QString& path) {
    show_folder(QFileInfo(path).absolutePath());
    ui_->files.setCurrentIndex(files_->index(path));
    ui_->files.scrollTo(ui_->files.currentIndex());
}

void LibraryBrowser::show_selected_file() {
    const std::string path = selected_path();
    for (QWidget* button : {&ui_->analyse, &ui_->make_universal, &ui_->revert}) {
        button->setEnabled(!path.empty());
    }
    if (!path.empty()) {
        ui_->file_name.setText(shown_text(path));
    }
}

// The model watches the folder, but its word can come late.
void LibraryBrowser::refresh_files() {
    const QString shown = folder();
    files_->setRootPath(QString());
    show_files_of(shown);
}

QString LibraryBrowser::folder() const {
    return QDir::toNativeSeparators(folders_->filePath(ui_->folders.currentIndex()));
}

std::string LibraryBrowser::selected_path() const {
    const QModelIndexList chosen = ui_->files.selectionModel()->selectedIndexes();
    return chosen.isEmpty()
               ? std::string()
               : join_path(path_bytes(folder()), path_bytes(files_->fileName(chosen.front())));
}

} // namespace morvane
