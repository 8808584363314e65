// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/project_window/project_window.h"

#include "base/paths.h"
#include "project/build_plan.h"
#include "project/project_compiler.h"
#include "scene/site_plan.h"
#include "system/disk.h"
#include "ui/hourglass.h"
#include "ui/project_window/project_pictures.h"
#include "ui/project_window/project_plan.h"
#include "ui/qt_text.h"
#include "ui/scene_view/view_habits.h"
#include "ui/window_state.h"
#include "upkeep/settings.h"

#include <QCheckBox>
#include <QEvent>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <thread>
#include <utility>

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
      pictures_(new ProjectPictures(desk.disk, this)), plan_(new ProjectPlan(this)),
      troubles_(named(new QLabel(this), "projectTroubles")),
      splitter_(named(new QSplitter(this), "projectSplitter")),
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
    connect(steps_, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
        plan_->select(item == nullptr ? std::string() : path_bytes(item->text(0)));
    });
    connect(plan_, &ProjectPlan::site_chosen, this, &ProjectWindow::select_step);
    connect(pictures_, &ProjectPictures::read_one, this, &ProjectWindow::show_thumbnails);
    connect(pictures_, &ProjectPictures::read_all, this, &ProjectWindow::show_plan);
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
    steps_->setIconSize(ProjectPictures::thumbnail_size);
    troubles_->setWordWrap(true);
    troubles_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* side = new QWidget(this);
    auto* side_layout = new QVBoxLayout(side);
    side_layout->setContentsMargins(0, 0, 0, 0);
    side_layout->addWidget(plan_, 1);
    side_layout->addWidget(troubles_);
    splitter_->setChildrenCollapsible(false);
    splitter_->addWidget(steps_);
    splitter_->addWidget(side);
    splitter_->setStretchFactor(0, 3);
    splitter_->setStretchFactor(1, 2);
    splitter_->setSizes({620, 330});
    state_.restore(*splitter_);
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
    layout->addWidget(splitter_, 1);
    layout->addWidget(errors_);
    layout->addLayout(buttons);
    show_reports_below();
    resize(960, 480);
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
    state_.keep(*splitter_);
    return true;
}

void ProjectWindow::changeEvent(QEvent* event) {
    ToolForm::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        show_thumbnails();
    }
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
    show_thumbnails();
    pictures_->look_at(table_->rows());
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

void ProjectWindow::show_thumbnail(QTreeWidgetItem& item) {
    const double scale = devicePixelRatioF();
    QImage picture = pictures_->thumbnail(
        path_bytes(item.data(0, base_role).toString()),
        (QSizeF(ProjectPictures::thumbnail_size) * scale).toSize(),
        std::max(1, static_cast<int>(std::lround(scale))), wants_dark_picture(palette()));
    if (picture.isNull()) { // room for the one to come
        picture = QImage(ProjectPictures::thumbnail_size, QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
    } else {
        picture.setDevicePixelRatio(scale);
    }
    QIcon icon;
    for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Selected}) {
        icon.addPixmap(QPixmap::fromImage(picture), mode);
    }
    item.setIcon(0, icon);
}

void ProjectWindow::show_thumbnails() {
    for (int i = 0; i < steps_->topLevelItemCount(); ++i) {
        show_thumbnail(*steps_->topLevelItem(i));
    }
}

void ProjectWindow::show_plan() {
    scene::SitePlan plan;
    QStringList troubles;
    for (const ProjectRow& row : table_->rows()) {
        const scene::Scene* scene = row.kind == "set" ? pictures_->scene(row.base) : nullptr;
        if (scene != nullptr && !plan.add(row.name, *scene)) {
            troubles.append(tr("%1 has no reference place.").arg(shown_text(row.name)));
        }
    }
    plan.look_for_troubles();
    for (const scene::SitePlan::Site& site : plan.sites()) {
        if (!site.trouble.empty()) {
            troubles.append(tr("%1 is %2.").arg(shown_text(site.name), shown_text(site.trouble)));
        }
    }
    troubles_->setText(troubles.join(QLatin1Char('\n')));
    troubles_->setVisible(!troubles.isEmpty());
    plan_->show_plan(std::move(plan));
}

void ProjectWindow::select_step(const QString& name) {
    const auto found = steps_->findItems(name, Qt::MatchExactly, 0);
    if (!found.isEmpty()) {
        steps_->setCurrentItem(found.front());
    }
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
