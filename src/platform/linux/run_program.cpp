#include "platform/linux/run_program.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace rowvane::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kMaxOutput = 1 << 20;
constexpr int kNoPipe = -1;

// The environment with the C locale, so that programs answer in words that can be read.
std::vector<std::string> plain_environment() {
  std::vector<std::string> variables;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view variable = *entry;
    if (!variable.starts_with("LC_ALL=")) variables.emplace_back(variable);
  }
  variables.emplace_back("LC_ALL=C");
  return variables;
}

std::vector<char*> pointers_to(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Starts the program with its standard output going to OUTPUT, or nowhere; 0 when it can't.
pid_t spawn(std::vector<std::string> arguments, std::vector<std::string> variables, int output) {
  posix_spawn_file_actions_t actions;
  if (::posix_spawn_file_actions_init(&actions) != 0) return 0;
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  if (output == kNoPipe) {
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  } else {
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  }
  const std::vector<char*> argument_pointers = pointers_to(arguments);
  const std::vector<char*> variable_pointers = pointers_to(variables);
  pid_t process = 0;
  const int error = ::posix_spawnp(&process, argument_pointers[0], &actions, nullptr,
                                   argument_pointers.data(), variable_pointers.data());
  ::posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? process : 0;
}

int milliseconds_to(Clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
  return left.count() > 0 ? static_cast<int>(left.count()) : 0;
}

// Reads all that comes through PIPE; false at the deadline or when it is too much.
bool read_all(int pipe, Clock::time_point deadline, std::string& text) {
  std::array<char, 4096> buffer{};
  for (;;) {
    struct pollfd waiting {
      pipe, POLLIN, 0
    };
    const int ready = ::poll(&waiting, 1, milliseconds_to(deadline));
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) return false;
    const ssize_t count = ::read(pipe, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count == 0;
    text.append(buffer.data(), static_cast<size_t>(count));
    if (text.size() > kMaxOutput) return false;
  }
}

// Waits for PROCESS; false when it is still there at the deadline.
bool wait_for(pid_t process, Clock::time_point deadline, int& status) {
  for (;;) {
    const pid_t ended = ::waitpid(process, &status, WNOHANG);
    if (ended == process || (ended < 0 && errno != EINTR)) return ended == process;
    if (Clock::now() >= deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

}  // namespace

std::optional<std::string> run_program(const std::vector<std::string>& arguments,
                                       std::chrono::milliseconds timeout) {
  std::array<int, 2> pipe{};
  if (::pipe2(pipe.data(), O_CLOEXEC) != 0) return std::nullopt;
  const Clock::time_point deadline = Clock::now() + timeout;
  const pid_t process = spawn(arguments, plain_environment(), pipe[1]);
  ::close(pipe[1]);
  std::string text;
  int status = 0;
  bool done = false;
  if (process != 0) {
    done = read_all(pipe[0], deadline, text) && wait_for(process, deadline, status);
    if (!done) {
      ::kill(process, SIGKILL);
      while (::waitpid(process, &status, 0) < 0 && errno == EINTR) continue;
    }
  }
  ::close(pipe[0]);
  if (!done || !WIFEXITED(status) || WEXITSTATUS(status) != 0) return std::nullopt;
  return text;
}

bool start_program(const std::vector<std::string>& arguments) {
  std::vector<std::string> variables;
  for (char** entry = environ; *entry != nullptr; ++entry) variables.emplace_back(*entry);
  const pid_t process = spawn(arguments, std::move(variables), kNoPipe);
  if (process == 0) return false;
  // Somebody has to hear of its end; until then it would stay in the list of processes.
  std::thread([process] {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) continue;
  }).detach();
  return true;
}

}  // namespace rowvane::platform
