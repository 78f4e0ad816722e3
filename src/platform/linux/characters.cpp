#include "platform/characters.h"

#include <algorithm>
#include <limits>

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/stringpiece.h>
#include <unicode/uchar.h>

#include "platform/ascii.h"
#include "platform/utf8.h"

namespace rowvane::platform {

bool is_letter(char32_t character) {
  if (character < 0x80) {
    const char32_t lower = character | 0x20;
    return lower >= 'a' && lower <= 'z';
  }
  return u_isalpha(static_cast<UChar32>(character)) != 0;
}

bool is_mark(char32_t character) {
  if (character < 0x300) return false;
  return (U_GET_GC_MASK(static_cast<UChar32>(character)) & U_GC_M_MASK) != 0;
}

std::string fold_case(std::string_view text) {
  std::string folded;
  if (ascii_run(text, 0) == text.size()) {
    return ascii::to_lower(text);
  }
  icu::StringByteSink<std::string> sink(&folded);
  UErrorCode error = U_ZERO_ERROR;
  icu::CaseMap::utf8Fold(0, icu::StringPiece(text.data(), static_cast<int32_t>(text.size())), sink, nullptr,
                         error);
  return folded;
}

std::string upper_case(std::string_view text) {
  std::string capitals;
  icu::StringByteSink<std::string> sink(&capitals);
  UErrorCode error = U_ZERO_ERROR;
  icu::CaseMap::utf8ToUpper("", 0, icu::StringPiece(text.data(), static_cast<int32_t>(text.size())), sink,
                            nullptr, error);
  return capitals;
}

}  // namespace rowvane::platform
