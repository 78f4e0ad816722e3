// The texts that were searched for last, offered again in menus.
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rowvane {

class CWorkSheet;

inline constexpr size_t kMaxRecentTexts = 16;
inline constexpr std::string_view kNoRecentTexts = "(empty)";

// Puts TEXT at the front of TEXTS, newest first, where an equal one goes away, and drops what is beyond
// kMaxRecentTexts. Nothing is done for an empty text and for one that the settings profile can't keep: broken
// UTF-8, or more than kMaxBufferBytes. Serves `RecentFindStrings` and `RecentReplaceStrings` as well.
void add_recent_text(std::vector<std::string>& texts, std::string_view text);

// An entry of the menu that offers them.
struct RecentTextItem {
  std::string text;
  bool checked = false;  // equals the current text
  bool enabled = true;   // false for "(empty)"

  bool operator==(const RecentTextItem&) const = default;
};
// "(empty)" alone where there are none.
std::vector<RecentTextItem> recent_text_menu(std::span<const std::string> texts, std::string_view current);

// The recent search texts of each field while the database is open; fields go by their names.
class RecentFieldTexts {
 public:
  void add(const CWorkSheet& table, size_t field, std::string_view text);
  // Newest first; valid until the next `add`.
  std::span<const std::string> texts(const CWorkSheet& table, size_t field) const;

 private:
  using FieldName = std::pair<std::string, std::string>;  // folded path of the table and name of the field
  static FieldName name_of(const CWorkSheet& table, size_t field);

  std::map<FieldName, std::vector<std::string>> texts_;
};

}  // namespace rowvane
