// The order of the symbols in collation, which Windows has otherwise than Unicode.
#pragma once

#include <string>

#include <unicode/unistr.h>

namespace rowvane::platform {

// Rules for a collator, to stand behind those of a language: controls, apostrophes and hyphens first, then
// blanks, then the other symbols of western texts.
icu::UnicodeString symbol_rules();

// The place of CHARACTER among those that ignored punctuation leaves to be compared last, counted from 1; 0
// for a character that counts with the letters.
unsigned char minor_weight(char16_t character);

}  // namespace rowvane::platform
