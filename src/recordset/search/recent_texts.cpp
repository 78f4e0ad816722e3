#include "recordset/search/recent_texts.h"

#include "core/limits.h"
#include "core/table/work_sheet.h"
#include "platform/characters.h"
#include "platform/utf8.h"

namespace rowvane {

void add_recent_text(std::vector<std::string>& texts, std::string_view text) {
  if (text.empty() || text.size() > kMaxBufferBytes || !is_valid_utf8(text)) return;
  std::string newest(text);  // TEXT may be one of TEXTS
  std::erase(texts, newest);
  texts.insert(texts.begin(), std::move(newest));
  if (texts.size() > kMaxRecentTexts) texts.resize(kMaxRecentTexts);
}

std::vector<RecentTextItem> recent_text_menu(std::span<const std::string> texts, std::string_view current) {
  std::vector<RecentTextItem> items;
  for (const std::string& text : texts.first(std::min(texts.size(), kMaxRecentTexts))) {
    items.push_back({text, text == current, true});
  }
  if (items.empty()) items.push_back({std::string(kNoRecentTexts), false, false});
  return items;
}

RecentFieldTexts::FieldName RecentFieldTexts::name_of(const CWorkSheet& table, size_t field) {
  return {platform::fold_case(table.path()), platform::fold_case(table.field(field).name)};
}

void RecentFieldTexts::add(const CWorkSheet& table, size_t field, std::string_view text) {
  add_recent_text(texts_[name_of(table, field)], text);
}

std::span<const std::string> RecentFieldTexts::texts(const CWorkSheet& table, size_t field) const {
  const auto found = texts_.find(name_of(table, field));
  return found == texts_.end() ? std::span<const std::string>() : std::span<const std::string>(found->second);
}

}  // namespace rowvane
