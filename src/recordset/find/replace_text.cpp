#include "recordset/find/replace_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "formula/fields/value_input.h"
#include "recordset/find/replacement.h"
#include "text/rich_text.h"

namespace rowvane {
namespace {

constexpr size_t kCellsPerReport = 4096;  // cells

// A text with all matches replaced.
struct NewText {
  std::string text;
  uint64_t matches = 0;
};

void count_refused(ErrorCode error, RefusedCells& refused) {
  if (error == ErrorCode::kOutputTooLong) {
    ++refused.too_long;
  } else if (error == ErrorCode::kValidation) {
    ++refused.invalid;
  } else if (error == ErrorCode::kFieldTypeMismatch) {
    ++refused.not_numeric;
  } else {
    ++refused.other;
  }
}

// Makes the new values of one field's cells.
class CellReplacer {
 public:
  CellReplacer(const CWorkSheet& table, size_t field, const ReplaceText& settings)
      : table_(table),
        field_(field),
        settings_(settings),
        texts_(table, settings.find.region),
        pattern_(settings.find.pattern),
        matcher_(table.field(field).type == FieldType::kLongText ? pattern_.long_text_matcher()
                                                                 : pattern_.matcher(true)),
        replacement_(settings.replacement, pattern_) {}

  // Why no cell of the field can be changed: the counter for it, or null.
  uint64_t* refused_field(RefusedCells& refused) const {
    const Field& field = table_.field(field_);
    if (!field.formula.empty()) return &refused.calculated;
    if (field.encrypted) return &refused.other;
    return field.type == FieldType::kFiles ? &refused.file_names : nullptr;
  }

  // The new value of the cell at POSITION. A MOST of 1 replaces one match, that at byte FROM or behind it.
  // Nothing where it stays as it is, which is counted where it had to.
  std::optional<CellValue> new_value(uint32_t position, ReplaceResult& result, size_t from = 0,
                                     uint64_t most = UINT64_MAX) {
    const ErrorCode error = texts_.read(position, field_, shown_);
    if (error != ErrorCode::kOk) {
      result.note(error);
      ++result.refused.unreadable;
      return std::nullopt;
    }
    NewText made = replaced(shown_, from, most);
    if (made.matches == 0 || made.text == shown_) return std::nullopt;
    auto value = value_of(position, made.text, result.refused);
    if (value) matches_ = made.matches;
    return value;
  }
  // The matches replaced in the last new value.
  uint64_t matches() const { return matches_; }
  // Where the replacement ends in it that was made last.
  size_t replacement_end() const { return replacement_end_; }
  const std::string& problem() const { return matcher_->problem(); }

 private:
  NewText replaced(std::string_view text, size_t from, uint64_t most) {
    NewText made;
    size_t copied = 0;
    while (from <= text.size() && made.matches < most && made.text.size() <= kMaxBinaryBytes) {
      const auto span = matcher_->find(text, from);
      if (!span) break;
      made.text += text.substr(copied, span->begin - copied);
      replacement_.append(text, *matcher_, made.text);
      replacement_end_ = made.text.size();
      copied = span->end;
      from = span->size() > 0 ? span->end : next_character_start(text, span->end);
      ++made.matches;
    }
    made.text += text.substr(copied);
    return made;
  }

  std::optional<CellValue> value_of(uint32_t position, const std::string& text, RefusedCells& refused) {
    const FieldType type = table_.field(field_).type;
    if (type == FieldType::kNumber) return number_of(position, text, refused);
    if (type == FieldType::kText) return entered(text, refused);
    return content_of(position, text, refused);
  }

  // The digits that are not shown would be lost where the text reads as another number.
  std::optional<CellValue> number_of(uint32_t position, const std::string& text, RefusedCells& refused) {
    const double former = std::get<NumberColumn>(table_.column(field_)).cells[position];
    const auto shown = read_field_value(table_.field(field_), shown_, settings_.region).number();
    if (shown && std::bit_cast<uint64_t>(*shown) == std::bit_cast<uint64_t>(former))
      return entered(text, refused);
    ++refused.not_numeric;
    return std::nullopt;
  }

  std::optional<CellValue> entered(std::string_view text, RefusedCells& refused) {
    ValueReading read = read_field_value(table_.field(field_), text, settings_.region);
    if (read.error == ErrorCode::kOk) return std::move(read.value);
    count_refused(read.error, refused);
    return std::nullopt;
  }

  std::optional<CellValue> content_of(uint32_t position, std::string_view text, RefusedCells& refused) {
    std::string stored;
    const Content* content = std::get<ContentColumn>(table_.column(field_)).value(position);
    const bool is_rich = table_.field(field_).type == FieldType::kLongText && content != nullptr &&
                         content->read(stored) == ErrorCode::kOk && is_rich_text(stored);
    if (is_rich) {
      ++refused.rich_text;
    } else if (text.size() > kMaxBinaryBytes) {
      ++refused.too_long;
    } else {
      return entered(text, refused);
    }
    return std::nullopt;
  }

