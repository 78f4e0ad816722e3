// Whether bytes are text, and in which encoding.
#pragma once

#include <string_view>

namespace rowvane {

enum class TextContent {
  kText,   // characters of a byte or more: UTF-8 or a code page
  kUtf16,  // little-endian, with a byte-order mark or without
  kBigEndianUtf16,
  kBinary,
};

// Judges the beginning of a file, which may end within a character. Without NUL bytes it is text unless many
// of its characters are controls that no text holds; with them only UTF-16 is text. Nothing is text, too.
TextContent text_content_of(std::string_view bytes);

}  // namespace rowvane
