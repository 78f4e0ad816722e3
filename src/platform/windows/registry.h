// Keys of the registry, opened, filled and taken away.
#pragma once

#include <optional>
#include <string>

#include <windows.h>

namespace rowvane::platform {

// All answer ERROR_SUCCESS or the system's error.

// Makes KEY below ROOT, and those above it, and gives it VALUE as its default value.
LSTATUS set_registry_default(HKEY root, const std::wstring& key, const std::wstring& value);

// The default value of KEY, or nothing.
std::optional<std::wstring> registry_default(HKEY root, const std::wstring& key);

// Takes KEY and all below it away; a success when it is not there.
LSTATUS remove_registry_key(HKEY root, const std::wstring& key);

}  // namespace rowvane::platform
