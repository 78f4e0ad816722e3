// The content of a member as a text to load.
#pragma once

#include <algorithm>
#include <string>

#include "exchange/text/text_source.h"
#include "file/database_archive.h"

namespace rowvane {

class MemberTextSource final : public TextSource {
 public:
  // Both must outlive the source.
  MemberTextSource(const DatabaseArchive& archive, const ZipMember& member)
      : archive_(archive), member_(member) {}

  uint64_t size() const override { return archive_.size(member_); }
  // An encrypted member is read whole: its digest decides before anything of it is used.
  ErrorCode rewind() override {
    if (archive_.encryption(member_) == nullptr) return archive_.zip().stream(member_, stream_);
    rest_ = {};
    const ErrorCode result = archive_.read(member_, archive_.size(member_), content_);
    rest_ = content_;
    return result;
  }
  size_t read(std::span<char> buffer) override {
    if (archive_.encryption(member_) != nullptr) {
      const std::string_view piece = rest_.substr(0, buffer.size());
      std::copy(piece.begin(), piece.end(), buffer.begin());
      rest_.remove_prefix(piece.size());
      return piece.size();
    }
    size_t count = 0;
    error = stream_.read(buffer, count);
    return error == ErrorCode::kOk ? count : 0;
  }

 private:
  const DatabaseArchive& archive_;
  const ZipMember& member_;
  ZipMemberStream stream_;  // of a plain member
  std::string content_;     // of an encrypted one
  std::string_view rest_;   // of the content
};

}  // namespace rowvane
