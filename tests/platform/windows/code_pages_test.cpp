#include "platform/code_pages.h"

#include <string>

#include <gtest/gtest.h>
#include <windows.h>

namespace rowvane::platform {
namespace {

std::string decode_here(unsigned page, std::string_view bytes) {
  std::string text;
  CodePage::open(page)->to_utf8(bytes, text);
  return text;
}

TEST(CodePagesOnWindows, DefaultsAreThoseOfTheSystem) {
  if (::GetACP() == CP_UTF8 || ::GetOEMCP() == CP_UTF8) GTEST_SKIP() << "UTF-8 is the page of this system";
  const std::string probe = "\xA5\xD5\xF1\xBC\xE0\x92\x8F";
  EXPECT_EQ(decode_here(kDefaultAnsiCodePage, probe), decode_here(::GetACP(), probe));
  EXPECT_EQ(decode_here(kDefaultOemCodePage, probe), decode_here(::GetOEMCP(), probe));
}

// The pages that the system has but that are not made like the others: EBCDIC, those for symbols, UTF-7,
// UTF-8 and those with characters of more than two bytes.
TEST(CodePagesOnWindows, RefusesPagesOfAnotherMake) {
  for (const unsigned number : {37u, 42u, 500u, 50220u, 54936u, 65000u, 65001u}) {
    EXPECT_EQ(CodePage::open(number), nullptr) << number;
  }
}

}  // namespace
}  // namespace rowvane::platform
