#include "platform/regional_settings.h"

namespace rowvane::platform {

RegionalSettings RegionalSettings::generic() {
  return {.locale = "C",
          .decimal_separator = ".",
          .group_separator = "",
          .list_separator = ",",
          .date_separator = "-",
          .time_separator = ":",
          .currency_symbol = "",
          .date_order = DateOrder::kYearMonthDay};
}

}  // namespace rowvane::platform
