#include "app/start/first_run.h"

#include <array>
#include <span>

#include "platform/file.h"
#include "platform/file_system.h"
#include "platform/paths.h"

namespace rowvane {

std::optional<bool> take_startup_file(const std::string& program_folder) {
  const std::string path = platform::join_path(program_folder, "startup.txt");
  std::array<char, 2> start{};
  size_t count = 0;
  {
    platform::InputFile file;
    if (file.open(path) != platform::FileStatus::kOk ||
        file.read_at(0, std::as_writable_bytes(std::span(start)), count) != platform::FileStatus::kOk) {
      return std::nullopt;
    }
  }
  // One that can't be deleted is read again next time, to the same end.
  static_cast<void>(platform::remove_file(path));
  return count == start.size() && start[1] == '1';
}

std::string sample_database_path(bool portable, const platform::KnownFolders& folders) {
  const std::string& installed = folders.is_administrator ? folders.common_documents : folders.documents;
  const std::string& folder = portable ? folders.program_folder : installed;
  return folder.empty() ? std::string() : platform::join_path(folder, "sample.zip");
}

void offer_sample_database(const std::string& path, std::vector<RecentFile>& files) {
  if (files.empty() && !path.empty() && platform::file_exists(path)) files.push_back({path, 0});
}

}  // namespace rowvane
