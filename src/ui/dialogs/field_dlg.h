// The properties of a field: of one that is there, and of a new one.
#pragma once

#include <QDialog>
#include <optional>

#include "app/profile/profile_settings.h"
#include "formula/fields/field_entry.h"
#include "ui/document/database_document.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace rowvane {

class Dialogs;
class FormatChoice;
class FormulaEditor;
class FunctionPicker;

class CFieldDlg final : public QDialog {
  Q_OBJECT

 public:
  // For field INDEX of TABLE; nothing: "Insert Field" before field BEFORE. All must outlive the dialog.
  CFieldDlg(DatabaseDocument& document, CWorkSheet& table, std::optional<size_t> index, size_t before,
            profile::Settings& profile, Dialogs& dialogs, QWidget* parent = nullptr);

  // What was entered.
  FieldEntry entry() const;
  // What is wrong with it; empty when nothing is.
  QString problem() const;

 public slots:
  // Changes the table; stays open after telling the user why it can't be.
  void accept() override;

 private:
  void add_rows(QFormLayout& layout);
  void show_field(const Field& field);
  void show_lists(const std::string& chosen);
  void edit_lists();
  void follow_controls();
  void focus_part(FieldPart part);
  QWidget* views();
  bool may_lose(const FieldEntry& entry);
  bool apply(const FieldEntry& entry);

  DatabaseDocument& document_;
  CWorkSheet& table_;
  std::optional<size_t> index_;
  size_t before_;
  profile::Settings& profile_;
  Dialogs& dialogs_;

  QLineEdit* name_;
  QComboBox* type_;
  FormatChoice* format_;
  QLabel* preview_;
  FormulaEditor* formula_;
  FormulaEditor* validation_;
  FunctionPicker* functions_;
  QLineEdit* default_value_;
  QComboBox* list_;
  QCheckBox* hidden_;
  QLabel* problem_;
};

}  // namespace rowvane
