#include "platform/collation.h"

#include <gtest/gtest.h>

#include "platform/environment.h"

namespace rowvane::platform {
namespace {

// Windows does so too, but Wine, under which its tests run, does not.
TEST(CollationOnLinux, TurkishTellsADotlessFromADottedI) {
  const auto collation = Collation::open("tr_TR", {});
  EXPECT_LT(collation->compare("ı", "i"), 0);
  EXPECT_EQ(collation->compare("I", "ı"), 0);
  EXPECT_EQ(collation->compare("İ", "i"), 0);
}

// Wine has it the other way round.
TEST(CollationOnLinux, TheEarlierHyphenComesFirst) {
  const auto collation = Collation::open("en_US", {.ignore_punctuation = true});
  EXPECT_LT(collation->compare("c-oop", "co-op"), 0);
}

TEST(CollationOnLinux, TheEnvironmentChooses) {
  const ScopedEnvironment all("LC_ALL", nullptr);
  const ScopedEnvironment lang("LANG", "en_US.UTF-8");
  {
    const ScopedEnvironment collate("LC_COLLATE", "sv_SE.UTF-8");
    EXPECT_GT(Collation::open_for_user({})->compare("ä", "z"), 0);
  }
  const ScopedEnvironment collate("LC_COLLATE", nullptr);
  EXPECT_LT(Collation::open_for_user({})->compare("ä", "z"), 0);
}

}  // namespace
}  // namespace rowvane::platform
