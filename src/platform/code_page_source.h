// What the system knows of one code page, one character at a time.
#pragma once

#include <cstdint>
#include <memory>

namespace rowvane::platform {

class CodePageSource {
 public:
  // Null for pages that the system does not know and for those that do not agree with ASCII or have
  // characters of more than two bytes.
  static std::unique_ptr<CodePageSource> open(unsigned number);
  virtual ~CodePageSource() = default;

  virtual bool is_lead_byte(unsigned char byte) const = 0;
  // The character of one byte, or of two with the lead byte high; kNoCharacter when they have none.
  virtual char16_t character_of(unsigned code, int length) = 0;
  // The usual bytes of CHARACTER, the lead byte high; kNoBytes when it has none of its own.
  virtual uint16_t bytes_of(char16_t character) = 0;
};

}  // namespace rowvane::platform
