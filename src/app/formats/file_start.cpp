#include "app/formats/file_start.h"

#include <algorithm>
#include <span>

#include "file/member_names.h"
#include "platform/file.h"
#include "zip/zip_reader.h"

namespace rowvane {

FileStart::FileStart(std::string path) : path_(std::move(path)) {
  platform::InputFile file;
  if (file.open(path_) != platform::FileStatus::kOk) return;
  size_ = file.size();
  bytes_.resize(static_cast<size_t>(std::min<uint64_t>(size_, kMaxBytes)));
  size_t count = 0;
  const auto status = file.read_at(0, std::as_writable_bytes(std::span(bytes_)), count);
  bytes_.resize(status == platform::FileStatus::kOk ? count : 0);
}

unsigned FileStart::word_at(size_t offset) const {
  if (offset + 1 >= bytes_.size()) return 0;
  const auto byte = [&](size_t at) { return static_cast<unsigned>(static_cast<unsigned char>(bytes_[at])); };
  return byte(offset) | byte(offset + 1) << 8;
}

bool FileStart::has_zip_member(std::string_view name) const {
  if (!is_zip() || has(kThisVersionName, kLocalHeaderSize)) return false;
  if (!members_) {
    members_.emplace();
    ZipReader archive;
    if (archive.open(path_) == ErrorCode::kOk) {
      for (const ZipMember& member : archive.members()) members_->push_back(member.name);
    }
  }
  return std::ranges::find(*members_, name) != members_->end();
}

}  // namespace rowvane
