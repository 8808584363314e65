// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/widgets/line_view.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace morvane {

namespace {

constexpr int gap = 6;                // between margin and text
constexpr int tab_width = 8;          // characters
constexpr int most_characters = 4000; // of a line; more are not drawn

QString with_blanks_for_tabs(const QString& text) {
    QString result;
    for (const QChar c : text) {
        if (c == QLatin1Char('\t')) {
            result.append(QString(tab_width - result.size() % tab_width, QLatin1Char(' ')));
        } else {
            result.append(c);
        }
    }
    return result;
}

} // namespace

LineView::LineView(QWidget* parent) : QAbstractScrollArea(parent) {
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    verticalScrollBar()->setSingleStep(1);
}

void LineView::show_lines(std::size_t count, std::function<ShownLine(std::size_t)> line,
                          std::size_t last_number) {
    count_ = count;
    line_ = std::move(line);
    last_number_ = last_number;
    const std::size_t last = count == 0 ? 0 : count - 1;
    current_ = std::min(current_, last);
    anchor_ = std::min(anchor_, last);
    widest_ = 0;
    fit_bars();
    viewport()->update();
}

int LineView::line_height() const {
    return fontMetrics().height();
}

int LineView::margin() const {
    const auto digits = static_cast<int>(QString::number(last_number_).size());
    return fontMetrics().horizontalAdvance(QLatin1Char('0')) * std::max(digits, 3) + 2 * gap;
}

std::size_t LineView::page() const {
    return static_cast<std::size_t>(std::max(viewport()->height() / line_height(), 1));
}

std::size_t LineView::row_at(int y) const {
    const int row = verticalScrollBar()->value() + std::max(y, 0) / line_height();
    return std::min(static_cast<std::size_t>(row), count_ == 0 ? 0 : count_ - 1);
}

void LineView::fit_bars() {
    const auto beyond = static_cast<int>(count_ - std::min(count_, page()));
    verticalScrollBar()->setRange(0, beyond);
    verticalScrollBar()->setPageStep(static_cast<int>(page()));
    const int room = viewport()->width() - margin() - gap;
    horizontalScrollBar()->setRange(0, std::max(widest_ - room, 0));
    horizontalScrollBar()->setPageStep(std::max(room, 1));
    horizontalScrollBar()->setSingleStep(fontMetrics().horizontalAdvance(QLatin1Char('0')) * 4);
}

void LineView::go_to(std::size_t row) {
    const std::size_t first = first_row();
    if (row < first || row >= first + page()) {
        scroll_to(row - std::min(row, page() / 2));
    }
    move_to(row, false);
}

std::size_t LineView::first_row() const {
    return static_cast<std::size_t>(verticalScrollBar()->value());
}

void LineView::scroll_to(std::size_t first) {
    verticalScrollBar()->setValue(static_cast<int>(std::min(first, count_)));
}

// Scrolls as little as will do.
void LineView::move_to(std::size_t row, bool extend) {
    if (count_ == 0) {
        return;
    }
    current_ = std::min(row, count_ - 1);
    anchor_ = extend ? anchor_ : current_;
    if (current_ < first_row()) {
        scroll_to(current_);
    } else if (current_ >= first_row() + page()) {
        scroll_to(current_ + 1 - page());
    }
    setAccessibleDescription(line_(current_).text);
    viewport()->update();
    Q_EMIT current_changed(current_);
}

QString LineView::selected_text() const {
    QStringList texts;
    for (std::size_t row = std::min(anchor_, current_);
         row <= std::max(anchor_, current_) && row < count_; ++row) {
        texts.append(line_(row).text);
    }
    return texts.join(QLatin1Char('\n'));
}

