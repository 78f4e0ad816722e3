#include "core/values/number_text.h"

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

namespace rowvane {
namespace {

const NumberSeparators kGeneric;
const NumberSeparators kEnglish{".", ","};
const NumberSeparators kGerman{",", "."};
const NumberSeparators kFrench{",", "\u202F"};

// The slow, obvious reading of number text that the parser is checked against. All of it is strings and
// strtod.
struct SlowNumber {
  std::string integer;
  std::string digits;  // all significant digits, without zeros around them
  long exponent = 0;   // the value is 0.DIGITS * 10^exponent
};

std::string take_digits(std::string& rest) {
  const size_t count = std::min(rest.find_first_not_of("0123456789"), rest.size());
  const std::string digits = rest.substr(0, count);
  rest.erase(0, count);
  return digits;
}

std::optional<SlowNumber> read_slowly(std::string rest) {
  SlowNumber number;
  if (rest.starts_with('-')) rest.erase(0, 1);
  number.integer = take_digits(rest);
  std::string fraction;
  if (rest.starts_with('.')) {
    rest.erase(0, 1);
    fraction = take_digits(rest);
  }
  number.digits = number.integer + fraction;
  if (number.digits.empty()) return std::nullopt;
  number.exponent = static_cast<long>(number.integer.size());
  if (rest.starts_with('e') || rest.starts_with('E')) {
    rest.erase(0, 1);
    const bool negative = rest.starts_with('-');
    if (rest.starts_with('-') || rest.starts_with('+')) rest.erase(0, 1);
    const std::string exponent = take_digits(rest);
    if (exponent.empty()) return std::nullopt;
    number.exponent += std::atol(exponent.c_str()) * (negative ? -1 : 1);
  }
  if (!rest.empty()) return std::nullopt;
  while (number.digits.ends_with('0')) number.digits.pop_back();
  while (number.digits.starts_with('0')) {
    number.digits.erase(0, 1);
    --number.exponent;
  }
  if (number.digits.empty()) number.exponent = 0;
  return number;
}

std::string printed(const char* format, int precision, double number) {
  char buffer[400];
  std::snprintf(buffer, sizeof buffer, format, precision, number);
  return buffer;
}

// The shortest text that reads back as NUMBER, by trying all precisions; whole numbers prefer their plain
// form.
std::string shortest_text(double number) {
  int precision = 0;
  while (std::strtod(printed("%.*e", precision, number).c_str(), nullptr) != number) ++precision;
  const std::string scientific = printed("%.*e", precision, number);
  if (std::floor(number) != number) return scientific;
  const std::string plain = printed("%.*f", 0, number);
  return plain.size() <= scientific.size() ? plain : scientific;
}

std::optional<double> parse_exactly_slowly(const std::string& text) {
  const auto given = read_slowly(text);
  if (!given || (given->integer.size() > 1 && given->integer.front() == '0')) return std::nullopt;
  const double number = std::strtod(text.c_str(), nullptr);
  if (std::isinf(number) || std::fpclassify(number) == FP_SUBNORMAL) return std::nullopt;
  const auto kept = read_slowly(shortest_text(number));
  const bool same = given->digits == kept->digits && given->exponent == kept->exponent;
  return same ? std::optional(number) : std::nullopt;
}

class NumberWriter {
 public:
  explicit NumberWriter(unsigned seed) : random_(seed) {}

  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  double any_double() {
    for (;;) {
      const double number = std::bit_cast<double>(random_());
      if (std::isfinite(number)) return number;
    }
  }

  std::string digits(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += static_cast<char>('0' + (below(4) == 0 ? 0 : below(10)));
    return text;
  }

  // Digits around a point, an exponent now and then.
  std::string digit_text() {
    std::string text = below(4) == 0 ? "-" : "";
    text += digits(below(3) == 0 ? below(24) : below(10));
    if (below(2) == 0) text += "." + digits(below(3) == 0 ? below(24) : below(8));
    if (below(4) == 0) text += (below(2) == 0 ? "e" : "E-") + std::to_string(below(below(3) == 0 ? 340 : 30));
    return text;
  }

  // A double in 14 to 18 digits, so around the border of what it carries.
  std::string double_text() {
    if (below(2) == 0) return printed("%.*e", 13 + below(5), any_double());
    return printed("%.*g", 14 + below(5), static_cast<double>(below(2000000)) / 7 * std::pow(10, below(16)));
  }

