// Long texts and files that still lie in a database file.
#pragma once

#include <memory>
#include <mutex>

#include "core/table/content.h"
#include "file/database_archive.h"

namespace rowvane {

// A member of an open archive, which stays open as long as a content refers to it. After saving, the same
// content is bound to the member in the new file, so that the old one can go.
class ArchiveContent final : public ContentSource {
 public:
  ArchiveContent(std::shared_ptr<const DatabaseArchive> archive, const ZipMember& member)
      : archive_(std::move(archive)), member_(&member) {}

  ErrorCode read(std::string& out) const override;

  struct Place {
    std::shared_ptr<const DatabaseArchive> archive;
    const ZipMember* member;

    bool is_encrypted() const { return archive->encryption(*member) != nullptr; }
  };
  Place place() const;
  void bind(std::shared_ptr<const DatabaseArchive> archive, const ZipMember& member) const;

 private:
  mutable std::mutex mutex_;
  mutable std::shared_ptr<const DatabaseArchive> archive_;
  mutable const ZipMember* member_;
};

// The member as a content.
Content content_of_member(const std::shared_ptr<const DatabaseArchive>& archive, const ZipMember& member);

}  // namespace rowvane
