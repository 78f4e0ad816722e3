#include "app/start/file_type_registration.h"

namespace rowvane {
namespace {

UserText notice_of(platform::RegistrationStatus status, MessageId success) {
  switch (status) {
    case platform::RegistrationStatus::kOk:
      return success;
    case platform::RegistrationStatus::kNoPermission:
      return MessageId::kNoRegistryPermission;
    case platform::RegistrationStatus::kFailed:
      break;
  }
  return ErrorCode::kFileWrite;
}

}  // namespace

platform::FileType database_file_type(const std::string& program) {
  platform::FileType type;
  type.extension = "rvb";
  type.document_class = "Rowvane File";
  type.mime_type = "application/x-rowvane-database";
  type.open_text = "Open with Rowvane";
  type.program_name = "Rowvane";
  type.program = program;
  return type;
}

UserText register_database_files(const std::string& program) {
  return notice_of(platform::register_file_type(database_file_type(program)), MessageId::kFileTypeRegistered);
}

UserText unregister_database_files(const std::string& program) {
  return notice_of(platform::unregister_file_type(database_file_type(program)),
                   MessageId::kFileTypeUnregistered);
}

}  // namespace rowvane
