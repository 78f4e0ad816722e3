// How a text file is opened, with a sample of it that follows the settings.
#pragma once

#include <QDialog>
#include <map>
#include <memory>
#include <optional>

#include "app/profile/profile_settings.h"
#include "recordset/search/criterion.h"
#include "recordset/search/recent_texts.h"
#include "ui/dialogs/sample_reader.h"
#include "ui/dialogs/text_field_list.h"
#include "ui/dialogs/text_settings_box.h"

class QCheckBox;
class QLabel;

namespace rowvane {

class Dialogs;

class COpenTextFileDlg final : public QDialog {
  Q_OBJECT

 public:
  // Begins with what the profile remembers of the last time. PROFILE and DIALOGS must outlive the dialog.
  COpenTextFileDlg(const QString& path, profile::Settings& profile, Dialogs& dialogs,
                   QWidget* parent = nullptr);

  // What was chosen, once the dialog has been accepted.
  const TextFileSettings& settings() const { return settings_; }
  bool fits_column_widths() const;
  // The search filters that the opened table begins with, by the number of the column, from 0.
  const std::map<size_t, Criterion>& filters() const { return filters_; }

  TextSettingsBox& box() { return *box_; }
  CTextFieldList& fields() { return *fields_; }
  bool is_reading() const { return reader_->is_reading(); }
  // What is wrong with the settings or the file; empty when nothing is.
  QString problem() const;
  // Shows SETTINGS, those of the columns included.
  void show_settings(const TextFileSettings& settings);

 public slots:
  void accept() override;

 private:
  QLayout* upper_part();
  QLayout* sample_part();
  // "Reload fields": reads the sample with the current settings.
  void reload();
  void show_sample(const TextImportResult& sample, const std::shared_ptr<const CWorkSheet>& table);
  // Nothing when the controls can't be read; the problem is shown then.
  std::optional<TextFileSettings> current_settings();
  void ask_about_fitting(bool on);
  // Of the chosen column.
  void set_filter();

  profile::Settings& profile_;
  Dialogs& dialogs_;
  TextFileSettings suggested_;  // by the content and the name of the file
  TextFileSettings settings_;
  std::shared_ptr<const CWorkSheet> sample_;
  std::map<size_t, Criterion> filters_;
  RecentFieldTexts recent_texts_;
  TextSettingsBox* box_;
  CTextFieldList* fields_;
  QCheckBox* fit_widths_;
  QLabel* problem_;
  SampleReader* reader_;
};

}  // namespace rowvane
