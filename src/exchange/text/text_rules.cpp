#include "exchange/text/text_rules.h"

#include "platform/code_pages.h"

namespace rowvane {
namespace {

std::shared_ptr<const std::array<bool, 256>> lead_bytes_of(uint8_t encoding) {
  const auto page = platform::CodePage::open(code_page_of(encoding));
  if (page == nullptr || page->max_character_bytes() == 1) return nullptr;
  auto leads = std::make_shared<std::array<bool, 256>>();
  for (size_t byte = 0; byte < 256; ++byte)
    (*leads)[byte] = page->is_lead_byte(static_cast<unsigned char>(byte));
  return leads;
}

}  // namespace

TextRules text_rules(const TextFileSettings& settings) {
  TextRules rules;
  rules.separated = settings.is_separated() && !settings.has_fixed_widths();
  rules.quoting = settings.is_quoting() && rules.separated;
  rules.separator = static_cast<char>(settings.separator);
  rules.quote = static_cast<char>(settings.quoting_symbol);
  rules.utf8 = settings.encoding < TextFileSettings::kFirstCodePage;
  if (settings.has_fixed_widths()) {
    for (const uint16_t width : settings.fixed_widths) {
      if (width == 0) break;
      rules.widths.push_back(width);
    }
    if (!rules.utf8) rules.lead_bytes = lead_bytes_of(settings.encoding);
  }
  return rules;
}

}  // namespace rowvane
