#include "ui/dialogs/field_filter_dlg.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QTimer>

#include "core/messages/messages.h"
#include "recordset/search/recent_texts.h"
#include "ui/dialogs.h"
#include "ui/dialogs/formula_editor.h"
#include "ui/dialogs/function_picker.h"
#include "ui/text.h"

namespace rowvane {

CFieldFilterDlg::CFieldFilterDlg(const FieldFilterContext& context, size_t field,
                                 const std::optional<Criterion>& criterion, const SearchOptions& options,
                                 Dialogs& dialogs, QWidget* parent)
    : QDialog(parent),
      context_(context),
      field_(field),
      options_(options),
      dialogs_(dialogs),
      choice_(new QButtonGroup(this)),
      kind_(new QComboBox(this)),
      text_(new QLineEdit(this)),
      formula_(new FormulaEditor(3, &context.table, context.formulas, this)),
      functions_(new FunctionPicker(*formula_, this)),
      flag_(new QComboBox(this)),
      empty_matches_(new QCheckBox(tr("&Allow empty matches"), this)),
      match_case_(new QCheckBox(tr("&Match case"), this)),
      search_now_(new QCheckBox(tr("&Search now"), this)) {
  const Field& definition = context.table.field(field);
  setWindowTitle(to_qt(field_filter_title(definition)));
  auto* expression = new QRadioButton(to_qt(search_editor_title(definition)).replace("&", "&&"), this);
  auto* formula = new QRadioButton(tr("&Formula:"), this);
  auto* flagged = new QRadioButton(tr("Flagged &records:"), this);
  choice_->addButton(expression, static_cast<int>(FieldFilter::Choice::kExpression));
  choice_->addButton(formula, static_cast<int>(FieldFilter::Choice::kFormula));
  choice_->addButton(flagged, static_cast<int>(FieldFilter::Choice::kFlag));
  for (const std::string_view kind : criterion_list()) kind_->addItem(to_qt(kind));
  for (const RecordFlagType& type : context.settings.record_flag_types) flag_->addItem(to_qt(type.name));
  kind_->setAccessibleName(tr("How the values are compared"));
  text_->setAccessibleName(expression->text());
  text_->setMinimumWidth(280);
  text_->setContextMenuPolicy(Qt::CustomContextMenu);
  formula_->setAccessibleName(tr("Formula"));
  flag_->setAccessibleName(tr("Record flag"));
  flagged->setEnabled(flag_->count() > 0);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &CFieldFilterDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(choice_, &QButtonGroup::idToggled, this, &CFieldFilterDlg::follow_choice);
  connect(kind_, &QComboBox::currentIndexChanged, this, &CFieldFilterDlg::follow_choice);
  connect(text_, &QLineEdit::customContextMenuRequested, this, &CFieldFilterDlg::show_recent_texts);

  auto* boxes = new QHBoxLayout();
  for (QCheckBox* box : {empty_matches_, match_case_, search_now_}) boxes->addWidget(box);
  boxes->addStretch(1);
  auto* layout = new QGridLayout(this);
  layout->addWidget(expression, 0, 0, 1, 2);
  layout->addWidget(kind_, 1, 0);
  layout->addWidget(text_, 1, 1);
  layout->addWidget(formula, 2, 0, 1, 2);
  layout->addWidget(formula_, 3, 0, 1, 2);
  layout->addWidget(functions_, 4, 0, 1, 2);
  layout->addWidget(flagged, 5, 0);
  layout->addWidget(flag_, 5, 1);
  layout->addLayout(boxes, 6, 0, 1, 2);
  layout->addWidget(buttons, 7, 0, 1, 2);
  layout->setColumnStretch(1, 1);
  show_filter(
      open_field_filter(definition, criterion, options, 1, context.settings.record_flag_types.size()));
}

void CFieldFilterDlg::show_filter(const FieldFilter& filter) {
  kind_->setCurrentIndex(static_cast<int>(filter.list_index));
  text_->setText(to_qt(filter.text));
  formula_->set_formula(filter.formula);
  flag_->setCurrentIndex(filter.flag - 1);
  empty_matches_->setChecked(filter.allow_empty_matches);
  match_case_->setChecked(filter.match_case);
  search_now_->setChecked(filter.search_now);
  choice_->button(static_cast<int>(filter.choice))->setChecked(true);
  follow_choice();
  if (filter.choice == FieldFilter::Choice::kExpression) {
    text_->setFocus();
    text_->selectAll();
  } else if (filter.choice == FieldFilter::Choice::kFormula) {
    formula_->setFocus();
  }
}

FieldFilter CFieldFilterDlg::entered() const {
  FieldFilter filter;
  filter.choice = static_cast<FieldFilter::Choice>(choice_->checkedId());
  filter.list_index = static_cast<size_t>(kind_->currentIndex());
  filter.text = to_utf8(text_->text());
  filter.formula = formula_->formula();
  filter.flag = flag_->currentIndex() + 1;
  filter.allow_empty_matches = empty_matches_->isChecked();
  filter.match_case = match_case_->isChecked();
  filter.search_now = search_now_->isChecked();
  return filter;
}

void CFieldFilterDlg::follow_choice() {
  const FieldFilter filter = entered();
  const bool expression = filter.choice == FieldFilter::Choice::kExpression;
  kind_->setEnabled(expression);
  text_->setEnabled(expression && listed_kind(filter.list_index) != CriterionKind::kIsEmpty);
  for (QWidget* control : std::initializer_list<QWidget*>{formula_, functions_})
    control->setEnabled(filter.choice == FieldFilter::Choice::kFormula);
  flag_->setEnabled(filter.choice == FieldFilter::Choice::kFlag);
  empty_matches_->setEnabled(has_expression_boxes(filter));
  match_case_->setEnabled(has_expression_boxes(filter));
}

void CFieldFilterDlg::show_recent_texts(const QPoint& place) {
  QMenu menu(this);
  for (const RecentTextItem& item :
       recent_text_menu(context_.recent_texts.texts(context_.table, field_), to_utf8(text_->text()))) {
    const QString text = to_qt(item.text);
    QAction* action = menu.addAction(QString(text).replace("&", "&&"));
    action->setCheckable(true);
    action->setChecked(item.checked);
    action->setEnabled(item.enabled);
    connect(action, &QAction::triggered, this, [this, text] { text_->setText(text); });
  }
  menu.exec(text_->mapToGlobal(place));
}

void CFieldFilterDlg::flash_invalid_formula() {
  const std::string formula = formula_->formula();
  formula_->setText(to_qt(texts::kInvalidFormula));
  setEnabled(false);
  QApplication::beep();
  QTimer::singleShot(kInvalidFormulaMilliseconds, this, [this, formula] {
    setEnabled(true);
    formula_->set_formula(formula);
    formula_->setFocus();
  });
}

void CFieldFilterDlg::accept() {
  const FieldFilter filter = entered();
  FieldFilterResult result = accept_field_filter(context_.table, filter, options_, context_.formulas);
  options_ = result.options;
  if (!result.warning.empty()) dialogs_.show(result.warning.text(), MessageIcon::kWarning);
  if (result.invalid_formula) return flash_invalid_formula();
  if (!result.message.empty()) {
    dialogs_.show(result.message, MessageIcon::kError);
    text_->setFocus();
  }
  if (!result.criterion) return;
  if (filter.choice == FieldFilter::Choice::kExpression)
    context_.recent_texts.add(context_.table, field_, result.criterion->text);
  criterion_ = std::move(result.criterion);
  QDialog::accept();
}

}  // namespace rowvane
