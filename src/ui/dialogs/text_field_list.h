// The columns of a text file as the open dialog lists them: the type and the dates of each, over a sample.
#pragma once

#include <QTableView>
#include <memory>

#include "core/table/work_sheet.h"
#include "exchange/text/text_file_settings.h"

namespace rowvane {

class TextColumnsModel;
class TextSampleModel;

// Two tables that scroll as one: what is chosen for each column, and below it the sample. Nothing is made for
// a column before it is painted, so that 16,384 of them are no work.
class CTextFieldList final : public QWidget {
  Q_OBJECT

 public:
  using ColumnOptions = decltype(TextFileSettings::column_options);

  explicit CTextFieldList(QWidget* parent = nullptr);

  // Lists the fields of SAMPLE, which must not be null. What is chosen for a column stays, also for columns
  // that the sample does not have.
  void show_sample(std::shared_ptr<const CWorkSheet> sample);
  void clear_sample();

  const ColumnOptions& column_options() const;
  void set_column_options(const ColumnOptions& options);

  // Rows: the type (a combo box), and "Parse Dates" (a check box).
  QTableView& choices() { return *choices_; }
  QTableView& sample() { return *sample_; }
  enum ChoiceRow { kTypeRow, kDatesRow, kChoiceRows };

 signals:
  void changed();

 private:
  void fit_columns();
  void align_headers();

  TextColumnsModel* columns_;
  TextSampleModel* records_;
  QTableView* choices_;
  QTableView* sample_;
};

}  // namespace rowvane
