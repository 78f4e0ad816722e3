// Tables with values of all kinds for the tests of searching.
#pragma once

#include <random>

#include "core/sample_tables.h"

namespace rowvane {

// Short texts that resemble each other: mixed letter case, blanks, digits, letters that fold to several.
inline std::string random_sample_text(std::mt19937& random) {
  static const char* const kParts[] = {"a",  "A",  "b",   "ab", "Red",  "BLUE", "é",  "É",
                                       "ß",  "SS", "12",  "1",  " ",    "  ",   "\n", "x y",
                                       "\"", "#",  "Σας", ".",  "日本", "K",    "-"};
  std::string text;
  for (unsigned i = random() % 4; i > 0; --i) text += kParts[random() % std::size(kParts)];
  return text;
}

inline double random_sample_number(std::mt19937& random) {
  static const double kNumbers[] = {0, -0.0, 1, 2, 5, 5.5, -5, 1e15, 1e-7, 123456789.25, 0.1};
  switch (random() % 8) {
    case 0:
      return kEmptyNumber;
    case 1:
      return error_number(FormulaError::kValue);
    case 2:
      return static_cast<double>(random() % 100) / 4;
    default:
      return kNumbers[random() % std::size(kNumbers)];
  }
}

// "Colour" texts that repeat, "Name" texts that do not, "Price" numbers, "Notes" long texts, "Files", "Code",
// and "Result", a calculated text with errors among its values.
inline std::unique_ptr<CWorkSheet> make_search_table(uint32_t records, unsigned seed) {
  std::mt19937 random(seed);
  TableData data;
  data.record_count = records;
  data.fields = {make_field("Colour"),
                 make_field("Name"),
                 make_field("Price", FieldType::kNumber),
                 make_field("Notes", FieldType::kLongText),
                 make_field("Files", FieldType::kFiles),
                 make_field("Code", FieldType::kCode),
                 make_field("Result")};
  data.fields[6].formula = "=Price/0";
  std::vector<std::string> colours(40);
  for (std::string& colour : colours) colour = random_sample_text(random);
  for (const Field& field : data.fields) {
    Column column = make_column(field.type);
    resize_column(column, records);
    for (uint32_t i = 0; i < records; ++i) {
      CellValue value;
      if (field.name == "Colour") {
        value = colours[random() % colours.size()];
      } else if (field.name == "Name") {
        value = random_sample_text(random) + (random() % 3 > 0 ? std::to_string(i) : "");
      } else if (field.name == "Price") {
        value = random_sample_number(random);
      } else if (field.name == "Result") {
        value = random() % 3 == 0 ? "#VALUE!" : random_sample_text(random);
      } else if (field.type != FieldType::kFiles) {
        const std::string text = random_sample_text(random);
        if (!text.empty()) value = Content::of(text);
      } else if (random() % 3 > 0) {
        FileList files{make_file("photo" + std::to_string(random() % 20) + ".png")};
        if (random() % 2 == 0) files.push_back(make_file("Notes.TXT"));
        value = files;
      }
      if (const auto* text = std::get_if<std::string>(&value); text != nullptr && text->empty())
        value = CellValue();
      store_value(column, i, value);
    }
    data.columns.push_back(std::move(column));
  }
  return std::make_unique<CWorkSheet>("samples", std::move(data));
}

}  // namespace rowvane
