// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library_browser/shelf.h"

#include "scene/draw_shape.h"
#include "ui/library_browser/shape_view.h"
#include "ui/library_browser/shelf_delegate.h"
#include "ui/qt_text.h"
#include "ui/scene_view/view_habits.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include <array>
#include <utility>

namespace morvane {

Shelf::Shelf(ObjectModel& objects, Disk& disk, QWidget* parent)
    : QWidget(parent), pictures_(disk), list_(new QListView(this)), filter_(new QLineEdit(this)),
      order_(new QComboBox(this)), large_(new ShapeView(this)), about_(new QLabel(this)),
      turning_(new QCheckBox(tr("Turn"), this)),
      use_(new QPushButton(tr("Use for Selected Materials"), this)),
      splitter_(new QSplitter(this)) {
    setObjectName(QStringLiteral("shelf"));
    shown_.setSourceModel(&objects);
    prepare_list();
    splitter_->setObjectName(QStringLiteral("shelfSplitter"));
    splitter_->addWidget(list_);
    splitter_->addWidget(make_side());
    splitter_->setStretchFactor(0, 3);
    splitter_->setStretchFactor(1, 2);
    splitter_->setSizes({360, 180});
    splitter_->setChildrenCollapsible(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(make_head());
    layout->addWidget(splitter_, 1);
    const std::array<QWidget*, 6> order{filter_, order_, list_, large_, turning_, use_};
    for (std::size_t i = 1; i < order.size(); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
    connect_parts();
    sort();
    show_current();
}

void Shelf::prepare_list() {
    list_->setObjectName(QStringLiteral("shelfList"));
    list_->setAccessibleName(tr("Objects as pictures"));
    list_->setToolTip(tr("Drag an object onto a material in the main window's list or picture, or "
                         "press Enter for the materials selected there."));
    list_->setViewMode(QListView::IconMode);
    list_->setMovement(QListView::Static);
    list_->setResizeMode(QListView::Adjust);
    list_->setUniformItemSizes(true);
    list_->setSpacing(3);
    list_->setDragEnabled(true);
    list_->setDragDropMode(QAbstractItemView::DragOnly);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setModel(&shown_);
    list_->setItemDelegate(new ShelfDelegate(pictures_, list_));
}

QWidget* Shelf::make_head() {
    filter_->setObjectName(QStringLiteral("shelfFilter"));
    filter_->setAccessibleName(tr("Filter of the shelf"));
    filter_->setPlaceholderText(tr("Name, identifier or file"));
    filter_->setClearButtonEnabled(true);
    filter_->setToolTip(tr("Shows only objects with this text in their name, identifier or file."));
    order_->setObjectName(QStringLiteral("shelfOrder"));
    order_->setAccessibleName(tr("Order of the shelf"));
    order_->setToolTip(tr("What the objects are sorted by."));
    for (const auto& [caption, column] :
         {std::pair(tr("Name"), ObjectModel::Name), std::pair(tr("Scale"), ObjectModel::Scale),
          std::pair(tr("File"), ObjectModel::File),
          std::pair(tr("Identifier"), ObjectModel::Identifier)}) {
        order_->addItem(caption, static_cast<int>(column));
    }
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto* filter_label = new QLabel(tr("Filter"), row);
    filter_label->setBuddy(filter_);
    auto* order_label = new QLabel(tr("Sort by"), row);
    order_label->setBuddy(order_);
    layout->addWidget(filter_label);
    layout->addWidget(filter_, 1);
    layout->addWidget(order_label);
    layout->addWidget(order_);
    return row;
}

QWidget* Shelf::make_side() {
    about_->setObjectName(QStringLiteral("shelfAbout"));
    about_->setWordWrap(true);
    about_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    turning_->setObjectName(QStringLiteral("turnObject"));
    turning_->setToolTip(tr("Turns the object slowly. Drag or the arrow keys turn it by hand."));
    turning_->setChecked(true);
    use_->setObjectName(QStringLiteral("useObject"));
    use_->setToolTip(tr("The materials that are selected in the main window become Library New "
                        "with this identifier and the object's own scale (Enter)."));
    auto* side = new QWidget(this);
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(large_, 1);
    layout->addWidget(about_);
    layout->addWidget(turning_); // one below the other: the list has more need of the width
    layout->addWidget(use_);
    return side;
}

void Shelf::connect_parts() {
    connect(filter_, &QLineEdit::textChanged, &shown_, &ShelfModel::set_text);
    connect(order_, &QComboBox::currentIndexChanged, this, &Shelf::sort);
    connect(turning_, &QCheckBox::toggled, large_, &ShapeView::set_turning);
    connect(list_, &QListView::activated, this, &Shelf::choose);
    connect(use_, &QPushButton::clicked, this, [this] { choose(list_->currentIndex()); });
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &Shelf::show_current);
    connect(&shown_, &QAbstractItemModel::modelReset, this, &Shelf::show_current);
    connect(&shown_, &QAbstractItemModel::rowsInserted, this, [this] {
        if (list_->currentIndex().isValid()) {
            return;
        }
        if (isVisible()) {
            list_->setCurrentIndex(shown_.index(0, 0));
        } else {
            show_current();
        }
    });
    connect(&pictures_, &ShelfPictures::made, list_->viewport(), qOverload<>(&QWidget::update));
}

void Shelf::take_look() {
    const qreal scale = devicePixelRatioF();
    pictures_.set_look((QSizeF(ShelfDelegate::picture_size) * scale).toSize(), scale,
                       wants_dark_picture(palette()));
    list_->viewport()->update();
}

void Shelf::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        take_look();
    }
}

void Shelf::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    take_look();
    if (!list_->currentIndex().isValid() && shown_.rowCount() > 0) {
        list_->setCurrentIndex(shown_.index(0, 0));
    }
}

void Shelf::sort() {
    shown_.sort(order_->currentData().toInt());
}

void Shelf::show_current() {
    const QModelIndex index = list_->currentIndex();
    use_->setEnabled(index.isValid());
    if (!index.isValid()) {
        large_->show_shape({});
        large_->hide();
        about_->setText(shown_.rowCount() > 0
                            ? tr("Select an object.")
                            : tr("Analyse a library or search a folder: its objects are shown "
                                 "here as pictures."));
        return;
    }
    const QString file = index.siblingAtColumn(ObjectModel::File).data().toString();
    const DraggedObject object = shown_.object(index);
    scene::Shape shape = pictures_.shape(file, object.identifier);
    QString text =
        tr("%1\n%2, scale %3\n%4")
            .arg(index.siblingAtColumn(ObjectModel::Name).data().toString(),
                 shown_text(scene::measures_text(shape)), object.scale, object.identifier);
    if (!shape.trouble.empty() && !shape.box.empty()) {
        text += QLatin1Char('\n') + shown_text(shape.trouble);
    }
    about_->setText(text);
    large_->show();
    large_->show_shape(std::move(shape));
}

void Shelf::choose(const QModelIndex& index) {
    if (index.isValid()) {
        const DraggedObject object = shown_.object(index);
        Q_EMIT object_chosen(object.identifier, object.scale);
    }
}

} // namespace morvane
