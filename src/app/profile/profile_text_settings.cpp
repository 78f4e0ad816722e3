#include "app/profile/profile_text_settings.h"

#include <algorithm>
#include <optional>

#include <pugixml.hpp>

#include "app/profile/profile_values.h"
#include "exchange/text/text_settings_dialog.h"

namespace rowvane::profile {
namespace {

constexpr NumberRange kByte{0, 255};

// A byte as a character where it is a visible one, otherwise as "#%d".
std::string symbol_text(uint8_t symbol) {
  if (symbol > 0x20 && symbol < 0x7F) return std::string(1, static_cast<char>(symbol));
  return "#" + number_text(symbol);
}

std::optional<uint8_t> parse_symbol(std::string_view text) {
  if (text.size() == 1) return static_cast<uint8_t>(text[0]);
  if (!text.starts_with('#')) return std::nullopt;
  const auto number = parse_number(text.substr(1), NumberRange{1, 255});
  return number ? std::optional(static_cast<uint8_t>(*number)) : std::nullopt;
}

// Runs up to the last that is not 0: "0*3,66" for three columns without options and one with 66.
std::string column_options_text(const TextFileSettings& settings) {
  const auto& options = settings.column_options;
  std::string text;
  for (size_t column = 0; column < options.size();) {
    const uint8_t option = options[column];
    size_t end = column;
    while (end < options.size() && options[end] == option) ++end;
    if (end == options.size() && option == 0) break;
    if (!text.empty()) text += ',';
    text += number_text(option);
    if (end - column > 1) text += "*" + number_text(static_cast<int64_t>(end - column));
    column = end;
  }
  return text;
}

bool parse_column_options(std::string_view text, TextFileSettings& settings) {
  constexpr uint8_t kKnown = TextFileSettings::kTypeMask | TextFileSettings::kParseDates;
  auto options = decltype(settings.column_options){};
  for (size_t column = 0; !text.empty();) {
    const std::string_view run = text.substr(0, text.find(','));
    const size_t star = run.find('*');
    const auto option = parse_number(run.substr(0, star), kByte);
    const auto left = static_cast<int64_t>(options.size() - column);
    const auto count = star == std::string_view::npos ? std::optional<int64_t>(1)
                                                      : parse_number(run.substr(star + 1), {1, left});
    if (!option || (*option & ~int64_t{kKnown}) != 0 || !count || *count > left) return false;
    std::fill_n(options.begin() + static_cast<std::ptrdiff_t>(column), *count, static_cast<uint8_t>(*option));
    column += static_cast<size_t>(*count);
    text.remove_prefix(std::min(run.size() + 1, text.size()));
  }
  settings.column_options = options;
  return true;
}

bool parse_column_widths(std::string_view text, TextFileSettings& settings) {
  const auto widths = parse_widths(text);
  if (!widths || widths->size() > settings.fixed_widths.size()) return false;
  settings.fixed_widths.fill(0);
  std::ranges::copy(*widths, settings.fixed_widths.begin());
  return true;
}

bool parse_bit(std::string_view text, uint8_t bit, TextFileSettings& settings) {
  const auto on = parse_flag(text);
  if (on) settings.set(settings.flags, bit, *on);
  return on.has_value();
}

bool parse_byte(std::string_view text, NumberRange range, uint8_t& byte) {
  const auto number = parse_number(text, range);
  if (number) byte = static_cast<uint8_t>(*number);
  return number.has_value();
}

bool parse_symbol_into(std::string_view text, uint8_t& byte) {
  const auto symbol = parse_symbol(text);
  if (symbol) byte = *symbol;
  return symbol.has_value();
}

// One attribute: how it is written and read. `read` answers false for a bad value, which changes nothing.
struct TextAttribute {
  const char* name;
  std::string (*write)(const TextFileSettings&);
  bool (*read)(std::string_view, TextFileSettings&);
};

using Given = const TextFileSettings&;
using Text = std::string_view;
using Taken = TextFileSettings&;

// clang-format off
constexpr TextAttribute kAttributes[] = {
    {"Separator", [](Given s) { return symbol_text(s.separator); },
     [](Text text, Taken s) { return parse_symbol_into(text, s.separator); }},
    {"UseSeparator", [](Given s) { return flag_text(s.is_separated()); },
     [](Text text, Taken s) { return parse_bit(text, TextFileSettings::kSeparated, s); }},
    {"QuotingSymbol", [](Given s) { return symbol_text(s.quoting_symbol); },
     [](Text text, Taken s) { return parse_symbol_into(text, s.quoting_symbol); }},
    {"UseQuoting", [](Given s) { return flag_text((s.flags & TextFileSettings::kQuoting) != 0); },
     [](Text text, Taken s) { return parse_bit(text, TextFileSettings::kQuoting, s); }},
    {"UseFixedWidths", [](Given s) { return flag_text(s.has_fixed_widths()); },
     [](Text text, Taken s) {
       const auto on = parse_flag(text);
       if (on) s.fixed_widths_on = *on ? 1 : 0;
       return on.has_value();
     }},
    {"Encoding", [](Given s) { return number_text(s.encoding); },
     [](Text text, Taken s) { return parse_byte(text, {TextFileSettings::kUtf8, kLastEncoding}, s.encoding); }},
    {"Parsing", [](Given s) { return number_text(s.options); },
     [](Text text, Taken s) {
       return parse_byte(text, {0, TextFileSettings::kAnalyze | TextFileSettings::kConvertDates}, s.options);
     }},
    {"FieldNames", [](Given s) { return flag_text(s.has_field_names()); },
     [](Text text, Taken s) { return parse_bit(text, TextFileSettings::kFieldNames, s); }},
    {"ColumnWidths", [](Given s) { return show_widths(s); }, parse_column_widths},
    {"ColumnOptions", column_options_text, parse_column_options},
};
// clang-format on

}  // namespace

void read_text_file_options(const pugi::xml_node& node, TextFileSettings& settings,
                            std::vector<std::string>& bad) {
  for (const TextAttribute& attribute : kAttributes) {
    const pugi::xml_attribute found = node.attribute(attribute.name);
    if (found && !attribute.read(found.value(), settings)) {
      bad.push_back(std::string(kTextFileOptions) + "/" + attribute.name);
    }
  }
}

void write_text_file_options(const TextFileSettings& settings, pugi::xml_node& node) {
  for (const TextAttribute& attribute : kAttributes) {
    pugi::xml_attribute target = node.attribute(attribute.name);
    if (!target) target = node.append_attribute(attribute.name);
    target.set_value(attribute.write(settings).c_str());
  }
}

}  // namespace rowvane::profile
