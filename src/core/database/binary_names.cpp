#include "core/database/binary_names.h"

#include <cstdio>

namespace rowvane {

std::string_view long_text_file_name(std::string_view beginning) {
  const bool rich = beginning.starts_with("{\\rtf") || beginning.starts_with("{urtf");
  return rich ? kRichTextFileName : kPlainTextFileName;
}

std::string binary_folder_name(std::string_view database_name, std::string_view table_name,
                               RecordNumber record, size_t field) {
  char place[40];
  std::snprintf(place, sizeof place, ".r%09uf%05zu/", record.number(), field);
  std::string name(database_name);
  name += kBinaryFolderEnd;
  name += table_name;
  return name += place;
}

}  // namespace rowvane
