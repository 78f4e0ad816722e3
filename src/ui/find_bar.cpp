#include "ui/find_bar.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>

#include "recordset/search/recent_texts.h"
#include "ui/icons.h"
#include "ui/long_task.h"
#include "ui/text.h"

namespace rowvane {
namespace {

QToolButton* make_button(const char* picture, const QString& tip, QWidget* parent) {
  auto* button = new QToolButton(parent);
  button->setIcon(icon(picture));
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  button->setAutoRaise(true);
  return button;
}

}  // namespace

CFindBar::CFindBar(profile::Settings& settings, Dialogs& dialogs, QWidget* parent)
    : QWidget(parent),
      settings_(settings),
      dialogs_(dialogs),
      text_(new QComboBox(this)),
      outcome_(new QLabel(this)) {
  text_->setEditable(true);
  text_->setInsertPolicy(QComboBox::NoInsert);
  text_->setMinimumWidth(260);
  text_->lineEdit()->setClearButtonEnabled(true);
  text_->setAccessibleName(tr("Text to find"));
  auto* label = new QLabel(tr("Fin&d:"), this);
  label->setBuddy(text_);
  QToolButton* next = make_button("down", tr("Find Next"), this);
  QToolButton* previous = make_button("up", tr("Find Previous"), this);
  QToolButton* close = make_button("close", tr("Close the Find toolbar"), this);
  auto* options = new QToolButton(this);
  options->setText(tr("&Options"));
  options->setAutoRaise(true);
  options->setPopupMode(QToolButton::InstantPopup);
  auto* menu = new QMenu(options);
  options->setMenu(menu);
  const profile::FindAndReplaceOptions& find = settings.find_and_replace_options;
  match_case_ = add_option(*menu, tr("Match &Case"), !find.caseless,
                           [](profile::Settings& s, bool on) { s.find_and_replace_options.caseless = !on; });
  regular_expression_ = add_option(*menu, tr("&Regular Expression"), false, nullptr);
  similar_ = add_option(*menu, tr("Find &Similar"), find.find_similar,
                        [](profile::Settings& s, bool on) { s.find_and_replace_options.find_similar = on; });
  as_you_type_ =
      add_option(*menu, tr("Find As You &Type"), find.find_as_you_type,
                 [](profile::Settings& s, bool on) { s.find_and_replace_options.find_as_you_type = on; });

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(6, 3, 6, 3);
  for (QWidget* widget : std::initializer_list<QWidget*>{label, text_, previous, next, options})
    layout->addWidget(widget);
  layout->addWidget(outcome_, 1);
  layout->addWidget(close);
  connect(next, &QToolButton::clicked, this, &CFindBar::find_next);
  connect(previous, &QToolButton::clicked, this, &CFindBar::find_previous);
  connect(close, &QToolButton::clicked, this, &CFindBar::left);
  connect(text_->lineEdit(), &QLineEdit::textEdited, this, &CFindBar::find_typed);
  show_recent_texts();
  hide();
}

CFindBar::~CFindBar() = default;

QAction* CFindBar::add_option(QMenu& menu, const QString& text, bool on,
                              void (*store)(profile::Settings&, bool)) {
  QAction* action = menu.addAction(text);
  action->setCheckable(true);
  action->setChecked(on);
  connect(action, &QAction::toggled, this, [this, store](bool now) {
    if (store != nullptr) store(settings_, now);
  });
  return action;
}

void CFindBar::set_pane(TablePane* pane) {
  if (pane == pane_) return;
  disconnect(changes_);
  if (pane_ != nullptr) disconnect(pane_, nullptr, this, nullptr);
  pane_ = pane;
  forget_outcome();
  if (pane == nullptr) return;
  changes_ = connect(&pane->document(), &DatabaseDocument::changed, this, &CFindBar::drop_finder);
  connect(pane, &QObject::destroyed, this, &CFindBar::forget_outcome);
}

void CFindBar::forget_outcome() {
  outcome_->clear();
  drop_finder();
}

void CFindBar::drop_finder() {
  finder_.reset();
}

void CFindBar::open() {
  show();
  text_->setFocus();
  text_->lineEdit()->selectAll();
}

void CFindBar::show_recent_texts() {
  const QString text = text_->currentText();
  text_->clear();
  for (const std::string& recent : settings_.recent_find_strings) text_->addItem(to_qt(recent));
  text_->setEditText(text);
}

FindPattern CFindBar::pattern() const {
  FindPattern pattern;
  pattern.text = to_utf8(text_->currentText());
  pattern.caseless = !match_case_->isChecked();
  pattern.regular_expression = regular_expression_->isChecked();
  pattern.similar = similar_->isChecked();
  pattern.empty_matches = settings_.find_and_replace_options.empty_matches;
  return pattern;
}

void CFindBar::find(bool forward) {
  if (text_->currentText().isEmpty()) return open();
  add_recent_text(settings_.recent_find_strings, to_utf8(text_->currentText()));
  show_recent_texts();
  go_to_match(forward, false);
}

void CFindBar::find_typed() {
  outcome_->clear();
  if (as_you_type_->isChecked() && !text_->currentText().isEmpty()) go_to_match(true, true);
}

void CFindBar::go_to_match(bool forward, bool stay) {
  if (pane_ == nullptr) return;
  const CWorkSheet& table = pane_->table();
  FindText settings;
  settings.pattern = pattern();
  settings.threads = pane_->document().options().used_processor_cores;
  settings.region = DisplayRegion(pane_->document().region());
  if (finder_ == nullptr || finder_->settings().pattern != settings.pattern) {
    if (!dialogs_.accept(check_find(table, settings))) return;
    finder_ = std::make_unique<TextFinder>(table, std::move(settings));
  }
  const std::optional<RecordSet>& shown = pane_->model().records();
  const RecordSet records = shown ? *shown : all_records(table);
  const QModelIndex current = pane_->current();
  const bool has_place = current.isValid();
  CellPlace from{has_place ? static_cast<size_t>(current.row()) : 0,
                 has_place ? static_cast<size_t>(current.column()) : 0};
  std::optional<CellPlace> found;
  if (stay) {
    // The current cell may have the match of what is being typed: it follows the match before it. Not as a
    // long task, which would swallow the next keys.
    const auto before = finder_->find_next(records, from, false);
    found = finder_->find_next(records, before.value_or(from), true);
  } else {
    run_long_task(this, tr("Find"),
                  [&](Progress& progress) { found = finder_->find_next(records, from, forward, progress); });
  }
  if (!found) return outcome_->setText(tr("Nothing was found."));
  const bool went_round = forward ? found->index < from.index : found->index > from.index;
  outcome_->setText(!went_round ? QString()
                    : forward   ? tr("The search went on from the first record.")
                                : tr("The search went on from the last record."));
  pane_->go_to(static_cast<int>(found->index), found->field);
}

void CFindBar::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter) {
    find(!event->modifiers().testFlag(Qt::ShiftModifier));
  } else if (event->key() == Qt::Key_Escape) {
    emit left();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace rowvane
