#include "exchange/text/text_file_settings.h"

#include <algorithm>

#include "platform/code_pages.h"

namespace rowvane {

const std::array<TextCodePage, 36> kTextCodePages = {{
    {0, "Default ANSI code page"},
    {1, "Default OEM code page"},
    {437, "OEM United States"},
    {737, "OEM Greek"},
    {775, "OEM Baltic"},
    {850, "OEM Multilingual Latin 1"},
    {852, "OEM Latin 2"},
    {855, "OEM Cyrillic"},
    {857, "OEM Turkish"},
    {858, "OEM Multilingual + Euro"},
    {860, "OEM Portuguese"},
    {861, "OEM Icelandic"},
    {862, "OEM Hebrew"},
    {863, "OEM French Canadian"},
    {865, "OEM Nordic"},
    {866, "OEM Russian"},
    {869, "Modern Greek"},
    {1250, "ANSI Central European"},
    {1251, "ANSI Cyrillic"},
    {1252, "ANSI Western European"},
    {1253, "ANSI Greek"},
    {1254, "ANSI Turkish"},
    {1255, "ANSI Hebrew"},
    {1256, "ANSI Arabic"},
    {1257, "ANSI Baltic"},
    {28591, "ISO 8859-1 Western European"},
    {28592, "ISO 8859-2 Central European"},
    {28593, "ISO 8859-3 Latin 3"},
    {28594, "ISO 8859-4 Baltic"},
    {28595, "ISO 8859-5 Cyrillic"},
    {28596, "ISO 8859-6 Arabic"},
    {28597, "ISO 8859-7 Greek"},
    {28598, "ISO 8859-8 Hebrew"},
    {28599, "ISO 8859-9 Turkish"},
    {28603, "ISO 8859-13 Estonian"},
    {28605, "ISO 8859-15 Latin 9"},
}};

unsigned code_page_of(uint8_t encoding) {
  const size_t row = static_cast<size_t>(encoding) - TextFileSettings::kFirstCodePage;
  return row < kTextCodePages.size() ? kTextCodePages[row].number : 0;
}

std::optional<uint8_t> encoding_of_code_page(unsigned number) {
  const auto found = std::ranges::find(kTextCodePages, number, &TextCodePage::number);
  if (found == kTextCodePages.end()) return std::nullopt;
  return static_cast<uint8_t>(TextFileSettings::kFirstCodePage + (found - kTextCodePages.begin()));
}

namespace {

bool can_delimit(uint8_t character, bool uses_code_page) {
  return character != 0 && character != '\r' && character != '\n' && (character < 0x80 || uses_code_page);
}

Check check_delimiters(const TextFileSettings& settings) {
  if (settings.has_fixed_widths()) return {};
  const bool quoting = (settings.flags & TextFileSettings::kQuoting) != 0;
  if (settings.is_separated() && !can_delimit(settings.separator, settings.uses_code_page())) {
    return "This character can't be the field separator. Please enter another one.";
  }
  if (quoting && !can_delimit(settings.quoting_symbol, settings.uses_code_page())) {
    return "This character can't be the quoting symbol. Please enter another one.";
  }
  if (settings.is_quoting() && settings.separator == settings.quoting_symbol) {
    return "The field separator and the quoting symbol must be different characters.";
  }
  return {};
}

Check check_encoding(const TextFileSettings& settings) {
  if (settings.encoding < TextFileSettings::kUtf8 || settings.encoding > kLastEncoding) {
    return "Please select a text encoding.";
  }
  if (!settings.uses_code_page()) return {};
  const unsigned page = code_page_of(settings.encoding);
  if (platform::CodePage::open(page) != nullptr) return {};
  return "The code page " + std::to_string(page) + " isn't installed on this computer.";
}

}  // namespace

Check check_text_settings(const TextFileSettings& settings) {
  Check check = check_encoding(settings);
  return check.passes() ? check_delimiters(settings) : check;
}

}  // namespace rowvane
