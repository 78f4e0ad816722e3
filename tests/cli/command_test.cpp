// The commands as a script sees them: arguments in; status, standard output and standard error out.
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/run_rvb.h"
#include "formula/typed_texts.h"
#include "platform/temporary_folder.h"

namespace rowvane::cli {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class CommandTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return folder_.path(name); }

  std::string write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }

  std::string read(const std::string& name) const {
    std::ostringstream content;
    content << std::ifstream(path(name), std::ios::binary).rdbuf();
    return content.str();
  }

  static Outcome rvb(std::vector<std::string> arguments) { return run_rvb(std::move(arguments)); }

  static std::string output(std::vector<std::string> arguments) {
    Outcome outcome = rvb(std::move(arguments));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
  }

  // A database with the tables "fruit" and "sales/orders".
  std::string make_shop() {
    const std::string database = path("shop.rvb");
    output({"import", database,
            write("fruit.csv", "Name,Price,Code\napple,1.5,007\n\"pear, green\",2,008\nfig,,\n")});
    output({"import", database, write("orders.csv", "Fruit,Pieces\napple,3\n"), "--table", "sales/orders"});
    return database;
  }

 private:
  platform::TemporaryFolder folder_;
};

TEST_F(CommandTest, TextGoesThroughADatabaseAndBackUnchanged) {
  const std::string database = make_shop();
  EXPECT_EQ(output({"export", database, "fruit", path("out.csv")}), path("out.csv") + "\n");
  EXPECT_EQ(read("out.csv"), "Name,Price,Code\r\napple,1.5,007\r\n\"pear, green\",2,008\r\nfig,,\r\n");
  EXPECT_EQ(output({"--quiet", "export", database, "fruit", path("out.tsv"), "--fields", "Code,Name"}), "");
  EXPECT_EQ(read("out.tsv"), "Code\tName\r\n007\tapple\r\n008\tpear, green\r\n\tfig\r\n");
}

TEST_F(CommandTest, ShowPrintsTableCsvAndJson) {
  const std::string database = make_shop();
  EXPECT_EQ(output({"show", database, "fruit"}),
            "Name         Price  Code\n"
            "-----------  -----  ----\n"
            "apple          1.5  007\n"
            "pear, green      2  008\n"
            "fig\n");
  EXPECT_EQ(output({"show", database, "fruit", "--format", "csv", "--offset", "1", "--limit", "1"}),
            "Name,Price,Code\r\n\"pear, green\",2,008\r\n");
  EXPECT_EQ(output({"show", database, "fruit", "--json", "--fields", "price,NAME", "--offset", "1"}),
            "{\"Price\": 2, \"Name\": \"pear, green\"}\n{\"Price\": null, \"Name\": \"fig\"}\n");
  EXPECT_EQ(output({"count", database, "SALES/Orders"}), "1\n");
}

TEST_F(CommandTest, InfoNamesTablesAndFields) {
  const std::string database = make_shop();
  EXPECT_THAT(output({"info", database}), HasSubstr("sales/orders: 1 record, 2 fields\n  Fruit  [Text]\n"));
  EXPECT_EQ(
      output({"--json", "info", database, "sales/orders"}),
      "{\"tables\": [{\"path\": \"sales/orders\", \"records\": 1, \"fields\": [{\"name\": \"Fruit\", "
      "\"type\": "
      "\"Text\", \"link\": false, \"formula\": \"\", \"validation\": \"\", \"default\": \"\", "
      "\"format\": \"\", \"width\": 100, "
      "\"encrypted\": false}, {\"name\": \"Pieces\", \"type\": \"Number\", \"link\": false, "
      "\"formula\": \"\", "
      "\"validation\": \"\", \"default\": \"\", \"format\": \"\", \"width\": 100, \"encrypted\": false}]}], "
      "\"format\": \"rvb\", "
      "\"container\": \"zip64\", \"protected\": false}\n");
}

