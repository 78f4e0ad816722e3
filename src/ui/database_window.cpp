#include "ui/database_window.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QSplitter>
#include <QStackedWidget>
#include <algorithm>

#include "app/profile/engine_options.h"
#include "core/database/names.h"
#include "core/messages/messages.h"
#include "ui/dialogs/drop_down_lists_dlg.h"
#include "ui/dialogs/field_dlg.h"
#include "ui/dialogs/field_encryption_dlg.h"
#include "ui/dialogs/field_filter_dlg.h"
#include "ui/dialogs/record_flag_types_dlg.h"
#include "ui/long_task.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kExplorerWidth = 200;

}  // namespace

CDatabaseWindow::CDatabaseWindow(std::unique_ptr<DatabaseDocument> document, profile::Settings& settings,
                                 Dialogs& dialogs, QWidget* parent)
    : QWidget(parent),
      document_(std::move(document)),
      settings_(settings),
      dialogs_(dialogs),
      splitter_(new QSplitter(this)),
      explorer_(new CDatabaseExplorer(*document_, settings.explorer_options, dialogs, splitter_)),
      views_(new QStackedWidget(splitter_)) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(splitter_);
  splitter_->setStretchFactor(0, 0);
  splitter_->setStretchFactor(1, 1);
  splitter_->setSizes({kExplorerWidth, 1000});
  splitter_->setChildrenCollapsible(false);
  connect(explorer_, &CDatabaseExplorer::table_chosen, this, [this](CWorkSheet* table) {
    if (table != current_table_) show_table(*table);
  });
  connect(explorer_, &CDatabaseExplorer::table_entered, this, [this] {
    if (view() != nullptr) view()->setFocus();
  });
  connect(document_.get(), &DatabaseDocument::changed, this, &CDatabaseWindow::follow);
  const std::vector<CWorkSheet*> tables = document_->database().tables();
  if (!tables.empty()) show_table(*tables.front());
}

CDatabaseWindow::~CDatabaseWindow() {
  // The views look at the document to their end.
  for (auto& [table, pane] : panes_) delete pane.view;
  delete explorer_;
}

// ---- tables

CCellvaneView* CDatabaseWindow::view() const {
  const Pane* pane = current_pane();
  return pane != nullptr ? pane->view : nullptr;
}

CDatabaseWindow::Pane* CDatabaseWindow::current_pane() {
  const auto found = panes_.find(current_table_);
  return found != panes_.end() ? &found->second : nullptr;
}

const CDatabaseWindow::Pane* CDatabaseWindow::current_pane() const {
  const auto found = panes_.find(current_table_);
  return found != panes_.end() ? &found->second : nullptr;
}

std::optional<size_t> CDatabaseWindow::current_field() const {
  return view() != nullptr ? view()->current_field() : std::nullopt;
}

CDatabaseWindow::Pane& CDatabaseWindow::pane_of(CWorkSheet& table) {
  Pane& pane = panes_[&table];
  if (pane.view != nullptr) return pane;
  pane.view = new CCellvaneView(*document_, table, settings_, dialogs_, views_);
  pane.presentation = std::make_unique<TablePresentation>(*document_, table);
  pane.view->set_presentation(pane.presentation.get());
  views_->addWidget(pane.view);
  connect(pane.view, &CCellvaneView::place_changed, this, &CDatabaseWindow::state_changed);
  // Later, when all others know of the change.
  connect(
      &pane.view->model(), &TableModel::outdated, this,
      [this, &table] {
        if (&table == current_table_) present();
      },
      Qt::QueuedConnection);
  return pane;
}

void CDatabaseWindow::show_table(CWorkSheet& table) {
  current_table_ = &table;
  views_->setCurrentWidget(pane_of(table).view);
  explorer_->set_current_item({nullptr, &table});
  if (view()->model().is_outdated()) present();
  emit state_changed();
}

void CDatabaseWindow::set_explorer_visible(bool visible) {
  explorer_->setVisible(visible);
}

void CDatabaseWindow::drop_missing_tables() {
  const std::vector<CWorkSheet*> tables = document_->database().tables();
  std::erase_if(panes_, [&](const auto& each) {
    if (std::ranges::find(tables, each.first) != tables.end()) return false;
    delete each.second.view;
    return true;
  });
  if (std::ranges::find(tables, current_table_) != tables.end() || tables.empty()) return;
  current_table_ = nullptr;
  show_table(*tables.front());
}

