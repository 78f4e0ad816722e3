// Moments and lengths of time by a section of a format code.
#include <chrono>
#include <cmath>

#include "core/values/date_text.h"
#include "formula/formats/format_writer.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

constexpr int64_t kSecondsInDay = 86'400;
constexpr double kMostElapsedDays = 1e9;
constexpr std::chrono::sys_days kDayZero{std::chrono::year{1899} / 12 / 30};

void append_padded(int64_t number, size_t width, std::string& out) {
  const std::string digits = std::to_string(number);
  if (digits.size() < width) out.append(width - digits.size(), '0');
  out += digits;
}

class DateWriter {
 public:
  // MOMENT is rounded to the last place of the second that is shown.
  DateWriter(FormatOutput& output, double moment) : output_(output), out_(output.out) {
    for (int i = 0; i < output.section.subsecond_places; ++i) units_ *= 10;
    const double whole = std::floor(moment);
    auto day = static_cast<int64_t>(whole);
    const int64_t units_in_day = kSecondsInDay * units_;
    int64_t time = std::llround((moment - whole) * static_cast<double>(units_in_day));
    if (time >= units_in_day) {
      time -= units_in_day;
      ++day;
    }
    subsecond_ = time % units_;
    second_of_day_ = time / units_;
    elapsed_ = day * kSecondsInDay + second_of_day_;
    is_in_calendar_ = static_cast<double>(day) >= kFirstDay && static_cast<double>(day) < kBehindLastDay;
    const std::chrono::sys_days date = kDayZero + std::chrono::days(is_in_calendar_ ? day : 0);
    weekday_ = std::chrono::weekday(date).c_encoding();
    date_ = std::chrono::year_month_day(date);
  }

  // A length of time needs no date.
  bool is_shown() const {
    return is_in_calendar_ || (output_.section.elapsed && !output_.section.has_calendar_part);
  }

  void write() {
    for (const FormatPart& part : output_.section.parts) {
      if (!output_.append_fixed(part)) write_part(part);
    }
  }

 private:
  void write_part(const FormatPart& part) {
    const int64_t hour = second_of_day_ / 3600;
    switch (part.kind) {
      case FormatPartKind::kYear:
        return write_year(part.width);
      case FormatPartKind::kMonth:
        return write_month(part.width);
      case FormatPartKind::kDay:
        return write_day(part.width);
      case FormatPartKind::kHour:
        return write_number(output_.section.has_half ? (hour + 11) % 12 + 1 : hour, part.width);
      case FormatPartKind::kMinute:
        return write_number(second_of_day_ / 60 % 60, part.width);
      case FormatPartKind::kSecond:
        return write_number(second_of_day_ % 60, part.width);
      case FormatPartKind::kSubsecond:
        return write_subsecond(part.width);
      case FormatPartKind::kHalf:
        return write_half(hour, part.sign != 0);
      case FormatPartKind::kElapsedHours:
        return append_padded(elapsed_ / 3600, part.width, out_);
      case FormatPartKind::kElapsedMinutes:
        return append_padded(elapsed_ / 60, part.width, out_);
      case FormatPartKind::kElapsedSeconds:
        return append_padded(elapsed_, part.width, out_);
      default:
        return;
    }
  }

  void write_number(int64_t number, size_t width) { append_padded(number, width > 1 ? 2 : 1, out_); }

  void write_year(size_t width) {
    const int year = static_cast<int>(date_.year());
    append_padded(width > 2 ? year : year % 100, width > 2 ? 4 : 2, out_);
  }

  void write_month(size_t width) {
    const unsigned month = static_cast<unsigned>(date_.month());
    const platform::DateNames& names = output_.region.names;
    if (width <= 2) return write_number(month, width);
    if (width == 3) {
      out_ += names.short_months[month - 1];
    } else if (width == 4) {
      out_ += output_.section.has_day ? names.months[month - 1] : names.lone_months[month - 1];
    } else {
      const std::string& name = names.lone_months[month - 1];
      size_t end = 0;
      if (!name.empty()) next_character(name, end);
      out_.append(name, 0, end);
    }
  }

  void write_day(size_t width) {
    if (width <= 2) return write_number(static_cast<unsigned>(date_.day()), width);
    out_ +=
        width == 3 ? output_.region.names.short_weekdays[weekday_] : output_.region.names.weekdays[weekday_];
  }

  // The section may hold a longer fraction than this one.
  void write_subsecond(size_t width) {
    int64_t fraction = subsecond_;
    for (size_t places = output_.section.subsecond_places; places > width; --places) fraction /= 10;
    append_padded(fraction, width, out_);
  }

  void write_half(int64_t hour, bool one_letter) {
    if (one_letter) {
      out_ += hour < 12 ? 'A' : 'P';
    } else {
      out_ += hour < 12 ? output_.region.names.morning : output_.region.names.afternoon;
    }
  }

  FormatOutput& output_;
  std::string& out_;
  int64_t units_ = 1;  // in a second
  int64_t subsecond_ = 0;
  int64_t second_of_day_ = 0;
  int64_t elapsed_ = 0;  // in seconds
  bool is_in_calendar_ = false;
  unsigned weekday_ = 0;  // from Sunday on
  std::chrono::year_month_day date_{};
};

}  // namespace

bool write_date(FormatOutput& output, double number) {
  const bool elapsed = output.section.elapsed;
  const double moment = elapsed ? std::abs(number) : number;
  if (elapsed ? moment >= kMostElapsedDays : moment < kFirstDay || moment >= kBehindLastDay) return false;
  DateWriter writer(output, moment);
  if (!writer.is_shown()) return false;
  if (elapsed && number < 0 && output.section.shows_sign) output.out += '-';
  writer.write();
  return true;
}

}  // namespace rowvane
