// Look-alikes for characters that a code page lacks.
#pragma once

namespace rowvane::platform {

// A character that can stand for CHARACTER where a code page lacks it, one step plainer: the same letter with
// one accent less, the plain form of a wide, raised or typographic one. 0 when there is none. Steps never
// circle.
char32_t plainer_form(char32_t character);

}  // namespace rowvane::platform
