// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/library_browser/shelf_model.h"
#include "ui/library_browser/shelf_pictures.h"

#include <QWidget>

#include <memory>
#include <string>
#include <utility>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class QSplitter;

namespace morvane {

class ObjectModel;
class ShapeView;

/// The objects of the last report as pictures, and the selected one large. From here an object is
/// put in the place of a material: by Enter, or dragged onto it.
class Shelf : public QWidget {
    Q_OBJECT

  public:
    Shelf(ObjectModel& objects, Disk& disk, QWidget* parent = nullptr);

    /// The files may have changed.
    void forget() { pictures_.forget(); }
    /// What a compressed file holds.
    void keep_unpacked(const std::string& path, std::shared_ptr<const std::string> bytes) {
        pictures_.keep_unpacked(path, std::move(bytes));
    }
    QSplitter& splitter() { return *splitter_; }
    const ShelfPictures& pictures() const { return pictures_; }

  Q_SIGNALS:
    void object_chosen(const QString& identifier, const QString& scale);

  protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void prepare_list();
    QWidget* make_head();
    QWidget* make_side();
    void connect_parts();
    void take_look();
    void sort();
    void show_current();
    void choose(const QModelIndex& index);

    ShelfModel shown_;
    ShelfPictures pictures_;
    QListView* list_;
    QLineEdit* filter_;
    QComboBox* order_;
    ShapeView* large_;
    QLabel* about_;
    QCheckBox* turning_;
    QPushButton* use_;
    QSplitter* splitter_;
};

} // namespace morvane
