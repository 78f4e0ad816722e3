// The window program: the steps of start-up that need a window.
#pragma once

#include <QApplication>
#include <memory>

#include "app/profile/twofish_profile_cipher.h"
#include "app/start/program_steps.h"
#include "ui/dialogs.h"
#include "ui/main_frame.h"

namespace rowvane {

class WindowProgram final : public ProgramSteps {
 public:
  // DIALOGS and CIPHER must outlive this, as must the running QApplication.
  WindowProgram(StartupCommand command, platform::KnownFolders folders, MessageBoxes& dialogs,
                ProfileCipher* cipher);

  void initialise_com() override {}
  void initialise_common_controls(unsigned) override {}
  void initialise_module() override {}
  void load_long_text_control() override {}
  bool has_licence() override { return true; }  // free software
  void register_class_objects() override {}
  void resume_class_objects() override {}
  void create_main_frame() override;
  void open_file(const std::string& path) override;
  void run_message_loop() override;
  void revoke_class_objects() override {}
  void release_module_state() override { frame_.reset(); }
  void terminate_module() override {}
  void uninitialise_com() override {}

  CMainFrame* frame() const { return frame_.get(); }

 protected:
  bool install_class_objects() override { return true; }
  bool remove_class_objects() override { return true; }
  void quit_message_loop() override;

 private:
  MessageBoxes& dialogs_;
  std::unique_ptr<CMainFrame> frame_;
};

// The program from its command line to its exit status.
int run_window_program(int count, const char* const* arguments);

}  // namespace rowvane
