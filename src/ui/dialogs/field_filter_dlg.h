// The search filter of one field.
#pragma once

#include <QDialog>
#include <functional>

#include "core/database/database.h"
#include "recordset/search/field_filter.h"

class QAbstractButton;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLineEdit;

namespace rowvane {

class Dialogs;
class FormulaEditor;
class FunctionPicker;
class RecentFieldTexts;

// What the dialog works on; all must outlive it.
struct FieldFilterContext {
  const CWorkSheet& table;
  const DatabaseSettings& settings;  // with the record flags
  const FormulaSettings& formulas;
  RecentFieldTexts& recent_texts;
};

class CFieldFilterDlg final : public QDialog {
  Q_OBJECT

 public:
  CFieldFilterDlg(const FieldFilterContext& context, size_t field, const std::optional<Criterion>& criterion,
                  const SearchOptions& options, Dialogs& dialogs, QWidget* parent = nullptr);

  // What was chosen, once the dialog has been accepted.
  const Criterion& criterion() const { return *criterion_; }
  // To be stored, also when the dialog was given up: what the boxes said when OK was pressed.
  const SearchOptions& options() const { return options_; }

 public slots:
  void accept() override;

 private:
  void show_filter(const FieldFilter& filter);
  FieldFilter entered() const;
  void follow_choice();
  void show_recent_texts(const QPoint& place);
  void flash_invalid_formula();

  FieldFilterContext context_;
  const size_t field_;
  SearchOptions options_;
  Dialogs& dialogs_;
  std::optional<Criterion> criterion_;
  QButtonGroup* choice_;
  QComboBox* kind_;
  QLineEdit* text_;
  FormulaEditor* formula_;
  FunctionPicker* functions_;
  QComboBox* flag_;
  QCheckBox* empty_matches_;
  QCheckBox* match_case_;
  QCheckBox* search_now_;
};

}  // namespace rowvane
