// The library browser's lists of drives, folders and files.

#include "base/paths.h"
#include "ui/lib_view.h"
#include "ui/qt_text.h"
#include "ui/ui_lib_view.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>

namespace morvane {

void LibView::prepare_files() {
    folders_ = new QFileSystemModel(this);
    folders_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    folders_->setRootPath(QString());
    ui_->Dir1->setModel(folders_);
    for (int column = 1; column < folders_->columnCount(); ++column) {
        ui_->Dir1->hideColumn(column);
    }
    files_ = new QFileSystemModel(this);
    files_->setFilter(QDir::Files);
    files_->setNameFilterDisables(false);
    ui_->File1->setModel(files_);
    show_all_files(false);
    for (const QFileInfo& drive : QDir::drives()) {
        ui_->Drive1->addItem(QDir::toNativeSeparators(drive.absoluteFilePath()));
    }
    // Folders are listed behind the scenes; the chosen one moves while those above it fill up.
    connect(folders_, &QFileSystemModel::directoryLoaded, this,
            [this] { ui_->Dir1->scrollTo(ui_->Dir1->currentIndex()); });
    connect(ui_->Drive1, &QComboBox::textActivated, this, &LibView::show_folder);
    connect(ui_->Dir1->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index) { show_files_of(folders_->filePath(index)); });
    connect(ui_->File1->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &LibView::show_selected_file);
    connect(ui_->File1, &QListView::activated, this, &LibView::analyse);
    connect(ui_->chkAllFiles, &QCheckBox::toggled, this, &LibView::show_all_files);
    show_folder(QDir::homePath());
}

void LibView::show_folder(const QString& folder) {
    const QModelIndex index = folders_->index(folder);
    ui_->Dir1->setCurrentIndex(index);
    ui_->Dir1->expand(index);
    ui_->Dir1->scrollTo(index);
}

void LibView::show_files_of(const QString& folder) {
    ui_->File1->setRootIndex(files_->setRootPath(folder));
    ui_->File1->clearSelection();
    ui_->File1->setCurrentIndex({});
    show_selected_file();
}

void LibView::show_all_files(bool all) {
    files_->setNameFilters(all ? QStringList()
                               : QStringList{QStringLiteral("*.bgl"), QStringLiteral("*.bck")});
}

void LibView::select_file(const QString& path) {
    show_folder(QFileInfo(path).absolutePath());
    ui_->File1->setCurrentIndex(files_->index(path));
    ui_->File1->scrollTo(ui_->File1->currentIndex());
}

void LibView::show_selected_file() {
    const std::string path = selected_path();
    for (QWidget* button : {ui_->Command1, ui_->Command5, ui_->Command6}) {
        button->setEnabled(!path.empty());
    }
    if (!path.empty()) {
        ui_->inpFilename->setText(shown_text(path));
    }
}

// The model watches the folder, but its word can come late.
void LibView::refresh_files() {
    const QString shown = folder();
    files_->setRootPath(QString());
    show_files_of(shown);
}

QString LibView::folder() const {
    return QDir::toNativeSeparators(folders_->filePath(ui_->Dir1->currentIndex()));
}

std::string LibView::selected_path() const {
    const QModelIndexList chosen = ui_->File1->selectionModel()->selectedIndexes();
    return chosen.isEmpty()
               ? std::string()
               : join_path(path_bytes(folder()), path_bytes(files_->fileName(chosen.front())));
}

} // namespace morvane