TEST_F(CommandTest, RecordsAreSetInsertedAndDeleted) {
  const std::string database = make_shop();
  output({"set", database, "fruit", "2-3", "Price=-2.25", "Code="});
  output({"insert", database, "fruit", "--before", "1", "Name=kiwi"});
  output({"insert", database, "fruit", "--count", "2", "Name=end", "Price=7"});
  EXPECT_EQ(output({"delete", database, "fruit", "2,5"}), "2 deleted\n");
  EXPECT_EQ(output({"show", database, "fruit", "--format", "csv"}),
            "Name,Price,Code\r\nkiwi,,\r\n\"pear, green\",-2.25,\r\nfig,-2.25,\r\nend,7,\r\n");
}

TEST_F(CommandTest, ChangesGoToTheOutputFileWhenOneIsNamed) {
  const std::string database = make_shop();
  output({"set", database, "fruit", "1", "Name=plum", "-o", path("copy.rvb")});
  EXPECT_THAT(output({"show", database, "fruit"}), HasSubstr("apple"));
  EXPECT_THAT(output({"show", path("copy.rvb"), "fruit"}), HasSubstr("plum"));
  const Outcome refused = rvb({"set", path("fruit.csv"), "1", "Name=plum"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr("-o"));
}

TEST_F(CommandTest, FieldsAreAddedConvertedRenamedAndDeleted) {
  const std::string database = make_shop();
  output({"field", database, "fruit", "add", "Note", "--type", "longtext"});
  output({"set", database, "fruit", "1", "Note=@" + write("note.txt", "two\nlines")});
  output({"field", database, "fruit", "rename", "Name", "Kind"});
  output({"field", database, "fruit", "change", "Code", "--type", "number"});
  output({"field", database, "fruit", "delete", "Price"});
  EXPECT_EQ(output({"show", database, "fruit", "--json", "--limit", "1"}),
            "{\"Kind\": \"apple\", \"Code\": 7, \"Note\": \"two\\nlines\"}\n");
}

TEST_F(CommandTest, AFieldIsNotEmptiedWithoutAYes) {
  const std::string database = path("dates.rvb");
  output({"import", database, write("dates.csv", "Date,Kind\n\"1 Mar 2024\",a\n2024-03-02 12:00,b\n,a\n")});
  output({"field", database, "change", "Date", "--type", "number", "--format", "yyyy-mm-dd hh:mm"});
  EXPECT_EQ(output({"show", database, "--json", "--fields", "Date"}),
            "{\"Date\": 45352}\n{\"Date\": 45353.5}\n{\"Date\": null}\n");
  const std::string before = read("dates.rvb");
  const Outcome refused = rvb({"field", database, "change", "Kind", "--type", "number"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(
      refused.err,
      "rvb: not changed: 3 values of the field \"Kind\" do not read as numbers, dates or times and would "
      "be lost: \"a\" \"b\" Convert the field?\n");
  EXPECT_EQ(read("dates.rvb"), before);
  const Outcome words = rvb({"--yes", "field", database, "change", "Kind", "--type", "number"});
  EXPECT_EQ(words.status, 0);
  EXPECT_THAT(words.err, StartsWith("rvb: warning "));
  output({"field", database, "change", "Date", "--type", "text"});
  EXPECT_EQ(output({"show", database, "--format", "csv"}),
            "Date,Kind\r\n2024-03-01,\r\n2024-03-02T12:00:00,\r\n,\r\n");
}

TEST_F(CommandTest, ValuesAreReadAsTheyAreTyped) {
  const std::string database = make_shop();
  for (const TypedText& typed : kTypedTexts) {
    const std::string assignment = std::string("Price=") + typed.text;
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"set", database, "fruit", "1", assignment},
          {"insert", database, "fruit", "--before", "1", assignment}}) {
      const Outcome stored = rvb(command);
      if (*typed.number == 0) {
        EXPECT_EQ(stored.err, "rvb: error 52: The entered data doesn't match the field type.\n")
            << typed.text;
        continue;
      }
      EXPECT_EQ(stored.err, "") << typed.text;
      EXPECT_EQ(output({"show", database, "fruit", "--format", "csv", "--fields", "Price", "--limit", "1"}),
                std::string("Price\r\n") + typed.number + "\r\n")
          << command[0] << " " << typed.text;
    }
  }
}

