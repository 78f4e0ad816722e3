// Questions on the terminal.
#pragma once

#include "core/messages/questions.h"

namespace rowvane::cli {

// Asks on the terminal; without one the answer is No, with --yes it is always Yes.
class TerminalQuestions final : public Questions {
 public:
  explicit TerminalQuestions(bool yes) : yes_(yes) {}
  bool ask(const std::string& question) override;

 private:
  bool yes_;
};

}  // namespace rowvane::cli
