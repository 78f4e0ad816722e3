#include "ui/dialogs/keyboard_dlg.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "ui/actions.h"

namespace rowvane {
namespace {

struct GridKeys {
  const char* keys;
  const char* what;
};

constexpr GridKeys kGridKeys[] = {
    {"Arrows", "Go to the next cell"},
    {"Ctrl+Arrows", "Go to the edge of the data"},
    {"Tab, Shift+Tab", "Go to the next field or the one before, over the end of the record"},
    {"Enter, Shift+Enter", "Go to the next record or the one before"},
    {"Home, End", "Go to the first or the last field"},
    {"Ctrl+Home, Ctrl+End", "Go to the first or the last cell"},
    {"Page Up, Page Down", "Go a page up or down"},
    {"Shift with any of these", "Extend the selection"},
    {"Ctrl+Space, Shift+Space", "Select the whole field or the whole record"},
    {"Any character", "Type over the cell"},
    {"Alt+Down", "Open the list of values while typing"},
    {"Ctrl+Enter", "Put what is typed into all selected cells"},
    {"Ctrl+Enter", "Search again with the filters that are set, when nothing is typed"},
    {"Ctrl+;", "Enter today's date"},
    {"Ctrl+'", "Enter the value of the record above"},
    {"Escape", "Leave the cell as it was; twice: show all records"},
    {"Ctrl+Mouse wheel", "Show the table larger or smaller"},
};

QTreeWidgetItem* add_group(QTreeWidget& list, const QString& title) {
  auto* group = new QTreeWidgetItem(&list, {title});
  QFont font = list.font();
  font.setBold(true);
  group->setFont(0, font);
  group->setFirstColumnSpanned(true);
  return group;
}

void add_commands(QTreeWidget& list) {
  QTreeWidgetItem* group = nullptr;
  QString title;
  for (const CommandText& command : command_texts()) {
    const QString menu = QString::fromLatin1(command.menu).remove('|').remove('&');
    if (menu != title) group = nullptr;
    title = menu;
    if (command.shortcut[0] == '\0') continue;
    if (group == nullptr) group = add_group(list, title);
    QStringList keys;
    for (const QKeySequence& key : QKeySequence::listFromString(QString::fromLatin1(command.shortcut)))
      keys << key.toString(QKeySequence::NativeText);
    new QTreeWidgetItem(group, {QString::fromLatin1(command.text).remove('&'), keys.join(", ")});
  }
}

}  // namespace

CKeyboardDlg::CKeyboardDlg(QWidget* parent) : QDialog(parent) {
  setWindowTitle(tr("Keyboard"));
  resize(620, 560);
  auto* list = new QTreeWidget(this);
  list->setHeaderLabels({tr("Command"), tr("Keys")});
  list->setAccessibleName(tr("Commands and their keys"));
  list->setRootIsDecorated(false);
  QTreeWidgetItem* grid = add_group(*list, tr("Table"));
  for (const GridKeys& keys : kGridKeys) new QTreeWidgetItem(grid, {tr(keys.what), tr(keys.keys)});
  add_commands(*list);
  list->expandAll();
  list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  list->header()->setStretchLastSection(false);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(list);
  layout->addWidget(buttons);
}

}  // namespace rowvane
