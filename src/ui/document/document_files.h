// Opening and saving databases as the File menu does: with its questions, warnings and progress.
#pragma once

#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "app/profile/profile_settings.h"
#include "ui/dialogs.h"
#include "ui/document/database_document.h"
#include "ui/document/recovery_folder.h"

class QWidget;

namespace rowvane {

class DocumentFiles {
 public:
  // All must outlive this; WINDOW is what progress boxes stand over.
  DocumentFiles(profile::Settings& settings, Dialogs& dialogs, QWidget& window)
      : settings_(settings), dialogs_(dialogs), window_(window) {}

  // Opens whatever file holds tables. With TEXT it is read as a text whatever it seems to be, as the user has
  // said; otherwise as its content and its name tell. Null after the user was told why not, or has given up.
  std::unique_ptr<DatabaseDocument> open(const QString& path,
                                         const std::optional<TextFileSettings>& text = std::nullopt);
  // Opens the unsaved work of COPY.
  std::unique_ptr<DatabaseDocument> open_copy(const RecoveryCopy& copy);
  QString choose_file_to_open();
  QString choose_text_file(const QString& title);

  // Each answers whether the database was saved. A database from a text file is saved as text again, as long
  // as the user agrees to what that loses; one without a file of its own asks for one.
  bool save(DatabaseDocument& document);
  bool save_as(DatabaseDocument& document);
  bool save_copy_as(DatabaseDocument& document);

  // "Save changes to ...?" False when the user wants to go on with the database.
  bool may_close(DatabaseDocument& document);

  void compact(DatabaseDocument& document);

  // Adds a table from a text file that the user chooses; null when none was added. FILTERS gets the search
  // filters that it begins with, by the number of the field.
  CWorkSheet* import_table(DatabaseDocument& document, std::map<size_t, Criterion>& filters);
  // Saves TABLE as text. RECORDS: 0-based positions in display order; nothing: all.
  void export_table(DatabaseDocument& document, const CWorkSheet& table,
                    std::optional<std::vector<uint32_t>> records);

 private:
  // With a progress box, unless the user wants none for files.
  void run(const QString& caption, const std::function<void(Progress&)>& work);
  // For work that saves DOCUMENT: one save at a time, so the writer of a recovery copy stops first. Pools are
  // cleaned here, on the thread of the owner; saving only reads.
  void run_save(DatabaseDocument& document, const QString& caption,
                const std::function<void(Progress&)>& work);
  // SHOWN_PATH is what the user is asked the password for; giving up cancels.
  DatabaseOpening open_with(const RecognizedFile& file, const std::string& shown_path);
  std::shared_ptr<const Secret> ask_password(const std::string& path);
  void ask_about_container(OpenDatabase& database);
  // AUTO keeps what the file is, or what was answered when it was opened.
  struct Target {
    QString path;
    SaveVariant variant = SaveVariant::kAuto;
  };
  // Nothing when the user gives up.
  std::optional<Target> choose_target(const DatabaseDocument& document, const QString& title);
  bool save_to(DatabaseDocument& document, const Target& target, bool as_copy);
  // Answers whether the database was saved.
  bool tell_result(DatabaseDocument& document, const Outcome& outcome);
  void remember_file(const QString& path);

  profile::Settings& settings_;
  Dialogs& dialogs_;
  QWidget& window_;
};

}  // namespace rowvane
