#include "cli/text_options.h"

#include <algorithm>
#include <charconv>

#include <CLI/CLI.hpp>

#include "exchange/text/text_settings_dialog.h"
#include "platform/ascii.h"

namespace rowvane::cli {
namespace {

std::string apply_separator(const std::string& text, TextFileSettings& settings) {
  TextSettingsControls controls = show_text_settings(settings);
  const std::string name = ascii::to_lower(text);
  const auto* listed = std::find(kSeparatorListTexts.begin(), kSeparatorListTexts.end(), name);
  if (name == "none") {
    controls.separator = kNoSeparator;
  } else if (listed != kSeparatorListTexts.end() && name != kSeparatorListTexts[kOtherSeparator]) {
    controls.separator = static_cast<int>(listed - kSeparatorListTexts.begin());
  } else {
    controls.separator = text == "\t" ? kTabSeparator : kOtherSeparator;
    controls.other_separator = text;
  }
  const Check check = check_text_settings_controls(controls);
  if (!check.passes()) return "--separator: " + check.refusal.text();
  settings = read_text_settings(controls, settings);
  return {};
}

std::string apply_widths(const std::string& text, TextFileSettings& settings) {
  TextSettingsControls controls = show_text_settings(settings);
  controls.fixed_widths = true;
  controls.widths = text;
  const Check check = check_text_settings_controls(controls);
  if (!check.passes()) return "--widths: " + check.refusal.text();
  settings = read_text_settings(controls, settings);
  return {};
}

std::string apply_quote(const std::string& text, TextFileSettings& settings) {
  const bool quoting = ascii::to_lower(text) != "none";
  if (quoting && text.size() != 1) return "--quote takes one character or none";
  settings.set(settings.flags, TextFileSettings::kQuoting, quoting);
  if (quoting) settings.quoting_symbol = static_cast<uint8_t>(text[0]);
  return {};
}

std::string apply_encoding(const std::string& text, TextFileSettings& settings) {
  const std::string name = ascii::to_lower(text);
  std::optional<uint8_t> encoding;
  if (name == "utf-8" || name == "utf8") {
    encoding = TextFileSettings::kUtf8;
  } else if (name == "utf-16" || name == "utf16") {
    encoding = TextFileSettings::kUtf16;
  } else if (name == "ansi" || name == "oem") {
    encoding = encoding_of_code_page(name == "ansi" ? 0 : 1);
  } else {
    const size_t start = name.starts_with("cp") ? 2 : 0;
    unsigned number = 0;
    const auto result = std::from_chars(name.data() + start, name.data() + name.size(), number);
    if (result.ec == std::errc() && result.ptr == name.data() + name.size())
      encoding = encoding_of_code_page(number);
  }
  if (!encoding) return "--encoding takes utf-8, utf-16, ansi, oem or the number of a code page such as 1252";
  settings.encoding = *encoding;
  return {};
}

std::string apply_types(const std::vector<std::string>& types, TextFileSettings& settings) {
  for (size_t i = 0; i < types.size() && i < settings.column_options.size(); ++i) {
    const std::string type = ascii::to_lower(types[i]);
    uint8_t choice = TextFileSettings::kAuto;
    if (type == "text") {
      choice = TextFileSettings::kText;
    } else if (type == "number") {
      choice = TextFileSettings::kNumber;
    } else if (type == "longtext") {
      choice = TextFileSettings::kLongText;
    } else if (type != "auto" && !type.empty()) {
      return "--types takes Auto, Text, Number and LongText";
    }
    settings.column_options[i] = choice;
  }
  return {};
}

}  // namespace

void TextOptions::add_to(CLI::App& command, bool reading) {
  if (reading) {
    command.add_option("--as", as, "Read the file as this, whatever its content and its name tell")
        ->check(CLI::IsMember(format_names(&FileFormat::can_open)));
  }
  const std::string group = reading ? "Reading text files" : "Writing text files";
  command
      .add_option("--separator", separator,
                  "Character between fields, or its name: comma, tab, semicolon, "
                  "space, point, none")
      ->group(group);
  command.add_option("--widths", widths, "Fixed field widths in characters, such as 10,8,15")->group(group);
  command.add_option("--quote", quote, "Quoting symbol, or none")->group(group);
  command.add_option("--encoding", encoding, "utf-8, utf-16, ansi, oem or a code page number")->group(group);
  command.add_flag("--no-header", no_header, "The first row holds no field names")->group(group);
  if (!reading) return;
  command.add_flag("--no-analyze", no_analyze, "Load all columns as text")->group(group);
  command.add_flag("--parse-dates", parse_dates, "Convert dates to YYYY-MM-DD(Thh:mm:ss)")->group(group);
  command.add_option("--types", types, "Type of each column: Auto, Text, Number, LongText")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->group(group);
}

std::string TextOptions::apply(TextFileSettings& settings) const {
  std::string wrong;
  if (!separator.empty()) wrong = apply_separator(separator, settings);
  if (wrong.empty() && !widths.empty()) wrong = apply_widths(widths, settings);
  if (wrong.empty() && !quote.empty()) wrong = apply_quote(quote, settings);
  if (wrong.empty() && !encoding.empty()) wrong = apply_encoding(encoding, settings);
  if (wrong.empty()) wrong = apply_types(types, settings);
  if (no_header) settings.set(settings.flags, TextFileSettings::kFieldNames, false);
  if (no_analyze) settings.set(settings.options, TextFileSettings::kAnalyze, false);
  if (parse_dates) settings.set(settings.options, TextFileSettings::kConvertDates, true);
  return wrong;
}

bool TextOptions::tell_of_text() const {
  const bool told = !separator.empty() || !widths.empty() || !quote.empty() || !encoding.empty();
  return told || no_header || no_analyze || parse_dates || !types.empty();
}

std::string TextOptions::apply(RecognizedFile& file) const {
  if (!as.empty()) {
    file.take_as(*format_named(as));
  } else if (tell_of_text() && !file.refusal.empty()) {
    file.take_as(text_format());
  }
  return apply(file.text);
}

}  // namespace rowvane::cli
