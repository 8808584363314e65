// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/project_window/project_window.h"

#include "base/paths.h"
#include "project/project_compiler.h"
#include "project/surroundings.h"
#include "system/disk.h"
#include "ui/hourglass.h"
#include "ui/qt_text.h"
#include "upkeep/settings.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <thread>

namespace morvane {

namespace {

constexpr int project_look_every_ms = 250;
constexpr int base_role = Qt::UserRole;

QString number_or_nothing(const std::optional<std::size_t>& number) {
    return number ? QString::number(*number) : QString();
}

QTreeWidgetItem* item_of(const ProjectRow& row) {
    auto* item = new QTreeWidgetItem(
        QStringList{shown_text(row.name), shown_text(row.kind), shown_text(row.state),
                    number_or_nothing(row.marked), number_or_nothing(row.done),
                    QString::number(row.problems), shown_text(row.result)});
    item->setData(0, base_role, shown_text(row.base));
    return item;
}

template <typename Widget>
Widget* named(Widget* widget, const char* name) {
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

} // namespace

ProjectWindow::ProjectWindow(Desk& desk, WindowState& state)
    : ToolForm(desk, state), file_(named(new QLabel(this), "projectFile")),
      steps_(named(new QTreeWidget(this), "projectSteps")),
      errors_(named(new QLabel(this), "projectErrors")),
      build_(named(new QPushButton(tr("Build"), this), "buildSteps")),
      build_all_(named(new QPushButton(tr("Build All"), this), "buildAll")),
      watch_(named(new QCheckBox(tr("Watch"), this), "watchProject")), timer_(new QTimer(this)) {
    setObjectName(QStringLiteral("ProjectWindow"));
    setWindowTitle(tr("Project"));
    add_controls();
    connect(build_, &QPushButton::clicked, this, [this] { run([this] { build_selected(); }); });
    connect(build_all_, &QPushButton::clicked, this, [this] { run([this] { build_all(); }); });
    connect(watch_, &QCheckBox::toggled, this, [this](bool on) { run([&] { watch(on); }); });
    connect(steps_, &QTreeWidget::itemDoubleClicked, this, [this](const QTreeWidgetItem* item) {
        if (const QString base = item->data(0, base_role).toString(); !base.isEmpty()) {
            Q_EMIT export_chosen(base);
        }
    });
    timer_->setInterval(project_look_every_ms);
    connect(timer_, &QTimer::timeout, this, [this] {
        if (!reporter_.is_running()) {
            run_command(reporter_, [this] { look(); });
        }
    });
}

ProjectWindow::~ProjectWindow() = default;

void ProjectWindow::add_controls() {
    steps_->setAccessibleName(tr("Steps of the project"));
    steps_->setRootIsDecorated(false);
    steps_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    steps_->setHeaderLabels({tr("Name"), tr("Kind"), tr("State"), tr("Marked"), tr("Done"),
                             tr("Problems"), tr("Last result")});
    errors_->setWordWrap(true);
    errors_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    file_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(build_);
    buttons->addWidget(build_all_);
    buttons->addStretch(1);
    buttons->addWidget(watch_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(file_);
    layout->addWidget(steps_, 1);
    layout->addWidget(errors_);
    layout->addLayout(buttons);
    show_reports_below();
    resize(720, 420);
}

void ProjectWindow::open_project(const std::string& file) {
    watch_->setChecked(false);
    table_ = std::make_unique<ProjectTable>(services(), file, surroundings());
    file_->setText(shown_text(file));
    setWindowTitle(tr("Project - %1").arg(shown_text(file_name_part(folder_part(file)))));
    refresh();
}

// The exports may have changed while the user was elsewhere.
void ProjectWindow::activated() {
    if (table_ && !watching_) {
        refresh();
    }
}

bool ProjectWindow::may_close() {
    watch_->setChecked(false);
    return true;
}

void ProjectWindow::refresh() {
    const Hourglass hourglass;
    table_->refresh();
    show_table();
}

void ProjectWindow::show_table() {
    QStringList selected;
    for (const QTreeWidgetItem* item : steps_->selectedItems()) {
        selected.append(item->text(0));
    }
    steps_->clear();
    for (const ProjectRow& row : table_->rows()) {
        QTreeWidgetItem* item = item_of(row);
        steps_->addTopLevelItem(item);
        item->setSelected(selected.contains(item->text(0)));
    }
    for (int column = 0; column + 1 < steps_->columnCount(); ++column) {
        steps_->resizeColumnToContents(column);
    }
    QStringList errors;
    for (const std::string& error : table_->errors()) {
        errors.append(shown_text(error));
    }
    errors_->setText(errors.join(QLatin1Char('\n')));
    errors_->setVisible(!errors.isEmpty());
}

void ProjectWindow::build_selected() {
    std::vector<std::string> names;
    for (const QTreeWidgetItem* item : steps_->selectedItems()) {
        names.push_back(path_bytes(item->text(0)));
    }
    if (names.empty()) {
        reporter_.note({"select the steps to build, or press Build All."});
        return;
    }
    build(names);
}

void ProjectWindow::build_all() {
    build({});
}

void ProjectWindow::build(const std::vector<std::string>& names) {
    const Hourglass hourglass;
    if (table_) {
        table_->build(names, std::max(1U, std::thread::hardware_concurrency()), compile());
        show_table();
    }
}

void ProjectWindow::watch(bool on) {
    timer_->stop();
    watching_.reset();
    if (!on || !table_) {
        return;
    }
    const Hourglass hourglass;
    WatchOptions options;
    options.stopped = [] { return false; };
    options.built = [this](const BuildResult& result) {
        table_->take(result);
        show_table();
    };
    options.said = [this](const std::string& text) { reporter_.note({text}); };
    BuildOptions build;
    build.jobs = std::max(1U, std::thread::hardware_concurrency());
    build.compile = compile();
    watching_ = std::make_unique<ProjectWatch>(services(), table_->file(), surroundings(),
                                               std::move(build), std::move(options));
    watching_->begin();
    refresh();
    timer_->start();
}

void ProjectWindow::look() {
    if (watching_) {
        watching_->look();
    }
}

BuildSurroundings ProjectWindow::surroundings() {
    const std::vector<std::string> names = effect_names(services(), desk_.program_folder);
    return build_surroundings(desk_.disk, desk_.program_folder,
                              names.empty() ? std::string() : names.front());
}

decltype(BuildOptions::compile) ProjectWindow::compile() {
    return project_compiler(desk_.programs, table_->file(), [] { return true; });
}

} // namespace morvane
