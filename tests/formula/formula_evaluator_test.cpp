#include "formula/evaluation/formula_evaluator.h"

#include <gtest/gtest.h>

#include "allocation_counter.h"
#include "formula/passes/formula_program.h"
#include "formula_table.h"
#include "platform/characters.h"
#include "sample_formula_tables.h"

namespace rowvane {
namespace {

std::string repeated(const std::string& text, size_t count) {
  std::string all;
  for (size_t i = 0; i < count; ++i) all += text;
  return all;
}

class Evaluator : public testing::Test {
 protected:
  Kind evaluate(const std::string& formula) { return evaluator_.evaluate(formula); }
  std::string value(const std::string& formula) {
    const Kind kind = evaluate(formula);
    return written_result(evaluator_, kind);
  }

  const FormulaSettings settings_ = comma_settings();
  FormulaEvaluator evaluator_{settings_};
};

TEST_F(Evaluator, KindsOfResults) {
  EXPECT_EQ(static_cast<int>(evaluate("=1")), 32);
  EXPECT_EQ(static_cast<int>(evaluate("=\"a\"")), 256);
  EXPECT_EQ(static_cast<int>(evaluate("={1}+1")), 32768);
  EXPECT_EQ(static_cast<int>(evaluate("=1/0")), 0);
  EXPECT_EQ(static_cast<int>(evaluator_.error()), 32);
  EXPECT_EQ(static_cast<int>(evaluate("1")), 0);
  EXPECT_EQ(static_cast<int>(evaluator_.error()), 224);
  EXPECT_EQ(evaluate("=1"), Kind::kNumber) << "an error does not stay";
  EXPECT_EQ(evaluator_.error(), FormulaError::kNone);
}

struct TokenCase {
  std::string text;
  int kind;
};

TEST_F(Evaluator, CodesOfTokens) {
  const std::vector<TokenCase> cases = {{"=", 1},       {"<", 2},
                                        {"<=", 3},      {">", 4},
                                        {">=", 5},      {"<>", 6},
                                        {"+", 7},       {"-", 8},
                                        {"&", 9},       {"*", 10},
                                        {"/", 11},      {"^", 12},
                                        {"%", 14},      {"_", 15},
                                        {"!", 16},      {":", 17},
                                        {"1", 32},      {"TRUE", 32},
                                        {"#ref!", 32},  {"'a'", 256},
                                        {"name", 256},  {"(", 1024},
                                        {")", 2048},    {"", 4096},
                                        {" ", 4096},    {std::string("\0+", 2), 4096},
                                        {",", 8192},    {"Sum(", 16384},
                                        {"{1}", 32768}, {"\t", 0},
                                        {"?", 0},       {"{1", 0},
                                        {"\xC3", 0},    {"\xFF", 0}};
  for (const TokenCase& each : cases) {
    size_t cursor = 0;
    Token token;
    EXPECT_EQ(static_cast<int>(evaluator_.next_token(each.text, cursor, token, SeparatorSet::kGeneric)),
              each.kind)
        << each.text;
    EXPECT_LE(cursor, each.text.size());
  }
  size_t cursor = 0;
  Token token;
  EXPECT_EQ(evaluator_.next_token(";1,5", cursor, token, SeparatorSet::kRegional), Kind::kSeparator);
  EXPECT_EQ(evaluator_.next_token(";1,5", cursor, token, SeparatorSet::kRegional), Kind::kNumber);
  EXPECT_EQ(token.number, 1.5);
}

TEST_F(Evaluator, StringsOfOneFormula) {
  EXPECT_EQ(value("=\"a\"" + repeated("&\"a\"", 49)), '"' + std::string(50, 'a') + '"');
  EXPECT_EQ(value("=\"a\"" + repeated("&\"a\"", 50)), "#NAME?") << "the 51st literal";
  EXPECT_EQ(value("=if(1,\"ok\"," + repeated("x&", 49) + "1)"), "\"ok\"");
  EXPECT_EQ(value("=iserror(\"a\"" + repeated("&\"a\"", 49) + ")"), "0");
  EXPECT_EQ(value("=if(iserror(a" + repeated("&a", 49) + "),zzz,1)"), "#VALUE!") << "the 51st name";
  const std::string half(12'247, 'x');
  EXPECT_EQ(value("=len(\"" + half + "\"&\"" + half + "\")"), "24494");
  EXPECT_EQ(value("=len(\"" + half + "\")+len(\"" + half + "y\")"), "#NAME?");
  EXPECT_EQ(value("=len(\"" + half + "\"&\"" + half + "\"&1)"), "#MEMORY!")
      << "no text is longer than the pool";
}

TEST_F(Evaluator, ItemsOnTheStacks) {
  // Before each token there must be room for two items: 48 may be there, one value among them.
  EXPECT_EQ(value("=" + repeated("(", 47) + "1" + repeated(")", 47)), "1");
  EXPECT_EQ(value("=" + repeated("(", 48) + "1" + repeated(")", 48)), "#SYNTAX!");
  EXPECT_EQ(value("=" + repeated("abs(", 23) + "-1" + repeated(")", 23)), "1");
  EXPECT_EQ(value("=" + repeated("abs(", 24) + "-1" + repeated(")", 24)), "#SYNTAX!");
  EXPECT_EQ(value("=sum(1" + repeated(",1", 45) + ")"), "46");
  EXPECT_EQ(value("=sum(1" + repeated(",1", 46) + ")"), "#SYNTAX!");
  EXPECT_EQ(value("=0" + repeated("+1", 4000)), "4000") << "operators that apply at once leave the stacks";
  EXPECT_EQ(value("=" + repeated("(", 100'000)), "#SYNTAX!");
}

TEST_F(Evaluator, ArraysOfOneFormula) {
  EXPECT_EQ(value("=sum({1})" + repeated("+sum({1})", 49)), "50");
  EXPECT_EQ(value("=sum({1})" + repeated("+sum({1})", 50)), "50") << "the 51st is empty";
  std::string wide = "={1";
  while (wide.size() < 8160) wide += ",1";
  EXPECT_EQ(evaluate(wide + "}"), Kind::kArray);
  EXPECT_EQ(evaluator_.array_result().columns, (wide.size() - 2) / 2 + (wide.size() % 2));
}

TEST_F(Evaluator, BrokenText) {
  EXPECT_EQ(value("=\"a\xC3\""), "#SYNTAX!");
  EXPECT_EQ(value("={\"\xE2\x82\"}"), "#SYNTAX!");
  EXPECT_EQ(value("=\xF0\x9F\x98\x80"), "#SYNTAX!") << "no letter";
  EXPECT_EQ(value("=a\xFF"), "#SYNTAX!");
  EXPECT_EQ(value(std::string("=1\0+1", 5)), "1") << "a zero ends the formula";
  EXPECT_EQ(value(std::string("=\"a\0b\"", 6)), "\"a\"");
}

TEST_F(Evaluator, AllocatesNothingForARecord) {
  if (!counts_allocations()) GTEST_SKIP() << "sanitizers bring their own operators";
  Database database;
  evaluator_.set_table(add_sample_tables(database));
  for (const std::string formula :
       {"=Price*2+Quantity/3", "=if(Price>30,\"late\",\"on time\")", "=Name&\"-\"&Digits&0.1", "=größe*2",
        "=sum({1,2;3,4}*Price,Price:Quantity)", "=round(Price/3,2)&left(Name,2)", "=\"ä\"=\"Ä\"", "=foo",
        "=1+"}) {
    for (uint32_t record : {0U, 1U}) {
      evaluator_.set_record(record);
      evaluator_.evaluate(formula);
    }
    const size_t before = allocation_count();
    for (uint32_t record : {0U, 1U, 0U}) {
      evaluator_.set_record(record);
      evaluator_.evaluate(formula);
    }
    EXPECT_EQ(allocation_count(), before) << formula;
  }
}

TEST_F(Evaluator, RecordsAndEntries) {
  Database database;
  evaluator_.set_table(add_sample_tables(database));
  EXPECT_EQ(value("=Price"), "#REF!") << "no record yet";
  EXPECT_EQ(value("=Price:Quantity"), "{#REF!,#REF!}");
  evaluator_.set_record(1);
  EXPECT_EQ(value("=Price"), "20");
  const Scalar entry = Scalar::of(7.0);
  evaluator_.set_entry(0, &entry);
  EXPECT_EQ(value("=Price+Quantity"), "8");
  EXPECT_EQ(value("=sum(Price:Quantity)"), "8");
  EXPECT_EQ(value("=sum(orders!Price)"), "30") << "other records do not see the entry";
  evaluator_.set_record(2);
  EXPECT_EQ(value("=Quantity"), "#REF!") << "behind the last record";
}

TEST(FunctionRegistry, Lookup) {
  EXPECT_EQ(find_function("sum(1"), find_function("SUM("));
  EXPECT_TRUE(find_function("iF("));
  EXPECT_FALSE(find_function("sum"));
  EXPECT_FALSE(find_function("sum (1)"));
  EXPECT_FALSE(find_function("summ(1)"));
  EXPECT_FALSE(find_function("su("));
  for (const std::string name : {"ABS(", "UPPER(", "T(", "DSUM(", "YIELDMAT("}) {
    ASSERT_TRUE(find_function(name)) << name;
    EXPECT_EQ(function_name(*find_function(name)), name);
  }
}

TEST(FunctionRegistry, Documentation) {
  size_t count = 0;
  for (size_t i = 0; i < kFunctionCategories; ++i) {
    for (const DocumentationEntry* entry : documented_functions(static_cast<FunctionCategory>(i))) {
      ++count;
      const std::string call = platform::upper_case(entry->name) + "(";
      EXPECT_TRUE(find_function(call)) << call;
      EXPECT_TRUE(help_text(entry->name).starts_with(std::string(entry->name) + "(")) << entry->name;
    }
  }
  EXPECT_GT(count, 15U);
  EXPECT_EQ(category_name(FunctionCategory::kLookup), "Lookup & reference");
  EXPECT_EQ(parameter_hint("IF", 2), "ifFalse");
  EXPECT_EQ(parameter_hint("if", 3), "");
  EXPECT_EQ(parameter_hint("sum", 7), "...");
  EXPECT_EQ(parameter_hint("pi", 0), "");
  EXPECT_EQ(help_text("nosuch"), "");
}

// The examples of the help texts are true.
TEST_F(Evaluator, ExamplesOfTheHelpTexts) {
  size_t examples = 0;
  for (size_t i = 0; i < kFunctionCategories; ++i) {
    for (const DocumentationEntry* entry : documented_functions(static_cast<FunctionCategory>(i))) {
      std::string_view help = entry->help;
      while (!help.empty()) {
        const std::string_view line = help.substr(0, help.find("\r\n"));
        help.remove_prefix(std::min(help.size(), line.size() + 2));
        const size_t returns = line.find("    returns ");
        if (!line.starts_with("=") || returns == std::string_view::npos) continue;
        ++examples;
        std::string found = value(std::string(line.substr(0, returns)));
        std::erase(found, '"');
        EXPECT_EQ(found, line.substr(returns + 12)) << line;
      }
    }
  }
  EXPECT_GT(examples, 15U);
}

}  // namespace
}  // namespace rowvane
