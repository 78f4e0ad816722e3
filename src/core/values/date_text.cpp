#include "core/values/date_text.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace rowvane {

std::string standard_date_text(double day) {
  constexpr int64_t kSecondsPerDay = 86'400;
  constexpr std::chrono::sys_days kDayZero = std::chrono::year{1899} / 12 / 30;
  const auto seconds = static_cast<int64_t>(std::llround(day * static_cast<double>(kSecondsPerDay)));
  const int64_t days =
      seconds >= 0 ? seconds / kSecondsPerDay : -((-seconds + kSecondsPerDay - 1) / kSecondsPerDay);
  const auto time = static_cast<int>(seconds - days * kSecondsPerDay);
  const std::chrono::year_month_day date(kDayZero + std::chrono::days(days));
  char text[40];
  int length = std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                             static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  if (time != 0) {
    length += std::snprintf(text + length, sizeof text - static_cast<size_t>(length), "T%02d:%02d:%02d",
                            time / 3600, time / 60 % 60, time % 60);
  }
  return {text, static_cast<size_t>(length)};
}

}  // namespace rowvane
