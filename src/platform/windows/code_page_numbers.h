// Code pages as the calls of Windows take them.
#pragma once

#include <cstdint>
#include <optional>

#include <windows.h>

namespace rowvane::platform {

inline constexpr unsigned kEuroByteOf858 = 0xD5;

// The page to ask Windows for in place of NUMBER. Not every system has 858, which is 850 but for the euro.
unsigned system_code_page(unsigned number);

// The bytes of CHARACTER in PAGE, the lead byte high, with FLAGS as WideCharToMultiByte takes them; nothing
// when only the default character would stand for it.
std::optional<uint16_t> code_page_bytes(unsigned page, DWORD flags, char16_t character);

}  // namespace rowvane::platform
