#include "app/start/start_up.h"

#include <optional>

namespace rowvane {
namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = 1;

int exit_status(bool succeeded) {
  return succeeded ? kSuccess : kFailure;
}

void initialise(StartUpSteps& steps) {
  steps.initialise_com();
  steps.initialise_common_controls(kListProgressComboClasses);
  steps.initialise_common_controls(kBarProgressRebarClasses);
  steps.set_server_timing(ServerTiming());
  steps.initialise_module();
  steps.load_long_text_control();
}

// The exit status of a switch that ends the program, or nothing.
std::optional<int> run_installer(StartUpSteps& steps, StartupAction action) {
  switch (action) {
    case StartupAction::kUnregisterServer:
      return exit_status(steps.unregister_server());
    case StartupAction::kRegisterServer:
      return exit_status(steps.register_server());
    case StartupAction::kUninstall:
      return exit_status(steps.uninstall());
    case StartupAction::kRun:
      break;
  }
  return std::nullopt;
}

void prepare(StartUpSteps& steps) {
  steps.find_profile();
  steps.prepare_first_run();
  steps.unpack_help();
  steps.take_default_page();
  steps.start_server_monitor();
  steps.register_class_objects();
  steps.resume_class_objects();
}

void run_interactively(StartUpSteps& steps, const StartupCommand& command) {
  steps.add_message_loop();
  steps.create_main_frame();
  for (const std::string& file : command.files) steps.open_file(file);
  steps.run_message_loop();
  steps.remove_message_loop();
}

void shut_down(StartUpSteps& steps) {
  steps.revoke_class_objects();
  steps.pause();
  steps.release_module_state();
  steps.save_profile();
  steps.free_printer();
  steps.close_server_monitor();
}

int run_initialised(StartUpSteps& steps) {
  const StartupCommand command = steps.parse_command_line();
  if (const auto status = run_installer(steps, command.action)) return *status;
  if (!steps.has_licence()) return kFailure;
  prepare(steps);
  if (command.started_by_com) {
    steps.run_message_loop();
  } else {
    run_interactively(steps, command);
  }
  shut_down(steps);
  return kSuccess;
}

}  // namespace

int run_program(StartUpSteps& steps) {
  initialise(steps);
  const int status = run_initialised(steps);
  steps.terminate_module();
  steps.uninitialise_com();
  return status;
}

}  // namespace rowvane