TEST_F(CommandTest, FilesAreStoredInTheDatabaseOrAsShortcuts) {
  const std::string database = make_shop();
  output({"field", database, "fruit", "add", "Photo", "--type", "files"});
  output({"set", database, "fruit", "1", "Photo=" + write("a.png", "not really") + ";link:/far/b.png"});
  EXPECT_EQ(output({"show", database, "fruit", "--json", "--fields", "Photo", "--limit", "2"}),
            "{\"Photo\": [\"a.png\", \"b.png\"]}\n{\"Photo\": null}\n");
}

TEST_F(CommandTest, TextOptionsDecideHowATextIsRead) {
  const std::string text = write("t.txt", "a;'b;c'\n1;\xE9\n");
  EXPECT_EQ(output({"show", text, "--separator", "semicolon", "--quote", "'", "--encoding", "1252",
                    "--no-header", "--format", "csv"}),
            "field1,field2\r\na,b;c\r\n1,\xC3\xA9\r\n");
  EXPECT_EQ(output({"show", write("f.txt", "ab  12\ncd   3\n"), "--widths", "4,2", "--no-header", "--json"}),
            "{\"field1\": \"ab\", \"field2\": 12}\n{\"field1\": \"cd\", \"field2\": 3}\n");
  EXPECT_EQ(output({"show", "--types", "Auto,Text", write("n.csv", "Name,Price\nfig,1.50\n"), "--json",
                    "--fields", "Price"}),
            "{\"Price\": \"1.50\"}\n");
}

TEST_F(CommandTest, ErrorsTellNumberAndTextOnOneLine) {
  const std::string database = make_shop();
  EXPECT_EQ(rvb({"show", path("none.rvb")}).err,
            "rvb: error 61: The specified file doesn't exist or can't be open\n");
  EXPECT_EQ(rvb({"show", database, "pears"}).err,
            "rvb: error 23: An invalid worksheet/folder path - not found\n");
  EXPECT_EQ(rvb({"field", database, "fruit", "add", "2nd"}).err,
            "rvb: message 180: Please enter a valid field name starting with a letter.\n");
  EXPECT_EQ(rvb({"set", database, "fruit", "1", "Price=many"}).err,
            "rvb: error 52: The entered data doesn't match the field type.\n");
  const std::string before = read("shop.rvb");
  for (const std::vector<std::string>& wrong : {std::vector<std::string>{"shown", database},
                                                {"show"},
                                                {"show", database, "fruit", "--format", "xml"},
                                                {"show", database, "fruit", "--separator", "ab"},
                                                {"--threads", "17", "info", database}}) {
    EXPECT_EQ(rvb(wrong).status, 2) << wrong[0];
  }
  EXPECT_EQ(rvb({"set", database, "fruit", "9", "Price=1"}).status, 1);
  EXPECT_EQ(read("shop.rvb"), before);
}

TEST_F(CommandTest, WarningsLeaveTheStatusAtZero) {
  const Outcome broken = rvb({"show", write("b.csv", "a\ncaf\xE9\n"), "--format", "csv"});
  EXPECT_EQ(broken.status, 0);
  EXPECT_EQ(broken.out, "a\r\ncaf\xC3\xA9\r\n");
  EXPECT_THAT(broken.err, StartsWith("rvb: warning error 128: "));
}

