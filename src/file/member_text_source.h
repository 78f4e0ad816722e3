// A member of an archive as a text to load.
#pragma once

#include "exchange/text_source.h"
#include "file/zip_reader.h"

namespace rowvane {

class MemberTextSource final : public TextSource {
 public:
  // Both must outlive the source.
  MemberTextSource(const ZipReader& archive, const ZipMember& member) : archive_(archive), member_(member) {}

  uint64_t size() const override { return member_.size; }
  ErrorCode rewind() override { return archive_.stream(member_, stream_); }
  size_t read(std::span<char> buffer) override {
    size_t count = 0;
    error = stream_.read(buffer, count);
    return error == ErrorCode::kOk ? count : 0;
  }

 private:
  const ZipReader& archive_;
  const ZipMember& member_;
  ZipMemberStream stream_;
};

}  // namespace rowvane
