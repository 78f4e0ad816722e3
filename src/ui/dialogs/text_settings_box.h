// The controls for text files that the dialogs for opening and saving one share.
#pragma once

#include <QWidget>

#include "exchange/text/text_settings_dialog.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLineEdit;

namespace rowvane {

class TextSettingsBox final : public QWidget {
  Q_OBJECT

 public:
  enum class Use { kOpen, kSave };
  explicit TextSettingsBox(Use use, QWidget* parent = nullptr);

  void show_settings(const TextFileSettings& settings);
  TextSettingsControls controls() const;

 signals:
  void changed();

 private:
  void add_separator_row(QGridLayout& layout);
  void add_encoding_rows(QGridLayout& layout);
  void add_options(QGridLayout& layout);
  void enable_controls();

  Use use_;
  QComboBox* separator_;
  QLineEdit* other_separator_;
  QCheckBox* fixed_widths_;
  QLineEdit* widths_;
  QCheckBox* quoting_;
  QLineEdit* quoting_symbol_;
  QComboBox* encoding_;
  QComboBox* code_page_;
  QCheckBox* field_names_;
  QCheckBox* analyze_;
  QCheckBox* convert_dates_;
};

}  // namespace rowvane
