// SPDX-License-Identifier: GPL-3.0-or-later

// The library browser's commands on BGL files.

#include "base/errors.h"
#include "base/reporter.h"
#include "bgl/search.h"
#include "bgl/universal.h"
#include "system/file_bytes.h"
#include "ui/hourglass.h"
#include "ui/library_browser/controls.h"
#include "ui/library_browser/library_browser.h"
#include "ui/library_browser/shelf.h"
#include "ui/qt_text.h"

#include <QApplication>
#include <QFileSystemModel>
#include <QScrollBar>
#include <QTextCursor>

namespace morvane {

namespace {

constexpr qint64 repaint_every_ms = 50;

} // namespace

// While a command runs the list of files must not choose another one.
class LibraryBrowser::Busy {
  public:
    explicit Busy(LibraryBrowser& view) : view_(view) {
        view_.ui_->files.setEnabled(false);
        view_.repainted_.invalidate(); // the first repaint, with the bar of a search, is at once
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    ~Busy() {
        view_.show_report();
        view_.ui_->files.setEnabled(true);
    }

  private:
    LibraryBrowser& view_;
    Hourglass hourglass_;
};

void LibraryBrowser::analyse() {
    const std::string path = selected_path();
    const Busy busy(*this);
    const Analysis analysis =
        analyse_file(inspector_, path, ui_->show_header.isChecked(), ui_->auto_clear.isChecked());
    objects_.clear();
    objects_.add(path, analysis.objects);
    show_objects(analysis.objects.empty() ? QStringList() : QStringList{shown_text(path)});
}

// Whatever ends a search, the other windows come back to life.
class LibraryBrowser::Searching {
  public:
    explicit Searching(LibraryBrowser& browser) : browser_(browser) { browser_.begin_search(); }
    Searching(const Searching&) = delete;
    Searching& operator=(const Searching&) = delete;
    ~Searching() { browser_.end_search(); }

  private:
    LibraryBrowser& browser_;
};

void LibraryBrowser::search() {
    objects_.clear();
    QStringList files;
    {
        const Searching searching(*this);
        const Busy busy(*this);
        search_folder(inspector_, path_bytes(folder()), ui_->auto_clear.isChecked(),
                      [&](const std::string& path, const std::vector<LibraryObject>& objects) {
                          objects_.add(path, objects);
                          if (!objects.empty()) {
                              files.append(shown_text(path));
                          }
                      });
    }
    show_objects(files);
}

// Nothing but the stop button may be used while a search runs: its events are handled in the
// middle of it.
void LibraryBrowser::begin_search() {
    searching_ = true;
    stop_wanted_ = false;
    ui_->splitter->setEnabled(false);
    ui_->progressBar->setRange(0, 0);
    ui_->busyText->clear();
    ui_->busyBar->show();
    ui_->stopButton->setFocus();
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window != this && window->isVisible() && window->isEnabled()) {
            window->setEnabled(false);
            held_windows_.emplace_back(window);
        }
    }
}

void LibraryBrowser::end_search() {
    for (const QPointer<QWidget>& window : held_windows_) {
        if (window) {
            window->setEnabled(true);
        }
    }
    held_windows_.clear();
    ui_->busyBar->hide();
    ui_->splitter->setEnabled(true);
    ui_->search.setFocus();
    searching_ = false;
}

bool LibraryBrowser::show_progress(std::string_view what, std::size_t done, std::size_t total) {
    ui_->progressBar->setRange(0, static_cast<int>(total));
    ui_->progressBar->setValue(static_cast<int>(done));
    ui_->busyText->setText(total == 0
                               ? tr("%1: %2").arg(shown_text(what)).arg(done)
                               : tr("%1: %2 of %3").arg(shown_text(what)).arg(done).arg(total));
    repaint_now_and_then();
    return !stop_wanted_;
}

void LibraryBrowser::repaint_now_and_then() {
    if (repainted_.isValid() && repainted_.elapsed() < repaint_every_ms) {
        return;
    }
    repainted_.start();
    show_report();
    if (searching_) {
        QApplication::processEvents();
    }
}

void LibraryBrowser::show_report() {
    if (pending_report_.isEmpty()) {
        return;
    }
    QTextCursor end(ui_->report.document());
    end.movePosition(QTextCursor::End);
    end.insertText(pending_report_.remove(QLatin1Char('\r')));
    pending_report_.clear();
    ui_->report.verticalScrollBar()->setValue(ui_->report.verticalScrollBar()->maximum());
}

// What a report has listed, from these files.
void LibraryBrowser::show_objects(const QStringList& files) {
    shelf_->forget();
    if (!files.isEmpty()) {
        Q_EMIT libraries_found(files);
    }
    for (int column = 0; column < ObjectModel::File; ++column) {
        ui_->objectTable->resizeColumnToContents(column);
    }
}

// The next file is unpacked to the same place. One that cannot be read back is listed as it is, but
// its objects are not drawn.
void LibraryBrowser::keep_unpacked(const std::string& path, const std::string& unpacked) {
    try {
        const FileBytes bytes = read_bytes(desk_.disk, unpacked);
        Q_EMIT library_unpacked(path, std::make_shared<const std::string>(bytes.view()));
    } catch (const RuntimeError&) {
        return;
    }
}

void LibraryBrowser::make_file_universal() {
    change_file([](const Services& services, const std::string& path, const std::string& folder) {
        return make_universal(services, path, folder);
    });
}

void LibraryBrowser::revert_file() {
    change_file([](const Services& services, const std::string& path, const std::string&) {
        return revert(services, path);
    });
}

void LibraryBrowser::change_file(bool (*change)(const Services&, const std::string&,
                                                const std::string&)) {
    const std::string path = selected_path();
    const Busy busy(*this);
    try {
        change(inspector_.services, path, desk_.program_folder);
    } catch (const RuntimeError& error) {
        report_error(reporter_, error, "Error : ", " :");
    }
    refresh_files();
    select_file(shown_text(path));
}

} // namespace morvane
