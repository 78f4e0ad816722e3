// The search while a text is being typed: `FindAsYouType`.
#pragma once

#include <memory>
#include <optional>

#include "recordset/find/find_text.h"

namespace rowvane {

// Follows the text from one keystroke to the next. A text that was typed on is looked for only in what the
// former one was found in, once that is known whole. Changes of the table between two calls are noticed.
class FindAsYouType {
 public:
  // TABLE is borrowed. RECORDS: those that are shown, or with `FindInResults` those found before. The pattern
  // of SETTINGS is not used.
  FindAsYouType(const CWorkSheet& table, RecordSet records, FindText settings);

  // Takes the present text; PATTERN must have passed check_find.
  void type(FindPattern pattern);

  // The first MOST records found from index START of the record set on, for a view to show at once.
  FoundRecords screenful(size_t start, size_t most, Progress& progress = Progress::none());
  // All records found; nothing where it was cancelled.
  FoundRecords all(Progress& progress = Progress::none());

 private:
  void follow_changes();
  // What was found among the candidates, with its places in the record set.
  FoundRecords in_record_set(FoundRecords found) const;

  const CWorkSheet& table_;
  RecordSet records_;
  FindText settings_;
  std::unique_ptr<TextFinder> finder_;      // of the present text; null until one is needed
  uint64_t revision_;                       // of the table, for which the following holds
  std::optional<FoundRecords> candidates_;  // where alone the present text can be; nothing: in all records
  std::optional<FoundRecords> all_;         // what it is found in
};

}  // namespace rowvane
