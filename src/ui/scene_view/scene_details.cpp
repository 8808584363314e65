// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/scene_view/scene_details.h"

#include "ui/access_letters.h"
#include "ui/qt_text.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace morvane {

SceneDetails::SceneDetails(const scene::Scene& scene, const QString& texture_folder,
                           QWidget* parent)
    : QDialog(parent), list_(new QListWidget(this)), folder_(new QLineEdit(texture_folder, this)) {
    setObjectName(QStringLiteral("sceneDetailsDialog"));
    setWindowTitle(tr("What the Picture Shows"));
    list_->setObjectName(QStringLiteral("sceneDetailList"));
    list_->setAccessibleName(tr("Textures and notes"));
    list_->setWordWrap(true);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // long lines are wrapped
    folder_->setObjectName(QStringLiteral("textureFolder"));
    folder_->setAccessibleName(tr("Further folder with textures"));
    folder_->setToolTip(tr("Textures are looked for here too, after the folder of the set and the "
                           "folder texture beside it. Press Enter to look again."));
    auto* form = new QFormLayout;
    form->addRow(tr("Texture folder"), folder_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setAutoDefault(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list_, 1);
    layout->addLayout(form);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(folder_, &QLineEdit::returnPressed, this,
            [this] { Q_EMIT texture_folder_chosen(folder_->text()); });
    connect(list_, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
        if (const qulonglong line = item->data(Qt::UserRole).toULongLong(); line > 0) {
            Q_EMIT line_wanted(static_cast<std::size_t>(line));
        }
    });
    show_scene(scene);
    resize(560, 360);
    give_access_letters(*this);
}

void SceneDetails::show_scene(const scene::Scene& scene) {
    list_->clear();
    for (const scene::SceneTexture& texture : scene.textures) {
        const QString name = shown_text(texture.name);
        list_->addItem(texture.path.empty()
                           ? tr("texture %1: missing").arg(name)
                           : tr("texture %1: found, %2").arg(name, shown_text(texture.path)));
    }
    for (const Note& note : scene.notes) {
        QString text = shown_text(note.text);
        if (note.line > 0) {
            text = tr("line %1: %2").arg(note.line).arg(text);
        }
        auto* item = new QListWidgetItem(text, list_);
        item->setData(Qt::UserRole, static_cast<qulonglong>(note.line));
    }
    list_->addItem(tr("Textures are drawn as flat colours; animations are at rest; of several "
                      "levels of detail the finest is shown."));
}

} // namespace morvane
