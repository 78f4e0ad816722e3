// Making the system open files of a kind with a program.
#pragma once

#include <string>

namespace rowvane::platform {

struct FileType {
  std::string extension;       // without the point
  std::string document_class;  // what such files are called
  std::string mime_type;       // Linux
  std::string open_text;       // of the "open" verb in menus
  std::string program_name;
  std::string program;  // full path of the executable, whose icon the files get
};

enum class RegistrationStatus { kOk, kNoPermission, kFailed };

// On Windows in the registry, for the whole machine when the process may, otherwise for the user. On Linux a
// desktop entry and a MIME type under XDG_DATA_HOME.
[[nodiscard]] RegistrationStatus register_file_type(const FileType& type);
// Takes away what register_file_type makes; kOk when there is nothing.
[[nodiscard]] RegistrationStatus unregister_file_type(const FileType& type);

}  // namespace rowvane::platform
