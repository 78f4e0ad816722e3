#include "formula/formats/number_format.h"

#include <limits>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "allocation_counter.h"
#include "core/values/number_text.h"
#include "formula_table.h"

namespace rowvane {
namespace {

using platform::regional_settings_of;

// The value of CELL as CODE shows it between bars, or "invalid". A cell in quotes is a text.
std::string shown(const std::string& code, const std::string& cell) {
  const NumberFormat format(code, DisplayRegion());
  if (!format.problem().empty()) return "invalid";
  std::string out = "|";
  if (cell.starts_with('"')) {
    format.append_text(cell.substr(1, cell.size() - 2), out);
  } else {
    const auto number = parse_number(cell, {});
    if (!number) return "no number";
    format.append(*number, out);
  }
  return out + "|";
}

TEST(NumberFormatTable, OwnTable) {
  const auto rows = read_formula_table("formats.tsv");
  ASSERT_GT(rows.size(), 100U);
  for (const TableRow& row : rows) {
    ASSERT_EQ(row.cells.size(), 3U) << "line " << row.line;
    EXPECT_EQ(shown(row.cells[0], row.cells[1]), row.cells[2]) << "line " << row.line << ": " << row.cells[0];
  }
}

TEST(NumberFormatTable, TableOfLibreOfficeCalc) {
  const auto rows = read_formula_table("calc-format-table.tsv", TableComments::kNone);
  std::set<std::string> codes;
  for (const TableRow& row : rows) {
    codes.insert(row.cells[0]);
    ASSERT_TRUE(row.cells.size() == 3 || row.cells.size() == 5) << "line " << row.line;
    const std::string& expected = row.cells.size() == 5 ? row.cells[3] : row.cells[2];
    const std::string found = shown(row.cells[0], row.cells[1]);
    EXPECT_EQ(found, expected) << "line " << row.line << ": " << row.cells[1] << " by " << row.cells[0];
    if (row.cells.size() == 5) {
      EXPECT_NE(found, row.cells[2]) << "line " << row.line << " does not differ";
    }
  }
  EXPECT_GE(codes.size(), 200U);
}

std::string shown_in(const std::string& locale, const std::string& code, double number) {
  const NumberFormat format(code, DisplayRegion(regional_settings_of(locale)));
  std::string out;
  format.append(number, out);
  return out;
}

TEST(NumberFormat, FollowsTheRegion) {
  EXPECT_EQ(shown_in("de_DE", "#,##0.00", 1234567.5), "1.234.567,50");
  EXPECT_EQ(shown_in("de_DE", "General", 1234.5), "1234,5");
  EXPECT_EQ(shown_in("de_DE", "dddd, dd mmmm, yyyy", 45351), "Donnerstag, 29 Februar, 2024");
  EXPECT_EQ(shown_in("de_DE", "ss.00", 0.5 / 86400), "00,50");
  EXPECT_EQ(shown_in("ru_RU", "d mmmm", 45351), "29 февраля");
  EXPECT_EQ(shown_in("ru_RU", "mmmm", 45351), "февраль");
  EXPECT_EQ(shown_in("C", "#,##0.0", 1234.5), "1,234.5");
}

TEST(NumberFormat, CodesMayBeWrittenWithTheUsersSeparators) {
  const FormatSeparators german = format_separators_of(regional_settings_of("de_DE"));
  const NumberFormat format("#.##0,00", DisplayRegion(regional_settings_of("de_DE")), german);
  std::string out;
  format.append(1234.5, out);
  EXPECT_EQ(out, "1.234,50");
}

TEST(NumberFormat, TellsColoursAndFills) {
  const NumberFormat format("[red]\"$\"* 0;[Color40]\"€\"*-0;[CYAN]0", DisplayRegion());
  std::string out;
  ShownValue value = format.append(5, out);
  EXPECT_EQ(value.color, static_cast<uint8_t>(FormatColor::kRed));
  EXPECT_EQ(value.fill, " ");
  EXPECT_EQ(value.fill_position, 1U);
  value = format.append(-5, out);
  EXPECT_EQ(value.color, 40);
  EXPECT_EQ(out, "$5€5");
  EXPECT_EQ(value.fill_position, 5U);
  EXPECT_EQ(format.append(0, out).fill_position, ShownValue::kNoFill);
}

TEST(NumberFormat, RefusesWhatItCannotUse) {
  const auto problem = [](const std::string& code) { return NumberFormat(code, DisplayRegion()).problem(); };
  EXPECT_THAT(problem("0\"kg"), testing::HasSubstr("the quotes are not closed (at byte 2)"));
  EXPECT_THAT(problem("0 km"), testing::HasSubstr("must stand in quotes (at byte 3)"));
  EXPECT_THAT(problem("[purple]0"), testing::HasSubstr("no colour"));
  EXPECT_EQ(problem(std::string(kMaxFormatCodeBytes, '0')), "");
  EXPECT_THAT(problem(std::string(kMaxFormatCodeBytes + 1, '0')), testing::HasSubstr("longer than 1024"));
}

TEST(NumberFormat, ShowsValuesOfABadCodeAsWithoutAFormat) {
  for (const char* code : {"0\"", "0;0;@;0", "0;0;0;0;@"}) {
    const NumberFormat format(code, DisplayRegion());
    std::string out;
    format.append(1.25, out);
    format.append_text(" t", out);
    EXPECT_EQ(out, "1.25 t") << code;
  }
}

TEST(NumberFormat, ShowsWhatIsNoFiniteNumber) {
  const NumberFormat format("0.00", DisplayRegion());
  std::string out;
  format.append(std::numeric_limits<double>::infinity(), out);
  format.append(std::numeric_limits<double>::quiet_NaN(), out);
  EXPECT_EQ(out, "########");
}

// Formats are applied to every cell of a table that is shown or printed.
TEST(NumberFormat, AllocatesNothingOnceTheTextHasRoom) {
  if (!counts_allocations()) GTEST_SKIP() << "sanitizers allocate on their own";
  std::string out;
  out.reserve(1000);
  for (const char* code :
       {"#,##0.00;[red](#,##0.00)", "0.#e+00", R"(? ###/###)", "dddd, dd mmmm, yyyy\\ h:mm:ss"}) {
    const NumberFormat format(code, DisplayRegion());
    const size_t before = allocation_count();
    for (const double number : {-1234.5, 0.0, 45351.25}) format.append(number, out);
    EXPECT_EQ(allocation_count(), before) << code;
    out.clear();
  }
}

}  // namespace
}  // namespace rowvane