TEST_F(CommandTest, WhatIsNoTextIsRefusedUntilTheUserSaysThatItIs) {
  const std::string picture = write("picture.csv", "\x89PNG\r\n\x1A\n");
  const std::string noise = write("noise.dat", std::string("a,b\n\x01\0\x02,\x03\n", 10));
  const std::string database = make_shop();
  for (const std::vector<std::string>& read :
       std::vector<std::vector<std::string>>{{"info", picture},
                                             {"show", picture},
                                             {"import", database, picture},
                                             {"import", picture, database}}) {
    const Outcome refused = rvb(read);
    EXPECT_EQ(refused.status, 1) << read[0];
    EXPECT_EQ(refused.err, "rvb: picture.csv is a PNG image, which Rowvane can't read\n") << read[0];
  }
  EXPECT_EQ(rvb({"show", noise}).err, "rvb: noise.dat is no text, and of no format that Rowvane can read\n");
  EXPECT_EQ(output({"count", noise, "--as", "text"}), "1\n");
  EXPECT_EQ(output({"count", noise, "--separator", ";"}), "1\n") << "only texts have separators";
  EXPECT_THAT(output({"info", database, "--separator", ";"}), StartsWith("shop: rvb, zip64"));
  EXPECT_THAT(output({"info", database, "--as", "text"}), StartsWith("shop: text, "));
  EXPECT_THAT(rvb({"show", noise, "--as", "rvb"}).err, StartsWith("rvb: error 33: "));
  EXPECT_EQ(rvb({"show", noise, "--as", "sqlite"}).status, 2);
  EXPECT_THAT(output({"--quiet", "import", path("new.rvb"), noise, "--as", "text"}), testing::IsEmpty());
}

TEST_F(CommandTest, ExportsTakeTheFormatOfTheExtension) {
  const std::string database = make_shop();
  const Outcome refused = rvb({"export", database, "fruit", path("out.xlsx")});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err, "rvb: out.xlsx: a table can't be exported as an Excel workbook\n");
  EXPECT_FALSE(std::filesystem::exists(path("out.xlsx")));
  EXPECT_THAT(rvb({"export", database, "fruit", path("out.rvb")}).err, HasSubstr("use: rvb import"));
  for (const std::vector<std::string>& as_text :
       std::vector<std::vector<std::string>>{{"out.log"}, {"out"}, {"out.xlsx", "--as", "text"}}) {
    std::vector<std::string> arguments = {"export", database, "sales/orders", path(as_text[0])};
    arguments.insert(arguments.end(), as_text.begin() + 1, as_text.end());
    output(arguments);
    EXPECT_EQ(read(as_text[0]), "Fruit,Pieces\r\napple,3\r\n") << as_text[0];
  }
}

TEST_F(CommandTest, DatesInTextsBecomeStandard) {
  const std::string database = path("days.rvb");
  ASSERT_EQ(
      rvb({"dates", write("days.csv", "Day,N\n14 Mar 2024,1\nnone,2\n"), "--fields", "Day", "-o", database})
          .err,
      "rvb: warning 1 value(s) are no dates and stay as they are\n");
  EXPECT_EQ(rvb({"show", database, "--format", "csv"}).out, "Day,N\r\n2024-03-14,1\r\nnone,2\r\n");
  EXPECT_EQ(rvb({"dates", database, "--fields", "N"}).err,
            "rvb: error 53: Can't convert the data according to the defined conversion rule.\n");
}

TEST_F(CommandTest, CompactAnswersWhatItFound) {
  const std::string database = make_shop();
  EXPECT_THAT(output({"compact", database}), HasSubstr("No compacting is necessary."));
  output({"field", database, "fruit", "add", "Note", "--type", "longtext"});
  EXPECT_EQ(output({"compact", database}), "The database doesn't require compacting.\n");
}

