// How a table is saved as a text file.
#pragma once

#include <QDialog>

#include "exchange/text_export.h"
#include "ui/dialogs/text_settings_box.h"

class QCheckBox;
class QLabel;
class QListWidget;
class QSpinBox;

namespace rowvane {

class CSaveTextFileDlg final : public QDialog {
  Q_OBJECT

 public:
  // ROW_LIMIT: that of the profile, 0 for none.
  CSaveTextFileDlg(const CWorkSheet& table, uint64_t row_limit, QWidget* parent = nullptr);

  TextSettingsBox& box() { return *box_; }
  QListWidget& field_list() { return *fields_; }
  // What was chosen, once the dialog has been accepted; the records are the caller's to choose.
  TextExport settings() const;

 public slots:
  void accept() override;

 private:
  QString problem() const;

  const CWorkSheet& table_;
  TextSettingsBox* box_;
  QListWidget* fields_;
  QCheckBox* files_;
  QCheckBox* long_texts_;
  QCheckBox* several_files_;
  QSpinBox* row_limit_;
  QLabel* problem_;
};

}  // namespace rowvane
