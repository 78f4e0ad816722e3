// Look-alikes for characters that a code page lacks.
#pragma once

#include <cstdint>

#include "platform/code_page_table.h"

namespace rowvane::platform {

// The bytes, as in the table of PAGE, of a character that can stand for CHARACTER, which the page lacks: the
// letter without its accent, the plain form of a wide, raised or typographic one. "?" when there is none.
// Each system has its own idea of what looks alike.
uint16_t best_fit(const CodePageTable& page, char32_t character);

}  // namespace rowvane::platform