TEST_F(CommandTest, ChoosingTheOlderContainerHasToBeConfirmed) {
  const std::string database = make_shop();
  const Outcome refused = rvb({"set", database, "fruit", "1", "Price=3", "--container", "zip32"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr("Zip32 files have a limit of 4GB"));
  output({"--yes", "set", database, "fruit", "1", "Price=3", "--container", "zip32"});
  EXPECT_THAT(output({"info", database}), HasSubstr("zip32"));
  output({"set", database, "fruit", "1", "Price=4"});
  EXPECT_THAT(output({"info", database}), HasSubstr("zip32"));
}

TEST_F(CommandTest, AProfileSteersTheEngine) {
  const std::string profile =
      write("settings.xml",
            "<Profile><GeneralOptions MaxRecords='2' TextExportRowLimit='1' Backups='on' "
            "UndoLevel='x'/></Profile>");
  const std::string source = write("four.csv", "A\n1\n2\n3\n4\n");
  const Outcome counted = rvb({"count", source, "--profile", profile});
  EXPECT_EQ(counted.status, 0);
  EXPECT_EQ(counted.out, "2\n");
  EXPECT_THAT(counted.err, HasSubstr("warning message 123: "));
  EXPECT_THAT(counted.err, HasSubstr("warning the profile's value of GeneralOptions/UndoLevel"));
  EXPECT_EQ(output({"export", source, path("out.csv"), "--profile", profile}),
            path("out.csv") + "\n" + path("out(1).csv") + "\n");
  EXPECT_EQ(output({"export", source, path("all.csv"), "--profile", profile, "--row-limit", "0"}),
            path("all.csv") + "\n");
  const std::string database = make_shop();
  output({"set", database, "fruit", "1", "Price=2", "--profile", profile});
  EXPECT_TRUE(std::filesystem::exists(database + ".bak"));
  EXPECT_TRUE(read("settings.xml").starts_with("<Profile><General")) << "never written";
}

TEST_F(CommandTest, AProfileThatCanNotBeReadIsAnError) {
  const std::string source = write("a.csv", "A\n1\n");
  const std::pair<std::string, const char*> cases[] = {
      {path("none.xml"), "rvb: error 65: "},
      {write("broken.xml", "<Profile"), "rvb: error 91: "},
      {write("locked.xml", "<Profile encrypted='true'/>"), "rvb: error 37: Invalid password"},
  };
  for (const auto& [profile, text] : cases) {
    const Outcome outcome = rvb({"--profile", profile, "count", source});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, StartsWith(text));
  }
}

TEST_F(CommandTest, EvalPrintsTheValueOfAFormula) {
  const std::string shop = make_shop();
  EXPECT_EQ(output({"eval", "=0.1+0.2"}), "0.3\n");
  EXPECT_EQ(output({"--json", "eval", "=0.1+0.2"}), "0.30000000000000004\n");
  EXPECT_EQ(output({"eval", "={1,2;\"a\",#REF!}"}), "1\t2\na\t#REF!\n");
  EXPECT_EQ(output({"--json", "eval", "={1,2;\"a\",#REF!}"}), "[[1, 2], [\"a\", {\"error\": \"#REF!\"}]]\n");
  EXPECT_EQ(output({"eval", "=Name&\": \"&Price*2", shop, "fruit", "2"}), "pear, green: 4\n");
  EXPECT_EQ(output({"eval", "=sum(\"sales/orders\"!Pieces)", shop, "fruit"}), "3\n");
  EXPECT_EQ(output({"--json", "eval", "=Price", shop, "fruit", "3"}), "null\n");
  EXPECT_EQ(output({"eval", "=1/0"}), "#VALUE!\n");
  const Outcome wrong = rvb({"eval", "=1+"});
  EXPECT_EQ(wrong.status, 1);
  EXPECT_EQ(wrong.err, "rvb: Invalid formula!\n");
  EXPECT_THAT(rvb({"eval", "=1", shop, "fruit", "4"}).err, HasSubstr("no record 4"));
}

