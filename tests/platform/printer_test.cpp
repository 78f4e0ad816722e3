#include "platform/printer.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/temporary_folder.h"

#ifndef _WIN32

#include "platform/linux/paper_names.h"

namespace rowvane::platform {
namespace {

namespace fs = std::filesystem;

TEST(Printer, PaperNamesHaveSizes) {
  struct Case {
    const char* name;
    int width;
    int length;
  };
  const Case cases[] = {
      {"A4", 2100, 2970},
      {"Letter,Plain", 2159, 2794},
      {"A4.Borderless", 2100, 2970},
      {"iso_a4_210x297mm", 2100, 2970},
      {"na_letter_8.5x11in", 2159, 2794},
      {"custom_mine_100.5x150mm", 1005, 1500},
      {"Custom.100x150mm", 1000, 1500},
      {"Custom.10x15cm", 1000, 1500},
      {"Custom.595x842", 2099, 2970},
      {"w612h792", 2159, 2794},
  };
  for (const Case& c : cases) {
    const auto size = paper_size(c.name);
    ASSERT_TRUE(size) << c.name;
    EXPECT_EQ(size->width, c.width) << c.name;
    EXPECT_EQ(size->length, c.length) << c.name;
  }
  for (const char* name : {"", "A44", "_", "iso_a4_210mm", "iso_0x297mm", "iso_nanxnanmm", "iso_-1x2mm",
                           "iso_1e30x1mm", "w1h2x", "Custom.", "iso_a4_210x297ft"}) {
    EXPECT_FALSE(paper_size(name)) << name;
  }
}

// Programs that answer as the printing system's do.
class DefaultPrinterTest : public testing::Test {
 protected:
  DefaultPrinterTest() : path_("PATH", (folder_.path("") + ":" + std::getenv("PATH")).c_str()) {}

  void program(const std::string& name, const std::string& script) const {
    std::ofstream(folder_.path(name)) << "#!/bin/sh\n" << script << "\n";
    fs::permissions(folder_.path(name), fs::perms::owner_all);
  }

 private:
  TemporaryFolder folder_;
  ScopedEnvironment path_;
};

TEST_F(DefaultPrinterTest, TellsItsPage) {
  program("lpstat", "[ \"$*\" = -d ] && echo 'system default destination: Office'");
  program("lpoptions",
          "[ \"$*\" = '-p Office' ] && echo \"copies=1 printer-info='The A3 one' media=iso_a5_148x210mm "
          "orientation-requested=4\"");
  const auto page = default_printer_page();
  ASSERT_TRUE(page);
  EXPECT_EQ(page->paper_width, 1480);
  EXPECT_EQ(page->paper_length, 2100);
  EXPECT_EQ(page->orientation, PrinterPage::kLandscape);
  // Paper that no option names is the one chosen in the list.
  program("lpoptions",
          "case \"$*\" in '-p Office -l') printf 'Duplex/Two: *None\\nPageSize/Media Size: A4 *Legal "
          "A3\\n' ;; *) echo copies=1 ;; esac");
  const auto chosen = default_printer_page();
  ASSERT_TRUE(chosen);
  EXPECT_EQ(chosen->paper_length, 3556);
  EXPECT_EQ(chosen->orientation, PrinterPage::kPortrait);
}

TEST_F(DefaultPrinterTest, MayBeAbsentOrSilent) {
  program("lpstat", "echo 'no system default destination'");
  EXPECT_FALSE(default_printer_page());
  program("lpstat", "exit 1");
  EXPECT_FALSE(default_printer_page());
  program("lpstat", "echo 'system default destination: X'");
  program("lpoptions", "echo media=unheard-of");
  EXPECT_FALSE(default_printer_page());
  program("lpstat", "exec sleep 600");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(default_printer_page());
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(300));
}

}  // namespace
}  // namespace rowvane::platform

#endif
