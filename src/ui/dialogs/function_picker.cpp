#include "ui/dialogs/function_picker.h"

#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

#include "formula/functions/function_registry.h"
#include "ui/dialogs/formula_editor.h"
#include "ui/text.h"

namespace rowvane {

FunctionPicker::FunctionPicker(FormulaEditor& editor, QWidget* parent)
    : QWidget(parent),
      editor_(&editor),
      button_(new QPushButton(tr("&Functions >"), this)),
      lists_(new QWidget(this)),
      categories_(new QComboBox(lists_)),
      functions_(new QListWidget(lists_)),
      help_(new QPlainTextEdit(lists_)) {
  button_->setCheckable(true);
  button_->setAutoDefault(false);
  categories_->setAccessibleName(tr("Function category"));
  functions_->setAccessibleName(tr("Functions"));
  functions_->setToolTip(tr("Enter or a double click puts the function into the formula"));
  help_->setAccessibleName(tr("Help on the function"));
  help_->setReadOnly(true);
  help_->setTabChangesFocus(true);
  for (size_t i = 0; i < kFunctionCategories; ++i) {
    const auto category = static_cast<FunctionCategory>(i);
    if (!documented_functions(category).empty())
      categories_->addItem(to_qt(category_name(category)), QVariant::fromValue(category));
  }

  auto* columns = new QGridLayout(lists_);
  columns->setContentsMargins(0, 0, 0, 0);
  columns->addWidget(categories_, 0, 0);
  columns->addWidget(functions_, 1, 0);
  columns->addWidget(help_, 0, 1, 2, 1);
  columns->setColumnStretch(1, 1);
  functions_->setFixedWidth(categories_->sizeHint().width());
  lists_->setFixedHeight(11 * fontMetrics().lineSpacing());
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(button_, 0, Qt::AlignLeft);
  layout->addWidget(lists_);

  connect(button_, &QPushButton::toggled, this, &FunctionPicker::show_lists);
  connect(categories_, &QComboBox::currentIndexChanged, this, &FunctionPicker::show_category);
  connect(functions_, &QListWidget::currentRowChanged, this, &FunctionPicker::show_help);
  connect(functions_, &QListWidget::itemDoubleClicked, this, &FunctionPicker::insert_function);
  functions_->installEventFilter(this);
  show_category();
  lists_->hide();
}

// Enter in the list must not reach the dialog, which would take it as OK.
bool FunctionPicker::eventFilter(QObject* watched, QEvent* event) {
  if (watched != functions_ || event->type() != QEvent::KeyPress) return false;
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
  insert_function();
  return true;
}

void FunctionPicker::show_lists(bool shown) {
  lists_->setVisible(shown);
  if (shown) {
    functions_->setFocus();
  } else {
    window()->layout()->activate();
    window()->resize(window()->width(), window()->minimumSizeHint().height());
  }
}

void FunctionPicker::show_category() {
  functions_->clear();
  for (const DocumentationEntry* entry :
       documented_functions(categories_->currentData().value<FunctionCategory>()))
    functions_->addItem(QString::fromLatin1(entry->name));
  functions_->setCurrentRow(0);
}

void FunctionPicker::show_help() {
  const QListWidgetItem* item = functions_->currentItem();
  if (item != nullptr) help_->setPlainText(to_qt(help_text(to_utf8(item->text()))).remove('\r'));
}

void FunctionPicker::insert_function() {
  const QListWidgetItem* item = functions_->currentItem();
  if (item != nullptr && editor_->isEnabled()) editor_->insert_function(item->text());
}

}  // namespace rowvane
