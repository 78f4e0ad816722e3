// Which system the tests run on, for expectations that differ.
#pragma once

namespace rowvane::platform {

#ifdef _WIN32
inline constexpr bool kIsWindows = true;
#else
inline constexpr bool kIsWindows = false;
#endif

}  // namespace rowvane::platform
