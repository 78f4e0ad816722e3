// Searching on the command line.
#include <algorithm>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "cli/run_rvb.h"
#include "core/limits.h"
#include "platform/temporary_folder.h"

namespace rowvane::cli {
namespace {

class WhereOption : public testing::Test {
 protected:
  WhereOption() {
    std::ofstream(path("birds.csv"), std::ios::binary)
        << "Name,Name:b,Count\ntern,Oslo,4\nRook,x:c,1\nrook crow,,3\n,Bergen,2\n";
  }

  std::string path(const std::string& name) const { return folder_.path(name); }

  // Standard output, and behind it the status and standard error where there is one.
  static std::string rvb(std::vector<std::string> arguments) {
    const auto [status, out, err] = run_rvb(std::move(arguments));
    return err.empty() ? out : out + std::to_string(status) + " " + err;
  }

  // The counts of the records found.
  std::string found(const std::vector<std::string>& criteria, std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"show", path("birds.csv"), "--fields", "Count", "--format", "csv"});
    for (const std::string& criterion : criteria) more.insert(more.end(), {"--where", criterion});
    std::string out = rvb(std::move(more));
    std::erase(out, '\r');
    std::replace(out.begin(), out.end(), '\n', ' ');
    return out;
  }

  platform::TemporaryFolder folder_;
};

TEST_F(WhereOption, NarrowsWhatIsShownAndCounted) {
  EXPECT_EQ(found({"Count:f:1"}), "Count 4 3 2 ");
  EXPECT_EQ(found({"Count:f:1", "name:c:ROOK"}), "Count 3 ");
  EXPECT_EQ(found({"Count:a:=Count*2>6"}), "Count 4 ");
  EXPECT_EQ(found({"Name:k"}), "Count 2 ");
  EXPECT_EQ(found({"Name:k:"}), "Count 2 ");
  EXPECT_EQ(found({"Name:l:roock"}), "Count 1 3 ");
  EXPECT_EQ(found({"Count:f:1"}, {"--sort", "Count", "--limit", "2"}), "Count 2 3 ");
  EXPECT_EQ(rvb({"count", path("birds.csv"), "--where", "Name:b:rook|tern"}), "3\n");
  EXPECT_EQ(rvb({"count", path("birds.csv")}), "4\n");
}

TEST_F(WhereOption, TheLongestFieldNameCounts) {
  EXPECT_EQ(found({"Name:b:c:O"}), "Count 4 ");
  EXPECT_EQ(found({"Name:b:d:x:c"}), "Count 1 ");
  EXPECT_EQ(found({"Name:b:^r"}), "Count 1 3 ");
}

TEST_F(WhereOption, NarrowsWhatIsExportedAndDeleted) {
  EXPECT_EQ(rvb({"export", path("birds.csv"), path("out.csv"), "--quiet", "--fields", "Count", "--where",
                 "Count:e:3", "--sort", "-Count"}),
            "");
  std::ostringstream text;
  text << std::ifstream(path("out.csv"), std::ios::binary).rdbuf();
  EXPECT_EQ(text.str(), "Count\r\n4\r\n2\r\n1\r\n");
  EXPECT_EQ(rvb({"delete", path("birds.csv"), "--where", "Name:l:rook", "-o", path("fewer.rvb")}),
            "2 deleted\n");
  EXPECT_EQ(rvb({"count", path("fewer.rvb")}), "2\n");
  EXPECT_EQ(rvb({"delete", path("fewer.rvb"), "--where", "Count:d:99"}), "0 deleted\n");
  EXPECT_EQ(rvb({"delete", path("fewer.rvb"), "1", "--where", "Count:d:4"}).substr(0, 2), "2 ");
  EXPECT_EQ(rvb({"delete", path("fewer.rvb")}).substr(0, 2), "2 ");
}

TEST_F(WhereOption, TellsWhatIsWrong) {
  const std::string birds = path("birds.csv");
  const auto count = [&](const std::string& criterion) {
    return rvb({"count", birds, "--where", criterion});
  };
  EXPECT_EQ(count("Weight:d:1"), "2 rvb: \"Weight:d:1\" is no FIELD:KIND:TEXT with a field of birds\n");
  for (const char* wrong : {"Count", "Count:", "Count:z:1", "Count:d1", ":d:1", ""})
    EXPECT_EQ(count(wrong).substr(0, 2), "2 ") << wrong;
  EXPECT_EQ(count("Count:m:x"), "2 rvb: \"Count:m:x\" has no text that its kind takes\n");
  EXPECT_EQ(count("Count:h:1"), "1 rvb: The filter of the field \"Count\" lacks a value: Between: 1\n");
  EXPECT_EQ(count("Name:b:(("), "1 rvb: Regular expression error: missing closing parenthesis\n");
  EXPECT_EQ(count("Name:a:=1+"), "1 rvb: Invalid formula!\n");
  EXPECT_EQ(count("Name:d:" + std::string(kMaxBufferBytes, 'x')), "0\n");
  EXPECT_EQ(count("Name:d:" + std::string(kMaxBufferBytes + 1, 'x')),
            "0\n0 rvb: warning The entered text will be truncated to max. 8192 bytes.\n");
}

}  // namespace
}  // namespace rowvane::cli
