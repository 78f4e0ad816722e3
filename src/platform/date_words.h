// The words of dates and times in the user's language and in English.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace rowvane::platform {

enum class DayHalf { kNone, kMorning, kAfternoon };

// One word can mean several things: the Spanish "mar" is a month and a weekday.
struct DateWord {
  int month = 0;  // 1 to 12, 0 for none
  DayHalf half = DayHalf::kNone;
  bool is_weekday = false;
  bool is_filler = false;  // stands in dates without a value: "de" in "3 de marzo de 2024"

  bool is_known() const { return month != 0 || half != DayHalf::kNone || is_weekday || is_filler; }
};

class DateWords {
 public:
  // The words of LOCALE ("de_DE"), made on first use and kept to the end of the program. For any thread.
  static const DateWords& of(const std::string& locale);

  // Takes words in any letter case, with points or without.
  DateWord find(std::string_view word) const;

 private:
  friend class DateWordsBuilder;

  std::unordered_map<std::string, DateWord> words_;
};

// Collects the words of one locale. What was added first keeps its meaning.
class DateWordsBuilder {
 public:
  explicit DateWordsBuilder(DateWords& words) : words_(words) {}

  void add_month(std::string_view name, int month);
  void add_weekday(std::string_view name);
  void add_half(std::string_view name, DayHalf half);
  void add_filler(std::string_view name);
  void add_english();

 private:
  DateWord& entry(std::string_view name);

  DateWords& words_;
};

// Adds the names that the system knows for LOCALE.
void add_words_of_locale(const std::string& locale, DateWordsBuilder& builder);

}  // namespace rowvane::platform
