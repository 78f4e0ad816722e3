// The settings of text files as the dialogs for opening and saving one show and read them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/check.h"
#include "exchange/text/text_file_settings.h"

namespace rowvane {

// The entries of the separator list, in list order.
enum SeparatorChoice : int {
  kCommaSeparator,
  kTabSeparator,
  kPointSeparator,
  kSemicolonSeparator,
  kSpaceSeparator,
  kOtherSeparator,  // the character in the box beside the list
  kNoSeparator,
};
inline constexpr std::array<std::string_view, 7> kSeparatorListTexts = {
    "comma", "tab", "point", "semicolon", "space", "other", "(none)"};

enum EncodingChoice : int { kUtf8Encoding, kUtf16Encoding, kCodePageEncoding };
inline constexpr std::array<std::string_view, 3> kEncodingListTexts = {"UTF-8", "UTF-16", "ANSI/OEM/ISO"};

inline constexpr int kNothingSelected = -1;  // in a list
inline constexpr size_t kMaxWidthsText = 49'152;
inline constexpr std::string_view kWidthsHint =
    "Enter widths in characters of the subsequent fields.\nSeparate the values with commas. For example, "
    "10,8,15";

// The controls that both dialogs have. Texts are UTF-8.
struct TextSettingsControls {
  int separator = kCommaSeparator;
  std::string other_separator;
  bool fixed_widths = false;
  std::string widths;
  bool quoting = true;
  std::string quoting_symbol = "\"";
  int encoding = kUtf8Encoding;
  int code_page = kNothingSelected;  // row of kTextCodePages
  bool field_names = true;
  bool analyze = true;         // the open dialog only
  bool convert_dates = false;  // the open dialog only

  bool operator==(const TextSettingsControls&) const = default;
};

// The controls that show SETTINGS.
TextSettingsControls show_text_settings(const TextFileSettings& settings);
// What is wrong with the controls, for a dialog that then stays open.
Check check_text_settings_controls(const TextSettingsControls& controls);
// BEFORE with what the controls say; its column options stay, and so do values whose controls are off or
// empty. The controls must have passed check_text_settings_controls.
TextFileSettings read_text_settings(const TextSettingsControls& controls, const TextFileSettings& before);

// The widths in TEXT: runs of digits, separated by blanks, commas and semicolons. Nothing for any other
// character, for a width above 65,535, more than 16,384 widths, a text of more than kMaxWidthsText bytes, and
// a width behind a 0, which ends the list.
std::optional<std::vector<uint16_t>> parse_widths(std::string_view text);
// The widths of SETTINGS up to the first 0: "10,8,15".
std::string show_widths(const TextFileSettings& settings);

// Questions before a text file is opened.
// When the open dialog is confirmed with the conversion of dates on:
Check check_date_conversion(const TextFileSettings& settings);
// When one of the two options is chosen:
Check check_auto_fit(bool column_widths, bool row_heights);

}  // namespace rowvane
