// Sorting, duplicates, unique values and quartiles on the command line.
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/run_rvb.h"
#include "platform/temporary_folder.h"

namespace rowvane::cli {
namespace {

using testing::HasSubstr;

class CompareCommands : public testing::Test {
 protected:
  CompareCommands() {
    std::ofstream(path("birds.csv"), std::ios::binary)
        << "Name,City,Count\ntern,Oslo,4\nRook,oslo,1\nrook,Bergen,3\nwren,,2\nTern,OSLO,5\n";
  }

  std::string path(const std::string& name) const { return folder_.path(name); }

  // Status 0: standard output; otherwise the status and standard error.
  static std::string rvb(std::vector<std::string> arguments) {
    const auto [status, out, err] = run_rvb(std::move(arguments));
    return status == 0 ? out : std::to_string(status) + " " + err;
  }

  // The names of the records that a command on the birds prints.
  std::string names(const std::string& command, std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {command, path("birds.csv"), "--fields", "Name", "--format", "csv"});
    std::istringstream lines(rvb(std::move(arguments)));
    std::string all;
    for (std::string line; std::getline(lines, line);) {
      if (line != "Name\r") all += line.substr(0, line.find('\r')) + " ";
    }
    return all;
  }

  platform::TemporaryFolder folder_;
};

TEST_F(CompareCommands, ShowSorts) {
  EXPECT_EQ(names("show", {"--sort", "Count"}), "Rook wren rook tern Tern ");
  EXPECT_EQ(names("show", {"--sort", "-City,Count"}), "wren Rook tern Tern rook ");
  EXPECT_EQ(names("show", {"--sort", "name,-Count", "--limit", "3", "--offset", "1"}), "Rook Tern tern ");
  EXPECT_EQ(names("show", {"--sort", "Name", "--collation", "neutral"}), "Rook Tern rook tern wren ");
  EXPECT_EQ(names("show", {"--sort", "Name", "--case-sensitive"}), "rook Rook tern Tern wren ");
  EXPECT_THAT(rvb({"show", path("birds.csv"), "--sort", "Weight"}),
              HasSubstr("there is no field \"Weight\""));
  EXPECT_THAT(rvb({"show", path("birds.csv"), "--case-sensitive", "--ignore-punctuation"}),
              HasSubstr("2 rvb: "));
  EXPECT_THAT(rvb({"show", path("birds.csv"), "--collation", "neutral", "--ignore-punctuation"}),
              HasSubstr("2 rvb: "));
}

TEST_F(CompareCommands, TheProfileSaysHowTextsCompareUnlessOptionsDo) {
  std::ofstream(path("settings.xml")) << "<?xml version=\"1.0\"?>\n<Profile><SortOptions "
                                         "Collation=\"Neutral\" IgnorePunctuation=\"true\"/></Profile>";
  const std::vector<std::string> sort = {"--sort", "Name", "--profile", path("settings.xml")};
  EXPECT_EQ(names("show", sort), "Rook Tern rook tern wren ");
  std::vector<std::string> by_language = sort;
  by_language.insert(by_language.end(), {"--collation", "language"});
  EXPECT_EQ(names("show", by_language), "Rook rook tern Tern wren ");
}

TEST_F(CompareCommands, ExportSorts) {
  rvb({"export", path("birds.csv"), path("out.csv"), "--sort", "-Count", "--fields", "Count"});
  std::ostringstream content;
  content << std::ifstream(path("out.csv"), std::ios::binary).rdbuf();
  EXPECT_EQ(content.str(), "Count\r\n5\r\n4\r\n3\r\n2\r\n1\r\n");
}

TEST_F(CompareCommands, DuplicatesAndUniqueFollowTheirModes) {
  EXPECT_EQ(names("duplicates", {"--by", "City"}), "tern Rook Tern ");
  EXPECT_EQ(names("duplicates", {"--by", "Name", "--sort"}), "Rook rook tern Tern ");
  EXPECT_EQ(names("duplicates", {"--by", "Name", "--mode", "3"}), "rook Tern ");
  EXPECT_EQ(names("duplicates", {"--by", "City", "--collation", "neutral"}), "");
  EXPECT_EQ(names("unique", {"--by", "City", "--sort"}), "rook tern wren ");
  EXPECT_EQ(names("unique", {"--by", "Name,City", "--mode", "1"}), "Rook rook wren Tern ");
  EXPECT_THAT(rvb({"duplicates", path("birds.csv")}), HasSubstr("2 rvb: --by is required"));
  EXPECT_THAT(rvb({"unique", path("birds.csv"), "--by", "City", "--mode", "2"}), HasSubstr("2 rvb: "));
}

TEST_F(CompareCommands, RefusalsKeepTheirNumbers) {
  std::string names = "f0";
  for (int i = 1; i <= 100; ++i) names += ",f" + std::to_string(i);
  std::ofstream(path("wide.csv"), std::ios::binary) << names << "\n" << std::string(100, ',') << "\n";
  EXPECT_EQ(rvb({"duplicates", path("wide.csv"), "--by", names}),
            "1 rvb: message 127: Please select no more than 100 fields as sort keys.\n");
}

TEST_F(CompareCommands, UniqueSavesFrequencies) {
  EXPECT_EQ(rvb({"unique", path("birds.csv"), "--by", "City", "--save-frequencies", "Name"}),
            "1 rvb: Please specify a numeric field.\n");
  rvb({"unique", path("birds.csv"), "--by", "City", "--save-frequencies", "Count", "-o", path("birds.rvb")});
  EXPECT_EQ(rvb({"show", path("birds.rvb"), "--fields", "Count", "--format", "csv"}),
            "Count\r\n3\r\n1\r\n1\r\n1\r\n5\r\n");
}

TEST_F(CompareCommands, QuartilesFindBandsAndTheMean) {
  EXPECT_EQ(names("quartiles", {"--by", "Count"}), "Rook ");
  EXPECT_EQ(names("quartiles", {"--by", "Count", "--mode", "9"}), "tern Rook Tern ");
  EXPECT_EQ(names("quartiles", {"--by", "Count", "--mode", "32"}), "tern rook Tern ");
  EXPECT_EQ(rvb({"quartiles", path("birds.csv"), "--by", "Count", "--statistics"}),
            "count: 5\nmean: 3\n1st quartile: 2\n2nd quartile: 3\n3rd quartile: 4\n");
  EXPECT_EQ(rvb({"--json", "quartiles", path("birds.csv"), "--by", "Count", "--statistics"}),
            "{\"count\": 5, \"mean\": 3, \"1st quartile\": 2, \"2nd quartile\": 3, \"3rd quartile\": 4}\n");
  EXPECT_EQ(rvb({"quartiles", path("birds.csv"), "--by", "City"}),
            "1 rvb: Please specify a numeric field.\n");
  EXPECT_THAT(rvb({"quartiles", path("birds.csv"), "--by", "Count", "--mode", "48"}),
              HasSubstr("1 rvb: there is nothing to find"));
  const std::vector<std::string> from_mean = {"--by", "Count", "--mode", "32", "--where", "Count:f:2"};
  EXPECT_EQ(names("quartiles", from_mean), "tern Tern ");
  std::vector<std::string> of_all = from_mean;
  of_all.push_back("--entire-table");
  EXPECT_EQ(names("quartiles", of_all), "tern rook Tern ");
  EXPECT_EQ(names("duplicates", {"--by", "Name", "--where", "Count:g:5"}), "Rook rook ");
}

}  // namespace
}  // namespace rowvane::cli
