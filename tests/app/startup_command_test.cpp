#include "app/start/startup_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace rowvane {
namespace {

using testing::ElementsAre;

using Action = StartupAction;
using Command = StartupCommand;

TEST(StartupCommand, ReadsOneText) {
  const std::string longest(259, 'x');
  const std::pair<std::string, Command> cases[] = {
      {"", {}},
      {"   ", {}},
      {"/RegServer", {Action::kRegisterServer, false, {}}},
      {"-regSERVER", {Action::kRegisterServer, false, {}}},
      {"-UnregServer", {Action::kUnregisterServer, false, {}}},
      {"\t/uninstall ", {Action::kUninstall, false, {}}},
      {"-Embedding", {Action::kRun, true, {}}},
      {"/AUTOMATION", {Action::kRun, true, {}}},
      // The first decides.
      {"-Embedding -Uninstall", {Action::kRun, true, {}}},
      {"-Uninstall /Automation", {Action::kUninstall, false, {}}},
      // Only whole words are switches.
      {"-RegServers", {Action::kRun, false, {"-RegServers"}}},
      {"--RegServer", {Action::kRun, false, {"--RegServer"}}},
      {"- RegServer", {Action::kRun, false, {"- RegServer"}}},
      {"C:\\a-regserver", {Action::kRun, false, {"C:\\a-regserver"}}},
      {"/home/user/a.rvb", {Action::kRun, false, {"/home/user/a.rvb"}}},
      // Paths with blanks, in quotes and without.
      {"  C:\\My Files\\a.rvb  ", {Action::kRun, false, {"C:\\My Files\\a.rvb"}}},
      {" \"C:\\My Files\\a.rvb\" \"b.rvb\"", {Action::kRun, false, {"C:\\My Files\\a.rvb"}}},
      {"\"a /Uninstall b.rvb\"", {Action::kRun, false, {"a /Uninstall b.rvb"}}},
      {"\"a b", {Action::kRun, false, {"a b"}}},
      {"\"\"", {}},
      {"-Embedding \"a b.rvb\"", {Action::kRun, true, {"a b.rvb"}}},
      {"a b.rvb -Embedding", {Action::kRun, true, {"a b.rvb"}}},
      {longest + "y", {Action::kRun, false, {longest}}},
      {"\"" + longest + "y\"", {Action::kRun, false, {longest}}},
  };
  for (const auto& [text, command] : cases) EXPECT_EQ(parse_command_text(text), command) << text;
}

TEST(StartupCommand, TakesSingleArgumentsAsTheyAre) {
  const std::vector<std::string> files = {"/data/a b.rvb", "", "-x", "\"q\".rvb", std::string(300, 'x')};
  const Command command = parse_arguments(files);
  EXPECT_EQ(command.action, Action::kRun);
  EXPECT_THAT(command.files, ElementsAre("/data/a b.rvb", "-x", "\"q\".rvb", std::string(259, 'x')));
  const std::vector<std::string> mixed = {"a.rvb", "/automation", "-Uninstall"};
  EXPECT_EQ(parse_arguments(mixed), (Command{Action::kRun, true, {"a.rvb"}}));
}

}  // namespace
}  // namespace rowvane
