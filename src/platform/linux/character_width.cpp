#include "platform/character_width.h"

#include <unicode/uchar.h>

namespace rowvane::platform {

bool takes_no_column(char32_t character) {
  constexpr uint32_t kCategories = U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK | U_GC_CC_MASK;
  return (U_GET_GC_MASK(static_cast<UChar32>(character)) & kCategories) != 0;
}

bool is_wide(char32_t character) {
  const int width = u_getIntPropertyValue(static_cast<UChar32>(character), UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH;
}

}  // namespace rowvane::platform