TEST_F(CommandTest, CalculatedFieldsFollowEdits) {
  const std::string shop = make_shop();
  output({"field", shop, "fruit", "add", "Gross", "--type", "number", "--formula", "=Price*2"});
  EXPECT_EQ(output({"show", shop, "fruit", "--fields", "Gross", "--format", "csv"}),
            "Gross\r\n3\r\n4\r\n0\r\n");
  output({"set", shop, "fruit", "1", "Price=10"});
  EXPECT_EQ(output({"show", shop, "fruit", "--fields", "Gross", "--format", "csv"}),
            "Gross\r\n20\r\n4\r\n0\r\n");
  EXPECT_THAT(output({"info", shop, "fruit"}), HasSubstr("Gross  [Number]  =Price*2"));
  const std::string before = read("shop.rvb");
  EXPECT_EQ(output({"recalc", shop}), "1 field calculated\n");
  EXPECT_EQ(read("shop.rvb"), before) << "nothing was out of date";
  output({"field", shop, "fruit", "change", "Price", "--validation", "=Price>1"});
  EXPECT_THAT(rvb({"set", shop, "fruit", "1", "Price=1"}).err, HasSubstr("error 132"));
  EXPECT_EQ(rvb({"field", shop, "fruit", "add", "Bad", "--formula", "=1+"}).err, "rvb: Invalid formula!\n");
  EXPECT_THAT(rvb({"field", shop, "fruit", "change", "Price", "--formula", "=Gross"}).err,
              HasSubstr("Price -> Gross -> Price"));
  EXPECT_EQ(rvb({"field", shop, "fruit", "add", "Memo", "--type", "longtext", "--formula", "=1"}).status, 1);
  EXPECT_EQ(rvb({"recalc", shop, "nosuch"}).status, 1);
}

TEST_F(CommandTest, WidthsOfFields) {
  const std::string shop = make_shop();
  output({"field", shop, "fruit", "change", "Price", "--width", "75"});
  EXPECT_THAT(output({"--json", "info", shop, "fruit"}),
              testing::ContainsRegex("\"Name\".*\"width\": 100.*\"Price\".*\"width\": 75"));
  for (const char* width : {"9", "5001", "wide"})
    EXPECT_EQ(rvb({"field", shop, "fruit", "change", "Price", "--width", width}).status, 2) << width;
}

TEST_F(CommandTest, DisplayFormats) {
  const std::string database = make_shop();
  output(
      {"field", database, "fruit", "change", "Price", "--format", "general decimals=2 negative=parentheses"});
  output({"field", database, "fruit", "add", "Picked", "--type", "number", "--format", "yyyy-mm-dd"});
  output({"set", database, "fruit", "1", "Picked=2024-02-29", "Price=-1.5"});
  EXPECT_EQ(output({"show", database, "fruit", "--limit", "1", "--fields", "Price,Picked"}),
            " Price      Picked\n------  ----------\n(1.50)  2024-02-29\n");
  EXPECT_EQ(
      output({"show", database, "fruit", "--limit", "1", "--fields", "Price,Picked", "--format", "json"}),
      "{\"Price\": -1.5, \"Picked\": 45351}\n");
  EXPECT_THAT(output({"info", database, "fruit"}), HasSubstr("Price  [Number]  format 0.00;(0.00)\n"));
  Outcome refused = rvb({"field", database, "fruit", "change", "Price", "--format", "0 km"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr("must stand in quotes (at byte 3)"));
  refused = rvb({"field", database, "fruit", "change", "Name", "--format", "0"});
  EXPECT_THAT(refused.err, HasSubstr("Only Number fields have a display format"));
  output({"field", database, "fruit", "change", "Price", "--format", "default"});
  EXPECT_THAT(output({"show", database, "fruit", "--limit", "1", "--fields", "Price"}),
              HasSubstr("\n -1.5\n"));
}

}  // namespace
}  // namespace rowvane::cli
