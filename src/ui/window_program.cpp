#include "ui/window_program.h"

#include <QDir>
#include <QFileInfo>
#include <QMetaObject>

#include "app/start/startup_command.h"
#include "core/log.h"
#include "core/program_version.h"
#include "ui/text.h"
#include "ui/theme.h"

namespace rowvane {

WindowProgram::WindowProgram(StartupCommand command, platform::KnownFolders folders, MessageBoxes& dialogs,
                             ProfileCipher* cipher)
    : ProgramSteps(std::move(command), std::move(folders), {dialogs, dialogs, dialogs}, cipher),
      dialogs_(dialogs) {}

void WindowProgram::create_main_frame() {
  set_dark_colors(profile().settings().toolbar_options.dark_mode);
  const std::string& path = profile().path();
  const QString recovery = path.empty() ? QString() : QFileInfo(to_qt(path)).dir().filePath("recovery");
  frame_ = std::make_unique<CMainFrame>(profile(), dialogs_, recovery);
  frame_->set_uninstall([this] { return uninstall(); });
  dialogs_.set_parent(frame_.get());
  frame_->restore_placement();
  // Before a file is opened, which may be one of those that come back.
  frame_->offer_recovery();
}

void WindowProgram::open_file(const std::string& path) {
  frame_->open_file(to_qt(path));
}

void WindowProgram::run_message_loop() {
  QApplication::exec();
  dialogs_.set_parent(nullptr);
}

void WindowProgram::quit_message_loop() {
  QMetaObject::invokeMethod(qApp, &QApplication::quit, Qt::QueuedConnection);
}

int run_window_program(int count, const char* const* arguments) {
  set_log_categories_from_environment();
  // Qt takes its own options out of the list.
  std::vector<char*> words;
  for (int i = 0; i < count; ++i) words.push_back(const_cast<char*>(arguments[i]));
  words.push_back(nullptr);
  int left = count;
  QApplication application(left, words.data());
  QApplication::setApplicationName("Rowvane");
  QApplication::setApplicationVersion(to_qt(program_version()));
  std::vector<std::string> given;
  for (int i = 1; i < left; ++i) given.emplace_back(words[static_cast<size_t>(i)]);
  MessageBoxes dialogs;
  TwofishProfileCipher cipher;
  WindowProgram program(parse_arguments(given), platform::known_folders(), dialogs, &cipher);
  return run_program(program);
}

}  // namespace rowvane
