#include "ui/dialogs/text_field_list.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <array>

#include "ui/text.h"

namespace rowvane {
namespace {

enum ListColumn { kNameColumn, kTypeColumn, kDatesColumn, kListColumns };

// In the order of the list, with what each stores.
struct TypeChoice {
  const char* text;
  uint8_t value;
};
constexpr std::array kTypeChoices = {
    TypeChoice{"Auto", TextFileSettings::kAuto}, TypeChoice{"Text", TextFileSettings::kText},
    TypeChoice{"Number", TextFileSettings::kNumber}, TypeChoice{"LongText", TextFileSettings::kLongText}};

}  // namespace

CTextFieldList::CTextFieldList(QWidget* parent) : QTableWidget(parent) {
  setColumnCount(kListColumns);
  setHorizontalHeaderLabels({tr("Field"), tr("Type"), tr("Parse Dates")});
  verticalHeader()->setVisible(false);
  horizontalHeader()->setSectionResizeMode(kNameColumn, QHeaderView::Stretch);
  setSelectionMode(NoSelection);
}

void CTextFieldList::show_fields(const CWorkSheet& sample, const TextFileSettings& settings) {
  setRowCount(0);
  setRowCount(static_cast<int>(std::min(sample.field_count(), kMaxImportColumns)));
  for (int row = 0; row < rowCount(); ++row) {
    const auto field = static_cast<size_t>(row);
    auto* name = new QTableWidgetItem(to_qt(sample.field(field).name));
    name->setFlags(Qt::ItemIsEnabled);
    setItem(row, kNameColumn, name);
    auto* types = new QComboBox(this);
    for (const TypeChoice& choice : kTypeChoices) {
      types->addItem(choice.text, choice.value);
      if (choice.value == settings.type_choice(field)) types->setCurrentIndex(types->count() - 1);
    }
    setCellWidget(row, kTypeColumn, types);
    auto* dates = new QCheckBox(this);
    dates->setChecked((settings.column_options[field] & TextFileSettings::kParseDates) != 0);
    setCellWidget(row, kDatesColumn, dates);
  }
}

void CTextFieldList::read_choices(TextFileSettings& settings) const {
  for (int row = 0; row < rowCount(); ++row) {
    const auto* types = qobject_cast<QComboBox*>(cellWidget(row, kTypeColumn));
    const auto* dates = qobject_cast<QCheckBox*>(cellWidget(row, kDatesColumn));
    const int dates_bit = dates->isChecked() ? TextFileSettings::kParseDates : 0;
    settings.column_options[static_cast<size_t>(row)] =
        static_cast<uint8_t>(types->currentData().toInt() | dates_bit);
  }
}

}  // namespace rowvane
