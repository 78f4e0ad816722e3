#include "file/archive_content.h"

namespace rowvane {

ErrorCode ArchiveContent::read(std::string& out) const {
  const Place from = place();
  return from.archive->read(*from.member, from.archive->size(*from.member), out);
}

ArchiveContent::Place ArchiveContent::place() const {
  const std::lock_guard lock(mutex_);
  return {archive_, member_};
}

void ArchiveContent::bind(std::shared_ptr<const DatabaseArchive> archive, const ZipMember& member) const {
  const std::lock_guard lock(mutex_);
  archive_ = std::move(archive);
  member_ = &member;
}

Content content_of_member(const std::shared_ptr<const DatabaseArchive>& archive, const ZipMember& member) {
  return Content::stored(std::make_shared<ArchiveContent>(archive, member), archive->size(member));
}

}  // namespace rowvane
