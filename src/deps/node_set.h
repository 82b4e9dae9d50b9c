// An owning set of dependency nodes in name order (ComparePaths).
//
// Lookups go through a hash index; nodes added during an update wait in a
// batch and are merged into the ordered vector by Flush(), so that building
// a graph of n nodes costs n log n instead of n^2 pointer moves. Index
// access needs a flushed set.
#ifndef QUILLON_DEPS_NODE_SET_H
#define QUILLON_DEPS_NODE_SET_H

#include <cassert>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "deps/dependency_node.h"
#include "platform/path_key.h"

namespace quillon {

class CDependencyNodeSet {
 public:
  explicit CDependencyNodeSet(bool holds_roots) : holds_roots_(holds_roots) {}

  size_t size() const {
    assert(batch_.empty());
    return nodes_.size();
  }
  CDependencyNode* at(size_t index) const {
    assert(batch_.empty());
    return nodes_[index].get();
  }
  const std::vector<std::unique_ptr<CDependencyNode>>& nodes() const { return nodes_; }

  CDependencyNode* Find(std::string_view name) const;
  // A new node has time kMissingFile and waits for Flush().
  CDependencyNode* FindOrAdd(std::string_view name, bool* added = nullptr);
  void Flush();
  void Clear();
  // Deletes, keeping the order, every node for which `pred` holds.
  template <typename Pred>
  void RemoveIf(Pred pred);

 private:
  const bool holds_roots_;
  std::vector<std::unique_ptr<CDependencyNode>> nodes_;  // sorted
  std::vector<std::unique_ptr<CDependencyNode>> batch_;  // not yet merged
  // Keys view the nodes' own names.
  std::unordered_map<std::string_view, CDependencyNode*, PathHash, PathEqual> index_;
};

template <typename Pred>
void CDependencyNodeSet::RemoveIf(Pred pred) {
  Flush();
  size_t kept = 0;
  for (size_t i = 0; i < nodes_.size(); ++i) {
    if (pred(*nodes_[i])) {
      index_.erase(nodes_[i]->name());
    } else {
      nodes_[kept++] = std::move(nodes_[i]);
    }
  }
  nodes_.resize(kept);
}

}  // namespace quillon

#endif  // QUILLON_DEPS_NODE_SET_H
