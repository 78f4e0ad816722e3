#include "core/values/base64.h"

#include <gtest/gtest.h>

namespace rowvane {
namespace {

TEST(Base64, EncodesEveryRemainderAndAllDigits) {
  EXPECT_EQ(base64_encode(""), "");
  EXPECT_EQ(base64_encode("f"), "Zg==");
  EXPECT_EQ(base64_encode("fo"), "Zm8=");
  EXPECT_EQ(base64_encode("foobar"), "Zm9vYmFy");
  EXPECT_EQ(base64_encode("\xFB\xFF\xBF"), "+/+/");
}

TEST(Base64, ReadsBackEveryByteValueAtEveryLength) {
  std::string bytes;
  for (int i = 0; i < 300; ++i) {
    EXPECT_EQ(base64_decode(base64_encode(bytes)), bytes);
    bytes += static_cast<char>(i * 7);
  }
}

TEST(Base64, RefusesAllButTheCanonicalText) {
  for (const char* text : {"Z", "Zg", "Zg=", "Zg===", "Z===", "====", "=Zg=", "Zm9v\n", "Zm9 ", "Zm-_",
                           "Zm=v", "Zg==Zg==", "Zh==" /* unused bits set */, "Zm9=", "Zm\x80v"}) {
    EXPECT_FALSE(base64_decode(text)) << text;
  }
}

}  // namespace
}  // namespace rowvane
