// Long texts, code and files: values too large to sit in a record.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/error_code.h"

namespace rowvane {

// Where an unloaded content lies: a member of an open database file. Implemented by the file floor.
class ContentSource {
 public:
  virtual ~ContentSource() = default;
  // Reads the whole content. Safe from several threads.
  virtual ErrorCode read(std::string& out) const = 0;
};

// An immutable sequence of bytes, in memory or still in the database file; copying it shares it.
class Content {
 public:
  Content() = default;
  // Holds BYTES in memory.
  static Content of(std::string bytes);
  // SIZE bytes that SOURCE reads when they are wanted.
  static Content stored(std::shared_ptr<const ContentSource> source, uint64_t size);

  uint64_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  // Null for a content in memory.
  const std::shared_ptr<const ContentSource>& source() const { return source_; }
  // The bytes of a content in memory; empty for a stored one.
  std::string_view in_memory() const { return bytes_ ? std::string_view(*bytes_) : std::string_view(); }

  // Copies the bytes to OUT, reading them from the file where they are stored.
  ErrorCode read(std::string& out) const;

 private:
  std::shared_ptr<const std::string> bytes_;
  std::shared_ptr<const ContentSource> source_;
  uint64_t size_ = 0;
};

// One inserted image or file, or a shortcut to a file outside.
struct FileObject {
  std::string name;      // the file's own name, without folders; unique within its value, ignoring case
  std::string shortcut;  // path of the outside file; empty for an inserted one
  Content content;       // of an inserted file

  bool is_shortcut() const { return !shortcut.empty(); }
};

using FileList = std::vector<FileObject>;

// Appends the names of FILES, joined by "; ".
void append_file_names(const FileList& files, std::string& out);

}  // namespace rowvane
