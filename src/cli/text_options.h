// The text options of the commands: how text files are read and written.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "exchange/text/text_file_settings.h"

namespace CLI {
class App;
}

namespace rowvane::cli {

// As typed; what is not given stays as the file's name suggests.
struct TextOptions {
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
};

}  // namespace rowvane::cli
