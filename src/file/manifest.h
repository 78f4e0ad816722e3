// The manifest of a database file: what its members are and how they are encrypted.
//
// A text of 8-bit characters: a header line, then one line for each member, columns separated by tabs. Lines
// are separated by CR LF; the last one has no line end, except for the header when it stands alone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/error_code.h"
#include "crypto/member_cipher.h"

namespace rowvane {

inline constexpr std::string_view kManifestName = "META-INF/manifest.txt";
inline constexpr size_t kMaxManifestKey = 63;

struct ManifestEntry {
  std::string name;
  bool deflated = false;
  std::optional<EncryptionRecord> encryption;

  bool operator==(const ManifestEntry&) const = default;
};

// True when ENTRY can stand in a manifest: a safe name, texts without tabs and line ends, and lengths as
// above.
bool is_valid_manifest_entry(const ManifestEntry& entry);

// All ENTRIES must be valid and their names different.
std::string write_manifest(const std::vector<ManifestEntry>& entries);

// Line ends may also be LF alone; a line end after the last line and a UTF-8 byte order mark are ignored.
// kManifest for anything else that write_manifest would not write; ENTRIES are then empty.
ErrorCode read_manifest(std::string_view text, std::vector<ManifestEntry>& entries);

}  // namespace rowvane
