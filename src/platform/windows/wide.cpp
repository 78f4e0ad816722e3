#include "platform/windows/wide.h"

#include <bit>
#include <cstring>

#include "platform/code_pages.h"

namespace rowvane::platform {

static_assert(sizeof(wchar_t) == 2 && std::endian::native == std::endian::little);

std::wstring to_wide(std::string_view utf8) {
  std::string bytes;
  utf8_to_utf16le(utf8, bytes);
  std::wstring wide(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(wide.data(), bytes.data(), bytes.size());
  return wide;
}

std::string to_utf8(std::wstring_view wide) {
  const std::string_view bytes(reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(wchar_t));
  std::string utf8;
  utf16le_to_utf8(bytes, false, utf8);
  return utf8;
}

}  // namespace rowvane::platform
