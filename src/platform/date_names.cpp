#include "platform/date_names.h"

namespace rowvane::platform {

DateNames DateNames::english() {
  DateNames names;
  names.months = {"January", "February", "March",     "April",   "May",      "June",
                  "July",    "August",   "September", "October", "November", "December"};
  names.weekdays = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
  names.lone_months = names.months;
  for (size_t i = 0; i < names.months.size(); ++i) names.short_months[i] = names.months[i].substr(0, 3);
  for (size_t i = 0; i < names.weekdays.size(); ++i) names.short_weekdays[i] = names.weekdays[i].substr(0, 3);
  return names;
}

}  // namespace rowvane::platform
