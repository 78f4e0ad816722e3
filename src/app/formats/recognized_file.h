// What a file is taken for by its content and its name.
#pragma once

#include <string>

#include "app/formats/file_format.h"

namespace rowvane {

// Decided once, before the file is opened.
struct RecognizedFile {
  std::string path;
  const FileFormat* format = nullptr;  // null: none that is known
  TextFileSettings text;               // how a text of its name and content is read
  std::string refusal;                 // why it can't be opened, in a sentence with its name; empty: it can

  // The user says what it is.
  void take_as(const FileFormat& wanted);
};

// By the content first, then by the extension; what is left is a text, unless its bytes are none. A file that
// can't be read is left to `open`, which says why.
RecognizedFile recognize_file(const std::string& path);

// What a table is exported to PATH as: its extension tells. One that belongs to no format is that of a text.
struct ExportTarget {
  const FileFormat* format = nullptr;  // never null
  TextFileSettings text;               // how a text of that name is written
  std::string refusal;                 // why that can't be, in a sentence with its name; empty: it can
};
ExportTarget export_target(const std::string& path);

}  // namespace rowvane
