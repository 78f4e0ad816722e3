// The tables that the formulas of the tests read.
#pragma once

#include <memory>
#include <vector>

#include "core/database/database.h"

namespace rowvane {

inline Field sample_field(std::string name, FieldType type) {
  Field field;
  field.name = std::move(name);
  field.type = type;
  return field;
}

inline void require(ErrorCode error) {
  if (error != ErrorCode::kOk) throw std::runtime_error(std::string(error_text(error)));
}

inline CWorkSheet* add_sample_table(Database& database, std::string_view folder, std::string name,
                                    std::vector<Field> fields) {
  Folder* target = &database.root();
  if (!folder.empty()) require(database.make_folders(folder, &target));
  auto table = std::make_unique<CWorkSheet>(std::move(name), std::move(fields));
  CWorkSheet* added = table.get();
  require(database.add_table(*target, table));
  return added;
}

// "orders" with two records, "folder/rates" with three, and "empty table".
inline CWorkSheet* add_sample_tables(Database& database) {
  constexpr auto kNumber = FieldType::kNumber;
  constexpr auto kText = FieldType::kText;
  struct Sample {
    const char* name;
    FieldType type;
    CellValue first;
    CellValue second;
  };
  const std::vector<Sample> samples = {
      {"Price", kNumber, 10.0, 20.0},
      {"Quantity", kNumber, 3.0, 1.0},
      {"Unit price", kNumber, 2.5, 4.0},
      {"Unit", kText, "piece", "box"},
      {"Größe", kNumber, 7.0, {}},
      {"Name", kText, "Lamp", "Desk"},
      {"Digits", kText, "42", "x"},
      {"Nothing", kNumber, {}, {}},
      {"Blank", kText, {}, {}},
      {"Failed", kNumber, error_number(FormulaError::kNull), 1.0},
      {"Status", kText, "#DATA!", "#DATA!"},
      {"Notes", FieldType::kLongText, Content::of("a long note"), {}},
      {"a", kNumber, 5.0, 50.0},
      {"b", kNumber, 2.0, 20.0},
      {"a-b", kNumber, 100.0, 200.0},
      {"sum", kNumber, 8.0, 9.0},
      {"Price (EUR)", kNumber, 9.9, 19.9},
      {"Secret", kText, "hidden", "hidden"},
  };
  std::vector<Field> fields;
  for (const Sample& sample : samples) fields.push_back(sample_field(sample.name, sample.type));
  CWorkSheet* orders = add_sample_table(database, "", "orders", std::move(fields));
  require(orders->insert_records(1, 2));
  for (size_t i = 0; i < samples.size(); ++i) {
    require(orders->set_value(1, i, samples[i].first));
    require(orders->set_value(2, i, samples[i].second));
    Field definition = orders->field(i);
    if (definition.name == "Status") definition.formula = "=#DATA!";
    require(orders->change_field(i, definition));
    definition.encrypted = definition.name == "Secret";
    require(orders->replace_column(i, definition, Column(orders->column(i))));
  }
  CWorkSheet* rates = add_sample_table(database, "folder", "rates",
                                       {sample_field("Rate", kNumber), sample_field("Label", kText)});
  require(rates->insert_records(1, 3));
  for (uint32_t record = 1; record <= 3; ++record)
    require(rates->set_value(RecordNumber(record), 0, double(record)));
  require(rates->set_value(1, 1, "x"));
  require(rates->set_value(2, 1, "y"));
  add_sample_table(database, "", "empty table", {sample_field("Field", kNumber)});
  return orders;
}

}  // namespace rowvane
