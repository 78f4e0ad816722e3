#include "core/table/field.h"

namespace rowvane {

bool is_field_type(uint8_t code) {
  return code == 1 || code == 2 || code == 4 || code == 8 || code == 16;
}

bool is_outside_record(FieldType type) {
  return type != FieldType::kText && type != FieldType::kNumber;
}

std::string_view field_type_name(FieldType type, bool link) {
  switch (type) {
    case FieldType::kText:
      return link ? "Text / Link" : "Text";
    case FieldType::kNumber:
      return "Number";
    case FieldType::kLongText:
      return "Long Text";
    case FieldType::kFiles:
      return "Images/Files";
    case FieldType::kCode:
      return "Code";
  }
  return {};
}

Column make_column(FieldType type) {
  switch (type) {
    case FieldType::kText:
      return TextColumn();
    case FieldType::kNumber:
      return NumberColumn();
    case FieldType::kFiles:
      return FilesColumn();
    case FieldType::kLongText:
    case FieldType::kCode:
      break;
  }
  return ContentColumn();
}

std::string field_list_text(const Field& field) {
  return field.name + "  [" + std::string(field_type_name(field.type, field.link)) + "]";
}

}  // namespace rowvane
