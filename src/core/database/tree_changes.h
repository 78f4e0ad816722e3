// The changes of the tree of folders and tables, and of settings, that can be undone.
#pragma once

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "core/database/undo_log.h"

namespace rowvane {

// Another value of a variable.
template <typename Value>
class SwapChange final : public Change {
 public:
  SwapChange(Value& variable, Value value) : variable_(variable), value_(std::move(value)) {}
  void toggle() override { std::swap(variable_, value_); }

 private:
  Value& variable_;
  Value value_;
};

template <typename Node>
using NodeList = std::vector<std::unique_ptr<Node>>;

template <typename Node>
size_t node_index(const NodeList<Node>& list, const Node& node) {
  const auto found =
      std::find_if(list.begin(), list.end(), [&](const auto& one) { return one.get() == &node; });
  return static_cast<size_t>(found - list.begin());
}

template <typename Node>
std::unique_ptr<Node> take_node(NodeList<Node>& list, size_t index) {
  auto node = std::move(list[index]);
  list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
  return node;
}

template <typename Node>
void put_node(NodeList<Node>& list, size_t index, std::unique_ptr<Node> node) {
  list.insert(list.begin() + static_cast<std::ptrdiff_t>(index), std::move(node));
}

// A table or folder added to a list or deleted from it. Keeps it while it is away.
template <typename Node>
class PresenceChange final : public Change {
 public:
  PresenceChange(NodeList<Node>& list, size_t index, std::unique_ptr<Node> added)
      : list_(list), index_(index), away_(std::move(added)) {}
  PresenceChange(NodeList<Node>& list, const Node& deleted)
      : list_(list), index_(node_index(list, deleted)) {}

  void toggle() override {
    if (away_) {
      put_node(list_, index_, std::move(away_));
    } else {
      away_ = take_node(list_, index_);
    }
  }

 private:
  NodeList<Node>& list_;
  size_t index_;
  std::unique_ptr<Node> away_;
};

// A table or folder moved from its folder, which PARENT names, to the end of another.
template <typename Node, typename Parent>
class MoveChange final : public Change {
 public:
  MoveChange(Node& node, Parent*& parent, Parent& target, NodeList<Node> Parent::*list)
      : node_(node), parent_(parent), other_(&target), list_(list), other_index_((target.*list).size()) {}

  void toggle() override {
    auto& from = parent_->*list_;
    const size_t index = node_index(from, node_);
    put_node(other_->*list_, other_index_, take_node(from, index));
    std::swap(parent_, other_);
    other_index_ = index;
  }

 private:
  Node& node_;
  Parent*& parent_;
  Parent* other_;
  NodeList<Node> Parent::*list_;
  size_t other_index_;
};

}  // namespace rowvane
