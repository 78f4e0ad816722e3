// The settings of a text file that is opened or saved.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/limits.h"
#include "core/messages/check.h"

namespace rowvane {

// One record, copied whole into saved settings and into the parser's state.
struct TextFileSettings {
  // Bits of column_options: the type choice in the low three, and dates.
  static constexpr uint8_t kAuto = 0;
  static constexpr uint8_t kText = 1;
  static constexpr uint8_t kNumber = 2;
  static constexpr uint8_t kLongText = 4;
  static constexpr uint8_t kTypeMask = 0x07;
  static constexpr uint8_t kParseDates = 0x40;
  // Bits of flags.
  static constexpr uint8_t kFieldNames = 0x01;  // the first row holds the field names
  static constexpr uint8_t kQuoting = 0x20;
  static constexpr uint8_t kSeparated = 0x40;  // cleared: each line is one field
  // Bits of options.
  static constexpr uint8_t kAnalyze = 0x01;
  static constexpr uint8_t kConvertDates = 0x02;
  // Values of encoding; from kFirstCodePage on, entry (value - 3) of kTextCodePages.
  static constexpr uint8_t kUtf8 = 1;
  static constexpr uint8_t kUtf16 = 2;
  static constexpr uint8_t kFirstCodePage = 3;

  std::array<uint8_t, kMaxImportColumns> column_options{};
  uint8_t separator = ',';
  uint8_t fixed_widths_on = 0;
  std::array<uint16_t, kMaxImportColumns> fixed_widths{};  // in characters; 0 ends the list
  uint8_t flags = kFieldNames | kQuoting | kSeparated;
  uint8_t quoting_symbol = '"';
  uint8_t encoding = kUtf8;
  uint8_t options = kAnalyze;

  bool has_field_names() const { return (flags & kFieldNames) != 0; }
  bool is_separated() const { return (flags & kSeparated) != 0; }
  // Quoting needs a separator.
  bool is_quoting() const { return (flags & kQuoting) != 0 && is_separated(); }
  bool has_fixed_widths() const { return fixed_widths_on != 0; }
  bool uses_code_page() const { return encoding >= kFirstCodePage; }
  bool analyzes() const { return (options & kAnalyze) != 0; }
  uint8_t type_choice(size_t column) const { return column_options[column] & kTypeMask; }
  bool parses_dates(size_t column) const {
    return (options & kConvertDates) != 0 || (column_options[column] & kParseDates) != 0;
  }
  void set(uint8_t& bits, uint8_t bit, bool on) {
    bits = static_cast<uint8_t>(on ? bits | bit : bits & ~bit);
  }

  bool operator==(const TextFileSettings&) const = default;
};

struct TextCodePage {
  unsigned number;             // Windows code page; 0 default ANSI, 1 default OEM
  std::string_view list_text;  // "ANSI Cyrillic"
};
// Encoding value 3 is the first entry.
extern const std::array<TextCodePage, 36> kTextCodePages;

inline constexpr uint8_t kLastEncoding = TextFileSettings::kFirstCodePage + 35;

// The Windows code page of an encoding value from kFirstCodePage on; 0 for any other value.
unsigned code_page_of(uint8_t encoding);
// The encoding value for a code page number; nothing when the table has none.
std::optional<uint8_t> encoding_of_code_page(unsigned number);

// Refuses settings that no text file can have: an encoding that is none or that the
// system lacks; a separator or quoting symbol that is a line break or zero, or, in the Unicode encodings, not
// ASCII; both the same. What the settings don't use is not looked at.
Check check_text_settings(const TextFileSettings& settings);

}  // namespace rowvane
