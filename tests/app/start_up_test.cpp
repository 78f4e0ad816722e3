#include "app/start/start_up.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/profile_test_support.h"
#include "app/start/program_steps.h"
#include "app/user_test_support.h"
#include "core/messages/messages.h"
#include "platform/temporary_folder.h"

namespace rowvane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Writes down each step.
class RecordedSteps final : public StartUpSteps {
 public:
  void initialise_com() override { add("com"); }
  void initialise_common_controls(unsigned classes) override { add("controls " + std::to_string(classes)); }
  void set_server_timing(const ServerTiming& timing) override {
    add("timing " + std::to_string(timing.time_out.count()) + " " + std::to_string(timing.pause.count()));
  }
  void initialise_module() override { add("module"); }
  void load_long_text_control() override { add("rich edit"); }
  StartupCommand parse_command_line() override {
    add("parse");
    return command;
  }
  bool unregister_server() override { return end("unregister"); }
  bool register_server() override { return end("register"); }
  bool uninstall() override { return end("uninstall"); }
  bool has_licence() override { return end("licence"); }
  void find_profile() override { add("profile"); }
  void prepare_first_run() override { add("first run"); }
  void unpack_help() override { add("help"); }
  void take_default_page() override { add("page"); }
  void start_server_monitor() override { add("monitor"); }
  void register_class_objects() override { add("register objects"); }
  void resume_class_objects() override { add("resume objects"); }
  void add_message_loop() override { add("add loop"); }
  void create_main_frame() override { add("frame"); }
  void open_file(const std::string& path) override { add("open " + path); }
  void run_message_loop() override { add("run"); }
  void remove_message_loop() override { add("remove loop"); }
  void revoke_class_objects() override { add("revoke objects"); }
  void pause() override { add("pause"); }
  void release_module_state() override { add("release"); }
  void save_profile() override { add("save"); }
  void free_printer() override { add("free printer"); }
  void close_server_monitor() override { add("close monitor"); }
  void terminate_module() override { add("terminate"); }
  void uninitialise_com() override { add("end com"); }

  StartupCommand command;
  bool succeeds = true;
  std::string done;

 private:
  void add(const std::string& step) { done += (done.empty() ? "" : ", ") + step; }
  bool end(const std::string& step) {
    add(step);
    return succeeds;
  }
};

const std::string kBegin = "com, controls 545, controls 1060, timing 5000 1000, module, rich edit, parse";
const std::string kPrepare =
    ", licence, profile, first run, help, page, monitor, register objects, resume objects";
const std::string kEnd =
    ", revoke objects, pause, release, save, free printer, close monitor, terminate, end com";
const std::string kEarlyEnd = ", terminate, end com";

TEST(StartUp, RunsItsStepsInOrder) {
  RecordedSteps window;
  window.command.files = {"a.rvb", "b.rvb"};
  EXPECT_EQ(run_program(window), 0);
  EXPECT_EQ(window.done,
            kBegin + kPrepare + ", add loop, frame, open a.rvb, open b.rvb, run, remove loop" + kEnd);
  RecordedSteps empty;
  EXPECT_EQ(run_program(empty), 0);
  EXPECT_EQ(empty.done, kBegin + kPrepare + ", add loop, frame, run, remove loop" + kEnd);
  RecordedSteps server;
  server.command = {StartupAction::kRun, true, {"a.rvb"}};
  EXPECT_EQ(run_program(server), 0);
  EXPECT_EQ(server.done, kBegin + kPrepare + ", run" + kEnd);
}

TEST(StartUp, EndsEarly) {
  const std::pair<StartupAction, const char*> cases[] = {
      {StartupAction::kRegisterServer, ", register"},
      {StartupAction::kUnregisterServer, ", unregister"},
      {StartupAction::kUninstall, ", uninstall"},
  };
  for (const bool succeeds : {true, false}) {
    for (const auto& [action, step] : cases) {
      RecordedSteps steps;
      steps.command.action = action;
      steps.succeeds = succeeds;
      EXPECT_EQ(run_program(steps), succeeds ? 0 : 1);
      EXPECT_EQ(steps.done, kBegin + step + kEarlyEnd);
    }
  }
  RecordedSteps unlicensed;
  unlicensed.succeeds = false;
  EXPECT_EQ(run_program(unlicensed), 1);
  EXPECT_EQ(unlicensed.done, kBegin + ", licence" + kEarlyEnd);
}

// A program without a window, whose message loop changes a setting.
class WindowlessSteps final : public ProgramSteps {
 public:
  using ProgramSteps::ProgramSteps;
  void initialise_com() override {}
  void initialise_common_controls(unsigned) override {}
  void set_server_timing(const ServerTiming&) override {
    ProgramSteps::set_server_timing({std::chrono::milliseconds(5), std::chrono::milliseconds(0)});
  }
  void initialise_module() override {}
  void load_long_text_control() override {}
  bool has_licence() override { return true; }
  void register_class_objects() override {}
  void resume_class_objects() override {}
  void create_main_frame() override {}
  void open_file(const std::string&) override {}
  void run_message_loop() override {
    profile().settings().general_options.undo_level = 77;
    if (!waits_for_end) return;
    server_monitor()->add_object();
    server_monitor()->release_object();
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return ended_; });
  }
  void revoke_class_objects() override {}
  void release_module_state() override {}
  void take_default_page() override {}
  void terminate_module() override {}
  void uninitialise_com() override {}

  bool waits_for_end = false;
  bool objects_work = true;

 protected:
  bool install_class_objects() override { return objects_work; }
  bool remove_class_objects() override { return objects_work; }
  void quit_message_loop() override {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool ended_ = false;
};

