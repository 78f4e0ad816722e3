// The steps of start-up that need no window; the window program adds the others.
#pragma once

#include <memory>

#include "app/profile/default_page.h"
#include "app/profile/engine_options.h"
#include "app/profile/program_profile.h"
#include "app/start/start_up.h"
#include "core/messages/questions.h"
#include "core/messages/user_text.h"
#include "platform/folders.h"

namespace rowvane {

// How the program talks to the user before and after there is a main frame.
struct UserDialogs {
  Questions& questions;
  UserMessages& messages;
  PasswordPrompt& passwords;
};

class ProgramSteps : public StartUpSteps {
 public:
  // USER and CIPHER must outlive this; CIPHER as for ProfileFile.
  ProgramSteps(StartupCommand command, platform::KnownFolders folders, UserDialogs user,
               ProfileCipher* cipher);

  ProgramProfile& profile() { return profile_; }
  Options options() const { return engine_options(profile_.settings()); }
  const DefaultPage& default_page() const { return default_page_; }
  bool is_portable() const { return portable_; }
  // Counts the objects of the automation server; there from start_server_monitor to close_server_monitor.
  ServerMonitor* server_monitor() { return monitor_.get(); }

  void set_server_timing(const ServerTiming& timing) override { timing_ = timing; }
  StartupCommand parse_command_line() override { return command_; }
  bool unregister_server() override;
  bool register_server() override;
  bool uninstall() override;
  void find_profile() override;
  void prepare_first_run() override;
  void unpack_help() override;
  void take_default_page() override;
  void start_server_monitor() override;
  // The loop of a main frame keeps the server alive, whatever objects come and go.
  void add_message_loop() override;
  void remove_message_loop() override;
  void pause() override;
  void save_profile() override;
  void free_printer() override { default_page_ = DefaultPage(); }
  void close_server_monitor() override { monitor_.reset(); }

 protected:
  // Tell the system about the automation server's classes, or no more; false without the right to.
  virtual bool install_class_objects() = 0;
  virtual bool remove_class_objects() = 0;
  // Ends the message loop; called on another thread.
  virtual void quit_message_loop() = 0;

 private:
  ProfileFacts facts() const;
  bool report(const UserText& file_type, MessageId file_type_done, bool class_objects, MessageId done);

  StartupCommand command_;
  platform::KnownFolders folders_;
  UserDialogs user_;
  ProgramProfile profile_;
  DefaultPage default_page_;
  bool portable_ = false;
  ServerTiming timing_;
  std::unique_ptr<ServerMonitor> monitor_;
};

}  // namespace rowvane
