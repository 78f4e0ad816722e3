// Opens the editors of a grid's cells and listens to the keys that end them.
#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

#include "app/profile/profile_settings.h"
#include "ui/grid/cell_editors.h"
#include "ui/pane/table_model.h"

namespace rowvane {

// Cells are painted by the grid itself. One editor is open at a time.
class CellDelegate final : public QStyledItemDelegate {
  Q_OBJECT

 public:
  // All must outlive the delegate.
  CellDelegate(DatabaseDocument& document, TableModel& model, const profile::Settings& settings,
               QObject* parent = nullptr);

  // The open editor; null without one.
  QWidget* editor() const { return editor_; }
  QModelIndex edited() const { return edited_; }
  // False where the value that was stored last was refused.
  bool accepted() const { return accepted_; }
  // What is typed in the open editor.
  QString text() const;
  void insert(const QString& text);
  void open_choices();
  void put_cursor_at_end();
  // The next editor is opened by typing: what is typed replaces the value, and arrow keys leave it.
  void set_typing(bool typing) { typing_ = typing; }

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;
  void destroyEditor(QWidget* editor, const QModelIndex& index) const override;

 signals:
  // A key was pressed that stores what was typed and leaves the editor.
  void left(int key, Qt::KeyboardModifiers modifiers);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  bool leaves(const QKeyEvent& key, const CellEditor& editor) const;
  const DropDownList* choices_of(const Field& field) const;

  DatabaseDocument& document_;
  TableModel& model_;
  const profile::Settings& settings_;
  mutable QPointer<QWidget> editor_;
  mutable QPersistentModelIndex edited_;
  mutable QString opened_with_;
  mutable bool accepted_ = true;
  bool typing_ = false;
};

}  // namespace rowvane
