// Passes over columns give what the evaluator gives, bit for bit.
#include "formula/passes/block_evaluator.h"

#include <bit>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "formula_table.h"
#include "sample_formula_tables.h"

namespace rowvane {
namespace {

constexpr uint32_t kRecords = 1200;  // more than a block

double random_cell(std::mt19937_64& random) {
  constexpr double kOdd[] = {
      0.0,  -0.0,  1.0, -1.0, 1e308, -1e308, 5e-324, 2.2250738585072014e-308, 0.1, 1e15, 123456789012345678.0,
      30.0, 100.0, -2.5};
  switch (random() % 8) {
    case 0:
      return kEmptyNumber;
    case 1:
      return error_number(static_cast<FormulaError>(32 * (1 + random() % 7)));
    case 2:
      return random() % 4 == 0 ? error_number(FormulaError::kNotAvailable) : std::bit_cast<double>(random());
    case 3:
      return kOdd[random() % std::size(kOdd)];
    case 4:
      return static_cast<double>(static_cast<int>(random() % 200)) - 100;
    default:
      return std::uniform_real_distribution<double>(-1000, 1000)(random);
  }
}

std::string random_text(std::mt19937_64& random, bool repeating) {
  static const std::string kTexts[] = {"",  "a", "A",      "Lamp",   "42", " 7 ", "1e3",
                                       "ä", "Ä", "straße", "#DATA!", "-",  "1.5"};
  if (repeating || random() % 3 == 0) return kTexts[random() % std::size(kTexts)];
  if (random() % 50 == 0) return std::string(random() % 8169, 'x');
  return "text " + std::to_string(random());
}

// All fields of the sample table with random values; half of the number columns without gaps and errors in
// most blocks.
TableData random_data(const CWorkSheet& sample, uint64_t seed) {
  std::mt19937_64 random(seed);
  TableData data;
  data.fields = sample.data().fields;
  data.record_count = kRecords;
  for (size_t field = 0; field < data.fields.size(); ++field) {
    Column column = make_column(data.fields[field].type);
    resize_column(column, kRecords);
    for (uint32_t i = 0; i < kRecords; ++i) {
      if (auto* numbers = std::get_if<NumberColumn>(&column)) {
        const bool plain = field % 2 == 0 && i < 800;
        numbers->cells[i] = plain ? static_cast<double>(random() % 1000) / 8 : random_cell(random);
      } else if (std::holds_alternative<TextColumn>(column)) {
        store_value(column, i, random_text(random, data.fields[field].name != "Name"));
      } else if (i % 3 == 0) {
        store_value(column, i, Content::of(random_text(random, true)));
      }
    }
    data.columns.push_back(std::move(column));
  }
  return data;
}

testing::AssertionResult same_scalar(const Scalar& a, const Scalar& b) {
  const bool same =
      a.kind == b.kind && a.error == b.error && a.text == b.text &&
      (!a.is_number() || std::bit_cast<uint64_t>(a.number) == std::bit_cast<uint64_t>(b.number));
  if (same) return testing::AssertionSuccess();
  return testing::AssertionFailure() << int(a.kind) << " " << a.number << " '" << a.text.substr(0, 40)
                                     << "' against " << int(b.kind) << " " << b.number << " '"
                                     << b.text.substr(0, 40) << "'";
}

class BlockEvaluation : public testing::Test {
 protected:
  BlockEvaluation() {
    CWorkSheet* sample = add_sample_tables(database_);
    auto table = std::make_unique<CWorkSheet>("random", random_data(*sample, 1));
    table_ = table.get();
    require(database_.add_table(database_.root(), table));
  }

  void check(const std::string& formula, SeparatorSet set) {
    const FormulaProgram program(formula, table_, settings_, set);
    BlockEvaluator blocks(program);
    columns_ += blocks.works_on_columns() ? 1 : 0;
    FormulaEvaluator evaluator(settings_, set);
    evaluator.set_table(table_);
    // A first block of another size, so that blocks do not always begin at the same places.
    for (uint32_t first = 0; first < kRecords;) {
      const size_t count = std::min<size_t>(first == 0 ? 700 : kBlockRecords, kRecords - first);
      const BlockVector& results = blocks.run(first, count);
      for (size_t i = 0; i < count; ++i) {
        evaluator.set_record(first + static_cast<uint32_t>(i));
        evaluator.evaluate(formula);
        ASSERT_TRUE(same_scalar(results.at(i), evaluator.result()))
            << formula << ", record " << first + i + 1;
      }
      first += static_cast<uint32_t>(count);
    }
  }

  Database database_;
  CWorkSheet* table_ = nullptr;
  const FormulaSettings settings_ = comma_settings();
  int columns_ = 0;
};

TEST_F(BlockEvaluation, EveryFormulaOfTheTables) {
  for (const char* name : {"formulas.tsv", "calc-table.tsv"}) {
    for (const TableRow& row : read_formula_table(name)) {
      for (const SeparatorSet set : {SeparatorSet::kGeneric, SeparatorSet::kRegional}) {
        // Formulas without fields have one value; those of whole columns take long.
        if (row.cells[0].find('!') != std::string::npos && row.cells[0].find("orders") != std::string::npos)
          continue;
        check(row.cells[0], set);
        if (HasFatalFailure()) return;
      }
    }
  }
  EXPECT_GT(columns_, 400);
}

TEST_F(BlockEvaluation, FormsOfOperands) {
  const std::string kOperators[] = {"+", "-", "*", "/", "^", "&", "=", "<", "<=", ">", ">=", "<>"};
  const std::string kOperands[] = {"Price",         "Quantity",       "a",       "Digits",     "Name",
                                   "Status",        "Notes",          "Nothing", "2",          "\"42\"",
                                   "\"\"",          "#REF!",          "foo",     "(Price>30)", "(Digits&1)",
                                   "(Name&Digits)", "(Digits&Status)"};
  for (const std::string& left : kOperands) {
    for (const std::string& right : kOperands) {
      for (const std::string& operation : kOperators) {
        check("=" + left + operation + right, SeparatorSet::kGeneric);
        if (HasFatalFailure()) return;
      }
      check("=if(" + left + "," + right + ",\"no\")", SeparatorSet::kGeneric);
      check("=if(Quantity>5," + left + "," + right + ")", SeparatorSet::kGeneric);
      check("=if(Digits," + left + "," + right + ")&\"x\"", SeparatorSet::kGeneric);
      check("=-if(" + left + "," + right + ",)%", SeparatorSet::kGeneric);
    }
    check("=abs(" + left + ")+round(" + left + ",1)", SeparatorSet::kGeneric);
    check("=upper(left(" + left + ",3))&len(" + left + ")", SeparatorSet::kGeneric);
    check("=concatenate(" + left + ",Digits,Status)", SeparatorSet::kGeneric);
    check("=iserror(" + left + ")*2+isblank(" + left + ")", SeparatorSet::kGeneric);
    check("=sum(" + left + ",Price)", SeparatorSet::kGeneric);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace rowvane
