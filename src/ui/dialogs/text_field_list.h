// The columns of a text file as the open dialog lists them: the type and the dates of each.
#pragma once

#include <QTableWidget>

#include "core/work_sheet.h"
#include "exchange/text_file_settings.h"

namespace rowvane {

class CTextFieldList final : public QTableWidget {
  Q_OBJECT

 public:
  explicit CTextFieldList(QWidget* parent = nullptr);

  // Lists the fields of SAMPLE with the choices that SETTINGS hold.
  void show_fields(const CWorkSheet& sample, const TextFileSettings& settings);
  // Puts the choices into SETTINGS.
  void read_choices(TextFileSettings& settings) const;
};

}  // namespace rowvane
