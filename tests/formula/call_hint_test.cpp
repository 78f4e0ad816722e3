#include "formula/language/call_hint.h"

#include <gtest/gtest.h>

namespace rowvane {
namespace {

// The hint with its current parameter in brackets; empty for none.
std::string hint(std::string_view formula, const FormulaSeparators& separators = FormulaSeparators()) {
  const std::optional<CallHint> found = call_hint(formula, separators);
  if (!found) return {};
  return found->text.substr(0, found->begin) + "<" +
         found->text.substr(found->begin, found->end - found->begin) + ">" + found->text.substr(found->end);
}

TEST(CallHint, NamesTheParameterThatIsBeingWritten) {
  EXPECT_EQ(hint("=if("), "if(<testValue>, ifTrue, ifFalse)");
  EXPECT_EQ(hint("=2 * IF(Price > 3, \"a, b\", "), "if(testValue, ifTrue, <ifFalse>)");
  EXPECT_EQ(hint("=and(1, 2, 3, 4"), "and(value1, value2, <...>)");
  EXPECT_EQ(hint("=not(1, "), "<>not(value)") << "more than it takes";
  EXPECT_EQ(hint("=pi("), "<>pi()");
}

TEST(CallHint, OfTheInnermostCallThatIsOpen) {
  EXPECT_EQ(hint("=if(and(1, 2), not("), "not(<value>)");
  EXPECT_EQ(hint("=if(and(1, 2), "), "if(testValue, <ifTrue>, ifFalse)");
  EXPECT_EQ(hint("=if((2 + (3 * "), "if(<testValue>, ifTrue, ifFalse)");
  EXPECT_EQ(hint("=and({1,2,3"), "and(<value1>, value2, ...)");
  EXPECT_EQ(hint("=if(unknown(1, 2"), "if(<testValue>, ifTrue, ifFalse)");
}

TEST(CallHint, NothingOutsideOfCallsAndWithinTexts) {
  for (const char* formula : {"", "=1 + 2, 3", "=not(1) + ", "=)))", "=unknown(1", "=not(\"open text("})
    EXPECT_EQ(hint(formula), "") << formula;
}

TEST(CallHint, ReadsTheGivenSeparator) {
  EXPECT_EQ(hint("=if(1,5; ", {.numbers = {",", ""}, .list = ";", .row = "|"}),
            "if(testValue, <ifTrue>, ifFalse)");
}

}  // namespace
}  // namespace rowvane
