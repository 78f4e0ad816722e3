// The first bytes of a file, by which its format is told.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rowvane {

class FileStart {
 public:
  static constexpr size_t kMaxBytes = 64 * 1024;

  // A file that can't be read is as an empty one.
  explicit FileStart(std::string path);

  const std::string& path() const { return path_; }
  std::string_view bytes() const { return bytes_; }
  // Of the whole file.
  uint64_t size() const { return size_; }

  bool has(std::string_view mark, size_t offset = 0) const {
    return offset < bytes_.size() && bytes().substr(offset).starts_with(mark);
  }
  // Little-endian. 0 behind the end.
  unsigned word_at(size_t offset) const;

  // Two letters are not enough: they begin texts as well.
  bool is_zip() const { return has("PK\3\4") || has("PK\5\6") || has("PK\7\10"); }
  // Looks into the directory of a zip archive, at most once, unless its first member is that of a database.
  bool has_zip_member(std::string_view name) const;

 private:
  std::string path_;
  std::string bytes_;
  uint64_t size_ = 0;
  mutable std::optional<std::vector<std::string>> members_;
};

}  // namespace rowvane
