#include "ui/dialogs/field_check_list.h"

#include "ui/text.h"

namespace rowvane {

FieldCheckList::FieldCheckList(const CWorkSheet& table, const std::function<bool(const Field&)>& offers,
                               QWidget* parent)
    : QListWidget(parent) {
  setUniformItemSizes(true);
  for (size_t i = 0; i < table.field_count(); ++i) {
    if (!offers(table.field(i))) continue;
    auto* item = new QListWidgetItem(to_qt(field_list_text(table.field(i))), this);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(Qt::Unchecked);
    item->setData(Qt::UserRole, static_cast<qulonglong>(i));
  }
}

std::vector<size_t> FieldCheckList::checked_fields() const {
  std::vector<size_t> fields;
  for (int row = 0; row < count(); ++row) {
    if (item(row)->checkState() != Qt::Checked) continue;
    fields.push_back(static_cast<size_t>(item(row)->data(Qt::UserRole).toULongLong()));
  }
  return fields;
}

void FieldCheckList::tick_field(size_t field) {
  for (int row = 0; row < count(); ++row) {
    if (item(row)->data(Qt::UserRole).toULongLong() != field) continue;
    item(row)->setCheckState(Qt::Checked);
    setCurrentRow(row);
  }
}

void FieldCheckList::tick_all() {
  for (int row = 0; row < count(); ++row) item(row)->setCheckState(Qt::Checked);
}

}  // namespace rowvane
