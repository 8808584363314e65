// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractScrollArea>
#include <QString>

#include <cstddef>
#include <functional>

namespace morvane {

enum class LineTint { None, Added, Removed, Commented, Changed, Missing };

/// A line as it is shown: its number in the margin, its text, and what it stands out by.
struct ShownLine {
    QString number;
    QString text;
    LineTint tint = LineTint::None;
};

/// Lines of text with their numbers, to be read and copied. It asks for the lines that it draws and
/// holds none, so that their number costs nothing.
class LineView : public QAbstractScrollArea {
    Q_OBJECT

  public:
    explicit LineView(QWidget* parent = nullptr);

    /// Shows `count` lines, which `line` returns for 0 .. count - 1; nothing that it throws may get
    /// out of it. `last_number` is the highest number of a line, for the margin's width.
    void show_lines(std::size_t count, std::function<ShownLine(std::size_t)> line,
                    std::size_t last_number);
    std::size_t count() const { return count_; }
    QString text(std::size_t row) const { return line_(row).text; }

    /// The row that was gone to last.
    std::size_t current_row() const { return current_; }
    /// Selects a row and brings it into the middle when it is not seen.
    void go_to(std::size_t row);
    /// The texts of the selected rows, a line each.
    QString selected_text() const;

  Q_SIGNALS:
    void current_changed(std::size_t row);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

  private:
    int line_height() const;
    int margin() const;
    std::size_t page() const;
    std::size_t row_at(int y) const;
    std::size_t first_row() const;
    void scroll_to(std::size_t first);
    void fit_bars();
    void move_to(std::size_t row, bool extend);
    void draw_line(QPainter& painter, std::size_t row, int y);
    QColor tint_color(LineTint tint) const;

    std::size_t count_ = 0;
    std::function<ShownLine(std::size_t)> line_ = [](std::size_t) { return ShownLine{}; };
    std::size_t last_number_ = 0;
    std::size_t current_ = 0;
    std::size_t anchor_ = 0; // where the selection began
    int widest_ = 0;         // of the texts drawn so far, in pixels
};

} // namespace morvane
