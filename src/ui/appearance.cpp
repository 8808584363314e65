// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/appearance.h"

#include "ui/access_letters.h"

#include <QApplication>
#include <QColor>
#include <QLabel>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>
#include <QToolTip>

namespace morvane {

namespace {

// A check box that is not checked has to be seen too, also on a dark ground.
void draw_edge(QPainter& painter, const QStyleOption& option) {
    QColor edge = option.palette.color(QPalette::WindowText);
    edge.setAlphaF(0.75F);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(edge, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    painter.restore();
}

// The style of the platform with some air: captions keep away from the edges of their buttons, and
// the rows of lists from each other. Underlines the letters that give_access_letters has chosen.
class RoomyStyle final : public QProxyStyle {
  public:
    using QProxyStyle::QProxyStyle;

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        const QSize plain = QProxyStyle::sizeFromContents(type, option, size, widget);
        switch (type) {
        case CT_PushButton:
            return plain + QSize(12, 4);
        case CT_LineEdit:
        case CT_ComboBox:
            return plain + QSize(0, 4);
        case CT_ItemViewItem:
        case CT_HeaderSection:
            return plain + QSize(6, 4);
        default:
            return plain;
        }
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        if (element == PE_IndicatorCheckBox) {
            draw_edge(*painter, *option);
        }
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        if (button == nullptr || widget == nullptr ||
            (element != CE_PushButtonLabel && element != CE_CheckBoxLabel)) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        QStyleOptionButton marked(*button);
        marked.text = with_access_letter(*widget, marked.text);
        QProxyStyle::drawControl(element, &marked, painter, widget);
    }

    void drawItemText(QPainter* painter, const QRect& area, int flags, const QPalette& palette,
                      bool enabled, const QString& text, QPalette::ColorRole role) const override {
        const auto* label =
            qobject_cast<const QLabel*>(painter->device()->devType() == QInternal::Widget
                                            ? static_cast<const QWidget*>(painter->device())
                                            : nullptr);
        if (label == nullptr) {
            QProxyStyle::drawItemText(painter, area, flags, palette, enabled, text, role);
            return;
        }
        QProxyStyle::drawItemText(painter, area, flags | Qt::TextShowMnemonic, palette, enabled,
                                  with_access_letter(*label, text), role);
    }
};

struct Shades {
    QRgb window, text, base, alternate, button, highlight, highlighted_text, link, faint;
};

constexpr Shades light_shades{0xFFF3F4F6, 0xFF1B1F24, 0xFFFFFFFF, 0xFFF6F8FA, 0xFFFBFBFC,
                              0xFF1F6FEB, 0xFFFFFFFF, 0xFF0B57D0, 0xFF6B737D};
constexpr Shades dark_shades{0xFF353A42, 0xFFE8EBF0, 0xFF24282E, 0xFF292D34, 0xFF454B55,
                             0xFF2F6FD0, 0xFFFFFFFF, 0xFF7CB0FF, 0xFF9AA2AD};

QPalette palette_of(const Shades& shades) {
    QPalette palette(QColor(shades.button), QColor(shades.window));
    palette.setColor(QPalette::WindowText, shades.text);
    palette.setColor(QPalette::Text, shades.text);
    palette.setColor(QPalette::ButtonText, shades.text);
    palette.setColor(QPalette::Base, shades.base);
    palette.setColor(QPalette::AlternateBase, shades.alternate);
    palette.setColor(QPalette::ToolTipBase, shades.button);
    palette.setColor(QPalette::ToolTipText, shades.text);
    palette.setColor(QPalette::Highlight, shades.highlight);
    palette.setColor(QPalette::HighlightedText, shades.highlighted_text);
    palette.setColor(QPalette::Link, shades.link);
    palette.setColor(QPalette::PlaceholderText, shades.faint);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, shades.faint);
    }
    return palette;
}

} // namespace

QString appearance_name(Appearance appearance) {
    switch (appearance) {
    case Appearance::Light:
        return QStringLiteral("light");
    case Appearance::Dark:
        return QStringLiteral("dark");
    case Appearance::System:
        break;
    }
    return QStringLiteral("system");
}

Appearance appearance_from_name(const QString& name) {
    for (const Appearance appearance : {Appearance::Light, Appearance::Dark}) {
        if (name == appearance_name(appearance)) {
            return appearance;
        }
    }
    return Appearance::System;
}

void use_roomy_style() {
    QApplication::setStyle(new RoomyStyle);
} // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the application owns its style

void apply_appearance(Appearance appearance) {
    if (appearance == Appearance::System) {
        QApplication::setPalette(QPalette());
        return;
    }
    // Only a style that draws everything from the palette can be trusted with another one.
    // NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks): the application owns its style
    const auto* style = qobject_cast<QProxyStyle*>(QApplication::style());
    if (style == nullptr || style->baseStyle()->name() != QLatin1String("fusion")) {
        QApplication::setStyle(new RoomyStyle(QStringLiteral("Fusion")));
    }
    const QPalette palette =
        palette_of(appearance == Appearance::Dark ? dark_shades : light_shades);
    // NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}

} // namespace morvane
