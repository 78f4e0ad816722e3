// What the system knows about installed programs.
#pragma once

#include <string>

namespace rowvane::platform {

// True when the process may change what is installed for all users: on Windows tested by making and removing
// a registry key.
bool may_write_machine_settings();

// Takes PROGRAM_NAME off the system's list of programs that can be uninstalled. False when that failed; true
// when it was not there. Linux has no such list.
[[nodiscard]] bool remove_uninstall_entry(const std::string& program_name);

// Shows the folder PATH in the system's file manager, without waiting for it.
void show_folder(const std::string& path);

}  // namespace rowvane::platform
