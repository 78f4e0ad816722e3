// Files as the rest of the program needs them: read at any place, replaced in one step.
//
// Paths are UTF-8 on both systems. Nothing here throws; every call that can fail answers a FileStatus.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace rowvane::platform {

enum class FileStatus {
  kOk,
  kNotFound,
  kAccessDenied,
  kInUse,     // another program holds it open without sharing
  kNoSpace,   // the disk or the quota is full
  kIsFolder,  // a file was needed and the path names a folder
  kPathTooLong,
  kReadError,
  kWriteError,
};

// A file open for reading. Reads at explicit offsets, so several threads may read at once.
class InputFile {
 public:
  InputFile();
  ~InputFile();
  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&& other) noexcept;

  // Opens PATH; a file that was open before is closed. kReadError for what is not a file on a disk, such as a
  // device or a named pipe.
  [[nodiscard]] FileStatus open(const std::string& path);
  bool is_open() const { return handle_ != kNoHandle; }
  void close();

  // Bytes in the file when it was opened.
  uint64_t size() const { return size_; }

  // Reads up to buffer.size() bytes at OFFSET; `read` gets the number of bytes, less than asked only at the
  // end of the file.
  [[nodiscard]] FileStatus read_at(uint64_t offset, std::span<std::byte> buffer, size_t& read) const;

 private:
  static constexpr intptr_t kNoHandle = -1;
  intptr_t handle_ = kNoHandle;
  uint64_t size_ = 0;
};

// A file written beside its target and put in the target's place in one step. Until `commit` the target is
// untouched; an object destroyed without `commit` removes what it wrote. When a call fails, what was written
// is dropped at once, and all further calls fail until `create`.
//
// The temporary file is named after the target ("NAME.rvtmp-PID-N"). One left behind by a killed process is
// removed by `remove_stale_replacements`. Very long names are shortened in it.
class ReplacingFile {
 public:
  ReplacingFile();
  ~ReplacingFile();
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  // Starts a replacement for TARGET, which need not exist; its folder must. A symbolic link stays, the file
  // behind it is replaced. kAccessDenied when the target or its folder is read-only.
  [[nodiscard]] FileStatus create(const std::string& target);
  // Appends at the end.
  [[nodiscard]] FileStatus write(std::span<const std::byte> bytes);
  // Overwrites bytes already written; the end does not move. kWriteError for a range that reaches
  // behind it.
  [[nodiscard]] FileStatus write_at(uint64_t offset, std::span<const std::byte> bytes);
  uint64_t position() const { return position_; }

  // Flushes to the disk and replaces the target, keeping its permissions. With BACKUP_PATH not empty the
  // former target is kept under that name, in place of an older backup. After a failure the target is as it
  // was and the temporary is gone.
  [[nodiscard]] FileStatus commit(const std::string& backup_path = {});
  // Drops what was written.
  void discard();

 private:
  static constexpr intptr_t kNoHandle = -1;
  intptr_t handle_ = kNoHandle;
  uint64_t position_ = 0;
  std::string target_;
  std::string temporary_;
};

// Removes temporary files of ReplacingFile that processes no longer running left beside TARGET.
void remove_stale_replacements(const std::string& target);

// The whole of a small file; kReadError when it is larger than LIMIT bytes. CONTENT is empty after a failure.
[[nodiscard]] FileStatus read_whole_file(const std::string& path, std::string& content,
                                         uint64_t limit = uint64_t{1} << 30);
// Replaces PATH by CONTENT through a ReplacingFile.
[[nodiscard]] FileStatus write_whole_file(const std::string& path, std::string_view content);

// True when PATH names something other than a folder.
bool file_exists(const std::string& path);
// True when both paths name the same file on disk. False when one of them names nothing.
bool is_same_file(const std::string& a, const std::string& b);

}  // namespace rowvane::platform
