// Opening and closing the editor of a cell.
#include "core/database/database.h"
#include "ui/grid/cellvane_view.h"
#include "ui/grid/editor_keys.h"
#include "ui/text.h"

namespace rowvane {

bool CCellvaneView::is_read_only() const {
  return settings_.general_options.read_only || document_.file().is_read_only();
}

bool CCellvaneView::may_change() {
  if (!is_read_only()) return finish_editing();
  dialogs_.show("The database can't be changed: it is open for reading only.", MessageIcon::kWarning);
  return false;
}

bool CCellvaneView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
  const bool is_asked_for = trigger == DoubleClicked || trigger == EditKeyPressed ||
                            trigger == AnyKeyPressed || trigger == AllEditTriggers;
  if (!index.isValid() || !is_asked_for || delegate_->editor() != nullptr) return false;
  const auto field = static_cast<size_t>(index.column());
  if (table().field(field).encrypted) {
    report(ErrorCode::kEncryptedField);
    return false;
  }
  if (!model_->is_typed(field) || !may_change()) return false;
  if (model_->has_formatting(model_->record_at(index.row()), field) &&
      !dialogs_.ask("This text has formatting, which is lost when the text is changed here. Edit it?")) {
    return false;
  }
  scrollTo(index);
  delegate_->set_typing(trigger == AnyKeyPressed);
  const bool is_open = QAbstractItemView::edit(index, trigger, trigger == AnyKeyPressed ? event : nullptr);
  if (is_open && trigger != AnyKeyPressed) delegate_->put_cursor_at_end();
  return is_open;
}

// What was refused stays to be corrected.
void CCellvaneView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  if (hint != QAbstractItemDelegate::RevertModelCache && editor == delegate_->editor() &&
      !delegate_->accepted()) {
    editor->setFocus();
    return;
  }
  QAbstractItemView::closeEditor(editor, hint);
}

bool CCellvaneView::finish_editing() {
  QWidget* editor = delegate_->editor();
  if (editor == nullptr) return true;
  commitData(editor);
  closeEditor(editor, QAbstractItemDelegate::NoHint);
  return delegate_->editor() == nullptr;
}

void CCellvaneView::leave_editor(int key, Qt::KeyboardModifiers modifiers) {
  if (is_enter(key) && modifiers.testFlag(Qt::ControlModifier)) {
    if (!fill_selection_with_typed()) finish_editing();
    return;
  }
  if (finish_editing()) handle_move_key(key, modifiers);
}

// False where one cell is selected.
bool CCellvaneView::fill_selection_with_typed() {
  const std::vector<CellGroup> groups = selected_groups();
  int64_t cells = 0;
  for (const CellGroup& group : groups) cells += group.size();
  if (cells < 2) return false;
  const std::string text = to_utf8(delegate_->text());
  CellValue value;
  const ErrorCode error = read_entry(table().field(static_cast<size_t>(delegate_->edited().column())), text,
                                     document_.region(), value);
  if (error != ErrorCode::kOk) {
    report(error);
    delegate_->editor()->setFocus();
    return true;
  }
  closeEditor(delegate_->editor(), QAbstractItemDelegate::RevertModelCache);
  CellChanges changes;
  {
    const ChangeGroup step(document_.database(), "Fill");
    for (const CellGroup& group : groups) {
      add_changes(changes, paste_cells(table(), block_of(group), {{text}}, document_.region()));
    }
  }
  report(changes);
  return true;
}

}  // namespace rowvane
