#include "ui/database_window.h"

#include <QHBoxLayout>
#include <QSplitter>
#include <QStackedWidget>
#include <algorithm>

#include "core/database/database.h"
#include "ui/dialogs/drop_down_lists_dlg.h"
#include "ui/dialogs/record_flag_types_dlg.h"
#include "ui/table_views.h"

namespace rowvane {
namespace {

constexpr int kExplorerWidth = 200;

}  // namespace

CDatabaseWindow::CDatabaseWindow(std::unique_ptr<DatabaseDocument> document, profile::Settings& settings,
                                 Dialogs& dialogs, PaneMenus menus, QWidget* parent)
    : QWidget(parent),
      document_(std::move(document)),
      settings_(settings),
      dialogs_(dialogs),
      splitter_(new QSplitter(this)),
      explorer_(new CDatabaseExplorer(*document_, settings.explorer_options, dialogs, splitter_)),
      menus_(std::move(menus)),
      stack_(new QStackedWidget(splitter_)) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(splitter_);
  splitter_->setStretchFactor(0, 0);
  splitter_->setStretchFactor(1, 1);
  splitter_->setSizes({kExplorerWidth, 1000});
  splitter_->setChildrenCollapsible(false);
  connect(explorer_, &CDatabaseExplorer::table_chosen, this, [this](CWorkSheet* table) {
    if (pane_ == nullptr || table != &pane_->table()) show_table(*table);
  });
  connect(explorer_, &CDatabaseExplorer::table_entered, this, [this] {
    if (pane_ != nullptr) pane_->setFocus();
  });
  connect(document_.get(), &DatabaseDocument::changed, this, &CDatabaseWindow::follow);
  const std::vector<CWorkSheet*> tables = document_->database().tables();
  if (!tables.empty()) show_table(*tables.front());
}

CDatabaseWindow::~CDatabaseWindow() {
  // They look at the document to their end.
  for (const auto& [table, pane] : panes_) delete pane;
  delete explorer_;
}

// ---- tables

TablePane& CDatabaseWindow::pane_of(CWorkSheet& table) {
  TablePane*& pane = panes_[&table];
  if (pane != nullptr) return *pane;
  pane = new TablePane(*document_, table, settings_, dialogs_, make_grid, menus_, stack_);
  stack_->addWidget(pane);
  connect(pane, &TablePane::state_changed, this, &CDatabaseWindow::state_changed);
  // Later, when all others know of the change.
  connect(
      &pane->model(), &TableModel::outdated, this,
      [this, made = pane] {
        if (made == pane_) made->search();
      },
      Qt::QueuedConnection);
  return *pane;
}

void CDatabaseWindow::show_table(CWorkSheet& table) {
  pane_ = &pane_of(table);
  stack_->setCurrentWidget(pane_);
  explorer_->set_current_item({nullptr, &table});
  if (pane_->model().is_outdated()) pane_->search();
  emit state_changed();
}

void CDatabaseWindow::set_explorer_visible(bool visible) {
  explorer_->setVisible(visible);
}

void CDatabaseWindow::drop_missing_tables() {
  const std::vector<CWorkSheet*> tables = document_->database().tables();
  std::erase_if(panes_, [&](const auto& each) {
    if (std::ranges::find(tables, each.first) != tables.end()) return false;
    if (each.second == pane_) pane_ = nullptr;
    delete each.second;
    return true;
  });
  if (pane_ == nullptr && !tables.empty()) show_table(*tables.front());
}

void CDatabaseWindow::follow(const CWorkSheet* changed) {
  if (changed == nullptr) drop_missing_tables();
  emit state_changed();
}

void CDatabaseWindow::edit_drop_down_lists() {
  CDropDownListsDlg(document_->database(), {}, dialogs_, this).exec();
}

void CDatabaseWindow::edit_record_flag_types() {
  CRecordFlagTypesDlg(document_->database(), dialogs_, this).exec();
}

}  // namespace rowvane
