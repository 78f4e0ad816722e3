// The functions of formulas by category, with their help; what is picked goes into a formula editor.
#pragma once

#include <QWidget>

class QComboBox;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace rowvane {

class FormulaEditor;

class FunctionPicker final : public QWidget {
  Q_OBJECT

 public:
  // Only its button is shown at first. EDITOR must outlive the picker.
  explicit FunctionPicker(FormulaEditor& editor, QWidget* parent = nullptr);

  // Where the functions go from now on.
  void set_editor(FormulaEditor& editor) { editor_ = &editor; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void show_lists(bool shown);
  void show_category();
  void show_help();
  void insert_function();

  FormulaEditor* editor_;
  QPushButton* button_;
  QWidget* lists_;
  QComboBox* categories_;
  QListWidget* functions_;
  QPlainTextEdit* help_;
};

}  // namespace rowvane
