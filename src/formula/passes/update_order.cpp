#include "formula/passes/update_order.h"

#include <algorithm>

#include "core/database/database.h"

namespace rowvane {
namespace {

class OrderFinder {
 public:
  OrderFinder(const Database& database, const FormulaSettings& settings) {
    for (CWorkSheet* table : database.tables()) {
      for (size_t i = 0; i < table->field_count(); ++i) {
        const Field& field = table->field(i);
        if (field.formula.empty() || field.encrypted || !can_be_calculated(field)) continue;
        const FormulaProgram program(field.formula, table, settings);
        fields_.push_back({table, i, fields_used_by(program)});
      }
    }
    states_.resize(fields_.size(), State::kNew);
  }

  UpdateOrder run() {
    for (size_t i = 0; i < fields_.size() && order_.circle.empty(); ++i) visit(i);
    if (!order_.circle.empty()) order_.fields.clear();
    return std::move(order_);
  }

 private:
  enum class State : uint8_t { kNew, kOpen, kDone };

  // One field being visited, with the next of its uses to follow.
  struct Visit {
    size_t field;
    size_t next_use;
  };

  size_t index_of(const FieldUse& use) const {
    const auto found = std::ranges::find_if(fields_, [&use](const CalculatedField& each) {
      return each.table == use.table && each.field == use.field;
    });
    return static_cast<size_t>(found - fields_.begin());
  }

  // Depth first, without recursion: chains of formulas can be long.
  void visit(size_t start) {
    if (states_[start] != State::kNew) return;
    open(start);
    while (!path_.empty()) {
      Visit& top = path_.back();
      if (top.next_use == fields_[top.field].uses.fields.size()) {
        close();
        continue;
      }
      const size_t used = index_of(fields_[top.field].uses.fields[top.next_use++]);
      if (used == fields_.size() || states_[used] == State::kDone) continue;
      if (states_[used] == State::kOpen) return tell_circle(used);
      open(used);
    }
  }

  void open(size_t field) {
    states_[field] = State::kOpen;
    path_.push_back({field, 0});
  }

  void close() {
    const size_t field = path_.back().field;
    states_[field] = State::kDone;
    order_.fields.push_back(fields_[field]);
    path_.pop_back();
  }

  void tell_circle(size_t closing) {
    const auto begin = std::ranges::find(path_, closing, &Visit::field);
    for (auto visit = begin; visit != path_.end(); ++visit) order_.circle += name_of(visit->field) + " -> ";
    order_.circle += name_of(closing);
  }

  std::string name_of(size_t index) const {
    const CalculatedField& field = fields_[index];
    const std::string& name = field.table->field(field.field).name;
    const bool one_table = std::ranges::all_of(
        path_, [&](const Visit& visit) { return fields_[visit.field].table == field.table; });
    return one_table ? name : Database::join_path(field.table->path(), name);
  }

  std::vector<CalculatedField> fields_;
  std::vector<State> states_;
  std::vector<Visit> path_;
  UpdateOrder order_;
};

}  // namespace

bool can_be_calculated(const Field& field) {
  return field.type == FieldType::kText || field.type == FieldType::kNumber;
}

UpdateOrder find_update_order(const Database& database, const FormulaSettings& settings) {
  return OrderFinder(database, settings).run();
}

}  // namespace rowvane
