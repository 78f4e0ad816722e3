// Answers what the window asks as a test has laid down, and keeps what it says.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "ui/dialogs.h"

namespace rowvane {

// Each question takes the next of its answers; without one the user gives up, or says No.
class ScriptedDialogs final : public Dialogs {
 public:
  std::deque<bool> answers;
  std::deque<SaveAnswer> save_answers;
  std::deque<int> choices;
  std::deque<std::string> passwords;
  std::deque<QString> files_to_open;
  std::deque<QString> files_to_save;
  std::deque<int> filters;  // of the files to save, from 1; the one that was chosen at last without
  std::deque<QString> texts;

  std::vector<std::string> asked;  // questions, those about saving included
  std::vector<std::string> shown;  // messages
  QString shown_filters;           // of the last file to open

  bool ask(const std::string& question) override {
    asked.push_back(question);
    return next(answers).value_or(false);
  }
  void show(const std::string& text, MessageIcon) override { shown.push_back(text); }
  std::optional<Secret> ask_password(const std::string&) override {
    std::optional<std::string> password = next(passwords);
    return password ? std::optional(Secret::take(*password)) : std::nullopt;
  }
  SaveAnswer ask_save(const QString& question) override {
    asked.push_back(question.toStdString());
    return next(save_answers).value_or(SaveAnswer::kCancel);
  }
  int choose(const QString& question, const QStringList&) override {
    asked.push_back(question.toStdString());
    return next(choices).value_or(-1);
  }
  QString choose_file_to_open(const FileChoice& choice) override {
    shown_filters = choice.filters;
    return next(files_to_open).value_or(QString());
  }
  QString choose_file_to_save(const FileChoice& choice) override {
    if (choice.filter != nullptr) *choice.filter = next(filters).value_or(*choice.filter);
    return next(files_to_save).value_or(QString());
  }
  std::optional<QString> ask_text(const QString&, const QString&, const QString&) override {
    return next(texts);
  }

 private:
  template <typename T>
  static std::optional<T> next(std::deque<T>& all) {
    if (all.empty()) return std::nullopt;
    std::optional<T> first = std::move(all.front());
    all.pop_front();
    return first;
  }
};

}  // namespace rowvane
