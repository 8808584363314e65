#include "ui/access_letters.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>

#include <algorithm>
#include <vector>

namespace morvane {

namespace {

constexpr const char* letter_property = "accessLetter";

QKeySequence alt(QChar letter) {
    return QKeySequence(QStringLiteral("Alt+") + letter.toUpper());
}

// The first letters of words are looked at before all others.
QChar free_letter(const QString& caption, const QString& taken) {
    const auto is_free = [&](QChar letter) {
        return letter.isLetter() && letter.unicode() < 128 &&
               !taken.contains(letter, Qt::CaseInsensitive);
    };
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if ((i == 0 || caption[i - 1] == QLatin1Char(' ')) && is_free(caption[i])) {
            return caption[i];
        }
    }
    const auto* found = std::find_if(caption.begin(), caption.end(), is_free);
    return found == caption.end() ? QChar() : *found;
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
    auto* shortcut = new QShortcut(alt(letter), &form);
    QObject::connect(shortcut, &QShortcut::activated, field,
                     [field] { field->setFocus(Qt::ShortcutFocusReason); });
}

// Buttons first: there are other ways to a field. Short captions before long ones, since they have
// less to choose from.
std::vector<QWidget*> by_need(const QWidget& form) {
    std::vector<QWidget*> widgets;
    for (QWidget* widget : form.findChildren<QWidget*>()) {
        if (!caption_of(*widget).isEmpty() && widget->window() == &form) {
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

} // namespace

void give_access_letters(QWidget& form, const QString& taken) {
    QString used = taken;
    for (QWidget* widget : by_need(form)) {
        const QChar letter = free_letter(caption_of(*widget), used);
        if (letter.isNull()) {
            continue;
        }
        used.append(letter);
        widget->setProperty(letter_property, QString(letter));
        connect_letter(form, *widget, letter);
    }
}

QString with_access_letter(const QWidget& widget, const QString& caption) {
    const QString letter = widget.property(letter_property).toString();
    const qsizetype place = letter.isEmpty() ? -1 : caption.indexOf(letter.front());
    return place < 0 ? caption : QString(caption).insert(place, QLatin1Char('&'));
}

} // namespace morvane
