// Small tables for the tests of the export.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/table/work_sheet.h"

namespace rowvane {

struct TestField {
  std::string name;
  FieldType type;
  std::vector<CellValue> cells;
};

// A table whose columns are all as long as the first.
inline TableData table_data(const std::vector<TestField>& fields) {
  TableData data;
  for (const TestField& test_field : fields) {
    Field field;
    field.name = test_field.name;
    field.type = test_field.type;
    Column column = make_column(field.type);
    resize_column(column, fields.front().cells.size());
    for (size_t i = 0; i < test_field.cells.size(); ++i) store_value(column, i, test_field.cells[i]);
    data.fields.push_back(std::move(field));
    data.columns.push_back(std::move(column));
  }
  data.record_count = static_cast<uint32_t>(fields.front().cells.size());
  return data;
}

inline CWorkSheet test_table(const std::vector<TestField>& fields) {
  return CWorkSheet("sample", table_data(fields));
}

inline CWorkSheet text_table(std::vector<CellValue> cells) {
  return test_table({{"a", FieldType::kText, std::move(cells)}});
}

inline CellValue text(std::string value) {
  return value;
}

}  // namespace rowvane
