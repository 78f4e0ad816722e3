#include "platform/text_to_date.h"

#include <cmath>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <windows.h>
// Needs windows.h before it.
#include <oleauto.h>

#include "platform/windows/locale.h"
#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

constexpr double kMarchFirst = 45352;    // 2024-03-01
constexpr double kChristmasDay = 45651;  // 2024-12-25
constexpr std::nullopt_t kNoDate = std::nullopt;

enum class System {
  kAgrees,
  kRefuses,       // the program reads more than the system
  kReadsAnother,  // another date, or a date where the program sees none
};

struct OwnDateCase {
  const char* locale;
  const char* text;
  std::optional<double> expected;  // of the program, on both systems
  System system;
};

std::optional<double> date_of_system(const std::string& text, const std::string& locale) {
  std::wstring wide = to_wide(text);
  double date = 0;
  const LCID id = ::LocaleNameToLCID(system_locale_of(parse_locale_name(locale)).c_str(), 0);
  const HRESULT result = ::VarDateFromStr(wide.data(), id, LOCALE_NOUSEROVERRIDE, &date);
  return SUCCEEDED(result) ? std::optional(date) : std::nullopt;
}

bool is_near(std::optional<double> a, std::optional<double> b) {
  return a && b ? std::abs(*a - *b) < 1e-9 : a.has_value() == b.has_value();
}

void expect_system(System system, std::optional<double> expected, std::optional<double> found,
                   const OwnDateCase& one) {
  const std::string where = std::string(one.locale) + " " + one.text;
  if (system == System::kAgrees) {
    EXPECT_TRUE(is_near(expected, found)) << where;
  } else if (system == System::kRefuses) {
    EXPECT_FALSE(found.has_value()) << where;
  } else {
    EXPECT_TRUE(found.has_value() && !is_near(expected, found)) << where;
  }
}

// Where the program's own reading and VarDateFromStr differ, the program follows its own, on both systems.
TEST(TextToDateOnWindows, ComparedWithTheSystem) {
  const OwnDateCase cases[] = {
      // Dates as people write them: no difference.
      {"en_US", "2024-03-01", kMarchFirst, System::kAgrees},
      {"en_US", "2024-03-01 18:00:00", kMarchFirst + 0.75, System::kAgrees},
      {"en_US", "3/1/2024", kMarchFirst, System::kAgrees},
      {"en_US", "03-01-24", kMarchFirst, System::kAgrees},
      {"en_US", "25/12/2024", kChristmasDay, System::kAgrees},
      {"en_US", "2024/12/25", kChristmasDay, System::kAgrees},
      {"en_US", "1 March 2024", kMarchFirst, System::kAgrees},
      {"en_US", "March 1, 2024", kMarchFirst, System::kAgrees},
      {"en_US", "Friday, March 1, 2024", kMarchFirst, System::kAgrees},
      {"en_US", "6:00 PM", 0.75, System::kAgrees},
      {"en_US", "6 PM", 0.75, System::kAgrees},
      {"en_US", "18:00 3/1/2024", kMarchFirst + 0.75, System::kAgrees},
      {"en_US", "0100-01-01", -657434, System::kAgrees},
      {"en_US", "12", kNoDate, System::kAgrees},
      {"en_US", "2024", kNoDate, System::kAgrees},
      {"en_GB", "1/3/2024", kMarchFirst, System::kAgrees},
      {"de_DE", "1.3.2024", kMarchFirst, System::kAgrees},
      {"de_DE", "1.3.24 18:00", kMarchFirst + 0.75, System::kAgrees},
      {"de_DE", "1. März 2024", kMarchFirst, System::kAgrees},
      {"de_DE", "25. Dez. 2024", kChristmasDay, System::kAgrees},
      {"de_DE", "12/25/2024", kChristmasDay, System::kAgrees},
      {"fr_FR", "mar. 25 déc. 2024", kChristmasDay, System::kAgrees},
      {"ru_RU", "01.03.2024", kMarchFirst, System::kAgrees},
      {"ja_JP", "2024/3/1", kMarchFirst, System::kAgrees},
      {"sv_SE", "24-03-01", kMarchFirst, System::kAgrees},
      // The forms of standards and those in which the regions themselves write, refused by the system.
      {"en_US", "2024-03-01T12:00", kMarchFirst + 0.5, System::kRefuses},
      {"en_US", "2024-03-01 18:00:00.5", kMarchFirst + 64800.5 / 86400, System::kRefuses},
      {"en_US", "Mar. 1st, 2024", kMarchFirst, System::kRefuses},
      {"de_DE", "25. Dec 2024", kChristmasDay, System::kRefuses},
      {"es_ES", "1 de marzo de 2024", kMarchFirst, System::kRefuses},
      {"ru_RU", "1 марта 2024 г.", kMarchFirst, System::kRefuses},
      {"ja_JP", "2024年3月1日", kMarchFirst, System::kRefuses},
      {"hu_HU", "2024. 03. 01.", kMarchFirst, System::kRefuses},
      {"fi_FI", "1.3.2024 18.00", kMarchFirst + 0.75, System::kRefuses},
      // Numbers and parts of dates: the system adds what is missing, the current year for one, so that a
      // column of
      // numbers or of chapters would turn into dates and the same file into others next year.
      {"de_DE", "3.14", kNoDate, System::kReadsAnother},
      {"de_DE", "1.5", kNoDate, System::kReadsAnother},
      {"en_US", "3.14", kNoDate, System::kReadsAnother},
      {"en_US", "1-2", kNoDate, System::kReadsAnother},
      {"en_US", "12/25", kNoDate, System::kReadsAnother},
      {"en_US", "March 3", kNoDate, System::kReadsAnother},
      {"en_US", "March 2024", kNoDate, System::kReadsAnother},
      {"en_US", "1 2 2024", kNoDate, System::kReadsAnother},
      {"en_US", "1/2-2024", kNoDate, System::kReadsAnother},
      {"en_US", "1/2/3", kNoDate, System::kReadsAnother},
      // The system's limit for years of two digits moves with its version and can be set.
      {"en_US", "1/1/30", 10959, System::kReadsAnother},
      {"en_US", "1-Mar-24", kMarchFirst, System::kReadsAnother},  // 24 March 2001 to Wine
      // Before day 0 the system counts the time of day backwards.
      {"en_US", "1899-12-29 06:00", -0.75, System::kReadsAnother},
  };
  for (const OwnDateCase& one : cases) {
    const std::optional<double> date = text_to_date(one.text, regional_settings_of(one.locale));
    EXPECT_TRUE(is_near(date, one.expected)) << one.locale << " " << one.text;
    expect_system(one.system, one.expected, date_of_system(one.text, one.locale), one);
  }
}

}  // namespace
}  // namespace rowvane::platform
