// Which records of a table are shown, and in which order.
#pragma once

#include <optional>
#include <string>

#include "core/messages/outcome.h"
#include "core/progress.h"
#include "recordset/search/current_criteria.h"
#include "recordset/sort/sort_keys.h"
#include "text/sort_options.h"
#include "ui/document/database_document.h"

namespace rowvane {

struct ShownRecords : Outcome {
  std::optional<RecordSet> records;  // nothing: all, in the order of entry; of no use unless it was done
};

// The filter and the sort keys of one table, for as long as it is open.
class TablePresentation {
 public:
  // Both must outlive this.
  TablePresentation(DatabaseDocument& document, const CWorkSheet& table)
      : document_(document), table_(table) {}

  bool is_filtered() const { return !document_.criteria().criteria(table_).empty(); }
  bool is_sorted() const { return !keys_of_sort_codes(sort_codes_).empty(); }

  // Also after the fields of the table have changed: codes of fields that are gone are dropped.
  SortCodes& sort_codes();
  const SortOptions& sort_options() const { return sort_options_; }
  // "Price, Name (descending)"; empty without keys.
  std::string sort_text() const;

  // Changes nothing; on any thread.
  ShownRecords work_out(Progress& progress) const;

 private:
  DatabaseDocument& document_;
  const CWorkSheet& table_;
  SortCodes sort_codes_;
  SortOptions sort_options_;
};

}  // namespace rowvane
