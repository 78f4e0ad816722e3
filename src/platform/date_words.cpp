#include "platform/date_words.h"

#include <map>
#include <memory>
#include <mutex>

#include "platform/characters.h"
#include "platform/utf8.h"

namespace rowvane::platform {
namespace {

constexpr std::string_view kEnglishMonths[] = {"January",   "February", "March",    "April",
                                               "May",       "June",     "July",     "August",
                                               "September", "October",  "November", "December"};
constexpr std::string_view kEnglishWeekdays[] = {"Monday", "Tuesday",  "Wednesday", "Thursday",
                                                 "Friday", "Saturday", "Sunday"};
constexpr size_t kShortName = 3;

// The form in which words are kept: folded, without points and blanks.
std::string key_of(std::string_view word) {
  std::string key;
  for (size_t position = 0; position < word.size();) {
    const char32_t c = next_character(word, position);
    const bool is_dropped = c == U'.' || c == U' ' || c == 0xA0 || c == 0x202F;
    if (!is_dropped) append_character(c, key);
  }
  return fold_case(key);
}

std::unique_ptr<DateWords> make_words(const std::string& locale) {
  auto words = std::make_unique<DateWords>();
  DateWordsBuilder builder(*words);
  add_words_of_locale(locale, builder);
  builder.add_english();
  return words;
}

const DateWords& shared_words_of(const std::string& locale) {
  static std::mutex mutex;
  static std::map<std::string, std::unique_ptr<DateWords>> by_locale;
  const std::lock_guard lock(mutex);
  std::unique_ptr<DateWords>& words = by_locale[locale];
  if (words == nullptr) words = make_words(locale);
  return *words;
}

}  // namespace

const DateWords& DateWords::of(const std::string& locale) {
  // Callers ask for the same locale once a cell; the lock is only for a change.
  thread_local std::string last_locale;
  thread_local const DateWords* last_words = nullptr;
  if (last_words == nullptr || last_locale != locale) {
    last_words = &shared_words_of(locale);
    last_locale = locale;
  }
  return *last_words;
}

DateWord DateWords::find(std::string_view word) const {
  const auto entry = words_.find(key_of(word));
  return entry == words_.end() ? DateWord{} : entry->second;
}

DateWord& DateWordsBuilder::entry(std::string_view name) {
  return words_.words_[key_of(name)];
}

void DateWordsBuilder::add_month(std::string_view name, int month) {
  DateWord& word = entry(name);
  if (word.month == 0) word.month = month;
}

void DateWordsBuilder::add_weekday(std::string_view name) {
  entry(name).is_weekday = true;
}

void DateWordsBuilder::add_half(std::string_view name, DayHalf half) {
  DateWord& word = entry(name);
  if (word.half == DayHalf::kNone) word.half = half;
}

void DateWordsBuilder::add_filler(std::string_view name) {
  entry(name).is_filler = true;
}

void DateWordsBuilder::add_english() {
  int month = 0;
  for (const std::string_view name : kEnglishMonths) {
    add_month(name, ++month);
    add_month(name.substr(0, kShortName), month);
  }
  add_month("Sept", 9);
  for (const std::string_view name : kEnglishWeekdays) {
    add_weekday(name);
    add_weekday(name.substr(0, kShortName));
  }
  for (const std::string_view name : {"Tues", "Thur", "Thurs"}) add_weekday(name);
  add_half("am", DayHalf::kMorning);
  add_half("pm", DayHalf::kAfternoon);
  for (const std::string_view name : {"of", "at"}) add_filler(name);
}

}  // namespace rowvane::platform
