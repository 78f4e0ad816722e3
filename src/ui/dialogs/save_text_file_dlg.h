// How a table is saved as a text file.
#pragma once

#include <QDialog>
#include <optional>

#include "app/profile/profile_settings.h"
#include "exchange/text/text_export.h"
#include "ui/dialogs/field_check_list.h"
#include "ui/dialogs/text_settings_box.h"

class QCheckBox;
class QLabel;
class QSpinBox;

namespace rowvane {

class Dialogs;

class CSaveTextFileDlg final : public QDialog {
  Q_OBJECT

 public:
  // Begins with what the profile remembers of the last time. All must outlive the dialog.
  CSaveTextFileDlg(const CWorkSheet& table, profile::Settings& profile, Dialogs& dialogs,
                   QWidget* parent = nullptr);

  TextSettingsBox& box() { return *box_; }
  FieldCheckList& field_list() { return *fields_; }
  // What was chosen, once the dialog has been accepted; the records are the caller's to choose.
  TextExport settings() const;
  // What is wrong with the settings; empty when nothing is.
  QString problem() const;

 public slots:
  void accept() override;

 private:
  QLayout* field_part();
  QLayout* options_part();
  bool has_type(std::initializer_list<FieldType> types) const;

  const CWorkSheet& table_;
  profile::Settings& profile_;
  Dialogs& dialogs_;
  TextFileSettings shown_;  // what the controls began with
  TextSettingsBox* box_;
  FieldCheckList* fields_;
  QCheckBox* files_;
  QCheckBox* long_texts_;
  QCheckBox* several_files_;
  QSpinBox* row_limit_;
  QLabel* problem_;
};

}  // namespace rowvane
