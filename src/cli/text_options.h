// The options of the commands that say what a file is: its format, and how text files are read and written.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/formats/recognized_file.h"

namespace CLI {
class App;
}

namespace rowvane::cli {

// As typed; what is not given stays as the file's name suggests.
struct TextOptions {
  std::string as;         // name of a format
  std::string separator;  // one character, "tab", "comma", "point", "semicolon", "space" or "none"
  std::string widths;     // "10,8,15"
  std::string quote;      // one character or "none"
  std::string encoding;   // "utf-8", "utf-16", or a code page number, "ansi", "oem"
  bool no_header = false;
  bool no_analyze = false;
  bool parse_dates = false;
  std::vector<std::string> types;  // Auto, Text, Number, LongText, by column

  // Adds the options for reading, or those for writing, to COMMAND.
  void add_to(CLI::App& command, bool reading);

  // Changes SETTINGS accordingly; answers what is wrong, or an empty text.
  std::string apply(TextFileSettings& settings) const;
  // The same for a file that is read, with its format. Who says how a text is read says that it is one,
  // unless the file can be read as what it is.
  std::string apply(RecognizedFile& file) const;

 private:
  bool tell_of_text() const;
};

}  // namespace rowvane::cli
