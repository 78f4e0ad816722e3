// After the Desktop Entry and the Shared MIME-info specifications of freedesktop.org.
#include "platform/file_type.h"

#include <chrono>

#include "platform/characters.h"
#include "platform/file.h"
#include "platform/file_system.h"
#include "platform/linux/run_program.h"
#include "platform/linux/xdg_folders.h"
#include "platform/paths.h"

namespace rowvane::platform {
namespace {

constexpr std::chrono::seconds kDesktopPatience{20};

struct Places {
  std::string applications;
  std::string desktop_entry;
  std::string mime;
  std::string mime_package;
};

Places places_of(const FileType& type) {
  const std::string data = data_home();
  const std::string name = fold_case(type.program_name);
  Places places;
  places.applications = join_path(data, "applications");
  places.desktop_entry = join_path(places.applications, name + ".desktop");
  places.mime = join_path(data, "mime");
  places.mime_package = join_path(join_path(places.mime, "packages"), name + ".xml");
  return places;
}

// TEXT as the value of a key: backslashes and line ends escaped.
std::string entry_value(std::string_view text) {
  std::string value;
  for (const char c : text) {
    if (c == '\\') {
      value += "\\\\";
    } else if (c == '\n') {
      value += "\\n";
    } else {
      value += c;
    }
  }
  return value;
}

// PROGRAM as the first argument of an Exec line: quoted, and "%" doubled, before the escapes of any value.
std::string exec_argument(std::string_view program) {
  std::string argument = "\"";
  for (const char c : program) {
    if (c == '"' || c == '`' || c == '$' || c == '\\') argument += '\\';
    if (c == '%') argument += '%';
    argument += c;
  }
  return entry_value(argument + "\"");
}

std::string desktop_entry(const FileType& type) {
  return "[Desktop Entry]\nType=Application\nName=" + entry_value(type.program_name) +
         "\nComment=" + entry_value(type.open_text) + "\nExec=" + exec_argument(type.program) +
         " %F\nIcon=" + fold_case(type.program_name) + "\nMimeType=" + type.mime_type +
         ";\nCategories=Office;Database;\nTerminal=false\n";
}

std::string xml_text(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string mime_package(const FileType& type) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
         "  <mime-type type=\"" +
         xml_text(type.mime_type) + "\">\n    <comment>" + xml_text(type.document_class) +
         "</comment>\n    <sub-class-of type=\"application/zip\"/>\n    <glob pattern=\"*." +
         xml_text(type.extension) + "\"/>\n  </mime-type>\n</mime-info>\n";
}

// The desktop finds the files without these lists too, only later.
void update_lists(const Places& places) {
  run_program({"update-mime-database", places.mime}, kDesktopPatience);
  run_program({"update-desktop-database", "-q", places.applications}, kDesktopPatience);
}

RegistrationStatus registration_status(FileStatus status) {
  if (status == FileStatus::kOk) return RegistrationStatus::kOk;
  return status == FileStatus::kAccessDenied ? RegistrationStatus::kNoPermission
                                             : RegistrationStatus::kFailed;
}

FileStatus write_file(const std::string& path, const std::string& content) {
  const FileStatus status = create_folders(parent_folder(path));
  return status == FileStatus::kOk ? write_whole_file(path, content) : status;
}

FileStatus remove_if_there(const std::string& path) {
  const FileStatus status = remove_file(path);
  return status == FileStatus::kNotFound ? FileStatus::kOk : status;
}

}  // namespace

RegistrationStatus register_file_type(const FileType& type) {
  if (data_home().empty() || type.program.empty()) return RegistrationStatus::kFailed;
  const Places places = places_of(type);
  FileStatus status = write_file(places.mime_package, mime_package(type));
  if (status == FileStatus::kOk) status = write_file(places.desktop_entry, desktop_entry(type));
  if (status == FileStatus::kOk) update_lists(places);
  return registration_status(status);
}

RegistrationStatus unregister_file_type(const FileType& type) {
  if (data_home().empty()) return RegistrationStatus::kFailed;
  const Places places = places_of(type);
  const FileStatus entry = remove_if_there(places.desktop_entry);
  const FileStatus package = remove_if_there(places.mime_package);
  if (folder_exists(places.mime)) update_lists(places);
  return registration_status(entry != FileStatus::kOk ? entry : package);
}

}  // namespace rowvane::platform
