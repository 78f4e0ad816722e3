// The names of months, weekdays and halves of the day, for writing dates.
#pragma once

#include <array>
#include <string>

namespace rowvane::platform {

struct DateNames {
  std::array<std::string, 12> months;        // as they stand beside a day: "5 марта"
  std::array<std::string, 12> short_months;  // "Mar"
  std::array<std::string, 12> lone_months;   // as they stand alone: "март"
  std::array<std::string, 7> weekdays;       // from Sunday on
  std::array<std::string, 7> short_weekdays;
  std::string morning = "AM";
  std::string afternoon = "PM";

  static DateNames english();
  // Those of LOCALE ("de_DE"); English ones where the system knows none.
  static DateNames of(const std::string& locale);
};

}  // namespace rowvane::platform
