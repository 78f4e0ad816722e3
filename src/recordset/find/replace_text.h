// Replacing what the Find toolbar finds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/regional_settings.h"
#include "recordset/find/find_text.h"

namespace rowvane {

struct ReplaceText {
  FindText find;
  std::string replacement;  // see replacement.h
  // The signs by which new texts are read as values (read_field_value); those of `find.region` belong to it.
  platform::RegionalSettings region = platform::RegionalSettings::generic();
};

// The refusals and notices of check_find; a refusal also for a replacement that names a group which is not
// there, and error 137 where one of the named fields is encrypted. Without named fields encrypted ones are
// passed over.
Check check_replace(const CWorkSheet& table, const ReplaceText& settings);

// Cells that have a match and were left as they are, by the reason.
struct RefusedCells {
  uint64_t not_numeric =
      0;                    // the text would not read as a number, or digits that are not shown would be lost
  uint64_t too_long = 0;    // for a text of at most 8169 characters, or a long text of 2 GB
  uint64_t invalid = 0;     // against the validation formula
  uint64_t calculated = 0;  // of fields with a formula
  uint64_t rich_text = 0;   // long texts with formatting, which the shown text says nothing about
  uint64_t file_names = 0;  // of images and files
  uint64_t unreadable = 0;  // long texts that could be read no more
  uint64_t other = 0;

  uint64_t total() const {
    return not_numeric + too_long + invalid + calculated + rich_text + file_names + unreadable + other;
  }
  bool operator==(const RefusedCells&) const = default;
};

// Notices as of FoundRecords. Where it was cancelled, nothing was changed.
struct ReplaceResult : Outcome {
  uint64_t cells = 0;    // that were changed
  uint64_t matches = 0;  // that were replaced in them
  RefusedCells refused;
};

// "3 matches replaced in 2 cells." and, below, what was refused and why.
std::string replace_report(const ReplaceResult& result);

// Replaces all matches in RECORDS, positions that are there once each, as one undo step. TABLE must belong to
// a database and SETTINGS have passed check_replace. A cell whose text would stay the same does not count.
ReplaceResult replace_all(CWorkSheet& table, const ReplaceText& settings, const RecordSet& records,
                          Progress& progress = Progress::none());
// The same in all records of all tables; the settings' fields are not looked at: all shown ones are.
ReplaceResult replace_in_all_tables(Database& database, const ReplaceText& settings,
                                    Progress& progress = Progress::none());

// A match that is replaced alone.
struct MatchPlace {
  CellPlace cell;
  size_t from = 0;  // the first match that begins at this byte of the shown text or behind it
};
struct ReplacedMatch {
  ReplaceResult result;
  // `ReplaceAndFindNext`: the match that follows, the last one being followed by the first; nothing when
  // there is none.
  std::optional<MatchPlace> next;
};
// Replaces one match of the record set and, where FIND_NEXT, looks for the following one. Without a match at
// the place, which may have changed meanwhile, it changes nothing and only looks on.
ReplacedMatch replace_match(CWorkSheet& table, const ReplaceText& settings, const RecordSet& records,
                            const MatchPlace& place, bool find_next, Progress& progress = Progress::none());

}  // namespace rowvane
