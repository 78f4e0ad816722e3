// Reads any bytes as a format code and shows numbers and texts by it, and as a typed value. What is shown
// holds no more than the code, the value and its digits can account for.
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

#include "formula/formats/format_style_text.h"
#include "formula/formats/number_format.h"
#include "formula/formats/typed_value.h"

namespace {

using namespace rowvane;

constexpr double kNumbers[] = {0,
                               -0.0,
                               1,
                               -1.5,
                               2.675,
                               45351.75,
                               -657435,
                               2958465.99999999,
                               1e-300,
                               1e9,
                               -1e15,
                               1e22,
                               1e308,
                               9.9999e-5,
                               123456.789,
                               std::numeric_limits<double>::denorm_min(),
                               std::numeric_limits<double>::infinity()};
constexpr size_t kMostShown = 100'000;

void show(const NumberFormat& format) {
  std::string out;
  for (const double number : kNumbers) {
    out.clear();
    const ShownValue value = format.append(number, out);
    if (out.size() > kMostShown) std::abort();
    if (value.fill_position != ShownValue::kNoFill && value.fill_position > out.size()) std::abort();
  }
  format.append_text("text", out);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const platform::RegionalSettings german = platform::regional_settings_of("de_DE");
  static const DisplayRegion generic;
  static const DisplayRegion region(german);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  show(NumberFormat(text, generic));
  show(NumberFormat(text, region, format_separators_of(german)));
  read_typed_value(text, german);
  const StyleEntry entry = read_format_style(text, "$");
  const std::string code = build_format_code(entry.style, FormatSeparators());
  if (entry.check.passes() && !FormatCode(code).problem().empty()) std::abort();
  return 0;
}
