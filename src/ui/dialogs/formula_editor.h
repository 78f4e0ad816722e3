// The box for a formula: colours, completion, hints on parameters, and whether the formula can be read.
#pragma once

#include <memory>

#include <Qsci/qscilexercustom.h>
#include <Qsci/qsciscintilla.h>

#include "core/table/work_sheet.h"
#include "formula/language/formula_lexer.h"

namespace rowvane {

// Colours of the parts of a formula, as its lexer reads them.
class FormulaColors final : public QsciLexerCustom {
  Q_OBJECT

 public:
  enum Style { kPlain, kNumber, kText, kField, kFunction, kOperator, kWrong, kStyles };

  // TABLE's fields are names; it and SETTINGS must outlive this.
  FormulaColors(const CWorkSheet* table, const FormulaSettings& settings, QObject* parent);

  const char* language() const override { return "Formula"; }
  QString description(int style) const override;
  QColor defaultColor(int style) const override;
  QColor defaultPaper(int style) const override;
  QFont defaultFont(int style) const override;
  void styleText(int start, int end) override;
  // Takes the colours of the window's palette.
  void follow_palette();

 private:
  void style_formula(const std::string& formula);

  std::unique_ptr<FormulaLexer> lexer_;
};

class FormulaEditor final : public QsciScintilla {
  Q_OBJECT

 public:
  // As high as LINES lines. TABLE, null for none, and SETTINGS must outlive the editor.
  FormulaEditor(int lines, const CWorkSheet* table, const FormulaSettings& settings,
                QWidget* parent = nullptr);

  // As fields store it; empty for none.
  std::string formula() const;
  void set_formula(const std::string& formula);
  bool is_valid() const;
  // Puts a call of the function NAME at the cursor, with what is selected as its arguments, and begins a
  // formula where there is none. The cursor goes to the arguments.
  void insert_function(const QString& name);
  // The names that the word before the cursor can become.
  QStringList completions() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void changeEvent(QEvent* event) override;

 private:
  QString word_before_cursor() const;
  QByteArray text_before_cursor() const;
  void offer_names();
  void show_call_hint();

  const CWorkSheet* table_;
  const FormulaSettings& settings_;
  FormulaColors* colors_;
  QStringList names_;
};

}  // namespace rowvane
