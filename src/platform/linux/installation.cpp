#include "platform/installation.h"

#include <unistd.h>

#include "platform/linux/run_program.h"

namespace rowvane::platform {

bool may_write_machine_settings() {
  return ::geteuid() == 0;
}

bool remove_uninstall_entry(const std::string& /*program_name*/) {
  return true;
}

void show_folder(const std::string& path) {
  start_program({"xdg-open", path});
}

}  // namespace rowvane::platform
