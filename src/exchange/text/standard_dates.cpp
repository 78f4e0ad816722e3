#include "exchange/text/standard_dates.h"

#include <algorithm>

#include "core/database/database.h"
#include "core/values/date_text.h"
#include "platform/text_to_date.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

constexpr size_t kMaxDateCharacters = 30;
constexpr uint32_t kReportEvery = 4096;  // records

// The standard date strings of one field's distinct texts, each worked out when it is first met.
class DateTexts {
 public:
  DateTexts(const TextColumn& column, const platform::RegionalSettings& region)
      : column_(column), region_(region), dates_(column.pool->size()) {}

  // Null where the cell at POSITION holds no date.
  const std::string* at(uint32_t position) {
    Date& date = dates_[column_.cells[position]];
    if (!date.is_known) {
      date.text = standard_date_of(column_.text(position), region_);
      date.is_known = true;
    }
    return date.text ? &*date.text : nullptr;
  }

 private:
  struct Date {
    bool is_known = false;
    std::optional<std::string> text;
  };

  const TextColumn& column_;
  const platform::RegionalSettings& region_;
  std::vector<Date> dates_;
};

// False when it was cancelled.
bool convert_field(CWorkSheet& table, size_t field, const platform::RegionalSettings& region,
                   Progress& progress, DateConversionResult& result) {
  const auto& column = std::get<TextColumn>(table.column(field));
  DateTexts dates(column, region);
  std::vector<uint32_t> positions;
  TextColumn changed;
  for (uint32_t i = 0; i < table.record_count(); ++i) {
    if (i % kReportEvery == 0) {
      progress.report(i, table.record_count());
      if (progress.cancelled()) return false;
    }
    if (column.cells[i] == 0) continue;
    const std::string* const date = dates.at(i);
    ++(date != nullptr ? result.converted : result.other_texts);
    if (date == nullptr || *date == column.text(i)) continue;
    positions.push_back(i);
    changed.cells.push_back(changed.code_for(*date));
  }
  if (positions.empty()) return true;
  std::vector<RefusedValue> refused;
  static_cast<void>(table.set_values(field, std::move(positions), std::move(changed), refused));
  result.converted -= refused.size();
  result.other_texts += refused.size();
  return true;
}

}  // namespace

std::optional<std::string> standard_date_of(std::string_view text, const platform::RegionalSettings& region) {
  const auto day = platform::text_to_date(truncate_characters(text, kMaxDateCharacters), region);
  return day ? std::optional(standard_date_text(*day)) : std::nullopt;
}

Check check_date_conversion(const CWorkSheet& table, const DateConversionSettings& settings) {
  for (const size_t index : settings.fields) {
    const Field& field = table.field(index);
    if (field.encrypted) return ErrorCode::kEncryptedField;
    if (field.type != FieldType::kText || !field.formula.empty()) return ErrorCode::kConversionRule;
  }
  return {};
}

DateConversionResult convert_to_standard_dates(Database& database, CWorkSheet& table,
                                               const DateConversionSettings& settings, Progress& progress) {
  DateConversionResult result;
  ChangeGroup step(database, "Text To Standard Date String");
  progress.begin("Text To Standard Date String");
  const bool done = std::ranges::all_of(settings.fields, [&](size_t field) {
    return convert_field(table, field, settings.region, progress, result);
  });
  if (!done) {
    step.roll_back();
    result = {};
    result.cancelled = true;
  }
  return result;
}

}  // namespace rowvane
