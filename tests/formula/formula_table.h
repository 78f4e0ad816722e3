// The formulas of the data files, and values as they are written there.
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "formula/evaluation/formula_evaluator.h"
#include "source_folder.h"

namespace rowvane {

struct TableRow {
  int line = 0;
  SeparatorSet set = SeparatorSet::kGeneric;
  std::vector<std::string> cells;  // the first is the formula
};

inline std::string with_control_characters(std::string text) {
  for (const auto& [picture, character] :
       {std::pair("␉", '\t'), std::pair("␤", '\n'), std::pair("␍", '\r')}) {
    for (size_t at = text.find(picture); at != std::string::npos; at = text.find(picture)) {
      text.replace(at, std::string_view(picture).size(), 1, character);
    }
  }
  return text;
}

// Whether lines that begin with "#" are comments.
enum class TableComments { kNone, kHash };

inline std::vector<TableRow> read_formula_table(const std::string& name,
                                                TableComments comments = TableComments::kHash) {
  const std::string path = std::string(kSourceFolder) + "/tests/formula/data/" + name;
  std::ifstream file(path);
  std::vector<TableRow> rows;
  SeparatorSet set = SeparatorSet::kGeneric;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line == "!regional") set = SeparatorSet::kRegional;
    if (line == "!generic") set = SeparatorSet::kGeneric;
    if (line.empty() || line.front() == '!') continue;
    if (line.front() == '#' && comments == TableComments::kHash) continue;
    TableRow row{number, set, {}};
    for (size_t from = 0; from <= line.size();) {
      const size_t end = std::min(line.find('\t', from), line.size());
      row.cells.push_back(with_control_characters(line.substr(from, end - from)));
      from = end + 1;
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

// Comma for decimals, ";" between arguments, "|" between rows.
inline FormulaSettings comma_settings() {
  platform::RegionalSettings region = platform::RegionalSettings::generic();
  region.decimal_separator = ",";
  region.list_separator = ";";
  return formula_settings_of(region);
}

inline std::string written(const Scalar& value, const ScalarContext& context) {
  if (value.is_empty()) return "empty";
  if (value.is_error()) return std::string(formula_error_text(value.error));
  if (value.is_text()) return '"' + std::string(value.text) + '"';
  return std::string(context.area.number_text(value.number, context.active.numbers.decimal));
}

inline std::string written(const ArrayView& array, const ScalarContext& context) {
  std::string out = "{";
  for (size_t i = 0; i < array.size(); ++i) {
    if (i > 0) out += i % array.columns == 0 ? context.active.row : context.active.list;
    out += written(array.cells[i], context);
  }
  return out + "}";
}

// The result of EVALUATOR, which answered KIND for FORMULA.
inline std::string written_result(FormulaEvaluator& evaluator, Kind kind) {
  return kind == Kind::kArray ? written(evaluator.array_result(), evaluator.context())
                              : written(evaluator.result(), evaluator.context());
}

}  // namespace rowvane
