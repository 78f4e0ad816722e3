#include "core/database/undo_log.h"

namespace rowvane {

void UndoLog::set_limit(size_t limit) {
  limit_ = limit;
  while (done_.size() > limit_) done_.pop_front();
}

void UndoLog::add(UndoStep step) {
  undone_.clear();
  done_.push_back(std::move(step));
  set_limit(limit_);
}

void UndoLog::roll_back(UndoStep& step) {
  for (auto change = step.changes.rbegin(); change != step.changes.rend(); ++change) (*change)->toggle();
}

bool UndoLog::undo() {
  if (done_.empty()) return false;
  roll_back(done_.back());
  undone_.push_back(std::move(done_.back()));
  done_.pop_back();
  return true;
}

bool UndoLog::redo() {
  if (undone_.empty()) return false;
  for (const auto& change : undone_.back().changes) change->toggle();
  done_.push_back(std::move(undone_.back()));
  undone_.pop_back();
  return true;
}

void UndoLog::clear() {
  done_.clear();
  undone_.clear();
}

}  // namespace rowvane
