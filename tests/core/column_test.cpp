#include "core/table/column.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "core/table/field.h"

namespace rowvane {
namespace {

constexpr FieldType kTypes[] = {FieldType::kText, FieldType::kNumber, FieldType::kLongText, FieldType::kFiles,
                                FieldType::kCode};

// A value for the column of TYPE that says NUMBER; each tenth is empty.
CellValue numbered_value(FieldType type, uint32_t number) {
  const std::string text = "value " + std::to_string(number);
  if (number % 10 == 0) return {};
  if (type == FieldType::kText) return text;
  if (type == FieldType::kNumber) return number + 0.5;
  if (type == FieldType::kFiles) return FileList{{text, {}, Content::of(text)}};
  return Content::of(text);
}

std::string shown(const CellValue& value) {
  if (const auto* number = std::get_if<double>(&value)) return std::to_string(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* content = std::get_if<Content>(&value)) return std::string(content->in_memory());
  if (const auto* files = std::get_if<FileList>(&value)) return files->front().name;
  return "";
}

std::vector<std::string> shown(const Column& column) {
  std::vector<std::string> all;
  for (size_t i = 0; i < column_size(column); ++i) all.push_back(shown(cell_value(column, i)));
  return all;
}

Column numbered_column(FieldType type, uint32_t count) {
  Column column = make_column(type);
  resize_column(column, count);
  for (uint32_t i = 0; i < count; ++i) store_value(column, i, numbered_value(type, i));
  return column;
}

std::vector<uint32_t> random_positions(std::mt19937& random, uint32_t count, unsigned one_in) {
  std::vector<uint32_t> positions;
  for (uint32_t i = 0; i < count; ++i) {
    if (random() % one_in == 0) positions.push_back(i);
  }
  return positions;
}

class ColumnOfType : public testing::TestWithParam<FieldType> {};
INSTANTIATE_TEST_SUITE_P(AllTypes, ColumnOfType, testing::ValuesIn(kTypes));

TEST_P(ColumnOfType, HoldsOnlyValuesOfItsKind) {
  Column column = make_column(GetParam());
  resize_column(column, 1);
  EXPECT_TRUE(is_empty(cell_value(column, 0)));
  EXPECT_TRUE(fits_column(column, CellValue()));
  for (const FieldType other : kTypes) {
    const bool same_kind = make_column(other).index() == column.index();
    EXPECT_EQ(fits_column(column, numbered_value(other, 1)), same_kind);
  }
}

TEST_P(ColumnOfType, ErasesAndRestoresCellsAtManyPositions) {
  std::mt19937 random(7);
  for (const unsigned one_in : {1u, 2u, 9u, 200u}) {
    const Column original = numbered_column(GetParam(), 300);
    Column column = original;
    const auto positions = random_positions(random, 300, one_in);
    const Column taken = select_cells(column, positions);
    erase_cells(column, positions);
    std::vector<std::string> left;
    for (uint32_t i = 0; i < 300; ++i) {
      if (!std::binary_search(positions.begin(), positions.end(), i))
        left.push_back(shown(cell_value(original, i)));
    }
    ASSERT_EQ(shown(column), left);
    restore_cells(column, positions, taken);
    ASSERT_EQ(shown(column), shown(original));
  }
}

TEST_P(ColumnOfType, TakesCellsFromAColumnWithAnotherPool) {
  Column column = numbered_column(GetParam(), 40);
  const std::vector<uint32_t> places = {39, 0, 20};
  const std::vector<uint32_t> sources = {7, 10, 3};
  assign_cells(column, places, select_cells(numbered_column(GetParam(), 20), sources));
  auto expected = shown(numbered_column(GetParam(), 40));
  for (size_t i = 0; i < 3; ++i) expected[places[i]] = shown(numbered_value(GetParam(), sources[i]));
  EXPECT_EQ(shown(column), expected);
}

TEST_P(ColumnOfType, InsertsEmptyCells) {
  Column column = numbered_column(GetParam(), 5);
  insert_cells(column, 3, 2);
  insert_cells(column, 7, 1);
  insert_cells(column, 0, 1);
  auto expected = shown(numbered_column(GetParam(), 5));
  expected.insert(expected.begin() + 3, 2, "");
  expected.push_back("");
  expected.insert(expected.begin(), "");
  EXPECT_EQ(shown(column), expected);
}

TEST_P(ColumnOfType, StaysTheSameWhenItsPoolIsCleaned) {
  Column column = numbered_column(GetParam(), 400);
  std::vector<uint32_t> most(350);
  for (uint32_t i = 0; i < 350; ++i) most[i] = i + 25;
  const std::vector<uint32_t> few = {1, 2, 390};
  const Column selected = select_cells(column, few);
  erase_cells(column, most);
  const auto expected = shown(column);
  clean_pool(column);
  EXPECT_EQ(shown(column), expected);
  assign_cells(column, std::vector<uint32_t>{0, 10, 49}, selected);
  EXPECT_EQ(shown(cell_value(column, 10)), shown(numbered_value(GetParam(), 2)));
  EXPECT_EQ(shown(cell_value(column, 11)), expected[11]);
}

TEST(Column, DropsUnusedTextsAndValues) {
  Column texts = numbered_column(FieldType::kText, 100);
  Column contents = numbered_column(FieldType::kLongText, 100);
  for (Column* column : {&texts, &contents}) {
    resize_column(*column, 10);
    clean_pool(*column);
  }
  EXPECT_EQ(std::get<TextColumn>(texts).pool->size(), 10u);
  EXPECT_EQ(std::get<ContentColumn>(contents).values.size(), 9u);
}

TEST(Column, NumberCellsTellErrorsFromEmptyCells) {
  Column column = make_column(FieldType::kNumber);
  resize_column(column, 3);
  store_value(column, 1, error_number(FormulaError::kSyntax));
  store_value(column, 2, std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(is_empty(cell_value(column, 0)));
  EXPECT_EQ(error_of_number(std::get<double>(cell_value(column, 1))), FormulaError::kSyntax);
  EXPECT_EQ(error_of_number(std::get<double>(cell_value(column, 2))), FormulaError::kValue);
  EXPECT_EQ(error_of_number(-std::numeric_limits<double>::quiet_NaN()), FormulaError::kValue);
  EXPECT_EQ(error_of_number(0), FormulaError::kNone);
  EXPECT_EQ(error_of_number(kEmptyNumber), FormulaError::kNone);
  const char* names[] = {"#VALUE!", "#NAME?", "#REF!", "#NULL!", "#MEMORY!", "#DATA!", "#SYNTAX!"};
  for (int i = 0; i < 7; ++i) {
    const auto error = static_cast<FormulaError>(32 * (i + 1));
    EXPECT_EQ(formula_error_text(error), names[i]);
    EXPECT_EQ(formula_error_named(names[i]), error);
  }
  EXPECT_EQ(formula_error_named("#data!"), FormulaError::kData);
  EXPECT_EQ(formula_error_named("#N/A"), FormulaError::kNone);
}

}  // namespace
}  // namespace rowvane
