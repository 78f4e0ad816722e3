// The text of rich text: what a reader sees of it, without its formatting.
#pragma once

#include <string>
#include <string_view>

namespace rowvane {

// True for a long text that is kept as rich text (RTF).
bool is_rich_text(std::string_view text);

// The plain text of RICH, an RTF document: paragraphs and lines end with LF, fonts, styles, pictures and the
// other hidden parts are left out. Bytes are read by Windows code page 1252 where they are not written as
// Unicode. What is no well-formed RTF gives what can be read of it.
std::string plain_text_of(std::string_view rich);

}  // namespace rowvane
