// Finding, replacing and search keys on the command line.
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/run_rvb.h"
#include "platform/temporary_folder.h"

namespace rowvane::cli {
namespace {

using testing::HasSubstr;

class FindCommands : public testing::Test {
 protected:
  FindCommands() {
    std::ofstream(folder_.path("fruit.csv")) << "Name,Price\nApple,1.5\n\"Smith, John\",20\napple pie,15\n";
    std::ofstream(folder_.path("orders.csv")) << "Fruit,Pieces\napple,3\npear,15\n";
    EXPECT_EQ(rvb({"import", database_, folder_.path("fruit.csv")}).status, 0);
    EXPECT_EQ(rvb({"import", database_, folder_.path("orders.csv"), "--table", "sales/orders"}).status, 0);
  }

  static Outcome rvb(std::vector<std::string> arguments) { return run_rvb(std::move(arguments)); }

  static std::string output(std::vector<std::string> arguments) {
    Outcome outcome = rvb(std::move(arguments));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
  }

  platform::TemporaryFolder folder_;
  std::string database_ = folder_.path("shop.rvb");
};

TEST_F(FindCommands, FindPrintsWhatShowsTheText) {
  EXPECT_EQ(output({"find", database_, "fruit", "APPLE", "--format", "csv"}),
            "Name,Price\r\nApple,1.5\r\napple pie,15\r\n");
  EXPECT_EQ(
      output({"find", database_, "fruit", "apple", "--match-case", "--format", "csv", "--show", "Price"}),
      "Price\r\n15\r\n");
  EXPECT_EQ(output({"find", database_, "fruit", "^1.*5$", "--regex", "--fields", "Price", "--json"}),
            "{\"Name\": \"Apple\", \"Price\": 1.5}\n{\"Name\": \"apple pie\", \"Price\": 15}\n");
  EXPECT_EQ(output({"find", database_, "fruit", "apple", "--limit", "1", "--json", "--show", "Name"}),
            "{\"Name\": \"Apple\"}\n");
  EXPECT_EQ(output({"find", database_, "--all-tables", "15"}),
            "fruit:\nName       Price\n---------  -----\napple pie     15\n\n"
            "sales/orders:\nFruit  Pieces\n-----  ------\npear       15\n");
  EXPECT_EQ(output({"find", database_, "--all-tables", "pear", "--json"}),
            "{\"table\": \"sales/orders\", \"record\": {\"Fruit\": \"pear\", \"Pieces\": 15}}\n");
  EXPECT_EQ(output({"find", folder_.path("orders.csv"), "fruit:", "--json"}), "")
      << "names of fields are no texts";
}

TEST_F(FindCommands, FindRefusesWhatCannotBeLookedFor) {
  EXPECT_EQ(rvb({"find", database_, "apple"}).status, 1) << "which table?";
  EXPECT_EQ(rvb({"find", database_}).status, 2);
  EXPECT_EQ(rvb({"find", database_, "--all-tables", "fruit", "apple"}).status, 2);
  EXPECT_THAT(rvb({"find", database_, "none", "apple"}).err, HasSubstr("error 23"));
  EXPECT_THAT(rvb({"find", database_, "fruit", "(", "--regex"}).err, HasSubstr("Regular expression error: "));
  EXPECT_THAT(rvb({"find", database_, "fruit", "a", "--regex", "--similar"}).err,
              HasSubstr("The 'Find Similar' method requires selecting the 'Options > Plain Text Matching'"));
}

TEST_F(FindCommands, ReplaceChangesAndCounts) {
  EXPECT_EQ(output({"replace", database_, "fruit", "^(\\w+), (\\w+)$", "$2 $1", "--regex"}),
            "1 match replaced in 1 cell.\n");
  EXPECT_EQ(
      output({"replace", database_, "fruit", "5", "x"}),
      "0 matches replaced in 0 cells.\n2 cells not changed: the text would not be a number or would lose "
      "digits.\n");
  EXPECT_EQ(output({"replace", database_, "--all-tables", "apple", "plum", "--json"}),
            "{\"matches\": 3, \"cells\": 3, \"refused\": 0}\n");
  EXPECT_EQ(output({"show", database_, "fruit", "--format", "csv"}),
            "Name,Price\r\nplum,1.5\r\nJohn Smith,20\r\nplum pie,15\r\n");
  EXPECT_EQ(
      output({"--quiet", "replace", database_, "sales/orders", "plum", "kiwi", "-o", folder_.path("o.rvb")}),
      "");
  EXPECT_THAT(output({"show", database_, "sales/orders"}), HasSubstr("plum"));
  EXPECT_THAT(output({"show", folder_.path("o.rvb"), "sales/orders"}), HasSubstr("kiwi"));
  EXPECT_THAT(rvb({"replace", database_, "fruit", "a", "$1", "--regex"}).err, HasSubstr("names group 1"));
}

TEST_F(FindCommands, SearchKeysAreKeptInTheDatabase) {
  EXPECT_EQ(output({"keys", database_}), "");
  output({"keys", database_, "fruit", "add", "pies", "Price:f:3", "Name:i:pie"});
  output({"keys", database_, "sales/orders", "add", "none", "Fruit:k"});
  EXPECT_EQ(output({"keys", database_}),
            "fruit:\n  pies\n    Name:i:pie\n    Price:f:3\nsales/orders:\n  none\n    Fruit:k: \n");
  EXPECT_THAT(rvb({"keys", database_, "fruit", "add", "PIES", "Name:k"}).err,
              HasSubstr("A key with that name already exists. Please enter a unique key name."));
  EXPECT_THAT(rvb({"keys", database_, "fruit", "delete", "none"}).err,
              HasSubstr("Incorrect search key selection."));
  EXPECT_EQ(rvb({"keys", database_, "fruit", "add", "x", "Colour:d:red"}).status, 2);
  EXPECT_EQ(rvb({"keys", database_, "fruit", "add", "x", "Name:z:red"}).status, 2);
  EXPECT_EQ(rvb({"keys", database_, "fruit", "add", "x", "Name:a:=(("}).status, 1);
  EXPECT_EQ(output({"show", database_, "fruit", "--key", "Pies", "--format", "csv"}),
            "Name,Price\r\napple pie,15\r\n");
  EXPECT_EQ(output({"count", database_, "fruit", "--key", "pies", "--where", "Price:g:9"}), "0\n");
  EXPECT_EQ(rvb({"count", database_, "fruit", "--key", "tarts"}).err,
            "rvb: Incorrect search key selection.\n");
  output({"keys", database_, "fruit", "rename", "pies", "Cakes"});
  output({"keys", database_, "fruit", "change", "cakes", "Name:c:a"});
  EXPECT_EQ(output({"--json", "keys", database_, "fruit"}),
            "{\"table\": \"fruit\", \"name\": \"Cakes\", \"criteria\": [\"Name:c:a\"]}\n");
  output({"keys", database_, "fruit", "delete", "CAKES"});
  EXPECT_EQ(output({"keys", database_, "fruit"}), "");
}

}  // namespace
}  // namespace rowvane::cli
