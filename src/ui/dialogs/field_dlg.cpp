#include "ui/dialogs/field_dlg.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <algorithm>
#include <array>
#include <cmath>

#include "core/database/names.h"
#include "core/messages/messages.h"
#include "formula/passes/update_order.h"
#include "ui/dialogs.h"
#include "ui/dialogs/drop_down_lists_dlg.h"
#include "ui/dialogs/format_choice.h"
#include "ui/dialogs/formula_editor.h"
#include "ui/dialogs/function_picker.h"
#include "ui/long_task.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr double kPreviewValue = 45'657.75;  // a number, a date and a time
constexpr uint32_t kRecordsLookedAt = 10'000;
constexpr size_t kMostUserFormats = 100;

struct TypeEntry {
  FieldType type;
  bool link;
};
constexpr std::array kTypes = {TypeEntry{FieldType::kText, false},   TypeEntry{FieldType::kText, true},
                               TypeEntry{FieldType::kNumber, false}, TypeEntry{FieldType::kLongText, false},
                               TypeEntry{FieldType::kFiles, false},  TypeEntry{FieldType::kCode, false}};

int index_of_type(const Field& field) {
  const auto found = std::ranges::find_if(kTypes, [&](const TypeEntry& entry) {
    return entry.type == field.type && entry.link == (field.link && field.type == FieldType::kText);
  });
  return static_cast<int>(found - kTypes.begin());
}

// The first number of the field, to show formats with.
double sample_number(const CWorkSheet& table, std::optional<size_t> field) {
  const auto* numbers = field ? std::get_if<NumberColumn>(&table.column(*field)) : nullptr;
  if (numbers == nullptr) return kPreviewValue;
  const size_t last = std::min<size_t>(numbers->cells.size(), kRecordsLookedAt);
  const auto end = numbers->cells.begin() + static_cast<std::ptrdiff_t>(last);
  const auto found =
      std::find_if(numbers->cells.begin(), end, [](double cell) { return std::isfinite(cell); });
  return found != end ? *found : kPreviewValue;
}

// A stored default value as the user writes it.
QString shown_default(const Field& field, const platform::RegionalSettings& region) {
  const CellValue value = default_value_of(field);
  const auto* number = std::get_if<double>(&value);
  if (number == nullptr) return to_qt(field.default_value);
  return to_qt(number_cell_text(*number, {region.decimal_separator, std::string()}));
}

}  // namespace

CFieldDlg::CFieldDlg(DatabaseDocument& document, CWorkSheet& table, std::optional<size_t> index,
                     size_t before, profile::Settings& profile, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent),
      document_(document),
      table_(table),
      index_(index),
      before_(before),
      profile_(profile),
      dialogs_(dialogs),
      name_(new QLineEdit(this)),
      type_(new QComboBox(this)),
      format_(new FormatChoice(profile.user_numeric_formats, document.region(), sample_number(table, index),
                               this)),
      preview_(new QLabel(this)),
      formula_(new FormulaEditor(3, &table, document.formula_settings(), this)),
      validation_(new FormulaEditor(2, &table, document.formula_settings(), this)),
      functions_(new FunctionPicker(*formula_, this)),
      default_value_(new QLineEdit(this)),
      list_(new QComboBox(this)),
      hidden_(new QCheckBox(tr("&Hidden: not shown in the table"), this)),
      problem_(new QLabel(this)) {
  setWindowTitle(index ? tr("Field Properties") : tr("Insert Field"));
  for (const TypeEntry& entry : kTypes) type_->addItem(to_qt(field_type_name(entry.type, entry.link)));
  for (QLabel* label : {preview_, problem_}) label->setTextFormat(Qt::PlainText);
  problem_->setWordWrap(true);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &CFieldDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QFormLayout(this);
  layout->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  add_rows(*layout);
  layout->addRow(problem_);
  layout->addRow(buttons);
  resize(560, sizeHint().height());

  Field fresh;
  if (!index) fresh.position = table.field_count() > before ? table.field(before).position : uint16_t{0};
  show_field(index ? table.field(*index) : fresh);
  connect(type_, &QComboBox::currentIndexChanged, this, &CFieldDlg::follow_controls);
  connect(format_, &QComboBox::currentTextChanged, this, &CFieldDlg::follow_controls);
  for (QLineEdit* box : {name_, default_value_})
    connect(box, &QLineEdit::textChanged, this, &CFieldDlg::follow_controls);
  for (FormulaEditor* editor : {formula_, validation_}) {
    connect(editor, &QsciScintilla::textChanged, this, &CFieldDlg::follow_controls);
    connect(editor, &QsciScintilla::SCN_FOCUSIN, this, [this, editor] { functions_->set_editor(*editor); });
  }
  follow_controls();
  name_->setFocus();
  name_->selectAll();
}

