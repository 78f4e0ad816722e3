// The options of the program.
#pragma once

#include <QDialog>

#include "app/profile/profile_settings.h"

class QCheckBox;
class QFormLayout;
class QLineEdit;
class QSpinBox;
class QTabWidget;

namespace rowvane {

class Dialogs;

class COptionsDlg final : public QDialog {
  Q_OBJECT

 public:
  // SETTINGS and DIALOGS must outlive the dialog.
  COptionsDlg(profile::Settings& settings, Dialogs& dialogs, QWidget* parent = nullptr);

 public slots:
  // Gives the options to SETTINGS; stays open after telling the user why it can't.
  void accept() override;

 private:
  QFormLayout& add_page(const QString& title);
  void add_general_page();
  void add_table_page();
  void add_file_page();
  // A control for one option, which it changes in `entered_`.
  QCheckBox* add_flag(QFormLayout& page, const QString& text, bool& option);
  // AT_LEAST: what the box says instead of the smallest number; empty for the number.
  QSpinBox* add_number(QFormLayout& page, const QString& text, int& option, const QString& suffix = {},
                       const QString& at_least = {});
  void add_font(QFormLayout& page, profile::Font& font);

  profile::Settings& settings_;
  Dialogs& dialogs_;
  profile::Settings entered_;
  QTabWidget* pages_;
  QLineEdit* extensions_ = nullptr;
};

}  // namespace rowvane
