// The names of archive members.
#pragma once

#include <string>
#include <string_view>

namespace rowvane {

// False for names that could reach outside a folder or that systems read differently: empty, over 65,535
// bytes, with a NUL, a backslash or a ".." component, absolute ("/x") or with a drive letter ("c:x").
bool is_safe_member_name(std::string_view name);

// True for names that ZipWriter takes: safe, valid UTF-8, without control characters.
bool is_writable_member_name(std::string_view name);

// The name that BYTES of a directory stand for, as UTF-8. Names flagged as UTF-8 must be valid UTF-8,
// otherwise false. Names without the flag are kept when they are valid UTF-8, as some archivers write it
// without saying so; all others are code page 437.
bool decode_member_name(std::string_view bytes, bool flagged_utf8, std::string& name);

}  // namespace rowvane
