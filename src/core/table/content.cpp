#include "core/table/content.h"

namespace rowvane {

Content Content::of(std::string bytes) {
  Content content;
  content.size_ = bytes.size();
  if (!bytes.empty()) content.bytes_ = std::make_shared<const std::string>(std::move(bytes));
  return content;
}

Content Content::stored(std::shared_ptr<const ContentSource> source, uint64_t size) {
  Content content;
  content.source_ = std::move(source);
  content.size_ = size;
  return content;
}

ErrorCode Content::read(std::string& out) const {
  if (source_) return source_->read(out);
  out = in_memory();
  return ErrorCode::kOk;
}

void append_file_names(const FileList& files, std::string& out) {
  for (const FileObject& file : files) {
    if (&file != &files.front()) out += "; ";
    out += file.name;
  }
}

}  // namespace rowvane
