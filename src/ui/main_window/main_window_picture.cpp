// SPDX-License-Identifier: GPL-3.0-or-later

// The picture in the middle of the main window: whether it is shown, and what is done by way of it.

#include "source/source_set.h"
#include "ui/dialogs/library_dialog.h"
#include "ui/library_browser/library_browser.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/main_window.h"
#include "ui/main_window/scene_presenter.h"
#include "ui/qt_text.h"
#include "ui/scene_view/scene_panel.h"

#include <utility>

namespace morvane {

namespace {

constexpr qsizetype max_libraries = 500; // whose objects the picture knows

const auto picture_hidden_key = QStringLiteral("Form1/picture-hidden");
const auto known_libraries_key = QStringLiteral("libraries");
const auto texture_folder_key = QStringLiteral("textures");

} // namespace

void MainWindow::prepare_picture() {
    panel_ = new ScenePanel(this);
    set_picture(*panel_);
    picture_ = new ScenePresenter(*this, desk_, *panel_, ui_->materials);
    connect(picture_, &ScenePresenter::pointed_at, this, &MainWindow::point_at_line);
    connect(picture_, &ScenePresenter::line_wanted, this, &MainWindow::show_line);
    connect(picture_, &ScenePresenter::object_dropped, this, &MainWindow::place_object);
    show_picture_ = new QAction(tr("&Picture"), this);
    show_picture_->setObjectName(QStringLiteral("actionPicture"));
    show_picture_->setCheckable(true);
    show_picture_->setChecked(state_.value(picture_hidden_key).isEmpty());
    ui_->menuView->insertAction(ui_->menuView->actions().value(0), show_picture_);
    centralWidget()->setVisible(show_picture_->isChecked());
    connect(show_picture_, &QAction::toggled, centralWidget(), &QWidget::setVisible);
    connect(ui_->actionResetLayout, &QAction::triggered, show_picture_,
            [this] { show_picture_->setChecked(true); });
    for (QCheckBox* box : panel_->boxes()) {
        state_.restore(*box);
    }
    picture_->set_texture_folder(state_.value(texture_folder_key));
    std::vector<std::string> libraries;
    for (const QString& path :
         state_.value(known_libraries_key).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        libraries.push_back(path_bytes(path));
    }
    picture_->set_libraries(std::move(libraries));
    tools_.on_library_browser = [this](LibraryBrowser& browser) { connect_browser(browser); };
}

void MainWindow::keep_picture() {
    state_.set_value(picture_hidden_key,
                     show_picture_->isChecked() ? QString() : QStringLiteral("hidden"));
    state_.set_value(texture_folder_key, picture_->texture_folder());
    for (const QCheckBox* box : panel_->boxes()) {
        state_.keep(*box);
    }
}

void MainWindow::connect_browser(LibraryBrowser& browser) {
    connect(&browser, &LibraryBrowser::object_chosen, this, &MainWindow::place_object);
    connect(&browser, &LibraryBrowser::library_unpacked, picture_, &ScenePresenter::keep_unpacked);
    connect(&browser, &LibraryBrowser::libraries_found, this, &MainWindow::add_libraries);
}

// The newest first, so that of two files with one object the one looked at last counts.
void MainWindow::add_libraries(const QStringList& paths) {
    QStringList all = paths;
    all += state_.value(known_libraries_key).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    all.removeDuplicates();
    all = all.mid(0, max_libraries);
    state_.set_value(known_libraries_key, all.join(QLatin1Char('\n')));
    std::vector<std::string> libraries;
    for (const QString& path : all) {
        libraries.push_back(path_bytes(path));
    }
    picture_->set_libraries(std::move(libraries));
}

void MainWindow::point_at_line(const QString& text, std::size_t line) {
    ui_->status.setText(text);
    ui_->status.setToolTip(text);
    pointed_line_ = line;
}

void MainWindow::show_line(std::size_t line) {
    run([this, line] { tools_.show_text(model_file_name(set().base), line); });
}

// Into the placer while that is open; otherwise the selected materials become such objects.
void MainWindow::place_object(const QString& identifier, const QString& scale) {
    for (auto* dialog : findChildren<LibraryDialog*>()) {
        if (dialog->isVisible()) {
            dialog->take_object(identifier, scale);
            return;
        }
    }
    run([&] {
        if (!selected_rows().empty()) {
            Parameters parameters = document_.document().parameters();
            parameters.library.libGUID = code_bytes(identifier);
            parameters.library.libScale = code_bytes(scale);
            document_.document().set_parameters(parameters);
            ui_->kind.setCurrentText(code_text(kind_text(Kind::LibraryNew)));
        }
        process(); // which says so when nothing is selected
    });
}

} // namespace morvane
