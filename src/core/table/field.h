// The definition of a field.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/table/column.h"

namespace rowvane {

// One byte with one bit set; the codes stand in files.
enum class FieldType : uint8_t {
  kText = 1,
  kNumber = 2,
  kLongText = 4,
  kFiles = 8,
  kCode = 16,
};

bool is_field_type(uint8_t code);
// True for the types whose values lie outside the record: long text, code, images and files.
bool is_outside_record(FieldType type);
// "Text", "Text / Link", "Number", "Long Text", "Images/Files", "Code".
std::string_view field_type_name(FieldType type, bool link = false);

// An empty column for values of TYPE.
Column make_column(FieldType type);

// In pixels at 96 dots an inch.
inline constexpr uint16_t kDefaultColumnWidth = 100;
inline constexpr uint16_t kLeastColumnWidth = 10;
inline constexpr uint16_t kMostColumnWidth = 5000;

// Tells a field from all others for as long as the program runs, whatever becomes of its name and its place.
using FieldId = uint64_t;

struct Field {
  std::string name;
  FieldType type = FieldType::kText;
  bool link = false;           // a text that is shown and followed as a link
  bool encrypted = false;      // its values are encrypted in place and can't be edited
  std::string encryption;      // of an encrypted field: what decrypting needs, and its plain type; text
  std::string formula;         // empty: the values are entered
  std::string validation;      // a formula that entered values must satisfy; empty: none
  std::string default_value;   // as text; stored in new records
  std::string drop_down_list;  // name of one of the database's lists; empty: none
  std::string format;          // display format code; empty: the default one
  uint16_t width = kDefaultColumnWidth;
  uint16_t position = 0;  // place among the shown columns, from 0
  bool hidden = false;

  bool operator==(const Field&) const = default;
};

// As lists show a field: "Price  [Number]".
std::string field_list_text(const Field& field);

}  // namespace rowvane