void CDatabaseWindow::follow(const CWorkSheet* changed) {
  if (changed == nullptr) drop_missing_tables();
  emit state_changed();
}

void CDatabaseWindow::report(ErrorCode error) {
  if (error == ErrorCode::kNameNotUnique) {
    dialogs_.show(message(MessageId::kUniqueNameNeeded), MessageIcon::kWarning);
  } else if (error != ErrorCode::kOk) {
    dialogs_.show_error(error);
  }
}

// ---- fields

void CDatabaseWindow::insert_field() {
  if (current_table_ == nullptr) return;
  const size_t before = current_field().value_or(current_table_->field_count());
  CFieldDlg(*document_, *current_table_, std::nullopt, before, settings_, dialogs_, this).exec();
}

void CDatabaseWindow::field_properties() {
  const auto field = current_field();
  if (field) CFieldDlg(*document_, *current_table_, field, *field, settings_, dialogs_, this).exec();
}

void CDatabaseWindow::edit_drop_down_lists() {
  CDropDownListsDlg(document_->database(), {}, dialogs_, this).exec();
}

void CDatabaseWindow::rename_field() {
  const auto field = current_field();
  if (!field) return;
  const auto name =
      dialogs_.ask_text(tr("Rename Field"), tr("Name:"), to_qt(current_table_->field(*field).name));
  if (!name) return;
  const ErrorCode error = current_table_->rename_field(*field, to_utf8(*name));
  if (error == ErrorCode::kNameNotUnique) {
    dialogs_.show(message(MessageId::kFieldNameExists), MessageIcon::kWarning);
  } else if (error == ErrorCode::kFieldTypeMismatch) {
    dialogs_.show(message(MessageId::kFieldNameNeedsLetter), MessageIcon::kWarning);
  } else {
    report(error);
  }
}

void CDatabaseWindow::delete_field() {
  const auto field = current_field();
  if (!field ||
      !dialogs_.ask("Delete the field \"" + current_table_->field(*field).name + "\" and its values?"))
    return;
  report(current_table_->delete_field(*field));
}

void CDatabaseWindow::hide_field() {
  const auto field = current_field();
  if (!field) return;
  Field definition = current_table_->field(*field);
  definition.hidden = true;
  report(current_table_->change_field(*field, definition));
}

void CDatabaseWindow::show_all_fields() {
  const ChangeGroup step(document_->database(), "Show All Fields");
  for (size_t i = 0; current_table_ != nullptr && i < current_table_->field_count(); ++i) {
    Field definition = current_table_->field(i);
    if (!std::exchange(definition.hidden, false)) continue;
    report(current_table_->change_field(i, definition));
  }
}

void CDatabaseWindow::encrypt_fields() {
  if (current_table_ != nullptr)
    change_field_encryption(CFieldEncryptionDlg::Use::kEncrypt, *document_, *current_table_, current_field(),
                            dialogs_, this);
}

void CDatabaseWindow::decrypt_fields() {
  if (current_table_ != nullptr)
    change_field_encryption(CFieldEncryptionDlg::Use::kDecrypt, *document_, *current_table_, current_field(),
                            dialogs_, this);
}

void CDatabaseWindow::edit_record_flag_types() {
  CRecordFlagTypesDlg(document_->database(), dialogs_, this).exec();
}

void CDatabaseWindow::flag_records(int type) {
  if (view() != nullptr) report(current_table_->set_flag_type(view()->selected_positions(), type));
}

// ---- records

void CDatabaseWindow::present() {
  Pane* pane = current_pane();
  if (pane == nullptr || presenting_) return;
  presenting_ = true;
  ShownRecords shown;
  run_long_task(this, tr("Search"),
                [&](Progress& progress) { shown = pane->presentation->work_out(progress); });
  presenting_ = false;
  if (!shown.failure.empty()) dialogs_.show(shown.failure, MessageIcon::kError);
  for (const std::string& notice : shown.notices) dialogs_.show(notice, MessageIcon::kInformation);
  if (!shown.cancelled && shown.failure.empty()) {
    pane->is_filtered = pane->presentation->is_filtered();
    pane->view->model().show_records(std::move(shown.records));
  }
  emit state_changed();
}

