// Undo and redo.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace rowvane {

// One change that was made, able to switch between the states before and after it.
class Change {
 public:
  virtual ~Change() = default;
  // Brings back the other state: undoes a change that is done, redoes one that is undone.
  virtual void toggle() = 0;
};

// The changes of one user action, in order.
struct UndoStep {
  std::string caption;
  std::vector<std::unique_ptr<Change>> changes;
};

// The steps that can be undone and redone, the newest at the end. Holds at most `limit` steps that can be
// undone; the oldest go first.
class UndoLog {
 public:
  explicit UndoLog(size_t limit) : limit_(limit) {}

  void set_limit(size_t limit);
  // Adds a step that was just done; what could be redone is dropped.
  void add(UndoStep step);

  bool can_undo() const { return !done_.empty(); }
  bool can_redo() const { return !undone_.empty(); }
  // Captions of the next steps; empty when there is none.
  std::string undo_caption() const { return can_undo() ? done_.back().caption : std::string(); }
  std::string redo_caption() const { return can_redo() ? undone_.back().caption : std::string(); }

  bool undo();
  bool redo();
  void clear();

  // Toggles all changes of STEP, the last one first.
  static void roll_back(UndoStep& step);

 private:
  size_t limit_;
  std::deque<UndoStep> done_;
  std::vector<UndoStep> undone_;
};

}  // namespace rowvane
