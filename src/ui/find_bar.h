// The Find toolbar: looks for a text in the shown records, cell by cell.
#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

#include "app/profile/profile_settings.h"
#include "recordset/find/find_text.h"
#include "ui/dialogs.h"
#include "ui/pane/table_pane.h"

class QAction;
class QComboBox;
class QLabel;

namespace rowvane {

class CFindBar final : public QWidget {
  Q_OBJECT

 public:
  // Both must outlive the bar.
  CFindBar(profile::Settings& settings, Dialogs& dialogs, QWidget* parent = nullptr);
  ~CFindBar() override;

  // The table in view, which is searched; null for none.
  void set_pane(TablePane* pane);

  void open();
  void find_next() { find(true); }
  void find_previous() { find(false); }

 signals:
  // The user is done with it.
  void left();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QAction* add_option(QMenu& menu, const QString& text, bool on, void (*store)(profile::Settings&, bool));
  FindPattern pattern() const;
  void find(bool forward);
  // Finds the first match from the current cell on, itself included.
  void find_typed();
  void go_to_match(bool forward, bool stay);
  void show_recent_texts();
  void drop_finder();
  void forget_outcome();

  profile::Settings& settings_;
  Dialogs& dialogs_;
  QPointer<TablePane> pane_;
  QMetaObject::Connection changes_;  // of its database
  std::unique_ptr<TextFinder>
      finder_;  // of the pattern that was looked for last, while the table stays the same
  QComboBox* text_;
  QLabel* outcome_;
  QAction* match_case_;
  QAction* regular_expression_;
  QAction* similar_;
  QAction* as_you_type_;
};

}  // namespace rowvane
