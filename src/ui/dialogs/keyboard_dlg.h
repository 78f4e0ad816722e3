// The keys of all commands and of the grid, to look them up.
#pragma once

#include <QDialog>

namespace rowvane {

class CKeyboardDlg final : public QDialog {
  Q_OBJECT

 public:
  explicit CKeyboardDlg(QWidget* parent = nullptr);
};

}  // namespace rowvane