 private:
  std::mt19937_64 random_;
};

TEST(NumberText, ExactParserAgreesWithTheSlowOne) {
  NumberWriter writer(20);
  int accepted = 0;
  constexpr int kRounds = 60'000;
  for (int round = 0; round < kRounds; ++round) {
    const std::string text = round % 3 == 0 ? writer.double_text() : writer.digit_text();
    const auto expected = parse_exactly_slowly(text);
    const auto actual = parse_number_exactly(text, kGeneric);
    ASSERT_EQ(actual.has_value(), expected.has_value()) << text;
    if (!actual) continue;
    ++accepted;
    ASSERT_EQ(std::bit_cast<uint64_t>(*actual), std::bit_cast<uint64_t>(*expected)) << text;
  }
  EXPECT_GT(accepted, kRounds / 4);
  EXPECT_LT(accepted, kRounds * 3 / 4);
}

TEST(NumberText, NumbersComeBackFromTheirText) {
  NumberWriter writer(21);
  for (int round = 0; round < 30'000; ++round) {
    const double number =
        round % 2 == 0 ? writer.any_double() : writer.below(1'000'000) / 1e3 * (writer.below(2) * 2 - 1);
    for (const NumberSeparators* separators : {&kGeneric, &kEnglish, &kGerman, &kFrench}) {
      const std::string text = number_to_text(number, *separators);
      const auto read = parse_number(text, *separators);
      ASSERT_TRUE(read && std::bit_cast<uint64_t>(*read) == std::bit_cast<uint64_t>(number)) << text;
      const bool denormal = std::fpclassify(number) == FP_SUBNORMAL;
      ASSERT_EQ(parse_number_exactly(text, *separators).has_value(), !denormal) << text;
    }
  }
}

TEST(NumberText, WritesPlainDigitsInTheCommonRange) {
  const std::pair<double, const char*> cases[] = {
      {0, "0"},
      {-0.0, "-0"},
      {1.5, "1.5"},
      {-1234567, "-1234567"},
      {0.00001, "0.00001"},
      {0.0000012, "1.2e-06"},
      {1e-7, "1e-07"},
      {999999999999999, "999999999999999"},
      {1e15, "1e+15"},
      {0.1 + 0.2, "0.30000000000000004"},
      {1e21, "1e+21"},
      {123456789.125, "123456789.125"},
  };
  for (const auto& [number, text] : cases) EXPECT_EQ(number_to_text(number), text);
  EXPECT_EQ(number_to_text(-1.5, kGerman), "-1,5");
  std::string out = "3.x";
  append_number(1.5, ",", out);
  EXPECT_EQ(out, "3.x1,5");
}

struct Reading {
  const char* text;
  std::optional<double> number;
  bool exact = true;  // a number that is stored without loss
};

void expect_readings(std::initializer_list<Reading> readings, const NumberSeparators& separators) {
  for (const Reading& reading : readings) {
    EXPECT_EQ(parse_number(reading.text, separators), reading.number) << "\"" << reading.text << "\"";
    const auto exact = reading.exact ? reading.number : std::nullopt;
    EXPECT_EQ(parse_number_exactly(reading.text, separators), exact) << "\"" << reading.text << "\"";
  }
}

void expect_refused(std::initializer_list<std::string> all, const NumberSeparators& separators) {
  for (const std::string& text : all) {
    EXPECT_EQ(parse_number(text, separators), std::nullopt) << "\"" << text << "\"";
    EXPECT_EQ(parse_number_exactly(text, separators), std::nullopt) << "\"" << text << "\"";
  }
}

TEST(NumberText, ReadsGenericNumbers) {
  expect_readings({{"0", 0.0}, {"-0", -0.0}, {".5", 0.5}, {"5.", 5.0}, {"-.5", -0.5}, {"1.50", 1.5}},
                  kGeneric);
  expect_readings({{"1e-5", 1e-5}, {"1E+5", 1e5}, {"5.e2", 500.0}, {" 2 ", 2.0}, {"1e308", 1e308}}, kGeneric);
  expect_readings({{"0e999999", 0.0}, {"123456789012345", 123456789012345.0}}, kGeneric);
}

TEST(NumberText, LeavesAsTextWhatANumberWouldLose) {
  expect_readings({{"00501", 501.0, false}, {"-07", -7.0, false}, {"00", 0.0, false}}, kGeneric);
  expect_readings({{"00.5", 0.5, false}, {"+49", 49.0, false}, {"+.5", 0.5, false}}, kGeneric);
  expect_readings({{"12345678901234567890", 12345678901234567890.0, false}, {"1e-310", 1e-310, false}},
                  kGeneric);
  expect_readings({{"0.12345678901234567890", 0.12345678901234567890, false}}, kGeneric);
  expect_readings({{"9007199254740993", 9007199254740992.0, false}, {"9007199254740992", 9007199254740992.0}},
                  kGeneric);
}

TEST(NumberText, RefusesWhatIsNoNumber) {
  expect_refused({"",    " ",   "-",    "+",   ".",    "-.",  "e5",  "1e",  "1e+", "1.2.3", "--1",
                  "+-1", "1 2", "0x10", "inf", "-inf", "nan", "NaN", "1,5", "1a",  "\t1",   "1-"},
                 kGeneric);
  expect_refused({std::string("1\0", 2), "1e309", "1e-999999", std::string(500, '1')}, kGeneric);
}

TEST(NumberText, ReadsGroupsOfThreeDigits) {
  expect_readings({{"1,234,567", 1234567.0}, {"-1,234.5", -1234.5}, {"1234567", 1234567.0}}, kEnglish);
  expect_readings({{"123,456e2", 12345600.0}, {"0,123", 123.0, false}, {"+1,000", 1000.0, false}}, kEnglish);
  expect_refused({"12,34", "1234,567", ",123", "1,234,", "1,,234", "1.5,000", "1,234.5,678", "1e1,000"},
                 kEnglish);
  expect_readings({{"1.234.567,5", 1234567.5}, {"1,5", 1.5}, {",5", 0.5}}, kGerman);
  expect_refused({"1.5", "1,5,5"}, kGerman);
  expect_readings({{"1\u202F234,5", 1234.5}}, kFrench);
  expect_refused({"1.5", "1 234", "12\u202F34", "1\u202F234\u202F"}, kFrench);
}

}  // namespace
}  // namespace rowvane
