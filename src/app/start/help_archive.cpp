#include "app/start/help_archive.h"

#include <cstdint>

#include "platform/file.h"
#include "platform/file_system.h"
#include "platform/paths.h"
#include "zip/zip_reader.h"

namespace rowvane {
namespace {

constexpr uint64_t kMaxPageBytes = uint64_t{256} << 20;

// The reader has refused names that lead out of the folder.
bool unpack_member(const ZipReader& archive, const ZipMember& member, const std::string& folder) {
  using platform::FileStatus;
  const std::string path = platform::join_path(folder, member.name);
  if (member.is_folder()) return platform::create_folders(path) == FileStatus::kOk;
  std::string content;
  return archive.read(member, kMaxPageBytes, content) == ErrorCode::kOk &&
         platform::create_folders(platform::parent_folder(path)) == FileStatus::kOk &&
         platform::write_whole_file(path, content) == FileStatus::kOk;
}

}  // namespace

std::string unpack_help(const std::string& program_folder) {
  const std::string folder = platform::join_path(program_folder, "help");
  const std::string path = platform::join_path(folder, "rowvane-help.zip");
  if (!platform::file_exists(path)) return {};
  {
    ZipReader archive;
    if (archive.open(path) != ErrorCode::kOk) return std::string(kHelpNotOpened);
    for (const ZipMember& member : archive.members()) {
      if (!unpack_member(archive, member, folder)) return std::string(kHelpNotLoaded);
    }
  }
  // One that can't be deleted is unpacked again next time.
  static_cast<void>(platform::remove_file(path));
  return {};
}

}  // namespace rowvane
