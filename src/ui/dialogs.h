// What the program asks and tells the user. Tests answer in the user's place.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "app/profile/profile_cipher.h"
#include "app/start/user_messages.h"
#include "core/messages/check.h"
#include "core/messages/outcome.h"
#include "core/messages/questions.h"

class QWidget;

namespace rowvane {

enum class SaveAnswer { kSave, kDiscard, kCancel };

// A box in which the user chooses a file.
struct FileChoice {
  QString title;
  QString filters;    // "Rowvane database (*.rvb);;All files (*)"
  QString path;       // where it begins: a folder, or a file's whole path
  QString extension;  // added to a new file's name without one, without the point
  // The filter that is chosen at first and, when a file was chosen, at last, counted from 1; may be null.
  int* filter = nullptr;
};

class Dialogs : public Questions, public UserMessages, public PasswordPrompt {
 public:
  // "Save changes to ...?"
  virtual SaveAnswer ask_save(const QString& question) = 0;
  // The place of the button that was pressed, the first of which is the usual one; -1 when the user gives up.
  virtual int choose(const QString& question, const QStringList& buttons) = 0;
  // Empty when the user gives up.
  virtual QString choose_file_to_open(const FileChoice& choice) = 0;
  virtual QString choose_file_to_save(const FileChoice& choice) = 0;
  // A line of text; nothing when the user gives up.
  virtual std::optional<QString> ask_text(const QString& title, const QString& label,
                                          const QString& text) = 0;

  // True when the operation that CHECK is about can be run: it has no refusal and its question was answered
  // Yes. The notice is shown then.
  bool accept(const Check& check);
  // Shows why an operation failed and its notices. True when it was completed.
  bool report(const Outcome& outcome);
};

// The boxes of the system, over PARENT, which may be null.
class MessageBoxes final : public Dialogs {
 public:
  explicit MessageBoxes(QWidget* parent = nullptr) : parent_(parent) {}
  void set_parent(QWidget* parent) { parent_ = parent; }

  bool ask(const std::string& question) override;
  void show(const std::string& text, MessageIcon icon) override;
  std::optional<Secret> ask_password(const std::string& path) override;
  SaveAnswer ask_save(const QString& question) override;
  int choose(const QString& question, const QStringList& buttons) override;
  QString choose_file_to_open(const FileChoice& choice) override;
  QString choose_file_to_save(const FileChoice& choice) override;
  std::optional<QString> ask_text(const QString& title, const QString& label, const QString& text) override;

 private:
  QWidget* parent_;
};

// The name of the program with its version.
QString program_title();

}  // namespace rowvane
