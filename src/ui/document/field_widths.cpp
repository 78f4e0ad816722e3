#include "ui/document/field_widths.h"

#include <QFontMetrics>
#include <algorithm>

#include "platform/utf8.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kTextMargin = 14;
constexpr int kLeastFittedWidth = 40;
constexpr int kMostFittedWidth = 500;
constexpr size_t kMostCharacters = 120;

// The text of the column with the most characters: no other one is measured.
std::string longest_text(const CWorkSheet& table, size_t field) {
  std::string longest;
  size_t most = 0;
  const auto compare = [&](std::string_view text) {
    text = truncate_characters(text.substr(0, text.find('\n')), kMostCharacters);
    const size_t length = count_characters(text);
    if (length <= most) return;
    most = length;
    longest = text;
  };
  if (const auto* texts = std::get_if<TextColumn>(&table.column(field))) {
    for (size_t i = 0; i < texts->cells.size(); ++i) {
      if (texts->text(i).size() > most) compare(texts->text(i));
    }
  } else if (std::holds_alternative<NumberColumn>(table.column(field))) {
    for (RecordNumber record = 1; record < table.end_record(); ++record)
      compare(table.value_text(record, field));
  }
  return longest;
}

}  // namespace

void fit_field_widths(CWorkSheet& table, const QFont& font) {
  const QFontMetrics metrics(font);
  for (size_t i = 0; i < table.field_count(); ++i) {
    Field field = table.field(i);
    const int text = std::max(metrics.horizontalAdvance(to_qt(field.name)),
                              metrics.horizontalAdvance(to_qt(longest_text(table, i))));
    field.width = static_cast<uint16_t>(std::clamp(text + kTextMargin, kLeastFittedWidth, kMostFittedWidth));
    static_cast<void>(table.change_field(i, field));
  }
}

void fit_field_widths(Database& database, const QFont& font) {
  for (CWorkSheet* table : database.tables()) fit_field_widths(*table, font);
  database.undo_log().clear();
  database.mark_saved();
}

}  // namespace rowvane
