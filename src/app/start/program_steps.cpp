#include "app/start/program_steps.h"

#include <thread>
#include <utility>

#include "app/start/file_type_registration.h"
#include "app/start/first_run.h"
#include "app/start/help_archive.h"
#include "app/start/uninstall.h"
#include "core/messages/messages.h"
#include "platform/printer.h"

namespace rowvane {

ProgramSteps::ProgramSteps(StartupCommand command, platform::KnownFolders folders, UserDialogs user,
                           ProfileCipher* cipher)
    : command_(std::move(command)),
      folders_(std::move(folders)),
      user_(user),
      profile_(user.messages, user.passwords, cipher) {}

// Tells what came of registering or unregistering; true when FILE_TYPE is the notice of success and the class
// objects followed.
bool ProgramSteps::report(const UserText& file_type, MessageId file_type_done, bool class_objects,
                          MessageId done) {
  const bool is_done = file_type == UserText(file_type_done) && class_objects;
  if (is_done) {
    user_.messages.show(message(done), MessageIcon::kInformation);
  } else {
    const UserText reason = class_objects ? file_type : UserText(MessageId::kNoRegistryPermission);
    user_.messages.show(reason.text(), MessageIcon::kError);
  }
  return is_done;
}

bool ProgramSteps::unregister_server() {
  const UserText file_type = unregister_database_files(folders_.program_file);
  return report(file_type, MessageId::kFileTypeUnregistered, remove_class_objects(),
                MessageId::kServerUnregistered);
}

bool ProgramSteps::register_server() {
  const UserText file_type = register_database_files(folders_.program_file);
  return report(file_type, MessageId::kFileTypeRegistered, install_class_objects(),
                MessageId::kServerRegistered);
}

bool ProgramSteps::uninstall() {
  UninstallSystem system;
  return rowvane::uninstall(folders_, user_.questions, user_.messages, system);
}

ProfileFacts ProgramSteps::facts() const {
  ProfileFacts facts;
  facts.portable = portable_;
  facts.program_folder = folders_.program_folder;
  facts.installation_folders = folders_.installation_folders;
  facts.local_app_data = folders_.local_app_data;
  return facts;
}

void ProgramSteps::find_profile() {
  profile_.find(facts());
}

void ProgramSteps::prepare_first_run() {
  if (const auto portable = take_startup_file(folders_.program_folder)) {
    portable_ = *portable;
    // A portable installation keeps its first profile beside the program.
    if (portable_) profile_.find_again(facts());
  }
  offer_sample_database(sample_database_path(portable_, folders_), profile_.settings().recent_files);
}

void ProgramSteps::unpack_help() {
  const std::string wrong = rowvane::unpack_help(folders_.program_folder);
  if (!wrong.empty()) user_.messages.show(wrong, MessageIcon::kWarning);
}

void ProgramSteps::take_default_page() {
  if (const auto printer = platform::default_printer_page()) default_page_ = page_of(*printer);
}

void ProgramSteps::start_server_monitor() {
  monitor_ = std::make_unique<ServerMonitor>(timing_.time_out, [this] { quit_message_loop(); });
  monitor_->start();
}

void ProgramSteps::add_message_loop() {
  monitor_->add_object();
}

void ProgramSteps::remove_message_loop() {
  monitor_->release_object();
}

void ProgramSteps::pause() {
  std::this_thread::sleep_for(timing_.pause);
}

void ProgramSteps::save_profile() {
  const ErrorCode error = profile_.save();
  if (error != ErrorCode::kOk) user_.messages.show(std::string(error_text(error)), MessageIcon::kError);
}

}  // namespace rowvane