void CDatabaseWindow::set_filter() {
  const auto field = current_field();
  if (!field) return;
  const FieldFilterContext context{*current_table_, document_->database().settings(),
                                   document_->formula_settings(), document_->recent_texts()};
  CFieldFilterDlg dialog(context, *field, document_->criteria().criterion(*current_table_, *field),
                         document_->search_options(), dialogs_, this);
  const bool accepted = dialog.exec() == QDialog::Accepted;
  document_->search_options() = dialog.options();
  store_search_options(dialog.options(), settings_);
  if (!accepted) return;
  document_->criteria().set(*current_table_, *field, dialog.criterion());
  if (dialog.options().search_now) {
    present();
  } else {
    view()->show_criteria();
  }
}

void CDatabaseWindow::filter_by(const std::map<size_t, Criterion>& filters) {
  if (filters.empty() || current_table_ == nullptr) return;
  for (const auto& [field, criterion] : filters) {
    if (field < current_table_->field_count()) document_->criteria().set(*current_table_, field, criterion);
  }
  present();
}

void CDatabaseWindow::clear_filter() {
  const auto field = current_field();
  if (!field) return;
  document_->criteria().clear(*current_table_, *field);
  present();
}

// The value that the current cell holds becomes the criterion of its field.
void CDatabaseWindow::find_by_value() {
  const auto field = current_field();
  if (!field || !view()->currentIndex().isValid()) return;
  const uint32_t record = view()->model().record_at(view()->currentIndex().row());
  const std::string text = current_table_->value_text(record, *field);
  const bool equal = current_table_->field(*field).type == FieldType::kNumber ||
                     current_table_->field(*field).type == FieldType::kText;
  Criterion criterion = is_empty_criterion();
  if (!text.empty()) criterion = {equal ? CriterionKind::kEqual : CriterionKind::kStartsWith, text};
  document_->criteria().set(*current_table_, *field, criterion);
  present();
}

void CDatabaseWindow::show_all_records() {
  if (current_table_ == nullptr) return;
  document_->criteria().clear(*current_table_);
  present();
}

void CDatabaseWindow::sort_by_current_field(bool descending, bool with_shift) {
  const auto field = current_field();
  if (!field) return;
  Pane* pane = current_pane();
  const ErrorCode error = sort_by_field(pane->presentation->sort_codes(), *field, descending, with_shift);
  if (error != ErrorCode::kOk) return report(error);
  present();
  pane->view->setCurrentIndex(pane->view->model().index(0, static_cast<int>(*field)));
}

void CDatabaseWindow::sort_by_nothing() {
  Pane* pane = current_pane();
  if (pane == nullptr) return;
  rowvane::sort_by_nothing(pane->presentation->sort_codes());
  present();
}

// ---- the status bar

QString CDatabaseWindow::place_text() const {
  const CCellvaneView* grid = view();
  if (grid == nullptr) return {};
  const QLocale locale;
  const int row = grid->currentIndex().row();
  return tr("Record %1 of %2").arg(locale.toString(row + 1), locale.toString(grid->model().rowCount()));
}

QString CDatabaseWindow::filter_text() const {
  const Pane* pane = current_pane();
  if (pane == nullptr) return {};
  QStringList parts;
  if (pane->is_filtered) parts << tr("Filtered");
  const std::string sorted = pane->presentation->sort_text();
  if (!sorted.empty()) parts << tr("Sorted by %1").arg(to_qt(sorted));
  return parts.join("   ");
}

QString CDatabaseWindow::selection_text() const {
  const CCellvaneView* grid = view();
  if (grid == nullptr || !grid->summary().result()) return {};
  const NumberSummary& numbers = *grid->summary().result();
  const QLocale locale;
  return tr("Sum %1   Mean %2   Count %3")
      .arg(locale.toString(numbers.sum, 'g', 12), locale.toString(numbers.mean, 'g', 12),
           locale.toString(static_cast<qulonglong>(numbers.count)));
}

}  // namespace rowvane
