// The text search of the Find toolbar: records, cells and places in them whose shown text has a match.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/database/database.h"
#include "core/messages/check.h"
#include "core/messages/outcome.h"
#include "core/progress.h"
#include "recordset/find/shown_texts.h"
#include "recordset/record_set.h"
#include "text/text_matcher.h"

namespace rowvane {

struct FindText {
  FindPattern pattern;
  // Fields that are looked at, in the order in which their cells are gone through; empty: shown_fields.
  // Encrypted fields have nothing that could be found.
  std::vector<size_t> fields;
  // `FindInNotes`. Records have no notes yet: nothing more is found with it.
  bool in_notes = false;
  int threads = 0;  // 1 to 16; 0: as many as the machine has
  DisplayRegion region;
};

// The refusals of check_pattern; texts::kNoRegexInLongTexts as a notice where a long text is looked at.
Check check_find(const CWorkSheet& table, const FindText& settings);

// Notices: of long texts that can't be read, which count as ones without a match, and of matches that a
// regular expression gave up.
struct FoundRecords : Outcome {
  RecordSet records;              // in display order
  std::vector<uint32_t> indices;  // of `records` in the searched record set, ascending
  size_t next = 0;                // index into the searched record set, behind the last record looked at
};

// A cell of a record set.
struct CellPlace {
  size_t index = 0;  // of the record in the record set
  size_t field = 0;

  bool operator==(const CellPlace&) const = default;
};

struct CellMatches {
  size_t field = 0;
  std::string text;             // as it is shown
  std::vector<TextSpan> spans;  // in `text`

  bool operator==(const CellMatches&) const = default;
};

// Looks for one pattern in one table, which must not change meanwhile. What it has learned about a text or a
// value it keeps: a distinct text is matched once, when the first record that has it is looked at. One thread
// at a time calls it; it works with as many as the settings say.
class TextFinder {
 public:
  static constexpr size_t kAll = std::numeric_limits<size_t>::max();

  // SETTINGS must have passed check_find.
  TextFinder(const CWorkSheet& table, FindText settings);
  ~TextFinder();

  const FindText& settings() const { return settings_; }

  // The first MOST records with a match in any field from index START of RECORDS on. Reports records.
  FoundRecords find(const RecordSet& records, size_t start = 0, size_t most = kAll,
                    Progress& progress = Progress::none());

  // The cell with a match that follows FROM, or comes before it, row by row in the order of the fields;
  // behind the last cell comes the first one, so that a single match is found from itself. Nothing when there
  // is none and when it was cancelled. Where FROM's field is not looked at, it stands before the first.
  std::optional<CellPlace> find_next(const RecordSet& records, CellPlace from, bool forward = true,
                                     Progress& progress = Progress::none());

  // The cells of the record at POSITION that have a match, in the order of the fields.
  std::vector<CellMatches> matches_in(uint32_t position);

 private:
  class FieldSearch;
  struct Worker;
  struct Scan;

  // Indices into RECORDS from BEGIN to END, END not included, of the records with a match, ascending.
  std::vector<uint32_t> scan(const RecordSet& records, size_t first, size_t end, Progress& progress);
  void scan_part(Scan& scan, Worker& worker, size_t first, size_t end);
  std::optional<size_t> nearest(const RecordSet& records, size_t first, size_t end, bool forward,
                                Progress& progress);
  void take_problems(FoundRecords& found);

  FindText settings_;
  PreparedPattern pattern_;
  bool finds_empty_;  // empty cells match
  ShownTexts texts_;
  std::vector<size_t> fields_;
  std::vector<std::unique_ptr<FieldSearch>> searches_;  // of the fields
  std::vector<std::unique_ptr<Worker>> workers_;        // a thread each
};

struct TableFound {
  CWorkSheet* table = nullptr;
  FoundRecords found;
};
// `FindInAllTables`: the tables that have records with a match, in the order of the database. The settings'
// fields are not looked at: all shown ones are. Ends with the table in which it was cancelled.
std::vector<TableFound> find_in_all_tables(const Database& database, const FindText& settings,
                                           Progress& progress = Progress::none());

}  // namespace rowvane
