// Kinds of keys that editors of cells and the grid share out among themselves.
#pragma once

#include <QKeyEvent>

namespace rowvane {

inline bool is_enter(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

inline bool is_arrow(int key) {
  return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Left || key == Qt::Key_Right;
}

}  // namespace rowvane
