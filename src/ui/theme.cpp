#include "ui/theme.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>

#include "ui/icons.h"

namespace rowvane {
namespace {

struct ThemeColors {
  QRgb window, base, alternate, text, button, highlight, highlighted_text, link, disabled, mid;
};

constexpr ThemeColors kLight = {0xF3F4F6, 0xFFFFFF, 0xF7F9FB, 0x1C1F23, 0xE9EBEE,
                                0x2F6FB3, 0xFFFFFF, 0x1F5FA8, 0x8B9199, 0xC9CED5};
constexpr ThemeColors kDark = {0x24272B, 0x1B1D20, 0x212428, 0xE4E7EB, 0x2E3237,
                               0x3A6EA5, 0xFFFFFF, 0x7FB2E8, 0x7B828B, 0x41464D};

QPalette palette_of(const ThemeColors& colors) {
  QPalette palette;
  palette.setColor(QPalette::Window, QColor::fromRgb(colors.window));
  palette.setColor(QPalette::WindowText, QColor::fromRgb(colors.text));
  palette.setColor(QPalette::Base, QColor::fromRgb(colors.base));
  palette.setColor(QPalette::AlternateBase, QColor::fromRgb(colors.alternate));
  palette.setColor(QPalette::ToolTipBase, QColor::fromRgb(colors.base));
  palette.setColor(QPalette::ToolTipText, QColor::fromRgb(colors.text));
  palette.setColor(QPalette::PlaceholderText, QColor::fromRgb(colors.disabled));
  palette.setColor(QPalette::Text, QColor::fromRgb(colors.text));
  palette.setColor(QPalette::Button, QColor::fromRgb(colors.button));
  palette.setColor(QPalette::ButtonText, QColor::fromRgb(colors.text));
  palette.setColor(QPalette::BrightText, Qt::white);
  palette.setColor(QPalette::Highlight, QColor::fromRgb(colors.highlight));
  palette.setColor(QPalette::HighlightedText, QColor::fromRgb(colors.highlighted_text));
  palette.setColor(QPalette::Link, QColor::fromRgb(colors.link));
  palette.setColor(QPalette::Mid, QColor::fromRgb(colors.mid));
  palette.setColor(QPalette::Light, QColor::fromRgb(colors.base));
  palette.setColor(QPalette::Midlight, QColor::fromRgb(colors.alternate));
  palette.setColor(QPalette::Dark, QColor::fromRgb(colors.disabled));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor::fromRgb(colors.disabled));
  }
  return palette;
}

constexpr QRgb kWarningColor = 0xD08700;
constexpr QRgb kErrorColor = 0xCC3B33;

// Fusion, with the calm close button of a tab, boxes in the look of the window and frames that are seen on
// dark ones.
class WindowStyle final : public QProxyStyle {
 public:
  WindowStyle() : QProxyStyle("Fusion") {}

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    if (element == PE_IndicatorTabClose) return draw_tab_close(*option, *painter);
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool is_box = element == PE_FrameLineEdit || element == PE_IndicatorCheckBox ||
                        element == PE_IndicatorRadioButton || element == PE_Frame;
    if (is_box && !option->state.testFlag(State_HasFocus))
      draw_frame(*option, *painter, element == PE_IndicatorRadioButton);
  }

  QIcon standardIcon(StandardPixmap standard, const QStyleOption* option,
                     const QWidget* widget) const override {
    switch (standard) {
      case SP_MessageBoxInformation:
        return icon("information", QGuiApplication::palette().color(QPalette::Link));
      case SP_MessageBoxQuestion:
        return icon("question", QGuiApplication::palette().color(QPalette::Link));
      case SP_MessageBoxWarning:
        return icon("warning", QColor::fromRgb(kWarningColor));
      case SP_MessageBoxCritical:
        return icon("error", QColor::fromRgb(kErrorColor));
      default:
        return QProxyStyle::standardIcon(standard, option, widget);
    }
  }

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, result);
  }

 private:
  // Fusion makes frames darker than the window, which is invisible on a dark one.
  static void draw_frame(const QStyleOption& option, QPainter& painter, bool round) {
    if (option.palette.color(QPalette::Window).lightness() > 128) return;
    painter.save();
    painter.setPen(option.palette.color(QPalette::Mid));
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing, round);
    const qreal radius = round ? option.rect.width() / 2.0 : 2;
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.restore();
  }

  static void draw_tab_close(const QStyleOption& option, QPainter& painter) {
    if (option.state.testFlag(State_MouseOver)) {
      painter.save();
      painter.setRenderHint(QPainter::Antialiasing);
      painter.setPen(Qt::NoPen);
      painter.setBrush(option.palette.mid());
      painter.drawRoundedRect(option.rect, 3, 3);
      painter.restore();
    }
    icon("close").paint(&painter, option.rect.adjusted(2, 2, -2, -2));
  }
};

}  // namespace

void set_dark_colors(bool dark) {
  QApplication::setStyle(new WindowStyle());
  QApplication::setPalette(palette_of(dark ? kDark : kLight));
}

bool is_dark(const QColor& ground) {
  return ground.lightness() < 128;
}

}  // namespace rowvane
