// SPDX-License-Identifier: GPL-3.0-or-later

// The main window's list of materials: selecting, sorting, filtering, and what belongs to a row.

#include "objects/block_checks.h"
#include "ui/main_window/controls.h"
#include "ui/main_window/document_views.h"
#include "ui/main_window/main_window.h"
#include "ui/qt_text.h"
#include "ui/widgets/platform_color.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QResizeEvent>

#include <algorithm>

namespace morvane {

void MainWindow::prepare_materials() {
    shown_materials_.setSourceModel(&materials_);
    QTreeView& list = ui_->materials;
    list.setModel(&shown_materials_);
    list.header()->setSortIndicator(-1, Qt::AscendingOrder); // the order of the set
    list.setSortingEnabled(true);
    list.setContextMenuPolicy(Qt::CustomContextMenu);
    list.installEventFilter(this);
    columns_kept_ = state_.restore(*list.header(), QStringLiteral("Form1/lstMat2proc"));
    list.header()->setSortIndicator(-1, Qt::AscendingOrder);
    list.header()->setStretchLastSection(false);
    list.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    list.viewport()->installEventFilter(this);
    connect(list.header(), &QHeaderView::sectionResized, this, [this](int column) {
        if (column != MaterialModel::Parameters) {
            columns_kept_ = columns_kept_ || !fitting_columns_;
            fit_parameters(ui_->materials.viewport()->width());
        }
    });
    connect(ui_->materialFilter, &QLineEdit::textChanged, &shown_materials_,
            &MaterialFilter::set_text);
    connect(list.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { run([this] { show_selection(); }); });
    connect(&list, &QTreeView::activated, this, [this] { run([this] { show_parameters(); }); });
    connect(&list, &QWidget::customContextMenuRequested, this, &MainWindow::show_material_menu);
}

void MainWindow::fit_columns() {
    fitting_columns_ = true;
    for (int column = 0; !columns_kept_ && column < materials_.columnCount(); ++column) {
        ui_->materials.resizeColumnToContents(column);
    }
    fitting_columns_ = false;
    fit_parameters(ui_->materials.viewport()->width());
}

// The last column takes what the window leaves it, but no less than its longest text: that is
// reached by scrolling sideways.
void MainWindow::fit_parameters(int width) {
    QHeaderView& header = *ui_->materials.header();
    const QAbstractItemView& list = ui_->materials;
    const int others = header.length() - header.sectionSize(MaterialModel::Parameters);
    header.resizeSection(
        MaterialModel::Parameters,
        std::max(list.sizeHintForColumn(MaterialModel::Parameters), width - others));
}

std::vector<std::size_t> MainWindow::selected_rows() const {
    std::vector<std::size_t> rows;
    for (const QModelIndex& index : ui_->materials.selectionModel()->selectedRows()) {
        rows.push_back(static_cast<std::size_t>(shown_materials_.mapToSource(index).row()) + 1);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

std::size_t MainWindow::selected_row() const {
    const std::vector<std::size_t> rows = selected_rows();
    return rows.empty() ? 0 : rows.front();
}

void MainWindow::select_row(std::size_t row) {
    const QModelIndex index =
        shown_materials_.mapFromSource(materials_.index(static_cast<int>(row) - 1, 0));
    if (index.isValid()) {
        ui_->materials.setCurrentIndex(index);
    }
}

void MainWindow::show_selection() {
    const std::size_t row = selected_row();
    pointed_line_ = 0;
    if (row == 0) {
        ui_->highlight_color.set_color({});
        ui_->own_color.set_color({});
        ui_->processed_mark.hide();
    } else {
        const Translation& material = set().translation(row);
        const QString in_gmax = gmax_color(set(), material);
        ui_->highlight_color.set_color(platform_color(material.highlight).value_or(QColor()));
        ui_->own_color.set_color(
            rgb_color(material.color), in_gmax,
            tr("%1 in the list, %2 in gmax").arg(shown_text(material.color), in_gmax));
        ui_->processed_mark.setVisible(!material.processed.empty());
        ui_->select_step.set_done(true);
        update_par_line();
        note_block(row);
    }
    Q_EMIT selection_changed();
}

// What is wrong with a block is said when it is selected, once.
void MainWindow::note_block(std::size_t row) {
    const Translation& material = set().translation(row);
    if (material.processed.empty() && noted_rows_.insert(row).second) {
        if (const auto note = block_note(set(), material)) {
            reporter_.note(*note);
        }
    }
}

// Undo and redo come by here too: everything follows from what the document holds now.
void MainWindow::show_row(std::size_t row) {
    show_made(row);
    if (row == selected_row()) {
        ui_->processed_mark.setVisible(!set().translation(row).processed.empty());
    }
    show_counters();
}

void MainWindow::show_made(std::size_t row) {
    const StepMaterial* made = document_.made(row);
    QString parameters;
    if (made != nullptr) {
        const Kind as_shown = made->kind == Kind::LibraryNew ? Kind::Library : made->kind;
        parameters = code_text(parameter_line(as_shown, made->parameters).value_or(""));
    }
    materials_.show_processed(static_cast<int>(row) - 1,
                              shown_text(set().translation(row).processed), parameters);
    fit_parameters(ui_->materials.viewport()->width());
}

void MainWindow::show_counters() {
    const std::size_t total = set().opened ? set().translations.size() : 0;
    const std::size_t left = set().opened ? set().unprocessed() : 0;
    ui_->total.setText(QString::number(total));
    ui_->unprocessed.setText(QString::number(left));
    const bool all_done = total > 0 && left == 0;
    ui_->process_step.set_done(all_done);
    ui_->define_step.set_done(all_done || parameters_set_);
}

void MainWindow::select_next_unprocessed() {
    const std::size_t count = set().opened ? set().translations.size() : 0;
    for (std::size_t step = 1; step <= count; ++step) {
        const std::size_t row = (selected_row() + step - 1) % count + 1;
        if (set().translation(row).processed.empty()) {
            select_row(row);
            return;
        }
    }
}

void MainWindow::select_like(MaterialModel::Column column) {
    const std::size_t row = selected_row();
    if (row == 0) {
        return;
    }
    const QVariant wanted = materials_.index(static_cast<int>(row) - 1, column).data();
    QItemSelection selection;
    for (int i = 0; i < shown_materials_.rowCount(); ++i) {
        const QModelIndex index = shown_materials_.index(i, column);
        if (index.data() == wanted) {
            selection.select(index, index);
        }
    }
    ui_->materials.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect |
                                                           QItemSelectionModel::Rows);
}

void MainWindow::show_material_menu(const QPoint& place) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("materialMenu"));
    menu->addActions({ui_->actionProcess, ui_->actionParameters, ui_->actionUndo});
    menu->addSeparator();
    menu->addActions({ui_->actionSelectHighlight, ui_->actionSelectColor});
    menu->addSeparator();
    menu->addAction(ui_->actionShowSource);
    menu->addAction(tr("&Copy"), this, [this] { run([this] { copy_rows(); }); });
    menu->popup(ui_->materials.viewport()->mapToGlobal(place));
}

