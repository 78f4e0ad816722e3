// Telling the system that Rowvane opens "*.rvb" files.
#pragma once

#include <string>

#include "core/messages/user_text.h"
#include "platform/file_type.h"

namespace rowvane {

// The type of database files, to be opened by the executable PROGRAM.
platform::FileType database_file_type(const std::string& program);

// What to tell the user: message 134, 177 without the right to do it, otherwise error 66.
UserText register_database_files(const std::string& program);
// The same with message 135.
UserText unregister_database_files(const std::string& program);

}  // namespace rowvane
