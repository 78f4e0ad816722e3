#include "platform/windows/code_page_numbers.h"

namespace rowvane::platform {

unsigned system_code_page(unsigned number) {
  return number == 858 && IsValidCodePage(number) == FALSE ? 850 : number;
}

std::optional<uint16_t> code_page_bytes(unsigned page, DWORD flags, char16_t character) {
  const auto wide = static_cast<wchar_t>(character);
  char bytes[4];
  BOOL used_default = FALSE;
  const int count = WideCharToMultiByte(page, flags, &wide, 1, bytes, sizeof bytes, nullptr, &used_default);
  if (count < 1 || count > 2 || used_default != FALSE) return std::nullopt;
  const auto first = static_cast<unsigned char>(bytes[0]);
  return static_cast<uint16_t>(count == 1 ? first : first << 8 | static_cast<unsigned char>(bytes[1]));
}

}  // namespace rowvane::platform
