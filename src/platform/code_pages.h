// Conversion between UTF-8, UTF-16 and the Windows code pages.
//
// Code pages are named by their Windows numbers (437, 1252, 28591 ...); 0 is the user's default ANSI page and
// 1 the default OEM page. On Linux the language of LC_ALL, LC_CTYPE or LANG chooses the two as Windows pairs
// them.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace rowvane::platform {

inline constexpr unsigned kDefaultAnsiCodePage = 0;
inline constexpr unsigned kDefaultOemCodePage = 1;

// A converter for one code page. Not for use by two threads at once; make one a thread.
class CodePage {
 public:
  // Null when the system does not know the page.
  static std::unique_ptr<CodePage> open(unsigned number);
  virtual ~CodePage() = default;

  // Appends TEXT as UTF-8 to OUT. Bytes without a meaning become U+FFFD, as does a lead byte at the very end.
  virtual void to_utf8(std::string_view text, std::string& out) = 0;
  // Appends the UTF-8 TEXT in this page to OUT. A character that the page does not hold becomes the page's
  // best fit (a letter without its accent, a plain quotation mark), or "?" where there is none. False when at
  // least one had no exact counterpart.
  virtual bool from_utf8(std::string_view text, std::string& out) = 0;
  // Largest number of bytes in one character: 1, or 2 for double-byte pages.
  virtual int max_character_bytes() const = 0;
  // True when BYTE starts a two-byte character of a double-byte page.
  virtual bool is_lead_byte(unsigned char byte) const = 0;
};

// Appends UTF-16LE bytes as UTF-8. Lone surrogates become U+FFFD. An odd last byte, and a high surrogate at
// the very end when MORE_FOLLOWS, are left unread; answers the number of bytes read.
size_t utf16le_to_utf8(std::string_view bytes, bool more_follows, std::string& out);
// Appends UTF-8 as UTF-16LE bytes. Broken sequences become U+FFFD.
void utf8_to_utf16le(std::string_view text, std::string& out);

}  // namespace rowvane::platform
