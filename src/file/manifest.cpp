#include "file/manifest.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <unordered_set>
#include <utility>

#include "core/values/base64.h"
#include "platform/utf8.h"
#include "zip/zip_names.h"

namespace rowvane {
namespace {

constexpr std::string_view kHeader =
    "File\tDeflated\tSize\tDigestType\tDigestValue\tAlgorithm\tIV\tKey\tSalt\tIterations";
constexpr std::string_view kLineEnd = "\r\n";
constexpr size_t kPlainColumns = 2;
constexpr size_t kEncryptedColumns = 10;

void append_encryption(const EncryptionRecord& record, std::string& text) {
  const std::array columns{std::to_string(record.size),  record.digest_type,
                           base64_encode(record.digest), std::string(cipher_name(record.algorithm)),
                           base64_encode(record.iv),     record.key,
                           base64_encode(record.salt),   std::to_string(record.iterations)};
  for (const std::string& column : columns) text.append("\t").append(column);
}

// Cuts TEXT at each SEPARATOR; one more part than there are separators.
std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (true) {
    const size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == text.npos) return parts;
    text.remove_prefix(end + 1);
  }
}

std::vector<std::string_view> split_lines(std::string_view text) {
  std::vector<std::string_view> lines = split(text, '\n');
  for (size_t i = 0; i + 1 < lines.size(); ++i) {
    if (lines[i].ends_with('\r')) lines[i].remove_suffix(1);
  }
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

template <typename Number>
bool parse_number(std::string_view text, Number& number) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end && text != "-0";
}

bool parse_base64(std::string_view text, std::string& bytes) {
  auto decoded = base64_decode(text);
  if (!decoded) return false;
  bytes = std::move(*decoded);
  return true;
}

bool parse_algorithm(std::string_view text, CipherAlgorithm& algorithm) {
  const auto named = cipher_named(text);
  if (named) algorithm = *named;
  return named.has_value();
}

bool parse_encryption(const std::vector<std::string_view>& columns, EncryptionRecord& record) {
  record.digest_type = columns[3];
  record.key = columns[7];
  return parse_number(columns[2], record.size) && parse_base64(columns[4], record.digest) &&
         parse_algorithm(columns[5], record.algorithm) && parse_base64(columns[6], record.iv) &&
         parse_base64(columns[8], record.salt) && parse_number(columns[9], record.iterations);
}

bool parse_entry(std::string_view line, ManifestEntry& entry) {
  const std::vector<std::string_view> columns = split(line, '\t');
  if (columns.size() != kPlainColumns && columns.size() != kEncryptedColumns) return false;
  entry.name = columns[0];
  if (columns[1] != "0" && columns[1] != "1") return false;
  entry.deflated = columns[1] == "1";
  if (columns.size() == kEncryptedColumns && !parse_encryption(columns, entry.encryption.emplace()))
    return false;
  return is_valid_manifest_entry(entry);
}

bool is_column_text(std::string_view text) {
  return text.find_first_of(std::string_view("\t\r\n\0", 4)) == text.npos;
}

bool is_valid_encryption(const EncryptionRecord& record) {
  return is_column_text(record.digest_type) && record.digest.size() == kDigestBytes &&
         record.iv.size() == block_bytes(record.algorithm) && is_column_text(record.key) &&
         record.key.size() <= kMaxManifestKey && record.salt.size() == kSaltBytes && record.iterations >= 0;
}

}  // namespace

bool is_valid_manifest_entry(const ManifestEntry& entry) {
  if (!is_safe_member_name(entry.name) || !is_column_text(entry.name)) return false;
  return !entry.encryption || is_valid_encryption(*entry.encryption);
}

std::string write_manifest(const std::vector<ManifestEntry>& entries) {
  std::string text(kHeader);
  for (const ManifestEntry& entry : entries) {
    text.append(kLineEnd).append(entry.name).append(entry.deflated ? "\t1" : "\t0");
    if (entry.encryption) append_encryption(*entry.encryption, text);
  }
  if (entries.empty()) text.append(kLineEnd);
  return text;
}

ErrorCode read_manifest(std::string_view text, std::vector<ManifestEntry>& entries) {
  entries.clear();
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  const std::vector<std::string_view> lines = split_lines(text);
  if (lines.empty() || lines[0] != kHeader) return ErrorCode::kManifest;

  std::vector<ManifestEntry> result;
  std::unordered_set<std::string_view> names;
  for (size_t i = 1; i < lines.size(); ++i) {
    ManifestEntry& entry = result.emplace_back();
    const std::string_view name = lines[i].substr(0, lines[i].find('\t'));
    if (!parse_entry(lines[i], entry) || !names.insert(name).second) return ErrorCode::kManifest;
  }
  entries = std::move(result);
  return ErrorCode::kOk;
}

}  // namespace rowvane