  const CWorkSheet& table_;
  size_t field_;
  const ReplaceText& settings_;
  ShownTexts texts_;
  PreparedPattern pattern_;
  std::unique_ptr<TextMatcher> matcher_;
  Replacement replacement_;
  std::string shown_;
  uint64_t matches_ = 0;
  size_t replacement_end_ = 0;
};

// New values for cells of one field, put together until they are stored.
class NewCells {
 public:
  explicit NewCells(const CWorkSheet& table, size_t field) : cells_(make_column(table.field(field).type)) {}

  void add(uint32_t position, const CellValue& value, uint64_t matches) {
    resize_column(cells_, positions_.size() + 1);
    store_value(cells_, positions_.size(), value);
    positions_.push_back(position);
    matches_.push_back(matches);
  }
  // The same text as in the cell that was added as number INDEX.
  void add_again(uint32_t position, size_t index) {
    auto& texts = std::get<TextColumn>(cells_);
    const TextPool::Code code = texts.cells[index];
    texts.cells.push_back(code);
    positions_.push_back(position);
    matches_.push_back(matches_[index]);
  }
  size_t size() const { return positions_.size(); }

  void store(CWorkSheet& table, size_t field, ReplaceResult& result) {
    std::vector<RefusedValue> refused;
    const ErrorCode error = table.set_values(field, positions_, std::move(cells_), refused);
    if (error != ErrorCode::kOk) {
      result.refused.other += size();
      return;
    }
    size_t next = 0;
    for (size_t i = 0; i < size(); ++i) {
      if (next < refused.size() && refused[next].position == positions_[i]) {
        count_refused(refused[next++].error, result.refused);
      } else {
        ++result.cells;
        result.matches += matches_[i];
      }
    }
  }

