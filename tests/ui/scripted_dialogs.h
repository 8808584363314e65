// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/dialogs/dialogs.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <utility>
#include <vector>

namespace morvane::test {

/// Writes down every dialog and answers it as the test set it up.
class ScriptedDialogs final : public Dialogs {
  public:
    struct Box {
        QString text;
        Icon icon = Icon::None;
        QString explanation;
    };
    struct Question {
        QString text;
        Icon icon = Icon::None;
        QString title;
    };

    void show_box(QWidget* /*parent*/, const QString& text, Icon icon,
                  const QString& explanation) override {
        if (before_box) {
            std::exchange(before_box, {})();
        }
        boxes.push_back({text, icon, explanation});
    }
    bool show_repeated_box(QWidget* parent, const QString& text, Icon icon) override {
        show_box(parent, text, icon, {});
        return no_more_boxes;
    }
    bool ask(QWidget* /*parent*/, const QString& text, Icon icon, const QString& title) override {
        questions.push_back({text, icon, title});
        return answer;
    }
    Unsaved ask_unsaved(QWidget* /*parent*/, const QString& text, bool can_save) override {
        ++unsaved_asked;
        unsaved_text = text;
        save_offered = can_save;
        return unsaved;
    }
    QString open_file(QWidget* /*parent*/, const QString& /*title*/, const QString& folder,
                      const QString& filter) override {
        folders.append(folder);
        filters.append(filter);
        return next_file();
    }
    QStringList open_files(QWidget* parent, const QString& title, const QString& folder,
                           const QString& filter) override {
        QStringList chosen = several;
        several.clear();
        if (chosen.isEmpty()) {
            const QString one = open_file(parent, title, folder, filter);
            return one.isEmpty() ? QStringList() : QStringList{one};
        }
        return chosen;
    }
    QString save_file(QWidget* parent, const QString& title, const QString& path,
                      const QString& filter) override {
        return open_file(parent, title, path, filter);
    }

    /// The text of the only box shown since the last look; says so when there were none or more.
    QString take_box() {
        QString text =
            boxes.size() == 1 ? boxes.front().text : QStringLiteral("%1 boxes").arg(boxes.size());
        boxes.clear();
        return text;
    }

    std::function<void()> before_box; // called once, instead of a box when it throws
    bool answer = true;
    bool no_more_boxes = false;
    QStringList several; // to be chosen at once
    Unsaved unsaved = Unsaved::Cancel;
    std::deque<QString> files; // to be chosen, in turn; none left: the dialog is cancelled

    std::vector<Box> boxes;
    std::vector<Question> questions;
    int unsaved_asked = 0;
    QString unsaved_text;
    bool save_offered = false;
    QStringList folders; // that the file dialogs began in
    QStringList filters;

  private:
    QString next_file() {
        if (files.empty()) {
            return {};
        }
        QString file = files.front();
        files.pop_front();
        return file;
    }
};

} // namespace morvane::test
