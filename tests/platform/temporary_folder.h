// A folder for the files of a test.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>

namespace rowvane::platform {

// The path that PATH, in UTF-8, names.
inline std::filesystem::path path_of(const std::string& path) {
  return std::filesystem::path(std::u8string(path.begin(), path.end()));
}

// All bytes of the file; none when it cannot be read.
inline std::string content_of_file(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path_of(path), std::ios::binary).rdbuf();
  return content.str();
}

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

  // In UTF-8, with the system's separators.
  std::string path(const std::string& name) const {
    const std::u8string path = (folder_ / path_of(name)).make_preferred().u8string();
    return std::string(path.begin(), path.end());
  }
  size_t file_count() const {
    return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(folder_), {}));
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace rowvane::platform
