#include "formula_table.h"

#include <cmath>

#include <gtest/gtest.h>

#include "formula/passes/formula_program.h"
#include "sample_formula_tables.h"

namespace rowvane {
namespace {

class FormulaTable : public testing::Test {
 protected:
  FormulaTable() : orders_(add_sample_tables(database_)) {}

  std::string value_of(const TableRow& row) {
    const std::string& formula = row.cells[0];
    FormulaEvaluator evaluator(settings_, row.set);
    evaluator.set_table(orders_);
    evaluator.set_record(0);
    const Kind kind = evaluator.evaluate(formula);
    const bool readable = FormulaProgram(formula, orders_, settings_, row.set).error() == FormulaError::kNone;
    if (!readable) {
      EXPECT_EQ(kind, Kind::kError) << formula;
      EXPECT_EQ(evaluator.error(), FormulaError::kSyntax) << formula;
      return "invalid";
    }
    return written_result(evaluator, kind);
  }

  Database database_;
  CWorkSheet* orders_;
  const FormulaSettings settings_ = comma_settings();
};

TEST_F(FormulaTable, OwnTable) {
  const auto rows = read_formula_table("formulas.tsv");
  ASSERT_GT(rows.size(), 400U);
  for (const TableRow& row : rows) {
    ASSERT_EQ(row.cells.size(), 2U) << "line " << row.line;
    EXPECT_EQ(value_of(row), row.cells[1]) << "line " << row.line << ": " << row.cells[0];
  }
}

// A number that agrees to 12 digits is the same: the two programs round sums in their own ways.
bool agrees(const std::string& found, const std::string& expected) {
  const auto a = parse_number(found, {});
  const auto b = parse_number(expected, {});
  if (a && b) return std::abs(*a - *b) <= 1e-12 * std::abs(*b);
  return found == expected || found == '"' + expected + '"';
}

TEST_F(FormulaTable, TableOfLibreOfficeCalc) {
  const auto rows = read_formula_table("calc-table.tsv");
  ASSERT_GE(rows.size(), 300U);
  for (const TableRow& row : rows) {
    const bool differs = row.cells.size() > 2;
    const std::string expected = differs ? row.cells[2] : row.cells.size() > 1 ? row.cells[1] : "";
    const std::string found = value_of(row);
    EXPECT_TRUE(agrees(found, expected)) << row.cells[0] << " is " << found << ", not " << expected;
    if (differs) {
      ASSERT_EQ(row.cells.size(), 4U) << row.cells[0] << ": no reason";
      EXPECT_FALSE(agrees(found, row.cells[1])) << row.cells[0] << " does not differ";
    }
  }
}

}  // namespace
}  // namespace rowvane
