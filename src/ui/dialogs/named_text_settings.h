// The button with the menu of the text file settings that users keep under names.
#pragma once

#include <QPushButton>
#include <functional>

#include "exchange/text/saved_text_settings.h"

class QMenu;

namespace rowvane {

class Dialogs;

class NamedTextSettings final : public QPushButton {
  Q_OBJECT

 public:
  // CURRENT answers the settings of the dialog, or nothing when they can't be used. SAVED, the entries of the
  // profile, and DIALOGS must outlive the button.
  using Current = std::function<std::optional<TextFileSettings>()>;
  NamedTextSettings(SavedTextSettings& saved, Dialogs& dialogs, Current current, QWidget* parent = nullptr);

  // The lines of the menu do these.
  void choose(size_t entry, bool with_shift);
  void save_current();
  void erase(size_t entry);

 signals:
  // The user wants these settings.
  void loaded(const rowvane::TextFileSettings& settings);

 private:
  void fill_menu();

  SavedTextSettings& saved_;
  Dialogs& dialogs_;
  Current current_;
  QMenu* menu_;
};

}  // namespace rowvane