 private:
  std::vector<uint32_t> positions_;
  std::vector<uint64_t> matches_;
  Column cells_;
};

// Replaces in one field. False when it was cancelled.
bool replace_in_field(CWorkSheet& table, size_t field, const ReplaceText& settings, const RecordSet& records,
                      Progress& progress, ReplaceResult& result) {
  FindText find = settings.find;
  find.fields = {field};
  const FoundRecords found = TextFinder(table, find).find(records, 0, TextFinder::kAll, progress);
  if (found.cancelled) return false;
  result.note(found.notices);
  CellReplacer replacer(table, field, settings);
  if (uint64_t* refused = replacer.refused_field(result.refused); refused != nullptr) {
    *refused += found.records.size();
    return true;
  }
  // A text is replaced once: the cell that had it first, or why there is none, by its code.
  const auto* texts = std::get_if<TextColumn>(&table.column(field));
  constexpr uint32_t kNew = UINT32_MAX;
  constexpr uint32_t kStays = kNew - 1;
  constexpr uint32_t kTooLong = kNew - 2;
  std::vector<uint32_t> first_cells(texts != nullptr ? texts->pool->size() : 0, kNew);
  NewCells cells(table, field);
  for (size_t i = 0; i < found.records.size(); ++i) {
    if (i % kCellsPerReport == 0) {
      progress.report(i, found.records.size());
      if (progress.cancelled()) return false;
    }
    const uint32_t position = found.records[i];
    uint32_t* const first = texts != nullptr ? &first_cells[texts->cells[position]] : nullptr;
    if (first != nullptr && *first != kNew) {
      if (*first == kTooLong) ++result.refused.too_long;
      if (*first < kTooLong) cells.add_again(position, *first);
      continue;
    }
    const uint64_t too_long = result.refused.too_long;
    const auto value = replacer.new_value(position, result);
    if (first != nullptr) {
      const uint32_t none = result.refused.too_long > too_long ? kTooLong : kStays;
      *first = value ? static_cast<uint32_t>(cells.size()) : none;
    }
    if (value) cells.add(position, *value, replacer.matches());
  }
  result.note(replacer.problem());
  cells.store(table, field, result);
  return true;
}

bool replace_in_table(CWorkSheet& table, const ReplaceText& settings, const RecordSet& records,
                      Progress& progress, ReplaceResult& result) {
  const std::vector<size_t> fields =
      settings.find.fields.empty() ? shown_fields(table) : settings.find.fields;
  return std::ranges::all_of(fields, [&](size_t field) {
    return replace_in_field(table, field, settings, records, progress, result);
  });
}

// Calls `replace` as one undo step, of which nothing stays when it answers that it was cancelled.
template <typename Replace>
ReplaceResult as_one_step(Database& database, const Replace& replace) {
  ReplaceResult result;
  ChangeGroup group(database, "Replace");
  if (!replace(result)) {
    group.roll_back();
    result = {};
    result.cancelled = true;
  }
  return result;
}

bool has_match(const CWorkSheet& table, FindText find, uint32_t position, size_t field) {
  find.fields = {field};
  return !TextFinder(table, find).matches_in(position).empty();
}

// Replaces the match at PLACE, in the record at POSITION. The byte of the new text at which the replacement
// ends.
size_t replace_in_cell(CWorkSheet& table, const ReplaceText& settings, uint32_t position,
                       const MatchPlace& place, ReplaceResult& result) {
  const size_t field = place.cell.field;
  CellReplacer replacer(table, field, settings);
  if (uint64_t* refused = replacer.refused_field(result.refused); refused != nullptr) {
    ++*refused;
    return 0;
  }
  const auto value = replacer.new_value(position, result, place.from, 1);
  if (!value) return 0;
  const ErrorCode error = table.set_value(record_number(position), field, *value);
  if (error == ErrorCode::kOk) {
    result.cells = result.matches = 1;
  } else {
    count_refused(error, result.refused);
  }
  return replacer.replacement_end();
}

std::string counted(uint64_t count, std::string_view one) {
  return std::to_string(count) + " " + std::string(one) +
         (count == 1            ? ""
          : one.ends_with("ch") ? "es"
                                : "s");
}

}  // namespace

Check check_replace(const CWorkSheet& table, const ReplaceText& settings) {
  Check check = check_find(table, settings.find);
  if (!check.passes()) return check;
  const auto is_encrypted = [&table](size_t field) { return table.field(field).encrypted; };
  if (std::ranges::any_of(settings.find.fields, is_encrypted)) {
    check.refusal = ErrorCode::kEncryptedField;
  } else {
    const PreparedPattern pattern(settings.find.pattern);
    check.refusal = Replacement(settings.replacement, pattern).problem();
  }
  return check;
}

std::string replace_report(const ReplaceResult& result) {
  const RefusedCells& refused = result.refused;
  std::string report =
      counted(result.matches, "match") + " replaced in " + counted(result.cells, "cell") + ".";
  const std::array<std::pair<uint64_t, std::string_view>, 8> reasons = {
      {{refused.not_numeric, "the text would not be a number or would lose digits"},
       {refused.too_long, "the text would be too long"},
       {refused.invalid, "the validation formula refuses the text"},
       {refused.calculated, "calculated"},
       {refused.rich_text, "formatted text"},
       {refused.file_names, "names of files"},
       {refused.unreadable, "not readable"},
       {refused.other, "can't be edited"}}};
  for (const auto& [count, reason] : reasons) {
    if (count > 0) report += "\n" + counted(count, "cell") + " not changed: " + std::string(reason) + ".";
  }
  return report;
}

ReplaceResult replace_all(CWorkSheet& table, const ReplaceText& settings, const RecordSet& records,
                          Progress& progress) {
  return as_one_step(*table.database(), [&](ReplaceResult& result) {
    return replace_in_table(table, settings, records, progress, result);
  });
}

ReplaceResult replace_in_all_tables(Database& database, const ReplaceText& settings, Progress& progress) {
  ReplaceText each = settings;
  each.find.fields.clear();
  return as_one_step(database, [&](ReplaceResult& result) {
    return std::ranges::all_of(database.tables(), [&](CWorkSheet* table) {
      return replace_in_table(*table, each, all_records(*table), progress, result);
    });
  });
}

ReplacedMatch replace_match(CWorkSheet& table, const ReplaceText& settings, const RecordSet& records,
                            const MatchPlace& place, bool find_next, Progress& progress) {
  ReplacedMatch replaced;
  const CellPlace& cell = place.cell;
  if (cell.index >= records.size() || cell.field >= table.field_count()) return replaced;
  const uint32_t position = records[cell.index];
  const bool matches = has_match(table, settings.find, position, cell.field);
  const size_t behind =
      matches ? replace_in_cell(table, settings, position, {cell, place.from}, replaced.result) : 0;
  if (!find_next) return replaced;
  TextFinder finder(table, settings.find);
  for (const CellMatches& found : finder.matches_in(position)) {
    if (found.field != cell.field || replaced.result.cells == 0) continue;
    for (const TextSpan& span : found.spans) {
      if (span.begin >= behind && !replaced.next) replaced.next = MatchPlace{cell, span.begin};
    }
  }
  if (!replaced.next) {
    const auto next = finder.find_next(records, cell, true, progress);
    if (next) replaced.next = MatchPlace{*next, 0};
  }
  return replaced;
}

}  // namespace rowvane
