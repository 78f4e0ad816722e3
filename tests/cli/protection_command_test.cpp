// Passwords on the command line: where they come from, and what happens without.
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/run_rvb.h"
#include "platform/environment.h"
#include "platform/temporary_folder.h"

namespace rowvane::cli {
namespace {

using platform::ScopedEnvironment;
using testing::HasSubstr;

class ProtectionCommands : public testing::Test {
 protected:
  ProtectionCommands() {
    std::ofstream(path("fruit.csv")) << "Name,Price\napple,1.5\npear,2\n";
    EXPECT_EQ(rvb({"import", database_, path("fruit.csv")}).status, 0);
    std::ofstream(path("password.txt")) << "secret one\r\nanother line\n";
    std::ofstream(path("new.txt")) << "secret two";
  }

  std::string path(const std::string& name) const { return folder_.path(name); }

  std::string bytes() const {
    std::ostringstream content;
    content << std::ifstream(database_, std::ios::binary).rdbuf();
    return content.str();
  }

  static Outcome rvb(std::vector<std::string> arguments) { return run_rvb(std::move(arguments)); }

  std::string json_info(const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments = {"--json", "info", database_};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return rvb(arguments).out;
  }

  platform::TemporaryFolder folder_;
  std::string database_ = path("fruit.rvb");
  const ScopedEnvironment no_password_{"RVB_PASSWORD", nullptr};
  const ScopedEnvironment no_new_password_{"RVB_NEW_PASSWORD", nullptr};
  const ScopedEnvironment no_field_password_{"RVB_FIELD_PASSWORD", nullptr};
};

TEST_F(ProtectionCommands, PasswordsComeFromFilesAndTheEnvironment) {
  EXPECT_EQ(rvb({"protect", database_, "--new-password-file", path("password.txt")}).status, 0);
  EXPECT_EQ(rvb({"info", database_}).err, "rvb: error 37: Invalid password\n");
  const std::vector<std::string> with_file = {"--password-file", path("password.txt")};
  EXPECT_THAT(json_info(with_file), HasSubstr("\"protected\": true, \"algorithm\": \"Twofish CFB\", "
                                              "\"read_only_open\": false, \"read_only\": false}"));
  const ScopedEnvironment password("RVB_PASSWORD", "secret one");
  EXPECT_EQ(rvb({"count", database_}).out, "2\n");
  EXPECT_EQ(rvb({"set", database_, "1", "Price=3"}).status, 0);
  EXPECT_EQ(rvb({"show", database_, "--format", "csv"}).out, "Name,Price\r\napple,3\r\npear,2\r\n");
  EXPECT_EQ(rvb({"info", database_, "--password-file", path("new.txt")}).err,
            "rvb: error 37: Invalid password\n");
  EXPECT_EQ(rvb({"info", database_, "--password-file", path("none.txt")}).status, 1);
  const Outcome exported = rvb({"export", database_, path("out.csv")});
  EXPECT_EQ(exported.status, 0);
  EXPECT_THAT(exported.err, HasSubstr("rvb: warning message 150: "));
}

TEST_F(ProtectionCommands, ProtectionIsChangedAndTakenAway) {
  const std::string plain = bytes();
  const ScopedEnvironment short_password("RVB_NEW_PASSWORD", "12345");
  EXPECT_EQ(rvb({"protect", database_}).err,
            "rvb: message 147: Please enter at least 6 characters as a password.\n");
  EXPECT_EQ(bytes(), plain);
  const ScopedEnvironment long_enough("RVB_NEW_PASSWORD", "123456");
  EXPECT_EQ(rvb({"protect", database_, "--algorithm", "blowfish"}).status, 0);
  const ScopedEnvironment password("RVB_PASSWORD", "123456");
  EXPECT_THAT(json_info(), HasSubstr("Blowfish CFB"));
  EXPECT_EQ(rvb({"protect", database_, "--new-password-file", path("new.txt")}).status, 0);
  EXPECT_EQ(rvb({"info", database_}).status, 1);
  const ScopedEnvironment second("RVB_PASSWORD", "secret two");
  EXPECT_THAT(json_info(), HasSubstr("Blowfish CFB"));
  EXPECT_EQ(rvb({"unprotect", database_}).status, 0);
  const ScopedEnvironment none("RVB_PASSWORD", nullptr);
  EXPECT_THAT(json_info(), HasSubstr("\"protected\": false"));
}

TEST_F(ProtectionCommands, AnyoneMayReadWhenTheOwnerSaysYes) {
  const ScopedEnvironment new_password("RVB_NEW_PASSWORD", "secret one");
  const std::string plain = bytes();
  EXPECT_THAT(rvb({"protect", database_, "--read-only-open"}).err,
              HasSubstr("allow anyone to open this database"));
  EXPECT_EQ(bytes(), plain);
  EXPECT_EQ(rvb({"--yes", "protect", database_, "--read-only-open"}).status, 0);
  EXPECT_EQ(rvb({"count", database_}).out, "2\n");
  EXPECT_THAT(rvb({"info", database_}).out, HasSubstr("open read-only"));
  const std::string saved = bytes();
  for (const std::vector<std::string>& change : {std::vector<std::string>{"set", database_, "1", "Price=3"},
                                                 {"set", database_, "1", "Price=3", "-o", path("copy.rvb")},
                                                 {"unprotect", database_},
                                                 {"protect", database_}}) {
    const Outcome refused = rvb(change);
    EXPECT_EQ(refused.status, 1) << change[0];
    EXPECT_THAT(refused.err, HasSubstr("rvb: error 37: Invalid password"));
  }
  EXPECT_EQ(bytes(), saved);
  EXPECT_FALSE(std::ifstream(path("copy.rvb")).good());
  const ScopedEnvironment password("RVB_PASSWORD", "secret one");
  EXPECT_EQ(rvb({"set", database_, "1", "Price=3"}).status, 0);
}

TEST_F(ProtectionCommands, FieldsAreEncryptedAndDecrypted) {
  const std::string shown = rvb({"show", database_, "--format", "csv"}).out;
  EXPECT_EQ(rvb({"encrypt-fields", database_}).status, 2);
  const ScopedEnvironment new_password("RVB_NEW_PASSWORD", "field secret");
  EXPECT_EQ(rvb({"encrypt-fields", database_, "--fields", "Price,Pears"}).status, 1);
  ASSERT_EQ(rvb({"encrypt-fields", database_, "--fields", "Price,Name"}).status, 0);
  EXPECT_THAT(rvb({"info", database_}).out, HasSubstr("Price  [Number]  encrypted"));
  EXPECT_EQ(rvb({"show", database_}).out.find("apple"), std::string::npos);
  EXPECT_EQ(rvb({"set", database_, "1", "Price=3"}).err,
            "rvb: error 137: Encrypted fields can't be edited. You need to decrypt them first.\n");
  EXPECT_EQ(rvb({"encrypt-fields", database_, "--fields", "Price"}).status, 1);
  const ScopedEnvironment wrong("RVB_FIELD_PASSWORD", "field secreT");
  EXPECT_EQ(rvb({"decrypt-fields", database_}).err, "rvb: error 37: Invalid password\n");
  const ScopedEnvironment right("RVB_FIELD_PASSWORD", "field secret");
  EXPECT_EQ(rvb({"decrypt-fields", database_, "--fields", "Price"}).status, 0);
  EXPECT_THAT(rvb({"decrypt-fields", database_, "--fields", "Price"}).err,
              HasSubstr("\"Price\" is not encrypted"));
  EXPECT_EQ(rvb({"decrypt-fields", database_}).status, 0);
  EXPECT_EQ(rvb({"show", database_, "--format", "csv"}).out, shown);
}

}  // namespace
}  // namespace rowvane::cli
