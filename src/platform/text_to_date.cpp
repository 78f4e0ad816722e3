#include "platform/text_to_date.h"

#include <array>
#include <chrono>

#include "platform/date_cursor.h"
#include "platform/date_words.h"

namespace rowvane::platform {
namespace {

constexpr size_t kLongestText = 100;
constexpr int kFirstYear = 100;
constexpr int kFirstTwoDigitYear = 30;  // 30 to 99 lie in the 1900s, 0 to 29 in the 2000s
constexpr double kSecondsInDay = 86400;

using Day = std::optional<int>;

constexpr std::optional<int> full_year(DateNumber year) {
  if (year.digits == 2) return year.value + (year.value < kFirstTwoDigitYear ? 2000 : 1900);
  if (year.digits < 2 || year.value < kFirstYear) return std::nullopt;
  return year.value;
}

Day day_number(DateNumber year_number, DateNumber month, DateNumber day) {
  using namespace std::chrono;
  constexpr sys_days kDayZero{1899y / December / 30};
  const std::optional<int> full = full_year(year_number);
  if (!full || month.digits > 2 || day.digits > 2) return std::nullopt;
  const year_month_day date(year(*full), std::chrono::month(static_cast<unsigned>(month.value)),
                            std::chrono::day(static_cast<unsigned>(day.value)));
  if (!date.ok()) return std::nullopt;
  return static_cast<int>((sys_days(date) - kDayZero).count());
}

Day day_in_order(DateOrder order, const std::array<DateNumber, 3>& numbers) {
  const auto& [first, second, third] = numbers;
  switch (order) {
    case DateOrder::kYearMonthDay:
      return day_number(first, second, third);
    case DateOrder::kDayMonthYear:
      return day_number(third, second, first);
    case DateOrder::kMonthDayYear:
      return day_number(third, first, second);
  }
  return std::nullopt;
}

// The user's order counts; another one only when the numbers make no date in it.
Day day_in_likely_order(DateOrder preferred, const std::array<DateNumber, 3>& numbers) {
  if (numbers[0].digits > 2) return day_in_order(DateOrder::kYearMonthDay, numbers);
  for (const DateOrder order :
       {preferred, DateOrder::kMonthDayYear, DateOrder::kDayMonthYear, DateOrder::kYearMonthDay}) {
    if (const Day day = day_in_order(order, numbers)) return day;
  }
  return std::nullopt;
}

bool is_ordinal_ending(std::string_view word) {
  return word == "st" || word == "nd" || word == "rd" || word == "th";
}

class DateReader {
 public:
  DateReader(std::string_view text, const RegionalSettings& settings) : cursor_(text), settings_(settings) {}

  std::optional<double> read() {
    cursor_.skip_blanks();
    const size_t start = cursor_.position();
    const std::string_view word = cursor_.read_word();
    if (!word.empty()) {
      const DateWord meaning = find(word);
      if (!meaning.is_known()) return std::nullopt;
      if (meaning.is_weekday) {
        skip_behind_weekday();
        if (const auto moment = read_moment()) return moment;
      }
      cursor_.go_back(start);
    }
    return read_moment();
  }

 private:
  // A date, a time, or both in either order, up to the end of the text.
  std::optional<double> read_moment() {
    const size_t start = cursor_.position();
    if (const std::optional<double> time = read_time(false)) {
      if (is_finished()) return time;
      skip_gap();
      if (const Day day = read_date(); day && is_finished()) return *day + *time;
    }
    cursor_.go_back(start);
    const Day day = read_date();
    if (!day) return std::nullopt;
    if (is_finished()) return *day;
    const bool has_t = is_iso_date_ && cursor_.accept('T');
    if (!has_t) skip_gap();
    const std::optional<double> time = read_time(true);
    if (has_t) cursor_.accept('Z');
    if (!time || !is_finished()) return std::nullopt;
    return *day + *time;
  }

  Day read_date() {
    const size_t start = cursor_.position();
    if (const Day day = read_numeric_date()) return day;
    cursor_.go_back(start);
    return read_worded_date();
  }

  // "1/2/2024", with the same separator twice.
  Day read_numeric_date() {
    std::array<DateNumber, 3> numbers;
    char separator = '\0';
    is_iso_date_ = false;
    for (size_t i = 0; i < numbers.size(); ++i) {
      const std::optional<DateNumber> number = cursor_.read_number(4);
      if (!number) return std::nullopt;
      numbers[i] = *number;
      if (i == 2) break;
      cursor_.skip_blanks();
      const char sign = accept_date_separator();
      if (sign == '\0' || (i == 1 && sign != separator)) return std::nullopt;
      separator = sign;
      cursor_.skip_blanks();
    }
    if (separator == '.') cursor_.accept('.');  // "2024. 3. 1." in Hungary and Korea
    is_iso_date_ = separator == '-' && numbers[0].digits == 4;
    return day_in_likely_order(settings_.date_order, numbers);
  }

  char accept_date_separator() {
    if (const char sign = cursor_.accept_any("/-."); sign != '\0') return sign;
    return settings_.date_separator.size() == 1 ? cursor_.accept_any(settings_.date_separator) : '\0';
  }

  // Three parts, one of which is a month's name; or "2024年3月1日", where words stand behind the numbers.
  Day read_worded_date() {
    std::array<DateNumber, 3> parts;
    size_t month_place = parts.size();
    int fillers = 0;
    for (size_t count = 0; count < parts.size(); ++count) {
      fillers += skip_separators_and_fillers(count > 0);
      if (const std::optional<DateNumber> number = read_numbered_part()) {
        parts[count] = *number;
      } else if (const int month = read_month(); month != 0 && month_place == parts.size()) {
        parts[count] = {month, 1};
        month_place = count;
      } else {
        return std::nullopt;
      }
    }
    cursor_.accept('.');
    fillers += skip_fillers();
    return worded_day(parts, month_place, fillers);
  }

