// Which controls a screen reader could not name.
#pragma once

#include <QAccessible>
#include <QWidget>
#include <string>
#include <vector>

namespace rowvane {

// The classes and object names of the controls in WINDOW that take the keyboard and have no accessible name.
inline std::vector<std::string> controls_without_names(QWidget& window) {
  std::vector<std::string> found;
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    const bool is_control = widget->focusPolicy() & Qt::TabFocus && widget->window() == window.window();
    // A part of another control that speaks for it.
    const QWidget* whole = widget->focusProxy() != nullptr ? widget->focusProxy() : widget;
    if (!is_control || whole != widget || widget->objectName().startsWith("qt_")) continue;
    QAccessibleInterface* control = QAccessible::queryAccessibleInterface(widget);
    if (control != nullptr && control->text(QAccessible::Name).isEmpty())
      found.push_back(std::string(widget->metaObject()->className()) + " " +
                      widget->objectName().toStdString());
  }
  return found;
}

}  // namespace rowvane