class ProgramStepsTest : public testing::Test {
 protected:
  ProgramStepsTest() {
    fs::create_directories(folder_.path("programs/rowvane"));
    folders_.program_folder = folder_.path("programs/rowvane");
    folders_.program_file = folder_.path("programs/rowvane/rowvane");
    folders_.installation_folders = {folder_.path("programs")};
    folders_.local_app_data = folder_.path("data");
    folders_.documents = folder_.path("documents");
  }

  std::unique_ptr<WindowlessSteps> program(StartupCommand command = {}) {
    return std::make_unique<WindowlessSteps>(std::move(command), folders_,
                                             UserDialogs{questions_, messages_, passwords_}, &cipher_);
  }
  std::string user_profile() const { return folder_.path("data/Rowvane/settings.xml"); }
  std::string program_profile() const { return folder_.path("programs/rowvane/settings.xml"); }

  platform::TemporaryFolder folder_;
  platform::KnownFolders folders_;
  RecordedQuestions questions_;
  RecordedMessages messages_;
  ListedPasswords passwords_{{"wrong1", "wrong2", "wrong3"}};
  PlainCipher cipher_;
};

TEST_F(ProgramStepsTest, AnInstalledProgramMakesTheUsersProfileAtExit) {
  const auto first = program();
  EXPECT_EQ(first->profile().path(), "");
  EXPECT_EQ(run_program(*first), 0);
  EXPECT_THAT(content_of(user_profile()), HasSubstr("UndoLevel=\"77\""));
  EXPECT_FALSE(fs::exists(program_profile()));
  const auto second = program();
  second->find_profile();
  EXPECT_EQ(second->options().undo_level, 77U);
  EXPECT_THAT(messages_.shown, IsEmpty());
}

TEST_F(ProgramStepsTest, TheStartupFileMakesAPortableInstallation) {
  put(folder_.path("programs/rowvane/startup.txt"), "11");
  put(folder_.path("programs/rowvane/sample.zip"), "PK");
  const auto first = program();
  EXPECT_EQ(run_program(*first), 0);
  EXPECT_TRUE(first->is_portable());
  EXPECT_THAT(content_of(program_profile()), HasSubstr(folder_.path("programs/rowvane/sample.zip") + "\""));
  EXPECT_FALSE(fs::exists(user_profile()));
  // The next start finds it there.
  const auto second = program();
  EXPECT_EQ(run_program(*second), 0);
  EXPECT_EQ(second->profile().path(), program_profile());
}

TEST_F(ProgramStepsTest, AProtectedProfileWithoutItsPasswordIsNeverOverwritten) {
  ProfileFile file(&cipher_);
  file.set_password(Secret("secret"));
  ASSERT_EQ(file.save(user_profile(), profile::Settings()), ErrorCode::kOk);
  const std::string before = content_of(user_profile());
  EXPECT_EQ(run_program(*program()), 0);
  EXPECT_EQ(content_of(user_profile()), before);
  EXPECT_THAT(messages_.shown, ElementsAre("x: Invalid password"));
}

TEST_F(ProgramStepsTest, ABrokenProfileGivesDefaultsAndIsKeptBeside) {
  fs::create_directories(folder_.path("data/Rowvane"));
  put(user_profile(), "<Profile><GeneralOptions");
  EXPECT_EQ(run_program(*program()), 0);
  EXPECT_THAT(messages_.shown, ElementsAre("!: " + message(MessageId::kProfileNotLoaded)));
  EXPECT_EQ(content_of(user_profile() + ".bak"), "<Profile><GeneralOptions");
  EXPECT_THAT(content_of(user_profile()), HasSubstr("UndoLevel=\"77\""));
}

TEST_F(ProgramStepsTest, AnotherProfileReplacesTheSettingsAndThePath) {
  const std::string other = folder_.path("other.xml");
  put(other, "<Profile><GeneralOptions UndoLevel='3'/></Profile>");
  const auto steps = program();
  steps->find_profile();
  steps->profile().settings().toolbar_options.dark_mode = true;
  EXPECT_EQ(steps->profile().load_other(folder_.path("none.xml")), ErrorCode::kFileRead);
  EXPECT_TRUE(steps->profile().settings().toolbar_options.dark_mode);
  EXPECT_EQ(steps->profile().path(), user_profile());
  EXPECT_EQ(steps->profile().load_other(other), ErrorCode::kOk);
  EXPECT_FALSE(steps->profile().settings().toolbar_options.dark_mode);
  EXPECT_EQ(steps->options().undo_level, 3U);
  EXPECT_EQ(steps->profile().path(), other);
  EXPECT_EQ(steps->profile().save_as(folder_.path("copy.xml")), ErrorCode::kOk);
  EXPECT_EQ(steps->profile().path(), other);
  EXPECT_THAT(content_of(folder_.path("copy.xml")), HasSubstr("UndoLevel=\"3\""));
}

TEST_F(ProgramStepsTest, TheServerEndsWhenItsLastObjectIsGone) {
  const auto server = program({StartupAction::kRun, true, {}});
  server->waits_for_end = true;
  EXPECT_EQ(run_program(*server), 0);  // ends, or the test would hang
  EXPECT_EQ(server->server_monitor(), nullptr);
  EXPECT_TRUE(fs::exists(user_profile()));
}

TEST_F(ProgramStepsTest, FailedHelpIsTold) {
  fs::create_directory(folder_.path("programs/rowvane/help"));
  put(folder_.path("programs/rowvane/help/rowvane-help.zip"), "broken");
  program()->unpack_help();
  EXPECT_THAT(messages_.shown, ElementsAre("!: Can't open the compressed Help archive."));
}

}  // namespace
}  // namespace rowvane
