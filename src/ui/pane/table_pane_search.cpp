// Which records are shown, and in which order.
#include <QDateTime>

#include "app/profile/engine_options.h"
#include "ui/dialogs/field_filter_dlg.h"
#include "ui/long_task.h"
#include "ui/pane/table_pane.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kSecondEscapeMilliseconds = 800;

}  // namespace

void TablePane::search() {
  if (searching_) return;
  searching_ = true;
  ShownRecords shown;
  run_long_task(this, tr("Search"), [&](Progress& progress) { shown = presentation_.work_out(progress); });
  searching_ = false;
  if (dialogs_.report(shown)) {
    is_filtered_ = presentation_.is_filtered();
    model_.show_records(std::move(shown.records));
  }
  emit state_changed();
}

void TablePane::set_filter() {
  const auto field = current_field();
  if (!field) return;
  const FieldFilterContext context{table_, document_.database().settings(), document_.formula_settings(),
                                   document_.recent_texts()};
  CFieldFilterDlg dialog(context, *field, document_.criteria().criterion(table_, *field),
                         document_.search_options(), dialogs_, this);
  const bool accepted = dialog.exec() == QDialog::Accepted;
  document_.search_options() = dialog.options();
  store_search_options(dialog.options(), settings_);
  if (!accepted) return;
  document_.criteria().set(table_, *field, dialog.criterion());
  if (dialog.options().search_now) {
    search();
  } else {
    view_->refresh();
  }
}

void TablePane::clear_filter() {
  const auto field = current_field();
  if (!field) return;
  document_.criteria().clear(table_, *field);
  search();
}

void TablePane::filter_by(const std::map<size_t, Criterion>& filters) {
  if (filters.empty()) return;
  for (const auto& [field, criterion] : filters) {
    if (field < table_.field_count()) document_.criteria().set(table_, field, criterion);
  }
  search();
}

// The value that the current cell holds becomes the criterion of its field.
void TablePane::find_by_value() {
  const auto field = current_field();
  if (!field || !current().isValid()) return;
  const RecordNumber record = model_.record_at(current().row());
  const std::string text = table_.value_text(record, *field);
  const bool equal =
      table_.field(*field).type == FieldType::kNumber || table_.field(*field).type == FieldType::kText;
  Criterion criterion = is_empty_criterion();
  if (!text.empty()) criterion = {equal ? CriterionKind::kEqual : CriterionKind::kStartsWith, text};
  document_.criteria().set(table_, *field, criterion);
  search();
}

void TablePane::show_all_records() {
  document_.criteria().clear(table_);
  search();
}

void TablePane::escape_pressed() {
  const qint64 now = QDateTime::currentMSecsSinceEpoch();
  const bool second = now - last_escape_ < kSecondEscapeMilliseconds;
  last_escape_ = second ? 0 : now;
  if (second) show_all_records();
}

void TablePane::sort_by_current_field(bool descending, bool with_shift) {
  const auto field = current_field();
  if (!field) return;
  const ErrorCode error = sort_by_field(presentation_.sort_codes(), *field, descending, with_shift);
  if (error != ErrorCode::kOk) return report(error);
  search();
  go_to(0, *field);
}

void TablePane::sort_by_nothing() {
  rowvane::sort_by_nothing(presentation_.sort_codes());
  search();
}

}  // namespace rowvane
