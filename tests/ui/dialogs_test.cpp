// How checks and outcomes are shown.
#include "ui/dialogs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ui/scripted_dialogs.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Dialogs, AcceptWhatPassesAndIsAnsweredYes) {
  ScriptedDialogs dialogs;
  Check check("Not so.");
  check.question = "Really?";
  check.notice = MessageId::kRecordsNotProtected;
  EXPECT_FALSE(dialogs.accept(check));
  EXPECT_THAT(dialogs.asked, IsEmpty()) << "what can't be done is not asked about";
  EXPECT_THAT(dialogs.shown, ElementsAre("Not so."));
  dialogs.shown.clear();
  check.beeps = true;
  EXPECT_FALSE(dialogs.accept(check));
  EXPECT_THAT(dialogs.shown, IsEmpty());
  check.refusal = {};
  EXPECT_FALSE(dialogs.accept(check)) << "No";
  EXPECT_THAT(dialogs.shown, IsEmpty());
  dialogs.answers = {true};
  EXPECT_TRUE(dialogs.accept(check));
  EXPECT_THAT(dialogs.asked, ElementsAre("Really?", "Really?"));
  EXPECT_THAT(dialogs.shown, ElementsAre(message(MessageId::kRecordsNotProtected)));
}

TEST(Dialogs, ReportFailuresButNoCancel) {
  ScriptedDialogs dialogs;
  Outcome outcome = ErrorCode::kFileWrite;
  outcome.note(MessageId::kFileNearLimit);
  EXPECT_FALSE(dialogs.report(outcome));
  EXPECT_THAT(dialogs.shown,
              ElementsAre(error_text(ErrorCode::kFileWrite), message(MessageId::kFileNearLimit)));
  dialogs.shown.clear();
  outcome.notices.clear();
  outcome.cancelled = true;
  EXPECT_FALSE(dialogs.report(outcome));
  EXPECT_THAT(dialogs.shown, IsEmpty());
  EXPECT_TRUE(dialogs.report(ErrorCode::kOk));
}

}  // namespace
}  // namespace rowvane