QColor LineView::tint_color(LineTint tint) const {
    const bool dark = palette().color(QPalette::Base).lightness() < 128;
    switch (tint) {
    case LineTint::Added:
        return dark ? QColor(0x1e, 0x42, 0x28) : QColor(0xd8, 0xf2, 0xd8);
    case LineTint::Removed:
        return dark ? QColor(0x55, 0x26, 0x26) : QColor(0xfa, 0xdc, 0xda);
    case LineTint::Commented:
        return dark ? QColor(0x42, 0x38, 0x1c) : QColor(0xfa, 0xee, 0xcc);
    case LineTint::Changed:
        return dark ? QColor(0x24, 0x38, 0x58) : QColor(0xd8, 0xe6, 0xfa);
    case LineTint::Missing:
        return palette().color(QPalette::AlternateBase);
    case LineTint::None:
        break;
    }
    return palette().color(QPalette::Base);
}

void LineView::draw_line(QPainter& painter, std::size_t row, int y) {
    const ShownLine line = line_(row);
    const int left = margin();
    const int width = viewport()->width();
    const bool selected = row >= std::min(anchor_, current_) && row <= std::max(anchor_, current_);
    const QPalette::ColorGroup group = hasFocus() ? QPalette::Active : QPalette::Inactive;
    painter.fillRect(left, y, width - left, line_height(),
                     selected ? palette().color(group, QPalette::Highlight)
                              : tint_color(line.tint));
    const QString text = with_blanks_for_tabs(line.text.left(most_characters));
    widest_ = std::max(widest_, fontMetrics().horizontalAdvance(text));
    painter.setPen(palette().color(group, selected ? QPalette::HighlightedText : QPalette::Text));
    painter.setClipRect(left, y, width - left, line_height());
    painter.drawText(left + gap - horizontalScrollBar()->value(), y + fontMetrics().ascent(), text);
    painter.setClipping(false);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(QRect(0, y, left - gap, line_height()), Qt::AlignRight | Qt::AlignVCenter,
                     line.number);
}

void LineView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(viewport());
    painter.setFont(font());
    painter.fillRect(viewport()->rect(), palette().color(QPalette::Base));
    painter.fillRect(0, 0, margin(), viewport()->height(), palette().color(QPalette::Window));
    const int widest = widest_;
    std::size_t row = first_row();
    for (int y = 0; y < viewport()->height() && row < count_; y += line_height()) {
        draw_line(painter, row, y);
        ++row;
    }
    if (widest_ != widest) {
        fit_bars();
    }
}

void LineView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    fit_bars();
}

void LineView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) {
        fit_bars();
        viewport()->update();
    }
}

void LineView::keyPressEvent(QKeyEvent* event) {
    const bool extend = event->modifiers().testFlag(Qt::ShiftModifier);
    const bool whole = event->modifiers().testFlag(Qt::ControlModifier);
    const std::size_t last = count_ == 0 ? 0 : count_ - 1;
    if (event->matches(QKeySequence::Copy)) {
        QApplication::clipboard()->setText(selected_text());
    } else if (event->matches(QKeySequence::SelectAll)) {
        anchor_ = 0;
        move_to(last, true);
    } else if (event->key() == Qt::Key_Down) {
        move_to(current_ + 1, extend);
    } else if (event->key() == Qt::Key_Up) {
        move_to(current_ - std::min<std::size_t>(current_, 1), extend);
    } else if (event->key() == Qt::Key_PageDown) {
        move_to(current_ + page(), extend);
    } else if (event->key() == Qt::Key_PageUp) {
        move_to(current_ - std::min(current_, page()), extend);
    } else if (event->key() == Qt::Key_Home && whole) {
        move_to(0, extend);
    } else if (event->key() == Qt::Key_End && whole) {
        move_to(last, extend);
    } else if (event->key() == Qt::Key_Home) {
        horizontalScrollBar()->setValue(0);
    } else if (event->key() == Qt::Key_End) {
        horizontalScrollBar()->setValue(horizontalScrollBar()->maximum());
    } else {
        QAbstractScrollArea::keyPressEvent(event); // the arrows to the sides scroll
    }
}

void LineView::mousePressEvent(QMouseEvent* event) {
    move_to(row_at(event->pos().y()), event->modifiers().testFlag(Qt::ShiftModifier));
}

void LineView::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton)) {
        move_to(row_at(event->pos().y()), true);
    }
}

} // namespace morvane