void MainWindow::copy_rows() {
    QStringList lines;
    for (const std::size_t row : selected_rows()) {
        QStringList cells;
        for (int column = 0; column < materials_.columnCount(); ++column) {
            cells.append(
                materials_.index(static_cast<int>(row) - 1, column).data().toString().trimmed());
        }
        lines.append(cells.join(QLatin1Char('\t')));
    }
    QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void MainWindow::show_source() {
    if (pointed_line_ > 0) {
        show_line(pointed_line_);
    } else if (const std::size_t row = selected_row(); row > 0) {
        views_->show_source(row);
    }
}

// After Open the list has the focus, but nothing is selected: the first key that moves selects the
// first row and does not pass it over.
bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui_->materials.viewport() && event->type() == QEvent::Resize) {
        fit_parameters(static_cast<QResizeEvent&>(*event).size().width());
    }
    if (watched == &ui_->materials && event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        if (key.matches(QKeySequence::Copy)) {
            run([this] { copy_rows(); });
            return true;
        }
        if (key.key() == Qt::Key_Down && selected_row() == 0 && shown_materials_.rowCount() > 0) {
            ui_->materials.setCurrentIndex(shown_materials_.index(0, 0));
            ui_->materials.selectionModel()->select(shown_materials_.index(0, 0),
                                                    QItemSelectionModel::ClearAndSelect |
                                                        QItemSelectionModel::Rows);
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

} // namespace morvane
