#include "platform/code_pages.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/environment.h"

namespace rowvane::platform {
namespace {

std::string decode_all(unsigned page, std::string_view bytes) {
  std::string text;
  CodePage::open(page)->to_utf8(bytes, text);
  return text;
}

TEST(CodePagesOnLinux, DefaultsFollowTheLanguage) {
  struct Case {
    const char* locale;
    unsigned ansi;
    unsigned oem;
  };
  const Case cases[] = {{"de_DE.UTF-8", 1252, 850},
                        {"en_US.UTF-8", 1252, 437},
                        {"pl_PL", 1250, 852},
                        {"ru_RU.KOI8-R", 1251, 866},
                        {"el_GR", 1253, 737},
                        {"tr_TR", 1254, 857},
                        {"ja_JP", 932, 932},
                        {"zh_TW", 950, 950},
                        {"zh_CN", 936, 936},
                        {"sr_RS@latin", 1250, 852},
                        {"C", 1252, 850}};
  for (const auto& [locale, ansi, oem] : cases) {
    const ScopedEnvironment all("LC_ALL", locale);
    // A high byte tells the pages apart.
    const std::string probe = "\xA5\xD5\xF1\xBC\xE0\x92\x8F";
    EXPECT_EQ(decode_all(kDefaultAnsiCodePage, probe), decode_all(ansi, probe)) << locale;
    EXPECT_EQ(decode_all(kDefaultOemCodePage, probe), decode_all(oem, probe)) << locale;
  }
}

}  // namespace
}  // namespace rowvane::platform
