// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/access_letters.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>

#include <algorithm>
#include <map>
#include <vector>

namespace morvane {

namespace {

constexpr const char* letter_property = "accessLetter";

QKeySequence alt(QChar letter) {
    return QKeySequence(QStringLiteral("Alt+") + letter.toUpper());
}

// The letters of a caption that are free: first those that begin a word.
QString free_letters(const QString& caption, const QString& taken) {
    QString first;
    QString others;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        const QChar letter = caption[i];
        if (letter.isLetter() && letter.unicode() < 128 &&
            !taken.contains(letter, Qt::CaseInsensitive)) {
            const bool begins_word = i == 0 || caption[i - 1] == QLatin1Char(' ');
            (begins_word ? first : others).append(letter);
        }
    }
    return first + others;
}

QString caption_of(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        return label->buddy() == nullptr ? QString() : label->text();
    }
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    const bool has_caption = qobject_cast<const QPushButton*>(&widget) != nullptr ||
                             qobject_cast<const QCheckBox*>(&widget) != nullptr;
    return has_caption ? button->text() : QString();
}

void connect_letter(QWidget& form, QWidget& widget, QChar letter) {
    if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
        button->setShortcut(alt(letter));
        return;
    }
    QWidget* field = static_cast<QLabel&>(widget).buddy();
    widget.setMinimumWidth(widget.sizeHint().width() + 2); // the underlined text is a trace wider
    auto* shortcut = new QShortcut(alt(letter), &form);
    QObject::connect(shortcut, &QShortcut::activated, field,
                     [field] { field->setFocus(Qt::ShortcutFocusReason); });
}

// Buttons first: there are other ways to a field. Short captions before long ones, since they have
// less to choose from.
std::vector<QWidget*> by_need(const QWidget& form) {
    std::vector<QWidget*> widgets;
    for (QWidget* widget : form.findChildren<QWidget*>()) {
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const bool has_keys = button != nullptr && !button->shortcut().isEmpty();
        if (!has_keys && !caption_of(*widget).isEmpty() && widget->window() == &form) {
            widgets.push_back(widget);
        }
    }
    std::stable_sort(widgets.begin(), widgets.end(), [](const QWidget* a, const QWidget* b) {
        const bool a_is_label = qobject_cast<const QLabel*>(a) != nullptr;
        const bool b_is_label = qobject_cast<const QLabel*>(b) != nullptr;
        return a_is_label != b_is_label ? b_is_label
                                        : caption_of(*a).size() < caption_of(*b).size();
    });
    return widgets;
}

// Gives each widget a letter of its own. One that finds all of its letters taken lets another
// widget take a different one, if that leaves nobody without.
class LetterChoice {
  public:
    struct Chosen {
        QWidget* widget = nullptr;
        QChar letter;
    };

    void add(QWidget& widget, const QString& letters) {
        candidates_[&widget] = letters;
        QString tried;
        find_letter(widget, tried);
    }
    const std::map<QChar, Chosen>& chosen() const { return chosen_; }

  private:
    bool find_letter(QWidget& widget, QString& tried) {
        for (const QChar letter : candidates_[&widget]) {
            const QChar key = letter.toUpper();
            if (tried.contains(key)) {
                continue;
            }
            tried.append(key);
            QWidget* holder = chosen_[key].widget;
            if (holder == nullptr || find_letter(*holder, tried)) {
                chosen_[key] = {&widget, letter};
                return true;
            }
        }
        return false;
    }

    std::map<QWidget*, QString> candidates_;
    std::map<QChar, Chosen> chosen_;
};

} // namespace

void give_access_letters(QWidget& form, const QString& taken) {
    LetterChoice choice;
    for (QWidget* widget : by_need(form)) {
        choice.add(*widget, free_letters(caption_of(*widget), taken));
    }
    for (const auto& [key, letter] : choice.chosen()) {
        if (letter.widget == nullptr) {
            continue; // looked at, but nobody's
        }
        letter.widget->setProperty(letter_property, QString(letter.letter));
        connect_letter(form, *letter.widget, letter.letter);
    }
}

QString with_access_letter(const QWidget& widget, const QString& caption) {
    const QString letter = widget.property(letter_property).toString();
    const qsizetype place = letter.isEmpty() ? -1 : caption.indexOf(letter.front());
    return place < 0 ? caption : QString(caption).insert(place, QLatin1Char('&'));
}

} // namespace morvane
