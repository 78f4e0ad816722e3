// How a text file is opened, with a sample of it that follows the settings.
#pragma once

#include <QDialog>
#include <memory>

#include "exchange/text_import.h"
#include "ui/dialogs/text_field_list.h"
#include "ui/dialogs/text_settings_box.h"

class QLabel;
class QTableWidget;

namespace rowvane {

class COpenTextFileDlg final : public QDialog {
  Q_OBJECT

 public:
  explicit COpenTextFileDlg(const QString& path, QWidget* parent = nullptr);

  // What was chosen, once the dialog has been accepted.
  const TextFileSettings& settings() const { return settings_; }
  TextSettingsBox& box() { return *box_; }
  CTextFieldList& fields() { return *fields_; }
  const QTableWidget& sample() const { return *sample_; }
  // What is wrong with the settings; empty when nothing is.
  QString problem() const;

 public slots:
  void accept() override;

 private:
  // "Reload fields": reads the sample with the current settings.
  void reload();

  std::string path_;
  TextFileSettings settings_;
  TextSettingsBox* box_;
  CTextFieldList* fields_;
  QTableWidget* sample_;
  QLabel* problem_;
};

}  // namespace rowvane
