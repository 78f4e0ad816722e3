#include "exchange/text/text_settings_dialog.h"

#include <algorithm>

#include "core/messages/messages.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

// The characters of the separator list before "other".
constexpr std::array<char, 5> kListedSeparators = {',', '\t', '.', ';', ' '};

bool is_single_character(std::string_view text) {
  return is_valid_utf8(text) && count_characters(text) == 1;
}

bool is_row(int selection, size_t rows) {
  return selection >= 0 && static_cast<size_t>(selection) < rows;
}

void show_separator(const TextFileSettings& settings, TextSettingsControls& controls) {
  if (!settings.is_separated()) {
    controls.separator = kNoSeparator;
    return;
  }
  const auto found = std::ranges::find(kListedSeparators, static_cast<char>(settings.separator));
  controls.separator = static_cast<int>(found - kListedSeparators.begin());
  if (controls.separator == kOtherSeparator) append_character(settings.separator, controls.other_separator);
}

void read_separator(const TextSettingsControls& controls, TextFileSettings& settings) {
  settings.set(settings.flags, TextFileSettings::kSeparated, controls.separator != kNoSeparator);
  if (controls.separator == kNoSeparator) return;
  const bool other = controls.separator == kOtherSeparator;
  const char separator =
      other ? controls.other_separator.front() : kListedSeparators[static_cast<size_t>(controls.separator)];
  settings.separator = static_cast<uint8_t>(separator);
}

void read_widths(const TextSettingsControls& controls, TextFileSettings& settings) {
  settings.fixed_widths_on = controls.fixed_widths ? 1 : 0;
  if (!controls.fixed_widths) return;
  settings.fixed_widths.fill(0);
  const auto widths = parse_widths(controls.widths);
  if (widths) std::ranges::copy(*widths, settings.fixed_widths.begin());
}

uint8_t read_encoding(const TextSettingsControls& controls) {
  if (controls.encoding == kUtf16Encoding) return TextFileSettings::kUtf16;
  if (controls.encoding != kCodePageEncoding) return TextFileSettings::kUtf8;
  return static_cast<uint8_t>(TextFileSettings::kFirstCodePage + std::max(controls.code_page, 0));
}

Check check_selections(const TextSettingsControls& controls) {
  if (!is_row(controls.separator, kSeparatorListTexts.size())) return "Please select a field separator.";
  const bool encoding_fits =
      controls.encoding == kNothingSelected || is_row(controls.encoding, kEncodingListTexts.size());
  const bool code_page_fits =
      controls.code_page == kNothingSelected || is_row(controls.code_page, kTextCodePages.size());
  return encoding_fits && code_page_fits ? Check() : Check("Please select a text encoding.");
}

Check check_boxes(const TextSettingsControls& controls) {
  if (controls.separator == kOtherSeparator) {
    const std::string& other = controls.other_separator;
    if (!is_single_character(other)) return "Please enter one character as the field separator.";
    // The separator is one byte.
    if (!is_ascii(other)) return "Please enter a field separator that is a plain ASCII character.";
  }
  if (!is_single_character(controls.quoting_symbol) &&
      (controls.quoting || !controls.quoting_symbol.empty())) {
    return "Please enter one character as the quoting symbol.";
  }
  if (controls.fixed_widths && !parse_widths(controls.widths)) return kWidthsHint;
  return {};
}

}  // namespace

TextSettingsControls show_text_settings(const TextFileSettings& settings) {
  TextSettingsControls controls;
  show_separator(settings, controls);
  controls.fixed_widths = settings.has_fixed_widths();
  controls.widths = show_widths(settings);
  controls.quoting = (settings.flags & TextFileSettings::kQuoting) != 0;
  controls.quoting_symbol.clear();
  append_character(settings.quoting_symbol, controls.quoting_symbol);
  if (settings.uses_code_page()) {
    controls.encoding = kCodePageEncoding;
    controls.code_page = settings.encoding - TextFileSettings::kFirstCodePage;
  } else {
    controls.encoding = settings.encoding == TextFileSettings::kUtf16 ? kUtf16Encoding : kUtf8Encoding;
  }
  controls.field_names = settings.has_field_names();
  controls.analyze = settings.analyzes();
  controls.convert_dates = (settings.options & TextFileSettings::kConvertDates) != 0;
  return controls;
}

Check check_text_settings_controls(const TextSettingsControls& controls) {
  Check check = check_selections(controls);
  if (check.passes()) check = check_boxes(controls);
  if (check.passes()) check = check_text_settings(read_text_settings(controls, TextFileSettings()));
  return check;
}

TextFileSettings read_text_settings(const TextSettingsControls& controls, const TextFileSettings& before) {
  TextFileSettings settings = before;
  read_separator(controls, settings);
  read_widths(controls, settings);
  settings.set(settings.flags, TextFileSettings::kQuoting, controls.quoting);
  if (!controls.quoting_symbol.empty()) {
    settings.quoting_symbol = static_cast<uint8_t>(controls.quoting_symbol.front());
  }
  settings.encoding = read_encoding(controls);
  settings.set(settings.flags, TextFileSettings::kFieldNames, controls.field_names);
  settings.set(settings.options, TextFileSettings::kAnalyze, controls.analyze);
  settings.set(settings.options, TextFileSettings::kConvertDates, controls.convert_dates);
  return settings;
}

std::optional<std::vector<uint16_t>> parse_widths(std::string_view text) {
  if (text.size() > kMaxWidthsText) return std::nullopt;
  std::vector<uint16_t> widths;
  for (size_t i = 0; i < text.size();) {
    if (text[i] == ' ' || text[i] == ',' || text[i] == ';') {
      ++i;
      continue;
    }
    const size_t start = i;
    uint32_t width = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
      width = width * 10 + static_cast<uint32_t>(text[i] - '0');
      if (width > UINT16_MAX) return std::nullopt;
    }
    const bool behind_end = !widths.empty() && widths.back() == 0;
    if (i == start || behind_end || widths.size() == kMaxImportColumns) return std::nullopt;
    widths.push_back(static_cast<uint16_t>(width));
  }
  return widths;
}

std::string show_widths(const TextFileSettings& settings) {
  std::string text;
  for (const uint16_t width : settings.fixed_widths) {
    if (width == 0) break;
    if (!text.empty()) text += ',';
    text += std::to_string(width);
  }
  return text;
}

Check check_date_conversion(const TextFileSettings& settings) {
  const bool converts = (settings.options & TextFileSettings::kConvertDates) != 0;
  return converts ? Check::asking(texts::kParseDatesSlow) : Check();
}

Check check_auto_fit(bool column_widths, bool row_heights) {
  return column_widths || row_heights ? Check::asking(MessageId::kAutoFitSlow) : Check();
}

}  // namespace rowvane
