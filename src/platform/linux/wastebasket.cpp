// After the Trash specification of freedesktop.org, version 1.0.
#include "platform/wastebasket.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file_system.h"
#include "platform/linux/file_status.h"
#include "platform/linux/xdg_folders.h"
#include "platform/paths.h"

namespace rowvane::platform {
namespace {

constexpr int kMostNames = 1000;
constexpr mode_t kPrivateFolder = 0700;
constexpr mode_t kPrivateFile = 0600;

struct Trash {
  std::string folder;
  std::string top;  // what the paths in it are relative to; empty: they are absolute
};

bool lies_on(const std::string& path, dev_t device) {
  struct stat info {};
  return ::lstat(path.c_str(), &info) == 0 && info.st_dev == device;
}

bool make_private_folder(const std::string& path) {
  if (::mkdir(path.c_str(), kPrivateFolder) != 0 && errno != EEXIST) return false;
  struct stat info {};
  // A link could lead anywhere.
  return ::lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == ::geteuid();
}

bool make_parts(const std::string& trash) {
  return make_private_folder(trash) && make_private_folder(join_path(trash, "files")) &&
         make_private_folder(join_path(trash, "info"));
}

// The topmost folder above PATH on the same disk.
std::string mount_top(const std::string& path, dev_t device) {
  std::string top = parent_folder(path);
  for (;;) {
    std::string above = parent_folder(top);
    if (above == top || !lies_on(above, device)) return top;
    top = std::move(above);
  }
}

// The trash of the user's home where it is on the same disk as PATH, otherwise one on that disk: that which
// its administrator made for all users, or the user's own.
bool find_trash(const std::string& path, dev_t device, Trash& trash) {
  const std::string data = data_home();
  if (!data.empty() && create_folders(data) == FileStatus::kOk && lies_on(data, device)) {
    trash.folder = join_path(data, "Trash");
    return make_parts(trash.folder);
  }
  const std::string user = std::to_string(::getuid());
  trash.top = mount_top(path, device);
  const std::string shared = join_path(trash.top, ".Trash");
  struct stat info {};
  if (::lstat(shared.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && (info.st_mode & S_ISVTX) != 0) {
    trash.folder = join_path(shared, user);
    if (make_parts(trash.folder)) return true;
  }
  trash.folder = join_path(trash.top, ".Trash-" + user);
  return make_parts(trash.folder);
}

// PATH as a URL writes it.
std::string url_path(std::string_view path) {
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/-_.~";
  std::string url;
  for (const char c : path) {
    if (kPlain.find(c) != std::string_view::npos) {
      url += c;
      continue;
    }
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    url += code.data();
  }
  return url;
}

std::string info_text(const std::string& path, const std::string& top) {
  std::array<char, 32> date{};
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &local);
  std::string_view shown = path;
  if (!top.empty()) {
    shown.remove_prefix(top.size());
    if (shown.starts_with('/')) shown.remove_prefix(1);
  }
  return "[Trash Info]\nPath=" + url_path(shown) + "\nDeletionDate=" + date.data() + "\n";
}

// Takes a name in the trash that is still free by making its info file; the name's place among the files is
// then free too. Answers an open file, or -1.
int claim_name(const std::string& trash, const std::string& wanted, std::string& name) {
  for (int number = 1; number <= kMostNames; ++number) {
    name = number == 1 ? wanted : wanted + "." + std::to_string(number);
    const std::string info = join_path(join_path(trash, "info"), name + ".trashinfo");
    const int file = ::open(info.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, kPrivateFile);
    if (file >= 0 || errno != EEXIST) return file;
  }
  return -1;
}

bool write_and_close(int file, std::string_view text) {
  const bool written = ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  return ::close(file) == 0 && written;
}

bool move_file(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  // Some file systems can't promise not to replace; the claimed name is free all the same.
  return errno == EINVAL && ::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace

FileStatus move_to_wastebasket(const std::string& path) {
  if (!is_usable_path(path)) return FileStatus::kNotFound;
  std::error_code error;
  const std::string absolute = std::filesystem::absolute(path, error).lexically_normal().string();
  struct stat info {};
  if (error || ::lstat(absolute.c_str(), &info) != 0) {
    return file_status_of(error ? error.value() : errno, FileStatus::kReadError);
  }
  Trash trash;
  if (!find_trash(absolute, info.st_dev, trash)) return file_status_of(errno, FileStatus::kWriteError);
  std::string name;
  const int file = claim_name(trash.folder, file_name(absolute), name);
  if (file < 0) return file_status_of(errno, FileStatus::kWriteError);
  const std::string info_file = join_path(join_path(trash.folder, "info"), name + ".trashinfo");
  const std::string kept = join_path(join_path(trash.folder, "files"), name);
  if (!write_and_close(file, info_text(absolute, trash.top)) || !move_file(absolute, kept)) {
    const int reason = errno;
    ::unlink(info_file.c_str());
    return file_status_of(reason, FileStatus::kWriteError);
  }
  return FileStatus::kOk;
}

}  // namespace rowvane::platform