  static Day worded_day(const std::array<DateNumber, 3>& parts, size_t month_place, int fillers) {
    const bool is_year_first = parts[0].digits > 2;
    if (month_place == 0) return day_in_order(DateOrder::kMonthDayYear, parts);
    if (month_place == 1) {
      return day_in_order(is_year_first ? DateOrder::kYearMonthDay : DateOrder::kDayMonthYear, parts);
    }
    if (month_place == 3 && is_year_first && fillers >= 2)
      return day_in_order(DateOrder::kYearMonthDay, parts);
    return std::nullopt;
  }

  // A number with or without an English ordinal ending.
  std::optional<DateNumber> read_numbered_part() {
    const std::optional<DateNumber> number = cursor_.read_number(4);
    const size_t behind = cursor_.position();
    if (number && !is_ordinal_ending(cursor_.read_word())) cursor_.go_back(behind);
    return number;
  }

  int read_month() {
    const std::string_view word = cursor_.read_word();
    return word.empty() ? 0 : find(word).month;
  }

  int skip_separators_and_fillers(bool behind_part) {
    cursor_.skip_blanks();
    if (behind_part) {
      cursor_.accept('.');
      cursor_.accept_any(",-/");
    }
    return skip_fillers();
  }

  // Answers how many words were stepped over.
  int skip_fillers() {
    for (int count = 0;; ++count) {
      cursor_.skip_blanks();
      const size_t start = cursor_.position();
      const std::string_view word = cursor_.read_word();
      if (word.empty()) return count;
      if (const DateWord meaning = find(word); !meaning.is_filler || meaning.month != 0) {
        cursor_.go_back(start);
        return count;
      }
      cursor_.accept('.');
    }
  }

  void skip_behind_weekday() {
    cursor_.accept('.');
    cursor_.accept(',');
    cursor_.skip_blanks();
  }

  // What stands between a date and a time.
  void skip_gap() {
    cursor_.skip_blanks();
    cursor_.accept(',');
    skip_fillers();
  }

  // The fraction of the day. A point between hours and minutes is read only behind a date.
  std::optional<double> read_time(bool behind_date) {
    DayHalf half = read_half();
    const bool has_half_before = half != DayHalf::kNone;
    cursor_.skip_blanks();
    const std::optional<DateNumber> hour = cursor_.read_number(2);
    if (!hour) return std::nullopt;
    const std::optional<double> rest = read_minutes_and_seconds(behind_date);
    if (!rest) return std::nullopt;
    const bool has_minutes = *rest >= 0;
    if (!has_half_before) half = read_half();
    const std::optional<int> hours = full_hour(hour->value, half);
    if (!hours || (!has_minutes && half == DayHalf::kNone)) return std::nullopt;
    return (*hours * 3600 + (has_minutes ? *rest : 0)) / kSecondsInDay;
  }

  static std::optional<int> full_hour(int hour, DayHalf half) {
    if (half == DayHalf::kNone) return hour < 24 ? std::optional(hour) : std::nullopt;
    if (hour > 12) return std::nullopt;
    return hour % 12 + (half == DayHalf::kAfternoon ? 12 : 0);
  }

  // The seconds behind the full hour, -1 when only the hour is written, nothing when they are wrong.
  std::optional<double> read_minutes_and_seconds(bool behind_date) {
    const char separator = accept_time_separator(behind_date);
    if (separator == '\0') return -1;
    const std::optional<DateNumber> minutes = cursor_.read_number(2);
    if (!minutes || minutes->value > 59) return std::nullopt;
    double seconds = minutes->value * 60;
    if (!cursor_.accept(separator)) return seconds;
    const std::optional<DateNumber> whole = cursor_.read_number(2);
    if (!whole || whole->value > 59) return std::nullopt;
    seconds += whole->value;
    if (cursor_.accept_any(".,") == '\0') return seconds;
    const std::optional<double> fraction = cursor_.read_fraction();
    if (!fraction) return std::nullopt;
    return seconds + *fraction;
  }

  char accept_time_separator(bool behind_date) {
    if (cursor_.accept(':')) return ':';
    const bool takes_point = behind_date && settings_.time_separator == ".";
    return takes_point && cursor_.accept('.') ? '.' : '\0';
  }

  // A word for one half of the day, if there is one at the cursor; "a. m." too.
  DayHalf read_half() {
    const size_t start = cursor_.position();
    cursor_.skip_blanks();
    const std::string_view word = cursor_.read_word();
    DayHalf half = word.empty() ? DayHalf::kNone : find(word).half;
    if (half == DayHalf::kNone && (word == "a" || word == "p") && cursor_.accept('.')) {
      cursor_.skip_blanks();
      if (cursor_.accept('m')) half = word == "a" ? DayHalf::kMorning : DayHalf::kAfternoon;
    }
    if (half == DayHalf::kNone) {
      cursor_.go_back(start);
    } else {
      cursor_.accept('.');
    }
    return half;
  }

  bool is_finished() {
    const size_t start = cursor_.position();
    cursor_.skip_blanks();
    if (cursor_.at_end()) return true;
    cursor_.go_back(start);
    return false;
  }

  DateWord find(std::string_view word) const { return DateWords::of(settings_.locale).find(word); }

  DateCursor cursor_;
  const RegionalSettings& settings_;
  bool is_iso_date_ = false;
};

}  // namespace

std::optional<double> text_to_date(std::string_view text, const RegionalSettings& settings) {
  if (text.size() > kLongestText || text.find_first_of("0123456789") == std::string_view::npos) {
    return std::nullopt;
  }
  return DateReader(text, settings).read();
}

}  // namespace rowvane::platform
