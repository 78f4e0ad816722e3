#include "ui/grid/cell_delegate.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>
#include <cmath>

#include "core/database/database.h"
#include "formula/fields/value_input.h"
#include "ui/grid/editor_keys.h"
#include "ui/grid/type_signs.h"
#include "ui/text.h"

namespace rowvane {
CellDelegate::CellDelegate(DatabaseDocument& document, TableModel& model, const profile::Settings& settings,
                           QObject* parent)
    : QStyledItemDelegate(parent), document_(document), model_(model), settings_(settings) {}

const DropDownList* CellDelegate::choices_of(const Field& field) const {
  if (!settings_.general_options.drop_down_lists || field.drop_down_list.empty()) return nullptr;
  const auto& lists = document_.database().settings().drop_down_lists;
  const auto found = std::ranges::find(lists, field.drop_down_list, &DropDownList::name);
  return found != lists.end() ? &*found : nullptr;
}

void CellDelegate::put_cursor_at_end() {
  if (CellEditor* cell = as_cell_editor(editor_)) cell->set_text(cell->text(), false);
}

QWidget* CellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                    const QModelIndex& index) const {
  const auto column = static_cast<size_t>(index.column());
  const Field& field = model_.table().field(column);
  EditorSettings settings;
  settings.field = &field;
  settings.choices = choices_of(field);
  settings.date_picker = settings_.check_box_options.use_date_picker && shows_dates(field);
  settings.font = static_cast<const QWidget*>(this->parent())->font();
  settings.read_number = [this, column](const QString& text) {
    const Field& edited = model_.table().field(column);
    const auto number = read_field_value(edited, to_utf8(text), document_.region()).number();
    return number && std::isfinite(*number) ? number : std::nullopt;
  };
  settings.write_number = [this, column](double number) { return model_.number_entry_text(number, column); };
  editor_ = make_cell_editor(settings, parent);
  edited_ = index;
  accepted_ = true;
  return editor_;
}

void CellDelegate::destroyEditor(QWidget* editor, const QModelIndex& index) const {
  if (editor == editor_) {
    editor_ = nullptr;
    edited_ = QModelIndex();
  }
  QStyledItemDelegate::destroyEditor(editor, index);
}

QString CellDelegate::text() const {
  const CellEditor* cell = as_cell_editor(editor_);
  return cell != nullptr ? cell->text() : QString();
}

void CellDelegate::insert(const QString& text) {
  if (CellEditor* cell = as_cell_editor(editor_)) cell->insert(text);
}

void CellDelegate::open_choices() {
  if (CellEditor* cell = as_cell_editor(editor_)) cell->open_choices();
}

void CellDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  CellEditor* cell = as_cell_editor(editor);
  if (cell == nullptr) return;
  cell->set_text(index.data(Qt::EditRole).toString(), typing_);
  opened_with_ = cell->text();
}

void CellDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
  const CellEditor* cell = as_cell_editor(editor);
  if (cell == nullptr) return;
  // An editor may know other line breaks than the value has: looking at it is no change.
  const QString text = cell->text();
  accepted_ = text == opened_with_ || model->setData(index, text);
}

// As large as the editor would like to be, within the grid.
void CellDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex&) const {
  const CellEditor* cell = as_cell_editor(editor);
  if (cell == nullptr) return;
  const QSize room = editor->parentWidget()->size();
  QRect rect(option.rect.topLeft(), cell->wanted_size(option.rect.size()).boundedTo(room));
  rect.moveLeft(std::max(std::min(rect.left(), room.width() - rect.width()), 0));
  rect.moveTop(std::max(std::min(rect.top(), room.height() - rect.height()), 0));
  // One on a single line leaves the frame of the current cell to be seen.
  constexpr int kFrame = 2;
  const bool is_line = rect.height() == option.rect.height();
  editor->setGeometry(is_line ? rect.adjusted(kFrame, kFrame, -kFrame, -kFrame) : rect);
}

// ---- keys

bool CellDelegate::leaves(const QKeyEvent& key, const CellEditor& editor) const {
  if (key.modifiers().testFlag(Qt::AltModifier)) return false;
  if (key.key() == Qt::Key_Tab && editor.needs(key)) return false;
  if (key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab) return true;
  if (is_enter(key.key())) return !editor.needs(key);
  if (!is_arrow(key.key()) || key.modifiers() != Qt::NoModifier) return false;
  const bool up_or_down = key.key() == Qt::Key_Up || key.key() == Qt::Key_Down;
  // What is being typed anew has no cursor to move.
  return up_or_down ? !editor.needs(key)
                    : typing_ && qobject_cast<const QLineEdit*>(editor_.data()) != nullptr;
}

bool CellDelegate::eventFilter(QObject* object, QEvent* event) {
  CellEditor* cell = as_cell_editor(qobject_cast<QWidget*>(object));
  const bool is_key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (cell == nullptr || object != editor_ || !is_key) return QStyledItemDelegate::eventFilter(object, event);
  auto& key = *static_cast<QKeyEvent*>(event);
  const bool is_press = event->type() == QEvent::KeyPress;
  if (key.key() == Qt::Key_Down && key.modifiers().testFlag(Qt::AltModifier)) {
    is_press ? cell->open_choices() : event->accept();
    return true;
  }
  if (key.key() == Qt::Key_Escape) {
    is_press ? emit closeEditor(editor_, RevertModelCache) : event->accept();
    return true;
  }
  if (leaves(key, *cell)) {
    is_press ? emit left(key.key(), key.modifiers()) : event->accept();
    return true;
  }
  // Not those of the base class: Enter and Tab belong to the editor now.
  return false;
}

}  // namespace rowvane
