// The order in which the window program starts, runs and ends.
#pragma once

#include <string>

#include "app/start/server_monitor.h"
#include "app/start/startup_command.h"

namespace rowvane {

// One method a step, each without a default, so that a program can forget none. `run_program` calls them in
// the order in which they stand here.
class StartUpSteps {
 public:
  virtual ~StartUpSteps() = default;

  virtual void initialise_com() = 0;
  // Classes of the common controls, as the system numbers them.
  virtual void initialise_common_controls(unsigned classes) = 0;
  virtual void set_server_timing(const ServerTiming& timing) = 0;
  virtual void initialise_module() = 0;
  virtual void load_long_text_control() = 0;
  virtual StartupCommand parse_command_line() = 0;

  // Each answers whether it succeeded; the program ends after them.
  virtual bool unregister_server() = 0;
  virtual bool register_server() = 0;
  virtual bool uninstall() = 0;

  virtual bool has_licence() = 0;
  virtual void find_profile() = 0;
  virtual void prepare_first_run() = 0;
  virtual void unpack_help() = 0;
  virtual void take_default_page() = 0;
  virtual void start_server_monitor() = 0;
  virtual void register_class_objects() = 0;  // local server, multiple use, suspended
  virtual void resume_class_objects() = 0;

  virtual void add_message_loop() = 0;
  virtual void create_main_frame() = 0;
  virtual void open_file(const std::string& path) = 0;
  // With or without a main frame; returns when it is to end.
  virtual void run_message_loop() = 0;
  virtual void remove_message_loop() = 0;

  virtual void revoke_class_objects() = 0;
  virtual void pause() = 0;
  virtual void release_module_state() = 0;
  virtual void save_profile() = 0;
  virtual void free_printer() = 0;
  virtual void close_server_monitor() = 0;
  virtual void terminate_module() = 0;
  virtual void uninitialise_com() = 0;
};

inline constexpr unsigned kListProgressComboClasses = 0x221;
inline constexpr unsigned kBarProgressRebarClasses = 0x424;

// The program from its first to its last step. Answers the exit status: 0, or 1 when it ended early because
// registering, uninstalling or the licence check failed.
int run_program(StartUpSteps& steps);

}  // namespace rowvane
