// A folder for the files of a test.
#pragma once

#include <filesystem>
#include <iterator>
#include <random>
#include <string>

namespace rowvane::platform {

// A new folder in PARENT that goes away with the test.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
    std::random_device random;
    do {
      folder_ = parent / ("rowvane-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(folder_));
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  size_t file_count() const {
    return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(folder_), {}));
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace rowvane::platform
