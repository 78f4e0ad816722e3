#include "ui/dialogs/drop_down_lists_dlg.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include "core/database/names.h"
#include "ui/dialogs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

enum ItemRole { kFormerRole = Qt::UserRole, kItemsRole };  // -1 for a new list; its values, a line each
constexpr int kNewList = -1;

}  // namespace

CDropDownListsDlg::CDropDownListsDlg(Database& database, const std::string& chosen, Dialogs& dialogs,
                                     QWidget* parent)
    : QDialog(parent),
      database_(database),
      dialogs_(dialogs),
      names_(new QListWidget(this)),
      items_(new QPlainTextEdit(this)) {
  setWindowTitle(tr("Drop-Down Lists"));
  resize(520, 360);
  auto* names_label = new QLabel(tr("&Lists:"), this);
  names_label->setBuddy(names_);
  auto* items_label = new QLabel(tr("&Values, a line each:"), this);
  items_label->setBuddy(items_);
  items_->setTabChangesFocus(true);
  auto* add = new QPushButton(tr("&Add"), this);
  auto* remove = new QPushButton(tr("&Delete"), this);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &CDropDownListsDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* row = new QHBoxLayout();
  row->addWidget(add);
  row->addWidget(remove);
  row->addStretch(1);
  auto* layout = new QGridLayout(this);
  layout->addWidget(names_label, 0, 0);
  layout->addWidget(items_label, 0, 1);
  layout->addWidget(names_, 1, 0);
  layout->addWidget(items_, 1, 1);
  layout->addLayout(row, 2, 0);
  layout->addWidget(buttons, 3, 0, 1, 2);
  layout->setColumnStretch(1, 1);
  names_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                          QAbstractItemView::SelectedClicked);

  const auto& present = database.settings().drop_down_lists;
  for (size_t i = 0; i < present.size(); ++i) {
    add_item(present[i], static_cast<int>(i));
    if (same_name(present[i].name, chosen)) names_->setCurrentRow(static_cast<int>(i));
  }
  if (names_->currentRow() < 0) names_->setCurrentRow(0);
  show_items(names_->currentItem());
  connect(names_, &QListWidget::currentItemChanged, this, &CDropDownListsDlg::show_items);
  connect(items_, &QPlainTextEdit::textChanged, this, &CDropDownListsDlg::keep_items);
  for (QPushButton* button : {add, remove}) button->setAutoDefault(false);
  connect(add, &QPushButton::clicked, this, &CDropDownListsDlg::add_list);
  connect(remove, &QPushButton::clicked, this, &CDropDownListsDlg::delete_list);
}

void CDropDownListsDlg::add_item(const DropDownList& list, int former) {
  QStringList lines;
  for (const std::string& item : list.items) lines << to_qt(item);
  auto* item = new QListWidgetItem(to_qt(list.name), names_);
  item->setFlags(item->flags() | Qt::ItemIsEditable);
  item->setData(kFormerRole, former);
  item->setData(kItemsRole, lines.join('\n'));
}

void CDropDownListsDlg::show_items(const QListWidgetItem* item) {
  const QSignalBlocker blocker(items_);
  items_->setPlainText(item != nullptr ? item->data(kItemsRole).toString() : QString());
  items_->setEnabled(item != nullptr);
}

void CDropDownListsDlg::keep_items() {
  if (QListWidgetItem* item = names_->currentItem()) item->setData(kItemsRole, items_->toPlainText());
}

void CDropDownListsDlg::add_list() {
  QString name;
  for (int number = 1; name.isEmpty() || !names_->findItems(name, Qt::MatchFixedString).isEmpty(); ++number)
    name = tr("List %1").arg(number);
  add_item({to_utf8(name), {}}, kNewList);
  names_->setCurrentRow(names_->count() - 1);
  names_->editItem(names_->currentItem());
}

void CDropDownListsDlg::delete_list() {
  delete names_->takeItem(names_->currentRow());
}

EditedDropDownLists CDropDownListsDlg::lists() const {
  EditedDropDownLists lists;
  for (int row = 0; row < names_->count(); ++row) {
    const QListWidgetItem& item = *names_->item(row);
    DropDownList list{to_utf8(item.text()), {}};
    for (const QString& line : item.data(kItemsRole).toString().split('\n', Qt::SkipEmptyParts))
      list.items.push_back(to_utf8(line));
    const int former = item.data(kFormerRole).toInt();
    lists.push_back(
        {std::move(list), former == kNewList ? std::nullopt : std::optional(static_cast<size_t>(former))});
  }
  return lists;
}

std::string CDropDownListsDlg::current_name() const {
  return names_->currentItem() != nullptr ? to_utf8(names_->currentItem()->text()) : std::string();
}

void CDropDownListsDlg::accept() {
  const EditedDropDownLists edited = lists();
  if (!dialogs_.accept(check_drop_down_lists(edited))) return;
  if (dialogs_.report(change_drop_down_lists(database_, edited))) QDialog::accept();
}

}  // namespace rowvane