void CFieldDlg::add_rows(QFormLayout& layout) {
  auto* format_row = new QHBoxLayout();
  format_row->addWidget(format_, 1);
  format_row->addWidget(preview_, 1);
  auto* edit = new QPushButton(tr("&Edit Lists..."), this);
  edit->setAutoDefault(false);
  connect(edit, &QPushButton::clicked, this, &CFieldDlg::edit_lists);
  auto* list_row = new QHBoxLayout();
  list_row->addWidget(list_, 1);
  list_row->addWidget(edit);
  const auto add = [&](const QString& text, auto* row, QWidget* control) {
    auto* label = new QLabel(text, this);
    label->setBuddy(control);
    control->setAccessibleName(QString(text).remove('&').remove(':'));
    layout.addRow(label, row);
  };
  add(tr("&Name:"), name_, name_);
  add(tr("&Type:"), type_, type_);
  add(tr("Display f&ormat:"), format_row, format_);
  add(tr("&Formula:"), formula_, formula_);
  add(tr("&Validation formula:"), validation_, validation_);
  layout.addRow(QString(), functions_);
  add(tr("&Default value:"), default_value_, default_value_);
  add(tr("Drop-down &list:"), list_row, list_);
  layout.addRow(QString(), hidden_);
  preview_->setAccessibleName(tr("Preview of the display format"));
  const QList<QWidget*> order = {name_,      type_,          format_, formula_, validation_,
                                 functions_, default_value_, list_,   edit};
  for (int i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

void CFieldDlg::show_field(const Field& field) {
  name_->setText(to_qt(field.name));
  type_->setCurrentIndex(index_of_type(field));
  format_->set_code(field.format);
  formula_->set_formula(field.formula);
  validation_->set_formula(field.validation);
  default_value_->setText(shown_default(field, document_.region()));
  hidden_->setChecked(field.hidden);
  show_lists(field.drop_down_list);
  for (QWidget* control : std::initializer_list<QWidget*>{type_, formula_, default_value_})
    control->setEnabled(!field.encrypted);
}

void CFieldDlg::show_lists(const std::string& chosen) {
  list_->clear();
  list_->addItem(tr("(none)"), QString());
  for (const DropDownList& list : document_.database().settings().drop_down_lists) {
    list_->addItem(to_qt(list.name), to_qt(list.name));
    if (same_name(list.name, chosen)) list_->setCurrentIndex(list_->count() - 1);
  }
}

void CFieldDlg::edit_lists() {
  const std::string chosen = to_utf8(list_->currentData().toString());
  CDropDownListsDlg dialog(document_.database(), chosen, dialogs_, this);
  if (dialog.exec() == QDialog::Accepted) show_lists(dialog.current_name());
}

FieldEntry CFieldDlg::entry() const {
  FieldEntry entry;
  entry.index = index_;
  entry.before = before_;
  entry.region = document_.region();
  if (index_) entry.field = table_.field(*index_);
  Field& field = entry.field;
  if (!index_ && before_ < table_.field_count()) field.position = table_.field(before_).position;
  const TypeEntry& type = kTypes[static_cast<size_t>(type_->currentIndex())];
  field.name = to_utf8(name_->text());
  field.type = type.type;
  field.link = type.link;
  field.format = type.type == FieldType::kNumber ? format_->code() : std::string();
  field.formula = formula_->formula();
  field.validation = validation_->formula();
  field.default_value = to_utf8(default_value_->text());
  field.drop_down_list = to_utf8(list_->currentData().toString());
  field.hidden = hidden_->isChecked();
  return entry;
}

QString CFieldDlg::problem() const {
  return problem_->text();
}

// What is being typed is not complained about as long as it may be unfinished: an empty name.
void CFieldDlg::follow_controls() {
  const FieldEntry entered = entry();
  format_->setEnabled(entered.field.type == FieldType::kNumber);
  preview_->setText(format_->isEnabled() ? format_->preview() : QString());
  const bool is_plain = !(index_ && table_.field(*index_).encrypted);
  formula_->setEnabled(is_plain && (can_be_calculated(entered.field) || !entered.field.formula.empty()));
  const Check check = check_field_entry(table_, entered, document_.formula_settings());
  const bool is_begun = !name_->text().isEmpty();
  problem_->setText(is_begun ? to_qt(check.refusal.text()).trimmed() : QString());
}

void CFieldDlg::focus_part(FieldPart part) {
  switch (part) {
    case FieldPart::kName:
      return name_->setFocus();
    case FieldPart::kType:
      return type_->setFocus();
    case FieldPart::kFormat:
      return format_->setFocus();
    case FieldPart::kFormula:
      return formula_->setFocus();
    case FieldPart::kValidation:
      return validation_->setFocus();
    case FieldPart::kDefaultValue:
      return default_value_->setFocus();
    case FieldPart::kDropDownList:
      return list_->setFocus();
    case FieldPart::kNone:
      break;
  }
}

QWidget* CFieldDlg::views() {
  return parentWidget() != nullptr ? parentWidget() : this;
}

// Whether the user agrees to what the change loses.
bool CFieldDlg::may_lose(const FieldEntry& entry) {
  ConversionLoss loss;
  run_long_task(views(), windowTitle(),
                [&](Progress& progress) { loss = find_entry_loss(table_, entry, progress); });
  return dialogs_.report(loss) && dialogs_.accept(loss.check);
}

bool CFieldDlg::apply(const FieldEntry& entry) {
  Outcome outcome;
  run_long_change(views(), windowTitle(), document_, [&](Progress& progress) {
    outcome = apply_field_entry(table_, entry, document_.formula_settings(), progress);
  });
  return dialogs_.report(outcome);
}

void CFieldDlg::accept() {
  const FieldEntry entered = entry();
  const FormulaSettings& formulas = document_.formula_settings();
  if (!dialogs_.accept(check_field_entry(table_, entered, formulas)))
    return focus_part(wrong_field_part(table_, entered, formulas));
  if (!may_lose(entered) || !apply(entered)) return;
  if (format_->isEnabled() && format_->is_users_own()) {
    auto& formats = profile_.user_numeric_formats;
    formats.insert(formats.begin(), entered.field.format);
    if (formats.size() > kMostUserFormats) formats.pop_back();
  }
  QDialog::accept();
}

}  // namespace rowvane
