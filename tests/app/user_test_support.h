// A user in tests, who reads what is shown and answers as told.
#pragma once

#include <string>
#include <vector>

#include "app/start/user_messages.h"
#include "core/messages/questions.h"

namespace rowvane {

class RecordedMessages final : public UserMessages {
 public:
  void show(const std::string& text, MessageIcon icon) override {
    constexpr const char* kIcons[] = {"i: ", "!: ", "x: "};
    shown.push_back(kIcons[static_cast<int>(icon)] + text);
  }
  std::vector<std::string> shown;
};

class RecordedQuestions final : public Questions {
 public:
  bool ask(const std::string& question) override {
    asked.push_back(question);
    return answer;
  }
  std::vector<std::string> asked;
  bool answer = true;
};

}  // namespace rowvane
