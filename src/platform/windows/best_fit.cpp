#include "platform/best_fit.h"

#include "platform/windows/code_page_numbers.h"

namespace rowvane::platform {

uint16_t best_fit(const CodePageTable& page, char32_t character) {
  if (character > 0xFFFF) return '?';
  const unsigned number = system_code_page(page.number);
  const uint16_t bytes = code_page_bytes(number, 0, static_cast<char16_t>(character)).value_or('?');
  return number != page.number && bytes == kEuroByteOf858 ? '?' : bytes;
}

}  // namespace rowvane::platform
