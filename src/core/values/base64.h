// Bytes as text: base64 with the standard alphabet and "=" padding.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace rowvane {

std::string base64_encode(std::string_view bytes);

// The bytes that TEXT stands for. Nothing when TEXT is not exactly what base64_encode would write: characters
// outside the alphabet (also spaces and line ends), missing or misplaced padding, or unused bits that are
// set.
std::optional<std::string> base64_decode(std::string_view text);

}  // namespace rowvane
